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

void CarryOutDirectoryChange(Execution& execution, const StringList& items) {
    try {
        const QString path = PathOfDirectoryChange(items);
        execution.Echo(u"cd "_s + path, ResultOfChange(ChangeDirectory(path)));
    } catch (const std::bad_alloc&) {
        execution.Echo(u"cd"_s, ResultOfStart(false, ENOMEM));
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
        MessageBox(issue + u"\r\n"_s + result, MessageBoxStyle::Error, ProgramTitle());
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
