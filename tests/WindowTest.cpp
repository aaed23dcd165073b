#include "WindowDriver.h"

#include "system/PropertyBag.h"

#include <QAction>
#include <QDragEnterEvent>
#include <QMenu>
#include <QMimeData>
#include <QScrollBar>
#include <QTimer>
#include <QToolButton>
#include <QUrl>

using namespace rivenfall;

namespace {

const std::string Title = "OMRA Rivenfall Compiler Controller 1.5.0";
const std::string AskToSave = "The file was changed.\r\nDo you want to save it?|3|" + Title + ";";
const std::string AskBeforeNew = "changed; FileSave?|3|;";
const std::string OpenDialog = "Open File - " + Title + ";";
const std::string SaveDialog = "FileSave File As - " + Title + ";";
const QString NotFound = u"error: CreateProcess failed (2)"_s;

QWidget* OutputWindow() {
    const QWidgetList windows = QApplication::topLevelWidgets();
    return *std::find_if(windows.begin(), windows.end(), [](const QWidget* window) {
        return window->windowTitle().contains(u"[Output]");
    });
}

/// Does @p action in a moment, inside of what is done next.
void Later(const std::function<void()>& action) {
    QTimer::singleShot(50, qApp, action);
}

/// The texts, each with a semicolon behind it.
std::string Joined(const QStringList& texts) {
    return texts.isEmpty() ? "" : texts.join(u';').toStdString() + ';';
}

void ExpectNoWindowIsLeft() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(QApplication::topLevelWidgets().empty());
}

TEST_F(WindowTest, TreeAndTabsLieInFront) {
    frmMain& form = Window();
    QWidget* panel = form.picContent.Widget();
    EXPECT_EQ(form.Client()->size(), QSize(577, 353));
    EXPECT_EQ(form.Window()->minimumSize(), form.Window()->maximumSize());
    Open("a,b", "X", "New");
    EXPECT_TRUE(form.tvwContent.Widget()->isAncestorOf(panel->childAt(20, 20)));
    EXPECT_TRUE(panel->isAncestorOf(form.Client()->childAt(300, 320)));
    EXPECT_EQ(form.Client()->childAt(Tabs()->mapTo(form.Client(), QPoint(20, 10))), Tabs());
}

TEST_F(WindowTest, TabKeyVisitsTheControlsInOrder) {
    Open("a(p(v)),b", "X", "type:x");
    EXPECT_EQ(QApplication::focusWidget(), Box());
    std::string visited;
    for (int press = 0; press < 8; ++press) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QWidget* widget = QApplication::focusWidget();
        while (widget->accessibleName().isEmpty()) {
            widget = widget->parentWidget();
        }
        visited += widget->accessibleName().toStdString() + ' ';
    }
    EXPECT_EQ(visited, "Ok Cancel Content Document Move New Remove Value ");
}

TEST_F(WindowTest, IsInertBeforeTheFirstDocument) {
    EXPECT_EQ(Caption(), Title);
    Act("Value:Enter Document:Return Value:Esc Document:Esc Value:Down Document:Down "
        "Document:Space Value:a New Remove Ok Cancel Move_up Move_down Document Value tab:2 "
        "file:S file:A file:R");
    EXPECT_FALSE(OutputWindow()->isVisible());
    EXPECT_EQ(Joined(TheUser.Asked + TheUser.Dialogs), "");
    EXPECT_EQ(Look(), " ------ none ");
    Act("file:O file:P");
    EXPECT_TRUE(OutputWindow()->isVisible());
    EXPECT_EQ(OutputWindow()->windowTitle().toStdString(), "New File - [Output] - " + Title);
    EXPECT_EQ(Joined(TheUser.Dialogs), OpenDialog);
    EXPECT_EQ(Look() + Log().toStdString(), " ------ none ");
}

