#include "runner/Choices.h"

#include "data/DataNode.h"
#include "document/DocumentFile.h"
#include "run/VariableNames.h"
#include "runner/Options.h"
#include "runner/Output.h"

#include <algorithm>

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

/// In characters, for the list of what there is.
constexpr qsizetype LongestList = 1000;

DataNodes::Items EntriesOf(const DataNodes& nodes) {
    DataNodes::Items entries;
    for (const std::shared_ptr<DataNode>& node : nodes) {
        entries.push_back(node);
        if (node->Childs()) {
            const DataNodes::Items below = EntriesOf(*node->Childs());
            entries.insert(entries.end(), below.begin(), below.end());
        }
    }
    return entries;
}

/// Calls @p change for each of @p nodes whose text is @p text. Tells, and gives False, where none
/// is.
bool Change(QStringView kind, const DataNodes::Items& nodes, const QString& text,
            const auto& change) {
    QStringList there;
    bool found = false;
    for (const std::shared_ptr<DataNode>& node : nodes) {
        there += node->Value();
        if (FoldedName(node->Value()) == FoldedName(text)) {
            change(*node);
            found = true;
        }
    }
    if (!found) {
        there.removeAll(QString());
        there.removeDuplicates();
        const QString list = there.isEmpty() ? u"none"_s : there.join(u", "_s);
        Tell(u"The document has no %1 \"%2\". There are: %3."_s.arg(
            kind, text, list.size() > LongestList ? list.first(LongestList) + u'…' : list));
    }
    return found;
}

} // namespace

bool ApplyChoices(const Options& options, const DocumentContent& content) {
    const DataNodes::Items compilers(content.Compilers.begin(), content.Compilers.end());
    const DataNodes::Items variables(content.Variables.begin(), content.Variables.end());
    const DataNodes::Items entries = EntriesOf(content.Compilers);
    const auto set = [&variables](const auto& setting) {
        return Change(u"variable", variables, setting.first, [&setting](DataNode& variable) {
            variable.SetActive(true);
            variable.Childs()->Clear();
            variable.Childs()->Add(setting.second);
        });
    };
    const auto tick = [&entries](const auto& choice) {
        return Change(u"entry", entries, choice.first,
                      [&choice](DataNode& entry) { entry.SetActive(choice.second); });
    };
    const auto admit = [&compilers](const QString& text) {
        return Change(u"compiler", compilers, text,
                      [](DataNode& compiler) { compiler.SetActive(true); });
    };
    if (!std::ranges::all_of(options.Settings, set) ||
        !std::ranges::all_of(options.Switches, tick)) {
        return false;
    }
    for (const std::shared_ptr<DataNode>& compiler : compilers) {
        compiler->SetActive(compiler->Active() && options.Only.isEmpty());
    }
    return std::ranges::all_of(options.Only, admit);
}

} // namespace rivenfall
