#include "app/Application.h"
#include "app/modMain.h"
#include "controls/Menu.h"
#include "controls/TabStrip.h"
#include "controls/TextBox.h"
#include "controls/UpDown.h"
#include "document/DocumentFile.h"
#include "support/Title.h"
#include "support/desktop/FileDialog.h"
#include "system/MessageBox.h"
#include "tree/TreeView.h"

namespace rivenfall {

using namespace Qt::StringLiterals;

/// Sets the file dialog up for @p purpose, with the caption @p title.
void Application::ConfigureFileDialog(const QString& title, FileDialogPurpose purpose) {
    const bool opening = purpose == FileDialogPurpose::Open;
    pobjFileDialog->SetDefaultExtension(u".tvq"_s);
    pobjFileDialog->SetDialogTitle(title);
    pobjFileDialog->SetDialogFlag3(opening);
    pobjFileDialog->SetDialogFilter(u"OMRA Rivenfall Compiler Controller Files|*.tvq"_s);
    pobjFileDialog->SetDialogFlag4(true);
    pobjFileDialog->SetDialogFlag5(false);
    pobjFileDialog->SetDialogFlag6(!opening);
    pobjFileDialog->SetDialogFlag7(opening);
    pobjFileDialog->SetDocument(pstrFileName);
}

bool Application::AskOpenFileName() {
    ConfigureFileDialog(u"Open File - "_s + ProgramTitle(), FileDialogPurpose::Open);
    pobjFileDialog->ShowOpen();
    return TakeChosenFileName();
}

bool Application::AskSaveFileName() {
    ConfigureFileDialog(u"FileSave File As - "_s + ProgramTitle(), FileDialogPurpose::Save);
    pobjFileDialog->ShowSave();
    return TakeChosenFileName();
}

bool Application::TakeChosenFileName() {
    pobjFileDialog->SetInitialDirectory({});
    if (pobjFileDialog->Cancelled()) {
        return false;
    }
    pstrFileName = pobjFileDialog->FileName();
    return true;
}

bool Application::AskSaveChanges() {
    if (!pblnChanged) {
        return true;
    }
    switch (MessageBox(u"The file was changed.\r\nDo you want to save it?"_s,
                       MessageBoxStyle::YesNoCancel, ProgramTitle())) {
    case MessageBoxAnswer::Yes:
        return FileSave();
    case MessageBoxAnswer::No:
        return true;
    default:
        return false;
    }
}

void Application::FileNew() {
    if (pblnChanged) {
        switch (MessageBox(u"changed; FileSave?"_s, MessageBoxStyle::YesNoCancel)) {
        case MessageBoxAnswer::Yes:
            pobjFormMnuFileSave_Click();
            break;
        case MessageBoxAnswer::No:
            pblnChanged = false;
            break;
        default:
            return;
        }
    }
    pstrFileName.clear();
    pblnChanged = false;
    pobjCompilers->Clear();
    pobjCompilers->Add()->Childs()->Add()->Childs()->Add(u"${FILE1}"_s);
    MakeDefaultVariable(*pobjVariables);
    plngContentNode = {1, 1};
    pobjFormTvwContentFake->SetVisible(false);
    Refresh();
    FillTabs();
    AllowDocumentCommands();
}

bool Application::FileOpen(const QString& FileName) {
    if (!AskSaveChanges()) {
        return false;
    }
    const QString formerFileName = pstrFileName;
    if (!FileName.isEmpty()) {
        pstrFileName = FileName;
    } else if (!AskOpenFileName()) {
        return false;
    }
    if (!ReadDocument()) {
        pstrFileName = formerFileName;
        return false;
    }
    pblnChanged = false;
    plngContentNode = {1, 1};
    pobjFormTvwContentFake->SetVisible(false);
    Refresh();
    AllowDocumentCommands();
    return true;
}

bool Application::FileSave() {
    const QString formerFileName = pstrFileName;
    if (pstrFileName.isEmpty() && !AskSaveFileName()) {
        return false;
    }
    return WriteDocument(formerFileName);
}

bool Application::FileSaveAs() {
    const QString formerFileName = pstrFileName;
    const bool saved = AskSaveFileName() && WriteDocument(formerFileName);
    ShowFileTitle();
    return saved;
}

bool Application::Quit() {
    if (!AskSaveChanges()) {
        return false;
    }
    pobjCompilers->Dispose();
    pobjCompilers.reset();
    pobjVariables->Dispose();
    pobjVariables.reset();
    ShowLeaving();
    SetGlobalApplication(nullptr);
    return true;
}

/// Loads both trees from the file and shows a tab for each tree that it holds. Touches nothing if
/// the file can't be read.
bool Application::ReadDocument() {
    DocumentContent content;
    const QString failure = ReadDocumentFile(pstrFileName, content);
    if (!failure.isEmpty()) {
        MessageBox(failure, MessageBoxStyle::Exclamation, ProgramTitle());
        return false;
    }
    pobjCompilers->TakeNodesOf(content.Compilers);
    pobjVariables->TakeNodesOf(content.Variables);
    if (content.HasVariables) {
        FillTabs();
    } else {
        pobjFormTabContent->Tabs().Clear();
        pobjFormTabContent->Tabs().Add(u"Compilers"_s);
    }
    return true;
}

/// Writes the file; if that fails the document keeps its former name.
bool Application::WriteDocument(const QString& formerFileName) {
    const QString failure = WriteDocumentFile(pstrFileName, *pobjCompilers, *pobjVariables);
    if (!failure.isEmpty()) {
        MessageBox(failure, MessageBoxStyle::Exclamation, ProgramTitle());
        pstrFileName = formerFileName;
        return false;
    }
    pblnChanged = false;
    return true;
}

void Application::AllowDocumentCommands() {
    pobjFormTabContent->SetEnabled(true);
    pobjFormTvwContent->SetEnabled(true);
    pobjFormUdnMove->SetEnabled(true);
    pobjFormTxtValue->SetFocus();
    pobjFormMnuFileSave->SetEnabled(true);
    pobjFormMnuFileSaveAs->SetEnabled(true);
    pobjFormMnuFileRun->SetEnabled(true);
}

} // namespace rivenfall
