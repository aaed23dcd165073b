#include "WindowDriver.h"

#include "support/Title.h"

#include <QAction>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QScrollBar>
#include <QTimer>
#include <QUrl>

using namespace rivenfall;

namespace {

void ExpectNoWindowIsLeft() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(QApplication::topLevelWidgets().empty());
}

TEST_F(WindowTest, TreeAndTabsLieInFront) {
    frmMain& form = Window();
    QWidget* panel = form.picContent.Widget();
    EXPECT_EQ(form.Client()->size(), QSize(577, 353));
    EXPECT_EQ(form.Window()->minimumSize(), form.Window()->maximumSize());
    Open("a,b");
    Click("New");
    EXPECT_TRUE(form.tvwContent.Widget()->isAncestorOf(panel->childAt(20, 20)));
    EXPECT_TRUE(panel->isAncestorOf(form.Client()->childAt(300, 320)));
    EXPECT_EQ(form.Client()->childAt(Tabs()->mapTo(form.Client(), QPoint(20, 10))), Tabs());
}

TEST_F(WindowTest, TabKeyVisitsTheControlsInOrder) {
    Open("a(p(v)),b");
    Type("x");
    EXPECT_EQ(QApplication::focusWidget(), Box());
    std::string visited;
    for (int press = 0; press < 8; ++press) {
        Press(Qt::Key_Tab);
        QWidget* widget = QApplication::focusWidget();
        while (widget->accessibleName().isEmpty()) {
            widget = widget->parentWidget();
        }
        visited += widget->accessibleName().toStdString() + ' ';
    }
    EXPECT_EQ(visited, "Ok Cancel Content Document Move New Remove Value ");
}

/// Drags @p data over @p box and drops it; False where the box doesn't want it.
bool Drop(QWidget* box, const QMimeData& data, Qt::DropActions offered) {
    QDragEnterEvent enter(QPoint(9, 9), offered, &data, Qt::LeftButton, {});
    QApplication::sendEvent(box, &enter);
    if (!enter.isAccepted()) {
        return false;
    }
    QDragMoveEvent move(QPoint(99, 9), offered, &data, Qt::LeftButton, {});
    QDropEvent drop(QPoint(99, 9), offered, &data, Qt::LeftButton, {});
    QApplication::sendEvent(box, &move);
    QApplication::sendEvent(box, &drop);
    EXPECT_TRUE(move.isAccepted());
    EXPECT_EQ(drop.dropAction(), Qt::CopyAction);
    return true;
}

TEST_F(WindowTest, WhatIsDroppedIsTypedAtTheSelection) {
    const QList<QUrl> files = {QUrl(u"file:///f/a%20b.c"_s), QUrl(u"file:///f/d.c"_s)};
    const QString link = u"https://a.b/c"_s;
    const struct {
        QList<QUrl> Urls;
        QString Text;
        int Start, Length;
        std::string Box;
    } cases[] = {
        {{}, u"T U\nV"_s, 1, 1, "aT Uc"},
        {files, {}, 0, 3, "/f/a b.c"},
        {files, u"T"_s, 0, 0, "Tabc"},
        {files, u"file:///f/a%20b.c\nfile:///f/d.c\n"_s, 1, 0, "a/f/a b.cbc"},
        {{QUrl(link)}, link, 3, 0, "abchttps://a.b/c"},
        {{QUrl(u"file://localhost/x"_s)}, {}, 3, 0, "abc/x"},
    };
    for (const auto& each : cases) {
        QMimeData data;
        if (!each.Urls.isEmpty()) {
            data.setUrls(each.Urls);
        }
        if (!each.Text.isEmpty()) {
            data.setText(each.Text);
        }
        Open("abc,d");
        Box()->setSelection(each.Start, each.Length);
        EXPECT_TRUE(Drop(Box(), data, Qt::CopyAction | Qt::MoveAction)) << each.Box;
        Expect({.Tree = "*abc,d", .Enabled = "New Remove Move Value Ok Cancel", .Box = each.Box});
    }
    // What can't be copied as a text is refused.
    QMimeData text, picture;
    text.setText(u"T"_s);
    picture.setData(u"image/png"_s, "T");
    EXPECT_FALSE(Drop(Box(), text, Qt::MoveAction));
    EXPECT_FALSE(Drop(Box(), picture, Qt::CopyAction));
    Open("", "X");
    EXPECT_FALSE(Drop(Box(), text, Qt::CopyAction));
}

