#pragma once

#include "data/DataNode.h"
#include "data/DataNodes.h"

#include <QFlags>
#include <QObject>
#include <QString>

#include <array>
#include <memory>

namespace rivenfall {

class CommandButton;
class DataObject;
class Execution;
class FileDialog;
class Menu;
class Node;
class TabStrip;
class TextBox;
class TreeView;
class UpDown;
class frmMain;
enum class DragOverState;
enum class DropEffect;
enum class FileDialogPurpose;
enum class FormUnloadMode;
enum class KeyCode;
using DropEffects = QFlags<DropEffect>;

/// The one object that drives the program. It owns the document's two trees, the main window, the
/// runner of commands and the file dialog, and receives every event of the window and the trees.
///
/// Handlers of control events hold a reference to the object while they run, so it goes away only
/// when the outermost of them has returned. Once Quit has succeeded, events of the window's
/// controls are ignored.
class Application : public std::enable_shared_from_this<Application> {
public:
    /// Makes both trees empty, the window and the rest, and shows the window.
    Application();

    /// Takes everything down again, the window and the trees included, and ends the event loop.
    ~Application();

    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    /// The root of the compilers; null once Quit has succeeded.
    DataNodes* Compilers() const;

    /// Which tree the window shows: its tab's position.
    static constexpr int CompilersContent = 1;
    static constexpr int VariablesContent = 2;
    int ContentActive() const;

    /// The runner of commands with its log.
    rivenfall::Execution* Execution() const;

    /// Replaces the document by a new one with default content, after asking about changes.
    void FileNew();

    /// Opens the document at @p FileName, or one that the user chooses if it is empty, after asking
    /// about changes. True if the command ran to its end. A document that can't be read is
    /// reported, and everything stays as it was.
    bool FileOpen(const QString& FileName = {});

    /// Writes the document to its file, which the user chooses if it has none. True if it was
    /// written; a failure is reported, and the old file stays whole.
    bool FileSave();

    /// Lets the user choose a file and writes the document to it. Result as for FileSave.
    bool FileSaveAs();

    /// The file part of the document's path, or "New File".
    QString FileTitle() const;

    /// Moves the selected node by one place among its siblings, around the ends.
    void NodeMove(bool Down);

    /// Gives the document up, after asking about changes. True if the program may go; teardown
    /// follows when the outermost running operation has returned.
    bool Quit();

    /// Builds the tree on display anew from the active collection.
    void Refresh();

    /// Carries the active compilers out one after the other. Returns when the last one has ended;
    /// events are handled meanwhile.
    void Run();

    /// The root of the variables; null once Quit has succeeded.
    DataNodes* Variables() const;

    /// The main window, for code that reaches its controls by name. Owned by the Application.
    frmMain* Form() const;

private:
    /// Lets go of the window behind the event at hand, which may be one of its own.
    struct FormDeleter {
        void operator()(frmMain* form) const;
    };

    // document/desktop/DocumentCommands.cpp
    bool AskOpenFileName();
    bool AskSaveFileName();
    bool AskSaveChanges();

    // app/Application.cpp
    bool HandleEvents() const;

    // window/TreePresentation.cpp
    void pobjCompilers_Add(DataNode& DN);
    void pobjCompilers_Move(DataNode& DN);
    void pobjCompilers_Remove(DataNode& DN);

    // window/MenuCommands.cpp
    void pobjForm_QueryUnload(bool& Cancel, FormUnloadMode UnloadMode);
    void pobjForm_Resize();
    // window/EditingCycle.cpp
    void pobjFormCmdAdd_Click();
    void pobjFormCmdCancel_Click();
    void pobjFormCmdOk_Click();
    void pobjFormCmdRemove_Click();
    // window/MenuCommands.cpp
    void pobjFormMnuFileExit_Click();
    void pobjFormMnuFileNew_Click();
    void pobjFormMnuFileOpen_Click();
    void pobjFormMnuFileRun_Click();
    void pobjFormMnuFileSave_Click();
    void pobjFormMnuFileSaveAs_Click();
    void pobjFormMnuFileShowOutput_Click();
    void pobjFormMnuHelpInfo_Click();
    // window/TreeAndTabs.cpp
    void pobjFormTabContent_Click();
    void pobjFormTvwContent_Collapse(Node& node);
    void pobjFormTvwContent_Expand(Node& node);
    void pobjFormTvwContent_NodeCheck(Node& node);
    // window/NodeSelection.cpp
    void pobjFormTvwContent_NodeClick(Node& node);
    // window/EditingCycle.cpp
    void pobjFormTxtValue_Change();
    void pobjFormTxtValue_KeyDown(KeyCode& Key, int Shift);
    // window/MovingAndDropping.cpp
    void pobjFormTxtValue_OLEDragDrop(const DataObject& Data, DropEffects& Effect, int Button,
                                      int Shift, int X, int Y);
    void pobjFormTxtValue_OLEDragOver(const DataObject& Data, DropEffects& Effect, int Button,
                                      int Shift, int X, int Y, DragOverState State);
    void pobjFormUdnMove_DownClick();
    void pobjFormUdnMove_UpClick();

