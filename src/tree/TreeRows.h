#pragma once

#include "tree/Nodes.h"
#include "tree/TreeModel.h"
#include "tree/TreeRowDelegate.h"

#include <QTreeView>

#include <deque>
#include <vector>

namespace rivenfall {

class TreeAccessibility;

/// The widget of a TreeView: shows its nodes and turns the user's actions into events.
///
/// Changes of structure are gathered and shown at once ("applied") before anything needs to see
/// them. The nodes themselves say which branches are open, and Selected which row is selected; Qt's
/// view is brought in line with them.
///
/// TreeRows.cpp keeps the view in line, TreeUserActions.cpp has what the user does.
class TreeRows : public QTreeView {
    Q_OBJECT

public:
    /// An empty tree in @p container, which owns it.
    explicit TreeRows(QWidget* container);

    /// The nodes, and the model that shows them to Qt's view. Owned by the tree.
    Nodes& Content() { return pobjNodes; }
    const TreeModel& Model() const { return pobjModel; }

    /// The selected node, or null.
    Node* Selected() const { return pobjSelected; }
    void SetSelected(Node* node);

    /// The nodes in the visible area from the top down.
    std::vector<Node*> RowsInView();

    /// The node whose row is at @p position of the viewport, or null.
    Node* RowAt(const QPoint& position);

    /// Opens what hides the row of @p node and scrolls only as far as needed to show it.
    void BringIntoView(Node& node);

    /// The node itself if no collapsed branch hides its row, else the node of the outermost
    /// collapsed branch that does.
    static Node& VisibleAncestorOrSelf(Node& node);

    /// Whether the keyboard and screen readers can get into the tree.
    bool Reachable() const { return pblnReachable; }
    void SetReachable(bool reachable);

    /// To be called before nodes are added or removed.
    void BeginChanges();

    /// Drops every reference to a node that is about to be deleted, or to all of them.
    void Forget(Node& node);
    void ForgetAll();

    /// Bring the view in line with the state of @p node, which was written just now.
    void ShowChecked(const Node& node);
    void ShowExpanded(const Node& node);

    /// What a user can do with a row, for ways other than mouse and keyboard. They raise the
    /// events below.
    void Choose(Node& node);
    void ToggleCheck(Node& node);
    void ToggleBranch(Node& node);

    /// Registers the object that presents the tree to screen readers, while there is one.
    void SetAccessibility(TreeAccessibility* accessibility) { pobjAccessibility = accessibility; }

    /// Scrolls up and down only: sideways the place is the user's choice.
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;

Q_SIGNALS:
    /// What the user did. Raised when Qt's view is done with the action.
    void BranchClosed(rivenfall::Node& node);
    void BranchOpened(rivenfall::Node& node);
    void CheckChanged(rivenfall::Node& node);
    void RowChosen(rivenfall::Node& node);

protected:
    bool event(QEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                         const QEvent* event) const override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void selectionChanged(const QItemSelection& selected,
                          const QItemSelection& deselected) override;
    void scrollContentsBy(int dx, int dy) override;
    void updateGeometries() override;

private:
    /// One event that waits for the end of the user's action.
    struct PendingEvent {
        void (TreeRows::*Signal)(Node&);
        Node* Subject;
    };

    void ApplyChanges();
    void OpenBranches();
    void ShowSelection();
    void AnnounceSelection();
    void FitColumn();
    void DrawFocusFrame();
    void BranchChanged(const QModelIndex& index, bool expanded);
    bool OnCheckBox(const QModelIndex& index, const QPoint& position) const;
    bool OnExpander(const QModelIndex& index, const QPoint& position) const;

    template <typename Action>
    void PerformUserAction(Action action);
    void Raise(void (TreeRows::*signal)(Node&), Node& node);
    void FinishUserAction();

    Nodes pobjNodes;
    TreeModel pobjModel;
    TreeRowDelegate pobjDelegate;
    TreeAccessibility* pobjAccessibility = nullptr;
    Node* pobjSelected = nullptr;
    Node* pobjAnnounced = nullptr; ///< The selected node as screen readers know it.
    int plngWidestRow = 0;
    bool pblnReachable = true;

    int plngUserActions = 0;
    std::deque<PendingEvent> pobjPendingEvents;
    Node* pobjPressedBox = nullptr;
    bool pblnLabelPressed = false;
    bool pblnRowChosen = false;
};

} // namespace rivenfall