TEST_F(WindowTest, LeavingAsksWhetherToSave) {
    const QString ask = u"The file was changed.\r\nDo you want to save it?|3|"_s + ProgramTitle();
    const QString save = u"FileSave File As - "_s + ProgramTitle();
    const std::weak_ptr<Application> program = GlobalApplication();
    Menu("File", "New");
    Click("New");
    Answer(Cancel);
    Menu("File", "Exit");
    Answer(Yes);
    PickFile("");
    Close();
    EXPECT_EQ(TheUser.Asked + TheUser.Dialogs, (QStringList{ask, ask, save}));
    ExpectTheWindowAgrees();
    Answer(Yes);
    PickFile("one.tvq");
    Close();
    EXPECT_TRUE(Holds(u"one.tvq"_s, "~(~(${FILE1})),~(~(${FILE1}))", "FILE1(~)"));
    EXPECT_TRUE(program.expired());
    ExpectNoWindowIsLeft();
}

TEST_F(WindowTest, AClosedBranchStaysClosedUnlessItHidesTheSelection) {
    Open("a(p(v)),b(q)");
    Branch(1);
    ClickRow(5);
    Type("+");
    Click("Ok");
    EXPECT_FALSE(Tree()->isExpanded(Row(1)));
    EXPECT_TRUE(Tree()->isExpanded(Row(4)));
    ClickRow(1);
    Press(Qt::Key_Down, Box());
    EXPECT_TRUE(Tree()->isExpanded(Row(1)));
}

TEST_F(WindowTest, AnEmptyTreeLeavesNothingToEdit) {
    Open("", "X(1)");
    for (const char* control : {"Move up", "Move down", "New", "Remove"}) {
        Click(control);
    }
    Press(Qt::Key_Down, Tree());
    Press(Qt::Key_Space);
    Press(Qt::Key_Down, Box());
    Menu("File", "Run");
    EXPECT_EQ(TheUser.Asked,
              QStringList{u"No compilers to run!\r\nPlease select some...|16|"_s + ProgramTitle()});
    Expect({.Enabled = "Move"});
    Tab(2);
    Type("+");
    Tab(1);
    Expect({.Enabled = ""});
}

TEST_F(WindowTest, QuitDuringARunEndsWithTheRun) {
    Open("sleep(0.5),touch(" + Path("mark").toStdString() + ")");
    const std::weak_ptr<Application> program = GlobalApplication();
    QTimer::singleShot(50, qApp, [&, &form = Window()] {
        Click("New");
        Answer(Cancel);
        Menu("File", "Exit");
        Answer(No);
        Close();
        EXPECT_EQ(TheUser.Asked.size(), 2);
        EXPECT_EQ(GlobalApplication(), nullptr);
        ASSERT_FALSE(program.expired());
        // The window stays, whatever is clicked, but nothing answers any more.
        form.Window()->close();
        EXPECT_TRUE(form.Visible());
        for (const QWidget* widget : form.Window()->findChildren<QWidget*>()) {
            EXPECT_FALSE(widget->isEnabled());
        }
        for (const QAction* entry : form.Window()->menuBar()->findChildren<QAction*>()) {
            EXPECT_FALSE(entry->isEnabled());
        }
        EXPECT_TRUE(program.lock()->Execution()->Running());
        program.lock()->Execution()->Log().Widget()->window()->close();
    });
    Menu("File", "Run");
    EXPECT_TRUE(program.expired());
    EXPECT_TRUE(QFile::exists(Path("mark")));
    ExpectNoWindowIsLeft();
}

TEST_F(WindowTest, RebuildsKeepTheRowsInPlace) {
    std::string outline = "a(p(v))";
    for (int each = 0; each < 24; ++each) {
        outline += ",a(p(v))";
    }
    Open(outline, "X");
    Tree()->scrollTo(Row(30));
    ClickRow(30);
    const auto rebuildFrom = [this](int row) {
        Tree()->verticalScrollBar()->setValue(row - 1);
        Type("+");
        Press(Qt::Key_Return, Box());
        EXPECT_EQ(Tree()->currentIndex(), Row(30));
    };
    // The same row is at the top again, unless the selected one is out of view then.
    for (const auto& [former, next] : {std::pair(25, 25), std::pair(18, 18), std::pair(51, 30)}) {
        rebuildFrom(former);
        EXPECT_EQ(Tree()->indexAt(QPoint(60, 2)), Row(next)) << former;
    }
    rebuildFrom(1);
    EXPECT_TRUE(Tree()->viewport()->rect().contains(Tree()->visualRect(Row(30))));
}

} // namespace
