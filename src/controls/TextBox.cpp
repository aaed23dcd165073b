#include "controls/TextBox.h"

#include "controls/Twips.h"

#include <QAction>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDragEnterEvent>
#include <QDragLeaveEvent>
#include <QDragMoveEvent>
#include <QDropEvent>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QRegularExpression>
#include <QStyleOptionFrame>

#include <limits>

namespace rivenfall {

using namespace Qt::StringLiterals;

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

/// In characters: twice what the kernel takes in one argument of a program (execve(2)), and what is
/// shown of a longer text. Laying one of 20 million characters out takes 20 seconds.
constexpr qsizetype LongestText = 1 << 18;
constexpr qsizetype LongestShown = 1000;

/// What the box takes of a text that the user brings in, as it holds one line.
QString FirstLine(const QString& text) {
    static const QRegularExpression lineBreak(u"[\r\n\u2028\u2029]"_s);
    return text.section(lineBreak, 0, 0);
}

/// The widget behind a TextBox: hands keys and drags to the control before it acts on them.
class ValueLine : public QLineEdit {
public:
    ValueLine(QWidget* parent, TextBox& owner) : QLineEdit(parent), Owner(owner) {
        setDragEnabled(true);
        // Qt's own limit would cut a long value, and Ok would store what is left of it.
        setMaxLength(std::numeric_limits<int>::max());
    }

    /// True if all of the text can be in view at once.
    bool FitsItsText() const {
        QStyleOptionFrame option;
        initStyleOption(&option);
        const QRect place = style()->subElementRect(QStyle::SE_LineEditContents, &option, this);
        // Measuring a text takes as long as it is; one of more characters doesn't fit for sure.
        const QString start = text().left(place.width());
        return start.size() == text().size() &&
               fontMetrics().horizontalAdvance(start) + 2 * MarginBesideText < place.width();
    }

protected:
    void keyPressEvent(QKeyEvent* event) override {
        KeyCode key = KeyCodeOf(*event);
        Q_EMIT Owner.KeyDown(key, ShiftOf(event->modifiers()));
        if (key == KeyCode::None) {
            return;
        }
        const bool selection =
            event->key() == Qt::Key_Insert && event->modifiers().testFlag(Qt::ControlModifier);
        if (!event->matches(QKeySequence::Paste) ||
            !PastedFirstLine(selection ? QClipboard::Selection : QClipboard::Clipboard)) {
            QLineEdit::keyPressEvent(event);
        }
    }

    void mouseReleaseEvent(QMouseEvent* event) override {
        if (event->button() != Qt::MiddleButton || !PastedFirstLine(QClipboard::Selection)) {
            QLineEdit::mouseReleaseEvent(event);
        }
    }

    void contextMenuEvent(QContextMenuEvent* event) override {
        QMenu* menu = createStandardContextMenu();
        menu->setAttribute(Qt::WA_DeleteOnClose);
        for (QAction* entry : menu->actions()) {
            if (entry->text().startsWith(QLineEdit::tr("&Paste"))) {
                entry->disconnect(this);
                connect(entry, &QAction::triggered, this, [this] {
                    if (!PastedFirstLine(QClipboard::Clipboard)) {
                        paste();
                    }
                });
            }
        }
        menu->popup(event->globalPos());
    }

    void inputMethodEvent(QInputMethodEvent* event) override {
        event->setCommitString(FirstLine(event->commitString()), event->replacementStart(),
                               event->replacementLength());
        QLineEdit::inputMethodEvent(event);
    }

    void dragEnterEvent(QDragEnterEvent* event) override { Offer(event, DragOverState::Enter); }

    void dragMoveEvent(QDragMoveEvent* event) override { Offer(event, DragOverState::Over); }

    void dragLeaveEvent(QDragLeaveEvent*) override {
        DropEffects effect = DropEffect::None;
        Q_EMIT Owner.OLEDragOver(DataObject(QMimeData()), effect, 0, 0, 0, 0, DragOverState::Leave);
    }

    void dropEvent(QDropEvent* event) override {
        if (event->source() == this) {
            event->ignore();
            return;
        }
        DropEffects effect = EffectOf(event->possibleActions());
        const QPoint place = event->position().toPoint();
        Q_EMIT Owner.OLEDragDrop(DataObject(*event->mimeData()), effect, ButtonOf(event->buttons()),
                                 ShiftOf(event->modifiers()), TwipsFromPixels(place.x()),
                                 TwipsFromPixels(place.y()));
        Answer(event, effect);
    }

private:
    /// Pastes the first of several lines. A text of one line is left to Qt, which can undo it by
    /// itself.
    bool PastedFirstLine(QClipboard::Mode mode) {
        const QString text = QGuiApplication::clipboard()->text(mode);
        const QString line = FirstLine(text);
        if (line.size() == text.size()) {
            return false;
        }
        insert(line);
        return true;
    }

    void Offer(QDragMoveEvent* event, DragOverState state) {
        // The box's own selection would come in its own place.
        if (event->source() == this) {
            event->ignore();
            return;
        }
        DropEffects effect = EffectOf(event->possibleActions());
        const QPoint place = event->position().toPoint();
        Q_EMIT Owner.OLEDragOver(DataObject(*event->mimeData()), effect, ButtonOf(event->buttons()),
                                 ShiftOf(event->modifiers()), TwipsFromPixels(place.x()),
                                 TwipsFromPixels(place.y()), state);
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

    /// What Qt leaves free on both sides of the text, in pixels.
    static constexpr int MarginBesideText = 2;

    TextBox& Owner;
};

ValueLine* LineOf(const TextBox& box) {
    return static_cast<ValueLine*>(box.Widget());
}

} // namespace

TextBox::TextBox(QWidget* container) : Control(new ValueLine(container, *this)) {
    connect(LineOf(*this), &QLineEdit::textChanged, this, [this] {
        pstrLongText.clear();
        LineOf(*this)->setPlaceholderText({});
        Q_EMIT Change();
    });
}

QString TextBox::Text() const {
    return pstrLongText.isNull() ? LineOf(*this)->text() : pstrLongText;
}

void TextBox::SetText(const QString& text) {
    ValueLine* line = LineOf(*this);
    // Who has just stored a text may type on where the caret is.
    const bool typesOn = line->hasFocus() && line->text() == text;
    const int caret = line->cursorPosition();
    const bool tooLong = text.size() > LongestText;
    line->setText(tooLong ? QString() : text);
    pstrLongText = tooLong ? text : QString();
    line->setPlaceholderText(pstrLongText.left(LongestShown));
    if (typesOn) {
        line->setCursorPosition(caret);
    } else if (!line->FitsItsText()) {
        line->setCursorPosition(0);
    }
}

void TextBox::SetSelText(const QString& text) {
    LineOf(*this)->insert(FirstLine(text));
}

} // namespace rivenfall
