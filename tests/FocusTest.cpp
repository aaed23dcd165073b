#include "WindowDriver.h"

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
    EXPECT_EQ(Look(), "*a+ N--V-- a+ changed");
    // It can't go to a box that is disabled, and comes when it isn't any more.
    Open("", "X(1)", "tab:2 type:+ tab:1");
    EXPECT_EQ(Window().Window()->focusWidget(), nullptr);
    Act("tab:2");
    EXPECT_EQ(Window().Window()->focusWidget(), Box());
}

TEST_F(FocusTest, TheWheelChangesNoTab) {
    Open("a", "X", "type:+");
    for (QWidget* place : std::initializer_list<QWidget*>{Tabs(), Window().udnMove.Widget(), Box()})
        for (const int turn : {-120, 120}) {
            QWheelEvent wheel(QPointF(5, 5), place->mapToGlobal(QPointF(5, 5)), {}, {0, turn}, {},
                              {}, Qt::NoScrollPhase, false);
            QApplication::sendEvent(place, &wheel);
        }
    EXPECT_EQ(Look(), "*a N-MVOC a+");
}

} // namespace
