#pragma once

#include "CoreHarness.h"

#include <QProcess>

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
    RunnerTest();

    QString Path(const char* name) { return Folder.filePath(QString::fromUtf8(name)); }
    bool Exists(const char* name) { return QFile::exists(Path(name)); }
    std::string TextOf(const char* name) { return BytesOf(Path(name)).toStdString(); }

    void Document(const std::vector<Sketch>& compilers, const char* name = "doc.tvq",
                  const char* variables = "EMPTY(~)");

    /// Calls the program with @p arguments, doc.tvq where there are none.
    Call Run(const QStringList& arguments = {u"doc.tvq"_s});

    /// Has bash carry out @p script.
    Call Bash(const char* script);

    Call Start(const QString& program, const QStringList& arguments);

    /// Starts @p process in the folder and waits until there is a file `started` in it.
    void StartAndWait(QProcess& process, const QString& program, const QStringList& arguments);

    static Call EndOf(QProcess& process);

    static std::string FrameOf(const QString& issue, const char* result = "success");

    QTemporaryDir Folder;
    QProcessEnvironment Environment = QProcessEnvironment::systemEnvironment();
    const AwaitedChildren Children;
};

} // namespace rivenfall
