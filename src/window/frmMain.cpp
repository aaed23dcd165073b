#include "window/frmMain.h"

namespace rivenfall {

using namespace Qt::StringLiterals;

frmMain::frmMain()
    : Form(FormBorder::Fixed, 8655, 5295),
      mnuFile(*this, u"&File"_s),
      mnuFileNew(mnuFile, u"&New"_s),
      mnuFileOpen(mnuFile, u"O&pen"_s),
      mnuFileSave(mnuFile, u"&Save"_s),
      mnuFileSaveAs(mnuFile, u"Save &as"_s),
      mnuFileSep0(mnuFile, u"-"_s),
      mnuFileRun(mnuFile, u"&Run"_s),
      mnuFileShowOutput(mnuFile, u"Show &output"_s),
      mnuFileSep1(mnuFile, u"-"_s),
      mnuFileExit(mnuFile, u"E&xit"_s),
      mnuHelp(*this, u"&Help"_s),
      mnuHelpInfo(mnuHelp, u"&Info"_s, u"F1"_s),
      tabContent(Client()),
      picContent(Client()),
      tvwContent(picContent.Widget()),
      udnMove(picContent.Widget()),
      cmdNew(picContent.Widget(), u"&New"_s),
      cmdRemove(picContent.Widget(), u"&Remove"_s),
      txtValue(picContent.Widget()),
      txtDescription(picContent.Widget()),
      cmdOK(picContent.Widget(), u"Ok"_s),
      cmdCancel(picContent.Widget(), u"Cancel"_s),
      tvwContentFake(picContent.Widget()) {
    SetCaption(u"OMRA"_s);
    SetIcon(u":/icons"_s);
    PlaceControls();
    NameControls();

    for (Menu* entry : {&mnuFileSave, &mnuFileSaveAs, &mnuFileRun}) {
        entry->SetEnabled(false);
    }
    for (Control* control :
         std::initializer_list<Control*>{&tabContent, &tvwContent, &udnMove, &cmdNew, &cmdRemove,
                                         &txtValue, &txtDescription, &cmdOK, &cmdCancel}) {
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
    tabContent.SetAccessibleName(u"Content"_s);
    tvwContent.SetAccessibleName(u"Document"_s);
    tvwContentFake.SetReachable(false);
    udnMove.SetAccessibleName(u"Move"_s);
    udnMove.SetButtonNames(u"Move up"_s, u"Move down"_s);
    txtValue.SetAccessibleName(u"Value"_s);
    txtDescription.SetAccessibleName(u"Description"_s);
}

} // namespace rivenfall
