#include "app/Application.h"
#include "window/frmMain.h"

namespace rivenfall {

void Application::NodeMove(bool Down) {
    const Node* item = pobjFormTvwContent->SelectedItem();
    if (!item) {
        return;
    }
    const std::shared_ptr<DataNode> moved = DataNodeOf(*item);
    const int count = moved->Parent()->Count();
    int destination = moved->Index() + (Down ? 1 : -1);
    if (destination == 0) {
        destination = count;
    } else if (destination == count + 1) {
        destination = 1;
    }
    moved->Move(destination);
    pblnChanged = true;
    Refresh();
    SelectNode(*moved);
}

void Application::pobjFormUdnMove_DownClick() {
    NodeMove(true);
}

void Application::pobjFormUdnMove_UpClick() {
    NodeMove(false);
}

void Application::pobjFormTxtValue_OLEDragOver(const DataObject& Data, DropEffects& Effect, int,
                                               int, int, int, DragOverState State) {
    if (!Effect.testFlag(DropEffect::Copy)) {
        Effect = DropEffect::None;
        return;
    }
    if (State != DragOverState::Leave) {
        const bool offered =
            Data.GetFormat(DataObjectFormat::Text) || Data.GetFormat(DataObjectFormat::Files);
        Effect = offered ? DropEffect::Copy : DropEffect::None;
    }
}

void Application::pobjFormTxtValue_OLEDragDrop(const DataObject& Data, DropEffects& Effect, int,
                                               int, int, int) {
    if (!Effect.testFlag(DropEffect::Copy)) {
        Effect = DropEffect::None;
        return;
    }
    if (Data.GetFormat(DataObjectFormat::Text)) {
        pobjFormTxtValue->SetSelText(Data.GetData(DataObjectFormat::Text));
    } else if (Data.GetFormat(DataObjectFormat::Files)) {
        pobjFormTxtValue->SetSelText(Data.Files().Item(1));
    } else {
        Effect = DropEffect::None;
    }
}

} // namespace rivenfall
