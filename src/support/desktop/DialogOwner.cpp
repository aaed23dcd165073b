#include "support/desktop/DialogOwner.h"

#include <QApplication>
#include <QMainWindow>

namespace rivenfall {

QWidget* DialogOwner() {
    if (QWidget* active = QApplication::activeWindow()) {
        return active;
    }
    // Behind a dialog that has just closed no window has the keyboard back yet.
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (qobject_cast<QMainWindow*>(window) && window->isVisible() &&
            !window->testAttribute(Qt::WA_ShowWithoutActivating)) {
            return window;
        }
    }
    return nullptr;
}

} // namespace rivenfall
