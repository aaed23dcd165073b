#include "app/Application.h"
#include "window/frmMain.h"

namespace rivenfall {

void Application::pobjFormTvwContent_NodeCheck(Node& node) {
    if (!HandleEvents()) {
        return;
    }
    const std::shared_ptr<DataNode> checked = DataNodeOf(node);
    checked->SetActive(node.Checked());
    pblnChanged = true;
    for (const std::shared_ptr<DataNode>& sibling : *checked->Parent()) {
        pobjFormTvwContent->Nodes().Item(sibling->Key())->SetChecked(sibling->Active());
    }
}

void Application::pobjFormTvwContent_Collapse(Node& node) {
    if (HandleEvents()) {
        DataNodeOf(node)->SetExpanded(false);
    }
}

void Application::pobjFormTvwContent_Expand(Node& node) {
    if (HandleEvents()) {
        DataNodeOf(node)->SetExpanded(true);
    }
}

void Application::pobjFormTabContent_Click() {
    const int content = pobjFormTabContent->SelectedItem().Index();
    if (content == plngContentActive) {
        return;
    }
    if (pblnEditing) {
        ShowNoSelection();
    }
    plngContentActive = content;
    Refresh();
}

} // namespace rivenfall