TEST_F(WindowTest, EachEventTakesAnEditWhereItShould) {
    ExpectEach("za(p(v,w)),zb(q(x))", "FILE1(~)", "type:+", R"(
        | tab:1 | file:P | file:S | pick:b.tvq file:A | file:R => *za(p(v,w)),zb(q(x)) NRMVOC za+
        type:y => *za(p(v,w)),zb(q(x)) NRMVOC za+y
        Value:Backspace => *za(p(v,w)),zb(q(x)) NRMVOC za
        Ok | Value:Enter | Document:Return | Content:Return | Move:Enter
            => *za+(p(v,w)),zb(q(x)) NRMV-- za+ changed
        Value:Ctrl+A Value:Del Value:Return => *~(p(v,w)),zb(q(x)) NRMV--  changed
        Cancel | Value:Esc | Document:Esc | New:Esc | click:1 | tab:2 tab:1 |
            pick:document.tvq file:P => *za(p(v,w)),zb(q(x)) NRMV-- za
        click:5 => za(p(v,w)),*zb(q(x)) NRMV-- zb
        Document:Down | Value:Down => za(*p(v,w)),zb(q(x)) N--V-- p
        New | New:Enter | Value:Alt+N => za(p(v,w)),*za(~(${FILE1})),zb(q(x)) NRMV-- za changed
        Remove | Document:Alt+R => *zb(q(x)) N--V-- zb changed
        Move_down => zb(q(x)),*za(p(v,w)) NRMV-- za changed
        tab:2 => *FILE1(~) N--V-- FILE1
        file:N => *~(~(${FILE1})) N-MV--
        branch:1 => *za[p(v,w)],zb(q(x)) NRMVOC za+
        mark:3 => *za(p(!v,w)),zb(q(x)) NRMVOC za+ changed
        Document:Space => *!za(p(v,w)),zb(q(x)) NRMVOC za+ changed)");
    EXPECT_EQ(Log(), Frame(u"za p v w"_s, NotFound) + u"\r\n"_s + Frame(u"zb q x"_s, NotFound));
    Open(std::string(40000, 'v').c_str());
    EXPECT_EQ(Box()->text().size(), 40000);
    Open("za", "X", "type:+ file:S");
    EXPECT_TRUE(Holds(u"document.tvq"_s, "za", "X"));
    Open("a,b");
    Expect("Value:Enter Value:Esc Document:Return Document:Esc Ok Cancel", "*a,b NRMV-- a");
}

TEST_F(WindowTest, ArrowKeysInTheBoxWalkTheTree) {
    Open("a(p(v)),b", "X", "branch:1 Value:Home Value:Up");
    EXPECT_EQ(Box()->cursorPosition(), 0);
    std::string walked;
    for (int step = 0; step < 4; ++step) {
        Act("Value:Down");
        walked += Box()->text().toStdString();
    }
    EXPECT_EQ(walked, "pvbb");
    EXPECT_EQ(Shown(), "a(p(v)),*b");
    EXPECT_EQ(Stored(1), "a[p(v)],b");
    Act("Value:Shift+Up Value:Ctrl+Up Value:Alt+Up");
    EXPECT_EQ(Shown(), "a(p(v)),*b");
    Expect("Value:Num+Up Value:Shift+Left", "a(p(*v)),b N--V-- v");
    EXPECT_EQ(Window().txtValue.SelText(), u"v");
}

TEST_F(WindowTest, AHeldButtonMovesOnAndOn) {
    Open("a,b,c,d,e,f,g");
    QWidget* down = Window().udnMove.Widget()->findChildren<QToolButton*>().at(1);
    QTest::mousePress(down, Qt::LeftButton);
    EXPECT_TRUE(WaitFor([&] { return Program().Compilers()->Item(4)->Value() == u"a"; }));
    QTest::mouseRelease(down, Qt::LeftButton);
}

TEST_F(WindowTest, DropsAreTypedAtTheSelection) {
    QMimeData text, files, both, repeated, picture;
    for (QMimeData* data : {&files, &both, &repeated}) {
        data->setUrls({QUrl(u"file:///f/a%20b.c"_s), QUrl(u"file:///f/d.c"_s)});
    }
    text.setText(u"T U\nV"_s);
    both.setText(u"T"_s);
    repeated.setText(u"file:///f/a%20b.c\nfile:///f/d.c\n"_s);
    picture.setData(u"image/png"_s, "T");
    const Qt::DropActions any = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;
    const struct {
        const QMimeData& Data;
        Qt::DropActions Offered;
        int Start, Length;
        std::string Value;
    } cases[] = {{text, Qt::CopyAction, 3, 0, "abcT U"},
                 {files, any, 3, 0, "abc/f/a b.c"},
                 {both, any, 0, 0, "Tabc"},
                 {repeated, any, 1, 0, "a/f/a b.cbc"},
                 {text, any, 1, 1, "aT Uc"},
                 {files, any, 0, 3, "/f/a b.c"},
                 {text, Qt::MoveAction, 3, 0, "abc"},
                 {files, Qt::LinkAction, 3, 0, "abc"},
                 {picture, any, 3, 0, "abc"}};
    const auto drag = [this](const QMimeData& data, Qt::DropActions offered) {
        QDragEnterEvent enter(QPoint(9, 9), offered, &data, Qt::LeftButton, {});
        QDragMoveEvent move(QPoint(99, 9), offered, &data, Qt::LeftButton, {});
        QDropEvent drop(QPoint(99, 9), offered, &data, Qt::LeftButton, {});
        QApplication::sendEvent(Box(), &enter);
        if (!enter.isAccepted()) {
            return false;
        }
        QApplication::sendEvent(Box(), &move);
        QApplication::sendEvent(Box(), &drop);
        EXPECT_TRUE(move.isAccepted() && drop.dropAction() == Qt::CopyAction);
        return true;
    };
    for (const auto& [data, offered, start, length, value] : cases) {
        Open("abc,d");
        Box()->setSelection(start, length);
        EXPECT_EQ(drag(data, offered), value != "abc") << value;
        Expect("", "*abc,d " + std::string(value != "abc" ? "NRMVOC " : "NRMV-- ") + value);
        Expect("Value:Esc", "*abc,d NRMV-- abc");
    }
    Open("", "");
    EXPECT_FALSE(drag(text, any));
}

