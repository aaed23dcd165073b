#include "tree/TreeRows.h"

#include "tree/Node.h"
#include "tree/TreeAccessibility.h"
#include "tree/TreeModel.h"
#include "tree/TreeRowDelegate.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>

#include <algorithm>
#include <utility>

namespace rivenfall {

namespace {

/// The node of the row below that of @p node while all rows are there that open branches show.
Node* NextRow(const Node& node, const TreeModel& model) {
    const QModelIndex index = model.IndexOf(node);
    if (node.Expanded() && model.hasChildren(index)) {
        return TreeModel::NodeAt(model.index(0, 0, index));
    }
    for (const Node* each = &node; each; each = each->Parent()) {
        if (Node* const next = each->Next()) {
            return next;
        }
    }
    return nullptr;
}

} // namespace

TreeRows::TreeRows(QWidget* container)
    : QTreeView(container),
      pobjNodes(std::make_unique<Nodes>(*this)),
      pobjModel(std::make_unique<TreeModel>(*pobjNodes->pobjRoot, nullptr)) {
    // Not above: the new child makes an event, which needs every member.
    pobjDelegate = new TreeRowDelegate(this);
    TreeAccessibility::Install();
    setModel(pobjModel.get());
    setItemDelegate(pobjDelegate);
    setUniformRowHeights(true);
    setVerticalScrollMode(ScrollPerItem);
    setHorizontalScrollMode(ScrollPerPixel);
    setEditTriggers(NoEditTriggers);
    setSelectionMode(SingleSelection);
    setHeaderHidden(true);
    header()->setStretchLastSection(false);
    header()->setMinimumSectionSize(0);

    pobjApplyTimer.setSingleShot(true);
    connect(&pobjApplyTimer, &QTimer::timeout, this, &TreeRows::ApplyChanges);
    connect(this, &QTreeView::expanded, this,
            [this](const QModelIndex& index) { BranchChanged(index, true); });
    connect(this, &QTreeView::collapsed, this,
            [this](const QModelIndex& index) { BranchChanged(index, false); });
}

TreeRows::~TreeRows() = default;

void TreeRows::SetReachable(bool reachable) {
    pblnReachable = reachable;
    setFocusPolicy(reachable ? Qt::StrongFocus : Qt::NoFocus);
}

void TreeRows::BeginChanges() {
    if (pobjModel->Changing()) {
        return;
    }
    pobjModel->BeginChanges();
    pobjApplyTimer.start(0);
}

void TreeRows::ApplyChanges() {
    if (!pobjModel->Changing()) {
        return;
    }
    pobjApplyTimer.stop();
    plngWidestRow = 0;
    pobjModel->EndChanges();
    OpenBranches();
    ShowSelection();
}

void TreeRows::OpenBranches() {
    pobjNodes->Number();
    std::vector<Node*> open;
    bool all = true;
    for (Node* node : pobjNodes->pobjOrder) {
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
        expand(pobjModel->IndexOf(*node));
    }
}

void TreeRows::ShowSelection() {
    if (!pobjSelected) {
        selectionModel()->clear();
        return;
    }
    const bool scrolls = hasAutoScroll();
    setAutoScroll(false);
    selectionModel()->setCurrentIndex(pobjModel->IndexOf(*pobjSelected),
                                      QItemSelectionModel::ClearAndSelect);
    setAutoScroll(scrolls);
}

void TreeRows::SetSelected(Node* node) {
    pobjSelected = node;
    if (!pobjModel->Changing()) {
        ShowSelection();
    }
}

std::vector<Node*> TreeRows::RowsInView() {
    ApplyChanges();
    std::vector<Node*> rows;
    const QModelIndex top = indexAt(QPoint(viewport()->width() / 2, 0));
    if (!top.isValid()) {
        return rows;
    }
    const int height = std::max(1, rowHeight(top));
    int bottom = 0;
    for (Node* node = TreeModel::NodeAt(top); node && bottom < viewport()->height();
         node = NextRow(*node, *pobjModel)) {
        rows.push_back(node);
        bottom += height;
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
    scrollTo(pobjModel->IndexOf(node));
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
    pobjPressedBox = nullptr;
    pobjPendingEvents.clear();
    if (pobjAccessibility) {
        pobjAccessibility->ForgetAll();
    }
}

void TreeRows::ShowChecked(const Node& node) {
    if (pobjModel->Changing()) {
        return;
    }
    pobjModel->NodeChanged(node);
    TreeAccessibility::AnnounceCheck(*this, node);
}

void TreeRows::ShowExpanded(const Node& node) {
    if (pobjModel->Changing()) {
        return;
    }
    setExpanded(pobjModel->IndexOf(node), node.Expanded());
    TreeAccessibility::AnnounceBranch(*this, node);
}

void TreeRows::BranchChanged(const QModelIndex& index, bool expanded) {
    Node& node = *TreeModel::NodeAt(index);
    if (node.pblnExpanded == expanded) {
        return; // The view follows the node.
    }
    node.pblnExpanded = expanded;
    TreeAccessibility::AnnounceBranch(*this, node);
    Raise(expanded ? &TreeRows::BranchOpened : &TreeRows::BranchClosed, node);
}

void TreeRows::Choose(Node& node) {
    ApplyChanges();
    DoAsUser([&] {
        pblnRowChosen = true;
        selectionModel()->setCurrentIndex(pobjModel->IndexOf(node),
                                          QItemSelectionModel::ClearAndSelect);
    });
}

void TreeRows::ToggleCheck(Node& node) {
    DoAsUser([&] {
        node.SetChecked(!node.Checked());
        Raise(&TreeRows::CheckChanged, node);
    });
}

void TreeRows::ToggleBranch(Node& node) {
    ApplyChanges();
    DoAsUser([&] { setExpanded(pobjModel->IndexOf(node), !node.Expanded()); });
}

void TreeRows::OpenWholeBranch(Node& node) {
    scheduleDelayedItemsLayout();
    const auto open = [this](const Node& branch, const auto& self) -> void {
        if (branch.pobjChildren.empty()) {
            return;
        }
        expand(pobjModel->IndexOf(branch));
        for (const auto& child : branch.pobjChildren) {
            self(*child, self);
        }
    };
    open(node, open);
}

template <typename Action>
void TreeRows::DoAsUser(Action action) {
    ++plngUserActions;
    action();
    --plngUserActions;
    FinishUserAction();
}

void TreeRows::Raise(void (TreeRows::*signal)(Node&), Node& node) {
    pobjPendingEvents.push_back({signal, &node});
}

void TreeRows::FinishUserAction() {
    if (plngUserActions > 0 || pobjModel->Changing()) {
        return;
    }
    Node* const current = TreeModel::NodeAt(currentIndex());
    if (current && (current != pobjSelected || pblnRowChosen)) {
        pobjSelected = current;
        ShowSelection();
        Raise(&TreeRows::RowChosen, *current);
    }
    pblnRowChosen = false;
    while (!pobjPendingEvents.empty()) {
        const PendingEvent next = pobjPendingEvents.front();
        pobjPendingEvents.pop_front();
        Q_EMIT(this->*next.Signal)(*next.Subject);
    }
}

bool TreeRows::event(QEvent* event) {
    if (event->type() == QEvent::DeferredDelete) {
        return QTreeView::event(event);
    }
    ApplyChanges();
    bool handled = false;
    DoAsUser([&] { handled = QTreeView::event(event); });
    return handled;
}

bool TreeRows::viewportEvent(QEvent* event) {
    ApplyChanges();
    bool handled = false;
    DoAsUser([&] { handled = QTreeView::viewportEvent(event); });
    return handled;
}

void TreeRows::mousePressEvent(QMouseEvent* event) {
    const QPoint position = event->position().toPoint();
    const QModelIndex index = indexAt(position);
    const bool box = OnCheckBox(index, position);
    pobjPressedBox = box && event->button() == Qt::LeftButton ? TreeModel::NodeAt(index) : nullptr;
    pblnLabelPressed = index.isValid() && !box && !OnExpander(index, position);
    if (box) {
        return;
    }
    QTreeView::mousePressEvent(event);
    pblnRowChosen = pblnLabelPressed;
}

void TreeRows::mouseMoveEvent(QMouseEvent* event) {
    // A hand that trembles on an expander or a check box doesn't select the row.
    if (event->buttons() == Qt::NoButton || pblnLabelPressed) {
        QTreeView::mouseMoveEvent(event);
    }
}

void TreeRows::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !pobjPressedBox) {
        QTreeView::mouseReleaseEvent(event);
        return;
    }
    Node* const node = std::exchange(pobjPressedBox, nullptr);
    const QPoint position = event->position().toPoint();
    const QModelIndex index = indexAt(position);
    if (TreeModel::NodeAt(index) == node && OnCheckBox(index, position)) {
        ToggleCheck(*node);
    }
}

