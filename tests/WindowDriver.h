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

/// The nodes as they would be written.
std::vector<Sketch> SketchOf(const DataNodes* nodes);

/// The outline that tells @p nodes, with "*" before the one at the position @p selected.
std::string Outline(const std::vector<Sketch>& nodes, int selected = 0);

/// How the program shows itself. A field that a case doesn't name is expected to be empty or False.
struct Case {
    std::string Tree = {};    ///< The outline of the tree on view.
    std::string Enabled = {}; ///< What can be used, as WindowTest::Enabled tells it.
    std::string Box = {};     ///< The text in the value box.
    bool Changed = false;     ///< The document can't be left without a question.
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

    // The user's verbs, which fail the test where they can't be done. The first name what has an
    // accessible name, and a menu and its entry by their texts without "&".
    void Click(const char* control);
    void Menu(const char* menu, const char* entry);
    void Tab(int position);
    void ClickRow(int position) { ClickRow(position, 40); } ///< A click on the label.
    void Mark(int position) { ClickRow(position, 8); }      ///< A click on the check box.
    void Branch(int position) { ClickRow(position, -10); }  ///< A click on the expander.
    /// A key for @p in, which gets the keyboard, or for what has it already.
    void Press(QKeyCombination key, QWidget* in = nullptr);
    /// Keys for the value box.
    void Type(const char* keys);
    /// A click on the window's close button.
    void Close() { Window().Window()->close(); }
    /// The next answer to a message box.
    using enum MessageBoxAnswer;
    void Answer(MessageBoxAnswer answer) { TheUser.Answers.push_back(answer); }
    /// The next file in a file dialog, which is cancelled without one.
    void PickFile(const char* name) { TheUser.Files.push_back(*name ? Path(name) : QString()); }

    /// Opens a document in the file document.tvq, told by outlines.
    void Open(const std::string& compilers, const std::string& variables = "FILE1(~)");

    /// Reads the outline of the collection @p content as the document has it.
    std::string Stored(int content);
    /// Reads which of New, Remove, Move, Value, Ok and Cancel are enabled.
    std::string Enabled();
    /// Tries whether the program would ask before it gives the document up, and stays. Forgets
    /// what the user was asked.
    bool Changed();
    /// True if the file @p name holds exactly this document.
    bool Holds(const QString& name, const char* compilers, const char* variables);

    /// Expects what holds at any time: the tree on view shows the nodes of the document, its
    /// current row alone is selected, and the menus offer what fits.
    void ExpectTheWindowAgrees();
    /// Expects @p expected, and that the user was asked for all that they were to answer.
    void Expect(const Case& expected);

private:
    QWidget* Named(const char* control);
    void ClickRow(int position, int right);
    QModelIndexList Rows(const QModelIndex& parent);
    std::vector<Sketch> SketchOnView(const QModelIndex& parent = {});
    void TakeKeyboard();
    void Forget();
};

} // namespace rivenfall
