#include "WindowDriver.h"

#include "platform/PropertyBag.h"

#include <QAction>
#include <QDragEnterEvent>
#include <QDragLeaveEvent>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
#include <QScrollBar>
#include <QTimer>
#include <QUrl>

using namespace rivenfall;

namespace {

const std::string Title = "OMRA Rivenfall Compiler Controller 1.5.0";
const std::string AskToSave = "The file was changed.\r\nDo you want to save it?|3|" + Title + ";";
const std::string AskBeforeNew = "changed; FileSave?|3|;";
const std::string OpenDialog = "Open File - " + Title + ";";
const std::string SaveDialog = "FileSave File As - " + Title + ";";
const QString NotFound = u"error: CreateProcess failed (2)"_qs;

QWidget* OutputWindow() {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->windowTitle().contains(u"[Output]"))
            return window;
    }
    return nullptr;
}

/// Does @p action in a moment, inside of what is done next.
void Later(const std::function<void()>& action) {
    QTimer::singleShot(50, qApp, action);
}

/// The texts, each with a semicolon behind it.
std::string Lines(const QStringList& texts) {
    std::string lines;
    for (const QString& text : texts)
        lines += text.toStdString() + ';';
    return lines;
}

void ExpectNoWindowIsLeft() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(QApplication::topLevelWidgets().empty());
}

TEST_F(WindowTest, LiesWhereItShould) {
    frmMain& form = Window();
    QWidget* panel = form.picContent.Widget();
    const struct {
        const Control& Piece;
        QWidget* On;
        int Left, Top, Width, Height;
    } places[] = {{form.tabContent, form.Client(), 120, 0, 8415, 5175},
                  {form.picContent, form.Client(), 240, 360, 8175, 4695},
                  {form.tvwContent, panel, 0, 0, 7860, 4215},
                  {form.udnMove, panel, 7920, 0, 240, 4215},
                  {form.cmdNew, panel, 0, 4320, 615, 255},
                  {form.cmdRemove, panel, 720, 4320, 855, 255},
                  {form.txtValue, panel, 1680, 4320, 5055, 285},
                  {form.txtDescription, panel, 4800, 4320, 1935, 285},
                  {form.cmdOK, panel, 6840, 4320, 495, 255},
                  {form.cmdCancel, panel, 7440, 4320, 735, 255},
                  {form.tvwContentFake, panel, 0, 0, 7860, 4215}};
    for (const auto& [piece, on, left, top, width, height] : places) {
        EXPECT_EQ(piece.Widget()->geometry(), QRect(left / 15, top / 15, width / 15, height / 15));
        EXPECT_EQ(piece.Widget()->parentWidget(), on);
    }
    EXPECT_EQ(form.Client()->size(), QSize(577, 353));
    EXPECT_EQ(form.Window()->minimumSize(), form.Window()->maximumSize());
    EXPECT_FALSE(form.txtDescription.Visible() || form.txtDescription.Enabled());
    EXPECT_FALSE(form.tvwContentFake.Visible());

    QStringList captions = {Tabs()->tabText(0), Tabs()->tabText(1)};
    for (const QAction* menu : form.Window()->menuBar()->actions()) {
        captions += menu->text();
        for (const QAction* entry : menu->menu()->actions())
            captions +=
                entry->isSeparator() ? u"-"_qs : entry->text() + entry->shortcut().toString();
    }
    for (const QPushButton* button : panel->findChildren<QPushButton*>())
        captions += button->text();
    EXPECT_EQ(Lines(captions), "Compilers;Variables;&File;&New;O&pen;&Save;Save &as;-;&Run;"
                               "Show &output;-;E&xit;&Help;&InfoF1;&New;&Remove;Ok;Cancel;");

    Open("a,b", "X", "new");
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
        while (widget->accessibleName().isEmpty())
            widget = widget->parentWidget();
        visited += widget->accessibleName().toStdString() + ' ';
    }
    EXPECT_EQ(visited, "Ok Cancel Content Document Move New Remove Value ");
}

