#pragma once

#include "controls/Control.h"

namespace rivenfall {

/// A box for a long text that the user can select and copy but not change. Lines don't wrap.
///
/// The box shows a line break for a carriage return, a line feed, or the two together. A very long
/// line is shown in several pieces; what is copied from it is whole.
class MultiLineTextBox : public Control {
    Q_OBJECT

public:
    /// Makes the box in @p container, which shares its ownership as Control tells.
    explicit MultiLineTextBox(QWidget* container);

    /// The whole text, with its line breaks as they were written.
    QString Text() const;
    void SetText(const QString& text);

    /// Does what SetText of Text followed by @p text does, at a cost that grows with @p text only.
    void AppendText(const QString& text);

    /// The number of characters of Text.
    int TextLength() const;

    /// Puts the caret at the end of the text, where TextLength is, and brings the last line into
    /// view. No other place is offered.
    void SetSelStartToEnd();

Q_SIGNALS:
    /// The text has changed.
    void Change();

private:
    void ShowAtEnd(QStringView text);

    QString pstrText;
};

} // namespace rivenfall
