#pragma once

#include <QString>

#include <functional>

namespace rivenfall {

/// The style values of a message box: its buttons and its icon.
enum class MessageBoxStyle {
    Plain = 0,       ///< An OK button, no icon.
    YesNoCancel = 3, ///< Yes, No and Cancel, no icon.
    YesNo = 4,       ///< Yes and No, no icon.
    Error = 16,      ///< An OK button and the error icon.
    Exclamation = 48 ///< An OK button and the exclamation icon.
};

/// The answers to a message box.
enum class MessageBoxAnswer { Ok = 1, Cancel = 2, Yes = 6, No = 7 };

/// Shows a message box until the user has answered it, and gives the answer. Enter answers
/// Yes where there is one; Escape answers Cancel, or No where there is no Cancel. An empty @p title
/// shows the platform's own.
MessageBoxAnswer MessageBox(const QString& text, MessageBoxStyle style, const QString& title = {});

/// Something that shows message boxes and gives the user's answer.
using MessageBoxHandler = std::function<MessageBoxAnswer(const QString& text, MessageBoxStyle style,
                                                         const QString& title)>;

/// Has @p handler show every message box from here on. The desktop sets one at its start, and tests
/// another; the runner's way leads past every message box.
void SetMessageBoxHandler(MessageBoxHandler handler);

} // namespace rivenfall
