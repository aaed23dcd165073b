#include "WindowDriver.h"

#include <QAction>
#include <QDragEnterEvent>
#include <QDragLeaveEvent>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QScrollBar>
#include <QTimer>
#include <QUrl>

using namespace rivenfall;

namespace {

const std::string Title = "OMRA Rivenfall Compiler Controller 1.5.0";
const QString AskToSave =
    u"The file was changed.\r\nDo you want to save it?|3|"_qs + QString::fromStdString(Title);
const QString AskBeforeNew = u"changed; FileSave?|3|"_qs;
const QString OpenDialog = u"Open File - "_qs + QString::fromStdString(Title);
const QString SaveDialog = u"FileSave File As - "_qs + QString::fromStdString(Title);
const char* const NewDocument = "*~(~(${FILE1}))";

/// The output window.
QWidget* OutputWindow() {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->windowTitle().contains(u"[Output]"))
            return window;
    }
    return nullptr;
}

/// Does @p action as soon as the event loop runs, in a run inside of it.
void Later(const std::function<void()>& action) {
    QTimer::singleShot(0, qApp, action);
}

TEST_F(WindowTest, LiesWhereItShould) {
    frmMain& form = Window();
    QWidget* panel = form.picContent.Widget();
    const struct {
        const Control& Piece;
        QWidget* On;
        std::array<int, 4> Twips;
    } places[] = {
        {form.tabContent, form.Client(), {120, 0, 8415, 5175}},
        {form.picContent, form.Client(), {240, 360, 8175, 4695}},
        {form.tvwContent, panel, {0, 0, 7860, 4215}},
        {form.udnMove, panel, {7920, 0, 240, 4215}},
        {form.cmdNew, panel, {0, 4320, 615, 255}},
        {form.cmdRemove, panel, {720, 4320, 855, 255}},
        {form.txtValue, panel, {1680, 4320, 5055, 285}},
        {form.txtDescription, panel, {4800, 4320, 1935, 285}},
        {form.cmdOK, panel, {6840, 4320, 495, 255}},
        {form.cmdCancel, panel, {7440, 4320, 735, 255}},
        {form.tvwContentFake, panel, {0, 0, 7860, 4215}},
    };
    for (const auto& [piece, on, twips] : places) {
        EXPECT_EQ(piece.Widget()->geometry(),
                  QRect(twips[0] / 15, twips[1] / 15, twips[2] / 15, twips[3] / 15))
            << &piece - &form.tabContent;
        EXPECT_EQ(piece.Widget()->parentWidget(), on);
    }
    EXPECT_EQ(form.Client()->size(), QSize(577, 353));
    EXPECT_EQ(form.Window()->minimumSize(), form.Window()->maximumSize());
    EXPECT_FALSE(form.txtDescription.Visible() || form.txtDescription.Enabled());
    EXPECT_FALSE(form.tvwContentFake.Visible());

    QStringList captions;
    for (const QAction* menu : form.Window()->menuBar()->actions()) {
        captions += menu->text();
        for (const QAction* entry : menu->menu()->actions())
            captions +=
                (entry->isSeparator() ? u"-"_qs : entry->text()) + entry->shortcut().toString();
    }
    EXPECT_EQ(captions.join(u','), u"&File,&New,O&pen,&Save,Save &as,-,&Run,Show &output,-,E&xit,"
                                   "&Help,&InfoF1");
    QStringList buttons;
    for (const QPushButton* button : panel->findChildren<QPushButton*>())
        buttons += button->text();
    EXPECT_EQ(buttons.join(u','), u"&New,&Remove,Ok,Cancel");
    EXPECT_EQ(Tabs()->tabText(0) + Tabs()->tabText(1), u"CompilersVariables");

    for (int step = 0; step < 2; ++step) {
        EXPECT_TRUE(form.tvwContent.Widget()->isAncestorOf(panel->childAt(20, 20))) << step;
        EXPECT_TRUE(panel->isAncestorOf(form.Client()->childAt(300, 320))) << step;
        EXPECT_EQ(form.Client()->childAt(Tabs()->mapTo(form.Client(), QPoint(20, 10))), Tabs());
        Open("a,b");
    }
}

TEST_F(WindowTest, TabKeyVisitsTheControlsInOrder) {
    Open("a(p(v)),b");
    frmMain& form = Window();
    QTest::keyClicks(Box(), u"x"_qs);
    EXPECT_EQ(QApplication::focusWidget(), Box());
    std::string visited;
    for (int press = 0; press < 8; ++press) {
        Key(QApplication::focusWidget(), Qt::Key_Tab);
        for (Control* control :
             {static_cast<Control*>(&form.cmdOK), static_cast<Control*>(&form.cmdCancel),
              static_cast<Control*>(&form.tabContent), static_cast<Control*>(&form.tvwContent),
              static_cast<Control*>(&form.udnMove), static_cast<Control*>(&form.cmdNew),
              static_cast<Control*>(&form.cmdRemove), static_cast<Control*>(&form.txtValue),
              static_cast<Control*>(&form.tvwContentFake)}) {
            QWidget* focus = QApplication::focusWidget();
            if (focus == control->Widget() || control->Widget()->isAncestorOf(focus))
                visited += control->Widget()->accessibleName().toStdString() + ' ';
        }
    }
    EXPECT_EQ(visited, "Ok Cancel Content Document Move New Remove Value ");
}

