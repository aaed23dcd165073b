#include "window/frmMain.h"

namespace rivenfall {

frmMain::frmMain()
    : Form(FormBorder::Fixed, 8655, 5295),
      mnuFile(*this, QStringLiteral("&File")),
      mnuFileNew(mnuFile, QStringLiteral("&New")),
      mnuFileOpen(mnuFile, QStringLiteral("O&pen")),
      mnuFileSave(mnuFile, QStringLiteral("&Save")),
      mnuFileSaveAs(mnuFile, QStringLiteral("Save &as")),
      mnuFileSep0(mnuFile, QStringLiteral("-")),
      mnuFileRun(mnuFile, QStringLiteral("&Run")),
      mnuFileShowOutput(mnuFile, QStringLiteral("Show &output")),
      mnuFileSep1(mnuFile, QStringLiteral("-")),
      mnuFileExit(mnuFile, QStringLiteral("E&xit")),
      mnuHelp(*this, QStringLiteral("&Help")),
      mnuHelpInfo(mnuHelp, QStringLiteral("&Info"), QStringLiteral("F1")),
      tabContent(Client()),
      picContent(Client()),
      tvwContent(picContent.Widget()),
      udnMove(picContent.Widget()),
      cmdNew(picContent.Widget(), QStringLiteral("&New")),
      cmdRemove(picContent.Widget(), QStringLiteral("&Remove")),
      txtValue(picContent.Widget()),
      txtDescription(picContent.Widget()),
      cmdOK(picContent.Widget(), QStringLiteral("Ok")),
      cmdCancel(picContent.Widget(), QStringLiteral("Cancel")),
      tvwContentFake(picContent.Widget()) {
    SetCaption(QStringLiteral("OMRA"));
    SetIcon(QStringLiteral(":/icons"));
    PlaceControls();
    NameControls();

    for (Menu* entry : {&mnuFileSave, &mnuFileSaveAs, &mnuFileRun}) {
        entry->SetEnabled(false);
    }
    for (Control* control : {static_cast<Control*>(&tabContent), static_cast<Control*>(&tvwContent),
                             static_cast<Control*>(&udnMove), static_cast<Control*>(&cmdNew),
                             static_cast<Control*>(&cmdRemove), static_cast<Control*>(&txtValue),
                             static_cast<Control*>(&txtDescription), static_cast<Control*>(&cmdOK),
                             static_cast<Control*>(&cmdCancel)}) {
        control->SetEnabled(false);
    }
    txtDescription.SetVisible(false);
    tvwContentFake.SetVisible(false);
    tvwContent.ZOrder(0);

    SetDefaultButton(cmdOK);
    SetCancelButton(cmdCancel);
    SetHomeControl(txtValue);
    AskAtSessionEnd();
}

void frmMain::PlaceControls() {
    tabContent.Move(120, 0, 8415, 5175);
    picContent.Move(240, 360, 8175, 4695);
    tvwContent.Move(0, 0, 7860, 4215);
    udnMove.Move(7920, 0, 240, 4215);
    cmdNew.Move(0, 4320, 615, 255);
    cmdRemove.Move(720, 4320, 855, 255);
    txtValue.Move(1680, 4320, 5055, 285);
    txtDescription.Move(4800, 4320, 1935, 285);
    cmdOK.Move(6840, 4320, 495, 255);
    cmdCancel.Move(7440, 4320, 735, 255);
    tvwContentFake.Move(0, 0, 7860, 4215);
}

void frmMain::NameControls() {
    tabContent.SetAccessibleName(QStringLiteral("Content"));
    tvwContent.SetAccessibleName(QStringLiteral("Document"));
    tvwContentFake.SetReachable(false);
    udnMove.SetAccessibleName(QStringLiteral("Move"));
    udnMove.SetButtonNames(QStringLiteral("Move up"), QStringLiteral("Move down"));
    txtValue.SetAccessibleName(QStringLiteral("Value"));
    txtDescription.SetAccessibleName(QStringLiteral("Description"));
}

} // namespace rivenfall
