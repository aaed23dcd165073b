#include "WindowDriver.h"

#include "tree/RowText.h"
#include "tree/TreeRowDelegate.h"

#include <QAccessible>
#include <QScrollBar>

using namespace rivenfall;

namespace {

/// The tree of the main window, with a log of its events: "click TEXT, check TEXT" and so on.
class TreeTest : public WindowTest {
protected:
    TreeTest() {
        Record("click", &TreeView::NodeClick);
        Record("check", &TreeView::NodeCheck);
        Record("expand", &TreeView::Expand);
        Record("collapse", &TreeView::Collapse);
        Open("1(1.1,1.2),2(2.1,2.2),~");
        Tree()->setFocus();
    }

    void Record(const char* event, void (TreeView::*signal)(Node&)) {
        QObject::connect(&Control(), signal, &Control(), [this, event](Node& node) {
            Log.append(QLatin1StringView(event) + u' ' + node.Text());
        });
    }

    TreeView& Control() { return Window().tvwContent; }
    Node& At(int position) { return *Control().Nodes().Item(position); }
    QString Selected() { return Control().SelectedItem()->Text(); }
    std::string TakeLog() { return std::exchange(Log, {}).join(u", ").toStdString(); }
    QWidget* Port() { return Tree()->viewport(); }
    /// The middle of the label, the check box or the expander of a row in view, or before that.
    enum Spot { Label = 60, Box = 8, Expander = -10, BeforeExpander = -30 };
    QPoint Find(int position, Spot spot) {
        const QRect row = Tree()->visualRect(Row(position));
        return {row.left() + spot, row.center().y()};
    }
    void Click(int position, Spot spot, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mouseClick(Port(), Qt::LeftButton, modifiers, Find(position, spot));
    }
    void DoubleClick(int position, Spot spot) {
        Click(position, spot);
        QTest::mouseDClick(Port(), Qt::LeftButton, {}, Find(position, spot));
        QTest::mouseRelease(Port(), Qt::LeftButton, {}, Find(position, spot));
    }
    void Drag(const QPoint& from, const QPoint& to) {
        QTest::mousePress(Port(), Qt::LeftButton, {}, from);
        QTest::mouseMove(Port(), to);
        QTest::mouseRelease(Port(), Qt::LeftButton, {}, to);
    }

    QStringList Log;
};

TEST_F(TreeTest, MouseSelectsChecksAndOpens) {
    At(4).SetSelected(true);
    Click(2, Label);
    Click(2, Label, Qt::ControlModifier);
    EXPECT_EQ(TakeLog(), "click 1.1, click 1.1");
    QTest::mouseClick(Port(), Qt::LeftButton, Qt::ControlModifier, Port()->rect().bottomRight());
    EXPECT_TRUE(Tree()->selectionModel()->isSelected(Tree()->currentIndex()));
    Drag(Find(2, Label), Find(3, Label));
    EXPECT_EQ(TakeLog(), "click 1.1, click 1.2");
    Click(6, Box);
    DoubleClick(4, Box);
    EXPECT_EQ(TakeLog(), "check 2.2, check 2, check 2");
    EXPECT_EQ(Stored(1), "1(1.1,1.2),2(2.1,!2.2),~");
    Drag(Find(4, Expander), Find(4, Expander) + QPoint(1, 1));
    EXPECT_EQ(Selected(), u"1.2");
    EXPECT_EQ(TakeLog(), "collapse 2");
    DoubleClick(4, Label);
    EXPECT_EQ(TakeLog(), "click 2, expand 2");
    DoubleClick(1, Expander);
    EXPECT_EQ(TakeLog(), "collapse 1, expand 1");
    Drag(Find(2, Box), Find(2, Box) + QPoint(1, 1));
    EXPECT_EQ(TakeLog(), "check 1.1");
    // Other buttons do nothing.
    for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton, Qt::BackButton}) {
        for (const Spot spot : {Label, Box, Expander}) {
            QTest::mouseClick(Port(), button, {}, Find(1, spot));
            QTest::mouseDClick(Port(), button, {}, Find(1, spot));
        }
    }
    EXPECT_EQ(TakeLog(), "");
    EXPECT_EQ(Selected(), u"2");
    // What a click brings about may be another tree.
    QObject::connect(&Control(), &TreeView::NodeClick, &Control(), [this] { Open("a(b,c),d"); });
    Click(4, Label);
    ExpectTheWindowAgrees();
}

TEST_F(TreeTest, KeysWalkCheckAndOpen) {
    const std::pair<Qt::Key, const char*> keys[] = {
        {Qt::Key_Space, "check 1"},
        {Qt::Key_Minus, "collapse 1"},
        {Qt::Key_Minus, ""},
        {Qt::Key_Plus, "expand 1"},
        {Qt::Key_Plus, ""},
        {Qt::Key_Left, "collapse 1"},
        {Qt::Key_Asterisk, "expand 1"},
        {Qt::Key_Right, "click 1.1"},
        {Qt::Key_Left, "click 1"},
        {Qt::Key_2, "click 2"},
        {Qt::Key_Home, "click 1"},
        {Qt::Key_Down, "click 1.1"},
        {Qt::Key_Down, "click 1.2"},
        {Qt::Key_Up, "click 1.1"},
    };
    for (const auto& [key, log] : keys) {
        Press(key);
        EXPECT_EQ(TakeLog(), log) << key;
    }
    // A row in a closed branch stays selected; only the branch answers then.
    At(1).SetExpanded(false);
    Press(Qt::Key_Space);
    EXPECT_EQ(TakeLog(), "");
    Press(Qt::Key_Right);
    EXPECT_EQ(TakeLog(), "expand 1");
    EXPECT_EQ(Selected(), u"1.1");
    Press(Qt::Key_End);
    EXPECT_EQ(Tree()->currentIndex(), Row(7));
}

