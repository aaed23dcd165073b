#pragma once

#include "controls/Control.h"

namespace rivenfall {

/// A push button.
class CommandButton : public Control {
    Q_OBJECT

public:
    /// Makes the button in @p container, which shares its ownership as Control tells. An ampersand
    /// in @p caption marks the letter that presses the button together with Alt.
    CommandButton(QWidget* container, const QString& caption);

    /// Presses the button as the user would: nothing happens while it is disabled.
    void Press();

Q_SIGNALS:
    /// The user pressed the button.
    void Click();
};

} // namespace rivenfall