TEST_F(WindowTest, AsksBeforeADocumentIsGivenUp) {
    const std::string kept = "~(~(${FILE1})),*~(~(${FILE1})) NRMV-- ";
    const std::string fresh = "*~(~(${FILE1})) N-MV-- ";
    const struct {
        const char* Script;
        std::string Asked, Look;
        bool Saved;
    } cases[] = {
        {"stay file:N", AskBeforeNew, kept + " changed", false},
        {"no file:N", AskBeforeNew, fresh, false},
        {"yes pick:one.tvq file:N", AskBeforeNew + SaveDialog, fresh, true},
        {"yes file:N", AskBeforeNew + SaveDialog, fresh, false},
        {"stay file:P", AskToSave, kept + " changed", false},
        {"no file:P", AskToSave + OpenDialog, kept + " changed", false},
        {"yes file:P", AskToSave + SaveDialog, kept + " changed", false},
        {"yes pick:one.tvq file:P", AskToSave + SaveDialog + OpenDialog, kept, true},
        {"no pick:document.tvq file:P", AskToSave + OpenDialog, "*a N-MV-- a", false},
        {"stay file:X", AskToSave, kept + " changed", false},
        {"yes file:X", AskToSave + SaveDialog, kept + " changed", false},
    };
    const QString one = Path(u"one.tvq"_s);
    for (const auto& [script, asked, look, saved] : cases) {
        SCOPED_TRACE(script);
        QFile::remove(one);
        Open("a", "X", "file:N New");
        Act(script);
        EXPECT_EQ(Joined(TheUser.Asked + TheUser.Dialogs), asked);
        EXPECT_EQ(Look(), look);
        EXPECT_EQ(QFile::exists(one), saved);
    }
    Open("a", "X", "file:N New stay yes pick:one.tvq");
    EXPECT_FALSE(Window().Window()->close());
    EXPECT_TRUE(Window().Visible());
    const std::weak_ptr<Application> program = GlobalApplication();
    EXPECT_TRUE(Window().Window()->close());
    EXPECT_EQ(Joined(TheUser.Asked + TheUser.Dialogs), AskToSave + AskToSave + SaveDialog);
    EXPECT_TRUE(Holds(u"one.tvq"_s, "~(~(${FILE1})),~(~(${FILE1}))", "FILE1(~)"));
    EXPECT_TRUE(program.expired());
    ExpectNoWindowIsLeft();
}

TEST_F(WindowTest, OldVersionsHaveTheirCompilersOnly) {
    PropertyBag content, second;
    content.WriteProperty("Compilers", CollectionImage(Sketches("c(o(u))"), 2));
    content.WriteProperty("Variables", CollectionImage(Sketches("Q(1)"), 1));
    second.WriteProperty("_FileFormatIdentification", u"TAVQEF#0002"_s);
    second.WriteProperty("_Content", content.Contents());
    for (const QByteArray& bytes : {CollectionImage(Sketches("c(o(u))"), 2), second.Contents()}) {
        const QString old = StoreBytes(Path(u"old.tvq"_s), bytes);
        Open("a(p(v)),b", "X(1),Y(2)", "tab:2 click:4 type:+ pick:old.tvq file:P");
        EXPECT_EQ(Look(), "*c(o(u)) N-MV-- c");
        EXPECT_EQ(Tabs()->count(), 1);
        EXPECT_EQ(Stored(2), "FILE1(~)");
        Act("file:S pick:old.tvq file:P tab:2");
        EXPECT_EQ(Look(), "*FILE1(~) N--V-- FILE1");
        EXPECT_TRUE(Holds(u"old.tvq"_s, "c(o(u))", "FILE1(~)"));
    }
}