TEST_F(WindowTest, IsInertBeforeTheFirstDocument) {
    EXPECT_EQ(Caption(), Title);
    Act("box:Enter tree:Return window:Enter box:Esc tree:Esc window:Esc box:Down tree:Down "
        "tree:Space window:Alt+N window:Alt+R box:a new remove ok cancel up down tree box tab:2 "
        "file:S file:A file:R");
    EXPECT_FALSE(OutputWindow()->isVisible());
    EXPECT_EQ(Lines(TheUser.Asked + TheUser.Dialogs), "");
    EXPECT_EQ(Look(), " ------ none ");
    Act("file:O file:P");
    EXPECT_TRUE(OutputWindow()->isVisible());
    EXPECT_EQ(OutputWindow()->windowTitle().toStdString(), "New File - [Output] - " + Title);
    EXPECT_EQ(Lines(TheUser.Dialogs), OpenDialog);
    EXPECT_EQ(Look() + Log().toStdString(), " ------ none ");
}

TEST_F(WindowTest, SelectionSetsTheControls) {
    Open("a(p(v,w),r(~)),b(q(x))");
    std::string seen;
    for (int position = 1; position <= 9; ++position) {
        Act(u"click:%1"_qs.arg(position));
        EXPECT_EQ(Window().tvwContent.SelectedItem()->Index(), position);
        seen += State() + Box()->text().toStdString() + ' ';
    }
    EXPECT_EQ(seen, "NRMV--a NRMV--p NRMV--v NRMV--w NRMV--r N--V-- NRMV--b N--V--q N--V--x ");
    Act("tree:Home tree:Down tree:r");
    EXPECT_EQ(Look(), "a(p(v,w),*r(~)),b(q(x)) NRMV-- r");
    Act("file:N");
    EXPECT_EQ(Look(), "*~(~(${FILE1})) N-MV-- ");
    EXPECT_EQ(Window().Window()->focusWidget(), Box());
    Act("click:1");
    EXPECT_EQ(State(), "N--V--");
    Open("a(p(v))");
    EXPECT_EQ(State(), "N-MV--");
    Act("up");
    EXPECT_EQ(Look(), "*a(p(v)) N--V-- a changed");
}

TEST_F(WindowTest, EachEventTakesAnEditWhereItShould) {
    const std::string added = "za(p(v,w)),*za(~(${FILE1})),zb(q(x)) NRMV-- za changed";
    const std::string stored = "*za+(p(v,w)),zb(q(x)) NRMV-- za+ changed";
    const std::string dropped = "*za(p(v,w)),zb(q(x)) NRMV-- za";
    const std::string pending = "*za(p(v,w)),zb(q(x)) NRMVOC za+";
    const std::pair<const char*, std::string> cases[] = {
        {"type:y", pending + "y"},
        {"box:Backspace", "*za(p(v,w)),zb(q(x)) NRMVOC za"},
        {"ok", stored},
        {"box:Enter", stored},
        {"tree:Return", stored},
        {"tabs:Return", stored},
        {"move:Enter", stored},
        {"new:Enter", added},
        {"box:Ctrl+A box:Del box:Return", "*~(p(v,w)),zb(q(x)) NRMV--  changed"},
        {"cancel", dropped},
        {"box:Esc", dropped},
        {"tree:Esc", dropped},
        {"new:Esc", dropped},
        {"click:1", dropped},
        {"click:5", "za(p(v,w)),*zb(q(x)) NRMV-- zb"},
        {"tree:Down", "za(*p(v,w)),zb(q(x)) N--V-- p"},
        {"box:Down", "za(*p(v,w)),zb(q(x)) N--V-- p"},
        {"new", added},
        {"box:Alt+N", added},
        {"remove", "*zb(q(x)) N--V-- zb changed"},
        {"tree:Alt+R", "*zb(q(x)) N--V-- zb changed"},
        {"down", "zb(q(x)),*za(p(v,w)) NRMV-- za changed"},
        {"tab:2", "*FILE1(~) N--V-- FILE1"},
        {"tab:2 tab:1", dropped},
        {"tab:1", pending},
        {"file:N", "*~(~(${FILE1})) N-MV-- "},
        {"pick:document.tvq file:P", dropped},
        {"file:P", pending},
        {"file:S", pending},
        {"pick:b.tvq file:A", pending},
        {"file:R", pending},
        {"branch:1", "*za[p(v,w)],zb(q(x)) NRMVOC za+"},
        {"mark:3", "*za(p(!v,w)),zb(q(x)) NRMVOC za+ changed"},
        {"tree:Space", "*!za(p(v,w)),zb(q(x)) NRMVOC za+ changed"},
    };
    for (const auto& [events, look] : cases) {
        SCOPED_TRACE(events);
        Open("za(p(v,w)),zb(q(x))", "FILE1(~)", "type:+");
        EXPECT_EQ(Look(), pending);
        Act(events);
        EXPECT_EQ(Look(), look);
        EXPECT_EQ(Lines(TheUser.Asked), "");
    }
    EXPECT_EQ(Log(), Frame(u"za p v w"_qs, NotFound) + u"\r\n"_qs + Frame(u"zb q x"_qs, NotFound));
    Open("za", "X", "type:+ file:S");
    EXPECT_EQ(BytesOf(Path(u"document.tvq"_qs)), DocumentImage(Sketches("za"), Sketches("X")));
}

