#include "run/VariableExpander.h"

#include "data/DataNode.h"
#include "data/DataNodes.h"
#include "support/SupportLibrary.h"

namespace rivenfall {

namespace {

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

} // namespace

VariableExpander::VariableExpander(const DataNodes& variables) : pobjVariables(variables) {}

QString VariableExpander::Expand(const QString& Text) {
    qsizetype open = FindOpeningMark(Text, 0);
    if (open < 0) {
        return Text;
    }
    const bool outermost = SupportLibrary::IsArrayEmpty(pblnVariableBusy);
    if (outermost) {
        pblnVariableBusy.assign(static_cast<size_t>(pobjVariables.Count()), false);
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
        output += ReplacementFor(QStringView(Text).sliced(nameBegin, close - nameBegin));
        position = close + 1;
        open = FindOpeningMark(Text, position);
    }
    output += QStringView(Text).sliced(position);

    if (outermost) {
        std::vector<bool>().swap(pblnVariableBusy);
    }
    return output;
}

QString VariableExpander::ReplacementFor(QStringView name) {
    const DataNode* variable = FindVariable(pobjVariables, name);
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
    QString replacement = Expand(value->Value());
    pblnVariableBusy[position] = false;
    return replacement;
}

} // namespace rivenfall
