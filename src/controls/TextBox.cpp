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

KeyCode KeyCodeOf(const QKeyEvent& event) {
    switch (event.key()) {
    case Qt::Key_Up:
        return KeyCode::Up;
    case Qt::Key_Down:
        return KeyCode::Down;
    default:
        return KeyCode::Other;
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

DropEffects EffectOf(Qt::DropActions actions) {
    DropEffects effect = DropEffect::None;
    effect.setFlag(DropEffect::Copy, actions.testFlag(Qt::CopyAction));
    effect.setFlag(DropEffect::Move, actions.testFlag(Qt::MoveAction));
    return effect;
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
        KeyCode key = KeyCodeOf(*event);
        Q_EMIT Owner->KeyDown(key, ShiftOf(event->modifiers()));
        if (key != KeyCode::None) {
            QLineEdit::keyPressEvent(event);
        }
    }

    void dragEnterEvent(QDragEnterEvent* event) override { Offer(event, DragOverState::Enter); }

    void dragMoveEvent(QDragMoveEvent* event) override { Offer(event, DragOverState::Over); }

    void dragLeaveEvent(QDragLeaveEvent*) override {
        DropEffects effect = DropEffect::None;
        Q_EMIT Owner->OLEDragOver(DataObject(QMimeData()), effect, 0, 0, 0, 0,
                                  DragOverState::Leave);
    }

    void dropEvent(QDropEvent* event) override {
        DropEffects effect = EffectOf(event->possibleActions());
        const QPoint place = event->position().toPoint();
        Q_EMIT Owner->OLEDragDrop(DataObject(*event->mimeData()), effect,
                                  ButtonOf(event->buttons()), ShiftOf(event->modifiers()),
                                  TwipsFromPixels(place.x()), TwipsFromPixels(place.y()));
        Answer(event, effect);
    }

private:
    void Offer(QDragMoveEvent* event, DragOverState state) {
        DropEffects effect = EffectOf(event->possibleActions());
        const QPoint place = event->position().toPoint();
        Q_EMIT Owner->OLEDragOver(DataObject(*event->mimeData()), effect,
                                  ButtonOf(event->buttons()), ShiftOf(event->modifiers()),
                                  TwipsFromPixels(place.x()), TwipsFromPixels(place.y()), state);
        Answer(event, effect);
    }

    static void Answer(QDropEvent* event, DropEffects effect) {
        if (!effect.testFlag(DropEffect::Copy)) {
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
