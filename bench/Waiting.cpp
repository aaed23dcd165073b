#include "Bench.h"

#include "run/desktop/Execution.h"
#include "system/EventLoop.h"

#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <ctime>

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

constexpr int HeartbeatMilliseconds = 10;

/// Starts a child that prints nothing for five seconds and calls @p wait, which returns when the
/// run has ended.
template <typename Wait>
void WithSilentChild(benchmark::State& state, Wait wait) {
    const RunningProgram program;
    Execution& execution = *program->Execution();
    execution.Show();
    for (auto _ : state) {
        execution.Execute(u"sleep 5"_s);
        ProcessEvents();
        wait([&] {
            while (execution.Running()) {
                DoEvents();
            }
        });
    }
}

/// How much of a core the wait takes.
void WaitForSilentChild(benchmark::State& state) {
    WithSilentChild(state, [&](auto waiting) {
        QElapsedTimer clock;
        clock.start();
        const std::clock_t before = std::clock();
        waiting();
        const double seconds = static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC;
        state.counters["percent"] = 100e9 * seconds / static_cast<double>(clock.nsecsElapsed());
    });
}

/// For how long the event loop answers nobody meanwhile: by how much a regular beat is late.
void StallOfEventLoop(benchmark::State& state) {
    WithSilentChild(state, [&](auto waiting) {
        QElapsedTimer sinceBeat;
        qint64 longestGap = 0;
        QTimer heartbeat;
        heartbeat.setTimerType(Qt::PreciseTimer);
        QObject::connect(&heartbeat, &QTimer::timeout, &heartbeat, [&] {
            longestGap = std::max(longestGap, sinceBeat.nsecsElapsed());
            sinceBeat.start();
        });
        sinceBeat.start();
        heartbeat.start(HeartbeatMilliseconds);
        waiting();
        state.counters["milliseconds"] =
            static_cast<double>(longestGap) * 1e-6 - HeartbeatMilliseconds;
    });
}

} // namespace

BENCHMARK(WaitForSilentChild)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(2);
BENCHMARK(StallOfEventLoop)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(2);

} // namespace rivenfall
