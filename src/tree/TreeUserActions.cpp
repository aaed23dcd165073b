#include "tree/TreeRows.h"

#include "tree/Node.h"
#include "tree/TreeAccessibility.h"

#include <QKeyEvent>
#include <QMouseEvent>

#include <utility>

namespace rivenfall {

void TreeRows::BranchChanged(const QModelIndex& index, bool expanded) {
    Node& node = *TreeModel::NodeAt(index);
    if (node.pblnExpanded == expanded || node.pobjChildren.empty()) {
        return; // The view follows the node, or speaks of a row without a branch.
    }
    node.pblnExpanded = expanded;
    TreeAccessibility::Announce(*this, node, RowChange::Branch);
    Raise(expanded ? &TreeRows::BranchOpened : &TreeRows::BranchClosed, node);
}

void TreeRows::Choose(Node& node) {
    ApplyChanges();
    PerformUserAction([&] {
        pblnRowChosen = true;
        selectionModel()->setCurrentIndex(pobjModel.IndexOf(node),
                                          QItemSelectionModel::ClearAndSelect);
    });
}

void TreeRows::ToggleCheck(Node& node) {
    PerformUserAction([&] {
        node.SetChecked(!node.Checked());
        Raise(&TreeRows::CheckChanged, node);
    });
}

void TreeRows::ToggleBranch(Node& node) {
    ApplyChanges();
    PerformUserAction([&] { setExpanded(pobjModel.IndexOf(node), !node.Expanded()); });
}

template <typename Action>
void TreeRows::PerformUserAction(Action action) {
    ++plngUserActions;
    action();
    --plngUserActions;
    FinishUserAction();
}

void TreeRows::Raise(void (TreeRows::*signal)(Node&), Node& node) {
    pobjPendingEvents.push_back({signal, &node});
}

void TreeRows::FinishUserAction() {
    if (plngUserActions > 0 || pobjModel.Changing()) {
        return;
    }
    Node* const current = TreeModel::NodeAt(currentIndex());
    if (current && (current != pobjSelected || pblnRowChosen)) {
        pobjSelected = current;
        ShowSelection();
        AnnounceSelection();
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
    ApplyChanges();
    bool handled = false;
    PerformUserAction([&] { handled = QTreeView::event(event); });
    if (event->type() == QEvent::Paint && hasFocus()) {
        DrawFocusFrame();
    }
    return handled;
}

bool TreeRows::viewportEvent(QEvent* event) {
    ApplyChanges();
    bool handled = false;
    PerformUserAction([&] { handled = QTreeView::viewportEvent(event); });
    return handled;
}

void TreeRows::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        return;
    }
    if (pblnReachable) {
        setFocus(Qt::MouseFocusReason);
    }
    const QPoint position = event->position().toPoint();
    const QModelIndex index = indexAt(position);
    const bool box = OnCheckBox(index, position);
    pobjPressedBox = box ? TreeModel::NodeAt(index) : nullptr;
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
    if (event->button() != Qt::LeftButton) {
        return;
    }
    if (!pobjPressedBox) {
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
    if (event->button() != Qt::LeftButton) {
        return;
    }
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
            expandRecursively(pobjModel.IndexOf(*shown));
            // Who looks at the rows in the middle of it has what lies below laid out as closed.
            scheduleDelayedItemsLayout();
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
        const QModelIndex shown = pobjModel.IndexOf(VisibleAncestorOrSelf(*pobjSelected));
        if (shown != currentIndex()) {
            selectionModel()->setCurrentIndex(shown, QItemSelectionModel::NoUpdate);
        }
    }
    return QTreeView::moveCursor(action, modifiers);
}

QItemSelectionModel::SelectionFlags TreeRows::selectionCommand(const QModelIndex& index,
                                                               const QEvent*) const {
    return index.isValid() ? QItemSelectionModel::ClearAndSelect : QItemSelectionModel::NoUpdate;
}

bool TreeRows::OnCheckBox(const QModelIndex& index, const QPoint& position) const {
    if (!index.isValid()) {
        return false;
    }
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    option.rect = visualRect(index);
    return pobjDelegate.CheckBox(option, index).contains(position);
}

bool TreeRows::OnExpander(const QModelIndex& index, const QPoint& position) const {
    if (!index.isValid() || !pobjModel.hasChildren(index)) {
        return false;
    }
    // A row's own place begins behind its expander.
    const QRect row = visualRect(index);
    const int before = isRightToLeft() ? position.x() - row.right() : row.left() - position.x();
    return before > 0 && before <= indentation();
}

} // namespace rivenfall
