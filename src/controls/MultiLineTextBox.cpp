#include "controls/MultiLineTextBox.h"

#include "controls/Twips.h"

#include <QMimeData>
#include <QPlainTextEdit>
#include <QTextBlock>
#include <QTextCursor>

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

QPlainTextEdit* EditOf(const MultiLineTextBox& box) {
    return static_cast<QPlainTextEdit*>(box.Widget());
}

/// Courier New at 9.75 points, which are 195 twips.
QFont TypewriterFont() {
    QFont font(u"Courier New"_s);
    font.setStyleHint(QFont::TypeWriter);
    font.setPixelSize(PixelsFromTwips(195));
    return font;
}

/// In characters: the longest line that is shown whole, and the length of the pieces behind its
/// front. Each change of a line lays it out from its beginning, and the caret at its end moves the
/// whole view. Without pieces, 64 bytes more cost 48 times what they do in an empty box where the
/// line has 64 KiB, and 600 times where it has 1 MB; with pieces that fit into the window, 1.3.
constexpr int LongestWholeLine = 4000;
constexpr int PieceLength = 80;

/// The state of a block, as the document calls a line, that is broken off for display only.
constexpr int BrokenOff = 1;

bool IsLineBreak(QChar character) {
    return character == u'\n' || character == u'\r' || character == QChar::ParagraphSeparator;
}

/// Gives lines that were broken off to the clipboard as one.
class LogEdit : public QPlainTextEdit {
public:
    using QPlainTextEdit::QPlainTextEdit;

protected:
    QMimeData* createMimeDataFromSelection() const override {
        const QTextCursor selection = textCursor();
        QString text;
        for (QTextBlock block = document()->findBlock(selection.selectionStart());
             block.isValid() && block.position() <= selection.selectionEnd();
             block = block.next()) {
            const int end = block.position() + block.length() - 1;
            QTextCursor part(block);
            part.setPosition(std::max(block.position(), selection.selectionStart()));
            part.setPosition(std::min(end, selection.selectionEnd()), QTextCursor::KeepAnchor);
            text += part.selectedText();
            if (end < selection.selectionEnd() && block.userState() != BrokenOff) {
                text += u'\n';
            }
        }
        auto copied = std::make_unique<QMimeData>();
        copied->setText(text);
        return copied.release();
    }
};

} // namespace

MultiLineTextBox::MultiLineTextBox(QWidget* container) : Control(new LogEdit(container)) {
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
    AppendText(text);
}

void MultiLineTextBox::AppendText(const QString& text) {
    // A carriage return at the end isn't shown yet: it may be half of a line break.
    QString shown = (pstrText.endsWith(u'\r') ? u"\r"_s : QString()) + text;
    pstrText += text;
    shown.chop(shown.endsWith(u'\r') ? 1 : 0);
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
    end.beginEditBlock();
    bool behindFront = end.block().previous().userState() == BrokenOff;
    int column = end.positionInBlock();
    qsizetype begin = 0;
    for (qsizetype position = 0; position < text.size(); ++position, ++column) {
        if (IsLineBreak(text[position])) {
            behindFront = false;
            column = -1;
        } else if (column >= (behindFront ? PieceLength : LongestWholeLine) &&
                   !text[position].isLowSurrogate()) {
            end.insertText(text.sliced(begin, position - begin).toString());
            end.block().setUserState(BrokenOff);
            end.insertBlock();
            begin = position;
            behindFront = true;
            column = 0;
        }
    }
    end.insertText(text.sliced(begin).toString());
    end.endEditBlock();
}

} // namespace rivenfall
