#include "Harness.h"

#include "support/FileDialog.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QPlainTextEdit>
#include <QTimer>

using namespace rivenfall;

namespace {

TEST(FileDialogTest, FilesAreChosenInARealDialog) {
    QTemporaryDir folder;
    const QString present = StoreBytes(folder.filePath(u"present.tvq"_s), "x");
    FileDialog dialog;
    dialog.SetDialogTitle(u"Choose"_s);
    dialog.SetDefaultExtension(u".tvq"_s);
    dialog.SetDialogFilter(u"Documents|*.tvq"_s);
    dialog.SetInitialDirectory(folder.path());
    const auto answer = [&](bool open, const QString& name) {
        dialog.SetDialogFlag3(open);
        dialog.SetDialogFlag6(!open);
        QTimer::singleShot(0, qApp, [=, &folder] {
            auto* shown = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            ASSERT_NE(shown, nullptr);
            EXPECT_EQ(shown->windowTitle().toStdString(), "Choose");
            EXPECT_EQ(shown->nameFilters().join(u';').toStdString(), "Documents (*.tvq)");
            EXPECT_EQ(shown->directory(), QDir(folder.path()));
            EXPECT_EQ(shown->fileMode() == QFileDialog::ExistingFile, open);
            EXPECT_EQ(shown->acceptMode() == QFileDialog::AcceptOpen, open);
            EXPECT_EQ(shown->testOption(QFileDialog::DontConfirmOverwrite), open);
            shown->selectFile(name);
            QMetaObject::invokeMethod(shown, name.isEmpty() ? "reject" : "accept");
        });
        open ? dialog.ShowOpen() : dialog.ShowSave();
    };
    answer(true, present);
    EXPECT_FALSE(dialog.Cancelled());
    EXPECT_EQ(dialog.FileName(), present);
    answer(false, u"new"_s);
    EXPECT_EQ(dialog.FileName(), folder.filePath(u"new.tvq"_s));
    answer(true, {});
    EXPECT_TRUE(dialog.Cancelled());
    EXPECT_EQ(dialog.FileName(), folder.filePath(u"new.tvq"_s));
}

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
