#include "app/Application.h"
#include "data/NodeKey.h"
#include "window/frmMain.h"

namespace rivenfall {

std::shared_ptr<DataNode> Application::DataNodeOf(const Node& node) const {
    return NodeFromKey(node.Key(), *ActiveCollection());
}

/// The index of the selected tree node of the content on view.
int& Application::SelectedPosition() {
    return plngContentNode[static_cast<size_t>(plngContentActive) - 1];
}

/// Selects @p selected in the tree, which shows it, as a click on it would.
void Application::SelectNode(const DataNode& selected) {
    Node& node = *pobjFormTvwContent->Nodes().Item(selected.Key());
    node.SetSelected(true);
    pobjFormTvwContent_NodeClick(node);
}

void Application::pobjFormTvwContent_NodeClick(Node& node) {
    SetHandleEvents(false);
    SelectedPosition() = node.Index();
    const std::shared_ptr<DataNode> selected = DataNodeOf(node);
    node.EnsureVisible();
    const bool hasSiblings = selected->Parent()->Count() > 1;
    pobjFormCmdAdd->SetEnabled(true);
    pobjFormCmdRemove->SetEnabled(hasSiblings);
    pobjFormUdnMove->SetEnabled(hasSiblings);
    pobjFormTxtValue->SetEnabled(true);
    pobjFormTxtValue->SetText(selected->Value());
    pobjFormCmdOk->SetEnabled(false);
    pobjFormCmdCancel->SetEnabled(false);
    pblnEditing = false;
    SetHandleEvents(true);
}

/// The state of the controls over a tree without nodes: there is no value to show.
void Application::ShowNoSelection() {
    SetHandleEvents(false);
    for (Control* control : std::initializer_list<Control*>{pobjFormCmdAdd, pobjFormCmdRemove,
                                                            pobjFormUdnMove, pobjFormTxtValue}) {
        control->SetEnabled(false);
    }
    pobjFormTxtValue->SetText({});
    pobjFormCmdOk->SetEnabled(false);
    pobjFormCmdCancel->SetEnabled(false);
    pblnEditing = false;
    SetHandleEvents(true);
}

} // namespace rivenfall
