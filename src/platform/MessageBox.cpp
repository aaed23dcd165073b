#include "platform/MessageBox.h"

#include <QApplication>
#include <QMessageBox>

namespace rivenfall {

namespace {

MessageBoxResponder Responder;

QMessageBox::Icon IconOf(int style) {
    switch (style) {
    case MessageBoxError:
        return QMessageBox::Critical;
    case MessageBoxExclamation:
        return QMessageBox::Warning;
    default:
        return QMessageBox::NoIcon;
    }
}

int AnswerOf(int button) {
    switch (button) {
    case QMessageBox::Yes:
        return MessageBoxYes;
    case QMessageBox::No:
        return MessageBoxNo;
    case QMessageBox::Cancel:
        return MessageBoxCancel;
    default:
        return MessageBoxOk;
    }
}

} // namespace

int MessageBox(const QString& text, int style, const QString& title) {
    if (Responder) {
        return Responder(text, style, title);
    }
    const bool question = style == MessageBoxYesNoCancel;
    QMessageBox box(IconOf(style), title.isEmpty() ? QCoreApplication::applicationName() : title,
                    text,
                    question ? QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel
                             : QMessageBox::StandardButtons(QMessageBox::Ok),
                    QApplication::activeWindow());
    box.setTextFormat(Qt::PlainText);
    return AnswerOf(box.exec());
}

void SetMessageBoxResponder(MessageBoxResponder responder) {
    Responder = std::move(responder);
}

} // namespace rivenfall
