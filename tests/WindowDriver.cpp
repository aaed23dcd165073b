#include "WindowDriver.h"

#include <QAbstractButton>
#include <QPointer>
#include <QRegularExpression>
#include <QWindow>

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

} // namespace

std::string Outline(const Lines& lines, bool Line::*open, int selected) {
    QString text;
    QString brackets;
    for (qsizetype each = 0; each < qsizetype(lines.size()); ++each) {
        const Line& line = lines[size_t(each)];
        for (; brackets.size() > line.Level; brackets.chop(1)) {
            text += brackets.back();
        }
        text += text.isEmpty() || QStringView(u"([").contains(text.back()) ? u""_s : u","_s;
        text += each + 1 == selected ? u"*"_s : QString();
        text += (line.On ? QString() : u"!"_s) + (line.Value.isEmpty() ? u"~"_s : line.Value);
        if (size_t(each) + 1 < lines.size() && lines[size_t(each) + 1].Level > line.Level) {
            text += line.*open ? u'(' : u'[';
            brackets += line.*open ? u')' : u']';
        }
    }
    std::reverse(brackets.begin(), brackets.end());
    return (text + brackets).toStdString();
}

QModelIndexList WindowTest::Rows(const QModelIndex& parent) {
    QModelIndexList rows;
    for (int row = 0; row < Tree()->model()->rowCount(parent); ++row) {
        rows += Tree()->model()->index(row, 0, parent);
        rows += Rows(rows.back());
    }
    return rows;
}

void WindowTest::Act(const QString& script) {
    for (const QString& word : script.split(u' ', Qt::SkipEmptyParts)) {
        TakeKeyboard();
        const QString name = word.section(u':', 0, 0).replace(u'_', u' ');
        const QString argument = word.section(u':', 1).replace(u'_', u' ');
        const auto key = [](const QString& text) { return QKeySequence(text)[0]; };
        if (name == u"click" || name == u"mark" || name == u"branch") {
            ClickRow(argument.toInt(), name == u"click" ? 40 : name == u"mark" ? 8 : -10);
        } else if (name == u"tab") {
            QTest::mouseClick(Tabs(), Qt::LeftButton, {},
                              Tabs()->tabRect(argument.toInt() - 1).center());
        } else if (name == u"type") {
            QTest::keyClicks(Box(), argument);
        } else if (name == u"file" || name == u"help") {
            Choose(name == u"file" ? Qt::Key_F : Qt::Key_H, key(argument).key());
        } else if (name == u"pick") {
            TheUser.Files.push_back(argument.isEmpty() ? QString() : Path(argument));
        } else if (name == u"yes" || name == u"no" || name == u"stay") {
            TheUser.Answers.push_back(name == u"yes"  ? MessageBoxAnswer::Yes
                                      : name == u"no" ? MessageBoxAnswer::No
                                                      : MessageBoxAnswer::Cancel);
        } else {
            bool found = false;
            for (QWidget* widget : Window().Client()->findChildren<QWidget*>()) {
                if (widget->accessibleName() != name) {
                    continue;
                }
                found = true;
                if (argument.isEmpty()) {
                    QTest::mouseClick(widget, Qt::LeftButton);
                } else {
                    QTest::keyClick(widget, key(argument).key(), key(argument).keyboardModifiers());
                }
                break;
            }
            EXPECT_TRUE(found) << name.toStdString();
            // A button that is pressed by its letter stays down for a moment.
            for (const QAbstractButton* each :
                 Window().Client()->findChildren<QAbstractButton*>()) {
                EXPECT_TRUE(WaitFor([&] { return !each->isDown(); }));
            }
        }
    }
}

void WindowTest::ClickRow(int position, int right) {
    if (!Tree()->viewport()->rect().contains(Tree()->visualRect(Row(position)).center())) {
        Tree()->scrollTo(Row(position));
    }
    const QRect row = Tree()->visualRect(Row(position));
    QTest::mouseClick(Tree()->viewport(), Qt::LeftButton, {},
                      {row.left() + right, row.center().y()});
}

