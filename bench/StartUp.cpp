#include "Bench.h"
#include "StartedProgram.h"

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

/// From the start of a process to its first window on view.
void Start(benchmark::State& state, const QString& program) {
    for (auto _ : state) {
        const StartedProgram started(program);
        state.PauseTiming();
        if (!started.Painted()) {
            state.SkipWithError("the program showed no window");
            break;
        }
        state.ResumeTiming();
    }
}

void StartToFirstPaint(benchmark::State& state) {
    Start(state, QString::fromUtf8(RIVENFALL_PROGRAM));
}

void StartToFirstPaintOfBareWindow(benchmark::State& state) {
    Start(state, QString::fromUtf8(RIVENFALL_BARE_WINDOW));
}

/// Whatever else the machine does delays a start, so it takes many to see an undisturbed one.
void Starts(benchmark::internal::Benchmark* work) {
    work->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(30);
}

} // namespace

BENCHMARK(StartToFirstPaint)->Apply(Starts);
BENCHMARK(StartToFirstPaintOfBareWindow)->Apply(Starts);

} // namespace rivenfall
