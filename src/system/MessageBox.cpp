#include "system/MessageBox.h"

#include <utility>

namespace rivenfall {

namespace {

MessageBoxHandler CurrentHandler;

} // namespace

MessageBoxAnswer MessageBox(const QString& text, MessageBoxStyle style, const QString& title) {
    return CurrentHandler(text, style, title);
}

MessageBoxHandler SetMessageBoxHandler(MessageBoxHandler handler) {
    return std::exchange(CurrentHandler, std::move(handler));
}

} // namespace rivenfall
