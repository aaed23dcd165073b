#include "controls/TabStrip.h"

#include <QTabWidget>

namespace rivenfall {

namespace {

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
        QWidget* page = widget->widget(widget->count() - 1);
        widget->removeTab(widget->count() - 1);
        delete page;
    }
}

TabStrip::TabStrip(QWidget* container) : Control(new QTabWidget(container)), pobjTabs(*this) {
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
