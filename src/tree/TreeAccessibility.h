#pragma once

#include <QAccessibleWidget>
#include <QHash>

namespace rivenfall {

class Node;
class TreeRows;

/// What has changed about a row. Qt 6.4 keeps to itself that a branch was opened or closed.
enum class RowChange { Focus, Selection, Check, Branch };

/// Presents a tree to screen readers: a tree whose items are nested as the nodes are.
///
/// The object for a node is made when somebody asks for it and goes with the node.
class TreeAccessibility : public QAccessibleWidget {
public:
    /// Makes Qt present every TreeRows through this class.
    static void Install();

    /// Tells screen readers that @p change has happened to @p node, whose state is the new one
    /// already. Without one listening it does nothing.
    static void Announce(TreeRows& rows, const Node& node, RowChange change);

    /// Speaks for @p rows, which must outlive it.
    explicit TreeAccessibility(TreeRows& rows);
    ~TreeAccessibility() override;

    /// The object for @p node. It belongs to Qt's cache until Forget.
    QAccessibleInterface* InterfaceOf(const Node& node);

    /// Deletes the object for a node that is about to go, or for all of them.
    void Forget(const Node& node);
    void ForgetAll();

    /// The tree that it speaks for; null once that is gone.
    TreeRows* Rows() const;

    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* focusChild() const override;
    QAccessible::State state() const override;

private:
    QHash<const Node*, QAccessible::Id> phndNodes;
};

} // namespace rivenfall
