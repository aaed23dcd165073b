#include "Harness.h"

#include "support/FileDialog.h"
#include "support/SupportLibrary.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QPushButton>
#include <QTimer>

using namespace rivenfall;

namespace {

TEST(SupportTest, AListIsOneCommandLine) {
    StringList items;
    items.SetSeparator(u" "_qs);
    items.SetQuoteBegin(u"\""_qs);
    items.SetQuoteEnd(u"\""_qs);
    EXPECT_EQ(items.Text().toStdString(), "");
    for (const char* item : {"cd", "C:\\work", "", "a b", "say \"hi\""}) {
        items.Add(QLatin1StringView(item), true);
    }
    EXPECT_EQ(items.Item(1).toStdString(), "cd");
    EXPECT_EQ(items.Text().toStdString(), R"(cd C:\work "" "a b" "say \"hi\"")");
    items.Remove(1);
    EXPECT_EQ(items.Item(1).toStdString(), "C:\\work");
    EXPECT_EQ(items.Count(), 4);

    StringList tokens = SupportLibrary::CommandLineList();
    tokens.SetText({});
    EXPECT_EQ(tokens.Count(), 0);
    tokens.SetText(items.Text());
    EXPECT_EQ(tokens.Text(), items.Text());
    EXPECT_EQ(tokens.Item(3).toStdString(), "a b");

    StringList marked;
    marked.SetSeparator(u", "_qs);
    marked.SetQuoteBegin(u"<<"_qs);
    marked.SetQuoteEnd(u">"_qs);
    for (const char* item : {"x, y", "<<", "a>b\\", "plain"}) {
        marked.Add(QLatin1StringView(item), false);
    }
    EXPECT_EQ(marked.Text().toStdString(), R"(<<x, y>, <<\<<>, <<a\>b\\>, plain)");
    const QString text = marked.Text();
    marked.SetText(text);
    EXPECT_EQ(marked.Text(), text);
    EXPECT_EQ(marked.Item(3).toStdString(), "a>b\\");
}

/// Has @p act deal with the modal window of the kind Window that is shown next.
template <typename Window>
void WhenShown(const std::function<void(Window&)>& act) {
    QTimer::singleShot(0, qApp, [act] {
        auto* window = qobject_cast<Window*>(QApplication::activeModalWidget());
        ASSERT_NE(window, nullptr);
        act(*window);
    });
}

TEST(SupportTest, FilesAreChosenInARealDialog) {
    QTemporaryDir folder;
    const QString present = StoreBytes(folder.filePath(u"present.tvq"_qs), "x");
    FileDialog dialog;
    dialog.SetDialogTitle(u"Choose"_qs);
    dialog.SetDefaultExtension(u".tvq"_qs);
    dialog.SetDialogFilter(u"Documents|*.tvq"_qs);
    dialog.SetInitialDirectory(folder.path());
    dialog.SetDialogFlag3(true);
    WhenShown<QFileDialog>([&](QFileDialog& shown) {
        EXPECT_EQ(shown.windowTitle().toStdString(), "Choose");
        EXPECT_EQ(shown.nameFilters().join(u';').toStdString(), "Documents (*.tvq)");
        EXPECT_EQ(shown.directory(), QDir(folder.path()));
        EXPECT_EQ(shown.fileMode(), QFileDialog::ExistingFile);
        EXPECT_EQ(shown.acceptMode(), QFileDialog::AcceptOpen);
        shown.selectFile(present);
        shown.accept();
    });
    dialog.ShowOpen();
    EXPECT_FALSE(dialog.Cancelled());
    EXPECT_EQ(dialog.FileName(), present);

    dialog.SetDialogFlag3(false);
    dialog.SetDialogFlag6(true);
    WhenShown<QFileDialog>([&](QFileDialog& shown) {
        EXPECT_EQ(shown.acceptMode(), QFileDialog::AcceptSave);
        EXPECT_FALSE(shown.testOption(QFileDialog::DontConfirmOverwrite));
        shown.selectFile(u"new"_qs);
        shown.accept();
    });
    dialog.ShowSave();
    EXPECT_EQ(dialog.FileName(), folder.filePath(u"new.tvq"_qs));

    WhenShown<QFileDialog>([](QFileDialog& shown) { shown.reject(); });
    dialog.ShowOpen();
    EXPECT_TRUE(dialog.Cancelled());
    EXPECT_EQ(dialog.FileName(), folder.filePath(u"new.tvq"_qs));
}

TEST(SupportTest, TheAboutBoxShowsPlainLines) {
    QStringList texts;
    WhenShown<QDialog>([&texts](QDialog& box) {
        EXPECT_EQ(box.windowTitle().toStdString(), "Title");
        for (const QLabel* label : box.findChildren<QLabel*>()) {
            if (label->pixmap().isNull()) {
                texts += label->text();
                EXPECT_EQ(label->textFormat(), Qt::PlainText);
            }
        }
        box.findChild<QPushButton*>()->click();
    });
    SupportLibrary::ShowAbout(u"Title"_qs, u":/icons"_qs, u"small print"_qs,
                              {u"one"_qs, QString(), u"<b>three</b>"_qs});
    EXPECT_EQ(texts.join(u'|').toStdString(), "Title|one||<b>three</b>|small print");
}

TEST(SupportTest, AnArrayIsEmptyUntilItIsAllocated) {
    std::vector<bool> array;
    EXPECT_TRUE(SupportLibrary::IsArrayEmpty(array));
    array.assign(1, false);
    EXPECT_FALSE(SupportLibrary::IsArrayEmpty(array));
}

} // namespace
