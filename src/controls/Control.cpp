#include "controls/Control.h"

#include "controls/Twips.h"

#include <QWidget>

namespace rivenfall {

Control::Control(QWidget* widget) : pobjWidget(widget) {}

Control::~Control() {
    delete pobjWidget.data();
}

bool Control::Enabled() const {
    return pobjWidget->isEnabled();
}

void Control::SetEnabled(bool enabled) {
    pobjWidget->setEnabled(enabled);
}

void Control::SetVisible(bool visible) {
    pobjWidget->setVisible(visible);
}

void Control::Move(int left, int top, int width, int height) {
    pobjWidget->setGeometry(PixelsFromTwips(left), PixelsFromTwips(top), PixelsFromTwips(width),
                            PixelsFromTwips(height));
}

void Control::SetFocus() {
    pobjWidget->setFocus(Qt::OtherFocusReason);
}

void Control::ZOrder(int) {
    pobjWidget->raise();
}

void Control::SetAccessibleName(const QString& name) {
    pobjWidget->setAccessibleName(name);
}

QWidget* Control::Widget() const {
    return pobjWidget;
}

} // namespace rivenfall
