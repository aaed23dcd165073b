#include "platform/PictureBox.h"

#include <QWidget>

namespace rivenfall {

PictureBox::PictureBox(QWidget* container) : Control(new QWidget(container)) {
    Widget()->setAutoFillBackground(true);
}

} // namespace rivenfall
