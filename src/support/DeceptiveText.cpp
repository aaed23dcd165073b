#include "support/DeceptiveText.h"

#include <QList>

namespace rivenfall {

namespace {

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

} // namespace

QString MarkDeceptive(const QString& text, QString (*markOf)(char32_t character)) {
    QString marked;
    char32_t former = 0;
    for (const char32_t character : text.toUcs4()) {
        if (IsDeceptive(character, former)) {
            marked += markOf(character);
        } else {
            marked += QChar::fromUcs4(character);
        }
        former = character;
    }
    return marked;
}

} // namespace rivenfall
