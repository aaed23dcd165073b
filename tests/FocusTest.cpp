#include "WindowDriver.h"

#include <QClipboard>
#include <QInputMethodEvent>
#include <QMenu>

using namespace rivenfall;

namespace {

using FocusTest = WindowTest;

TEST_F(FocusTest, GoesBackToTheValueBox) {
    // Each button is disabled by what its click does.
    for (const char* button : {"Ok", "Cancel", "Remove"}) {
        Open("a");
        Click("New");
        Type("+");
        Click(button);
        EXPECT_EQ(Window().Window()->focusWidget(), Box()) << button;
    }
    Open("a", "X");
    Type("+");
    Click("Ok");
    Press(Qt::Key_Right);
    QTest::keyClicks(QApplication::focusWidget(), u"+"_s);
    Tab(2);
    EXPECT_EQ(Window().Window()->focusWidget(), Box());
    Tab(1);
    Expect({.Tree = "*a+", .Enabled = "New Value", .Box = "a+", .Changed = true});
}

TEST_F(FocusTest, WhatIsTypedRightBehindALetterOfAButtonMeetsTheNewEntry) {
    Open("a");
    Press(Qt::ALT | Qt::Key_N, Box());
    // The key is held down.
    QTest::simulateEvent(Box(), true, Qt::Key_N, Qt::AltModifier, {}, true);
    Type("+");
    Click("Ok");
    Expect({.Tree = "a,*a+(~(${FILE1}))",
            .Enabled = "New Remove Move Value",
            .Box = "a+",
            .Changed = true});
}

TEST_F(FocusTest, WhatComesIntoTheBoxIsOneLine) {
    const auto pasteFromMenu = [this] {
        QContextMenuEvent event(QContextMenuEvent::Mouse, {5, 5}, Box()->mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(Box(), &event);
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        ASSERT_NE(menu, nullptr);
        QTest::keyClick(menu, Qt::Key_P);
    };
    const auto compose = [this] {
        QInputMethodEvent event;
        event.setCommitString(QGuiApplication::clipboard()->text());
        QApplication::sendEvent(Box(), &event);
    };
    for (const QString& text : {u"T U"_s, u"T U\n"_s, u"T U\r\nV"_s, u"T U\u2028V\nW"_s}) {
        QGuiApplication::clipboard()->setText(text);
        for (const std::function<void()>& bring : std::initializer_list<std::function<void()>>{
                 [this] { Press(Qt::CTRL | Qt::Key_V, Box()); }, pasteFromMenu, compose}) {
            Open("abc", "X");
            Box()->setSelection(1, 1);
            bring();
            Expect({.Tree = "*abc", .Enabled = "New Move Value Ok Cancel", .Box = "aT Uc"});
        }
    }
    // What a document holds stays as it is.
    Open("a", "X(1\n2)");
    Tab(2);
    Press(Qt::Key_Down);
    Type("+");
    Click("Ok");
    EXPECT_EQ(Stored(2), "X(1\n2+)");
}

TEST_F(FocusTest, ATextThatNoProgramTakesIsShownByItsBeginning) {
    const std::string value((1 << 18) + 1, 'v');
    Open(value + ",b");
    Press(Qt::Key_Delete, Box());
    Click("New");
    Menu("File", "Save");
    EXPECT_TRUE(
        Holds(u"document.tvq"_s, (value + "," + value + "(~(${FILE1})),b").c_str(), "FILE1(~)"));
    EXPECT_EQ(Box()->placeholderText().size(), 1000);
    // What the user brings in takes the place of the whole.
    Type("x");
    Expect({.Tree = value + ",*" + value + "(~(${FILE1})),b",
            .Enabled = "New Remove Move Value Ok Cancel",
            .Box = "x"});
    Click("Ok");
    EXPECT_EQ(Program().Compilers()->Item(2)->Value(), u"x");
}

} // namespace
