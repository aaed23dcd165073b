#include "Harness.h"

#include <QApplication>
#include <QClipboard>
#include <QPlainTextEdit>

using namespace rivenfall;

namespace {

TEST(MultiLineTextBoxTest, ShowsEveryKindOfLineBreakOnce) {
    QWidget window;
    MultiLineTextBox box(&window);
    for (const char* piece : {"a\r", "\nb\n", "c\r", "d\r", "\n", "\r\n", "\r", "\r"}) {
        box.AppendText(QLatin1StringView(piece));
    }
    auto* edit = static_cast<QPlainTextEdit*>(box.Widget());
    EXPECT_EQ(edit->toPlainText().toStdString(), "a\nb\nc\nd\n\n\n");
    QTest::keyClicks(edit, u"xyz"_s);
    EXPECT_EQ(box.Text().toStdString(), "a\r\nb\nc\rd\r\n\r\n\r\r");
    EXPECT_EQ(box.TextLength(), 14);
    box.SetText(u"\nnew"_s);
    EXPECT_EQ(edit->toPlainText().toStdString(), "\nnew");
    box.SetSelStartToEnd();
    EXPECT_EQ(edit->textCursor().position(), 4);
}

TEST(MultiLineTextBoxTest, ALongLineIsWholeWhenCopied) {
    QWidget window;
    MultiLineTextBox box(&window);
    auto* edit = static_cast<QPlainTextEdit*>(box.Widget());
    const QString whole(4000, u'w');
    const QString text =
        whole + u"\n"_s + u"a\u00a0"_s + u"😀"_s.repeated(40'000) + u"\n\n"_s + whole + u"x\n"_s;
    for (qsizetype position = 0; position < text.size(); position += 64) {
        box.AppendText(text.mid(position, 64));
    }
    EXPECT_EQ(box.Text(), text);
    edit->selectAll();
    edit->copy();
    EXPECT_EQ(QApplication::clipboard()->text(), text);
    const QStringList shown = edit->toPlainText().split(u'\n');
    EXPECT_EQ(shown.first(), whole);
    for (const QString& line : shown) {
        EXPECT_LE(line.size(), 4001);
        EXPECT_FALSE(!line.isEmpty() &&
                     (line.front().isLowSurrogate() || line.back().isHighSurrogate()));
    }
    box.SetSelStartToEnd();
    EXPECT_TRUE(edit->textCursor().atEnd());
}

} // namespace