TEST_F(WindowTest, EnterAndEscapeRestWithoutAnEdit) {
    Open("a,b", "X", "box:Enter box:Esc tree:Return tree:Esc ok cancel window:Enter");
    EXPECT_EQ(Look(), "*a,b NRMV-- a");
}

TEST_F(WindowTest, InfoShowsTheProgram) {
    std::string shown;
    const auto read = [&] {
        QWidget* box = QApplication::activeModalWidget();
        QStringList texts = {box->windowTitle()};
        bool picture = false;
        for (const QLabel* label : box->findChildren<QLabel*>()) {
            picture = picture || !label->pixmap().isNull();
            texts += label->text();
        }
        EXPECT_TRUE(picture);
        shown = texts.join(u'|').toStdString();
        QTest::keyClick(box, Qt::Key_Escape);
    };
    Open("a,b");
    for (const char* way : {"box:F1", "tree:F1", "new:F1", "help:I"}) {
        Later(read);
        Act(way);
        EXPECT_EQ(std::exchange(shown, {}),
                  Title + "|" + Title + "||This is a compiler controller,|" +
                      "i.e. it controlls compiler invocation and parameters.|");
    }
}

TEST_F(WindowTest, ArrowKeysInTheBoxWalkTheTree) {
    Open("a(p(v)),b", "X", "branch:1 box:Home box:Up");
    EXPECT_EQ(Box()->cursorPosition(), 0);
    std::string walked;
    for (int step = 0; step < 4; ++step) {
        Act("box:Down");
        walked += Box()->text().toStdString();
    }
    EXPECT_EQ(walked, "pvbb");
    EXPECT_EQ(Shown(), "a(p(v)),*b");
    EXPECT_EQ(Stored(Program().Compilers()), "a[p(v)],b");
    Act("box:Shift+Up box:Ctrl+Up box:Alt+Up");
    EXPECT_EQ(Shown(), "a(p(v)),*b");
    Act("box:Num+Up box:Shift+Left");
    EXPECT_EQ(Look(), "a(p(*v)),b N--V-- v");
    EXPECT_EQ(Window().txtValue.SelText(), u"v");
}

