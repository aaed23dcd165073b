#include "WindowDriver.h"

#include "controls/Twips.h"

#include <QAbstractButton>

using namespace rivenfall;

namespace {

/// A program on a desktop whose letters are a quarter larger and whose style has high tabs.
struct LargeDesktop {
    LargeDesktop() {
        QFont large = Former;
        large.setPixelSize(15);
        QApplication::setFont(large);
        qApp->setStyleSheet(u"QTabBar::tab { height: 70px }"_s);
    }
    ~LargeDesktop() {
        QApplication::setFont(Former);
        qApp->setStyleSheet({});
    }
    const QFont Former = QApplication::font();
};

class LayoutTest : private LargeDesktop, public WindowTest {};

TEST_F(LayoutTest, StopsWhereTheScreenEnds) {
    QFont huge;
    huge.setPixelSize(85);
    QApplication::setFont(huge);
    const QSize free = Window().Window()->screen()->availableSize();
    EXPECT_LE(PixelsFromTwips(8655), free.width());
    EXPECT_LE(PixelsFromTwips(5295), free.height() - 5 * 85);
    EXPECT_GE(PixelsFromTwips(5295), 353);
}

TEST_F(LayoutTest, GrowsWithTheLettersOfTheSystem) {
    EXPECT_EQ(Window().Client()->size(), QSize(721, 441));
    EXPECT_EQ(Box()->size(), QSize(421, 24));
    EXPECT_EQ(Box()->fontInfo().pixelSize(), 13);
    for (const QAbstractButton* button : Window().Client()->findChildren<QAbstractButton*>())
        EXPECT_LE(button->fontMetrics().horizontalAdvance(button->text()), button->width());
    EXPECT_LE(Tabs()->mapTo(Window().Client(), QPoint(0, Tabs()->height())).y(),
              Window().picContent.Widget()->y());
    QWidget* log = Runner().Log().Widget();
    Runner().Show();
    log->window()->resize(501, 301);
    EXPECT_TRUE(QTest::qWaitFor([log] { return log->size() == QSize(501, 301); }));
}

} // namespace
