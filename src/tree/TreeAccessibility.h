#pragma once

#include <QAccessibleWidget>
#include <QHash>

namespace rivenfall {

class Node;
class TreeRows;

/// Presents a tree to screen readers: a tree whose items are nested as the nodes are.
///
/// The object for a node is made when somebody asks for it and goes with the node.
class TreeAccessibility : public QAccessibleWidget {
public:
    /// Makes Qt present every TreeRows through this class.
    static void Install();

    /// Tell screen readers what has happened to @p node, whose state is the new one already.
    /// Without one listening they do nothing. Qt 6.4 keeps to itself that a branch was opened or
    /// closed.
    static void AnnounceFocus(TreeRows& rows, const Node& node);
    static void AnnounceSelection(TreeRows& rows, const Node& node);
    static void AnnounceCheck(TreeRows& rows, const Node& node);
    static void AnnounceBranch(TreeRows& rows, const Node& node);

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
