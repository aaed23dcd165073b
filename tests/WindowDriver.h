#pragma once

#include "Harness.h"

#include <QApplication>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QPointer>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QToolButton>
#include <QTreeView>

#include <array>
#include <string>

namespace rivenfall {

/// The nodes that @p outline tells, which is taken up to the end of its level: nodes with commas
/// between them, what is below a node in round brackets, "!" before a node that is switched off,
/// "~" for an empty value.
inline std::vector<Sketch> Sketches(QStringView& outline) {
    std::vector<Sketch> nodes;
    while (!outline.isEmpty() && outline.front() != u')') {
        outline = outline.sliced(outline.front() == u',' ? 1 : 0);
        const bool off = outline.startsWith(u'!');
        outline = outline.sliced(off ? 1 : 0);
        qsizetype end = 0;
        while (end < outline.size() && !QStringView(u"(),").contains(outline[end]))
            ++end;
        const QString value = outline.first(end).toString();
        Sketch node(value == u"~" ? QString() : value);
        node.Active = !off;
        outline = outline.sliced(end);
        if (outline.startsWith(u'(')) {
            outline = outline.sliced(1);
            node.Below = Sketches(outline);
            outline = outline.sliced(1);
        }
        nodes.push_back(node);
    }
    return nodes;
}

inline std::vector<Sketch> Sketches(const char* outline) {
    const QString text = QString::fromUtf8(outline);
    QStringView rest = text;
    return Sketches(rest);
}

/// A program whose main window is worked by mouse and keyboard, and read as it shows itself.
class WindowTest : public ProgramTest {
protected:
    WindowTest() { EXPECT_TRUE(QTest::qWaitForWindowActive(Window().Window())); }

    QTreeView* Tree() { return static_cast<QTreeView*>(Window().tvwContent.Widget()); }
    QLineEdit* Box() { return static_cast<QLineEdit*>(Window().txtValue.Widget()); }
    QTabBar* Tabs() { return static_cast<QTabWidget*>(Window().tabContent.Widget())->tabBar(); }
    std::string Value() { return Box()->text().toStdString(); }
    std::string Caption() { return Window().Caption().toStdString(); }

    /// The row at @p position, counted from 1 over all levels.
    QModelIndex Row(int position) {
        const QAbstractItemModel* model = Tree()->model();
        const auto find = [&](const QModelIndex& parent, const auto& self) -> QModelIndex {
            for (int row = 0; row < model->rowCount(parent); ++row) {
                const QModelIndex index = model->index(row, 0, parent);
                if (--position == 0)
                    return index;
                if (const QModelIndex below = self(index, self); below.isValid())
                    return below;
            }
            return {};
        };
        return find({}, find);
    }

    /// Where the mouse goes in a row.
    enum Spot { Label = 40, Mark = 8, Expander = -10 };
    void Click(int position, Spot spot = Label) {
        QRect row = Tree()->visualRect(Row(position));
        if (!Tree()->viewport()->rect().contains(row.center())) {
            Tree()->scrollTo(Row(position));
            row = Tree()->visualRect(Row(position));
        }
        QTest::mouseClick(Tree()->viewport(), Qt::LeftButton, {},
                          {row.left() + spot, row.center().y()});
    }
    void Press(Control& button) { QTest::mouseClick(button.Widget(), Qt::LeftButton); }
    void PressMove(bool down) {
        QTest::mouseClick(Window().udnMove.Widget()->findChildren<QToolButton*>().at(down),
                          Qt::LeftButton);
    }
    void ClickTab(int tab) {
        QTest::mouseClick(Tabs(), Qt::LeftButton, {}, Tabs()->tabRect(tab - 1).center());
    }
    void Key(QWidget* widget, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(widget, key, modifiers);
    }

    /// Opens a menu with Alt and its letter and chooses an entry by its letter.
    void Choose(Qt::Key menu, Qt::Key entry) {
        QPointer<QMenuBar> bar = Window().Window()->menuBar();
        Key(Window().Window(), menu, Qt::AltModifier);
        ASSERT_NE(QApplication::activePopupWidget(), nullptr);
        Key(QApplication::activePopupWidget(), entry);
        while (QWidget* popup = QApplication::activePopupWidget())
            Key(popup, Qt::Key_Escape);
        if (bar && bar->activeAction())
            Key(bar, Qt::Key_Escape);
    }
    void ChooseFile(Qt::Key entry) { Choose(Qt::Key_F, entry); }

