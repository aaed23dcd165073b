#include "controls/UpDown.h"

#include <QKeyEvent>
#include <QPainter>
#include <QToolButton>
#include <QVBoxLayout>

namespace rivenfall {

namespace {

/// Milliseconds that a button is held before it repeats, and from one repetition to the next.
constexpr int RepeatDelay = 400;
constexpr int RepeatInterval = 120;

/// The frame around the pair that tells the focus, in pixels.
constexpr int FrameWidth = 1;

/// The widget behind an UpDown.
class ButtonPair : public QWidget {
public:
    explicit ButtonPair(QWidget* parent)
        : QWidget(parent), Up(AddButton(Qt::UpArrow)), Down(AddButton(Qt::DownArrow)) {
        setFocusPolicy(Qt::TabFocus);
        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins(FrameWidth, FrameWidth, FrameWidth, FrameWidth);
        layout->setSpacing(0);
        layout->addWidget(Up);
        layout->addWidget(Down);
    }

    QToolButton* const Up;
    QToolButton* const Down;

protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Up) {
            Up->click();
        } else if (event->key() == Qt::Key_Down) {
            Down->click();
        } else {
            QWidget::keyPressEvent(event);
        }
    }

    void paintEvent(QPaintEvent*) override {
        if (hasFocus()) {
            QPainter painter(this);
            painter.setPen(QPen(palette().color(QPalette::Highlight), FrameWidth));
            painter.drawRect(rect().adjusted(0, 0, -FrameWidth, -FrameWidth));
        }
    }

private:
    QToolButton* AddButton(Qt::ArrowType arrow) {
        auto* button = new QToolButton(this);
        button->setArrowType(arrow);
        button->setAutoRepeat(true);
        button->setAutoRepeatDelay(RepeatDelay);
        button->setAutoRepeatInterval(RepeatInterval);
        button->setFocusPolicy(Qt::NoFocus);
        button->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
        return button;
    }
};

ButtonPair* PairOf(const UpDown& control) {
    return static_cast<ButtonPair*>(control.Widget());
}

} // namespace

UpDown::UpDown(QWidget* container) : Control(new ButtonPair(container)) {
    connect(PairOf(*this)->Up, &QToolButton::clicked, this, &UpDown::UpClick);
    connect(PairOf(*this)->Down, &QToolButton::clicked, this, &UpDown::DownClick);
}

void UpDown::SetButtonNames(const QString& up, const QString& down) {
    PairOf(*this)->Up->setAccessibleName(up);
    PairOf(*this)->Up->setToolTip(up);
    PairOf(*this)->Down->setAccessibleName(down);
    PairOf(*this)->Down->setToolTip(down);
}

} // namespace rivenfall