TEST_F(WindowTest, NewRemoveAndMoveTakeSiblings) {
    const char* const kinds = "a(p(v,!w)),b(q(x))";
    const char* const many = "a(p(v,w,x),q(y)),b(r(z)),c(s(t))";
    const char* const moved = "a(p),b(q(x,!y),r(z)),c";
    const struct {
        const char* Compilers;
        const char* Script;
        const char* Look;
    } cases[] = {
        {kinds, "click:1 new", "a(p(v,!w)),*a(~(${FILE1})),b(q(x)) NRMV-- a"},
        {kinds, "click:5 new", "a(p(v,!w)),b(q(x)),*b(~(${FILE1})) NRMV-- b"},
        {kinds, "click:2 new", "a(p(v,!w),*p(~)),b(q(x)) NRMV-- p"},
        {kinds, "click:3 new", "a(p(!v,*v,!w)),b(q(x)) NRMV-- v"},
        {kinds, "click:4 new", "a(p(!v,!w,*w)),b(q(x)) NRMV-- w"},
        {kinds, "tab:2 click:1 new", "X(1,!2),*X(~),Y(3) NRMV-- X"},
        {kinds, "tab:2 click:2 new", "X(!1,*1,!2),Y(3) NRMV-- 1"},
        {kinds, "tab:2 click:5 new", "X(1,!2),Y(!3,*3) NRMV-- 3"},
        {many, "click:3 remove", "a(p(*w,x),q(y)),b(r(z)),c(s(t)) NRMV-- w"},
        {many, "click:4 remove", "a(p(*v,x),q(y)),b(r(z)),c(s(t)) NRMV-- v"},
        {many, "click:5 remove", "a(p(*v,w),q(y)),b(r(z)),c(s(t)) NRMV-- v"},
        {many, "click:2 remove", "*a(q(y)),b(r(z)),c(s(t)) NRMV-- a"},
        {many, "click:6 remove", "*a(p(v,w,x)),b(r(z)),c(s(t)) NRMV-- a"},
        {many, "click:1 remove", "*b(r(z)),c(s(t)) NRMV-- b"},
        {many, "click:8 remove", "*a(p(v,w,x),q(y)),c(s(t)) NRMV-- a"},
        {many, "click:11 remove", "*a(p(v,w,x),q(y)),b(r(z)) NRMV-- a"},
        {many, "tab:2 click:1 remove", "*Y(3) N--V-- Y"},
        {many, "tab:2 click:2 remove", "*X(!2),Y(3) NRMV-- X"},
        {moved, "click:1 up", "b(q(x,!y),r(z)),c,*a(p) NRMV-- a"},
        {moved, "click:1 up down", "*a(p),b(q(x,!y),r(z)),c NRMV-- a"},
        {moved, "click:9 down", "*c,a(p),b(q(x,!y),r(z)) NRMV-- c"},
        {moved, "click:4 down", "a(p),b(r(z),*q(x,!y)),c NRMV-- q"},
        {moved, "click:6 up", "a(p),b(q(*!y,x),r(z)),c NRMV-- y"},
        {moved, "click:6 down down up", "a(p),b(q(*!y,x),r(z)),c NRMV-- y"},
        {moved, "tab:2 click:1 move:Down", "Y(3),*X(1,!2) NRMV-- X"},
    };
    for (const auto& [compilers, script, look] : cases) {
        SCOPED_TRACE(script);
        Open(compilers, "X(1,!2),Y(3)", script);
        EXPECT_EQ(Look(), std::string(look) + " changed");
        // The position that is remembered for the tab is that of the selected node.
        Act(Program().ContentActive() == 1 ? "tab:2 tab:1" : "tab:1 tab:2");
        EXPECT_EQ(Look(), std::string(look) + " changed");
    }
    Open("a(p(v))", "X", "click:2 remove box:Alt+R click:3 up");
    EXPECT_EQ(Look(), "a(p(*v)) N--V-- v");
}

TEST_F(WindowTest, MoveRepeatsWhileItIsHeld) {
    Open("a,b,c,d,e,f,g");
    QWidget* down = Window().udnMove.Widget()->findChildren<QToolButton*>().at(1);
    QTest::mousePress(down, Qt::LeftButton);
    EXPECT_TRUE(WaitFor([&] { return Program().Compilers()->Item(4)->Value() == u"a"; }));
    QTest::mouseRelease(down, Qt::LeftButton);
}

