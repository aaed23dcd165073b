#include "run/CommandAssembly.h"

#include "data/DataNode.h"
#include "data/DataNodes.h"
#include "run/VariableExpander.h"

namespace rivenfall {

namespace {

void AddItem(StringList& items, const DataNode& node, VariableExpander& expander) {
    if (!node.Value().isEmpty()) {
        items.Add(expander.Expand(node.Value()), true);
    }
}

StringList CommandOf(const DataNode& compiler, VariableExpander& expander) {
    StringList items;
    items.SetSeparator(QStringLiteral(" "));
    items.SetQuoteBegin(QStringLiteral("\""));
    items.SetQuoteEnd(QStringLiteral("\""));
    items.Add(expander.Expand(compiler.Value()), true);
    for (const std::shared_ptr<DataNode>& parameter : *compiler.Childs()) {
        if (!parameter->Active()) {
            continue;
        }
        AddItem(items, *parameter, expander);
        for (const std::shared_ptr<DataNode>& value : *parameter->Childs()) {
            if (value->Active()) {
                AddItem(items, *value, expander);
            }
        }
    }
    return items;
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
