#pragma once

#include <QAction>

namespace rivenfall {

class Form;

/// One entry of a form's menu bar, or of a menu in it.
class Menu : public QObject {
    Q_OBJECT

public:
    /// A menu at the end of @p form's menu bar. An ampersand in @p caption marks the letter that
    /// opens it together with Alt. The form must outlive it.
    Menu(Form& form, const QString& caption);

    /// An entry at the end of the menu @p parent, which must outlive it: a separator for the
    /// caption "-", else a command, with @p shortcut ("F1") if it isn't empty.
    Menu(Menu& parent, const QString& caption, const QString& shortcut = {});

    /// True while the entry can be chosen.
    bool Enabled() const;
    void SetEnabled(bool enabled);

Q_SIGNALS:
    /// The user chose the entry.
    void Click();

private:
    QAction* pobjAction;
};

} // namespace rivenfall
