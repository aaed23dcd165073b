#pragma once

#include "controls/Control.h"
#include "controls/DataObject.h"

namespace rivenfall {

/// The virtual codes of the keys that a handler of KeyDown asks for.
enum KeyCodeConstants {
    vbKeyUp = 38,  ///< The up arrow.
    vbKeyDown = 40 ///< The down arrow.
};

/// Where a drag stands to the box.
enum DragOverState {
    DragEnter = 0, ///< It enters the box.
    DragLeave = 1, ///< It leaves the box.
    DragOver = 2   ///< It moves over the box.
};

/// A box for one line of text that leaves drops to its owner.
class TextBox : public Control {
    Q_OBJECT

public:
    /// Makes the box in @p container, which shares its ownership as Control tells.
    explicit TextBox(QWidget* container);

    /// The whole text. Writing raises Change if the text becomes another.
    QString Text() const;
    void SetText(const QString& text);

    /// The selected text. Writing replaces it, or inserts at the caret if nothing is selected;
    /// what is written ends at its first line break, as the box holds one line.
    QString SelText() const;
    void SetSelText(const QString& text);

Q_SIGNALS:
    /// The text has changed, by the user or by code.
    void Change();

    /// A key goes down. Writing 0 to @p KeyCode keeps it from the box. @p Shift is 1 for Shift,
    /// 2 for Control, 4 for Alt, or their sum.
    void KeyDown(int& KeyCode, int Shift);

    /// A drag enters, leaves or moves over the box; @p State is a DragOverState. @p Effect comes
    /// with the bits that the source offers and goes back with the one that a drop would have.
    void OLEDragOver(const DataObject& Data, int& Effect, int Button, int Shift, int X, int Y,
                     int State);

    /// The drag is let go over the box; @p Effect as above. X and Y are twips.
    void OLEDragDrop(const DataObject& Data, int& Effect, int Button, int Shift, int X, int Y);
};

} // namespace rivenfall
