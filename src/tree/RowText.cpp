#include "tree/RowText.h"

#include <QStringView>

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

/// The character of @p text at @p position, which moves on to the next one.
char32_t TakeCharacter(QStringView text, qsizetype& position) {
    const QChar first = text[position++];
    if (first.isHighSurrogate() && position < text.size() && text[position].isLowSurrogate()) {
        return QChar::surrogateToUcs4(first, text[position++]);
    }
    return first.unicode();
}

/// True for the joiners that scripts such as Persian and emoji are written with, and for the
/// selectors of another shape of a sign.
bool ShapesFormer(char32_t character) {
    return character == 0x200C || character == 0x200D ||
           (character >= 0xFE00 && character <= 0xFE0F) ||
           (character >= 0xE0100 && character <= 0xE01EF);
}

/// True for what those have a meaning behind: letters without case, the marks on them, and emoji.
/// Behind anything else they are only invisible.
bool HasShapes(char32_t character) {
    switch (QChar::category(character)) {
    case QChar::Letter_Other:
    case QChar::Mark_NonSpacing:
    case QChar::Mark_SpacingCombining:
    case QChar::Symbol_Other:
        return true;
    case QChar::Symbol_Modifier: // Among them the skin tones of emoji.
        return character > 0xFFFF;
    default:
        return false;
    }
}

/// True for a character behind @p former that shows nothing or changes how others are shown.
bool IsDeceptive(char32_t character, char32_t former) {
    if (character >= u' ' && character <= u'~') {
        return false;
    }
    if (ShapesFormer(character)) {
        return !HasShapes(former);
    }
    switch (QChar::category(character)) {
    case QChar::Other_Control:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    case QChar::Other_Format: // All but the Arabic signs around numbers are invisible.
        return QChar::direction(character) != QChar::DirAN;
    default: // Two letters that are blank, and a plane of characters without a picture.
        return character == 0x3164 || character == 0xFFA0 ||
               (character >= 0xE0000 && character <= 0xE0FFF);
    }
}

QString MarkFor(char32_t character) {
    // Within Hebrew or Arabic the Latin letters of the mark would turn what stands around them, if
    // the mark weren't isolated.
    return u"\u2066[U+%1]\u2069"_s.arg(QString::number(character, 16).toUpper(), 4, u'0');
}

} // namespace

QString RowText(const QString& text) {
    QString shown;
    qsizetype taken = 0;
    qsizetype position = 0;
    char32_t former = 0;
    while (position < text.size() && shown.size() + position - taken < LongestRow) {
        const qsizetype start = position;
        const char32_t character = TakeCharacter(text, position);
        if (IsDeceptive(character, former)) {
            shown += QStringView(text).sliced(taken, start - taken);
            shown += MarkFor(character);
            taken = position;
        }
        former = character;
    }
    if (taken == 0 && position == text.size()) {
        return text;
    }
    shown += QStringView(text).sliced(taken, position - taken);
    if (position < text.size()) {
        shown += u'…';
    }
    return shown;
}

} // namespace rivenfall
