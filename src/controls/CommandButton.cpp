#include "controls/CommandButton.h"

#include <QPushButton>

namespace rivenfall {

CommandButton::CommandButton(QWidget* container, const QString& caption)
    : Control(new QPushButton(caption, container)) {
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