void TreeRows::mouseDoubleClickEvent(QMouseEvent* event) {
    const QPoint position = event->position().toPoint();
    const QModelIndex index = indexAt(position);
    if (OnCheckBox(index, position) || OnExpander(index, position)) {
        mousePressEvent(event);
    } else {
        QTreeView::mouseDoubleClickEvent(event);
    }
}

void TreeRows::keyPressEvent(QKeyEvent* event) {
    Node* const shown = pobjSelected ? &VisibleAncestorOrSelf(*pobjSelected) : nullptr;
    const bool hidden = shown != pobjSelected;
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Escape:
        event->ignore();
        return;
    case Qt::Key_Space:
        if (shown && !hidden) {
            ToggleCheck(*shown);
        }
        return;
    case Qt::Key_Asterisk:
        if (shown) {
            OpenWholeBranch(*shown);
        }
        return;
    // Qt's view would also look for a text that begins with the sign.
    case Qt::Key_Plus:
    case Qt::Key_Minus:
        if (shown && shown->Expanded() == (event->key() == Qt::Key_Minus)) {
            ToggleBranch(*shown);
        }
        return;
    case Qt::Key_Right:
        if (hidden) {
            ToggleBranch(*shown);
            return;
        }
        break;
    default:
        break;
    }
    QTreeView::keyPressEvent(event);
}

