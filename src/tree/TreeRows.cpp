#include "tree/TreeRows.h"

#include "tree/Node.h"
#include "tree/TreeAccessibility.h"

#include <QHeaderView>
#include <QPainter>
#include <QScrollBar>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace rivenfall {

TreeRows::TreeRows(QWidget* container)
    : QTreeView(container), pobjNodes(*this), pobjModel(*pobjNodes.pobjRoot) {
    TreeAccessibility::Install();
    setModel(&pobjModel);
    setItemDelegate(&pobjDelegate);
    setUniformRowHeights(true);
    setVerticalScrollMode(ScrollPerItem);
    setHorizontalScrollMode(ScrollPerPixel);
    setEditTriggers(NoEditTriggers);
    setSelectionMode(SingleSelection);
    setHeaderHidden(true);
    header()->setStretchLastSection(false);
    header()->setMinimumSectionSize(0);
    header()->setResizeContentsPrecision(0); // The rows in view alone.
    SetReachable(true);

    connect(this, &QTreeView::expanded, this,
            [this](const QModelIndex& index) { BranchChanged(index, true); });
    connect(this, &QTreeView::collapsed, this,
            [this](const QModelIndex& index) { BranchChanged(index, false); });
}

void TreeRows::SetReachable(bool reachable) {
    pblnReachable = reachable;
    // The mouse gives it the keyboard with its left button only; Qt's policy takes any.
    setFocusPolicy(reachable ? Qt::TabFocus : Qt::NoFocus);
}

void TreeRows::BeginChanges() {
    if (pobjModel.Changing()) {
        return;
    }
    pobjModel.BeginChanges();
    QTimer::singleShot(0, this, &TreeRows::ApplyChanges);
}

void TreeRows::ApplyChanges() {
    if (!pobjModel.Changing()) {
        return;
    }
    plngWidestRow = 0;
    pobjModel.EndChanges();
    OpenBranches();
    ShowSelection();
    AnnounceSelection();
}

void TreeRows::OpenBranches() {
    pobjNodes.Number();
    std::vector<Node*> open;
    bool all = true;
    for (Node* node : pobjNodes.pobjOrder) {
        if (node->pobjChildren.empty()) {
            continue;
        }
        if (node->pblnExpanded) {
            open.push_back(node);
        } else {
            all = false;
        }
    }
    if (all && !open.empty()) {
        expandAll();
        return;
    }
    // The layout still waits, so the view only takes note of each of them.
    for (const Node* node : open) {
        expand(pobjModel.IndexOf(*node));
    }
}

void TreeRows::ShowSelection() {
    if (!pobjSelected) {
        selectionModel()->clear();
        return;
    }
    setAutoScroll(false);
    selectionModel()->setCurrentIndex(pobjModel.IndexOf(*pobjSelected),
                                      QItemSelectionModel::ClearAndSelect);
    setAutoScroll(true);
}

void TreeRows::SetSelected(Node* node) {
    pobjSelected = node;
    if (!pobjModel.Changing()) {
        ShowSelection();
        AnnounceSelection();
    }
}

void TreeRows::AnnounceSelection() {
    if (pobjAnnounced == pobjSelected) {
        return;
    }
    if (const Node* const former = std::exchange(pobjAnnounced, pobjSelected)) {
        TreeAccessibility::Announce(*this, *former, RowChange::Selection);
    }
    if (!pobjSelected) {
        return;
    }
    if (hasFocus()) {
        TreeAccessibility::Announce(*this, *pobjSelected, RowChange::Focus);
    }
    TreeAccessibility::Announce(*this, *pobjSelected, RowChange::Selection);
}

std::vector<Node*> TreeRows::RowsInView() {
    ApplyChanges();
    std::vector<Node*> rows;
    for (QModelIndex row = indexAt(QPoint(viewport()->width() / 2, 0));
         row.isValid() && visualRect(row).top() < viewport()->height(); row = indexBelow(row)) {
        rows.push_back(TreeModel::NodeAt(row));
    }
    return rows;
}

