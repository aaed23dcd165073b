#include "run/CommandAssembly.h"

#include "data/DataNode.h"
#include "data/DataNodes.h"
#include "run/VariableExpander.h"

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

/// In characters. The kernel takes at most 6 MiB of arguments and environment, whatever the limit
/// on the stack is (execve(2)).
constexpr qint64 MostOfACommand = 1 << 23;

/// Puts the items of one command line together. What is behind an amount that makes the start fail
/// is left out: many items may share one long text, but the command line would hold them all.
class CommandWriter {
public:
    explicit CommandWriter(VariableExpander& expander) : Expander(expander) {
        Items.SetSeparator(u" "_s);
        Items.SetQuoteBegin(u"\""_s);
        Items.SetQuoteEnd(u"\""_s);
    }

    void Add(const DataNode& node) {
        if (Length <= MostOfACommand) {
            const QString item = Expander.Expand(node.Value());
            Length += item.size();
            Items.Add(item, true);
        }
    }

    void AddUnlessEmpty(const DataNode& node) {
        if (!node.Value().isEmpty()) {
            Add(node);
        }
    }

    StringList Items;

private:
    VariableExpander& Expander;
    qint64 Length = 0;
};

StringList CommandOf(const DataNode& compiler, VariableExpander& expander) {
    CommandWriter command(expander);
    command.Add(compiler);
    for (const std::shared_ptr<DataNode>& parameter : *compiler.Childs()) {
        if (!parameter->Active()) {
            continue;
        }
        command.AddUnlessEmpty(*parameter);
        for (const std::shared_ptr<DataNode>& value : *parameter->Childs()) {
            if (value->Active()) {
                command.AddUnlessEmpty(*value);
            }
        }
    }
    return command.Items;
}

} // namespace

std::vector<StringList> AssembleCommands(const DataNodes& compilers, const DataNodes& variables,
                                         QStringList* unresolved) {
    VariableExpander expander(variables, unresolved);
    std::vector<StringList> commandList;
    for (const std::shared_ptr<DataNode>& compiler : compilers) {
        if (compiler->Active()) {
            commandList.push_back(CommandOf(*compiler, expander));
        }
    }
    return commandList;
}

bool IsDirectoryChange(const StringList& items) {
    return items.Item(1).toLower() == u"cd";
}

QString PathOfDirectoryChange(StringList items) {
    items.Remove(1);
    return items.Text();
}

} // namespace rivenfall
