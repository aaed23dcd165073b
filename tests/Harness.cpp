#include "Harness.h"

#include "platform/App.h"
#include "platform/PropertyBag.h"
#include "support/FileDialog.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTimer>

namespace rivenfall {

User::User() {
    SetMessageBoxResponder([this](const QString& text, int style, const QString& title) {
        Asked += u"%1|%2|%3"_qs.arg(text).arg(style).arg(title);
        if (Answers.empty()) {
            return int(style == MessageBoxYesNoCancel ? MessageBoxCancel : MessageBoxOk);
        }
        const int answer = Answers.front();
        Answers.pop_front();
        return answer;
    });
    SetFileDialogResponder([this](const QString& title) {
        Dialogs += title;
        if (Files.empty()) {
            return QString();
        }
        const QString file = Files.front();
        Files.pop_front();
        return file;
    });
}

User::~User() {
    SetMessageBoxResponder({});
    SetFileDialogResponder({});
}

ProgramTest::ProgramTest() : FormerDirectory(QDir::currentPath()) {
    SetGlobalApplication(std::make_shared<Application>());
}

ProgramTest::~ProgramTest() {
    TakeDown();
    QDir::setCurrent(FormerDirectory);
}

void ProgramTest::TakeDown() {
    SetGlobalApplication(nullptr);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    // The program has ended its event loop. A loop takes that, or the next dialog would end at
    // once.
    QTimer::singleShot(0, [] { QCoreApplication::exit(); });
    QCoreApplication::exec();
}

QByteArray CollectionImage(const std::vector<Sketch>& nodes, int levels) {
    PropertyBag collection;
    collection.WriteProperty("Count", static_cast<int>(nodes.size()));
    int position = 0;
    for (const Sketch& sketch : nodes) {
        PropertyBag node;
        node.WriteProperty("Value", sketch.Value);
        node.WriteProperty("Active", sketch.Active, true);
        if (levels > 0) {
            node.WriteProperty("Childs", CollectionImage(sketch.Below, levels - 1));
        }
        collection.WriteProperty("Item" + QByteArray::number(++position), node.Contents());
    }
    return collection.Contents();
}

QByteArray DocumentImage(const std::vector<Sketch>& compilers,
                         const std::vector<Sketch>& variables) {
    PropertyBag content;
    content.WriteProperty("Compilers", CollectionImage(compilers, 2));
    content.WriteProperty("Variables", CollectionImage(variables, 1));
    PropertyBag file;
    file.WriteProperty("_FileFormatDescription",
                       u"OMRA Rivenfall Compiler Controller File Version 0.2"_qs);
    file.WriteProperty("_FileFormatIdentification", u"TAVQEF#0003"_qs);
    file.WriteProperty("_Content", content.Contents());
    return file.Contents();
}

Sketch Shell(const QString& script, const QStringList& arguments) {
    Sketch compiler("sh", {"-c", script});
    compiler.Below.insert(compiler.Below.end(), arguments.begin(), arguments.end());
    return compiler;
}

QString StoreBytes(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
    EXPECT_EQ(file.write(bytes), bytes.size());
    return path;
}

QByteArray BytesOf(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

QString Frame(const QString& issue, const QString& result) {
    const QString dashes(53, u'-');
    return u"# /"_qs + dashes + u"\r\n# | "_qs + issue + u"\r\n# | ["_qs + result +
           u"]\r\n# \\"_qs + dashes + u"\r\n"_qs;
}

int OpenDescriptors() {
    return static_cast<int>(QDir(u"/proc/self/fd"_qs).entryList().size());
}

bool WaitFor(const std::function<bool()>& condition, int milliseconds) {
    return QTest::qWaitFor(condition, milliseconds);
}

} // namespace rivenfall

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    // A folder in the tester's own that may not be read would turn "no such program" into "no
    // permission".
    qputenv("PATH", "/usr/local/bin:/usr/bin:/bin");
    rivenfall::App app(argc, argv, rivenfall::Screen::None);
    return RUN_ALL_TESTS();
}
