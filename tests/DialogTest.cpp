#include "WindowDriver.h"

#include "controls/App.h"
#include "controls/MessageDialog.h"
#include "support/Title.h"
#include "support/desktop/FileDialog.h"

#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QTimer>
#include <QWindow>

using namespace rivenfall;

namespace {

using DialogTest = WindowTest;

/// Calls @p act with each dialog of the kind @p Dialog that comes up while @p show runs.
template <typename Dialog>
void AnswerEach(const std::function<void(Dialog&)>& act, const std::function<void()>& show) {
    QTimer hand;
    QObject::connect(&hand, &QTimer::timeout, &hand, [&act] {
        if (auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget()))
            act(*dialog);
    });
    hand.start(20);
    show();
}

TEST_F(DialogTest, ARealDialogLeavesTheQuestionToTheProgram) {
    Open("a");
    StoreBytes(Path(u"there.tvq"_s), "old");
    SetFileDialogHandler({});
    Answer(No);
    Answer(Yes);
    QStringList offered;
    const auto chooseThere = [&](QFileDialog& dialog) {
        offered += dialog.selectedFiles().value(0);
        EXPECT_EQ(BytesOf(Path(u"there.tvq"_s)), "old");
        EXPECT_EQ(dialog.windowTitle(), u"FileSave File As - "_s + ProgramTitle());
        EXPECT_EQ(dialog.nameFilters().value(0),
                  u"OMRA Rivenfall Compiler Controller Files (*.tvq)"_s);
        EXPECT_EQ(dialog.acceptMode(), QFileDialog::AcceptSave);
        EXPECT_EQ(dialog.fileMode(), QFileDialog::AnyFile);
        dialog.findChild<QLineEdit*>()->setText(Path(u"there"_s));
        QMetaObject::invokeMethod(&dialog, "accept");
    };
    AnswerEach<QFileDialog>(chooseThere, [this] { Menu("File", "Save as"); });
    EXPECT_EQ(offered, (QStringList{App::Path() + u"/document.tvq"_s, Path(u"there.tvq"_s)}));
    const QString mayReplace =
        u"\"there.tvq\" exists already.\r\nDo you want to replace it?|4|"_s + ProgramTitle();
    EXPECT_EQ(TheUser.Asked, (QStringList{mayReplace, mayReplace}));
    EXPECT_TRUE(Holds(u"there.tvq"_s, "a", "FILE1(~)"));

    const auto chooseDocument = [&](QFileDialog& dialog) {
        EXPECT_EQ(dialog.acceptMode(), QFileDialog::AcceptOpen);
        EXPECT_EQ(dialog.fileMode(), QFileDialog::ExistingFile);
        EXPECT_EQ(dialog.directory(), QDir(Folder.path()));
        dialog.findChild<QLineEdit*>()->setText(u"document"_s);
        QMetaObject::invokeMethod(&dialog, "accept");
    };
    AnswerEach<QFileDialog>(chooseDocument, [this] { Menu("File", "Open"); });
    EXPECT_EQ(Program().FileTitle(), u"document.tvq"_s);
}

TEST_F(DialogTest, ANameEndsInTheExtension) {
    Open("a");
    for (const char* chosen : {"v1.2", "old.TVQ", ".hidden"}) {
        PickFile(chosen);
        Menu("File", "Save as");
    }
    EXPECT_EQ(QDir(Folder.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name),
              (QStringList{u".hidden.tvq"_s, u"document.tvq"_s, u"old.TVQ"_s, u"v1.2.tvq"_s}));
}

TEST_F(DialogTest, InfoComesByMenuAndByKeyInEachWindow) {
    QWidget* log = Runner().Log().Widget();
    QList<QWidget*> owners;
    const auto close = [&](QDialog& box) {
        EXPECT_EQ(box.windowTitle(), ProgramTitle());
        owners += box.parentWidget();
        box.accept();
    };
    AnswerEach<QDialog>(close, [&] {
        Menu("Help", "Info");
        Press(Qt::Key_F1);
        Runner().Show();
        log->window()->windowHandle()->requestActivate();
        QCoreApplication::processEvents();
        QTest::keyClick(log, Qt::Key_F1);
    });
    QWidget* const window = Window().Window();
    EXPECT_EQ(owners, (QList<QWidget*>{window, window, log->window()}));
}

TEST(MessageDialogTest, AnswersTheSameKeysOnEveryDesktop) {
    const auto answer = [](MessageBoxStyle style, Qt::Key key) {
        MessageBoxAnswer given{};
        AnswerEach<QMessageBox>(
            [key](QMessageBox& box) {
                EXPECT_GT(box.width(), box.fontMetrics().horizontalAdvance(ProgramTitle()) + 100);
                QTest::keyClick(&box, key);
            },
            [&] { given = ShowMessageDialog(u"?"_s, style, ProgramTitle()); });
        return given;
    };
    // The orders of buttons of the platforms, by their numbers.
    for (const char* layout : {"0", "1", "2", "3"}) {
        qApp->setStyleSheet(u"QDialogButtonBox { button-layout: %1 }"_s.arg(QLatin1String(layout)));
        EXPECT_EQ(answer(MessageBoxStyle::YesNoCancel, Qt::Key_Return), MessageBoxAnswer::Yes);
        EXPECT_EQ(answer(MessageBoxStyle::YesNoCancel, Qt::Key_Escape), MessageBoxAnswer::Cancel);
        EXPECT_EQ(answer(MessageBoxStyle::YesNo, Qt::Key_Return), MessageBoxAnswer::Yes);
        EXPECT_EQ(answer(MessageBoxStyle::YesNo, Qt::Key_Escape), MessageBoxAnswer::No);
    }
    qApp->setStyleSheet({});
    EXPECT_EQ(answer(MessageBoxStyle::Error, Qt::Key_Escape), MessageBoxAnswer::Ok);
}

} // namespace