TEST_F(WindowTest, IsInertBeforeTheFirstDocument) {
    EXPECT_EQ(Caption(), Title);
    EXPECT_EQ(State(), "-----------");
    for (QWidget* widget : {static_cast<QWidget*>(Box()), static_cast<QWidget*>(Tree()),
                            static_cast<QWidget*>(Window().Window())}) {
        for (Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape, Qt::Key_Down})
            Key(widget, key);
        for (Qt::Key key : {Qt::Key_N, Qt::Key_R})
            Key(widget, key, Qt::AltModifier);
        QTest::mouseClick(widget, Qt::LeftButton);
    }
    for (Control* button : {&Window().cmdNew, &Window().cmdRemove, &Window().cmdOK})
        Press(*button);
    PressMove(true);
    ClickTab(2);
    for (Qt::Key entry : {Qt::Key_S, Qt::Key_A, Qt::Key_R})
        ChooseFile(entry);
    EXPECT_EQ(Shown() + Value(), "");
    EXPECT_EQ(Program().ContentActive(), 1);
    EXPECT_FALSE(OutputWindow()->isVisible());
    EXPECT_TRUE(TheUser.Asked.empty() && TheUser.Dialogs.empty());
    EXPECT_EQ(State(), "-----------");
    ChooseFile(Qt::Key_O);
    EXPECT_TRUE(OutputWindow()->isVisible());
    EXPECT_EQ(OutputWindow()->windowTitle().toStdString(), "New File - [Output] - " + Title);
    EXPECT_EQ(Log(), u"");
    ChooseFile(Qt::Key_P);
    EXPECT_EQ(TheUser.Dialogs, QStringList(OpenDialog));
    EXPECT_EQ(State(), "-----------");
}

TEST_F(WindowTest, SelectionSetsTheControls) {
    Open("a(p(v,w),r(~)),b(q(x))", "X(1,2)");
    const std::vector<std::pair<std::string, bool>> nodes = {
        {"a", true}, {"p", true}, {"v", true},  {"w", true}, {"r", true},
        {"", false}, {"b", true}, {"q", false}, {"x", false}};
    for (int position = 1; position <= 9; ++position) {
        const auto& [value, siblings] = nodes[static_cast<size_t>(position) - 1];
        Click(position);
        EXPECT_EQ(Value(), value);
        EXPECT_EQ(State(), siblings ? "NRMV--TWSAX" : "N--V--TWSAX") << position;
        EXPECT_EQ(Window().tvwContent.SelectedItem()->Index(), position);
    }
    Key(Tree(), Qt::Key_Home);
    EXPECT_EQ(Value(), "a");
    QTest::keyClicks(Tree(), u"q"_qs);
    EXPECT_EQ(Value(), "q");
    EXPECT_FALSE(Changed());
}

TEST_F(WindowTest, MoveIsOnRightAfterADocumentCame) {
    ChooseFile(Qt::Key_N);
    EXPECT_EQ(State(), "N-MV--TWSAX");
    EXPECT_EQ(QApplication::focusWidget(), Box());
    Click(1);
    EXPECT_EQ(State(), "N--V--TWSAX");
    Open("a(p(v))");
    EXPECT_EQ(State(), "N-MV--TWSAX");
    PressMove(false);
    EXPECT_EQ(Shown(), "*a(p(v))");
    EXPECT_EQ(State(), "N--V--TWSAX");
    EXPECT_TRUE(Changed());
}

