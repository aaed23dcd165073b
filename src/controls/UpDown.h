#pragma once

#include "controls/Control.h"

namespace rivenfall {

/// Two buttons, one above the other, that repeat while they are held.
class UpDown : public Control {
    Q_OBJECT

public:
    /// Makes the control in @p container, which shares its ownership as Control tells.
    explicit UpDown(QWidget* container);

    /// Names the two buttons for a screen reader and in their tool tips.
    void SetButtonNames(const QString& up, const QString& down);

Q_SIGNALS:
    /// The lower button, or the down arrow while the control has the focus.
    void DownClick();

    /// The upper button, or the up arrow while the control has the focus.
    void UpClick();
};

} // namespace rivenfall
