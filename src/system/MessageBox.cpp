#include "system/MessageBox.h"

#include <utility>

namespace rivenfall {

namespace {

MessageBoxHandler CurrentHandler;

} // namespace

MessageBoxAnswer MessageBox(const QString& text, MessageBoxStyle style, const QString& title) {
    return CurrentHandler(text, style, title);
}

void SetMessageBoxHandler(MessageBoxHandler handler) {
    CurrentHandler = std::move(handler);
}

} // namespace rivenfall
