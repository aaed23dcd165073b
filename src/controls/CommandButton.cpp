#include "controls/CommandButton.h"

#include <QEvent>
#include <QPushButton>

namespace rivenfall {

namespace {

/// Is pressed by its letter at once. Qt's button waits a tenth of a second, and what is typed
/// meanwhile would still go where it went before.
class Button : public QPushButton {
public:
    using QPushButton::QPushButton;

protected:
    bool event(QEvent* event) override {
        if (event->type() != QEvent::Shortcut) {
            return QPushButton::event(event);
        }
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
