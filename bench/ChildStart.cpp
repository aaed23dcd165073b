#include "Bench.h"

#include "system/Process.h"

#include <QElapsedTimer>

#include <spawn.h>
#include <unistd.h>

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

constexpr int StartCount = 50;

/// What both ways of starting a child have in common: only the start itself is measured, and
/// the next one waits for the end of the child.
template <typename Start, typename Wait>
void MeasureStarts(benchmark::State& state, Start start, Wait wait) {
    QElapsedTimer clock;
    for (auto _ : state) {
        clock.start();
        const bool started = start();
        state.SetIterationTime(static_cast<double>(clock.nsecsElapsed()) * 1e-9);
        if (!started) {
            state.SkipWithError("nothing was started");
            break;
        }
        wait();
    }
}

/// Waits for the end of a child's output and closes both of its pipes.
void WaitAndClose(int input, int output) {
    char byte = 0;
    while (read(output, &byte, 1) > 0) {
    }
    close(input);
    close(output);
}

/// A start with what a command of a run needs: two pipes that no other child inherits, arguments
/// out of a command line, fresh signals.
void StartChild(benchmark::State& state) {
    Handle input = 0;
    Handle output = 0;
    const auto start = [&] {
        StandardStreams streams;
        Handle process = 0;
        const bool started =
            CreatePipes(streams, input, output) && CreateProcess(u"true"_s, streams, process);
        CloseHandle(streams.Input);
        CloseHandle(streams.Output);
        return started;
    };
    MeasureStarts(state, start, [&] { WaitAndClose(input, output); });
}

void StartChildBarely(benchmark::State& state) {
    int input[2] = {};
    int output[2] = {};
    const auto start = [&] {
        bool started = pipe(input) == 0 && pipe(output) == 0;
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&actions, output[1], STDERR_FILENO);
        char name[] = "true";
        char* arguments[] = {name, nullptr};
        pid_t process = 0;
        started =
            started && posix_spawnp(&process, name, &actions, nullptr, arguments, environ) == 0;
        posix_spawn_file_actions_destroy(&actions);
        close(input[0]);
        close(output[1]);
        return started;
    };
    MeasureStarts(state, start, [&] { WaitAndClose(input[1], output[0]); });
}

void Starts(benchmark::internal::Benchmark* work) {
    work->Unit(benchmark::kMicrosecond)->UseManualTime();
}

} // namespace

BENCHMARK(StartChild)->Apply(Starts)->Iterations(StartCount);
BENCHMARK(StartChildBarely)->Apply(Starts)->Iterations(StartCount);

} // namespace rivenfall
