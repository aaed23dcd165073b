#pragma once

#include "controls/Control.h"

namespace rivenfall {

class TabStrip;

/// One tab of a strip; a value that speaks of the tab at its position.
class Tab {
public:
    /// The tab at the position @p index, counted from 1.
    explicit Tab(int index) : plngIndex(index) {}

    /// The tab's position from 1.
    int Index() const { return plngIndex; }

private:
    int plngIndex;
};

/// The tabs of a strip in order, numbered from 1.
class Tabs {
public:
    /// Adds a tab at the end. The first tab of an empty strip becomes the selected one.
    void Add(const QString& caption);

    /// Takes all tabs away. None is selected then.
    void Clear();

private:
    friend class TabStrip;
    explicit Tabs(TabStrip& strip) : pobjStrip(strip) {}

    TabStrip& pobjStrip;
};

/// A row of tabs over an empty page.
class TabStrip : public Control {
    Q_OBJECT

public:
    /// Makes the strip in @p container, which shares its ownership as Control tells.
    explicit TabStrip(QWidget* container);

    /// The tabs of the strip. Owned by it.
    rivenfall::Tabs& Tabs();

    /// The selected tab; its Index is 0 while the strip is empty.
    Tab SelectedItem() const;

Q_SIGNALS:
    /// Another tab has become the selected one, by the user or by code, also the first tab of a
    /// strip that was empty.
    void Click();

private:
    rivenfall::Tabs pobjTabs;
};

} // namespace rivenfall
