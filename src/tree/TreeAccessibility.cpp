#include "tree/TreeAccessibility.h"

#include "tree/Node.h"
#include "tree/RowText.h"
#include "tree/TreeModel.h"
#include "tree/TreeRows.h"

#include <algorithm>

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

const QString ExpandAction = u"Expand"_s;
const QString CollapseAction = u"Collapse"_s;

/// One node as a screen reader sees it. Its actions are the user's own.
class NodeAccessibility : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    NodeAccessibility(TreeAccessibility& tree, Node& node) : pobjTree(tree), pobjItem(node) {}

    const Node& Subject() const { return pobjItem; }

    bool isValid() const override { return pobjTree.isValid(); }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return pobjTree.window(); }
    QAccessible::Role role() const override { return QAccessible::TreeItem; }

    QAccessibleInterface* parent() const override {
        Node* const parent = pobjItem.Parent();
        return parent ? pobjTree.InterfaceOf(*parent) : &pobjTree;
    }

    int childCount() const override { return Rows().Model().rowCount(Index()); }

    QAccessibleInterface* child(int index) const override {
        Node* const node = TreeModel::NodeAt(Rows().Model().index(index, 0, Index()));
        return node ? pobjTree.InterfaceOf(*node) : nullptr;
    }

    int indexOfChild(const QAccessibleInterface* child) const override {
        const auto* const item = dynamic_cast<const NodeAccessibility*>(child);
        return item && item->pobjItem.Parent() == &pobjItem ? item->Index().row() : -1;
    }

    QAccessibleInterface* childAt(int, int) const override { return nullptr; }

    QString text(QAccessible::Text text) const override {
        if (text == QAccessible::Name) {
            // In the order of what runs, without the marks of what is shown.
            const bool blank = QStringView(pobjItem.Text()).trimmed().isEmpty();
            return blank ? u"(empty)"_s : pobjItem.Text().left(LongestRow);
        }
        if (text == QAccessible::Description) {
            int level = 1;
            for (const Node* each = pobjItem.Parent(); each; each = each->Parent()) {
                ++level;
            }
            const QModelIndex index = Index();
            return u"Level %1, %2 of %3"_s.arg(level)
                .arg(index.row() + 1)
                .arg(Rows().Model().rowCount(index.parent()));
        }
        return {};
    }

    void setText(QAccessible::Text, const QString&) override {}

    QRect rect() const override {
        const std::vector<Node*> rows = Rows().RowsInView();
        if (std::find(rows.begin(), rows.end(), &pobjItem) == rows.end()) {
            return {};
        }
        const QRect row = Rows().visualRect(Index());
        return {Rows().viewport()->mapToGlobal(row.topLeft()), row.size()};
    }

    QAccessible::State state() const override {
        QAccessible::State state;
        state.disabled = !Rows().isEnabled();
        state.invisible =
            &TreeRows::VisibleAncestorOrSelf(pobjItem) != &pobjItem || !Rows().isVisible();
        state.offscreen = rect().isEmpty();
        state.selectable = true;
        state.selected = pobjItem.Selected();
        state.focusable = true;
        state.focused = pobjItem.Selected() && Rows().hasFocus();
        state.checkable = true;
        state.checked = pobjItem.Checked();
        state.expandable = Rows().Model().hasChildren(Index());
        state.expanded = state.expandable && pobjItem.Expanded();
        state.collapsed = state.expandable && !pobjItem.Expanded();
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ActionInterface) {
            return static_cast<QAccessibleActionInterface*>(this);
        }
        return nullptr;
    }

    QStringList actionNames() const override {
        if (!Rows().isEnabled()) {
            return {};
        }
        QStringList names{pressAction(), toggleAction()};
        if (Rows().Model().hasChildren(Index())) {
            names.append(pobjItem.Expanded() ? CollapseAction : ExpandAction);
        }
        return names;
    }

    void doAction(const QString& name) override {
        if (!actionNames().contains(name)) {
            return;
        }
        if (name == pressAction()) {
            Rows().Choose(pobjItem);
        } else if (name == toggleAction()) {
            Rows().ToggleCheck(pobjItem);
        } else {
            Rows().ToggleBranch(pobjItem);
        }
    }

    QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    TreeRows& Rows() const { return *pobjTree.Rows(); }
    QModelIndex Index() const { return Rows().Model().IndexOf(pobjItem); }

    TreeAccessibility& pobjTree;
    Node& pobjItem;
};

