#pragma once

#include "Harness.h"

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QTabBar>
#include <QTabWidget>
#include <QTreeView>

#include <string>
#include <vector>

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

/// Which of a line's two truths about its branch is meant.
using Opening = bool Line::*;

/// @p lines in one text: nodes with commas between them, what is below a node in round brackets,
/// or in square ones where @p open is False; "!" before a node that is switched off, "*" before
/// the one at the position @p selected, "~" for an empty value. Without @p open all brackets are
/// round.
std::string Outline(const Lines& lines, Opening open, int selected = 0);

/// What the user does, and how the program shows itself then. A field that a case doesn't name is
/// expected to be empty or False.
struct Case {
    std::vector<const char*> Acts = {}; ///< Scripts for WindowTest::Act.
    std::string Tree = {};              ///< The tree on view, as WindowTest::Shown tells it.
    std::string Enabled = {};           ///< What can be used, as WindowTest::Enabled tells it.
    std::string Box = {};               ///< The text in the value box.
    bool Changed = false;               ///< The document can't be left without a question.
};

/// A program whose main window is worked by mouse and keyboard, and read as it shows itself.
class WindowTest : public ProgramTest {
protected:
    WindowTest() { TakeKeyboard(); }

    QTreeView* Tree() { return static_cast<QTreeView*>(Window().tvwContent.Widget()); }
    QLineEdit* Box() { return static_cast<QLineEdit*>(Window().txtValue.Widget()); }
    QTabBar* Tabs() { return static_cast<QTabWidget*>(Window().tabContent.Widget())->tabBar(); }

    /// The row at @p position, counted from 1 over all levels; none where there is no such row.
    QModelIndex Row(int position) { return Rows({}).value(position - 1); }

    /// Does what the words of @p script tell, one after the other; "_" stands for a blank:
    /// - "click:3", "mark:3", "branch:3": a click on a row's label, check box or expander
    /// - "tab:2": a click on a tab
    /// - "Ok", "Document:Ctrl+A": a click on what has this name, or a key while it has it
    /// - "type:x": keys for the value box
    /// - "file:Save", "help:I": a menu and its entry, by the entry's name or letter
    /// - "close": a click on the window's close button
    /// - "yes", "no", "stay", "pick:a": the user's next answer, and the next file, "pick:" for none
    ///
    /// A word that can't be done fails the test, and the script ends there.
    void Act(const QString& script);
    void Act(const char* script) { Act(QString::fromUtf8(script)); }

    /// Opens a document in the file document.tvq, told by outlines, then acts by @p script.
    void Open(const char* compilers, const char* variables = "FILE1(~)", const char* script = "");

    /// Reads the outline of the tree as the window shows it.
    std::string Shown();
    /// Reads the outline of the collection @p content as the document has it.
    std::string Stored(int content);
    /// Reads which of New, Remove, Move, Value, Ok and Cancel are enabled, and adds "(no document)"
    /// where nothing that needs a document is.
    std::string Enabled();
    /// Tries whether the program would ask before it gives the document up, and stays. Forgets
    /// what the user was asked.
    bool Changed();
    /// True if the file @p name holds exactly this document.
    bool Holds(const QString& name, const char* compilers, const char* variables);

    /// Expects what holds at any time: the tree on view shows the nodes of the document, its
    /// current row alone is selected, and the menus offer what fits.
    void ExpectTheWindowAgrees();
    /// Expects @p expected once all of its scripts were done, one after the other.
    void Expect(const Case& expected);
    /// Expects each of @p cases after each of its scripts, with a document that @p open opens anew.
    void ExpectEach(const std::function<void()>& open, const std::vector<Case>& cases);

private:
    bool Do(const QString& word);
    bool ClickRow(const QString& position, int right);
    bool Choose(const QString& menu, const QString& entry);
    bool Press(const QString& control, const QString& keys);
    QModelIndexList Rows(const QModelIndex& parent);
    Lines LinesOnView();
    Lines LinesStored(int content);
    void TakeKeyboard();
    void Forget();
};

} // namespace rivenfall
