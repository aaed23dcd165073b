#include "WindowDriver.h"

#include <QAbstractButton>
#include <QMenu>
#include <QPointer>
#include <QWindow>

#include <algorithm>

namespace rivenfall {

namespace {

void Collect(const DataNodes& nodes, int level, Lines& lines) {
    for (const std::shared_ptr<DataNode>& node : nodes) {
        lines.push_back({level, node->Value(), node->Active(), node->Expanded()});
        if (node->Childs()) {
            Collect(*node->Childs(), level + 1, lines);
        }
    }
}

int LevelOf(const QModelIndex& row) {
    return row.parent().isValid() ? LevelOf(row.parent()) + 1 : 0;
}

/// The letter that chooses a menu or an entry.
Qt::Key Letter(const QAction* action) {
    return QKeySequence::mnemonic(action->text())[0].key();
}

/// The one of @p actions with this name, which may also be its letter; null if there is none.
QAction* Find(const QList<QAction*>& actions, const QString& name) {
    for (QAction* action : actions) {
        if (action->text().remove(u'&').compare(name, Qt::CaseInsensitive) == 0 ||
            (name.size() == 1 && Letter(action) == name[0].unicode())) {
            return action;
        }
    }
    return nullptr;
}

} // namespace

std::string Outline(const Lines& lines, Opening open, int selected) {
    QString text;
    QString brackets;
    for (size_t each = 0; each < lines.size(); ++each) {
        const Line& line = lines[each];
        for (; brackets.size() > line.Level; brackets.chop(1)) {
            text += brackets.back();
        }
        text += text.isEmpty() || QStringView(u"([").contains(text.back()) ? u""_s : u","_s;
        text += static_cast<int>(each) + 1 == selected ? u"*"_s : QString();
        text += (line.On ? QString() : u"!"_s) + (line.Value.isEmpty() ? u"~"_s : line.Value);
        if (each + 1 < lines.size() && lines[each + 1].Level > line.Level) {
            const bool round = !open || line.*open;
            text += round ? u'(' : u'[';
            brackets += round ? u')' : u']';
        }
    }
    std::reverse(brackets.begin(), brackets.end());
    return (text + brackets).toStdString();
}

void WindowTest::Act(const QString& script) {
    for (const QString& word : script.split(u' ', Qt::SkipEmptyParts)) {
        if (!GlobalApplication() || !Do(QString(word).replace(u'_', u' '))) {
            ADD_FAILURE() << "can't do \"" << word.toStdString() << "\" in the script \""
                          << script.toStdString() << "\"";
            return;
        }
    }
}

/// Does one word of a script; False if it can't be done.
bool WindowTest::Do(const QString& word) {
    static const QMap<QString, MessageBoxAnswer> answers = {{u"yes"_s, MessageBoxAnswer::Yes},
                                                            {u"no"_s, MessageBoxAnswer::No},
                                                            {u"stay"_s, MessageBoxAnswer::Cancel}};
    // Where a row can be clicked, in pixels from the left edge of its item.
    static const QMap<QString, int> spots = {{u"click"_s, 40}, {u"mark"_s, 8}, {u"branch"_s, -10}};
    TakeKeyboard();
    const QString verb = word.section(u':', 0, 0);
    const QString object = word.section(u':', 1);
    if (word == verb && answers.contains(verb)) {
        TheUser.Answers.push_back(answers[verb]);
    } else if (word != verb && verb == u"pick") {
        TheUser.Files.push_back(object.isEmpty() ? QString() : Path(object));
    } else if (word == u"close") {
        Window().Window()->close();
    } else if (word == verb || object.isEmpty()) {
        return word == verb && Press(verb, {});
    } else if (spots.contains(verb)) {
        return ClickRow(object, spots[verb]);
    } else if (verb == u"tab") {
        const QRect tab = Tabs()->tabRect(object.toInt() - 1);
        QTest::mouseClick(Tabs(), Qt::LeftButton, {}, tab.center());
        return tab.isValid();
    } else if (verb == u"type") {
        QTest::keyClicks(Box(), object);
    } else {
        return verb == u"file" || verb == u"help" ? Choose(verb, object) : Press(verb, object);
    }
    return true;
}

bool WindowTest::ClickRow(const QString& position, int right) {
    const QModelIndex row = Row(position.toInt());
    bool clickable = row.isValid() && (right > 0 || Tree()->model()->hasChildren(row));
    for (QModelIndex above = row.parent(); above.isValid(); above = above.parent()) {
        clickable = clickable && Tree()->isExpanded(above);
    }
    if (!clickable) {
        return false;
    }
    if (!Tree()->viewport()->rect().contains(Tree()->visualRect(row).center())) {
        Tree()->scrollTo(row);
    }
    const QRect item = Tree()->visualRect(row);
    QTest::mouseClick(Tree()->viewport(), Qt::LeftButton, {},
                      {item.left() + right, item.center().y()});
    return true;
}

bool WindowTest::Choose(const QString& menu, const QString& entry) {
    const QPointer<QMenuBar> bar = Window().Window()->menuBar();
    const QAction* opened = Find(bar->actions(), menu);
    const QAction* chosen = opened ? Find(opened->menu()->actions(), entry) : nullptr;
    if (!chosen) {
        return false;
    }
    QTest::keyClick(Window().Window(), Letter(opened), Qt::AltModifier);
    if (QApplication::activePopupWidget() != opened->menu()) {
        return false;
    }
    QTest::keyClick(opened->menu(), Letter(chosen));
    while (QWidget* popup = QApplication::activePopupWidget()) {
        QTest::keyClick(popup, Qt::Key_Escape);
    }
    if (bar && bar->activeAction()) {
        QTest::keyClick(bar, Qt::Key_Escape);
    }
    return true;
}

/// Clicks on the control with the name @p control, or presses @p keys while it has the keyboard.
bool WindowTest::Press(const QString& control, const QString& keys) {
    const QList<QWidget*> widgets = Window().Client()->findChildren<QWidget*>();
    const auto widget = std::find_if(widgets.begin(), widgets.end(), [&](const QWidget* each) {
        return each->accessibleName() == control;
    });
    const QKeySequence sequence(keys);
    const bool understood = sequence.count() == 1 && sequence[0].key() != Qt::Key_unknown;
    if (control.isEmpty() || widget == widgets.end() || !(keys.isEmpty() || understood)) {
        return false;
    }
    if (keys.isEmpty()) {
        QTest::mouseClick(*widget, Qt::LeftButton);
    } else {
        QTest::keyClick(*widget, sequence[0].key(), sequence[0].keyboardModifiers());
    }
    // A button that is pressed by its letter stays down for a moment.
    for (const QAbstractButton* each : Window().Client()->findChildren<QAbstractButton*>()) {
        EXPECT_TRUE(WaitFor([&] { return !each->isDown(); }));
    }
    return true;
}

/// Without a screen there is no window manager to take it back from a menu or another window.
void WindowTest::TakeKeyboard() {
    QWindow* window = Window().Window()->windowHandle();
    if (QGuiApplication::focusWindow() == window) {
        return;
    }
    window->requestActivate();
    QCoreApplication::processEvents();
    EXPECT_EQ(QGuiApplication::focusWindow(), window);
}

void WindowTest::Open(const char* compilers, const char* variables, const char* script) {
    ASSERT_NE(GlobalApplication(), nullptr) << "the program has ended";
    const QString path = StoreBytes(Path(u"document.tvq"_s),
                                    DocumentImage(Sketches(compilers), Sketches(variables)));
    TheUser.Answers = {MessageBoxAnswer::No};
    ASSERT_TRUE(Program().FileOpen(path));
    Forget();
    Act(script);
}

void WindowTest::Forget() {
    TheUser.Asked.clear();
    TheUser.Answers.clear();
    TheUser.Files.clear();
    TheUser.Dialogs.clear();
}

QModelIndexList WindowTest::Rows(const QModelIndex& parent) {
    QModelIndexList rows;
    for (int row = 0; row < Tree()->model()->rowCount(parent); ++row) {
        rows += Tree()->model()->index(row, 0, parent);
        rows += Rows(rows.back());
    }
    return rows;
}

Lines WindowTest::LinesOnView() {
    Lines lines;
    for (const QModelIndex& row : Rows({})) {
        const QString text = row.data().toString();
        // An empty value is shown as blanks that can be clicked.
        lines.push_back({LevelOf(row), text == QString(64, u' ') ? QString() : text,
                         row.data(Qt::CheckStateRole) == Qt::Checked, Tree()->isExpanded(row)});
    }
    return lines;
}

Lines WindowTest::LinesStored(int content) {
    Lines lines;
    Collect(*(content == 1 ? Program().Compilers() : Program().Variables()), 0, lines);
    return lines;
}

std::string WindowTest::Shown() {
    QCoreApplication::processEvents();
    const auto selected = static_cast<int>(Rows({}).indexOf(Tree()->currentIndex())) + 1;
    return Outline(LinesOnView(), &Line::Open, selected);
}

std::string WindowTest::Stored(int content) {
    return Outline(LinesStored(content), &Line::Open);
}

std::string WindowTest::Enabled() {
    frmMain& form = Window();
    const std::pair<QString, const Control*> controls[] = {
        {u"New"_s, &form.cmdNew},   {u"Remove"_s, &form.cmdRemove},
        {u"Move"_s, &form.udnMove}, {u"Value"_s, &form.txtValue},
        {u"Ok"_s, &form.cmdOK},     {u"Cancel"_s, &form.cmdCancel}};
    QStringList enabled;
    for (const auto& [name, control] : controls) {
        if (control->Enabled()) {
            enabled += name;
        }
    }
    if (!form.tabContent.Enabled()) {
        enabled += u"(no document)"_s;
    }
    return enabled.join(u' ').toStdString();
}

bool WindowTest::Changed() {
    Forget();
    EXPECT_FALSE(Program().FileOpen());
    const bool asked = !TheUser.Asked.empty();
    EXPECT_NE(asked, !TheUser.Dialogs.empty());
    Forget();
    return asked;
}

bool WindowTest::Holds(const QString& name, const char* compilers, const char* variables) {
    return BytesOf(Path(name)) == DocumentImage(Sketches(compilers), Sketches(variables));
}

void WindowTest::ExpectTheWindowAgrees() {
    QCoreApplication::processEvents();
    frmMain& form = Window();
    EXPECT_EQ(Tabs()->currentIndex() + 1, Program().ContentActive());
    EXPECT_EQ(Outline(LinesOnView(), nullptr),
              Outline(LinesStored(Program().ContentActive()), nullptr));
    const QModelIndex current = Tree()->currentIndex();
    EXPECT_EQ(Tree()->selectionModel()->selectedRows(),
              current.isValid() ? QModelIndexList{current} : QModelIndexList{});
    for (const bool enabled : {form.tvwContent.Enabled(), form.mnuFileSave.Enabled(),
                               form.mnuFileSaveAs.Enabled(), form.mnuFileRun.Enabled()}) {
        EXPECT_EQ(enabled, form.tabContent.Enabled());
    }
    for (const Menu* always : {&form.mnuFileNew, &form.mnuFileOpen, &form.mnuFileShowOutput,
                               &form.mnuFileExit, &form.mnuHelpInfo}) {
        EXPECT_TRUE(always->Enabled());
    }
}

void WindowTest::Expect(const Case& expected) {
    for (const char* script : expected.Acts) {
        Act(script);
    }
    ASSERT_NE(GlobalApplication(), nullptr) << "the program has ended";
    ExpectTheWindowAgrees();
    EXPECT_EQ(Shown(), expected.Tree);
    EXPECT_EQ(Enabled(), expected.Enabled);
    EXPECT_EQ(Box()->text().toStdString(), expected.Box);
    EXPECT_TRUE(TheUser.Answers.empty() && TheUser.Files.empty()) << "an answer that nobody took";
    EXPECT_EQ(Changed(), expected.Changed);
}

void WindowTest::ExpectEach(const std::function<void()>& open, const std::vector<Case>& cases) {
    for (Case each : cases) {
        const std::vector<const char*> scripts = std::exchange(each.Acts, {});
        EXPECT_FALSE(scripts.empty()) << "a case that tells nothing to do";
        for (const char* script : scripts) {
            SCOPED_TRACE(script);
            open();
            Act(script);
            Expect(each);
        }
    }
}

} // namespace rivenfall
