#pragma once

#include "platform/Control.h"

namespace rivenfall {

/// A plain opaque container for other controls.
class PictureBox : public Control {
    Q_OBJECT

public:
    /// Makes the box in @p container, which shares its ownership as Control tells.
    explicit PictureBox(QWidget* container);
};

} // namespace rivenfall
