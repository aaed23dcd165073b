#include "controls/MessageDialog.h"

#include <QApplication>
#include <QMessageBox>

namespace rivenfall {

namespace {

QMessageBox::Icon IconOf(MessageBoxStyle style) {
    switch (style) {
    case MessageBoxStyle::Error:
        return QMessageBox::Critical;
    case MessageBoxStyle::Exclamation:
        return QMessageBox::Warning;
    default:
        return QMessageBox::NoIcon;
    }
}

MessageBoxAnswer AnswerOf(int button) {
    switch (button) {
    case QMessageBox::Yes:
        return MessageBoxAnswer::Yes;
    case QMessageBox::No:
        return MessageBoxAnswer::No;
    case QMessageBox::Cancel:
        return MessageBoxAnswer::Cancel;
    default:
        return MessageBoxAnswer::Ok;
    }
}

} // namespace

MessageBoxAnswer ShowMessageDialog(const QString& text, MessageBoxStyle style,
                                   const QString& title) {
    const bool question = style == MessageBoxStyle::YesNoCancel;
    QMessageBox box(IconOf(style), title.isEmpty() ? QCoreApplication::applicationName() : title,
                    text,
                    question ? QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel
                             : QMessageBox::StandardButtons(QMessageBox::Ok),
                    QApplication::activeWindow());
    box.setTextFormat(Qt::PlainText);
    return AnswerOf(box.exec());
}

} // namespace rivenfall