    // window/TreePresentation.cpp
    void pobjVariables_Add(DataNode& DN);
    void pobjVariables_Remove(DataNode& DN);
    // app/Application.cpp
    void SetHandleEvents(bool Enable);

    // app/ApplicationLifetime.cpp
    template <typename Control, typename Event, typename... Arguments>
    void Sink(Control* field, Event event, void (Application::*handler)(Arguments...));
    void LoadForm();
    void ConnectControls();
    void FillTabs();

    // document/desktop/DocumentCommands.cpp
    void ConfigureFileDialog(const QString& title, FileDialogPurpose purpose);
    bool TakeChosenFileName();
    bool ReadDocument();
    bool WriteDocument(const QString& formerFileName);
    void AllowDocumentCommands();

    // window/MenuCommands.cpp
    void ShowLeaving();

    // window/TreePresentation.cpp
    void ShowFileTitle();
    int CoverTree();
    void BuildTree();
    void RestoreScrollPosition(int topIndex);
    void SelectRememberedNode();
    void AddToTree(DataNode& DN);
    void RemoveFromTree(DataNode& DN);

    // window/NodeSelection.cpp
    void SelectNode(const DataNode& selected);
    void ShowNoSelection();
    int& SelectedPosition();
    std::shared_ptr<DataNode> DataNodeOf(const Node& node) const;

    // app/Application.cpp
    DataNodes* ActiveCollection() const;

    bool pblnChanged = false;
    int plngContentActive = CompilersContent;
    std::unique_ptr<DataNodes> pobjCompilers;
    std::unique_ptr<DataNodes> pobjVariables;
    std::unique_ptr<rivenfall::Execution> pobjExecution;
    std::unique_ptr<FileDialog> pobjFileDialog;
    QString pstrFileName;
    bool pblnEditing = false;
    int plngHandleEvents = 0;
    /// Per content, counted from 1, the index of the tree node that is selected in it.
    std::array<int, 2> plngContentNode = {1, 1};

    std::unique_ptr<frmMain, FormDeleter> pobjForm;
    CommandButton* pobjFormCmdAdd = nullptr;
    CommandButton* pobjFormCmdCancel = nullptr;
    CommandButton* pobjFormCmdOk = nullptr;
    CommandButton* pobjFormCmdRemove = nullptr;
    Menu* pobjFormMnuFileExit = nullptr;
    Menu* pobjFormMnuFileNew = nullptr;
    Menu* pobjFormMnuFileOpen = nullptr;
    Menu* pobjFormMnuFileRun = nullptr;
    Menu* pobjFormMnuFileSave = nullptr;
    Menu* pobjFormMnuFileSaveAs = nullptr;
    Menu* pobjFormMnuFileShowOutput = nullptr;
    Menu* pobjFormMnuHelpInfo = nullptr;
    TabStrip* pobjFormTabContent = nullptr;
    TreeView* pobjFormTvwContent = nullptr;
    TreeView* pobjFormTvwContentFake = nullptr;
    TextBox* pobjFormTxtDescription = nullptr;
    TextBox* pobjFormTxtValue = nullptr;
    UpDown* pobjFormUdnMove = nullptr;

    /// The receiver of the controls' events: what is connected to it ends with it.
    std::unique_ptr<QObject> pobjSinks = std::make_unique<QObject>();
};

} // namespace rivenfall