TEST_F(WindowTest, CheckBoxesFollowTheRuleOfAlternatives) {
    const std::pair<const char*, const char*> cases[] = {
        {"mark:4", "*a(p(!v,w,!x)),!b(q(y)) NRMV-- a"},
        {"mark:3", "*a(p(!v,!w,!x)),!b(q(y)) NRMV-- a"},
        {"mark:2", "*a(!p(v,!w,!x)),!b(q(y)) NRMV-- a"},
        {"mark:6", "*a(p(v,!w,!x)),b(q(y)) NRMV-- a"},
        {"mark:1", "*!a(p(v,!w,!x)),!b(q(y)) NRMV-- a"},
        {"click:5 tree:Space", "a(p(!v,!w,*x)),!b(q(y)) NRMV-- x"},
        {"tab:2 mark:4", "*X(!1,!2,3) N--V-- X"},
        {"tab:2 mark:2", "*X(!1,2,!3) N--V-- X"},
        {"tab:2 mark:1", "*!X(1,2,!3) N--V-- X"},
    };
    for (const auto& [script, look] : cases) {
        Open("a(p(v,!w,!x)),!b(q(y))", "X(1,2,!3)");
        const QString last = QString::fromLatin1(script).section(u' ', -1);
        Act(QString::fromLatin1(script).chopped(last.size()));
        const Node* node = Window().tvwContent.Nodes().Item(3);
        Act(last);
        EXPECT_EQ(node, Window().tvwContent.Nodes().Item(3)) << "the tree was rebuilt";
        EXPECT_EQ(Look(), std::string(look) + " changed");
    }
}

TEST_F(WindowTest, BranchesRememberTheirState) {
    Open("a(p(v,w)),b(q(x))", "X", "click:5 branch:2");
    EXPECT_EQ(Look(), "a(p[v,w]),*b(q(x)) NRMV-- b");
    Act("type:+ box:Enter tab:2 tab:1");
    EXPECT_EQ(Shown(), "a(p[v,w]),*b+(q(x))");
    Act("branch:2 click:3 tree:Left tree:Left branch:5");
    EXPECT_EQ(Shown(), "a(*p[v,w]),b+[q(x)]");
    // A rebuild opens what hides the selected and the last open node on the screen only.
    Act("box:Down type:1 box:Enter");
    EXPECT_EQ(Shown(), "a(p(*v1,w)),b+(q(x))");
    Act("type:2 box:Enter");
    EXPECT_EQ(Shown(), "a(p(*v12,w)),b+(q(x))");
    EXPECT_EQ(Stored(Program().Compilers()), "a(p[v12,w]),b+[q(x)]");
}

TEST_F(WindowTest, EachTabKeepsItsPosition) {
    Open("a(p(v)),b", "X(1),Y(2,3)", "click:3 tab:2");
    EXPECT_EQ(Look(), "*X(1),Y(2,3) NRMV-- X");
    Act("click:5 type:+ tab:1");
    EXPECT_EQ(Look(), "a(p(*v)),b N--V-- v");
    Act("tab:2");
    EXPECT_EQ(Look(), "X(1),Y(2,*3) NRMV-- 3");
    Open("c(o(u))", "Z(4)");
    EXPECT_EQ(Look(), "*c(o(u)) N-MV-- c");
    Act("tab:2");
    EXPECT_EQ(Look(), "*Z(4) N--V-- Z");
    Act("file:N");
    EXPECT_EQ(Look(), "*~(~(${FILE1})) N-MV-- ");
    EXPECT_EQ(Stored(Program().Variables()), "FILE1(~)");
}

