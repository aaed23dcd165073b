#include "tree/Node.h"

#include "tree/Nodes.h"
#include "tree/TreeRows.h"

namespace rivenfall {

Node::Node(Nodes& nodes, Node* parent, const QString& key, const QString& text)
    : pobjNodes(&nodes), pobjParent(parent), pstrKey(key), pstrText(text) {}

Node::~Node() = default;

int Node::Index() const {
    pobjNodes->Number();
    return plngIndex;
}

Node* Node::Parent() const {
    return pobjParent->pobjParent ? pobjParent : nullptr;
}

Node* Node::Previous() const {
    return plngRow == 0 ? nullptr
                        : pobjParent->pobjChildren[static_cast<std::size_t>(plngRow) - 1].get();
}

Node* Node::Next() const {
    const std::size_t next = static_cast<std::size_t>(plngRow) + 1;
    return next < pobjParent->pobjChildren.size() ? pobjParent->pobjChildren[next].get() : nullptr;
}

void Node::SetChecked(bool checked) {
    if (pblnChecked == checked) {
        return;
    }
    pblnChecked = checked;
    pobjNodes->Rows().ShowChecked(*this);
}

void Node::SetExpanded(bool expanded) {
    if (pblnExpanded == expanded) {
        return;
    }
    pblnExpanded = expanded;
    pobjNodes->Rows().ShowExpanded(*this);
}

void Node::EnsureVisible() {
    pobjNodes->Rows().BringIntoView(*this);
}

bool Node::Selected() const {
    return pobjNodes->Rows().Selected() == this;
}

void Node::SetSelected(bool selected) {
    if (selected) {
        pobjNodes->Rows().SetSelected(this);
    } else if (Selected()) {
        pobjNodes->Rows().SetSelected(nullptr);
    }
}

} // namespace rivenfall