    /// Opens a document of its own file, told by outlines.
    void Open(const char* compilers, const char* variables = "FILE1(~)") {
        StoreBytes(Path(u"document.tvq"_qs),
                   DocumentImage(Sketches(compilers), Sketches(variables)));
        TheUser.Answers = {MessageBoxNo};
        ASSERT_TRUE(Program().FileOpen(Path(u"document.tvq"_qs)));
        Forget();
    }

    /// Forgets what the user was asked and would have answered.
    void Forget() {
        TheUser.Asked.clear();
        TheUser.Answers.clear();
        TheUser.Files.clear();
        TheUser.Dialogs.clear();
    }

    /// The tree as the window shows it: an outline with "*" before the selected node and with
    /// closed branches in square brackets.
    std::string Shown() {
        QCoreApplication::processEvents();
        return ShownBelow({}).toStdString();
    }

    /// The outline of a collection of the document, with square brackets as above.
    static std::string Stored(const DataNodes* collection) {
        std::string outline;
        for (const std::shared_ptr<DataNode>& node : *collection) {
            outline += (outline.empty() ? "" : ",") + std::string(node->Active() ? "" : "!");
            outline += node->Value().isEmpty() ? "~" : node->Value().toStdString();
            if (node->Childs() && node->Childs()->Count() > 0)
                outline += (node->Expanded() ? "(" : "[") + Stored(node->Childs()) +
                           (node->Expanded() ? ")" : "]");
        }
        return outline;
    }

    /// The enabled ones of New, Remove, Move, Value, Ok, Cancel, Tabs, tree (W), and of the menu's
    /// Save, Save as (A) and Run (X), with "-" in the place of a disabled one.
    std::string State() {
        frmMain& form = Window();
        std::string state;
        for (const auto& [letter, control] :
             std::initializer_list<std::pair<char, const Control*>>{{'N', &form.cmdNew},
                                                                    {'R', &form.cmdRemove},
                                                                    {'M', &form.udnMove},
                                                                    {'V', &form.txtValue},
                                                                    {'O', &form.cmdOK},
                                                                    {'C', &form.cmdCancel},
                                                                    {'T', &form.tabContent},
                                                                    {'W', &form.tvwContent}})
            state += control->Enabled() ? letter : '-';
        state += form.mnuFileSave.Enabled() ? 'S' : '-';
        state += form.mnuFileSaveAs.Enabled() ? 'A' : '-';
        state += form.mnuFileRun.Enabled() ? 'X' : '-';
        for (const Menu* always : {&form.mnuFileNew, &form.mnuFileOpen, &form.mnuFileShowOutput,
                                   &form.mnuFileExit, &form.mnuHelpInfo})
            EXPECT_TRUE(always->Enabled()) << always->Caption().toStdString();
        return state;
    }

    /// True if the program would ask before it gives the document up. Changes nothing.
    bool Changed() {
        const QStringList formerlyAsked = TheUser.Asked;
        const QStringList formerDialogs = TheUser.Dialogs;
        Forget();
        EXPECT_FALSE(Program().FileOpen());
        const bool asked = !TheUser.Asked.empty();
        EXPECT_NE(asked, !TheUser.Dialogs.empty());
        TheUser.Asked = formerlyAsked;
        TheUser.Dialogs = formerDialogs;
        return asked;
    }

private:
    QString ShownBelow(const QModelIndex& parent) {
        QStringList nodes;
        for (int row = 0; row < Tree()->model()->rowCount(parent); ++row) {
            const QModelIndex index = Tree()->model()->index(row, 0, parent);
            QString node = index == Tree()->currentIndex() ? u"*"_qs : QString();
            EXPECT_EQ(!node.isEmpty(), Tree()->selectionModel()->isSelected(index));
            node += index.data(Qt::CheckStateRole) == Qt::Checked ? u"" : u"!";
            const QString text = index.data().toString();
            node += text == QString(64, u' ') ? u"~"_qs : text;
            if (Tree()->model()->hasChildren(index))
                node +=
                    (Tree()->isExpanded(index) ? u"(%1)"_qs : u"[%1]"_qs).arg(ShownBelow(index));
            nodes += node;
        }
        return nodes.join(u',');
    }
};

} // namespace rivenfall
