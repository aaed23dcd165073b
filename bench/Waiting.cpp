#include "Bench.h"

#include "platform/EventLoop.h"
#include "run/Execution.h"

#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <ctime>

namespace rivenfall {

namespace {

constexpr int HeartbeatMilliseconds = 10;

/// A run's wait for a child that prints nothing for five seconds: how much of a core it takes and
/// for how long the event loop answers nobody.
void WaitForSilentChild(benchmark::State& state) {
    const RunningProgram program;
    Execution& execution = *program->Execution();
    execution.Show();
    Settle();
    for (auto _ : state) {
        execution.Execute(QStringLiteral("sleep 5"));
        Settle();

        QElapsedTimer sinceBeat;
        double longestGap = 0;
        QTimer heartbeat;
        heartbeat.setTimerType(Qt::PreciseTimer);
        QObject::connect(&heartbeat, &QTimer::timeout, &heartbeat, [&] {
            longestGap = std::max(longestGap, static_cast<double>(sinceBeat.nsecsElapsed()) * 1e-6);
            sinceBeat.start();
        });
        QElapsedTimer clock;
        clock.start();
        sinceBeat.start();
        heartbeat.start(HeartbeatMilliseconds);
        const std::clock_t before = std::clock();
        while (execution.Running()) {
            DoEvents();
        }
        const double seconds = static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC;
        state.counters["percent"] =
            100 * seconds / (static_cast<double>(clock.nsecsElapsed()) * 1e-9);
        state.counters["stall"] = longestGap - HeartbeatMilliseconds;
    }
}

} // namespace

BENCHMARK(WaitForSilentChild)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(2);

} // namespace rivenfall
