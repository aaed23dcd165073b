#pragma once

#include <QString>

#include <memory>
#include <vector>

namespace rivenfall {

class Nodes;

/// One row of a TreeView: a text with a check box, and below it the rows of its branch.
///
/// A node is made by Nodes::Add and lives until Nodes::Remove or Nodes::Clear takes it out. It owns
/// the nodes below it.
class Node {
public:
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;
    ~Node();

    /// The position from 1 over all levels: a node comes before its branch, and its whole branch
    /// before its next sibling.
    int Index() const;

    /// The name under which Nodes finds the node.
    const QString& Key() const { return pstrKey; }

    /// What the row shows.
    const QString& Text() const { return pstrText; }

    /// The node one level above, or null on the first level.
    Node* Parent() const;

    /// The sibling before this node, or null at the beginning of its level.
    Node* Previous() const;

    /// The sibling behind this node, or null at the end of its level.
    Node* Next() const;

    /// True while the check box is ticked. Writing it raises no TreeView::NodeCheck.
    bool Checked() const { return pblnChecked; }
    void SetChecked(bool checked);

    /// True while the branch is open. A node without a branch keeps what was written for the
    /// children that come later. Writing it raises neither TreeView::Expand nor
    /// TreeView::Collapse.
    bool Expanded() const { return pblnExpanded; }
    void SetExpanded(bool expanded);

    /// Opens the collapsed branches that hide the row, and scrolls only as far as it takes to bring
    /// the row into the visible area.
    void EnsureVisible();

    /// True for the selected node of the control. Writing True moves the selection here, writing
    /// False to the selected node leaves the control without one; neither scrolls nor raises
    /// TreeView::NodeClick.
    bool Selected() const;
    void SetSelected(bool selected);

private:
    friend class Nodes;
    friend class TreeModel;
    friend class TreeRows;

    Node(Nodes& nodes, Node* parent, const QString& key, const QString& text);

    Nodes* pobjNodes;
    Node* pobjParent;
    std::vector<std::unique_ptr<Node>> pobjChildren;
    QString pstrKey;
    QString pstrText;
    int plngRow = 0;
    int plngIndex = 0;
    bool pblnChecked = false;
    bool pblnExpanded = false;
};

} // namespace rivenfall
