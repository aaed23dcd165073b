#include "run/desktop/frmExec.h"

namespace rivenfall {

using namespace Qt::StringLiterals;

frmExec::frmExec() : Form(FormBorder::Sizable, 7755, 5130), txtOutput(Client()) {
    SetCaption(u"OMRA"_s);
    SetIcon(u":/icons"_s);
    LeaveFocusWhenShown();
    txtOutput.Move(0, 0, 7695, 5085);
    txtOutput.SetAccessibleName(u"Output"_s);
}

} // namespace rivenfall
