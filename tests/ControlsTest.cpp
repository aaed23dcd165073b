#include "Harness.h"

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

} // namespace
