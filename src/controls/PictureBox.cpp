#include "controls/PictureBox.h"

#include <QWidget>

namespace rivenfall {

PictureBox::PictureBox(QWidget* container) : Control(new QWidget(container)) {}

} // namespace rivenfall
