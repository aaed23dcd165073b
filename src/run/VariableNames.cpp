#include "run/VariableNames.h"

#include "data/DataNode.h"
#include "data/DataNodes.h"

namespace rivenfall {

namespace {

/// The character without its case. Most are letters of ASCII; without their short way a long text
/// full of references takes a third longer.
char32_t Folded(char16_t character) {
    if (character < 0x80) {
        return character >= u'A' && character <= u'Z' ? character + 0x20U : character;
    }
    return QChar::toCaseFolded(char32_t(character));
}

} // namespace

VariableNames::VariableNames(const DataNodes& variables) {
    pobjPositions.reserve(static_cast<size_t>(variables.Count()));
    for (const std::shared_ptr<DataNode>& variable : variables) {
        if (variable->Active()) {
            pobjPositions.emplace(variable->Value(), variable->Index() - 1);
        }
    }
}

int VariableNames::IndexOf(QStringView name) const {
    const auto found = pobjPositions.find(name);
    return found == pobjPositions.end() ? NoVariable : found->second;
}

size_t VariableNames::Hash::operator()(QStringView name) const {
    // FNV-1a by code units, http://www.isthe.com/chongo/tech/comp/fnv/.
    constexpr quint64 offset = 0xcbf29ce484222325;
    constexpr quint64 prime = 0x100000001b3;
    quint64 hash = offset;
    for (const QChar character : name) {
        // Where case changes a character outside the first plane, it changes its second half only.
        if (!character.isLowSurrogate()) {
            hash = (hash ^ Folded(character.unicode())) * prime;
        }
    }
    return hash;
}

bool VariableNames::Equal::operator()(QStringView left, QStringView right) const {
    // Most references are written as the name is, which is quickly told.
    return left == right || left.compare(right, Qt::CaseInsensitive) == 0;
}

} // namespace rivenfall
