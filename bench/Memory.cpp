#include "Bench.h"
#include "StartedProgram.h"

#include <chrono>
#include <thread>

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

constexpr int NodeCount = 100'000;
constexpr std::chrono::milliseconds UntilQuiet(500);

/// Counts what a process holds in RAM when its window is on view and nothing happens any more.
void Measure(benchmark::State& state, const QString& program, const QString& argument) {
    for (auto _ : state) {
        const StartedProgram started(program, {argument});
        std::this_thread::sleep_for(UntilQuiet);
        state.counters["bytes"] = started.ResidentBytes();
        if (!started.Painted()) {
            state.SkipWithError("the program showed no window");
        }
    }
}

void MemoryOfDocument(benchmark::State& state) {
    const QTemporaryDir folder;
    const QString fileName = folder.filePath(u"sample.tvq"_s);
    WriteSample(fileName, NodeCount);
    Measure(state, QString::fromUtf8(RIVENFALL_PROGRAM), fileName);
}

void MemoryOfBareWindow(benchmark::State& state) {
    Measure(state, QString::fromUtf8(RIVENFALL_BARE_WINDOW), QString::number(NodeCount));
}

} // namespace

BENCHMARK(MemoryOfDocument)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(3);
BENCHMARK(MemoryOfBareWindow)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(3);

} // namespace rivenfall
