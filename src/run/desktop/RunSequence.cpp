#include "app/Application.h"
#include "run/CommandAssembly.h"
#include "run/LogFrame.h"
#include "run/desktop/Execution.h"
#include "support/Title.h"
#include "system/CurrentDirectory.h"
#include "system/EventLoop.h"
#include "system/MessageBox.h"

#include <cerrno>
#include <new>

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

void CarryOut(const Command& command, Execution& execution) {
    if (command.Directory) {
        execution.Echo(command.Text(), ResultOfChange(ChangeDirectory(*command.Directory)));
        return;
    }
    execution.Execute(command.Text());
    while (execution.Running()) {
        DoEvents();
    }
}

} // namespace

void Application::Run() try {
    const std::vector<Command> commandList = AssembleCommands(*pobjCompilers, *pobjVariables);
    pobjExecution->Show();
    if (commandList.empty()) {
        const QString issue = NothingToRunIssue.toString();
        const QString result = NothingToRunResult.toString();
        pobjExecution->Echo(issue, result);
        MessageBox(issue + u"\r\n"_s + result, MessageBoxStyle::Error, ProgramTitle());
        return;
    }
    pobjExecution->Clear();
    for (const Command& command : commandList) {
        CarryOut(command, *pobjExecution);
    }
} catch (const std::bad_alloc&) {
    pobjExecution->Show();
    pobjExecution->Echo(FileTitle(), ResultOfStart(false, ENOMEM));
}

} // namespace rivenfall
