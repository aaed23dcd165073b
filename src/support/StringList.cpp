#include "support/StringList.h"

#include "system/CommandLine.h"

namespace rivenfall {

void StringList::Add(const QString& Value, bool) {
    pobjItems += Value;
}

int StringList::Count() const {
    return static_cast<int>(pobjItems.size());
}

QString StringList::Item(int Index) const {
    return pobjItems.at(Index - 1);
}

QString StringList::Text() const {
    return JoinCommandLine(pobjItems);
}

void StringList::SetText(const QString& text) {
    pobjItems = SplitCommandLine(text);
}

void StringList::Remove(int Index) {
    pobjItems.removeAt(Index - 1);
}

} // namespace rivenfall