TEST_F(TreeTest, WhatStandsBeforeAnExpanderBelongsToTheRow) {
    Open("a(b(c))");
    DoubleClick(2, BeforeExpander);
    EXPECT_EQ(TakeLog(), "click b, collapse b");
}

TEST_F(TreeTest, AnExpanderWorksFromRightToLeft) {
    Tree()->setLayoutDirection(Qt::RightToLeft);
    const QRect row = Tree()->visualRect(Row(1));
    QTest::mouseClick(Port(), Qt::LeftButton, {}, {row.right() + 10, row.center().y()});
    EXPECT_EQ(TakeLog(), "collapse 1");
}

TEST_F(TreeTest, ScreenReadersFindNestedItemsAndActAsTheUser) {
    At(6).SetSelected(true);
    QAccessibleInterface* tree = QAccessible::queryAccessibleInterface(Tree());
    ASSERT_EQ(tree->childCount(), 3);
    EXPECT_EQ(tree->child(2)->text(QAccessible::Name), u"(empty)");
    QAccessibleInterface* root = tree->child(1);
    QAccessibleInterface* item = root->child(1);
    EXPECT_EQ(item->text(QAccessible::Description), u"Level 2, 2 of 2");
    EXPECT_EQ(tree->focusChild(), item);
    EXPECT_TRUE(tree->childAt(item->rect().center().x(), item->rect().center().y()) == item);
    root->child(0)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    item->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    root->actionInterface()->doAction(root->actionInterface()->actionNames().last());
    EXPECT_EQ(TakeLog(), "click 2.1, check 2.2, collapse 2");
    EXPECT_TRUE(!item->state().checked && item->state().invisible && root->state().collapsed);
    const QAccessible::Id id = QAccessible::uniqueId(item);
    Program().Compilers()->Remove(2);
    EXPECT_EQ(QAccessible::accessibleInterface(id), nullptr);
    Control().SetReachable(false);
    EXPECT_EQ(tree->childCount(), 0);
}

TEST_F(TreeTest, RowsShowWhatFitsAndHideNothing) {
    Open("rm exe,rm \u202eexe," + std::string(100'000, 'x'));
    QCoreApplication::processEvents();
    const auto width = [this](int position) {
        return Tree()->sizeHintForIndex(Row(position)).width();
    };
    EXPECT_GT(width(2), width(1));
    EXPECT_LT(width(3), 30'000);
    // A wide row is scrolled by the user alone.
    QScrollBar* bar = Tree()->horizontalScrollBar();
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return bar->maximum() == width(3) + Tree()->indentation() - Port()->width(); }));
    bar->setValue(30);
    Press(Qt::Key_End, Tree());
    EXPECT_EQ(bar->value(), 30);
    QAccessibleInterface* tree = QAccessible::queryAccessibleInterface(Tree());
    EXPECT_EQ(tree->child(1)->text(QAccessible::Name), u"rm \u202eexe");
    EXPECT_LT(tree->child(2)->text(QAccessible::Name).size(), 2000);
}

TEST(TreeRowTest, KeepsItsOrderWhereTheLayoutRunsFromRightToLeft) {
    QTextOption option;
    option.setTextDirection(Qt::RightToLeft);
    QTextLayout layout(TreeRowDelegate().displayText(u"--O2"_s, {}));
    layout.setTextOption(option);
    layout.beginLayout();
    const QTextLine line = layout.createLine();
    layout.endLayout();
    const auto between = [&](const QString& pair) {
        return line.cursorToX(int(layout.text().indexOf(pair)) + 1);
    };
    EXPECT_LT(between(u"--"_s), between(u"O2"_s));
}

TEST(RowTextTest, ShowsWhatWouldDeceive) {
    for (const QString& honest : {u"-o a b.c"_s, u"שלום.txt"_s, u"نمی\u200cخواهم"_s, u"क्\u200dष"_s,
                                  u"👨\u200d👩"_s, u"👍🏽\u200d✌\ufe0f"_s}) {
        EXPECT_EQ(RowText(honest), honest);
    }
    const QString marked = u"\u2066[U+%1]\u2069"_s;
    EXPECT_EQ(RowText(u"a\u202egnp.exe"_s), u'a' + marked.arg(u"202E"_s) + u"gnp.exe"_s);
    for (const char32_t each : std::initializer_list<char32_t>{
             0x0,    0x9,    0xA,    0x1B,   0x7F,   0x85,   0xAD,   0x61C,  0x200B, 0x200C, 0x200D,
             0x200E, 0x200F, 0x2028, 0x2029, 0x2066, 0x2069, 0xFE0F, 0xFEFF, 0x3164, 0xE0041}) {
        const QString number = QString::number(each, 16).toUpper().rightJustified(4, u'0');
        EXPECT_EQ(RowText(u"x"_s += QChar::fromUcs4(each)), u'x' + marked.arg(number));
    }
}

} // namespace
