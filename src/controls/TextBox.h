#pragma once

#include "controls/Control.h"
#include "controls/DataObject.h"

namespace rivenfall {

/// The codes of the keys that a handler of KeyDown asks for.
enum class KeyCode {
    None = 0,   ///< No key: the box doesn't get it.
    Up = 38,    ///< The up arrow.
    Down = 40,  ///< The down arrow.
    Other = 255 ///< Any key that no handler asks for.
};

/// Where a drag stands to the box.
enum class DragOverState {
    Enter = 0, ///< It enters the box.
    Leave = 1, ///< It leaves the box.
    Over = 2   ///< It moves over the box.
};

/// A box for one line of text that leaves drops to its owner. What the user brings in, by whatever
/// means, ends at its first line break.
class TextBox : public Control {
    Q_OBJECT

public:
    /// Makes the box in @p container, which shares its ownership as Control tells.
    explicit TextBox(QWidget* container);

    /// The whole text. Writing raises Change if the text becomes another. The caret goes behind the
    /// text, or before one that is too long to be seen whole; it stays where the user types and
    /// the text is the same. A text longer than any program can be handed is shown by its beginning
    /// alone, behind an empty line: what the user brings in replaces the whole.
    QString Text() const;
    void SetText(const QString& text);

    /// Puts @p text in the place of the selected text, or inserts it at the caret if nothing is
    /// selected, as if the user brought it in.
    void SetSelText(const QString& text);

Q_SIGNALS:
    /// The text has changed, by the user or by code.
    void Change();

    /// A key goes down. Writing KeyCode::None to @p Key keeps it from the box. @p Shift is 1 for
    /// Shift, 2 for Control, 4 for Alt, or their sum.
    void KeyDown(rivenfall::KeyCode& Key, int Shift);

    /// A drag enters, leaves or moves over the box; @p Effect comes
    /// with what the source offers and goes back with the one that a drop would have.
    void OLEDragOver(const rivenfall::DataObject& Data, rivenfall::DropEffects& Effect, int Button,
                     int Shift, int X, int Y, rivenfall::DragOverState State);

    /// The drag is let go over the box; @p Effect as above. X and Y are twips.
    void OLEDragDrop(const rivenfall::DataObject& Data, rivenfall::DropEffects& Effect, int Button,
                     int Shift, int X, int Y);

private:
    /// The text that is too long for the line, until another comes; else null.
    QString pstrLongText;
};

} // namespace rivenfall
