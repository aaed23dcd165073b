#include "runner/VisibleText.h"

#include <algorithm>

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

bool Steers(QChar character) {
    switch (character.category()) {
    case QChar::Other_Control:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    case QChar::Other_Format:
        // Of the invisible characters these alone change the place of others.
        return character == QChar(0x061C) || character == QChar(0x200E) ||
               character == QChar(0x200F) ||
               (character >= QChar(0x202A) && character <= QChar(0x202E)) ||
               (character >= QChar(0x2066) && character <= QChar(0x2069));
    default:
        return false;
    }
}

QString EscapeOf(QChar character) {
    constexpr QStringView escaped = u"\a\b\t\n\v\f\r";
    constexpr QStringView letters = u"abtnvfr";
    if (const qsizetype position = escaped.indexOf(character); position >= 0) {
        return u"\\"_s + letters[position];
    }
    const ushort code = character.unicode();
    return code < 0x100 ? u"\\x%1"_s.arg(code, 2, 16, QChar(u'0'))
                        : u"\\u%1"_s.arg(code, 4, 16, QChar(u'0'));
}

} // namespace

QString VisibleText(const QString& text) {
    if (std::none_of(text.begin(), text.end(), Steers)) {
        return text;
    }
    QString visible;
    for (const QChar character : text) {
        if (Steers(character)) {
            visible += EscapeOf(character);
        } else {
            visible += character;
        }
    }
    return visible;
}

} // namespace rivenfall
