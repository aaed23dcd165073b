#include "Fuzz.h"

#include "data/DataNode.h"
#include "data/DataNodes.h"
#include "run/VariableExpander.h"

#include <QStringList>

#include <optional>
#include <vector>

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

constexpr int MostVariables = 8;

/// What the definition of an expansion takes at most. An input that needs more isn't compared.
constexpr int MostSteps = 20'000;

struct Definition {
    bool Active;
    QString Name;
    std::optional<QString> Value;
};

/// The definition of an expansion, step by step and as deep as the values lie.
class PlainExpansion {
public:
    explicit PlainExpansion(const std::vector<Definition>& variables)
        : Variables(variables), Busy(variables.size()) {}

    QString Of(const QString& text) {
        QString output;
        qsizetype behind = 0;
        qsizetype open = text.indexOf(u"${"_s);
        while (open >= 0 && ++Steps <= MostSteps) {
            output += text.mid(behind, open - behind);
            const qsizetype close = text.indexOf(u'}', open);
            if (close < 0) {
                return output + text.mid(open);
            }
            output += ValueOf(text.mid(open + 2, close - open - 2));
            behind = close + 1;
            open = text.indexOf(u"${"_s, behind);
        }
        return output + text.mid(behind);
    }

    int Steps = 0;

private:
    QString ValueOf(const QString& name) {
        for (size_t each = 0; each < Variables.size(); ++each) {
            const Definition& variable = Variables[each];
            if (!variable.Active ||
                QString::compare(variable.Name, name, Qt::CaseInsensitive) != 0) {
                continue;
            }
            if (Busy[each] || !variable.Value) {
                return {};
            }
            Busy[each] = true;
            QString value = Of(*variable.Value);
            Busy[each] = false;
            return value;
        }
        return {};
    }

    const std::vector<Definition>& Variables;
    std::vector<bool> Busy;
};

/// Each line is a variable, `NAME=VALUE`, without the equals sign one without a value, and with an
/// exclamation mark in front one that is switched off; but the first line and those that begin with
/// a colon are texts to be expanded, in one run.
void Compare(const QByteArray& input) {
    std::vector<Definition> definitions;
    QStringList texts;
    for (const QString& line : QString::fromUtf8(input).split(u'\n')) {
        if (texts.isEmpty() || line.startsWith(u':')) {
            texts += line;
        } else if (definitions.size() < MostVariables) {
            const bool active = !line.startsWith(u'!');
            const QString name = line.section(u'=', 0, 0).mid(active ? 0 : 1);
            const bool hasValue = line.contains(u'=');
            definitions.push_back(
                {active, name, hasValue ? std::optional(line.section(u'=', 1)) : std::nullopt});
        }
    }

    DataNodes root;
    root.SetDataNodesType(NodeKind::Variable);
    for (const Definition& definition : definitions) {
        const std::shared_ptr<DataNode> node = root.Add(definition.Name);
        node->Childs()
            ->Add(definition.Value.value_or(u"off"_s))
            ->SetActive(definition.Value.has_value());
        node->SetActive(definition.Active);
    }
    VariableExpander expander(root);
    for (const QString& text : texts) {
        PlainExpansion plain(definitions);
        const QString expected = plain.Of(text);
        const QString given = expander.Expand(text);
        Demand(plain.Steps > MostSteps || given == expected);
    }
}

} // namespace

} // namespace rivenfall

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    rivenfall::Compare(rivenfall::Input(data, size));
    return 0;
}