TEST_F(WindowTest, DropsAreTypedAtTheSelection) {
    QMimeData text, files, both, repeated, lines, picture;
    const QList<QUrl> paths = {QUrl(u"file:///f/a%20b.c"_qs), QUrl(u"file:///f/d.c"_qs)};
    for (QMimeData* data : {&files, &both, &repeated})
        data->setUrls(paths);
    text.setText(u"T U"_qs);
    both.setText(u"T"_qs);
    repeated.setText(u"file:///f/a%20b.c\nfile:///f/d.c\n"_qs);
    lines.setText(u"1\n2"_qs);
    picture.setData(u"image/png"_qs, "T");
    const Qt::DropActions any = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;
    const struct {
        const QMimeData& Data;
        Qt::DropActions Offered;
        int Start, Length;
        std::string Value;
    } cases[] = {
        {text, Qt::CopyAction, 3, 0, "abcT U"},
        {files, any, 3, 0, "abc/f/a b.c"},
        {both, any, 0, 0, "Tabc"},
        {repeated, any, 3, 0, "abc/f/a b.c"},
        {text, any, 1, 1, "aT Uc"},
        {files, any, 0, 3, "/f/a b.c"},
        {lines, any, 1, 0, "a1bc"},
        {text, Qt::MoveAction, 3, 0, "abc"},
        {files, Qt::LinkAction, 3, 0, "abc"},
        {picture, any, 3, 0, "abc"},
    };
    const QPoint place(100, 8);
    for (const auto& [data, offered, start, length, value] : cases) {
        Open("abc,d");
        const bool taken = value != "abc";
        Box()->setCursorPosition(start);
        if (length > 0)
            Box()->setSelection(start, length);
        QDragEnterEvent enter(place, offered, &data, Qt::LeftButton, {});
        QApplication::sendEvent(Box(), &enter);
        EXPECT_EQ(enter.isAccepted(), taken) << value;
        QDragMoveEvent move(place, offered, &data, Qt::LeftButton, {});
        QDropEvent drop(place, offered, &data, Qt::LeftButton, {});
        if (taken) {
            QApplication::sendEvent(Box(), &move);
            EXPECT_TRUE(move.isAccepted() && move.dropAction() == Qt::CopyAction) << value;
            QApplication::sendEvent(Box(), &drop);
            EXPECT_TRUE(drop.isAccepted() && drop.dropAction() == Qt::CopyAction) << value;
        }
        EXPECT_EQ(Look(), "*abc,d " + std::string(taken ? "NRMVOC " : "NRMV-- ") + value);
        Act("box:Esc");
        EXPECT_EQ(Look(), "*abc,d NRMV-- abc");
    }
    QDragEnterEvent enter(place, any, &text, Qt::LeftButton, {});
    QApplication::sendEvent(Box(), &enter);
    QDragLeaveEvent leave;
    QApplication::sendEvent(Box(), &leave);
    EXPECT_EQ(Look(), "*abc,d NRMV-- abc");
    Open("", "");
    QDragEnterEvent disabled(place, any, &text, Qt::LeftButton, {});
    QApplication::sendEvent(Box(), &disabled);
    EXPECT_FALSE(disabled.isAccepted());
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
    const QString one = Path(u"one.tvq"_qs);
    for (const auto& [script, asked, look, saved] : cases) {
        SCOPED_TRACE(script);
        QFile::remove(one);
        Open("a", "X", "file:N new");
        Act(script);
        EXPECT_EQ(Lines(TheUser.Asked + TheUser.Dialogs), asked);
        EXPECT_EQ(Look(), look);
        EXPECT_EQ(QFile::exists(one), saved);
    }
    Open("a", "X", "file:N new stay yes pick:one.tvq");
    EXPECT_FALSE(Window().Window()->close());
    EXPECT_TRUE(Window().Visible());
    const std::weak_ptr<Application> program = GlobalApplication();
    EXPECT_TRUE(Window().Window()->close());
    EXPECT_EQ(Lines(TheUser.Asked + TheUser.Dialogs), AskToSave + AskToSave + SaveDialog);
    EXPECT_EQ(BytesOf(one),
              DocumentImage(Sketches("~(~(${FILE1})),~(~(${FILE1}))"), Sketches("FILE1(~)")));
    EXPECT_TRUE(program.expired());
    ExpectNoWindowIsLeft();
}

TEST_F(WindowTest, CaptionFollowsTheFile) {
    const std::pair<const char*, std::string> steps[] = {
        {"", "document.tvq"},
        {"file:N", "New File"},
        {"file:A", "New File"},
        {"pick:one.tvq file:S", "New File"},
        {"type:c box:Enter", "one.tvq"},
        {"file:S", "one.tvq"},
        {"pick:two.tvq file:A", "two.tvq"},
        {"new file:A", "two.tvq"},
    };
    Open("a,b");
    for (const auto& [script, name] : steps) {
        Act(script);
        EXPECT_EQ(Caption(), name + " - " + Title) << script;
    }
    EXPECT_EQ(Lines(TheUser.Asked + TheUser.Dialogs),
              SaveDialog + SaveDialog + SaveDialog + SaveDialog);
    EXPECT_TRUE(Changed());
    Act("file:S");
    EXPECT_FALSE(Changed());
    const char* const compilers = "c(~(${FILE1}))";
    EXPECT_EQ(BytesOf(Path(u"one.tvq"_qs)),
              DocumentImage(Sketches(compilers), Sketches("FILE1(~)")));
    EXPECT_NE(BytesOf(Path(u"two.tvq"_qs)), BytesOf(Path(u"one.tvq"_qs)));
}

