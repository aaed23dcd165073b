#include "WindowDriver.h"

#include <QMenu>
#include <QPointer>
#include <QWindow>

#include <stdexcept>

namespace rivenfall {

namespace {

/// Writes the outline of @p nodes, and counts @p selected down to the node that is marked.
QString Write(const std::vector<Sketch>& nodes, int& selected) {
    QStringList texts;
    for (const Sketch& node : nodes) {
        QString text = --selected == 0 ? u"*"_s : QString();
        text += (node.Active ? QString() : u"!"_s) + (node.Value.isEmpty() ? u"~"_s : node.Value);
        texts += node.Below.empty() ? text : text + u'(' + Write(node.Below, selected) + u')';
    }
    return texts.join(u',');
}

/// The one of @p actions with the text @p name.
QAction* Find(const QList<QAction*>& actions, const char* name) {
    for (QAction* action : actions) {
        if (action->text().remove(u'&') == QLatin1StringView(name)) {
            return action;
        }
    }
    throw std::invalid_argument(name);
}

/// Presses the letter that chooses @p action.
void PressLetter(QWidget* in, const QAction* action, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(in, QKeySequence::mnemonic(action->text())[0].key(), modifiers);
}

} // namespace

std::vector<Sketch> SketchOf(const DataNodes* nodes) {
    std::vector<Sketch> sketches;
    for (int index = 1; nodes && index <= nodes->Count(); ++index) {
        const auto node = nodes->Item(index);
        sketches.emplace_back(node->Value(), SketchOf(node->Childs()));
        sketches.back().Active = node->Active();
    }
    return sketches;
}

std::string Outline(const std::vector<Sketch>& nodes, int selected) {
    return Write(nodes, selected).toStdString();
}

QWidget* WindowTest::Named(const char* control) {
    for (QWidget* widget : Window().Client()->findChildren<QWidget*>()) {
        if (widget->accessibleName() == QLatin1StringView(control)) {
            return widget;
        }
    }
    throw std::invalid_argument(control);
}

void WindowTest::Click(const char* control) {
    QTest::mouseClick(Named(control), Qt::LeftButton);
}

void WindowTest::Menu(const char* menu, const char* entry) {
    TakeKeyboard();
    const QPointer<QMenuBar> bar = Window().Window()->menuBar();
    const QAction* opened = Find(bar->actions(), menu);
    const QAction* chosen = Find(opened->menu()->actions(), entry);
    PressLetter(Window().Window(), opened, Qt::AltModifier);
    ASSERT_EQ(QApplication::activePopupWidget(), opened->menu());
    PressLetter(opened->menu(), chosen);
    while (QWidget* popup = QApplication::activePopupWidget()) {
        QTest::keyClick(popup, Qt::Key_Escape);
    }
    if (bar && bar->activeAction()) {
        QTest::keyClick(bar, Qt::Key_Escape);
    }
}

void WindowTest::Tab(int position) {
    const QRect tab = Tabs()->tabRect(position - 1);
    ASSERT_TRUE(tab.isValid());
    QTest::mouseClick(Tabs(), Qt::LeftButton, {}, tab.center());
}

void WindowTest::ClickRow(int position, int right) {
    const QModelIndex row = Row(position);
    ASSERT_TRUE(row.isValid() && (right > 0 || Tree()->model()->hasChildren(row)));
    ASSERT_FALSE(Tree()->visualRect(row).isEmpty()) << "a closed branch hides the row";
    const QRect item = Tree()->visualRect(row);
    QTest::mouseClick(Tree()->viewport(), Qt::LeftButton, {},
                      {item.left() + right, item.center().y()});
}

void WindowTest::Press(QKeyCombination key, QWidget* in) {
    TakeKeyboard();
    if (in) {
        in->setFocus();
    }
    QWidget* keyboard = QApplication::focusWidget();
    QTest::keyClick(keyboard ? keyboard : Window().Window(), key.key(), key.keyboardModifiers());
}

void WindowTest::Type(const char* keys) {
    QTest::keyClicks(Box(), QString::fromUtf8(keys));
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

void WindowTest::Open(const std::string& compilers, const std::string& variables) {
    const QString path =
        StoreBytes(Path(u"document.tvq"_s),
                   DocumentImage(Sketches(compilers.c_str()), Sketches(variables.c_str())));
    TheUser.Answers = {MessageBoxAnswer::No};
    ASSERT_TRUE(Program().FileOpen(path));
    Forget();
}

void WindowTest::Forget() {
    TheUser = {};
}

QModelIndexList WindowTest::Rows(const QModelIndex& parent) {
    QModelIndexList rows;
    for (int row = 0; row < Tree()->model()->rowCount(parent); ++row) {
        rows += Tree()->model()->index(row, 0, parent);
        rows += Rows(rows.back());
    }
    return rows;
}

std::vector<Sketch> WindowTest::SketchOnView(const QModelIndex& parent) {
    std::vector<Sketch> sketches;
    for (int each = 0; each < Tree()->model()->rowCount(parent); ++each) {
        const QModelIndex row = Tree()->model()->index(each, 0, parent);
        const QString text = row.data().toString();
        // An empty value is shown as blanks that can be clicked.
        sketches.emplace_back(text == QString(64, u' ') ? QString() : text, SketchOnView(row));
        sketches.back().Active = row.data(Qt::CheckStateRole) == Qt::Checked;
    }
    return sketches;
}

std::string WindowTest::Stored(int content) {
    return Outline(SketchOf(content == 1 ? Program().Compilers() : Program().Variables()));
}

std::string WindowTest::Enabled() {
    QStringList enabled;
    for (const char* control : {"New", "Remove", "Move", "Value", "Ok", "Cancel"}) {
        if (Named(control)->isEnabled()) {
            enabled += QString::fromLatin1(control);
        }
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
    EXPECT_EQ(Outline(SketchOnView()), Stored(Program().ContentActive()));
    const QModelIndex current = Tree()->currentIndex();
    EXPECT_EQ(Tree()->selectionModel()->selectedRows(),
              current.isValid() ? QModelIndexList{current} : QModelIndexList{});
    for (const bool enabled : {form.tvwContent.Enabled(), form.mnuFileSave.Enabled(),
                               form.mnuFileSaveAs.Enabled(), form.mnuFileRun.Enabled()}) {
        EXPECT_EQ(enabled, form.tabContent.Enabled());
    }
}

void WindowTest::Expect(const Case& expected) {
    ExpectTheWindowAgrees();
    const auto selected = static_cast<int>(Rows({}).indexOf(Tree()->currentIndex())) + 1;
    EXPECT_EQ(Outline(SketchOnView(), selected), expected.Tree);
    EXPECT_EQ(Enabled(), expected.Enabled);
    EXPECT_EQ(Box()->text().toStdString(), expected.Box);
    EXPECT_TRUE(TheUser.Answers.empty() && TheUser.Files.empty()) << "an answer that nobody took";
    EXPECT_EQ(Changed(), expected.Changed);
}

} // namespace rivenfall
