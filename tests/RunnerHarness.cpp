#include "RunnerHarness.h"

#include <QDir>

#include <unistd.h>

namespace rivenfall {

RunnerTest::RunnerTest() {
    QDir(Folder.path()).mkdir(u"home"_s);
    for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME",
                             "XDG_STATE_HOME", "XDG_RUNTIME_DIR"}) {
        Environment.insert(QLatin1StringView(name), Path("home"));
    }
    Environment.insert(u"RUN"_s, ProgramFolder() + u"/rivenfall-run"_s);
}

void RunnerTest::Document(const std::vector<Sketch>& compilers, const char* name,
                          const char* variables) {
    StoreBytes(Path(name), DocumentImage(compilers, Sketches(variables)));
}

Call RunnerTest::Run(const QStringList& arguments) {
    return Start(Environment.value(u"RUN"_s), arguments);
}

Call RunnerTest::Bash(const char* script) {
    return Start(u"bash"_s, {u"-c"_s, QString::fromUtf8(script)});
}

Call RunnerTest::Start(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.setWorkingDirectory(Folder.path());
    process.setProcessEnvironment(Environment);
    process.start(program, arguments);
    return EndOf(process);
}

void RunnerTest::StartAndWait(QProcess& process, const QString& program,
                              const QStringList& arguments) {
    QFile::remove(Path("started"));
    process.setWorkingDirectory(Folder.path());
    process.setProcessEnvironment(Environment);
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForStarted());
    for (int wait = 0; wait < 2000 && !Exists("started"); ++wait) {
        usleep(10'000);
    }
}

Call RunnerTest::EndOf(QProcess& process) {
    EXPECT_TRUE(process.waitForFinished(20000));
    const bool ended = process.exitStatus() == QProcess::NormalExit;
    return {process.exitCode() + (ended ? 0 : 128), process.readAllStandardOutput().toStdString(),
            process.readAllStandardError().toStdString()};
}

std::string RunnerTest::FrameOf(const QString& issue, const char* result) {
    return Frame(issue, QLatin1StringView(result)).remove(u'\r').toStdString();
}

} // namespace rivenfall