TEST_F(WindowTest, FailedFilesLeaveEverythingAsItWas) {
    PropertyBag foreign;
    foreign.WriteProperty("_FileFormatIdentification", u"TAVQEF#0004"_qs);
    const QByteArray whole = DocumentImage(Sketches("z"), Sketches("Z"));
    for (const QByteArray& bytes : {QByteArray(), QByteArray("no document"), foreign.Contents(),
                                    whole.chopped(1), whole.mid(1)}) {
        const QString other = StoreBytes(Path(u"other.tvq"_qs), bytes);
        Open("a(p(v)),b", "X(1)", "tab:2 new type:+");
        const std::string before = Look() + Caption();
        Act("no pick:other.tvq file:P");
        ASSERT_EQ(TheUser.Asked.size(), 2);
        EXPECT_TRUE(TheUser.Asked[1].contains(other));
        EXPECT_TRUE(TheUser.Asked[1].endsWith(u"|48|"_qs + QString::fromStdString(Title)));
        EXPECT_EQ(Look() + Caption(), before);
        Act("file:S");
        EXPECT_EQ(BytesOf(Path(u"document.tvq"_qs)),
                  DocumentImage(Sketches("a(p(v)),b"), Sketches("X(1),X(~)")));
        EXPECT_EQ(BytesOf(other), bytes);
    }
    Act("new");
    for (const char* script : {"no pick:nowhere/x.tvq file:P", "pick:nowhere/x.tvq file:A"}) {
        Act(script);
        EXPECT_TRUE(TheUser.Asked.last().contains(u"nowhere/x.tvq"));
        EXPECT_EQ(Caption(), "document.tvq - " + Title);
        EXPECT_TRUE(Changed());
    }
    Act("file:S");
    EXPECT_EQ(BytesOf(Path(u"document.tvq"_qs)),
              DocumentImage(Sketches("a(p(v)),b"), Sketches("X(1),X(~),X(~)")));
}

TEST_F(WindowTest, OldVersionsHaveTheirCompilersOnly) {
    PropertyBag content, second;
    content.WriteProperty("Compilers", CollectionImage(Sketches("c(o(u))"), 2));
    content.WriteProperty("Variables", CollectionImage(Sketches("Q(1)"), 1));
    second.WriteProperty("_FileFormatIdentification", u"TAVQEF#0002"_qs);
    second.WriteProperty("_Content", content.Contents());
    for (const QByteArray& bytes : {CollectionImage(Sketches("c(o(u))"), 2), second.Contents()}) {
        const QString old = StoreBytes(Path(u"old.tvq"_qs), bytes);
        Open("a(p(v)),b", "X(1),Y(2)", "tab:2 click:4 type:+ pick:old.tvq file:P");
        EXPECT_EQ(Look(), "*c(o(u)) N-MV-- c");
        EXPECT_EQ(Tabs()->count(), 1);
        EXPECT_EQ(Stored(Program().Variables()), "FILE1(~)");
        Act("file:S pick:old.tvq file:P tab:2");
        EXPECT_EQ(Look(), "*FILE1(~) N--V-- FILE1");
        EXPECT_EQ(BytesOf(old), DocumentImage(Sketches("c(o(u))"), Sketches("FILE1(~)")));
    }
}

TEST_F(WindowTest, RebuildsKeepTheRowsInPlace) {
    std::string outline = "a(p(v))";
    for (int each = 0; each < 24; ++each)
        outline += ",a(p(v))";
    Open(outline.c_str(), "X", "click:30");
    // The same row is at the top again, unless the selected node is out of view then.
    for (const auto& [former, next] : {std::pair(25, 25), std::pair(18, 18), std::pair(51, 30)}) {
        Tree()->verticalScrollBar()->setValue(former - 1);
        Act("type:+ box:Enter");
        EXPECT_EQ(Tree()->indexAt(QPoint(60, 2)), Row(next)) << former;
        EXPECT_EQ(Tree()->currentIndex(), Row(30));
    }
    Tree()->verticalScrollBar()->setValue(0);
    Act("type:+ box:Enter");
    EXPECT_TRUE(Tree()->viewport()->rect().contains(Tree()->visualRect(Row(30))));
    Tree()->verticalScrollBar()->setValue(60);
    Act("tab:2");
    EXPECT_EQ(Shown(), "*X");
}

