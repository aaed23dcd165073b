#include "run/VariableExpander.h"

#include "data/DataNode.h"
#include "data/DataNodes.h"
#include "support/SupportLibrary.h"

#include <unistd.h>

#include <utility>

namespace rivenfall {

namespace {

constexpr QStringView OpeningMark = u"${";
constexpr QChar ClosingMark = u'}';

/// What a run is granted, in characters that are written; a reference counts as so many. Only
/// variables that refer to each other in circles need more than a thousandth of it. It is used up
/// in about a second.
constexpr qint64 MostWork = 1LL << 31;
constexpr qint64 WorkOfReference = 512;

/// How many characters of texts a run may keep: 256 MiB.
constexpr qint64 MostKept = 1LL << 27;

/// The position of the first opening mark from @p from on, or -1.
qsizetype FindOpeningMark(QStringView text, qsizetype from) {
    qsizetype found = text.indexOf(OpeningMark.front(), from);
    while (found >= 0 && !text.sliced(found).startsWith(OpeningMark)) {
        found = text.indexOf(OpeningMark.front(), found + 1);
    }
    return found;
}

const QString* FirstActiveValue(const DataNodes& values) {
    for (const std::shared_ptr<DataNode>& value : values) {
        if (value->Active()) {
            return &value->Value();
        }
    }
    return nullptr;
}

} // namespace

VariableExpander::VariableExpander(const DataNodes& variables, QStringList* unresolved)
    : pobjNames(variables), pobjUnresolved(unresolved) {
    pobjStates.reserve(static_cast<size_t>(variables.Count()));
    for (const std::shared_ptr<DataNode>& variable : variables) {
        pobjStates.push_back({FirstActiveValue(*variable->Childs())});
    }
}

qsizetype VariableExpander::TooLongLength() {
    return 64 * sysconf(_SC_PAGESIZE) + 1;
}

QString VariableExpander::Expand(const QString& Text) {
    if (FindOpeningMark(Text, 0) < 0) {
        return Text;
    }
    if (SupportLibrary::IsArrayEmpty(pblnVariableBusy)) {
        pblnVariableBusy.assign(pobjStates.size(), false);
    }
    pobjFrames.push_back({VariableNames::NoVariable, Text});
    for (;;) {
        if (GoesDown()) {
            continue;
        }
        if (pobjFrames.size() == 1) {
            break;
        }
        FinishValue();
    }
    QString output = TakeOutput();
    std::vector<bool>().swap(pblnVariableBusy);

    // Who is nothing but the value of one variable shares its text.
    if (!output.isDetached()) {
        return output;
    }
    plngKept += output.size();
    return plngKept > MostKept ? TooLong(output) : output;
}

/// Goes on in the text of the last frame: up to a value that has to be expanded first, whose frame
/// is the last one then, or to the end, which gives False.
bool VariableExpander::GoesDown() {
    Frame& frame = pobjFrames.back();
    while (!IsTooMuch(frame)) {
        const QStringView text = frame.Text;
        const qsizetype open = FindOpeningMark(text, frame.Position);
        const qsizetype close = open < 0 ? -1 : text.indexOf(ClosingMark, open);
        if (close < 0) {
            Append(frame, frame.Text.sliced(frame.Position));
            return false;
        }
        Append(frame, text.sliced(frame.Position, open - frame.Position));
        frame.Position = close + 1;
        plngWork += WorkOfReference;

        const qsizetype nameBegin = open + OpeningMark.size();
        const QStringView name = text.sliced(nameBegin, close - nameBegin);
        const int variable = pobjNames.IndexOf(name);
        if (variable == VariableNames::NoVariable || !StateOf(variable).Value) {
            NoteUnresolved(name);
        } else if (pblnVariableBusy[static_cast<size_t>(variable)]) {
            NoteUnresolved(name);
            frame.Cut = true;
        } else if (const std::optional<QString>& known = StateOf(variable).Expansion) {
            Append(frame, *known);
        } else {
            pblnVariableBusy[static_cast<size_t>(variable)] = true;
            pobjFrames.push_back({variable, *StateOf(variable).Value});
            return true;
        }
    }
    return false;
}

/// Puts what the last frame has come to into the one above it.
void VariableExpander::FinishValue() {
    const bool cut = pobjFrames.back().Cut;
    const int variable = pobjFrames.back().Variable;
    const QString output = TakeOutput();
    pblnVariableBusy[static_cast<size_t>(variable)] = false;

    // What a cut leaves depends on where the value is asked for. Most values are asked for once, so
    // they are kept from the second time on.
    State& state = StateOf(variable);
    if (!cut && state.Seen && plngKept + output.size() <= MostKept) {
        state.Expansion = output;
        plngKept += output.size();
    }
    state.Seen = true;
    pobjFrames.back().Cut |= cut;
    Append(pobjFrames.back(), output);
}

/// Takes the last frame away and gives what it has come to.
QString VariableExpander::TakeOutput() {
    const bool tooMuch = IsTooMuch(pobjFrames.back());
    const QString output = std::move(pobjFrames.back().Output);
    pobjFrames.pop_back();
    return tooMuch ? TooLong(output) : output;
}

void VariableExpander::Append(Frame& frame, const QString& text) {
    frame.TooLong |= !pstrTooLong.isEmpty() && text.isSharedWith(pstrTooLong);
    if (frame.Output.isEmpty()) {
        frame.Output = text;
    } else {
        Append(frame, QStringView(text));
    }
}

void VariableExpander::Append(Frame& frame, QStringView text) {
    frame.Output += text;
    plngWork += text.size();
}

bool VariableExpander::IsTooMuch(const Frame& frame) const {
    return frame.TooLong || frame.Output.size() > LongestText || plngWork > MostWork;
}

/// The text in place of one that is too long and begins with @p front. There is one for all, which
/// begins as the first of them does: nobody can be handed any of them.
QString VariableExpander::TooLong(const QString& front) {
    if (pstrTooLong.isEmpty()) {
        pstrTooLong = front.leftJustified(TooLongLength(), u'…', true);
    }
    return pstrTooLong;
}

VariableExpander::State& VariableExpander::StateOf(int variable) {
    return pobjStates[static_cast<size_t>(variable)];
}

void VariableExpander::NoteUnresolved(QStringView name) {
    if (!pobjUnresolved || pobjNoted.contains(name.toString())) {
        return;
    }
    pobjNoted.insert(name.toString());
    pobjUnresolved->append(name.toString());
}

} // namespace rivenfall
