#pragma once

#include "controls/Form.h"
#include "controls/MultiLineTextBox.h"

#include <QTimer>

namespace rivenfall {

/// The output window: the log box and the clock that reads a child's output. It has no code of its
/// own; its behaviour is in the handlers of Execution.
class frmExec : public Form {
    Q_OBJECT

public:
    /// Makes the window, hidden, with the clock switched off.
    frmExec();

    QTimer tmrTick;
    MultiLineTextBox txtOutput;
};

} // namespace rivenfall
