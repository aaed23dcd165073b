#include "controls/MultiLineTextBox.h"

#include "controls/Twips.h"

#include <QFontDatabase>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTextCursor>

namespace rivenfall {

namespace {

QPlainTextEdit* EditOf(const MultiLineTextBox& box) {
    return static_cast<QPlainTextEdit*>(box.Widget());
}

/// Courier New at 9.75 points, which are 195 twips.
QFont TypewriterFont() {
    QFont font(QStringLiteral("Courier New"));
    font.setStyleHint(QFont::TypeWriter);
    font.setPixelSize(PixelsFromTwips(195));
    return font;
}

} // namespace

MultiLineTextBox::MultiLineTextBox(QWidget* container) : Control(new QPlainTextEdit(container)) {
    QPlainTextEdit* edit = EditOf(*this);
    edit->setUndoRedoEnabled(false);
    edit->setLineWrapMode(QPlainTextEdit::NoWrap);
    edit->setFont(TypewriterFont());
    edit->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    edit->setFrameShape(QFrame::NoFrame);
    edit->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    edit->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    edit->viewport()->setBackgroundRole(QPalette::Button);
    edit->setTabChangesFocus(true);
}

QString MultiLineTextBox::Text() const {
    return pstrText;
}

void MultiLineTextBox::SetText(const QString& text) {
    EditOf(*this)->clear();
    pstrText.clear();
    pblnReturnHeldBack = false;
    AppendText(text);
}

void MultiLineTextBox::AppendText(const QString& text) {
    pstrText += text;
    QString shown = (pblnReturnHeldBack ? QStringLiteral("\r") : QString()) + text;
    pblnReturnHeldBack = shown.endsWith(u'\r');
    shown.chop(pblnReturnHeldBack ? 1 : 0);
    ShowAtEnd(shown);
    Q_EMIT Change();
}

int MultiLineTextBox::TextLength() const {
    return static_cast<int>(pstrText.size());
}

void MultiLineTextBox::SetSelStartToEnd() {
    QPlainTextEdit* edit = EditOf(*this);
    edit->moveCursor(QTextCursor::End);
    edit->ensureCursorVisible();
}

void MultiLineTextBox::ShowAtEnd(QStringView text) {
    QTextCursor end(EditOf(*this)->document());
    end.movePosition(QTextCursor::End);
    end.insertText(text.toString());
}

} // namespace rivenfall
