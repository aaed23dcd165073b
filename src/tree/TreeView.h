#pragma once

#include "controls/Control.h"
#include "tree/Node.h"
#include "tree/Nodes.h"

#include <vector>

namespace rivenfall {

class TreeRows;

/// A tree of nodes with check boxes, of which one is selected.
///
/// The control raises its events for what the user does with mouse, keyboard or a screen reader,
/// never for what code writes. They come after the action is done, so a handler may change the
/// tree; it must not delete the control.
class TreeView : public Control {
    Q_OBJECT

public:
    /// Places an empty tree on @p container.
    explicit TreeView(QWidget* container);

    /// The nodes of the tree. Like the other members, not to be used once the container is gone.
    rivenfall::Nodes& Nodes() const;

    /// The selected node, or null.
    Node* SelectedItem() const;

    /// The nodes whose rows stand, wholly or in part, in the visible area, from the top down.
    std::vector<Node*> RowsInView() const;

    /// Chooses whether the keyboard and screen readers can get into the tree. True at first; a tree
    /// that only covers or backs another one is of no use to them.
    void SetReachable(bool reachable);

Q_SIGNALS:
    /// The user closed the branch of @p node.
    void Collapse(rivenfall::Node& node);

    /// The user opened the branch of @p node.
    void Expand(rivenfall::Node& node);

    /// The user changed the check box of @p node. Its Checked has the new value.
    void NodeCheck(rivenfall::Node& node);

    /// The user selected @p node, or clicked it while it was selected.
    void NodeClick(rivenfall::Node& node);

private:
    TreeRows* Rows() const;
};

} // namespace rivenfall
