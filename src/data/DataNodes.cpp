#include "data/DataNodes.h"

#include "data/DataNode.h"
#include "support/Title.h"
#include "system/MessageBox.h"

#include <algorithm>
#include <utility>

namespace rivenfall {

using namespace Qt::StringLiterals;

DataNodes::DataNodes() = default;

DataNodes::~DataNodes() {
    Dispose();
}

std::shared_ptr<DataNode> DataNodes::Add(const QString& Value) {
    std::shared_ptr<DataNode> node = MakeNode();
    node->SetValue(Value);
    pobjItems.push_back(node);
    AdjustIndexes(Count());
    node->SetActive(true);
    RaiseAdd(*node);
    return node;
}

void DataNodes::Clear() {
    for (int position = Count(); position >= 1; --position) {
        Remove(position);
    }
}

std::shared_ptr<DataNode> DataNodes::Item(int Index) const {
    return pobjItems.at(static_cast<size_t>(Index) - 1);
}

void DataNodes::Remove(int Index) {
    Item(Index)->Delete();
}

void DataNodes::SetDataNodesType(NodeKind kind) {
    plngDataNodesType = kind;
}

void DataNodes::SetEvents(DataNodesEvents events) {
    pobjEvents = std::make_unique<DataNodesEvents>(std::move(events));
}

void DataNodes::Dispose() {
    Clear();
    Items().swap(pobjItems);
    pobjParent = nullptr;
}

void DataNodes::TakeNodesOf(DataNodes& source) {
    Q_ASSERT(source.DataNodesType() == plngDataNodesType);
    Clear();
    pobjItems = std::exchange(source.pobjItems, {});
    for (const std::shared_ptr<DataNode>& node : pobjItems) {
        node->SetParent(this);
    }
}

/// Renumbers the nodes from the position @p first on; those before it stand where they were.
void DataNodes::AdjustIndexes(int first) {
    for (int position = first; position <= Count(); ++position) {
        pobjItems[static_cast<size_t>(position) - 1]->SetIndex(position);
    }
}

void DataNodes::MoveItem(DataNode& DN, int DestinationIndex) {
    if (DestinationIndex > Count() || DestinationIndex < 1) {
        MessageBox(u"DestinationIndex out of range"_s, MessageBoxStyle::Exclamation,
                   ProgramTitle());
        return;
    }
    const int former = DN.Index();
    const std::shared_ptr<DataNode> node = Item(former);
    pobjItems.erase(pobjItems.begin() + former - 1);
    pobjItems.insert(pobjItems.begin() + DestinationIndex - 1, node);
    AdjustIndexes(std::min(former, DestinationIndex));
    RaiseMove(DN);
}

void DataNodes::SetParent(DataNode* parent) {
    pobjParent = parent;
}

void DataNodes::RaiseAdd(DataNode& DN) {
    if (pobjParent) {
        pobjParent->pobjChilds_Add(DN);
    } else if (pobjEvents && pobjEvents->Add) {
        pobjEvents->Add(DN);
    }
}

void DataNodes::RaiseMove(DataNode& DN) {
    if (pobjParent) {
        pobjParent->pobjChilds_Move(DN);
    } else if (pobjEvents && pobjEvents->Move) {
        pobjEvents->Move(DN);
    }
}

void DataNodes::RaiseRemove(DataNode& DN) {
    if (pobjParent) {
        pobjParent->pobjChilds_Remove(DN);
    } else if (pobjEvents && pobjEvents->Remove) {
        pobjEvents->Remove(DN);
    }
}

/// Gives the node that was taken out, which may hold the last reference to it.
std::shared_ptr<DataNode> DataNodes::RemoveItem(int position) {
    std::shared_ptr<DataNode> node = Item(position);
    RaiseRemove(*node);
    pobjItems.erase(pobjItems.begin() + position - 1);
    AdjustIndexes(position);
    return node;
}

/// A node that belongs here but isn't listed yet.
std::shared_ptr<DataNode> DataNodes::MakeNode() {
    auto node = std::make_shared<DataNode>();
    node->SetParent(this);
    node->SetDataNodeType(plngDataNodesType);
    return node;
}

} // namespace rivenfall