TEST_F(WindowTest, EachEventTakesAnEditWhereItShould) {
    const char* const Same = "za(p(v,w)),zb(q(x))";
    const std::string Editing = "NRMVOCTWSAX";
    const std::string Viewing = "NRMV--TWSAX";
    const std::string Single = "N-MV--TWSAX";
    const struct {
        const char* Event;
        std::function<void()> Do;
        std::string State, Value, Stored;
        bool Changed;
    } cases[] = {
        {"typing", [&] { QTest::keyClicks(Box(), u"y"_qs); }, Editing, "za+y", Same, false},
        {"typing it back", [&] { Key(Box(), Qt::Key_Backspace); }, Editing, "za", Same, false},
        {"Ok", [&] { Press(Window().cmdOK); }, Viewing, "za+", "za+(p(v,w)),zb(q(x))", true},
        {"Enter", [&] { Key(Box(), Qt::Key_Enter); }, Viewing, "za+", "za+(p(v,w)),zb(q(x))", true},
        {"Enter in the tree", [&] { Key(Tree(), Qt::Key_Return); }, Viewing, "za+",
         "za+(p(v,w)),zb(q(x))", true},
        {"Enter on the tabs", [&] { Key(Tabs(), Qt::Key_Return); }, Viewing, "za+",
         "za+(p(v,w)),zb(q(x))", true},
        {"Enter on New", [&] { Key(Window().cmdNew.Widget(), Qt::Key_Return); }, Viewing, "za",
         "za(p(v,w)),za(~(${FILE1})),zb(q(x))", true},
        {"an empty box",
         [&] {
             Box()->selectAll();
             Key(Box(), Qt::Key_Delete);
             Key(Box(), Qt::Key_Return);
         },
         Viewing, "", "~(p(v,w)),zb(q(x))", true},
        {"Cancel", [&] { Press(Window().cmdCancel); }, Viewing, "za", Same, false},
        {"Escape", [&] { Key(Box(), Qt::Key_Escape); }, Viewing, "za", Same, false},
        {"Escape in the tree", [&] { Key(Tree(), Qt::Key_Escape); }, Viewing, "za", Same, false},
        {"a click on another node", [&] { Click(5); }, Viewing, "zb", Same, false},
        {"a click on the node", [&] { Click(1); }, Viewing, "za", Same, false},
        {"a key in the tree", [&] { Key(Tree(), Qt::Key_Down); }, Viewing, "p", Same, false},
        {"an arrow key", [&] { Key(Box(), Qt::Key_Down); }, Viewing, "p", Same, false},
        {"New", [&] { Key(Box(), Qt::Key_N, Qt::AltModifier); }, Viewing, "za",
         "za(p(v,w)),za(~(${FILE1})),zb(q(x))", true},
        {"Remove", [&] { Key(Box(), Qt::Key_R, Qt::AltModifier); }, "N--V--TWSAX", "zb", "zb(q(x))",
         true},
        {"Move", [&] { PressMove(true); }, Viewing, "za", "zb(q(x)),za(p(v,w))", true},
        {"a tab", [&] { ClickTab(2); }, "N--V--TWSAX", "FILE1", Same, false},
        {"the same tab", [&] { ClickTab(1); }, Editing, "za+", Same, false},
        {"File New", [&] { ChooseFile(Qt::Key_N); }, Single, "", "~(~(${FILE1}))", false},
        {"File Open",
         [&] {
             TheUser.Files = {Path(u"document.tvq"_qs)};
             ChooseFile(Qt::Key_P);
         },
         "NRMV--TWSAX", "za", Same, false},
        {"File Open cancelled", [&] { ChooseFile(Qt::Key_P); }, Editing, "za+", Same, false},
        {"File Save", [&] { ChooseFile(Qt::Key_S); }, Editing, "za+", Same, false},
        {"File Save as",
         [&] {
             TheUser.Files = {Path(u"b.tvq"_qs)};
             ChooseFile(Qt::Key_A);
         },
         Editing, "za+", Same, false},
        {"File Run", [&] { ChooseFile(Qt::Key_R); }, Editing, "za+", Same, false},
        {"collapsing", [&] { Click(1, Expander); }, Editing, "za+", "za[p(v,w)],zb(q(x))", false},
        {"a check box", [&] { Click(3, Mark); }, Editing, "za+", "za(p(!v,w)),zb(q(x))", true},
        {"Space in the tree", [&] { Key(Tree(), Qt::Key_Space); }, Editing, "za+",
         "!za(p(v,w)),zb(q(x))", true},
    };
    for (const auto& [event, act, state, value, stored, changed] : cases) {
        SCOPED_TRACE(event);
        Open(Same);
        ClickTab(1);
        Click(1);
        QTest::keyClicks(Box(), u"+"_qs);
        EXPECT_EQ(State(), Editing);
        act();
        EXPECT_EQ(State(), state);
        EXPECT_EQ(Value(), value);
        EXPECT_EQ(Stored(Program().Compilers()), stored);
        EXPECT_EQ(Changed(), changed);
        EXPECT_TRUE(TheUser.Asked.empty());
    }
    EXPECT_EQ(Log(), Frame(u"za p v w"_qs, u"error: CreateProcess failed (2)"_qs) + u"\r\n" +
                         Frame(u"zb q x"_qs, u"error: CreateProcess failed (2)"_qs));
    Open(Same);
    QTest::keyClicks(Box(), u"+"_qs);
    ChooseFile(Qt::Key_S);
    EXPECT_EQ(BytesOf(Path(u"document.tvq"_qs)),
              DocumentImage(Sketches(Same), Sketches("FILE1(~)")));
}

TEST_F(WindowTest, MenuLettersAndF1Answer) {
    QStringList boxes;
    const auto readBox = [&] {
        QWidget* box = QApplication::activeModalWidget();
        ASSERT_NE(box, nullptr);
        QStringList lines = {box->windowTitle()};
        for (const QLabel* label : box->findChildren<QLabel*>())
            lines += label->text();
        EXPECT_FALSE(box->findChild<QLabel*>(QString(), Qt::FindDirectChildrenOnly)->isHidden());
        boxes += lines.join(u'/');
        Key(box, Qt::Key_Escape);
    };
    Open("a,b");
    for (QWidget* focus :
         {static_cast<QWidget*>(Box()), static_cast<QWidget*>(Tree()), Window().cmdNew.Widget()}) {
        focus->setFocus();
        Later(readBox);
        Key(focus, Qt::Key_F1);
    }
    Later(readBox);
    Choose(Qt::Key_H, Qt::Key_I);
    ASSERT_EQ(boxes.size(), 4);
    for (const QString& box : boxes)
        EXPECT_EQ(box.toStdString(), Title + "/" + Title +
                                         "//This is a compiler controller,/i.e. it controlls "
                                         "compiler invocation and parameters./");
    const std::weak_ptr<Application> program = GlobalApplication();
    ChooseFile(Qt::Key_X);
    EXPECT_TRUE(program.expired());
}

