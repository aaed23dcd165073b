#include "Fuzz.h"

#include "system/CommandLine.h"

#include <string>
#include <vector>

namespace rivenfall {

namespace {

/// The items of a command line, told character by character.
std::vector<std::u16string> PlainItems(const std::u16string& text) {
    std::vector<std::u16string> items;
    bool inItem = false;
    bool quoted = false;
    size_t backslashes = 0;
    const auto item = [&]() -> std::u16string& {
        if (!inItem) {
            items.emplace_back();
            inItem = true;
        }
        return items.back();
    };
    for (const char16_t character : text) {
        if (character == u'\\') {
            ++backslashes;
            item();
            continue;
        }
        if (character == u'"') {
            item().append(backslashes / 2, u'\\');
            if (backslashes % 2 == 0) {
                quoted = !quoted;
            } else {
                item() += u'"';
            }
            backslashes = 0;
            continue;
        }
        if (backslashes > 0) {
            item().append(backslashes, u'\\');
            backslashes = 0;
        }
        const bool blank =
            character == u' ' || character == u'\t' || character == u'\n' || character == u'\r';
        if (blank && !quoted) {
            inItem = false;
        } else {
            item() += character;
        }
    }
    if (backslashes > 0) {
        item().append(backslashes, u'\\');
    }
    return items;
}

QStringList PlainItems(const QString& text) {
    QStringList items;
    for (const std::u16string& item : PlainItems(text.toStdU16String())) {
        items += QString::fromStdU16String(item);
    }
    return items;
}

/// The input is a command line; and it is a list of items with a control character between them,
/// which are to come back from their own command line.
void Compare(const QByteArray& input) {
    constexpr char16_t between = 0x1F;
    const QString text = QString::fromUtf8(input);
    Demand(SplitCommandLine(text) == PlainItems(text));
    const QStringList items = text.split(QChar(between));
    const QString commandLine = JoinCommandLine(items);
    Demand(SplitCommandLine(commandLine) == items);
    Demand(PlainItems(commandLine) == items);
}

} // namespace

} // namespace rivenfall

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    rivenfall::Compare(rivenfall::Input(data, size));
    return 0;
}
