#include "app/Application.h"
#include "run/CommandAssembly.h"
#include "run/Execution.h"
#include "run/LogFrame.h"
#include "support/Title.h"
#include "system/CurrentDirectory.h"
#include "system/EventLoop.h"
#include "system/MessageBox.h"

namespace rivenfall {

namespace {

void CarryOutDirectoryChange(Execution& execution, const StringList& items) {
    const QString path = PathOfDirectoryChange(items);
    execution.Echo(QStringLiteral("cd ") + path, ResultOfChange(ChangeDirectory(path)));
}

void CarryOutCommand(Execution& execution, const StringList& items) {
    execution.Execute(items.Text());
    while (execution.Running()) {
        DoEvents();
    }
}

} // namespace

void Application::Run() {
    const std::vector<StringList> commandList = AssembleCommands(*pobjCompilers, *pobjVariables);
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
