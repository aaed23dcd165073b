#pragma once

#include <QString>

#include <functional>
#include <memory>
#include <vector>

namespace rivenfall {

class DataNode;
class PropertyBag;
enum class NodeKind : qint8;

/// What is called for the changes in a root collection and everything below it. Each call names the
/// node that was really added, moved or removed. An empty function hears nothing.
struct DataNodesEvents {
    /// @p DN has been added, numbered and switched on.
    std::function<void(DataNode& DN)> Add;

    /// @p DN stands at its new position.
    std::function<void(DataNode& DN)> Move;

    /// @p DN is about to go and still has its Index, Value and Key; its Childs are gone already.
    std::function<void(DataNode& DN)> Remove;
};

/// The ordered nodes of one level of one tree: a root, or the Childs of a node. Positions count
/// from 1, and every node's Index is its position.
///
/// Events are synchronous calls. They reach the collection's owner, then the collection that
/// lists the owner, and so on up to the root, which hands them to its listener.
class DataNodes {
public:
    using Items = std::vector<std::shared_ptr<DataNode>>;

    /// An empty collection of compilers without an owner.
    DataNodes();
    ~DataNodes();

    DataNodes(const DataNodes&) = delete;
    DataNodes& operator=(const DataNodes&) = delete;

    /// Adds a node with @p Value at the end, switched on, and raises Add.
    std::shared_ptr<DataNode> Add(const QString& Value = {});

    /// Deletes all nodes, the last one first.
    void Clear();

    /// The number of nodes.
    int Count() const { return static_cast<int>(pobjItems.size()); }

    /// What the nodes are.
    NodeKind DataNodesType() const { return plngDataNodesType; }

    /// The node at @p Index, 1 to Count. Throws std::out_of_range for any other position.
    std::shared_ptr<DataNode> Item(int Index) const;

    /// The nodes in order, for a walk over them.
    Items::const_iterator begin() const { return pobjItems.begin(); }
    Items::const_iterator end() const { return pobjItems.end(); }

    /// The node that owns the collection; null for a root.
    DataNode* Parent() const { return pobjParent; }

    /// Deletes the node at @p Index, 1 to Count. Throws as Item does.
    void Remove(int Index);

    /// Sets the kind of the nodes, nothing else.
    void SetDataNodesType(NodeKind kind);

    /// Has @p events called for the changes in a root, in place of the former ones.
    void SetEvents(DataNodesEvents events);

    /// Deletes all nodes and drops the link to the owner.
    void Dispose();

    /// Replaces all nodes by those of the root @p source, which is of the same kind and is left
    /// empty. The present nodes go with their events, the new ones come silently.
    void TakeNodesOf(DataNodes& source);

    /// A bag of all nodes and everything below them. In document/TreeBags.cpp, as the next one.
    PropertyBag SaveToBag() const;

    /// Replaces all nodes by those of @p bag, without an event for what is new. Throws
    /// PropertyBagError where the bag isn't one of a collection; the collection is then only good
    /// to be thrown away.
    void LoadFromBag(const PropertyBag& bag);

private:
    friend class DataNode;

    void AdjustIndexes(int first);
    void MoveItem(DataNode& DN, int DestinationIndex);
    void SetParent(DataNode* parent);
    void RaiseAdd(DataNode& DN);
    void RaiseMove(DataNode& DN);
    void RaiseRemove(DataNode& DN);
    std::shared_ptr<DataNode> RemoveItem(int position);

    std::shared_ptr<DataNode> MakeNode();

    Items pobjItems;
    NodeKind plngDataNodesType = NodeKind();
    DataNode* pobjParent = nullptr;
    /// Of a root alone: the collection of a node takes no room for them.
    std::unique_ptr<DataNodesEvents> pobjEvents;
};

} // namespace rivenfall
