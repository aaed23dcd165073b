#include "app/Application.h"
#include "window/frmMain.h"

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

/// Gives the new node @p added what makes it complete down to the last level of its tree.
void AddChildsFor(DataNode& added) {
    if (added.DataNodeType() == NodeKind::Compiler) {
        added.Childs()->Add()->Childs()->Add(u"${FILE1}"_s);
    } else if (added.Childs()) {
        added.Childs()->Add();
    }
}

} // namespace

void Application::pobjFormCmdAdd_Click() {
    const Node* item = pobjFormTvwContent->SelectedItem();
    if (!item) {
        return;
    }
    const std::shared_ptr<DataNode> selected = DataNodeOf(*item);
    const std::shared_ptr<DataNode> added = selected->Parent()->Add(selected->Value());
    AddChildsFor(*added);
    added->Move(selected->Index() + 1);
    Refresh();
    SelectNode(*added);
    pblnChanged = true;
}

void Application::pobjFormCmdRemove_Click() {
    const Node* item = pobjFormTvwContent->SelectedItem();
    if (!item) {
        return;
    }
    DataNodeOf(*item)->Delete();

    int& position = SelectedPosition();
    const Node* neighbour = pobjFormTvwContent->SelectedItem();
    if (neighbour->Previous()) {
        position = neighbour->Previous()->Index();
    } else if (neighbour->Next()) {
        // The node behind the deleted one stands at this position now.
    } else if (neighbour->Parent()) {
        position = neighbour->Parent()->Index();
    } else {
        position = 1;
    }
    pblnChanged = true;
    Refresh();
}

void Application::pobjFormCmdOk_Click() {
    const Node* item = pobjFormTvwContent->SelectedItem();
    if (!item) {
        return;
    }
    DataNodeOf(*item)->SetValue(pobjFormTxtValue->Text());
    pobjFormCmdOk->SetEnabled(false);
    pobjFormCmdCancel->SetEnabled(false);
    pblnEditing = false;
    pblnChanged = true;
    Refresh();
}

void Application::pobjFormCmdCancel_Click() {
    if (Node* item = pobjFormTvwContent->SelectedItem()) {
        pobjFormTvwContent_NodeClick(*item);
    }
}

void Application::pobjFormTxtValue_Change() {
    if (!HandleEvents()) {
        return;
    }
    pblnEditing = true;
    pobjFormCmdOk->SetEnabled(true);
    pobjFormCmdCancel->SetEnabled(true);
}

void Application::pobjFormTxtValue_KeyDown(KeyCode& Key, int Shift) {
    if (Shift != 0 || (Key != KeyCode::Down && Key != KeyCode::Up)) {
        return;
    }
    const int step = Key == KeyCode::Down ? 1 : -1;
    Key = KeyCode::None;
    const int target = pobjFormTvwContent->SelectedItem()->Index() + step;
    if (Node* const node = pobjFormTvwContent->Nodes().Item(target)) {
        node->SetSelected(true);
        pobjFormTvwContent_NodeClick(*node);
    }
}

} // namespace rivenfall
