#include "system/MessageBox.h"

#include <cstdio>
#include <utility>

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

MessageBoxHandler CurrentHandler;

MessageBoxAnswer WriteToStandardError(QString text, MessageBoxStyle style) {
    text.replace(u"\r\n"_s, u"\n"_s);
    std::fprintf(stderr, "%s\n", qUtf8Printable(text));
    switch (style) {
    case MessageBoxStyle::YesNoCancel:
        return MessageBoxAnswer::Cancel;
    case MessageBoxStyle::YesNo:
        return MessageBoxAnswer::No;
    default:
        return MessageBoxAnswer::Ok;
    }
}

} // namespace

MessageBoxAnswer MessageBox(const QString& text, MessageBoxStyle style, const QString& title) {
    return CurrentHandler ? CurrentHandler(text, style, title) : WriteToStandardError(text, style);
}

MessageBoxHandler SetMessageBoxHandler(MessageBoxHandler handler) {
    return std::exchange(CurrentHandler, std::move(handler));
}

} // namespace rivenfall
