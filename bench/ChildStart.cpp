#include "Bench.h"

#include "platform/EventLoop.h"
#include "run/Execution.h"

#include <QElapsedTimer>

#include <spawn.h>
#include <unistd.h>

namespace rivenfall {

namespace {

constexpr int StartCount = 20;

void SetElapsed(benchmark::State& state, const QElapsedTimer& clock) {
    state.SetIterationTime(static_cast<double>(clock.nsecsElapsed()) * 1e-9);
}

/// The start of a command of a run, with its frame in the log.
void StartChild(benchmark::State& state) {
    const RunningProgram program;
    Execution& execution = *program->Execution();
    execution.Show();
    QElapsedTimer clock;
    for (auto _ : state) {
        clock.start();
        const bool started = execution.Execute(QStringLiteral("/bin/true"));
        SetElapsed(state, clock);
        if (!started) {
            state.SkipWithError("nothing was started");
            break;
        }
        while (execution.Running()) {
            DoEvents();
        }
    }
}

void StartChildBarely(benchmark::State& state) {
    QElapsedTimer clock;
    for (auto _ : state) {
        clock.start();
        int input[2];
        int output[2];
        bool started = pipe(input) == 0 && pipe(output) == 0;
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&actions, output[1], STDERR_FILENO);
        char name[] = "/bin/true";
        char* arguments[] = {name, nullptr};
        pid_t process = 0;
        started =
            started && posix_spawn(&process, name, &actions, nullptr, arguments, environ) == 0;
        posix_spawn_file_actions_destroy(&actions);
        close(input[0]);
        close(output[1]);
        SetElapsed(state, clock);
        if (!started) {
            state.SkipWithError("nothing was started");
        }
        char byte = 0;
        while (read(output[0], &byte, 1) > 0) {
        }
        close(input[1]);
        close(output[0]);
    }
}

void Starts(benchmark::internal::Benchmark* work) {
    work->Unit(benchmark::kMicrosecond)->Iterations(StartCount)->UseManualTime();
}

} // namespace

BENCHMARK(StartChild)->Apply(Starts);
BENCHMARK(StartChildBarely)->Apply(Starts);

} // namespace rivenfall
