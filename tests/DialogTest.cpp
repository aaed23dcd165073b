#include "WindowDriver.h"

#include "controls/App.h"
#include "controls/MessageDialog.h"
#include "support/desktop/FileDialog.h"

#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QTimer>

using namespace rivenfall;

namespace {

const QString Title = u"OMRA Rivenfall Compiler Controller 1.5.0"_s;
const QString MayReplace =
    u"\"there.tvq\" exists already.\r\nDo you want to replace it?|4|"_s + Title;

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
    TheUser.Answers = {MessageBoxAnswer::No, MessageBoxAnswer::Yes};
    QStringList offered;
    const auto chooseThere = [&](QFileDialog& dialog) {
        offered += dialog.selectedFiles().value(0);
        EXPECT_EQ(BytesOf(Path(u"there.tvq"_s)), "old");
        EXPECT_EQ(dialog.windowTitle(), u"FileSave File As - "_s + Title);
        EXPECT_EQ(dialog.nameFilters().value(0),
                  u"OMRA Rivenfall Compiler Controller Files (*.tvq)"_s);
        EXPECT_EQ(dialog.acceptMode(), QFileDialog::AcceptSave);
        EXPECT_EQ(dialog.fileMode(), QFileDialog::AnyFile);
        dialog.findChild<QLineEdit*>()->setText(Path(u"there"_s));
        QMetaObject::invokeMethod(&dialog, "accept");
    };
    AnswerEach<QFileDialog>(chooseThere, [this] { Act("file:A"); });
    EXPECT_EQ(offered, (QStringList{App::Path() + u"/document.tvq"_s, Path(u"there.tvq"_s)}));
    EXPECT_EQ(TheUser.Asked, (QStringList{MayReplace, MayReplace}));
    EXPECT_TRUE(Holds(u"there.tvq"_s, "a", "FILE1(~)"));

    const auto chooseDocument = [&](QFileDialog& dialog) {
        EXPECT_EQ(dialog.acceptMode(), QFileDialog::AcceptOpen);
        EXPECT_EQ(dialog.fileMode(), QFileDialog::ExistingFile);
        EXPECT_EQ(dialog.directory(), QDir(Folder.path()));
        dialog.findChild<QLineEdit*>()->setText(u"document"_s);
        QMetaObject::invokeMethod(&dialog, "accept");
    };
    AnswerEach<QFileDialog>(chooseDocument, [this] { Act("file:P"); });
    EXPECT_EQ(Program().FileTitle(), u"document.tvq"_s);
}

TEST_F(DialogTest, EveryRoadToASaveAsksBeforeItReplacesAFile) {
    for (const char* road : {"file:S", "file:A", "yes file:N", "yes file:P", "yes file:X"}) {
        SCOPED_TRACE(road);
        StoreBytes(Path(u"there.tvq"_s), "old");
        Open("a", "X", "file:N type:b Ok");
        const QString prompt = QString::fromLatin1(road).section(u' ', 0, -2) + u' ';
        const QString entry = QString::fromLatin1(road).section(u' ', -1);
        Act(prompt + u"no pick:there pick: "_s + entry);
        EXPECT_EQ(TheUser.Asked.last(), MayReplace);
        EXPECT_EQ(TheUser.Offered, Path(u"there.tvq"_s));
        EXPECT_EQ(BytesOf(Path(u"there.tvq"_s)), "old");
        if (entry == u"file:N")
            Act("type:b Ok");
        Act(prompt + u"no pick:there yes pick:there.tvq pick: "_s + entry);
        EXPECT_TRUE(Holds(u"there.tvq"_s, "b(~(${FILE1}))", "FILE1(~)"));
    }
}

TEST_F(DialogTest, ANameEndsInTheExtension) {
    Open("a");
    for (const char* chosen : {"v1.2", "old.TVQ", ".hidden"}) {
        Act(u"pick:%1 file:A"_s.arg(QLatin1String(chosen)));
    }
    EXPECT_EQ(QDir(Folder.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name),
              (QStringList{u".hidden.tvq"_s, u"document.tvq"_s, u"old.TVQ"_s, u"v1.2.tvq"_s}));
}

TEST_F(DialogTest, StartsWhereTheUserCanWrite) {
    FileDialog dialog;
    dialog.SetDocument(Path(u"doc.tvq"_s));
    dialog.SetInitialDirectory(Folder.path());
    dialog.ShowOpen();
    EXPECT_EQ(TheUser.Offered, Folder.path() + u'/');
    dialog.SetInitialDirectory(u"/of no use"_s);
    dialog.ShowSave();
    EXPECT_EQ(TheUser.Offered, Path(u"doc.tvq"_s));
    dialog.SetDocument({});
    dialog.ShowSave();
    EXPECT_EQ(TheUser.Offered, QDir::currentPath() + u'/');
}

TEST(MessageDialogTest, AnswersTheSameKeysOnEveryDesktop) {
    const auto answer = [](MessageBoxStyle style, Qt::Key key) {
        MessageBoxAnswer given{};
        AnswerEach<QMessageBox>(
            [key](QMessageBox& box) {
                EXPECT_GT(box.width(), box.fontMetrics().horizontalAdvance(Title) + 100);
                QTest::keyClick(&box, key);
            },
            [&] { given = ShowMessageDialog(u"?"_s, style, Title); });
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
