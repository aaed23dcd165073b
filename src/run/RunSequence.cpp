#include "app/Application.h"
#include "app/Title.h"
#include "platform/CurrentDirectory.h"
#include "platform/EventLoop.h"
#include "platform/MessageBox.h"
#include "run/Execution.h"
#include "run/ExpandVariables.h"
#include "support/StringList.h"

#include <vector>

namespace rivenfall {

namespace {

void AddItem(StringList& items, const DataNode& node) {
    if (!node.Value().isEmpty()) {
        items.Add(ExpandVariables(node.Value()), true);
    }
}

StringList CommandOf(const DataNode& compiler) {
    StringList items;
    items.SetSeparator(QStringLiteral(" "));
    items.SetQuoteBegin(QStringLiteral("\""));
    items.SetQuoteEnd(QStringLiteral("\""));
    items.Add(ExpandVariables(compiler.Value()), true);
    for (const std::shared_ptr<DataNode>& parameter : *compiler.Childs()) {
        if (!parameter->Active()) {
            continue;
        }
        AddItem(items, *parameter);
        for (const std::shared_ptr<DataNode>& value : *parameter->Childs()) {
            if (value->Active()) {
                AddItem(items, *value);
            }
        }
    }
    return items;
}

/// One list of items per active compiler: what the run will do, whatever happens to the document
/// meanwhile.
std::vector<StringList> AssembleCommands(const DataNodes& compilers) {
    std::vector<StringList> commandList;
    for (const std::shared_ptr<DataNode>& compiler : compilers) {
        if (compiler->Active()) {
            commandList.push_back(CommandOf(*compiler));
        }
    }
    return commandList;
}

QString ResultOf(const DirectoryChange& change) {
    if (change.Number == 0) {
        return QStringLiteral("success");
    }
    return QStringLiteral("error ") +
           (change.Description.isEmpty() ? QString::number(change.Number) : change.Description);
}

void CarryOutDirectoryChange(Execution& execution, StringList items) {
    items.Remove(1);
    const QString path = items.Text();
    execution.Echo(QStringLiteral("cd ") + path, ResultOf(ChangeDirectory(path)));
}

void CarryOutCommand(Execution& execution, const StringList& items) {
    execution.Execute(items.Text());
    while (execution.Running()) {
        DoEvents();
    }
}

} // namespace

void Application::Run() {
    const std::vector<StringList> commandList = AssembleCommands(*pobjCompilers);
    pobjExecution->Show();
    if (commandList.empty()) {
        pobjExecution->Echo(QStringLiteral("No compilers to run!"),
                            QStringLiteral("Please select some..."));
        MessageBox(QStringLiteral("No compilers to run!\r\nPlease select some..."), MessageBoxError,
                   ProgramTitle());
        return;
    }
    pobjExecution->Clear();
    for (const StringList& items : commandList) {
        if (items.Item(1).toLower() == u"cd") {
            CarryOutDirectoryChange(*pobjExecution, items);
        } else {
            CarryOutCommand(*pobjExecution, items);
        }
    }
}

} // namespace rivenfall
