#pragma once

#include "app/Application.h"
#include "app/modMain.h"
#include "platform/MessageBox.h"
#include "platform/MultiLineTextBox.h"
#include "run/Execution.h"
#include "window/frmMain.h"

#include <QElapsedTimer>
#include <QStringList>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <csignal>
#include <deque>
#include <functional>
#include <ostream>
#include <vector>

inline void PrintTo(const QString& text, std::ostream* stream) {
    *stream << '"' << text.toStdString() << '"';
}

namespace rivenfall {

/// What the program asked its user, and what the user will answer.
struct User {
    User();
    ~User();

    /// Each message box: its text, style and title, joined by "|".
    QStringList Asked;
    /// The answers to the next message boxes; OK or Cancel where there is none left.
    std::deque<int> Answers;
    /// The paths that the next file dialogs give; cancelled where there is none left.
    std::deque<QString> Files;
    /// The caption of each file dialog.
    QStringList Dialogs;
};

/// Lets this process wait for its children while it lives; the program has them go unasked.
struct AwaitedChildren {
    AwaitedChildren() {
        sigaction(SIGCHLD, nullptr, &Former);
        std::signal(SIGCHLD, SIG_DFL);
    }
    ~AwaitedChildren() { sigaction(SIGCHLD, &Former, nullptr); }
    struct sigaction Former;
};

/// A test with a running program: the Application with its windows, on no screen.
class ProgramTest : public testing::Test {
protected:
    ProgramTest();
    ~ProgramTest() override;

    Application& Program() { return *GlobalApplication(); }
    frmMain& Window() { return *Program().Form(); }
    rivenfall::Execution& Runner() { return *Program().Execution(); }
    QString Log() { return Runner().Log().Text(); }

    /// The path of the file @p name in a folder that goes with the test.
    QString Path(const QString& name) const { return Folder.filePath(name); }

    /// Gives up what stands in the document and takes the program down.
    void TakeDown();

    User TheUser;
    QTemporaryDir Folder;

private:
    QString FormerDirectory;
};

/// A node of a document that is to be written: its value, what is below it, and whether it is
/// active. A list of texts is a list of active nodes with nothing below them.
struct Sketch {
    Sketch(const char* value, std::vector<Sketch> below = {})
        : Sketch(QString::fromUtf8(value), std::move(below)) {}
    Sketch(const QString& value, std::vector<Sketch> below = {})
        : Value(value), Below(std::move(below)) {}

    QString Value;
    std::vector<Sketch> Below;
    bool Active = true;
};

/// The bytes of a collection whose nodes have @p levels levels below them.
QByteArray CollectionImage(const std::vector<Sketch>& nodes, int levels);

/// The bytes of a document file.
QByteArray DocumentImage(const std::vector<Sketch>& compilers,
                         const std::vector<Sketch>& variables = {});

/// A compiler that carries out the shell script @p script with @p arguments. A script may not hold
/// a reference to a variable.
Sketch Shell(const QString& script, const QStringList& arguments = {});

/// Writes @p bytes to the file at @p path, and gives @p path.
QString StoreBytes(const QString& path, const QByteArray& bytes);

/// What the file at @p path holds.
QByteArray BytesOf(const QString& path);

/// The frame that the log has for one step.
QString Frame(const QString& issue, const QString& result);

/// The number of descriptors that this process has open.
int OpenDescriptors();

/// Handles events until @p condition holds; False if it doesn't within @p milliseconds.
bool WaitFor(const std::function<bool()>& condition, int milliseconds = 10000);

} // namespace rivenfall
