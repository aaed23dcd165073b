#include "controls/CommandButton.h"

#include <QPushButton>
#include <QShortcutEvent>

namespace rivenfall {

namespace {

/// Is pressed by its letter at once, and once however long the key is held. Qt's button waits a
/// tenth of a second, and what is typed meanwhile would still go where it went before.
class Button : public QPushButton {
public:
    using QPushButton::QPushButton;

protected:
    bool event(QEvent* event) override {
        if (event->type() != QEvent::Shortcut) {
            return QPushButton::event(event);
        }
        setShortcutAutoRepeat(static_cast<QShortcutEvent*>(event)->shortcutId(), false);
        click();
        return true;
    }
};

} // namespace

CommandButton::CommandButton(QWidget* container, const QString& caption)
    : Control(new Button(caption, container)) {
    auto* button = static_cast<QPushButton*>(Widget());
    // Enter presses the button that has the focus, whichever is the form's default.
    button->setAutoDefault(true);
    connect(button, &QPushButton::clicked, this, &CommandButton::Click);
    SetAccessibleName(QString(caption).remove(u'&'));
}

void CommandButton::Press() {
    static_cast<QPushButton*>(Widget())->click();
}

} // namespace rivenfall
