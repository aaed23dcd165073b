#pragma once

#include "Harness.h"

#include <QApplication>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QTabBar>
#include <QTabWidget>
#include <QTreeView>

#include <string>

namespace rivenfall {

/// A node as a line of an outline.
struct Line {
    int Level = 0;
    QString Value;
    bool On = true;
    bool Open = true;  ///< The document has the branch open.
    bool Shown = true; ///< The window has the branch open.
};
using Lines = std::vector<Line>;

/// @p lines in one text: nodes with commas between them, what is below a node in round brackets,
/// or in square ones where @p open is False; "!" before a node that is switched off, "*" before
/// the one at the position @p selected, "~" for an empty value.
std::string Outline(const Lines& lines, bool Line::*open, int selected = 0);

/// A program whose main window is worked by mouse and keyboard, and read as it shows itself.
class WindowTest : public ProgramTest {
protected:
    WindowTest() { TakeKeyboard(); }

    QTreeView* Tree() { return static_cast<QTreeView*>(Window().tvwContent.Widget()); }
    QLineEdit* Box() { return static_cast<QLineEdit*>(Window().txtValue.Widget()); }
    QTabBar* Tabs() { return static_cast<QTabWidget*>(Window().tabContent.Widget())->tabBar(); }

    std::string Caption() { return Window().Caption().toStdString(); }

    /// The row at @p position, counted from 1 over all levels.
    QModelIndex Row(int position) { return Rows({})[position - 1]; }

    /// Does what the words of @p script tell, one after the other; "_" stands for a blank:
    /// - "click:3", "mark:3", "branch:3": a click on a row's label, check box or expander
    /// - "tab:2": a click on a tab
    /// - "Ok", "Document:Ctrl+A": a click on what has this name, or a key while it has it
    /// - "type:x": keys for the value box
    /// - "file:S", "help:I": a menu and its entry by their letters
    /// - "yes", "no", "stay", "pick:a": the user's next answer, and the next file, "pick:" for none
    void Act(const QString& script);
    void Act(const char* script) { Act(QString::fromUtf8(script)); }

    /// Opens a document in the file document.tvq, told by outlines, then acts by @p script.
    void Open(const char* compilers, const char* variables = "FILE1(~)", const char* script = "");

    /// The outline of the tree as the window shows it. The document must agree with it.
    std::string Shown();
    /// The outline of the collection @p content as the document has it.
    std::string Stored(int content);
    /// The enabled ones of New, Remove, Move, Value, Ok and Cancel, with "-" in the place of a
    /// disabled one; and " none" while no command for a document is enabled either.
    std::string State();
    /// True if the program would ask before it gives the document up. Forgets what the user was
    /// asked.
    bool Changed();
    /// What is shown, the state, the text of the value box and " changed" in one line.
    std::string Look();
    /// Acts, and then it must look as @p look tells.
    void Expect(const char* script, const std::string& look);
    /// Does that for each of @p cases, "SCRIPT => LOOK" or "SCRIPT | SCRIPT => LOOK" with line
    /// breaks between them, always with a new document.
    void ExpectEach(const char* compilers, const char* variables, const char* start,
                    const char* cases);
    /// True if the file @p name holds exactly this document.
    bool Holds(const QString& name, const char* compilers, const char* variables);

private:
    QModelIndexList Rows(const QModelIndex& parent);
    void ClickRow(int position, int right);
    void Choose(Qt::Key menu, Qt::Key entry);
    void TakeKeyboard();
    void Forget();
};

} // namespace rivenfall
