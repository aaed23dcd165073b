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
    NodeAccessibility(TreeAccessibility& tree, Node& node) : Tree(tree), Item(node) {}

    const Node& Subject() const { return Item; }

    bool isValid() const override { return Tree.isValid(); }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return Tree.window(); }
    QAccessible::Role role() const override { return QAccessible::TreeItem; }

    QAccessibleInterface* parent() const override {
        Node* const parent = Item.Parent();
        return parent ? Tree.InterfaceOf(*parent) : &Tree;
    }

    int childCount() const override { return Rows().Model().rowCount(Index()); }

    QAccessibleInterface* child(int index) const override {
        Node* const node = TreeModel::NodeAt(Rows().Model().index(index, 0, Index()));
        return node ? Tree.InterfaceOf(*node) : nullptr;
    }

    int indexOfChild(const QAccessibleInterface* child) const override {
        const auto* const item = dynamic_cast<const NodeAccessibility*>(child);
        return item && item->Item.Parent() == &Item ? item->Index().row() : -1;
    }

    QAccessibleInterface* childAt(int, int) const override { return nullptr; }

    QString text(QAccessible::Text text) const override {
        if (text == QAccessible::Name) {
            // In the order of what runs, without the marks of what is shown.
            const bool blank = QStringView(Item.Text()).trimmed().isEmpty();
            return blank ? u"(empty)"_s : Item.Text().left(LongestRow);
        }
        if (text == QAccessible::Description) {
            int level = 1;
            for (const Node* each = Item.Parent(); each; each = each->Parent()) {
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
        if (std::find(rows.begin(), rows.end(), &Item) == rows.end()) {
            return {};
        }
        const QRect row = Rows().visualRect(Index());
        return {Rows().viewport()->mapToGlobal(row.topLeft()), row.size()};
    }

    QAccessible::State state() const override {
        const std::vector<Node*> rows = Rows().RowsInView();
        QAccessible::State state;
        state.disabled = !Rows().isEnabled();
        state.invisible = &TreeRows::VisibleAncestorOrSelf(Item) != &Item || !Rows().isVisible();
        state.offscreen = std::find(rows.begin(), rows.end(), &Item) == rows.end();
        state.selectable = true;
        state.selected = Item.Selected();
        state.focusable = true;
        state.focused = Item.Selected() && Rows().hasFocus();
        state.checkable = true;
        state.checked = Item.Checked();
        state.expandable = Rows().Model().hasChildren(Index());
        state.expanded = state.expandable && Item.Expanded();
        state.collapsed = state.expandable && !Item.Expanded();
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
            names.append(Item.Expanded() ? CollapseAction : ExpandAction);
        }
        return names;
    }

    void doAction(const QString& name) override {
        if (!actionNames().contains(name)) {
            return;
        }
        if (name == pressAction()) {
            Rows().Choose(Item);
        } else if (name == toggleAction()) {
            Rows().ToggleCheck(Item);
        } else {
            Rows().ToggleBranch(Item);
        }
    }

    QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    TreeRows& Rows() const { return *Tree.Rows(); }
    QModelIndex Index() const { return Rows().Model().IndexOf(Item); }

    TreeAccessibility& Tree;
    Node& Item;
};

QAccessibleInterface* PresentTreeRows(const QString& className, QObject* object) {
    if (className != QLatin1StringView(TreeRows::staticMetaObject.className())) {
        return nullptr;
    }
    return new TreeAccessibility(*static_cast<TreeRows*>(object));
}

/// The object to announce for a node, or null if nobody listens.
QAccessibleInterface* Listening(TreeRows& rows, const Node& node) {
    if (!QAccessible::isActive() || !rows.Reachable()) {
        return nullptr;
    }
    auto* const tree =
        dynamic_cast<TreeAccessibility*>(QAccessible::queryAccessibleInterface(&rows));
    return tree ? tree->InterfaceOf(node) : nullptr;
}

} // namespace

void TreeAccessibility::Install() {
    QAccessible::installFactory(PresentTreeRows);
}

void TreeAccessibility::AnnounceFocus(TreeRows& rows, const Node& node) {
    QAccessibleInterface* const item = Listening(rows, node);
    if (!item) {
        return;
    }
    QAccessibleEvent focus(item, QAccessible::Focus);
    QAccessible::updateAccessibility(&focus);
}

void TreeAccessibility::AnnounceSelection(TreeRows& rows, const Node& node) {
    QAccessibleInterface* const item = Listening(rows, node);
    if (!item) {
        return;
    }
    QAccessibleEvent selection(item, node.Selected() ? QAccessible::Selection
                                                     : QAccessible::SelectionRemove);
    QAccessible::updateAccessibility(&selection);
}

void TreeAccessibility::AnnounceCheck(TreeRows& rows, const Node& node) {
    QAccessibleInterface* const item = Listening(rows, node);
    if (!item) {
        return;
    }
    QAccessible::State changed;
    changed.checked = true;
    QAccessibleStateChangeEvent event(item, changed);
    QAccessible::updateAccessibility(&event);
}

void TreeAccessibility::AnnounceBranch(TreeRows& rows, const Node& node) {
    QAccessibleInterface* const item = Listening(rows, node);
    if (!item) {
        return;
    }
    QAccessible::State changed;
    changed.expanded = true;
    QAccessibleStateChangeEvent event(item, changed);
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
