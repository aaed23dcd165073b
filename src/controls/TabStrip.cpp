#include "controls/TabStrip.h"

#include "controls/Twips.h"

#include <QTabBar>
#include <QTabWidget>
#include <QWheelEvent>

#include <algorithm>

namespace rivenfall {

namespace {

/// Where the page begins, in twips below the strip's top. What covers the page begins there too.
constexpr int TabHeight = 360;

/// Tabs that leave the page its place, however high the style would have them, and that only a
/// click or a key changes.
class Bar : public QTabBar {
public:
    using QTabBar::QTabBar;

protected:
    QSize tabSizeHint(int index) const override { return Bounded(QTabBar::tabSizeHint(index)); }

    QSize minimumTabSizeHint(int index) const override {
        return Bounded(QTabBar::minimumTabSizeHint(index));
    }

    void wheelEvent(QWheelEvent* event) override { event->ignore(); }

private:
    static QSize Bounded(QSize size) {
        return {size.width(), std::min(size.height(), PixelsFromTwips(TabHeight))};
    }
};

/// The widget behind a TabStrip.
class Strip : public QTabWidget {
public:
    explicit Strip(QWidget* parent) : QTabWidget(parent) { setTabBar(new Bar(this)); }
};

QTabWidget* WidgetOf(const TabStrip& strip) {
    return static_cast<QTabWidget*>(strip.Widget());
}

} // namespace

void Tabs::Add(const QString& caption) {
    WidgetOf(pobjStrip)->addTab(new QWidget, caption);
}

void Tabs::Clear() {
    QTabWidget* widget = WidgetOf(pobjStrip);
    while (widget->count() > 0) {
        delete widget->widget(widget->count() - 1);
    }
}

TabStrip::TabStrip(QWidget* container) : Control(new Strip(container)), pobjTabs(*this) {
    connect(WidgetOf(*this), &QTabWidget::currentChanged, this, [this](int position) {
        if (position >= 0) {
            Q_EMIT Click();
        }
    });
}

rivenfall::Tabs& TabStrip::Tabs() {
    return pobjTabs;
}

Tab TabStrip::SelectedItem() const {
    return Tab(WidgetOf(*this)->currentIndex() + 1);
}

} // namespace rivenfall
