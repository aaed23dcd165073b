#include "Bench.h"

#include "document/DocumentFile.h"
#include "system/Process.h"

#include <QFile>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <sys/wait.h>
#include <unistd.h>

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

constexpr int CommandCount = 100;
constexpr int LongOutput = 100'000'000;
constexpr int TemplateCount = 2'000;
constexpr int TemplateItems = 10;
constexpr int VariableCount = 1'000;
/// At least as many bytes as each of the lines has.
constexpr qint64 TemplateOutput = qint64(TemplateCount) * 100;

using Variables = std::vector<std::pair<QString, QString>>;

/// The same command lines and variables, as a document for the runner and as a file for make.
class Chain {
public:
    explicit Chain(const std::vector<QStringList>& commands, const Variables& variables = {}) {
        DocumentContent content;
        QString lines;
        for (const auto& [name, value] : variables) {
            content.Variables.Add(name)->Childs()->Add(value);
            lines += name + u" = "_s + value + u'\n';
        }
        lines += u"all:\n"_s;
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

    Chain(int count, const QStringList& items)
        : Chain(std::vector<QStringList>(static_cast<size_t>(count), items)) {}

    QString Document() const { return Folder.filePath(u"chain.tvq"_s); }
    QString MakeFile() const { return Folder.filePath(u"chain.mk"_s); }

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

/// Starts @p commandLine and reads its output to the end. Gives the number of bytes.
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

void Measure(benchmark::State& state, const QString& commandLine, qint64 leastOutput) {
    for (auto _ : state) {
        if (ReadAll(commandLine) < leastOutput) {
            state.SkipWithError("output is missing");
            break;
        }
    }
}

void ByRunner(benchmark::State& state, int count, const QStringList& items, qint64 leastOutput) {
    const Chain chain(count, items);
    Measure(state, QString::fromUtf8(RIVENFALL_RUNNER " %1").arg(chain.Document()), leastOutput);
}

void ByMake(benchmark::State& state, int count, const QStringList& items, qint64 leastOutput) {
    const Chain chain(count, items);
    Measure(state, u"make -s -f %1"_s.arg(chain.MakeFile()), leastOutput);
}

void DryRun(benchmark::State& state) {
    const Template chain;
    Measure(state, QString::fromUtf8(RIVENFALL_RUNNER " -n %1").arg(chain.Document()),
            TemplateOutput);
}

void PrintTemplate(benchmark::State& state) {
    const Template chain;
    Measure(state, QString::fromUtf8(RIVENFALL_RUNNER " -p %1").arg(chain.Document()), 1);
}

/// A command that writes @p count bytes.
QStringList Writing(int count) {
    return {u"head"_s, u"-c"_s, QString::number(count), u"/dev/zero"_s};
}

void Runs(benchmark::internal::Benchmark* work) {
    work->Unit(benchmark::kMillisecond)->UseRealTime();
}

} // namespace

BENCHMARK_CAPTURE(ByRunner, Hundred, CommandCount, {u"/bin/true"_s}, 0)->Apply(Runs);
BENCHMARK_CAPTURE(ByMake, Hundred, CommandCount, {u"/bin/true"_s}, 0)->Apply(Runs);
BENCHMARK_CAPTURE(ByRunner, One, 1, {u"/bin/true"_s}, 0)->Apply(Runs);
BENCHMARK_CAPTURE(ByMake, One, 1, {u"/bin/true"_s}, 0)->Apply(Runs);
BENCHMARK_CAPTURE(ByRunner, LongOutput, 1, Writing(LongOutput), LongOutput)->Apply(Runs);
BENCHMARK_CAPTURE(ByMake, LongOutput, 1, Writing(LongOutput), LongOutput)->Apply(Runs);
BENCHMARK(DryRun)->Apply(Runs);
BENCHMARK(PrintTemplate)->Apply(Runs);

} // namespace rivenfall
