#pragma once

#include "controls/CommandButton.h"
#include "controls/Form.h"
#include "controls/Menu.h"
#include "controls/PictureBox.h"
#include "controls/TabStrip.h"
#include "controls/TextBox.h"
#include "controls/UpDown.h"
#include "tree/TreeView.h"

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
