#include "tree/RowText.h"
#include "tree/TreeRowDelegate.h"
#include "tree/TreeView.h"

#include <QAccessible>
#include <QApplication>
#include <QScrollBar>
#include <QTest>
#include <QTreeView>

#include <gtest/gtest.h>

#include <algorithm>

using namespace rivenfall;
using namespace Qt::StringLiterals;

namespace {

/// A tree in a shown window, with a log of its events: "click KEY, check KEY" and so on.
class TreeTest : public testing::Test {
protected:
    TreeTest() {
        pobjWindow.resize(400, 200);
        pobjTree.Move(0, 0, 6000, 3000);
        Record("click", &TreeView::NodeClick);
        Record("check", &TreeView::NodeCheck);
        Record("expand", &TreeView::Expand);
        Record("collapse", &TreeView::Collapse);
        pobjWindow.show();
        pobjTree.SetFocus();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&pobjWindow));
    }

    void Record(const char* event, void (TreeView::*signal)(Node&)) {
        QObject::connect(&pobjTree, signal, &pobjWindow, [this, event](Node& node) {
            pstrLog.append(QLatin1StringView(event) + u' ' + node.Key());
        });
    }

    /// Makes @p roots branches "1", "2", ... of @p children nodes "1.1", "1.2", ... each, all open.
    void Fill(int roots, int children) {
        pobjTree.Nodes().Clear();
        for (int root = 1; root <= roots; ++root) {
            const QString key = QString::number(root);
            pobjTree.Nodes().Add(key, QLatin1StringView("root ") + key).SetExpanded(true);
            for (int child = 1; child <= children; ++child) {
                const QString below = key + u'.' + QString::number(child);
                pobjTree.Nodes().Add(key, tvwChild, below, QLatin1StringView("child ") + below);
            }
        }
    }

    Node& At(const char* key) { return *pobjTree.Nodes().Item(QString::fromLatin1(key)); }
    QString Selected() { return pobjTree.SelectedItem()->Key(); }
    std::string TakeLog() { return std::exchange(pstrLog, {}).join(u", ").toStdString(); }
    QTreeView* View() { return static_cast<QTreeView*>(pobjTree.Widget()); }
    QWidget* Port() { return View()->viewport(); }
    /// The middle of the label, the check box or the expander of a row in view.
    enum Spot { Label = 60, Box = 8, Expander = -10 };
    QPoint Find(const char* key, Spot spot) {
        const std::vector<Node*> rows = pobjTree.RowsInView();
        const auto row = std::find(rows.begin(), rows.end(), &At(key)) - rows.begin();
        const int left = View()->indentation() * (At(key).Parent() ? 2 : 1);
        return {left + spot, View()->sizeHintForRow(0) * (2 * static_cast<int>(row) + 1) / 2};
    }
    void Click(const char* key, Spot spot, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mouseClick(Port(), Qt::LeftButton, modifiers, Find(key, spot));
    }
    void DoubleClick(const char* key, Spot spot) {
        Click(key, spot);
        QTest::mouseDClick(Port(), Qt::LeftButton, {}, Find(key, spot));
        QTest::mouseRelease(Port(), Qt::LeftButton, {}, Find(key, spot));
    }
    void Drag(const QPoint& from, const QPoint& to) {
        QTest::mousePress(Port(), Qt::LeftButton, {}, from);
        QTest::mouseMove(Port(), to);
        QTest::mouseRelease(Port(), Qt::LeftButton, {}, to);
    }
    void Press(int key) { QTest::keyClick(pobjTree.Widget(), static_cast<Qt::Key>(key)); }

    QWidget pobjWindow;
    TreeView pobjTree{&pobjWindow};
    QStringList pstrLog;
};

