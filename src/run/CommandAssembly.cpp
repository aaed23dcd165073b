#include "run/CommandAssembly.h"

#include "data/DataNode.h"
#include "data/DataNodes.h"
#include "run/VariableExpander.h"

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

/// The characters behind which a command takes no further items. It can't be started then: the
/// kernel takes 6 MiB of arguments at most (execve(2)), and a path is shorter still. Without the
/// limit a small document could ask for any amount, by many references to one long value.
constexpr qint64 MostOfACommand = 1 << 23;

Command CommandOf(const DataNode& compiler, VariableExpander& expander) {
    Command command;
    command.Items.SetSeparator(u" "_s);
    command.Items.SetQuoteBegin(u"\""_s);
    command.Items.SetQuoteEnd(u"\""_s);
    const QString first = expander.Expand(compiler.Value());
    const bool changesDirectory = first.toLower() == u"cd";
    qint64 length = 0;
    const auto add = [&](const QString& item) {
        length += item.size();
        if (!changesDirectory || !item.isEmpty()) {
            command.Items.Add(item, true);
        }
    };
    const auto addNode = [&](const DataNode& node) {
        if (!node.Value().isEmpty() && length <= MostOfACommand) {
            add(expander.Expand(node.Value()));
        }
    };
    if (!changesDirectory) {
        add(first);
    }
    for (const std::shared_ptr<DataNode>& parameter : *compiler.Childs()) {
        if (!parameter->Active()) {
            continue;
        }
        addNode(*parameter);
        for (const std::shared_ptr<DataNode>& value : *parameter->Childs()) {
            if (value->Active()) {
                addNode(*value);
            }
        }
    }
    if (changesDirectory) {
        command.Directory =
            command.Items.Count() == 1 ? command.Items.Item(1) : command.Items.Text();
    }
    return command;
}

} // namespace

std::vector<Command> AssembleCommands(const DataNodes& compilers, const DataNodes& variables,
                                      QStringList* unresolved) {
    VariableExpander expander(variables, unresolved);
    std::vector<Command> commandList;
    for (const std::shared_ptr<DataNode>& compiler : compilers) {
        if (compiler->Active()) {
            commandList.push_back(CommandOf(*compiler, expander));
        }
    }
    return commandList;
}

QString Command::Text() const {
    return (Directory ? u"cd "_s : QString()) + Items.Text();
}

} // namespace rivenfall
