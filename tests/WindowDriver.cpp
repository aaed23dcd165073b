#include "WindowDriver.h"

#include <QPushButton>
#include <QWindow>

#include <utility>

namespace rivenfall {

std::vector<Sketch> Sketches(QStringView& outline) {
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

std::vector<Sketch> Sketches(const char* outline) {
    const QString text = QString::fromUtf8(outline);
    QStringView rest = text;
    return Sketches(rest);
}

QModelIndex WindowTest::Row(int position) const {
    const QAbstractItemModel* model = const_cast<WindowTest*>(this)->Tree()->model();
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

void WindowTest::Act(const QString& script) {
    for (const QString& word : script.split(u' ', Qt::SkipEmptyParts)) {
        const QString name = word.section(u':', 0, 0);
        const QString argument = word.section(u':', 1);
        const auto key = [](const QString& text) { return QKeySequence(text)[0]; };
        TakeKeyboard();
        if (name == u"click")
            ClickRow(argument.toInt(), 40);
        else if (name == u"mark")
            ClickRow(argument.toInt(), 8);
        else if (name == u"branch")
            ClickRow(argument.toInt(), -10);
        else if (name == u"tab")
            QTest::mouseClick(Tabs(), Qt::LeftButton, {},
                              Tabs()->tabRect(argument.toInt() - 1).center());
        else if (name == u"type")
            QTest::keyClicks(Box(), QString(argument).replace(u'_', u' '));
        else if (name == u"file")
            Choose(Qt::Key_F, key(argument).key());
        else if (name == u"help")
            Choose(Qt::Key_H, key(argument).key());
        else if (name == u"pick")
            TheUser.Files.push_back(argument.isEmpty() ? QString() : Path(argument));
        else if (name == u"yes")
            TheUser.Answers.push_back(MessageBoxYes);
        else if (name == u"no")
            TheUser.Answers.push_back(MessageBoxNo);
        else if (name == u"stay")
            TheUser.Answers.push_back(MessageBoxCancel);
        else if (argument.isEmpty())
            QTest::mouseClick(Named(name), Qt::LeftButton);
        else
            PressKey(Named(name), key(argument));
    }
}

void WindowTest::TakeKeyboard() {
    QWindow* window = Window().Window()->windowHandle();
    if (QGuiApplication::focusWindow() == window)
        return;
    window->requestActivate();
    QCoreApplication::processEvents();
    EXPECT_EQ(QGuiApplication::focusWindow(), window);
}

QWidget* WindowTest::Named(const QString& name) {
    const QList<QToolButton*> moves = Window().udnMove.Widget()->findChildren<QToolButton*>();
    const std::initializer_list<std::pair<QLatin1StringView, QWidget*>> widgets = {
        {QLatin1StringView("tree"), Tree()},
        {QLatin1StringView("box"), Box()},
        {QLatin1StringView("tabs"), Tabs()},
        {QLatin1StringView("window"), Window().Window()},
        {QLatin1StringView("new"), Window().cmdNew.Widget()},
        {QLatin1StringView("remove"), Window().cmdRemove.Widget()},
        {QLatin1StringView("ok"), Window().cmdOK.Widget()},
        {QLatin1StringView("cancel"), Window().cmdCancel.Widget()},
        {QLatin1StringView("move"), Window().udnMove.Widget()},
        {QLatin1StringView("up"), moves[0]},
        {QLatin1StringView("down"), moves[1]}};
    for (const auto& [word, widget] : widgets) {
        if (word == name)
            return widget;
    }
    ADD_FAILURE() << "no control is named " << name.toStdString();
    return Box();
}

void WindowTest::PressKey(QWidget* widget, QKeyCombination key) {
    QTest::keyClick(widget, key.key(), key.keyboardModifiers());
    // A button that is pressed by its letter stays down for a moment.
    const auto* added = static_cast<QPushButton*>(Window().cmdNew.Widget());
    const auto* removed = static_cast<QPushButton*>(Window().cmdRemove.Widget());
    EXPECT_TRUE(WaitFor([&] { return !added->isDown() && !removed->isDown(); }));
}

void WindowTest::ClickRow(int position, int right) {
    if (!Tree()->viewport()->rect().contains(Tree()->visualRect(Row(position)).center()))
        Tree()->scrollTo(Row(position));
    const QRect row = Tree()->visualRect(Row(position));
    QTest::mouseClick(Tree()->viewport(), Qt::LeftButton, {},
                      {row.left() + right, row.center().y()});
}

void WindowTest::Choose(Qt::Key menu, Qt::Key entry) {
    const QPointer<QMenuBar> bar = Window().Window()->menuBar();
    QTest::keyClick(Window().Window(), menu, Qt::AltModifier);
    ASSERT_NE(QApplication::activePopupWidget(), nullptr);
    QTest::keyClick(QApplication::activePopupWidget(), entry);
    while (QWidget* popup = QApplication::activePopupWidget())
        QTest::keyClick(popup, Qt::Key_Escape);
    if (bar && bar->activeAction())
        QTest::keyClick(bar, Qt::Key_Escape);
}

void WindowTest::Open(const char* compilers, const char* variables, const char* script) {
    const QString path = StoreBytes(Path(QStringLiteral("document.tvq")),
                                    DocumentImage(Sketches(compilers), Sketches(variables)));
    TheUser.Answers = {MessageBoxNo};
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
    const QString shown = ShownBelow({});
    const DataNodes* document =
        Program().ContentActive() == 1 ? Program().Compilers() : Program().Variables();
    const auto plain = [](QString outline) {
        return outline.remove(u'*').replace(u'[', u'(').replace(u']', u')');
    };
    EXPECT_EQ(plain(QString::fromStdString(Stored(document))), plain(shown));
    EXPECT_EQ(Tabs()->currentIndex() + 1, Program().ContentActive());
    return shown.toStdString();
}

QString WindowTest::ShownBelow(const QModelIndex& parent) {
    const QAbstractItemModel* model = Tree()->model();
    QStringList nodes;
    for (int row = 0; row < model->rowCount(parent); ++row) {
        const QModelIndex index = model->index(row, 0, parent);
        QString node = QStringLiteral("*").first(index == Tree()->currentIndex());
        EXPECT_EQ(!node.isEmpty(), Tree()->selectionModel()->isSelected(index));
        node += QStringLiteral("!").first(index.data(Qt::CheckStateRole) == Qt::Unchecked);
        const QString text = index.data().toString();
        node += text == QString(64, u' ') ? QStringLiteral("~") : text;
        if (model->hasChildren(index)) {
            const bool open = Tree()->isExpanded(index);
            node += (open ? u'(' : u'[') + ShownBelow(index) + (open ? u')' : u']');
        }
        nodes += node;
    }
    return nodes.join(u',');
}

std::string WindowTest::Stored(const DataNodes* collection) {
    std::string outline;
    for (const std::shared_ptr<DataNode>& node : *collection) {
        outline += outline.empty() ? "" : ",";
        outline += node->Active() ? "" : "!";
        outline += node->Value().isEmpty() ? "~" : node->Value().toStdString();
        if (node->Childs() && node->Childs()->Count() > 0)
            outline += (node->Expanded() ? "(" : "[") + Stored(node->Childs()) +
                       (node->Expanded() ? ")" : "]");
    }
    return outline;
}

std::string WindowTest::State() {
    frmMain& form = Window();
    const std::initializer_list<std::pair<char, const Control*>> controls = {
        {'N', &form.cmdNew},   {'R', &form.cmdRemove}, {'M', &form.udnMove},
        {'V', &form.txtValue}, {'O', &form.cmdOK},     {'C', &form.cmdCancel}};
    std::string state;
    for (const auto& [letter, control] : controls)
        state += control->Enabled() ? letter : '-';
    const bool document = form.tabContent.Enabled();
    for (const bool enabled : {form.tvwContent.Enabled(), form.mnuFileSave.Enabled(),
                               form.mnuFileSaveAs.Enabled(), form.mnuFileRun.Enabled()})
        EXPECT_EQ(enabled, document);
    for (const Menu* always : {&form.mnuFileNew, &form.mnuFileOpen, &form.mnuFileShowOutput,
                               &form.mnuFileExit, &form.mnuHelpInfo})
        EXPECT_TRUE(always->Enabled()) << always->Caption().toStdString();
    return state + (document ? "" : " none");
}

bool WindowTest::Changed() {
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

std::string WindowTest::Look() {
    return Shown() + " " + State() + " " + Box()->text().toStdString() +
           (Changed() ? " changed" : "");
}

} // namespace rivenfall
