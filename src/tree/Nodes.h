#pragma once

#include <QHash>
#include <QString>

#include <memory>
#include <vector>

namespace rivenfall {

class Node;
class TreeRows;

/// Where Nodes::Add puts a node, seen from the node that it names.
enum TreeRelationship {
    tvwNext = 2,  ///< Directly behind it, on its level.
    tvwChild = 4, ///< Last in its branch.
};

/// The nodes of a TreeView, in the order in which they stand when every branch is open.
///
/// Keys are unique within one tree; the caller sees to it. Building a tree in its order is cheap,
/// and so is taking one apart from its end: a batch of changes is numbered and shown only when
/// somebody looks.
class Nodes {
public:
    /// No nodes, to be shown by @p rows, which owns them.
    explicit Nodes(TreeRows& rows);
    Nodes(const Nodes&) = delete;
    Nodes& operator=(const Nodes&) = delete;
    ~Nodes();

    /// Adds a last node to the first level. The reference holds until the node is removed.
    Node& Add(const QString& key, const QString& text);

    /// Adds a node at the place that @p relationship tells, seen from @p relative, which is one of
    /// these nodes.
    Node& Add(Node& relative, TreeRelationship relationship, const QString& key,
              const QString& text);

    /// The same, seen from the node with the key @p relative.
    Node& Add(const QString& relative, TreeRelationship relationship, const QString& key,
              const QString& text);

    /// Removes all nodes, and with them the selection.
    void Clear();

    /// The number of nodes on all levels.
    int Count() const { return plngCount; }

    /// Removes the node with this key and its branch. If the selected node goes, the selection
    /// passes to the next sibling of the removed node, else to the one before it, else to its
    /// parent. Raises no TreeView::NodeClick.
    void Remove(const QString& key);

    /// The node at a position from 1 to Count, or null for any other.
    Node* Item(int index) const;

    /// The node with this key, or null.
    Node* Item(const QString& key) const;

private:
    friend class Node;
    friend class TreeRows;

    TreeRows& Rows() const { return pobjRows; }
    Node& Insert(Node& parent, std::size_t row, const QString& key, const QString& text);
    void Number() const;
    void ForgetBranch(Node& node);

    TreeRows& pobjRows;
    std::unique_ptr<Node> pobjRoot;
    int plngCount = 0;

    /// All nodes by position, where pblnNumbered says that it is up to date.
    mutable std::vector<Node*> pobjOrder;
    mutable bool pblnNumbered = true;

    /// All nodes by key. Filled when somebody asks for a key, and kept up to date from then on
    /// until Clear: most trees are built anew without a look-up.
    mutable QHash<QString, Node*> pobjByKey;
};

} // namespace rivenfall
