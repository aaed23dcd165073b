#pragma once

#include "Harness.h"

#include <QApplication>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QPointer>
#include <QTabBar>
#include <QTabWidget>
#include <QToolButton>
#include <QTreeView>

#include <string>

namespace rivenfall {

/// The nodes that @p outline tells, which is taken up to the end of its level: nodes with commas
/// between them, what is below a node in round brackets, "!" before a node that is switched off,
/// "~" for an empty value.
std::vector<Sketch> Sketches(QStringView& outline);
std::vector<Sketch> Sketches(const char* outline);

/// A program whose main window is worked by mouse and keyboard, and read as it shows itself.
class WindowTest : public ProgramTest {
protected:
    WindowTest() { EXPECT_TRUE(QTest::qWaitForWindowActive(Window().Window())); }

    QTreeView* Tree() { return static_cast<QTreeView*>(Window().tvwContent.Widget()); }
    QLineEdit* Box() { return static_cast<QLineEdit*>(Window().txtValue.Widget()); }
    QTabBar* Tabs() { return static_cast<QTabWidget*>(Window().tabContent.Widget())->tabBar(); }
    std::string Caption() { return Window().Caption().toStdString(); }

    /// The row at @p position, counted from 1 over all levels.
    QModelIndex Row(int position) const;

    /// Does what the words of @p script tell, one after the other:
    /// "click:3", "mark:3", "branch:3"  a click on the label, the check box or the expander of a
    /// row "tab:2"                          a click on a tab "new", "remove", "ok", "cancel"  a
    /// click on the button, and "up", "down" on the move buttons "tree:Ctrl+A"                    a
    /// key while "tree", "box", "tabs", "move", "window" or a
    ///                                  button has it
    /// "type:x"                         keys for the value box, "_" for a blank
    /// "file:S", "help:I"               a menu and its entry by their letters
    /// "yes", "no", "stay", "pick:a"    how the user will answer, and the file to choose ("pick:" for none)
    void Act(const QString& script);
    void Act(const char* script) { Act(QString::fromUtf8(script)); }

    /// Opens a document in the file document.tvq, told by outlines, then acts by @p script.
    void Open(const char* compilers, const char* variables = "FILE1(~)", const char* script = "");

    /// The tree as the window shows it: an outline with "*" before the selected node and with
    /// closed branches in square brackets. The document must agree with it.
    std::string Shown();

    /// The outline of a collection of the document, with square brackets as above.
    static std::string Stored(const DataNodes* collection);

    /// The enabled ones of New, Remove, Move, Value, Ok and Cancel, with "-" in the place of a
    /// disabled one; and " none" while no command for a document is enabled either.
    std::string State();

    /// True if the program would ask before it gives the document up. Changes nothing.
    bool Changed();

    /// All of that in one line, with the text of the value box.
    std::string Look();

private:
    QString ShownBelow(const QModelIndex& parent);
    /// Without a screen there is no window manager to give it back from a menu or another window.
    void TakeKeyboard();
    QWidget* Named(const QString& name);
    void PressKey(QWidget* widget, QKeyCombination key);
    void ClickRow(int position, int right);
    void Choose(Qt::Key menu, Qt::Key entry);
    void Forget();
};

} // namespace rivenfall
