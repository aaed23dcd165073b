#include "support/StringList.h"

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

void StringList::SetSeparator(const QString& separator) {
    pobjMarks.Separator = separator;
}

QString StringList::Text() const {
    return JoinCommandLine(pobjItems, pobjMarks);
}

void StringList::SetText(const QString& text) {
    pobjItems = SplitCommandLine(text, pobjMarks);
}

void StringList::SetQuoteBegin(const QString& quote) {
    pobjMarks.QuoteBegin = quote;
}

void StringList::SetQuoteEnd(const QString& quote) {
    pobjMarks.QuoteEnd = quote;
}

void StringList::Remove(int Index) {
    pobjItems.removeAt(Index - 1);
}

} // namespace rivenfall
