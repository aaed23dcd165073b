#include "run/VariableExpander.h"

#include "data/DataNode.h"
#include "data/DataNodes.h"
#include "run/VariableNames.h"
#include "support/SupportLibrary.h"

#include <unistd.h>

#include <utility>

namespace rivenfall {

namespace {

/// What a run is granted, in characters that are written; a reference counts as so many. Only
/// variables that refer to each other in circles need more than a thousandth of it. It is used up
/// within a few seconds.
constexpr qint64 MostWork = 1LL << 31;
constexpr qint64 WorkOfReference = 512;

/// How many characters of texts a run may keep: 256 MiB.
constexpr qint64 MostKept = 1LL << 27;

constexpr QStringView OpeningMark = u"${";
constexpr QChar ClosingMark = u'}';

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
    : pobjUnresolved(unresolved) {
    for (const std::shared_ptr<DataNode>& variable : variables) {
        const QString name = FoldedName(variable->Value());
        if (variable->Active() && !pobjNumbers.contains(name)) {
            pobjNumbers.insert(name, pobjStates.size());
        }
        pobjStates.push_back({FirstActiveValue(*variable->Childs())});
    }
}

qsizetype VariableExpander::TooLongLength() {
    return 64 * sysconf(_SC_PAGESIZE) + 1;
}

QString VariableExpander::Expand(const QString& Text) {
    if (!Text.contains(OpeningMark)) {
        return Text;
    }
    if (SupportLibrary::IsArrayEmpty(pblnVariableBusy)) {
        pblnVariableBusy.assign(pobjStates.size(), false);
    }
    pobjPlaces.assign(1, {Text});
    while (!pobjPlaces.empty() && !IsTooMuch()) {
        TakeStep();
    }
    std::vector<bool>().swap(pblnVariableBusy);

    QString output = std::exchange(pstrOutput, {});
    if (pobjPlaces.empty() && output.size() <= LongestText) {
        plngKept += output.size();
        return output;
    }
    pobjPlaces.clear();
    if (pstrTooLong.isEmpty()) {
        pstrTooLong = output.left(TooLongLength() - 1).leftJustified(TooLongLength(), u'…');
    }
    return pstrTooLong;
}

/// Goes on in the text at hand: up to a reference, whose value is at hand then or written, or to
/// the end, which leads back to the text that the value is for.
void VariableExpander::TakeStep() {
    Place& place = pobjPlaces.back();
    const qsizetype open = place.Text.indexOf(OpeningMark, place.Position);
    const qsizetype close = open < 0 ? -1 : place.Text.indexOf(ClosingMark, open);
    if (close < 0) {
        Write(place.Text.sliced(place.Position));
        LeaveText();
        return;
    }
    Write(place.Text.sliced(place.Position, open - place.Position));
    place.Position = close + 1;
    plngWork += WorkOfReference;

    const qsizetype nameBegin = open + OpeningMark.size();
    const QString name = place.Text.sliced(nameBegin, close - nameBegin).toString();
    const auto number = pobjNumbers.constFind(FoldedName(name));
    if (number == pobjNumbers.constEnd() || !pobjStates[*number].Value) {
        NoteUnresolved(name);
    } else if (pblnVariableBusy[*number]) {
        NoteUnresolved(name);
        place.Cut = true;
    } else if (const std::optional<QString>& known = pobjStates[*number].Expansion) {
        Write(*known);
    } else {
        pblnVariableBusy[*number] = true;
        pobjPlaces.push_back({*pobjStates[*number].Value, 0, *number, pstrOutput.size()});
    }
}

void VariableExpander::LeaveText() {
    const Place left = pobjPlaces.back();
    pobjPlaces.pop_back();
    if (pobjPlaces.empty()) {
        return;
    }
    pblnVariableBusy[left.Variable] = false;

    // Behind a cut the value came out shorter than it does elsewhere. A value that is asked for
    // only once, as most are, needn't be kept.
    State& state = pobjStates[left.Variable];
    const QStringView expansion = QStringView(pstrOutput).sliced(left.OutputBegin);
    if (!left.Cut && state.Seen && plngKept + expansion.size() <= MostKept) {
        state.Expansion = expansion.toString();
        plngKept += expansion.size();
    }
    state.Seen = true;
    pobjPlaces.back().Cut |= left.Cut;
}

void VariableExpander::Write(QStringView text) {
    pstrOutput += text;
    plngWork += text.size();
}

bool VariableExpander::IsTooMuch() const {
    return pstrOutput.size() > LongestText || plngWork > MostWork || plngKept > MostKept;
}

void VariableExpander::NoteUnresolved(const QString& name) {
    if (pobjUnresolved && !pobjNoted.contains(name)) {
        pobjNoted.insert(name);
        pobjUnresolved->append(name);
    }
}

} // namespace rivenfall
