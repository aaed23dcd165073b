#include "Harness.h"

#include "support/FileDialog.h"
#include "support/SupportLibrary.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QTimer>

using namespace rivenfall;

namespace {

TEST(SupportTest, AListIsOneCommandLine) {
    StringList items;
    EXPECT_EQ(items.Text().toStdString(), "");
    for (const char* item : {"cd", "C:\\work", "", "a b", "say \"hi\""}) {
        items.Add(QLatin1StringView(item), true);
    }
    EXPECT_EQ(items.Item(1).toStdString(), "cd");
    EXPECT_EQ(items.Text().toStdString(), R"(cd C:\work "" "a b" "say \"hi\"")");
    items.Remove(1);
    EXPECT_EQ(items.Item(1).toStdString(), "C:\\work");

    StringList tokens = SupportLibrary::CommandLineList();
    tokens.SetText(items.Text());
    EXPECT_EQ(tokens.Count(), 4);
    EXPECT_EQ(tokens.Item(3).toStdString(), "a b");
}

TEST(SupportTest, FilesAreChosenInARealDialog) {
    QTemporaryDir folder;
    const QString present = StoreBytes(folder.filePath(u"present.tvq"_qs), "x");
    FileDialog dialog;
    dialog.SetDialogTitle(u"Choose"_qs);
    dialog.SetDefaultExtension(u".tvq"_qs);
    dialog.SetDialogFilter(u"Documents|*.tvq"_qs);
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
    answer(false, u"new"_qs);
    EXPECT_EQ(dialog.FileName(), folder.filePath(u"new.tvq"_qs));
    answer(true, {});
    EXPECT_TRUE(dialog.Cancelled());
    EXPECT_EQ(dialog.FileName(), folder.filePath(u"new.tvq"_qs));
}

} // namespace
