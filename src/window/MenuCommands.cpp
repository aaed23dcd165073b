#include "app/Application.h"
#include "run/desktop/Execution.h"
#include "support/SupportLibrary.h"
#include "support/Title.h"
#include "window/frmMain.h"

namespace rivenfall {

using namespace Qt::StringLiterals;

void Application::pobjFormMnuFileNew_Click() {
    FileNew();
}

void Application::pobjFormMnuFileOpen_Click() {
    FileOpen();
}

void Application::pobjFormMnuFileSave_Click() {
    FileSave();
}

void Application::pobjFormMnuFileSaveAs_Click() {
    FileSaveAs();
}

void Application::pobjFormMnuFileRun_Click() {
    Run();
}

void Application::pobjFormMnuFileShowOutput_Click() {
    pobjExecution->Show();
}

void Application::pobjFormMnuFileExit_Click() {
    Quit();
}

void Application::pobjFormMnuHelpInfo_Click() {
    SupportLibrary::ShowAbout(ProgramTitle(), pobjForm->Icon(), {},
                              {QString(), u"This is a compiler controller,"_s,
                               u"i.e. it controlls compiler invocation and parameters."_s});
}

void Application::pobjForm_QueryUnload(bool& Cancel, FormUnloadMode UnloadMode) {
    if (UnloadMode != FormUnloadMode::Code) {
        Cancel = !Quit();
    }
}

void Application::pobjForm_Resize() {}

/// A run that goes on keeps the window on the screen until it has ended.
void Application::ShowLeaving() {
    pobjForm->Disable();
}

} // namespace rivenfall