TEST_F(WindowTest, ArrowKeysInTheBoxWalkTheTree) {
    Open("a(p(v)),b");
    Click(1, Expander);
    Box()->setCursorPosition(0);
    Key(Box(), Qt::Key_Up);
    EXPECT_EQ(Box()->cursorPosition(), 0);
    EXPECT_EQ(Shown(), "*a[p(v)],b");
    std::string walked;
    for (int step = 0; step < 4; ++step) {
        Key(Box(), Qt::Key_Down);
        walked += Value();
    }
    EXPECT_EQ(walked, "pvbb");
    EXPECT_EQ(Shown(), "a(p(v)),*b");
    EXPECT_EQ(Stored(Program().Compilers()), "a[p(v)],b");
    for (Qt::KeyboardModifier modifier : {Qt::ShiftModifier, Qt::ControlModifier, Qt::AltModifier})
        Key(Box(), Qt::Key_Up, modifier);
    EXPECT_EQ(Shown(), "a(p(v)),*b");
    Key(Box(), Qt::Key_Up, Qt::KeypadModifier);
    EXPECT_EQ(Shown(), "a(p(*v)),b");
    Key(Box(), Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_EQ(Window().txtValue.SelText(), u"v");
    EXPECT_FALSE(Changed());
}

TEST_F(WindowTest, NewPutsACompleteSiblingBehind) {
    const char* const compilers = "a(p(v,!w)),b(q(x))";
    const char* const variables = "X(1,!2),Y(3)";
    const struct {
        int Tab, Position;
        std::string Shown, Value;
    } cases[] = {
        {1, 1, "a(p(v,!w)),*a(~(${FILE1})),b(q(x))", "a"},
        {1, 5, "a(p(v,!w)),b(q(x)),*b(~(${FILE1}))", "b"},
        {1, 2, "a(p(v,!w),*p(~)),b(q(x))", "p"},
        {1, 3, "a(p(!v,*v,!w)),b(q(x))", "v"},
        {1, 4, "a(p(!v,!w,*w)),b(q(x))", "w"},
        {2, 1, "X(1,!2),*X(~),Y(3)", "X"},
        {2, 2, "X(!1,*1,!2),Y(3)", "1"},
        {2, 5, "X(1,!2),Y(!3,*3)", "3"},
    };
    for (const auto& [tab, position, shown, value] : cases) {
        Open(compilers, variables);
        ClickTab(tab);
        Click(position);
        Press(Window().cmdNew);
        EXPECT_EQ(Shown(), shown);
        EXPECT_EQ(Value(), value);
        EXPECT_EQ(State(), "NRMV--TWSAX");
        EXPECT_TRUE(Changed());
        EXPECT_EQ(Stored(tab == 1 ? Program().Variables() : Program().Compilers()),
                  tab == 1 ? variables : compilers);
    }
}

TEST_F(WindowTest, RemoveKeepsANeighbourSelected) {
    const struct {
        int Tab, Position;
        std::string Shown;
    } cases[] = {
        {1, 3, "a(p(*w,x),q(y)),b(r(z)),c(s(t))"},
        {1, 4, "a(p(*v,x),q(y)),b(r(z)),c(s(t))"},
        {1, 5, "a(p(*v,w),q(y)),b(r(z)),c(s(t))"},
        {1, 2, "*a(q(y)),b(r(z)),c(s(t))"},
        {1, 6, "*a(p(v,w,x)),b(r(z)),c(s(t))"},
        {1, 1, "*b(r(z)),c(s(t))"},
        {1, 8, "*a(p(v,w,x),q(y)),c(s(t))"},
        {1, 11, "*a(p(v,w,x),q(y)),b(r(z))"},
        {2, 1, "*Y(3)"},
        {2, 4, "*X(1,2)"},
        {2, 2, "*X(2),Y(3)"},
    };
    for (const auto& [tab, position, shown] : cases) {
        SCOPED_TRACE(shown);
        Open("a(p(v,w,x),q(y)),b(r(z)),c(s(t))", "X(1,2),Y(3)");
        ClickTab(tab);
        Click(position);
        Press(Window().cmdRemove);
        EXPECT_EQ(Shown(), shown);
        EXPECT_TRUE(Changed());
        // The node stays selected in a rebuild: the position that is remembered is its own.
        ClickTab(3 - tab);
        ClickTab(tab);
        EXPECT_EQ(Shown(), shown);
    }
    Open("a(p(v))");
    Click(2);
    Press(Window().cmdRemove);
    Key(Box(), Qt::Key_R, Qt::AltModifier);
    EXPECT_EQ(Shown(), "a(*p(v))");
    EXPECT_FALSE(Changed());
}

TEST_F(WindowTest, CheckBoxesFollowTheRuleOfAlternatives) {
    const struct {
        int Tab, Position;
        std::string Shown;
    } cases[] = {
        {1, 4, "*a(p(!v,w,!x)),!b(q(y))"},
        {1, 3, "*a(p(!v,!w,!x)),!b(q(y))"},
        {1, 6, "*a(p(v,!w,!x)),b(q(y))"},
        {1, 2, "*a(!p(v,!w,!x)),!b(q(y))"},
        {1, 1, "*!a(p(v,!w,!x)),!b(q(y))"},
        {2, 4, "*X(!1,!2,3)"},
        {2, 2, "*X(!1,2,!3)"},
        {2, 1, "*!X(1,2,!3)"},
    };
    for (const auto& [tab, position, shown] : cases) {
        Open("a(p(v,!w,!x)),!b(q(y))", "X(1,2,!3)");
        ClickTab(tab);
        const Node* node = Window().tvwContent.Nodes().Item(3);
        Click(position, Mark);
        EXPECT_EQ(Shown(), shown);
        EXPECT_EQ(node, Window().tvwContent.Nodes().Item(3)) << "the tree was rebuilt";
        EXPECT_EQ("*" + Stored(tab == 1 ? Program().Compilers() : Program().Variables()), shown);
        EXPECT_TRUE(Changed());
    }
    Click(4);
    Key(Tree(), Qt::Key_Space);
    EXPECT_EQ(Shown(), "!X(!1,!2,*3)");
}

TEST_F(WindowTest, BranchesRememberTheirState) {
    Open("a(p(v,w)),b(q(x))");
    Click(5);
    Click(2, Expander);
    EXPECT_EQ(Shown(), "a(p[v,w]),*b(q(x))");
    EXPECT_FALSE(Changed());
    QTest::keyClicks(Box(), u"+\r"_qs);
    ClickTab(2);
    ClickTab(1);
    EXPECT_EQ(Shown(), "a(p[v,w]),*b+(q(x))");
    Click(2, Expander);
    EXPECT_EQ(Shown(), "a(p(v,w)),*b+(q(x))");
    Click(3);
    Key(Tree(), Qt::Key_Left);
    Key(Tree(), Qt::Key_Left);
    Click(5, Expander);
    EXPECT_EQ(Shown(), "a(*p[v,w]),b+[q(x)]");
    Key(Box(), Qt::Key_Down);
    // What a rebuild brings into view, the selected and the last open node, opens on the screen
    // only.
    for (int rebuild = 0; rebuild < 2; ++rebuild) {
        QTest::keyClicks(Box(), u"!"_qs);
        Key(Box(), Qt::Key_Return);
        EXPECT_EQ(Shown().find("a(p(*v!"), 0U);
        EXPECT_EQ(Stored(Program().Compilers()).find("a(p[v!"), 0U);
        EXPECT_NE(Shown().find("b+(q(x))"), std::string::npos);
        EXPECT_NE(Stored(Program().Compilers()).find("b+[q(x)]"), std::string::npos);
    }
}

TEST_F(WindowTest, EachTabKeepsItsPosition) {
    Open("a(p(v)),b", "X(1),Y(2,3)");
    Click(3);
    ClickTab(2);
    EXPECT_EQ(Shown(), "*X(1),Y(2,3)");
    Click(5);
    QTest::keyClicks(Box(), u"+"_qs);
    ClickTab(1);
    EXPECT_EQ(Shown() + " " + Value(), "a(p(*v)),b v");
    ClickTab(2);
    EXPECT_EQ(Shown() + " " + Value(), "X(1),Y(2,*3) 3");
    EXPECT_EQ(Program().ContentActive(), 2);
    EXPECT_FALSE(Changed());
    Open("c(o(u))", "Z(4)");
    EXPECT_EQ(Shown(), "*c(o(u))");
    EXPECT_EQ(Tabs()->currentIndex() + Program().ContentActive(), 1);
    ClickTab(2);
    EXPECT_EQ(Shown(), "*Z(4)");
    ChooseFile(Qt::Key_N);
    EXPECT_EQ(Shown(), NewDocument);
    EXPECT_EQ(Tabs()->currentIndex() + Program().ContentActive(), 1);
    EXPECT_EQ(Stored(Program().Variables()), "FILE1(~)");
}

TEST_F(WindowTest, MovesGoAroundTheEnds) {
    const struct {
        int Position;
        const char* Presses;
        std::string Shown;
    } cases[] = {
        {1, "u", "b(q(x,!y),r(z)),c,*a(p)"},      {1, "ud", "*a(p),b(q(x,!y),r(z)),c"},
        {1, "dd", "b(q(x,!y),r(z)),c,*a(p)"},     {8, "d", "*c,a(p),b(q(x,!y),r(z))"},
        {8, "u", "a(p),*c,b(q(x,!y),r(z))"},      {4, "d", "a(p),b(r(z),*q(x,!y)),c"},
        {6, "u", "a(p),b(q(*!y,x),r(z)),c"},      {6, "uu", "a(p),b(q(x,*!y),r(z)),c"},
        {6, "dduuud", "a(p),b(q(x,*!y),r(z)),c"},
    };
    for (const auto& [position, presses, shown] : cases) {
        Open("a(p),b(q(x,!y),r(z)),c");
        Click(position);
        const std::string value = Value();
        for (const char* press = presses; *press; ++press)
            PressMove(*press == 'd');
        EXPECT_EQ(Shown(), shown) << presses;
        EXPECT_EQ(Value(), value);
        EXPECT_EQ(State(), "NRMV--TWSAX");
        EXPECT_TRUE(Changed());
    }
    Open("a,b,c,d,e,f,g");
    Key(Window().udnMove.Widget(), Qt::Key_Down);
    EXPECT_EQ(Shown(), "b,*a,c,d,e,f,g");
    QWidget* down = Window().udnMove.Widget()->findChildren<QToolButton*>().at(1);
    QTest::mousePress(down, Qt::LeftButton);
    EXPECT_TRUE(WaitFor([&] { return Program().Compilers()->Item(4)->Value() == u"a"; }));
    QTest::mouseRelease(down, Qt::LeftButton);
}

TEST_F(WindowTest, DropsAreTypedAtTheSelection) {
    QMimeData text, files, both, repeated, lines, picture;
    text.setText(u"T U"_qs);
    const QList<QUrl> paths = {QUrl(u"file:///f/a%20b.c"_qs), QUrl(u"file:///f/d.c"_qs)};
    files.setUrls(paths);
    both.setUrls(paths);
    both.setText(u"T"_qs);
    repeated.setUrls(paths);
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
    for (const auto& [data, offered, start, length, value] : cases) {
        SCOPED_TRACE(value);
        Open("abc,d");
        const bool taken = value != "abc";
        Box()->setCursorPosition(start);
        if (length > 0)
            Box()->setSelection(start, length);
        const QPoint place(100, 8);
        QDragEnterEvent enter(place, offered, &data, Qt::LeftButton, {});
        QApplication::sendEvent(Box(), &enter);
        EXPECT_EQ(enter.isAccepted(), taken);
        if (taken) {
            QDragMoveEvent move(place, offered, &data, Qt::LeftButton, {});
            QApplication::sendEvent(Box(), &move);
            EXPECT_TRUE(move.isAccepted());
            EXPECT_EQ(move.dropAction(), Qt::CopyAction);
            EXPECT_EQ(Value(), "abc");
            QDropEvent drop(place, offered, &data, Qt::LeftButton, {});
            QApplication::sendEvent(Box(), &drop);
            EXPECT_EQ(drop.dropAction(), Qt::CopyAction);
        }
        EXPECT_EQ(Value(), value);
        EXPECT_EQ(State(), taken ? "NRMVOCTWSAX" : "NRMV--TWSAX");
        EXPECT_EQ(Stored(Program().Compilers()), "abc,d");
        EXPECT_FALSE(Changed());
        Key(Box(), Qt::Key_Escape);
        EXPECT_EQ(Value(), "abc");
    }
    QDragEnterEvent enter(QPoint(9, 9), any, &text, Qt::LeftButton, {});
    QApplication::sendEvent(Box(), &enter);
    QDragLeaveEvent leave;
    QApplication::sendEvent(Box(), &leave);
    EXPECT_EQ(Value(), "abc");
    Open("", "");
    QDragEnterEvent disabled(QPoint(9, 9), any, &text, Qt::LeftButton, {});
    QApplication::sendEvent(Box(), &disabled);
    EXPECT_FALSE(disabled.isAccepted());
}

TEST_F(WindowTest, AsksBeforeADocumentIsGivenUp) {
    const QString one = Path(u"one.tvq"_qs);
    const struct {
        Qt::Key Entry;
        std::vector<int> Answers;
        std::vector<QString> Files;
        QStringList Asked, Dialogs;
        std::string Shown;
        bool Saved, Changed;
    } cases[] = {
        {Qt::Key_N,
         {MessageBoxCancel},
         {},
         {AskBeforeNew},
         {},
         "~(~(${FILE1})),*~(~(${FILE1}))",
         false,
         true},
        {Qt::Key_N, {MessageBoxNo}, {}, {AskBeforeNew}, {}, NewDocument, false, false},
        {Qt::Key_N, {MessageBoxYes}, {one}, {AskBeforeNew}, {SaveDialog}, NewDocument, true, false},
        {Qt::Key_N, {MessageBoxYes}, {}, {AskBeforeNew}, {SaveDialog}, NewDocument, false, false},
        {Qt::Key_P,
         {MessageBoxCancel},
         {},
         {AskToSave},
         {},
         "~(~(${FILE1})),*~(~(${FILE1}))",
         false,
         true},
        {Qt::Key_P,
         {MessageBoxNo},
         {},
         {AskToSave},
         {OpenDialog},
         "~(~(${FILE1})),*~(~(${FILE1}))",
         false,
         true},
        {Qt::Key_P,
         {MessageBoxYes},
         {},
         {AskToSave},
         {SaveDialog},
         "~(~(${FILE1})),*~(~(${FILE1}))",
         false,
         true},
        {Qt::Key_P,
         {MessageBoxYes},
         {one},
         {AskToSave},
         {SaveDialog, OpenDialog},
         "~(~(${FILE1})),*~(~(${FILE1}))",
         true,
         false},
        {Qt::Key_P,
         {MessageBoxNo},
         {Path(u"document.tvq"_qs)},
         {AskToSave},
         {OpenDialog},
         "*a",
         false,
         false},
        {Qt::Key_X,
         {MessageBoxCancel},
         {},
         {AskToSave},
         {},
         "~(~(${FILE1})),*~(~(${FILE1}))",
         false,
         true},
        {Qt::Key_X,
         {MessageBoxYes},
         {},
         {AskToSave},
         {SaveDialog},
         "~(~(${FILE1})),*~(~(${FILE1}))",
         false,
         true},
    };
    for (const auto& [entry, answers, files, asked, dialogs, shown, saved, changed] : cases) {
        SCOPED_TRACE(testing::Message() << char(entry) << asked[0].size() << dialogs.size());
        QFile::remove(one);
        Open("a");
        ChooseFile(Qt::Key_N);
        Press(Window().cmdNew);
        TheUser.Answers = {answers.begin(), answers.end()};
        TheUser.Files = {files.begin(), files.end()};
        ChooseFile(entry);
        EXPECT_EQ(TheUser.Asked, asked);
        EXPECT_EQ(TheUser.Dialogs, dialogs);
        EXPECT_EQ(Shown(), shown);
        EXPECT_EQ(QFile::exists(one), saved);
        EXPECT_EQ(Changed(), changed);
    }
    TheUser.Asked.clear();
    TheUser.Answers = {MessageBoxCancel, MessageBoxYes};
    EXPECT_FALSE(Window().Window()->close());
    EXPECT_TRUE(Window().Visible());
    TheUser.Files = {one};
    const std::weak_ptr<Application> program = GlobalApplication();
    EXPECT_TRUE(Window().Window()->close());
    EXPECT_EQ(TheUser.Asked, QStringList({AskToSave, AskToSave}));
    EXPECT_EQ(BytesOf(one),
              DocumentImage(Sketches("~(~(${FILE1})),~(~(${FILE1}))"), Sketches("FILE1(~)")));
    EXPECT_TRUE(program.expired());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(QApplication::topLevelWidgets().empty());
}

TEST_F(WindowTest, CaptionFollowsTheFile) {
    Open("a,b");
    EXPECT_EQ(Caption(), "document.tvq - " + Title);
    ChooseFile(Qt::Key_N);
    EXPECT_EQ(Caption(), "New File - " + Title);
    TheUser.Files = {Path(u"one.tvq"_qs)};
    ChooseFile(Qt::Key_S);
    EXPECT_EQ(Caption(), "New File - " + Title);
    QTest::keyClicks(Box(), u"c\r"_qs);
    EXPECT_EQ(Caption(), "one.tvq - " + Title);
    ChooseFile(Qt::Key_S);
    EXPECT_EQ(TheUser.Dialogs, QStringList(SaveDialog));
    EXPECT_FALSE(Changed());
    TheUser.Files = {Path(u"two.tvq"_qs)};
    ChooseFile(Qt::Key_A);
    EXPECT_EQ(Caption(), "two.tvq - " + Title);
    Press(Window().cmdNew);
    ChooseFile(Qt::Key_A);
    EXPECT_EQ(Caption(), "two.tvq - " + Title);
    EXPECT_TRUE(Changed());
    ChooseFile(Qt::Key_S);
    EXPECT_FALSE(Changed());
    EXPECT_EQ(BytesOf(Path(u"one.tvq"_qs)),
              DocumentImage(Sketches("c(~(${FILE1}))"), Sketches("FILE1(~)")));
    EXPECT_NE(BytesOf(Path(u"two.tvq"_qs)), BytesOf(Path(u"one.tvq"_qs)));
    EXPECT_TRUE(TheUser.Asked.empty());
}

TEST_F(WindowTest, FailedFilesLeaveEverythingAsItWas) {
    const QString document = Path(u"document.tvq"_qs);
    const QString other = Path(u"other.tvq"_qs);
    PropertyBag foreign;
    foreign.WriteProperty("_FileFormatIdentification", u"TAVQEF#0004"_qs);
    const QByteArray whole = DocumentImage(Sketches("z"), Sketches("Z"));
    for (const QByteArray& bytes : {QByteArray(), QByteArray("no document"), foreign.Contents(),
                                    whole.chopped(1), whole.mid(1)}) {
        Open("a(p(v)),b", "X(1)");
        ClickTab(2);
        Press(Window().cmdNew);
        QTest::keyClicks(Box(), u"+"_qs);
        const std::string before = Shown() + Caption() + State() + Value();
        StoreBytes(other, bytes);
        TheUser.Answers = {MessageBoxNo};
        TheUser.Files = {other};
        ChooseFile(Qt::Key_P);
        ASSERT_EQ(TheUser.Asked.size(), 2);
        EXPECT_TRUE(TheUser.Asked[1].contains(other));
        EXPECT_TRUE(TheUser.Asked[1].endsWith(u"|48|"_qs + QString::fromStdString(Title)));
        EXPECT_EQ(Shown() + Caption() + State() + Value(), before);
        EXPECT_TRUE(Changed());
        EXPECT_EQ(Tabs()->currentIndex(), 1);
        ChooseFile(Qt::Key_S);
        EXPECT_EQ(BytesOf(document), DocumentImage(Sketches("a(p(v)),b"), Sketches("X(1),X(~)")));
        EXPECT_EQ(BytesOf(other), bytes);
    }
    Forget();
    Press(Window().cmdNew);
    for (Qt::Key entry : {Qt::Key_P, Qt::Key_A}) {
        TheUser.Files = {Path(u"nowhere/x.tvq"_qs)};
        TheUser.Answers = {MessageBoxNo};
        ChooseFile(entry);
        EXPECT_TRUE(TheUser.Asked.last().contains(u"nowhere/x.tvq"));
        EXPECT_EQ(Caption(), "document.tvq - " + Title);
        EXPECT_TRUE(Changed());
    }
    ChooseFile(Qt::Key_S);
    EXPECT_EQ(BytesOf(document), DocumentImage(Sketches("a(p(v)),b"), Sketches("X(1),X(~),X(~)")));
}

TEST_F(WindowTest, OldVersionsHaveTheirCompilersOnly) {
    PropertyBag content, second;
    content.WriteProperty("Compilers", CollectionImage(Sketches("c(o(u))"), 2));
    content.WriteProperty("Variables", CollectionImage(Sketches("Q(1)"), 1));
    second.WriteProperty("_FileFormatIdentification", u"TAVQEF#0002"_qs);
    second.WriteProperty("_Content", content.Contents());
    for (const QByteArray& bytes : {CollectionImage(Sketches("c(o(u))"), 2), second.Contents()}) {
        Open("a(p(v)),b", "X(1),Y(2)");
        ClickTab(2);
        Click(4);
        QTest::keyClicks(Box(), u"+"_qs);
        TheUser.Files = {StoreBytes(Path(u"old.tvq"_qs), bytes)};
        ChooseFile(Qt::Key_P);
        EXPECT_EQ(Shown(), "*c(o(u))");
        EXPECT_EQ(Value(), "c");
        EXPECT_EQ(State(), "N-MV--TWSAX");
        EXPECT_EQ(Tabs()->count() + Tabs()->currentIndex() + Program().ContentActive(), 2);
        EXPECT_EQ(Stored(Program().Variables()), "FILE1(~)");
        EXPECT_FALSE(Changed());
        ChooseFile(Qt::Key_S);
        EXPECT_EQ(BytesOf(Path(u"old.tvq"_qs)),
                  DocumentImage(Sketches("c(o(u))"), Sketches("FILE1(~)")));
        TheUser.Files = {Path(u"old.tvq"_qs)};
        ChooseFile(Qt::Key_P);
        EXPECT_EQ(Tabs()->count(), 2);
    }
}

TEST_F(WindowTest, RebuildsKeepTheRowsInPlace) {
    std::string outline = "a(p(v))";
    for (int each = 0; each < 24; ++each)
        outline += ",a(p(v))";
    Open(outline.c_str());
    QScrollBar* bar = Tree()->verticalScrollBar();
    const auto top = [&] { return Tree()->indexAt(QPoint(60, 2)); };
    Click(30);
    bar->setValue(24);
    QTest::keyClicks(Box(), u"+\r"_qs);
    EXPECT_EQ(top(), Row(25));
    EXPECT_EQ(Tree()->currentIndex(), Row(30));
    // The selected node is in view, whatever the top row was.
    bar->setValue(50);
    QTest::keyClicks(Box(), u"+\r"_qs);
    EXPECT_EQ(top(), Row(30));
    bar->setValue(0);
    QTest::keyClicks(Box(), u"+\r"_qs);
    EXPECT_TRUE(Tree()->viewport()->rect().contains(Tree()->visualRect(Row(30))));
    bar->setValue(bar->maximum());
    ClickTab(2);
    EXPECT_EQ(Shown(), "*FILE1(~)");
}

TEST_F(WindowTest, AnEmptyTreeLeavesNothingToEdit) {
    Open("", "X(1)");
    EXPECT_EQ(Shown() + Value(), "");
    EXPECT_EQ(State(), "--M---TWSAX");
    PressMove(true);
    Key(Tree(), Qt::Key_Down);
    Key(Tree(), Qt::Key_Space);
    ChooseFile(Qt::Key_R);
    EXPECT_EQ(TheUser.Asked.join(u"").toStdString(),
              "No compilers to run!\r\nPlease select some...|16|" + Title);
    ClickTab(2);
    EXPECT_EQ(Shown() + State(), "*X(1)N--V--TWSAX");
    QTest::keyClicks(Box(), u"+"_qs);
    ClickTab(1);
    EXPECT_EQ(Shown() + Value() + State(), "------TWSAX");
    EXPECT_FALSE(Changed());
}

TEST_F(WindowTest, EverythingAnswersDuringARun) {
    Open("sleep(1),zz(1)");
    Later([this] {
        ASSERT_TRUE(Runner().Running());
        Press(Window().cmdNew);
        Click(2, Mark);
        EXPECT_EQ(Shown(), "sleep(!1),*sleep(~(${FILE1})),zz(1)");
        EXPECT_EQ(State(), "NRMV--TWSAX");
        OutputWindow()->close();
        EXPECT_FALSE(OutputWindow()->isVisible());
        TheUser.Answers = {MessageBoxCancel};
        ChooseFile(Qt::Key_X);
        EXPECT_EQ(TheUser.Asked, QStringList(AskToSave));
        TheUser.Answers = {MessageBoxNo};
        ChooseFile(Qt::Key_N);
        EXPECT_TRUE(Runner().Running());
    });
    ChooseFile(Qt::Key_R);
    EXPECT_EQ(Shown(), NewDocument);
    EXPECT_TRUE(OutputWindow()->isVisible());
    EXPECT_EQ(Log(), Frame(u"sleep 1"_qs, u"success"_qs) + u"\r\n" +
                         Frame(u"zz 1"_qs, u"error: CreateProcess failed (2)"_qs));
}

TEST_F(WindowTest, ASecondRunFindsTheFirstStillRunning) {
    Open("sleep(1),zz(1)");
    Later([this] { ChooseFile(Qt::Key_R); });
    ChooseFile(Qt::Key_R);
    EXPECT_EQ(TheUser.Asked.join(u"").toStdString(), "Still running!|48|" + Title);
    EXPECT_TRUE(Log().startsWith(
        Frame(u"sleep 1"_qs, u"error: CreateProcess failed (0)"_qs).section(u'(', 0, 0)));
    EXPECT_EQ(Log().count(u"# | zz 1\r\n"), 2);
}

/// Quitting in the middle of a run, in three ways: File, Exit; closing the window; and after a
/// question about changes.
class QuitDuringARun : public WindowTest, public testing::WithParamInterface<int> {};

TEST_P(QuitDuringARun, EndsWithTheRun) {
    const QString mark = Path(u"mark"_qs);
    Open(("sleep(1),touch(" + mark.toStdString() + ")").c_str());
    const std::weak_ptr<Application> program = GlobalApplication();
    Later([&] {
        frmMain& form = Window();
        if (GetParam() == 2) {
            Press(form.cmdNew);
            TheUser.Answers = {MessageBoxNo};
        }
        if (GetParam() == 1)
            EXPECT_TRUE(form.Window()->close());
        else
            ChooseFile(Qt::Key_X);
        EXPECT_EQ(GlobalApplication(), nullptr);
        ASSERT_FALSE(program.expired());
        EXPECT_EQ(form.Visible(), GetParam() != 1);
        for (const char* handler : {"new", "tree", "keys", "menus"}) {
            SCOPED_TRACE(handler);
            QTest::mouseClick(form.cmdNew.Widget(), Qt::LeftButton);
            QTest::mouseClick(form.tvwContent.Widget(), Qt::LeftButton);
            QTest::keyClicks(form.txtValue.Widget(), u"x\r"_qs);
            Key(form.txtValue.Widget(), Qt::Key_Down);
            for (QAction* entry : form.Window()->menuBar()->actions()[0]->menu()->actions())
                entry->trigger();
        }
        EXPECT_TRUE(program.lock()->Execution()->Running());
        EXPECT_EQ(OutputWindow()->windowTitle().toStdString(),
                  "document.tvq - [Output] - " + Title);
        OutputWindow()->close();
    });
    ChooseFile(Qt::Key_R);
    EXPECT_TRUE(program.expired());
    EXPECT_TRUE(QFile::exists(mark));
    EXPECT_EQ(TheUser.Asked.size(), GetParam() == 2 ? 1 : 0);
    EXPECT_TRUE(TheUser.Dialogs.empty());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(QApplication::topLevelWidgets().empty());
}

INSTANTIATE_TEST_SUITE_P(Ways, QuitDuringARun, testing::Range(0, 3));

} // namespace
