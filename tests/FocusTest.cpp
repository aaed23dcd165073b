#include "WindowDriver.h"

#include <QClipboard>
#include <QInputMethodEvent>
#include <QMenu>
#include <QToolButton>

using namespace rivenfall;

namespace {

using FocusTest = WindowTest;

TEST_F(FocusTest, GoesBackToTheValueBox) {
    // Each button is disabled by what its click does.
    for (const char* script : {"type:+ Ok", "type:+ Cancel", "type:+ tab:2", "New Remove"}) {
        SCOPED_TRACE(script);
        Open("a", "X", script);
        EXPECT_EQ(Window().Window()->focusWidget(), Box());
    }
    Open("a", "X", "type:+ Ok Value:Right type:+ tab:2 tab:1");
    Expect({.Tree = "*a+", .Enabled = "New Value", .Box = "a+", .Changed = true});
    // It can't go to a box that is disabled, and comes when it isn't any more.
    Open("", "X(1)", "tab:2 type:+ tab:1");
    EXPECT_EQ(Window().Window()->focusWidget(), nullptr);
    Act("tab:2");
    EXPECT_EQ(Window().Window()->focusWidget(), Box());
}

TEST_F(FocusTest, TheWheelChangesNoTab) {
    Open("a", "X", "type:+");
    for (QWidget* place :
         std::initializer_list<QWidget*>{Tabs(), Window().udnMove.Widget(), Box()}) {
        for (const int turn : {-120, 120}) {
            QWheelEvent wheel(QPointF(5, 5), place->mapToGlobal(QPointF(5, 5)), {}, {0, turn}, {},
                              {}, Qt::NoScrollPhase, false);
            QApplication::sendEvent(place, &wheel);
        }
    }
    Expect({.Tree = "*a", .Enabled = "New Move Value Ok Cancel", .Box = "a+"});
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
                 [this] { Act("Value:Ctrl+V"); }, [this] { Act("Value:Shift+Ins"); }, pasteFromMenu,
                 compose}) {
            Open("abc", "X");
            Box()->setSelection(1, 1);
            bring();
            Expect({.Tree = "*abc", .Enabled = "New Move Value Ok Cancel", .Box = "aT Uc"});
        }
    }
    // What a document holds stays as it is.
    Open("a", "X(1\n2)", "tab:2 Value:Down type:+ Ok");
    EXPECT_EQ(Stored(2), "X(1\n2+)");
}

TEST_F(FocusTest, ALongValueShowsHowItBegins) {
    const std::string value = std::string(100, 'v');
    Open((value + ",b," + value).c_str(), "X", "Value:Down");
    EXPECT_EQ(Box()->cursorPosition(), 1);
    for (const char* selecting : {"Value:Up", "click:3"}) {
        Act(selecting);
        EXPECT_EQ(Box()->cursorPosition(), 0);
    }
    // Who stores a text may type on.
    Expect({.Acts = {"Value Value:End type:1 Value:Enter type:2"},
            .Tree = value + ",b,*" + value + "1",
            .Enabled = "New Remove Move Value Ok Cancel",
            .Box = value + "12",
            .Changed = true});
}

TEST_F(FocusTest, ATextThatNoProgramTakesIsShownByItsBeginning) {
    const std::string value = std::string((1 << 18) + 1, 'v');
    Open((value + ",b").c_str());
    Act("Value:Del New file:Save");
    EXPECT_TRUE(
        Holds(u"document.tvq"_s, (value + "," + value + "(~(${FILE1})),b").c_str(), "FILE1(~)"));
    EXPECT_EQ(Box()->placeholderText().size(), 1000);
    // What the user brings in takes the place of the whole.
    Expect({.Acts = {"type:x"},
            .Tree = value + ",*" + value + "(~(${FILE1})),b",
            .Enabled = "New Remove Move Value Ok Cancel",
            .Box = "x"});
    Act("Ok");
    EXPECT_EQ(Program().Compilers()->Item(2)->Value(), u"x");
}

} // namespace