void WindowTest::Choose(Qt::Key menu, Qt::Key entry) {
    const QPointer<QMenuBar> bar = Window().Window()->menuBar();
    QTest::keyClick(Window().Window(), menu, Qt::AltModifier);
    ASSERT_NE(QApplication::activePopupWidget(), nullptr);
    QTest::keyClick(QApplication::activePopupWidget(), entry);
    while (QWidget* popup = QApplication::activePopupWidget()) {
        QTest::keyClick(popup, Qt::Key_Escape);
    }
    if (bar && bar->activeAction()) {
        QTest::keyClick(bar, Qt::Key_Escape);
    }
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

std::string WindowTest::Shown() {
    QCoreApplication::processEvents();
    const QModelIndexList rows = Rows({});
    Lines shown, stored;
    for (const QModelIndex& row : rows) {
        int level = 0;
        for (QModelIndex above = row.parent(); above.isValid(); above = above.parent()) {
            ++level;
        }
        const QString text = row.data().toString();
        shown.push_back({level, text == QString(64, u' ') ? QString() : text,
                         row.data(Qt::CheckStateRole) == Qt::Checked, Tree()->isExpanded(row)});
        EXPECT_EQ(Tree()->selectionModel()->isSelected(row), row == Tree()->currentIndex());
    }
    const int content = Program().ContentActive();
    Collect(*(content == 1 ? Program().Compilers() : Program().Variables()), 0, stored);
    EXPECT_EQ(Outline(shown, &Line::Shown), Outline(stored, &Line::Shown));
    EXPECT_EQ(Tabs()->currentIndex() + 1, content);
    return Outline(shown, &Line::Open, int(rows.indexOf(Tree()->currentIndex())) + 1);
}

std::string WindowTest::Stored(int content) {
    Lines stored;
    Collect(*(content == 1 ? Program().Compilers() : Program().Variables()), 0, stored);
    return Outline(stored, &Line::Open);
}

std::string WindowTest::State() {
    frmMain& form = Window();
    const std::pair<char, const Control*> controls[] = {
        {'N', &form.cmdNew},   {'R', &form.cmdRemove}, {'M', &form.udnMove},
        {'V', &form.txtValue}, {'O', &form.cmdOK},     {'C', &form.cmdCancel}};
    std::string state;
    for (const auto& [letter, control] : controls) {
        state += control->Enabled() ? letter : '-';
    }
    const bool document = form.tabContent.Enabled();
    for (const bool enabled : {form.tvwContent.Enabled(), form.mnuFileSave.Enabled(),
                               form.mnuFileSaveAs.Enabled(), form.mnuFileRun.Enabled()}) {
        EXPECT_EQ(enabled, document);
    }
    for (const Menu* always : {&form.mnuFileNew, &form.mnuFileOpen, &form.mnuFileShowOutput,
                               &form.mnuFileExit, &form.mnuHelpInfo}) {
        EXPECT_TRUE(always->Enabled());
    }
    return state + (document ? "" : " none");
}

bool WindowTest::Changed() {
    Forget();
    EXPECT_FALSE(Program().FileOpen());
    const bool asked = !TheUser.Asked.empty();
    EXPECT_NE(asked, !TheUser.Dialogs.empty());
    Forget();
    return asked;
}

std::string WindowTest::Look() {
    return Shown() + " " + State() + " " + Box()->text().toStdString() +
           (Changed() ? " changed" : "");
}

void WindowTest::Expect(const char* script, const std::string& look) {
    SCOPED_TRACE(script);
    Act(script);
    EXPECT_EQ(Look(), look);
}

void WindowTest::ExpectEach(const char* compilers, const char* variables, const char* start,
                            const char* cases) {
    static const QRegularExpression goesOn(u"\\n *(?==>)|(?<=\\|)\\n"_s);
    static const QRegularExpression ends(u"[;\\n]"_s);
    for (const QString& line : QString::fromUtf8(cases).remove(goesOn).split(ends)) {
        const QString look = line.section(u"=>"_s, 1).trimmed();
        for (const QString& script : line.section(u"=>"_s, 0, 0).split(u'|')) {
            if (look.isEmpty()) {
                continue;
            }
            SCOPED_TRACE(script.toStdString());
            Open(compilers, variables, start);
            Act(script.simplified());
            EXPECT_EQ(QString::fromStdString(Look()).trimmed(), look);
        }
    }
}

bool WindowTest::Holds(const QString& name, const char* compilers, const char* variables) {
    return BytesOf(Path(name)) == DocumentImage(Sketches(compilers), Sketches(variables));
}

} // namespace rivenfall