TEST_F(WindowTest, RebuildsKeepTheRowsInPlace) {
    std::string outline = "a(p(v))";
    for (int each = 0; each < 24; ++each) {
        outline += ",a(p(v))";
    }
    Open(outline.c_str(), "X", "click:30");
    // The same row is at the top again, unless the selected node is out of view then.
    for (const auto& [former, next] : {std::pair(25, 25), std::pair(18, 18), std::pair(51, 30)}) {
        Tree()->verticalScrollBar()->setValue(former - 1);
        Act("type:+ Value:Enter");
        EXPECT_EQ(Tree()->indexAt(QPoint(60, 2)), Row(next)) << former;
        EXPECT_EQ(Tree()->currentIndex(), Row(30));
    }
    Tree()->verticalScrollBar()->setValue(0);
    Act("type:+ Value:Enter");
    EXPECT_TRUE(Tree()->viewport()->rect().contains(Tree()->visualRect(Row(30))));
    Tree()->verticalScrollBar()->setValue(60);
    Act("tab:2");
    EXPECT_EQ(Shown(), "*X");
}

TEST_F(WindowTest, AnEmptyTreeLeavesNothingToEdit) {
    Open("", "X(1)", "Move_up Move_down Document:Down Document:Space Value:Down New Remove file:R");
    EXPECT_EQ(Joined(TheUser.Asked),
              "No compilers to run!\r\nPlease select some...|16|" + Title + ";");
    Expect("", " --M--- ");
    Expect("tab:2 type:+ tab:1", " ------ ");
}

TEST_F(WindowTest, EverythingAnswersDuringARun) {
    Open("sleep(1),zz(1)");
    Later([this] {
        ASSERT_TRUE(Runner().Running());
        Act("New mark:2");
        EXPECT_EQ(Shown(), "sleep(!1),*sleep(~(${FILE1})),zz(1)");
        OutputWindow()->close();
        EXPECT_FALSE(OutputWindow()->isVisible());
        Act("stay file:X no file:N");
        EXPECT_EQ(Joined(TheUser.Asked), AskToSave + AskBeforeNew);
        EXPECT_TRUE(Runner().Running());
    });
    Act("file:R");
    EXPECT_EQ(Shown(), "*~(~(${FILE1}))");
    EXPECT_TRUE(OutputWindow()->isVisible());
    EXPECT_EQ(Log(), Frame(u"sleep 1"_s, u"success"_s) + u"\r\n"_s + Frame(u"zz 1"_s, NotFound));
}

/// Quitting in the middle of a run.
class QuitDuringARun : public WindowTest, public testing::WithParamInterface<const char*> {};

TEST_P(QuitDuringARun, EndsWithTheRun) {
    const QString mark = Path(u"mark"_s);
    Open(("sleep(1),touch(" + mark.toStdString() + ")").c_str());
    const std::weak_ptr<Application> program = GlobalApplication();
    frmMain& form = Window();
    const bool closes = !*GetParam();
    Later([&, box = Box(), tree = Tree()] {
        if (closes) {
            EXPECT_TRUE(form.Window()->close());
        } else {
            Act(GetParam());
        }
        EXPECT_EQ(GlobalApplication(), nullptr);
        ASSERT_FALSE(program.expired());
        EXPECT_EQ(form.Visible(), !closes);
        // Nothing answers any more.
        QTest::mouseClick(form.cmdNew.Widget(), Qt::LeftButton);
        QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, QPoint(60, 25));
        QTest::keyClicks(box, u"x"_s);
        QTest::keyClick(box, Qt::Key_Down);
        for (QAction* entry : form.Window()->menuBar()->actions()[0]->menu()->actions()) {
            entry->trigger();
        }
        EXPECT_TRUE(program.lock()->Execution()->Running());
        OutputWindow()->close();
    });
    Act("file:R");
    EXPECT_TRUE(program.expired());
    EXPECT_TRUE(QFile::exists(mark));
    EXPECT_EQ(Joined(TheUser.Asked + TheUser.Dialogs), strlen(GetParam()) > 6 ? AskToSave : "");
    ExpectNoWindowIsLeft();
}

INSTANTIATE_TEST_SUITE_P(Ways, QuitDuringARun, testing::Values("", "file:X", "New no file:X"));

} // namespace
