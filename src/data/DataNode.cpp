#include "data/DataNode.h"

#include "data/DataNodes.h"
#include "data/NodeKey.h"

namespace rivenfall {

DataNode::DataNode() : pobjChilds(std::make_unique<DataNodes>()) {
    pobjChilds->SetParent(this);
}

DataNode::~DataNode() = default;

void DataNode::SetActive(bool active) {
    pblnActive = active;
    if (active && !MayHoldNodes(plngDataNodeType)) {
        for (const std::shared_ptr<DataNode>& sibling : *pobjParent) {
            if (sibling->Index() != plngIndex) {
                sibling->SetActive(false);
            }
        }
    }
}

void DataNode::Delete() {
    if (pobjChilds) {
        pobjChilds->Dispose();
        pobjChilds.reset();
    }
    // The list's reference has gone with the next line: this one carries the node to the end.
    const std::shared_ptr<DataNode> self = pobjParent->RemoveItem(plngIndex);
    plngIndex = 0;
    pstrValue.clear();
    pobjParent = nullptr;
}

void DataNode::SetExpanded(bool expanded) {
    pblnExpanded = expanded;
}

QString DataNode::Key() const {
    switch (plngDataNodeType) {
    case NodeKind::Parameter:
    case NodeKind::VariableValue:
        return MakeNodeKey(pobjParent->Parent()->Index(), plngIndex, 0);
    case NodeKind::ParameterValue: {
        const DataNode* parameter = pobjParent->Parent();
        return MakeNodeKey(parameter->Parent()->Parent()->Index(), parameter->Index(), plngIndex);
    }
    default:
        return MakeNodeKey(plngIndex, 0, 0);
    }
}

void DataNode::Move(int DestinationIndex) {
    pobjParent->MoveItem(*this, DestinationIndex);
}

QString DataNode::Text() const {
    static const QString blanks(64, u' ');
    return pstrValue.isEmpty() ? blanks : pstrValue;
}

void DataNode::SetValue(const QString& value) {
    pstrValue = value;
}

void DataNode::SetDataNodeType(NodeKind kind) {
    plngDataNodeType = kind;
    switch (kind) {
    case NodeKind::Compiler:
        pobjChilds->SetDataNodesType(NodeKind::Parameter);
        break;
    case NodeKind::Parameter:
        pobjChilds->SetDataNodesType(NodeKind::ParameterValue);
        break;
    case NodeKind::Variable:
        pobjChilds->SetDataNodesType(NodeKind::VariableValue);
        break;
    default:
        pobjChilds.reset();
    }
}

void DataNode::SetIndex(int index) {
    plngIndex = index;
}

void DataNode::SetParent(DataNodes* parent) {
    pobjParent = parent;
}

void DataNode::pobjChilds_Add(DataNode& DN) {
    pobjParent->RaiseAdd(DN);
}

void DataNode::pobjChilds_Move(DataNode& DN) {
    pobjParent->RaiseMove(DN);
}

void DataNode::pobjChilds_Remove(DataNode& DN) {
    pobjParent->RaiseRemove(DN);
}

} // namespace rivenfall