QAccessibleInterface* PresentTreeRows(const QString& className, QObject* object) {
    if (className != QLatin1StringView(TreeRows::staticMetaObject.className())) {
        return nullptr;
    }
    return new TreeAccessibility(*static_cast<TreeRows*>(object));
}

} // namespace

void TreeAccessibility::Install() {
    QAccessible::installFactory(PresentTreeRows);
}

void TreeAccessibility::Announce(TreeRows& rows, const Node& node, RowChange change) {
    if (!QAccessible::isActive() || !rows.Reachable()) {
        return;
    }
    auto* const tree =
        dynamic_cast<TreeAccessibility*>(QAccessible::queryAccessibleInterface(&rows));
    if (!tree) {
        return;
    }
    if (change == RowChange::Check || change == RowChange::Branch) {
        QAccessible::State changed;
        changed.checked = change == RowChange::Check;
        changed.expanded = change == RowChange::Branch;
        QAccessibleStateChangeEvent event(tree->InterfaceOf(node), changed);
        QAccessible::updateAccessibility(&event);
        return;
    }
    const auto selection = node.Selected() ? QAccessible::Selection : QAccessible::SelectionRemove;
    QAccessibleEvent event(tree->InterfaceOf(node),
                           change == RowChange::Focus ? QAccessible::Focus : selection);
    QAccessible::updateAccessibility(&event);
}

TreeAccessibility::TreeAccessibility(TreeRows& rows) : QAccessibleWidget(&rows, QAccessible::Tree) {
    rows.SetAccessibility(this);
}

TreeAccessibility::~TreeAccessibility() {
    ForgetAll();
    if (TreeRows* const rows = Rows()) {
        rows->SetAccessibility(nullptr);
    }
}

TreeRows* TreeAccessibility::Rows() const {
    return qobject_cast<TreeRows*>(object());
}

QAccessibleInterface* TreeAccessibility::InterfaceOf(const Node& node) {
    if (const auto known = phndNodes.constFind(&node); known != phndNodes.constEnd()) {
        return QAccessible::accessibleInterface(*known);
    }
    auto* const item = new NodeAccessibility(*this, const_cast<Node&>(node));
    phndNodes.insert(&node, QAccessible::registerAccessibleInterface(item));
    return item;
}

void TreeAccessibility::Forget(const Node& node) {
    if (const auto known = phndNodes.constFind(&node); known != phndNodes.constEnd()) {
        QAccessible::deleteAccessibleInterface(*known);
        phndNodes.erase(known);
    }
}

void TreeAccessibility::ForgetAll() {
    for (const QAccessible::Id id : std::as_const(phndNodes)) {
        QAccessible::deleteAccessibleInterface(id);
    }
    phndNodes.clear();
}

int TreeAccessibility::childCount() const {
    return Rows()->Reachable() ? Rows()->Model().rowCount() : 0;
}

QAccessibleInterface* TreeAccessibility::child(int index) const {
    Node* const node = TreeModel::NodeAt(Rows()->Model().index(index, 0));
    return node && Rows()->Reachable() ? const_cast<TreeAccessibility*>(this)->InterfaceOf(*node)
                                       : nullptr;
}

int TreeAccessibility::indexOfChild(const QAccessibleInterface* child) const {
    const auto* const item = dynamic_cast<const NodeAccessibility*>(child);
    return item && !item->Subject().Parent() ? Rows()->Model().IndexOf(item->Subject()).row() : -1;
}

QAccessibleInterface* TreeAccessibility::childAt(int x, int y) const {
    const QPoint position = Rows()->viewport()->mapFromGlobal(QPoint(x, y));
    Node* const node = Rows()->RowAt(position);
    return node && Rows()->Reachable() ? const_cast<TreeAccessibility*>(this)->InterfaceOf(*node)
                                       : nullptr;
}

QAccessibleInterface* TreeAccessibility::focusChild() const {
    Node* const node = Rows()->Selected();
    return node && Rows()->hasFocus() ? const_cast<TreeAccessibility*>(this)->InterfaceOf(*node)
                                      : nullptr;
}

QAccessible::State TreeAccessibility::state() const {
    QAccessible::State state = QAccessibleWidget::state();
    if (!Rows()->Reachable()) {
        state.invisible = true;
        state.focusable = false;
    }
    return state;
}

} // namespace rivenfall