TEST_F(WindowTest, AnEmptyTreeLeavesNothingToEdit) {
    Open("", "X(1)", "up down tree:Down tree:Space box:Down new remove file:R");
    EXPECT_EQ(Look(), " --M--- ");
    EXPECT_EQ(Lines(TheUser.Asked),
              "No compilers to run!\r\nPlease select some...|16|" + Title + ";");
    Act("tab:2 type:+ tab:1");
    EXPECT_EQ(Look(), " ------ ");
}

TEST_F(WindowTest, EverythingAnswersDuringARun) {
    Open("sleep(1),zz(1)");
    Later([this] {
        ASSERT_TRUE(Runner().Running());
        Act("new mark:2");
        EXPECT_EQ(Shown(), "sleep(!1),*sleep(~(${FILE1})),zz(1)");
        OutputWindow()->close();
        EXPECT_FALSE(OutputWindow()->isVisible());
        Act("stay file:X no file:N");
        EXPECT_EQ(Lines(TheUser.Asked), AskToSave + AskBeforeNew);
        EXPECT_TRUE(Runner().Running());
    });
    Act("file:R");
    EXPECT_EQ(Shown(), "*~(~(${FILE1}))");
    EXPECT_TRUE(OutputWindow()->isVisible());
    EXPECT_EQ(Log(),
              Frame(u"sleep 1"_qs, u"success"_qs) + u"\r\n"_qs + Frame(u"zz 1"_qs, NotFound));
}

TEST_F(WindowTest, ASecondRunFindsTheFirstStillRunning) {
    Open("sleep(1),zz(1)");
    Later([this] { Act("file:R"); });
    Act("file:R");
    EXPECT_EQ(Lines(TheUser.Asked), "Still running!|48|" + Title + ";");
    EXPECT_TRUE(Log()
                    .section(u"\r\n"_qs, 1, 2)
                    .startsWith(u"# | sleep 1\r\n# | [error: CreateProcess failed ("));
    EXPECT_EQ(Log().count(u"# | zz 1\r\n"), 2);
}

/// Quitting in the middle of a run.
class QuitDuringARun : public WindowTest, public testing::WithParamInterface<const char*> {};

TEST_P(QuitDuringARun, EndsWithTheRun) {
    const QString mark = Path(u"mark"_qs);
    Open(("sleep(1),touch(" + mark.toStdString() + ")").c_str());
    const std::weak_ptr<Application> program = GlobalApplication();
    frmMain& form = Window();
    const bool closes = !*GetParam();
    Later([&] {
        if (closes)
            EXPECT_TRUE(form.Window()->close());
        else
            Act(GetParam());
        EXPECT_EQ(GlobalApplication(), nullptr);
        ASSERT_FALSE(program.expired());
        EXPECT_EQ(form.Visible(), !closes);
        // Nothing answers any more.
        for (Control* control :
             {static_cast<Control*>(&form.cmdNew), static_cast<Control*>(&form.tvwContent)})
            QTest::mouseClick(control->Widget(), Qt::LeftButton);
        QTest::keyClicks(form.txtValue.Widget(), u"x"_qs);
        for (Qt::Key key : {Qt::Key_Down, Qt::Key_Enter})
            QTest::keyClick(form.txtValue.Widget(), key);
        for (QAction* entry : form.Window()->menuBar()->actions()[0]->menu()->actions())
            entry->trigger();
        EXPECT_TRUE(program.lock()->Execution()->Running());
        OutputWindow()->close();
    });
    Act("file:R");
    EXPECT_TRUE(program.expired());
    EXPECT_TRUE(QFile::exists(mark));
    EXPECT_EQ(Lines(TheUser.Asked + TheUser.Dialogs), strlen(GetParam()) > 6 ? AskToSave : "");
    ExpectNoWindowIsLeft();
}

INSTANTIATE_TEST_SUITE_P(Ways, QuitDuringARun, testing::Values("", "file:X", "new no file:X"));

} // namespace
