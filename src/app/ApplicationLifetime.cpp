#include "app/Application.h"
#include "controls/App.h"
#include "run/desktop/Execution.h"
#include "support/Title.h"
#include "support/desktop/FileDialog.h"
#include "window/frmMain.h"

namespace rivenfall {

using namespace Qt::StringLiterals;

void Application::FormDeleter::operator()(frmMain* form) const {
    form->deleteLater();
}

Application::Application() {
    pobjFileDialog = std::make_unique<FileDialog>();
    pobjFileDialog->SetDialogFlag1(false);
    pobjFileDialog->SetDialogFlag2(false);
    ConfigureFileDialog(ProgramTitle(), FileDialogPurpose::Open);
    pobjFileDialog->SetInitialDirectory(App::Path());

    pobjCompilers = std::make_unique<DataNodes>();
    pobjCompilers->SetDataNodesType(NodeKind::Compiler);
    pobjCompilers->SetEvents({[this](DataNode& DN) { pobjCompilers_Add(DN); },
                              [this](DataNode& DN) { pobjCompilers_Move(DN); },
                              [this](DataNode& DN) { pobjCompilers_Remove(DN); }});
    pobjVariables = std::make_unique<DataNodes>();
    pobjVariables->SetDataNodesType(NodeKind::Variable);
    pobjVariables->SetEvents({[this](DataNode& DN) { pobjVariables_Add(DN); },
                              {},
                              [this](DataNode& DN) { pobjVariables_Remove(DN); }});

    LoadForm();
    ConnectControls();
    FillTabs();
    pobjExecution = std::make_unique<rivenfall::Execution>();
    pobjForm->Show();
}

Application::~Application() {
    pobjExecution.reset();
    pobjForm->Hide();
    pobjSinks.reset();
    pobjForm->Unload();
    pobjForm.reset();
    for (std::unique_ptr<DataNodes>* root : {&pobjCompilers, &pobjVariables}) {
        if (*root) {
            (*root)->SetEvents({});
            (*root)->Dispose();
            root->reset();
        }
    }
    pobjFileDialog.reset();
    App::EndEventLoop();
}

/// Connects @p event of the control in @p field to @p handler, which holds a reference to the
/// object while it runs. Once Quit has succeeded the event finds nobody.
template <typename Control, typename Event, typename... Arguments>
void Application::Sink(Control* field, Event event, void (Application::*handler)(Arguments...)) {
    QObject::connect(field, event, pobjSinks.get(), [this, handler](Arguments... arguments) {
        const std::shared_ptr<Application> reference = weak_from_this().lock();
        if (pobjCompilers) {
            (this->*handler)(arguments...);
        }
    });
}

void Application::LoadForm() {
    pobjForm.reset(new frmMain);
    pobjForm->SetCaption(ProgramTitle());
    Sink(pobjForm.get(), &Form::QueryUnload, &Application::pobjForm_QueryUnload);
    Sink(pobjForm.get(), &Form::Resize, &Application::pobjForm_Resize);
}

void Application::ConnectControls() {
    pobjFormCmdAdd = &pobjForm->cmdNew;
    Sink(pobjFormCmdAdd, &CommandButton::Click, &Application::pobjFormCmdAdd_Click);
    pobjFormCmdCancel = &pobjForm->cmdCancel;
    Sink(pobjFormCmdCancel, &CommandButton::Click, &Application::pobjFormCmdCancel_Click);
    pobjFormCmdOk = &pobjForm->cmdOK;
    Sink(pobjFormCmdOk, &CommandButton::Click, &Application::pobjFormCmdOk_Click);
    pobjFormCmdRemove = &pobjForm->cmdRemove;
    Sink(pobjFormCmdRemove, &CommandButton::Click, &Application::pobjFormCmdRemove_Click);
    pobjFormMnuFileExit = &pobjForm->mnuFileExit;
    Sink(pobjFormMnuFileExit, &Menu::Click, &Application::pobjFormMnuFileExit_Click);
    pobjFormMnuFileNew = &pobjForm->mnuFileNew;
    Sink(pobjFormMnuFileNew, &Menu::Click, &Application::pobjFormMnuFileNew_Click);
    pobjFormMnuFileOpen = &pobjForm->mnuFileOpen;
    Sink(pobjFormMnuFileOpen, &Menu::Click, &Application::pobjFormMnuFileOpen_Click);
    pobjFormMnuFileRun = &pobjForm->mnuFileRun;
    Sink(pobjFormMnuFileRun, &Menu::Click, &Application::pobjFormMnuFileRun_Click);
    pobjFormMnuFileSave = &pobjForm->mnuFileSave;
    Sink(pobjFormMnuFileSave, &Menu::Click, &Application::pobjFormMnuFileSave_Click);
    pobjFormMnuFileSaveAs = &pobjForm->mnuFileSaveAs;
    Sink(pobjFormMnuFileSaveAs, &Menu::Click, &Application::pobjFormMnuFileSaveAs_Click);
    pobjFormMnuFileShowOutput = &pobjForm->mnuFileShowOutput;
    Sink(pobjFormMnuFileShowOutput, &Menu::Click, &Application::pobjFormMnuFileShowOutput_Click);
    pobjFormMnuHelpInfo = &pobjForm->mnuHelpInfo;
    Sink(pobjFormMnuHelpInfo, &Menu::Click, &Application::pobjFormMnuHelpInfo_Click);
    pobjFormTabContent = &pobjForm->tabContent;
    Sink(pobjFormTabContent, &TabStrip::Click, &Application::pobjFormTabContent_Click);
    pobjFormTvwContent = &pobjForm->tvwContent;
    Sink(pobjFormTvwContent, &TreeView::Collapse, &Application::pobjFormTvwContent_Collapse);
    Sink(pobjFormTvwContent, &TreeView::Expand, &Application::pobjFormTvwContent_Expand);
    Sink(pobjFormTvwContent, &TreeView::NodeCheck, &Application::pobjFormTvwContent_NodeCheck);
    Sink(pobjFormTvwContent, &TreeView::NodeClick, &Application::pobjFormTvwContent_NodeClick);
    pobjFormTvwContentFake = &pobjForm->tvwContentFake;
    pobjFormTxtDescription = &pobjForm->txtDescription;
    pobjFormTxtValue = &pobjForm->txtValue;
    Sink(pobjFormTxtValue, &TextBox::Change, &Application::pobjFormTxtValue_Change);
    Sink(pobjFormTxtValue, &TextBox::KeyDown, &Application::pobjFormTxtValue_KeyDown);
    Sink(pobjFormTxtValue, &TextBox::OLEDragDrop, &Application::pobjFormTxtValue_OLEDragDrop);
    Sink(pobjFormTxtValue, &TextBox::OLEDragOver, &Application::pobjFormTxtValue_OLEDragOver);
    pobjFormUdnMove = &pobjForm->udnMove;
    Sink(pobjFormUdnMove, &UpDown::DownClick, &Application::pobjFormUdnMove_DownClick);
    Sink(pobjFormUdnMove, &UpDown::UpClick, &Application::pobjFormUdnMove_UpClick);
}

void Application::FillTabs() {
    pobjFormTabContent->Tabs().Clear();
    pobjFormTabContent->Tabs().Add(u"Compilers"_s);
    pobjFormTabContent->Tabs().Add(u"Variables"_s);
}

} // namespace rivenfall
