#include "tree/Nodes.h"

#include "tree/Node.h"
#include "tree/TreeRows.h"

namespace rivenfall {

Nodes::Nodes(TreeRows& rows) : pobjRows(rows), pobjRoot(new Node(*this, nullptr, {}, {})) {}

Nodes::~Nodes() = default;

Node& Nodes::Add(const QString& key, const QString& text) {
    return Insert(*pobjRoot, pobjRoot->pobjChildren.size(), key, text);
}

Node& Nodes::Add(Node& relative, TreeRelationship relationship, const QString& key,
                 const QString& text) {
    if (relationship == tvwChild) {
        return Insert(relative, relative.pobjChildren.size(), key, text);
    }
    return Insert(*relative.pobjParent, static_cast<std::size_t>(relative.plngRow) + 1, key, text);
}

Node& Nodes::Add(const QString& relative, TreeRelationship relationship, const QString& key,
                 const QString& text) {
    return Add(*Item(relative), relationship, key, text);
}

Node& Nodes::Insert(Node& parent, std::size_t row, const QString& key, const QString& text) {
    pobjRows.BeginChanges();

    auto& siblings = parent.pobjChildren;
    const auto place = siblings.begin() + static_cast<std::ptrdiff_t>(row);
    Node& node =
        **siblings.insert(place, std::unique_ptr<Node>(new Node(*this, &parent, key, text)));
    for (std::size_t i = row; i < siblings.size(); ++i) {
        siblings[i]->plngRow = static_cast<int>(i);
    }
    ++plngCount;
    if (!pobjByKey.isEmpty()) {
        pobjByKey.insert(key, &node);
    }
    pblnNumbered = false;
    return node;
}

void Nodes::Clear() {
    if (plngCount == 0) {
        return;
    }
    pobjRows.BeginChanges();
    pobjRows.ForgetAll();
    pobjRoot->pobjChildren.clear();
    pobjOrder.clear();
    pobjByKey.clear();
    pblnNumbered = true;
    plngCount = 0;
}

void Nodes::Remove(const QString& key) {
    Node* const node = Item(key);
    pobjRows.BeginChanges();

    Node* neighbour = node->Next();
    if (!neighbour) {
        neighbour = node->Previous();
    }
    if (!neighbour) {
        neighbour = node->Parent();
    }
    for (Node* each = pobjRows.Selected(); each; each = each->Parent()) {
        if (each == node) {
            pobjRows.SetSelected(neighbour);
        }
    }

    pblnNumbered = false;
    ForgetBranch(*node);

    auto& siblings = node->pobjParent->pobjChildren;
    const std::size_t row = static_cast<std::size_t>(node->plngRow);
    siblings.erase(siblings.begin() + node->plngRow);
    for (std::size_t i = row; i < siblings.size(); ++i) {
        siblings[i]->plngRow = static_cast<int>(i);
    }
}

void Nodes::ForgetBranch(Node& node) {
    for (const auto& child : node.pobjChildren) {
        ForgetBranch(*child);
    }
    pobjRows.Forget(node);
    if (!pobjByKey.isEmpty()) {
        pobjByKey.remove(node.pstrKey);
    }
    --plngCount;
}

Node* Nodes::Item(int index) const {
    if (index < 1 || index > plngCount) {
        return nullptr;
    }
    Number();
    return pobjOrder[static_cast<std::size_t>(index) - 1];
}

Node* Nodes::Item(const QString& key) const {
    if (pobjByKey.isEmpty()) {
        Number();
        pobjByKey.reserve(plngCount);
        for (Node* each : pobjOrder) {
            pobjByKey.insert(each->pstrKey, each);
        }
    }
    return pobjByKey.value(key);
}

void Nodes::Number() const {
    if (pblnNumbered) {
        return;
    }
    pobjOrder.clear();
    pobjOrder.reserve(static_cast<std::size_t>(plngCount));
    const auto number = [this](const Node& parent, const auto& self) -> void {
        for (const auto& child : parent.pobjChildren) {
            pobjOrder.push_back(child.get());
            child->plngIndex = static_cast<int>(pobjOrder.size());
            self(*child, self);
        }
    };
    number(*pobjRoot, number);
    pblnNumbered = true;
}

} // namespace rivenfall
