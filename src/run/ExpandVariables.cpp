#include "run/ExpandVariables.h"

#include "app/Application.h"
#include "app/modMain.h"
#include "support/SupportLibrary.h"

#include <vector>

namespace rivenfall {

namespace {

/// Per variable, by its position: its value is being expanded. Without allocation between two
/// calls from outside.
std::vector<bool> pblnVariableBusy;

constexpr QStringView OpeningMark = u"${";
constexpr QChar ClosingMark = u'}';

/// The position of the first opening mark from @p from on, or -1.
qsizetype FindOpeningMark(QStringView text, qsizetype from) {
    qsizetype found = text.indexOf(OpeningMark.front(), from);
    while (found >= 0 && !text.sliced(found).startsWith(OpeningMark)) {
        found = text.indexOf(OpeningMark.front(), found + 1);
    }
    return found;
}

/// Tells without a full comparison, and for nearly every pair of names, that they differ.
bool DifferAtTheEnd(QStringView left, QStringView right) {
    if (left.size() != right.size()) {
        return true;
    }
    if (left.isEmpty()) {
        return false;
    }
    const char16_t leftEnd = left.back().unicode();
    const char16_t rightEnd = right.back().unicode();
    constexpr char16_t letterCase = 0x20;
    return leftEnd < 0x80 && rightEnd < 0x80 && ((leftEnd ^ rightEnd) & ~letterCase) != 0;
}

const DataNode* FindVariable(const DataNodes& variables, QStringView name) {
    for (const std::shared_ptr<DataNode>& variable : variables) {
        if (!variable->Active()) {
            continue;
        }
        const QString& value = variable->Value();
        // Most references are written as the name is, which is quickly told.
        if (!DifferAtTheEnd(value, name) &&
            (name == value || name.compare(value, Qt::CaseInsensitive) == 0)) {
            return variable.get();
        }
    }
    return nullptr;
}

const DataNode* FirstActive(const DataNodes& nodes) {
    for (const std::shared_ptr<DataNode>& node : nodes) {
        if (node->Active()) {
            return node.get();
        }
    }
    return nullptr;
}

QString ReplacementFor(const DataNodes& variables, QStringView name) {
    const DataNode* variable = FindVariable(variables, name);
    if (!variable) {
        return {};
    }
    const auto position = static_cast<size_t>(variable->Index()) - 1;
    if (pblnVariableBusy[position]) {
        return {};
    }
    const DataNode* value = FirstActive(*variable->Childs());
    if (!value) {
        return {};
    }
    pblnVariableBusy[position] = true;
    QString replacement = ExpandVariables(value->Value());
    pblnVariableBusy[position] = false;
    return replacement;
}

} // namespace

QString ExpandVariables(const QString& Text) {
    qsizetype open = FindOpeningMark(Text, 0);
    if (open < 0) {
        return Text;
    }
    const std::shared_ptr<Application> application = GlobalApplication();
    const DataNodes& variables = *application->Variables();
    const bool outermost = SupportLibrary::IsArrayEmpty(pblnVariableBusy);
    if (outermost) {
        pblnVariableBusy.assign(static_cast<size_t>(variables.Count()), false);
    }

    QString output;
    output.reserve(Text.size());
    qsizetype position = 0;
    while (open >= 0) {
        const qsizetype close = Text.indexOf(ClosingMark, open);
        if (close < 0) {
            break;
        }
        const qsizetype nameBegin = open + OpeningMark.size();
        output += QStringView(Text).sliced(position, open - position);
        output += ReplacementFor(variables, QStringView(Text).sliced(nameBegin, close - nameBegin));
        position = close + 1;
        open = FindOpeningMark(Text, position);
    }
    output += QStringView(Text).sliced(position);

    if (outermost) {
        std::vector<bool>().swap(pblnVariableBusy);
    }
    return output;
}

} // namespace rivenfall
