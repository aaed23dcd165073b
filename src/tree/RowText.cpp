#include "tree/RowText.h"

#include "support/DeceptiveText.h"

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

QString MarkFor(char32_t character) {
    // Within Hebrew or Arabic the Latin letters of the mark would turn what stands around them, if
    // the mark weren't isolated.
    return u"\u2066[U+%1]\u2069"_s.arg(QString::number(character, 16).toUpper(), 4, u'0');
}

} // namespace

QString RowText(const QString& text) {
    QString shown = MarkDeceptive(text.left(LongestRow), MarkFor);
    if (text.size() > LongestRow || shown.size() > LongestRow) {
        shown.truncate(LongestRow);
        shown += u'…';
    }
    return shown;
}

} // namespace rivenfall