Node* TreeRows::RowAt(const QPoint& position) {
    ApplyChanges();
    return TreeModel::NodeAt(indexAt(position));
}

void TreeRows::BringIntoView(Node& node) {
    for (Node* each = node.Parent(); each; each = each->Parent()) {
        each->SetExpanded(true);
    }
    ApplyChanges();
    scrollTo(pobjModel.IndexOf(node));
}

Node& TreeRows::VisibleAncestorOrSelf(Node& node) {
    Node* shown = &node;
    for (Node* each = node.Parent(); each; each = each->Parent()) {
        if (!each->Expanded()) {
            shown = each;
        }
    }
    return *shown;
}

void TreeRows::scrollTo(const QModelIndex& index, ScrollHint hint) {
    const int left = horizontalScrollBar()->value();
    QTreeView::scrollTo(index, hint);
    horizontalScrollBar()->setValue(left);
}

void TreeRows::Forget(Node& node) {
    if (pobjAnnounced == &node) {
        pobjAnnounced = nullptr;
    }
    if (pobjPressedBox == &node) {
        pobjPressedBox = nullptr;
    }
    std::erase_if(pobjPendingEvents,
                  [&](const PendingEvent& each) { return each.Subject == &node; });
    if (pobjAccessibility) {
        pobjAccessibility->Forget(node);
    }
}

void TreeRows::ForgetAll() {
    pobjSelected = nullptr;
    pobjAnnounced = nullptr;
    pobjPressedBox = nullptr;
    pobjPendingEvents.clear();
    if (pobjAccessibility) {
        pobjAccessibility->ForgetAll();
    }
}

void TreeRows::ShowChecked(const Node& node) {
    if (pobjModel.Changing()) {
        return;
    }
    pobjModel.NodeChanged(node);
    TreeAccessibility::Announce(*this, node, RowChange::Check);
}

void TreeRows::ShowExpanded(const Node& node) {
    if (pobjModel.Changing()) {
        return;
    }
    setExpanded(pobjModel.IndexOf(node), node.Expanded());
    TreeAccessibility::Announce(*this, node, RowChange::Branch);
}

void TreeRows::focusInEvent(QFocusEvent* event) {
    QTreeView::focusInEvent(event);
    // Qt announces the tree itself behind this event. The last word is the row's.
    QTimer::singleShot(0, this, [this] {
        if (hasFocus() && pobjSelected) {
            TreeAccessibility::Announce(*this, *pobjSelected, RowChange::Focus);
        }
    });
}

void TreeRows::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    // QTreeView would announce a cell of a table, and before the row counts as selected.
    // NOLINTNEXTLINE(bugprone-parent-virtual-call)
    QAbstractItemView::currentChanged(current, previous);
}

void TreeRows::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
    // The same is true here.
    // NOLINTNEXTLINE(bugprone-parent-virtual-call)
    QAbstractItemView::selectionChanged(selected, deselected);
}

void TreeRows::DrawFocusFrame() {
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Highlight));
    for (int inset = 0; inset < frameWidth(); ++inset) {
        painter.drawRect(rect().adjusted(inset, inset, -1 - inset, -1 - inset));
    }
}

void TreeRows::scrollContentsBy(int dx, int dy) {
    if (pobjModel.Changing()) {
        ApplyChanges();
        return;
    }
    QTreeView::scrollContentsBy(dx, dy);
    FitColumn();
}

void TreeRows::updateGeometries() {
    QTreeView::updateGeometries();
    FitColumn();
}

void TreeRows::FitColumn() {
    if (pobjModel.Changing()) {
        return;
    }
    plngWidestRow = std::max(plngWidestRow, sizeHintForColumn(0));
    header()->resizeSection(0, std::max(viewport()->width(), plngWidestRow));
}

} // namespace rivenfall
