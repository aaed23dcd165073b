#pragma once

#include <QString>

#include <functional>

namespace rivenfall {

/// The style values of a message box: its buttons and its icon.
enum MessageBoxStyle {
    MessageBoxPlain = 0,       ///< An OK button, no icon.
    MessageBoxYesNoCancel = 3, ///< Yes, No and Cancel, no icon.
    MessageBoxError = 16,      ///< An OK button and the error icon.
    MessageBoxExclamation = 48 ///< An OK button and the exclamation icon.
};

/// The answers to a message box.
enum MessageBoxAnswer {
    MessageBoxOk = 1,
    MessageBoxCancel = 2,
    MessageBoxYes = 6,
    MessageBoxNo = 7
};

/// Shows a message box until the user has answered it, and gives the answer. Escape answers
/// Cancel where there is one. An empty @p title shows the platform's own.
int MessageBox(const QString& text, int style, const QString& title = {});

/// Something that answers in the user's place.
using MessageBoxResponder =
    std::function<int(const QString& text, int style, const QString& title)>;

/// Has @p responder answer every message box from here on instead of the user; an empty one gives
/// them back to the user. For a program without a screen, and for tests.
void SetMessageBoxResponder(MessageBoxResponder responder);

} // namespace rivenfall
