#include "controls/Menu.h"

#include "controls/Form.h"

#include <QKeySequence>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

namespace rivenfall {

Menu::Menu(Form& form, const QString& caption)
    : pobjAction(form.Window()->menuBar()->addMenu(caption)->menuAction()) {}

Menu::Menu(Menu& parent, const QString& caption, const QString& shortcut)
    : pobjAction(caption == u"-" ? parent.pobjAction->menu()->addSeparator()
                                 : parent.pobjAction->menu()->addAction(caption)) {
    pobjAction->setShortcut(QKeySequence(shortcut));
    pobjAction->setShortcutContext(Qt::ApplicationShortcut);
    connect(pobjAction, &QAction::triggered, this, &Menu::Click);
}

bool Menu::Enabled() const {
    return pobjAction->isEnabled();
}

void Menu::SetEnabled(bool enabled) {
    pobjAction->setEnabled(enabled);
}

} // namespace rivenfall