QModelIndex TreeRows::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
    if (pobjSelected) {
        const QModelIndex shown = pobjModel->IndexOf(VisibleAncestorOrSelf(*pobjSelected));
        if (shown != currentIndex()) {
            selectionModel()->setCurrentIndex(shown, QItemSelectionModel::NoUpdate);
        }
    }
    return QTreeView::moveCursor(action, modifiers);
}

void TreeRows::focusInEvent(QFocusEvent* event) {
    QTreeView::focusInEvent(event);
    // Qt's view makes the first row current where none is.
    ShowSelection();
    if (pobjSelected) {
        TreeAccessibility::AnnounceFocus(*this, *pobjSelected);
    }
}

void TreeRows::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        plngWidestRow = 0;
    }
    QTreeView::changeEvent(event);
}

QItemSelectionModel::SelectionFlags TreeRows::selectionCommand(const QModelIndex& index,
                                                               const QEvent*) const {
    return index.isValid() ? QItemSelectionModel::ClearAndSelect : QItemSelectionModel::NoUpdate;
}

void TreeRows::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    // The base class's announcement would name a cell of a table, which the tree here is not.
    QAbstractItemView::currentChanged(current, previous);
    if (current.isValid() && hasFocus()) {
        TreeAccessibility::AnnounceFocus(*this, *TreeModel::NodeAt(current));
    }
}

void TreeRows::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
    QAbstractItemView::selectionChanged(selected, deselected);
}

void TreeRows::scrollContentsBy(int dx, int dy) {
    if (pobjModel->Changing()) {
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
    if (pblnFitting || pobjModel->Changing()) {
        return;
    }
    pblnFitting = true;
    for (const Node* node : RowsInView()) {
        int width = sizeHintForIndex(pobjModel->IndexOf(*node)).width();
        for (const Node* each = node; each; each = each->Parent()) {
            width += indentation();
        }
        plngWidestRow = std::max(plngWidestRow, width);
    }
    header()->resizeSection(0, std::max(viewport()->width(), plngWidestRow));
    pblnFitting = false;
}

bool TreeRows::OnCheckBox(const QModelIndex& index, const QPoint& position) const {
    if (!index.isValid()) {
        return false;
    }
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    option.rect = visualRect(index);
    return pobjDelegate->CheckBox(option, index).contains(position);
}

bool TreeRows::OnExpander(const QModelIndex& index, const QPoint& position) const {
    if (!index.isValid() || !pobjModel->hasChildren(index)) {
        return false;
    }
    QRect expander = visualRect(index);
    if (isRightToLeft()) {
        expander.setLeft(expander.right() + 1);
    } else {
        expander.setLeft(expander.left() - indentation());
    }
    expander.setWidth(indentation());
    return expander.contains(position);
}

} // namespace rivenfall
