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

void Application::pobjFormTxtValue_OLEDragOver(const DataObject& Data, int& Effect, int, int, int,
                                               int, int State) {
    if ((Effect & DropEffectCopy) == 0) {
        Effect = DropEffectNone;
        return;
    }
    if (State != DragLeave) {
        const bool offered = Data.GetFormat(DataObjectText) || Data.GetFormat(DataObjectFiles);
        Effect = offered ? DropEffectCopy : DropEffectNone;
    }
}

void Application::pobjFormTxtValue_OLEDragDrop(const DataObject& Data, int& Effect, int, int, int,
                                               int) {
    if ((Effect & DropEffectCopy) == 0) {
        Effect = DropEffectNone;
        return;
    }
    if (Data.GetFormat(DataObjectText)) {
        pobjFormTxtValue->SetSelText(Data.GetData(DataObjectText));
    } else if (Data.GetFormat(DataObjectFiles)) {
        pobjFormTxtValue->SetSelText(Data.Files().Item(1));
    } else {
        Effect = DropEffectNone;
    }
}

} // namespace rivenfall
