#pragma once

#include "CoreHarness.h"

#include <QDir>
#include <QProcess>

#include <unistd.h>

namespace rivenfall {

/// What one call of a program came to.
struct Call {
    /// The exit status, or 128 and the number of the signal that ended it, as in a shell.
    int Status;
    std::string Output;
    std::string Error;
};

/// A test of the program without a screen, in a folder and with a home of its own. Scripts find the
/// program as $RUN.
class RunnerTest : public testing::Test {
protected:
    RunnerTest() {
        QDir(Folder.path()).mkdir(u"home"_s);
        for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME",
                                 "XDG_STATE_HOME", "XDG_RUNTIME_DIR"}) {
            Environment.insert(QLatin1StringView(name), Path("home"));
        }
        Environment.insert(u"RUN"_s, ProgramFolder() + u"/rivenfall-run"_s);
    }

    QString Path(const char* name) { return Folder.filePath(QString::fromUtf8(name)); }
    bool Exists(const char* name) { return QFile::exists(Path(name)); }
    std::string TextOf(const char* name) { return BytesOf(Path(name)).toStdString(); }

    void Document(const std::vector<Sketch>& compilers, const char* name = "doc.tvq",
                  const char* variables = "EMPTY(~)") {
        StoreBytes(Path(name), DocumentImage(compilers, Sketches(variables)));
    }

    /// Calls the program with @p arguments, doc.tvq where there are none.
    Call Run(const QStringList& arguments = {u"doc.tvq"_s}) {
        return Start(Environment.value(u"RUN"_s), arguments);
    }

    /// Has bash carry out @p script.
    Call Bash(const char* script) { return Start(u"bash"_s, {u"-c"_s, QString::fromUtf8(script)}); }

    Call Start(const QString& program, const QStringList& arguments) {
        QProcess process;
        Start(process, program, arguments);
        return EndOf(process);
    }

    void Start(QProcess& process, const QString& program, const QStringList& arguments) {
        process.setWorkingDirectory(Folder.path());
        process.setProcessEnvironment(Environment);
        process.start(program, arguments);
        EXPECT_TRUE(process.waitForStarted());
    }

    /// Starts @p process in the folder and waits until there is a file `started` in it.
    void StartAndWait(QProcess& process, const QString& program, const QStringList& arguments) {
        QFile::remove(Path("started"));
        Start(process, program, arguments);
        for (int wait = 0; wait < 2000 && !Exists("started"); ++wait) {
            usleep(10'000);
        }
    }

    static Call EndOf(QProcess& process) {
        EXPECT_TRUE(process.waitForFinished(20000));
        const bool ended = process.exitStatus() == QProcess::NormalExit;
        return {process.exitCode() + (ended ? 0 : 128),
                process.readAllStandardOutput().toStdString(),
                process.readAllStandardError().toStdString()};
    }

    static std::string FrameOf(const QString& issue, const char* result = "success") {
        return Frame(issue, QLatin1StringView(result)).remove(u'\r').toStdString();
    }

    QTemporaryDir Folder;
    QProcessEnvironment Environment = QProcessEnvironment::systemEnvironment();
    const AwaitedChildren Children;
};

} // namespace rivenfall