TEST_F(TreeTest, MouseSelectsChecksAndOpens) {
    Fill(2, 2);
    At("2").SetSelected(true);
    Click("1.1", Label);
    Click("1.1", Label, Qt::ControlModifier);
    EXPECT_EQ(TakeLog(), "click 1.1, click 1.1");
    QTest::mouseClick(Port(), Qt::LeftButton, Qt::ControlModifier, {200, 180});
    EXPECT_TRUE(View()->selectionModel()->isSelected(View()->currentIndex()));
    Drag(Find("1.1", Label), Find("1.2", Label));
    EXPECT_EQ(TakeLog(), "click 1.1, click 1.2");
    Click("2.2", Box);
    DoubleClick("2.1", Box);
    EXPECT_FALSE(At("2.1").Checked());
    EXPECT_EQ(TakeLog(), "check 2.2, check 2.1, check 2.1");
    Drag(Find("2", Expander), Find("2", Expander) + QPoint(1, 1));
    EXPECT_EQ(Selected(), u"1.2");
    EXPECT_EQ(TakeLog(), "collapse 2");
    DoubleClick("2", Label);
    EXPECT_EQ(TakeLog(), "click 2, expand 2");
    Drag(Find("1.1", Box), Find("1.1", Box) + QPoint(1, 1));
    EXPECT_EQ(TakeLog(), "check 1.1");
    // Other buttons do nothing.
    for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton, Qt::BackButton}) {
        for (const Spot spot : {Label, Box, Expander}) {
            QTest::mouseClick(Port(), button, {}, Find("1", spot));
            QTest::mouseDClick(Port(), button, {}, Find("1", spot));
        }
    }
    EXPECT_EQ(TakeLog(), "");
    EXPECT_EQ(Selected(), u"2");
    QObject::connect(&pobjTree, &TreeView::NodeClick, &pobjWindow, [this] { Fill(3, 5); });
    Click("2", Label);
    EXPECT_EQ(pobjTree.Nodes().Count(), 18);
}

TEST_F(TreeTest, KeysWalkCheckAndOpen) {
    Fill(2, 2);
    At("1").SetSelected(true);
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
        {Qt::Key_End, "click 2.2"},
        {Qt::Key_Home, "click 1"},
        {Qt::Key_C, "click 1.1"},
        {Qt::Key_Down, "click 1.2"},
        {Qt::Key_Up, "click 1.1"},
    };
    for (const auto& [key, log] : keys) {
        Press(key);
        EXPECT_EQ(TakeLog(), log) << key;
    }
    // A row in a closed branch stays selected; only the branch answers then.
    At("1").SetExpanded(false);
    TakeLog();
    Press(Qt::Key_Space);
    EXPECT_EQ(TakeLog(), "");
    Press(Qt::Key_Right);
    EXPECT_EQ(TakeLog(), "expand 1");
    EXPECT_EQ(Selected(), u"1.1");
}

TEST_F(TreeTest, AnExpanderWorksFromRightToLeft) {
    Fill(1, 1);
    At("1").SetSelected(true);
    View()->setLayoutDirection(Qt::RightToLeft);
    const QRect row = View()->visualRect(View()->model()->index(0, 0));
    QTest::mouseClick(Port(), Qt::LeftButton, {}, {row.right() + 10, row.center().y()});
    EXPECT_EQ(TakeLog(), "collapse 1");
}

TEST_F(TreeTest, ScreenReadersFindNestedItemsAndActAsTheUser) {
    Fill(2, 2);
    At("2.2").SetSelected(true);
    pobjTree.Nodes().Add(u"blank"_s, QString(64, u' '));
    QAccessibleInterface* tree = QAccessible::queryAccessibleInterface(View());
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
    EXPECT_TRUE(item->state().checked && item->state().invisible && root->state().collapsed);
    const QAccessible::Id id = QAccessible::uniqueId(item);
    pobjTree.Nodes().Remove(u"2"_s);
    EXPECT_EQ(QAccessible::accessibleInterface(id), nullptr);
    pobjTree.SetReachable(false);
    EXPECT_EQ(tree->childCount(), 0);
}

TEST_F(TreeTest, RowsShowWhatFitsAndHideNothing) {
    pobjTree.Nodes().Add(u"plain"_s, u"rm exe"_s);
    pobjTree.Nodes().Add(u"turned"_s, u"rm \u202eexe"_s);
    pobjTree.Nodes().Add(u"long"_s, QString(100'000, u'x'));
    QCoreApplication::processEvents();
    const auto width = [this](int row) {
        return View()->sizeHintForIndex(View()->model()->index(row, 0)).width();
    };
    EXPECT_GT(width(1), width(0));
    EXPECT_LT(width(2), 30'000);
    // A wide row is scrolled by the user alone.
    QScrollBar* bar = View()->horizontalScrollBar();
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return bar->maximum() == width(2) + View()->indentation() - Port()->width(); }));
    bar->setValue(30);
    Press(Qt::Key_End);
    EXPECT_EQ(bar->value(), 30);
    QAccessibleInterface* tree = QAccessible::queryAccessibleInterface(View());
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
