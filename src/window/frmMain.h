#pragma once

#include "platform/CommandButton.h"
#include "platform/Form.h"
#include "platform/Menu.h"
#include "platform/PictureBox.h"
#include "platform/TabStrip.h"
#include "platform/TextBox.h"
#include "platform/TreeView.h"
#include "platform/UpDown.h"

namespace rivenfall {

/// The main window: a fixed arrangement of controls without code of its own. All its behaviour is
/// in the handlers of Application.
class frmMain : public Form {
    Q_OBJECT

public:
    /// Makes the window with its controls in their state before the first document, hidden.
    frmMain();

    Menu mnuFile;
    Menu mnuFileNew;
    Menu mnuFileOpen;
    Menu mnuFileSave;
    Menu mnuFileSaveAs;
    Menu mnuFileSep0;
    Menu mnuFileRun;
    Menu mnuFileShowOutput;
    Menu mnuFileSep1;
    Menu mnuFileExit;
    Menu mnuHelp;
    Menu mnuHelpInfo;

    // In the order of the Tab key.
    TabStrip tabContent;
    PictureBox picContent;
    TreeView tvwContent;
    UpDown udnMove;
    CommandButton cmdNew;
    CommandButton cmdRemove;
    TextBox txtValue;
    TextBox txtDescription;
    CommandButton cmdOK;
    CommandButton cmdCancel;
    /// Stands in for the tree while that is rebuilt.
    TreeView tvwContentFake;

private:
    void PlaceControls();
    void NameControls();
};

} // namespace rivenfall
