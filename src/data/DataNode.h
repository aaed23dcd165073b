#pragma once

#include <QString>

#include <memory>

namespace rivenfall {

class DataNodes;
class PropertyBag;

/// The kinds of node: the values of DataNodeType and DataNodesType.
enum class NodeKind : qint8 {
    Compiler = 0,       ///< A program to run; holds parameters.
    Parameter = 1,      ///< A parameter's text; holds its values.
    ParameterValue = 2, ///< One of a parameter's alternatives.
    Variable = 3,       ///< A variable's name; holds its values.
    VariableValue = 4   ///< One of a variable's alternatives.
};

/// True for the kinds that hold other nodes.
constexpr bool MayHoldNodes(NodeKind kind) {
    return kind != NodeKind::ParameterValue && kind != NodeKind::VariableValue;
}

/// One element of a document's content.
///
/// The collection that lists a node owns it together with whoever holds a reference to it; the
/// node owns its child collection. No property marks the document as changed.
class DataNode {
public:
    /// A compiler in no collection, switched off and expanded. Only a collection makes
    /// nodes.
    DataNode();
    ~DataNode();

    DataNode(const DataNode&) = delete;
    DataNode& operator=(const DataNode&) = delete;

    /// The node takes part in a run. Writing True to an alternative switches the others off.
    bool Active() const { return pblnActive; }
    void SetActive(bool active);

    /// The child collection, owned by the node; null for a kind that holds nothing and for a
    /// deleted node.
    DataNodes* Childs() const { return pobjChilds.get(); }

    /// What the node is; its collection and every sibling are of the same kind.
    NodeKind DataNodeType() const { return plngDataNodeType; }

    /// Takes the node with its whole subtree out of the tree, the subtree bottom up. Afterwards
    /// Index is 0, Value empty, and Parent and Childs are null.
    void Delete();

    /// The tree shows the node's children.
    bool Expanded() const { return pblnExpanded; }
    void SetExpanded(bool expanded);

    /// The position among its siblings, from 1; 0 while the node is in no collection.
    int Index() const { return plngIndex; }

    /// The node's key, built anew at each call.
    QString Key() const;

    /// Moves the node to @p DestinationIndex among its siblings, as DataNodes::MoveItem does.
    void Move(int DestinationIndex);

    /// The collection that lists the node; null for a deleted node.
    DataNodes* Parent() const { return pobjParent; }

    /// What the tree shows: the value, or 64 blanks in place of an empty one.
    QString Text() const;

    /// The node's one piece of content. The reference holds until the value changes.
    const QString& Value() const { return pstrValue; }
    void SetValue(const QString& value);

private:
    friend class DataNodes;

    void SetDataNodeType(NodeKind kind);
    void SetIndex(int index);
    void SetParent(DataNodes* parent);

    // document/TreeBags.cpp
    PropertyBag SaveToBag() const;
    void LoadFromBag(const PropertyBag& bag);

    void pobjChilds_Add(DataNode& DN);
    void pobjChilds_Move(DataNode& DN);
    void pobjChilds_Remove(DataNode& DN);

    bool pblnActive = false;
    bool pblnExpanded = true;
    NodeKind plngDataNodeType = NodeKind::Compiler;
    int plngIndex = 0;
    DataNodes* pobjParent = nullptr;
    QString pstrValue;
    std::unique_ptr<DataNodes> pobjChilds;
};

} // namespace rivenfall
