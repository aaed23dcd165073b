#include "app/Application.h"
#include "run/CommandAssembly.h"
#include "run/Execution.h"
#include "run/LogFrame.h"
#include "support/Title.h"
#include "system/CurrentDirectory.h"
#include "system/EventLoop.h"
#include "system/MessageBox.h"

#include <cerrno>
#include <new>

namespace rivenfall {

namespace {

void CarryOutDirectoryChange(Execution& execution, const StringList& items) {
    try {
        const QString path = PathOfDirectoryChange(items);
        execution.Echo(QStringLiteral("cd ") + path, ResultOfChange(ChangeDirectory(path)));
    } catch (const std::bad_alloc&) {
        execution.Echo(QStringLiteral("cd"), ResultOfStart(false, ENOMEM));
    }
}

void CarryOutCommand(Execution& execution, const StringList& items) {
    try {
        execution.Execute(items.Text());
    } catch (const std::bad_alloc&) {
        execution.Echo(items.Item(1), ResultOfStart(false, ENOMEM));
    }
    while (execution.Running()) {
        DoEvents();
    }
}

} // namespace

void Application::Run() {
    std::vector<StringList> commandList;
    try {
        commandList = AssembleCommands(*pobjCompilers, *pobjVariables);
    } catch (const std::bad_alloc&) {
        pobjExecution->Show();
        pobjExecution->Echo(FileTitle(), ResultOfStart(false, ENOMEM));
        return;
    }
    pobjExecution->Show();
    if (commandList.empty()) {
        const QString issue = NothingToRunIssue.toString();
        const QString result = NothingToRunResult.toString();
        pobjExecution->Echo(issue, result);
        MessageBox(issue + QStringLiteral("\r\n") + result, MessageBoxStyle::Error, ProgramTitle());
        return;
    }
    pobjExecution->Clear();
    for (const StringList& items : commandList) {
        if (IsDirectoryChange(items)) {
            CarryOutDirectoryChange(*pobjExecution, items);
        } else {
            CarryOutCommand(*pobjExecution, items);
        }
    }
}

} // namespace rivenfall
