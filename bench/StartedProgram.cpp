#include "StartedProgram.h"

#include "system/CommandLine.h"

#include <QFile>

#include <csignal>
#include <unistd.h>

namespace rivenfall {

using namespace Qt::StringLiterals;

StartedProgram::StartedProgram(const QString& program, const QStringList& arguments) {
    static const bool prepared = qputenv("QT_PLUGIN_PATH", RIVENFALL_PLUGINS) &&
                                 qputenv("QT_QPA_GENERIC_PLUGINS", "first_paint");
    StandardStreams streams;
    if (!prepared || !CreatePipes(streams, Input, Output)) {
        return;
    }
    streams.Error = STDERR_FILENO;
    if (CreateProcess(JoinCommandLine(QStringList(program) + arguments), streams, Process)) {
        CloseHandle(streams.Input);
        CloseHandle(streams.Output);
        char byte = 0;
        HasPainted = read(Output, &byte, 1) == 1;
    }
}

StartedProgram::~StartedProgram() {
    if (Process > 0) {
        kill(Process, SIGKILL);
        // The end of its output is the end of the process: the next one starts alone.
        char byte = 0;
        while (read(Output, &byte, 1) > 0) {
        }
    }
    CloseHandle(Input);
    CloseHandle(Output);
}

double StartedProgram::ResidentBytes() const {
    QFile file(u"/proc/%1/statm"_s.arg(Process));
    if (!file.open(QIODevice::ReadOnly)) {
        return 0;
    }
    return file.readAll().split(' ').value(1).toDouble() * static_cast<double>(getpagesize());
}

} // namespace rivenfall
