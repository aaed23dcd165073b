#include "controls/MessageDialog.h"

#include "support/desktop/DialogOwner.h"

#include <QCoreApplication>
#include <QFontDatabase>
#include <QFontMetrics>
#include <QGridLayout>
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

QMessageBox::StandardButtons ButtonsOf(MessageBoxStyle style) {
    switch (style) {
    case MessageBoxStyle::YesNoCancel:
        return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    case MessageBoxStyle::YesNo:
        return QMessageBox::Yes | QMessageBox::No;
    default:
        return QMessageBox::Ok;
    }
}

/// Keeps @p box wide enough for its title. The box reckons with the title's letters alone, where
/// the frame shows them in bold, with an icon and buttons beside them.
void MakeRoomForTitle(QMessageBox& box) {
    constexpr int roomBesideTitle = 140;
    QFont font = QFontDatabase::systemFont(QFontDatabase::TitleFont);
    font.setBold(true);
    const int width = QFontMetrics(font).horizontalAdvance(box.windowTitle()) + roomBesideTitle;
    auto* layout = qobject_cast<QGridLayout*>(box.layout());
    layout->addItem(new QSpacerItem(width, 0), layout->rowCount(), 0, 1, layout->columnCount());
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
    QMessageBox box(IconOf(style), title.isEmpty() ? QCoreApplication::applicationName() : title,
                    text, ButtonsOf(style), DialogOwner());
    // Left to itself the box has the button that its desktop puts first answer Enter.
    box.setDefaultButton(QMessageBox::Yes);
    MakeRoomForTitle(box);
    box.setTextFormat(Qt::PlainText);
    return AnswerOf(box.exec());
}

} // namespace rivenfall
