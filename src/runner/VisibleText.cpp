#include "runner/VisibleText.h"

#include "support/DeceptiveText.h"

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

QString EscapeOf(char32_t character) {
    constexpr QStringView escaped = u"\a\b\t\n\v\f\r";
    constexpr QStringView letters = u"abtnvfr";
    if (const qsizetype position = escaped.indexOf(QChar::fromUcs4(character)); position >= 0) {
        return u"\\"_s + letters[position];
    }
    const uint code = character;
    if (code < 0x100) {
        return u"\\x%1"_s.arg(code, 2, 16, QChar(u'0'));
    }
    return code < 0x10000 ? u"\\u%1"_s.arg(code, 4, 16, QChar(u'0'))
                          : u"\\U%1"_s.arg(code, 8, 16, QChar(u'0'));
}

} // namespace

QString VisibleText(const QString& text) {
    return MarkDeceptive(text, EscapeOf);
}

} // namespace rivenfall
