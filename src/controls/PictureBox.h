#pragma once

#include "controls/Control.h"

namespace rivenfall {

/// A plain container for other controls. What lies behind it shows between them.
class PictureBox : public Control {
    Q_OBJECT

public:
    /// Makes the box in @p container, which shares its ownership as Control tells.
    explicit PictureBox(QWidget* container);
};

} // namespace rivenfall
