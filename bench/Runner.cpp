#include "Bench.h"

#include "document/DocumentFile.h"
#include "system/Process.h"

#include <QFile>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

constexpr int CommandCount = 100;
constexpr int OutputSize = 100'000'000;
constexpr int TemplateCount = 2'000;
constexpr int TemplateItems = 10;
constexpr int VariableCount = 1'000;
/// At least as many bytes as each of the lines has.
constexpr qint64 TemplateOutput = qint64(TemplateCount) * 100;

using Variables = std::vector<std::pair<QString, QString>>;

/// Where the output of a run goes.
enum class Sink { Pipe, File, Null };

/// A document, and the same command lines as a file for make.
class Chain {
public:
    explicit Chain(const std::vector<QStringList>& commands, const Variables& variables = {}) {
        DocumentContent content;
        for (const auto& [name, value] : variables) {
            content.Variables.Add(name)->Childs()->Add(value);
        }
        QString lines = u"all:\n"_s;
        for (const QStringList& items : commands) {
            const auto compiler = content.Compilers.Add(items.first());
            for (const QString& item : items.sliced(1)) {
                compiler->Childs()->Add(item);
            }
            lines += u'\t' + items.join(u' ') + u'\n';
        }
        QFile file(MakeFile());
        const bool written = file.open(QIODevice::WriteOnly) && file.write(lines.toUtf8()) > 0;
        if (!written ||
            !WriteDocumentFile(Document(), content.Compilers, content.Variables).isEmpty()) {
            std::fputs("The files of a benchmark can't be written.\n", stderr);
            std::exit(EXIT_FAILURE);
        }
    }

    QString Document() const { return Folder.filePath(u"chain.tvq"_s); }
    QString MakeFile() const { return Folder.filePath(u"chain.mk"_s); }
    QString OutputFile() const { return Folder.filePath(u"output"_s); }

private:
    QTemporaryDir Folder;
};

/// Command lines of ten items with two references each, spread over all the variables.
class Template : public Chain {
public:
    Template() : Chain(Commands(), Values()) {}

private:
    static QString Name(int number) { return u"VARIABLE_%1"_s.arg(number); }

    static std::vector<QStringList> Commands() {
        std::vector<QStringList> commands;
        int number = 0;
        for (int command = 0; command < TemplateCount; ++command) {
            QStringList items{u"${FOLDER}/${PROGRAM}"_s};
            while (items.size() < TemplateItems) {
                number = (number + 7) % VariableCount;
                items += u"item%1-${%2}${%3}"_s.arg(items.size())
                             .arg(Name(number), Name(VariableCount - 1 - number));
            }
            commands.push_back(items);
        }
        return commands;
    }

    static Variables Values() {
        Variables values{{u"FOLDER"_s, u"/bin"_s}, {u"PROGRAM"_s, u"true"_s}};
        for (int number = 0; number < VariableCount; ++number) {
            values.emplace_back(Name(number), u"value%1"_s.arg(number));
        }
        return values;
    }
};

/// Carries out @p commandLine and reads its output to the end. Gives the number of bytes.
qint64 ReadAll(const QString& commandLine) {
    Handle input = 0;
    Handle output = 0;
    Handle process = 0;
    StandardStreams streams;
    if (!CreatePipes(streams, input, output) || !CreateProcess(commandLine, streams, process)) {
        return -1;
    }
    CloseHandle(streams.Input);
    CloseHandle(streams.Output);
    static std::array<char, 1 << 16> buffer;
    qint64 total = 0;
    for (ssize_t count = 1; count > 0; total += count) {
        count = read(output, buffer.data(), buffer.size());
    }
    waitpid(process, nullptr, 0);
    CloseHandle(input);
    CloseHandle(output);
    return total;
}

/// Carries out @p commandLine with the file @p path for its output.
bool WriteTo(const QString& path, const QString& commandLine) {
    const Handle file = open(QFile::encodeName(path).constData(),
                             O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, S_IRUSR | S_IWUSR);
    Handle process = 0;
    const bool started = CreateProcess(commandLine, {STDIN_FILENO, file, STDERR_FILENO}, process);
    CloseHandle(file);
    waitpid(process, nullptr, 0);
    return started;
}

void Measure(benchmark::State& state, const QString& commandLine, qint64 leastOutput) {
    for (auto _ : state) {
        if (ReadAll(commandLine) < leastOutput) {
            state.SkipWithError("output is missing");
            break;
        }
    }
}

QString ByRunner(const Chain& chain) {
    return QString::fromUtf8(RIVENFALL_RUNNER " %1").arg(chain.Document());
}

QString ByMake(const Chain& chain) {
    return u"make -s -f %1"_s.arg(chain.MakeFile());
}

void RunNothing(benchmark::State& state, int count, QString (*call)(const Chain&)) {
    const Chain chain(std::vector<QStringList>(static_cast<size_t>(count), {u"/bin/true"_s}));
    Measure(state, call(chain), 0);
}

void RunOutput(benchmark::State& state, Sink sink, QString (*call)(const Chain&)) {
    const Chain chain({{u"head"_s, u"-c"_s, QString::number(OutputSize), u"/dev/zero"_s}});
    if (sink == Sink::Pipe) {
        Measure(state, call(chain), OutputSize);
        return;
    }
    const QString path = sink == Sink::Null ? u"/dev/null"_s : chain.OutputFile();
    for (auto _ : state) {
        if (!WriteTo(path, call(chain)) ||
            (sink == Sink::File && QFile(path).size() < OutputSize)) {
            state.SkipWithError("output is missing");
            break;
        }
    }
}

void DryRun(benchmark::State& state, const char* option) {
    const Template chain;
    Measure(state,
            QString::fromUtf8(RIVENFALL_RUNNER " %1 %2")
                .arg(QString::fromUtf8(option), chain.Document()),
            TemplateOutput);
}

void Runs(benchmark::internal::Benchmark* work) {
    work->Unit(benchmark::kMillisecond)->UseRealTime();
}

} // namespace

BENCHMARK_CAPTURE(RunNothing, HundredByRunner, CommandCount, ByRunner)->Apply(Runs);
BENCHMARK_CAPTURE(RunNothing, HundredByMake, CommandCount, ByMake)->Apply(Runs);
BENCHMARK_CAPTURE(RunNothing, OneByRunner, 1, ByRunner)->Apply(Runs);
BENCHMARK_CAPTURE(RunNothing, OneByMake, 1, ByMake)->Apply(Runs);
BENCHMARK_CAPTURE(RunOutput, PipeByRunner, Sink::Pipe, ByRunner)->Apply(Runs);
BENCHMARK_CAPTURE(RunOutput, PipeByMake, Sink::Pipe, ByMake)->Apply(Runs);
BENCHMARK_CAPTURE(RunOutput, FileByRunner, Sink::File, ByRunner)->Apply(Runs);
BENCHMARK_CAPTURE(RunOutput, FileByMake, Sink::File, ByMake)->Apply(Runs);
BENCHMARK_CAPTURE(RunOutput, NullByRunner, Sink::Null, ByRunner)->Apply(Runs);
BENCHMARK_CAPTURE(RunOutput, NullByMake, Sink::Null, ByMake)->Apply(Runs);
BENCHMARK_CAPTURE(DryRun, Commands, "-n")->Apply(Runs);
BENCHMARK_CAPTURE(DryRun, Document, "-p")->Apply(Runs);

} // namespace rivenfall
