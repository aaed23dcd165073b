#include "controls/TextBox.h"

#include "controls/Twips.h"

#include <QDragEnterEvent>
#include <QDragLeaveEvent>
#include <QDragMoveEvent>
#include <QDropEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QRegularExpression>

#include <limits>

namespace rivenfall {

namespace {

/// The code of a key that no handler asks for.
constexpr int OtherKey = 255;

int KeyCodeOf(const QKeyEvent& event) {
    switch (event.key()) {
    case Qt::Key_Up:
        return vbKeyUp;
    case Qt::Key_Down:
        return vbKeyDown;
    default:
        return OtherKey;
    }
}

int ShiftOf(Qt::KeyboardModifiers modifiers) {
    return (modifiers.testFlag(Qt::ShiftModifier) ? 1 : 0) |
           (modifiers.testFlag(Qt::ControlModifier) ? 2 : 0) |
           (modifiers.testFlag(Qt::AltModifier) ? 4 : 0);
}

int ButtonOf(Qt::MouseButtons buttons) {
    return (buttons.testFlag(Qt::LeftButton) ? 1 : 0) |
           (buttons.testFlag(Qt::RightButton) ? 2 : 0) |
           (buttons.testFlag(Qt::MiddleButton) ? 4 : 0);
}

int EffectOf(Qt::DropActions actions) {
    return (actions.testFlag(Qt::CopyAction) ? DropEffectCopy : 0) |
           (actions.testFlag(Qt::MoveAction) ? DropEffectMove : 0);
}

/// The widget behind a TextBox: hands keys and drags to the control before it acts on them.
class ValueLine : public QLineEdit {
public:
    explicit ValueLine(QWidget* parent) : QLineEdit(parent) {
        setDragEnabled(true);
        // Qt's own limit would cut a long value, and Ok would store what is left of it.
        setMaxLength(std::numeric_limits<int>::max());
    }

    void SetOwner(TextBox* owner) { Owner = owner; }

protected:
    void keyPressEvent(QKeyEvent* event) override {
        int keyCode = KeyCodeOf(*event);
        Q_EMIT Owner->KeyDown(keyCode, ShiftOf(event->modifiers()));
        if (keyCode != 0) {
            QLineEdit::keyPressEvent(event);
        }
    }

    void dragEnterEvent(QDragEnterEvent* event) override { Offer(event, DragEnter); }

    void dragMoveEvent(QDragMoveEvent* event) override { Offer(event, DragOver); }

    void dragLeaveEvent(QDragLeaveEvent*) override {
        int effect = DropEffectNone;
        Q_EMIT Owner->OLEDragOver(DataObject(QMimeData()), effect, 0, 0, 0, 0, DragLeave);
    }

    void dropEvent(QDropEvent* event) override {
        int effect = EffectOf(event->possibleActions());
        const QPoint place = event->position().toPoint();
        Q_EMIT Owner->OLEDragDrop(DataObject(*event->mimeData()), effect,
                                  ButtonOf(event->buttons()), ShiftOf(event->modifiers()),
                                  TwipsFromPixels(place.x()), TwipsFromPixels(place.y()));
        Answer(event, effect);
    }

private:
    void Offer(QDragMoveEvent* event, DragOverState state) {
        int effect = EffectOf(event->possibleActions());
        const QPoint place = event->position().toPoint();
        Q_EMIT Owner->OLEDragOver(DataObject(*event->mimeData()), effect,
                                  ButtonOf(event->buttons()), ShiftOf(event->modifiers()),
                                  TwipsFromPixels(place.x()), TwipsFromPixels(place.y()), state);
        Answer(event, effect);
    }

    static void Answer(QDropEvent* event, int effect) {
        if ((effect & DropEffectCopy) == 0) {
            event->ignore();
            return;
        }
        event->setDropAction(Qt::CopyAction);
        event->accept();
    }

    TextBox* Owner = nullptr;
};

ValueLine* LineOf(const TextBox& box) {
    return static_cast<ValueLine*>(box.Widget());
}

} // namespace

TextBox::TextBox(QWidget* container) : Control(new ValueLine(container)) {
    LineOf(*this)->SetOwner(this);
    connect(LineOf(*this), &QLineEdit::textChanged, this, &TextBox::Change);
}

QString TextBox::Text() const {
    return LineOf(*this)->text();
}

void TextBox::SetText(const QString& text) {
    LineOf(*this)->setText(text);
}

QString TextBox::SelText() const {
    return LineOf(*this)->selectedText();
}

void TextBox::SetSelText(const QString& text) {
    static const QRegularExpression lineBreak(QStringLiteral("[\r\n]"));
    LineOf(*this)->insert(text.section(lineBreak, 0, 0));
}

} // namespace rivenfall
