#include "run/frmExec.h"

namespace rivenfall {

frmExec::frmExec() : Form(FormBorder::Sizable, 7755, 5130), txtOutput(Client()) {
    SetCaption(QStringLiteral("OMRA"));
    SetIcon(QStringLiteral(":/icons"));
    LeaveFocusWhenShown();
    txtOutput.Move(0, 0, 7695, 5085);
    txtOutput.SetAccessibleName(QStringLiteral("Output"));
}

} // namespace rivenfall
