#include "system/EventLoop.h"

#include <QCoreApplication>

namespace rivenfall {

void DoEvents() {
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

} // namespace rivenfall
