#include "tree/TreeModel.h"

#include "tree/Node.h"

namespace rivenfall {

TreeModel::TreeModel(Node& root) : pobjRoot(root) {}

void TreeModel::BeginChanges() {
    pblnChanging = true;
    beginResetModel();
}

void TreeModel::EndChanges() {
    pblnChanging = false;
    endResetModel();
}

void TreeModel::NodeChanged(const Node& node) {
    const QModelIndex index = IndexOf(node);
    Q_EMIT dataChanged(index, index);
}

QModelIndex TreeModel::IndexOf(const Node& node) const {
    return createIndex(node.plngRow, 0, &node);
}

Node* TreeModel::NodeAt(const QModelIndex& index) {
    return static_cast<Node*>(index.internalPointer());
}

const Node& TreeModel::NodeOrRoot(const QModelIndex& index) const {
    return index.isValid() ? *NodeAt(index) : pobjRoot;
}

QModelIndex TreeModel::index(int row, int column, const QModelIndex& parent) const {
    const auto& children = NodeOrRoot(parent).pobjChildren;
    if (column != 0 || row < 0 || static_cast<std::size_t>(row) >= children.size()) {
        return {};
    }
    return createIndex(row, 0, children[static_cast<std::size_t>(row)].get());
}

QModelIndex TreeModel::parent(const QModelIndex& child) const {
    const Node* const node = child.isValid() ? NodeAt(child)->Parent() : nullptr;
    return node ? IndexOf(*node) : QModelIndex();
}

int TreeModel::rowCount(const QModelIndex& parent) const {
    return static_cast<int>(NodeOrRoot(parent).pobjChildren.size());
}

int TreeModel::columnCount(const QModelIndex&) const {
    return 1;
}

QVariant TreeModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) {
        return {};
    }
    const Node& node = *NodeAt(index);
    if (role == Qt::DisplayRole) {
        return node.Text();
    }
    if (role == Qt::CheckStateRole) {
        return node.Checked() ? Qt::Checked : Qt::Unchecked;
    }
    return {};
}

Qt::ItemFlags TreeModel::flags(const QModelIndex& index) const {
    constexpr Qt::ItemFlags Row =
        Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable;
    // The view looks up its set of open branches for every row that may have one, which is slow.
    return hasChildren(index) ? Row : Row | Qt::ItemNeverHasChildren;
}

} // namespace rivenfall
