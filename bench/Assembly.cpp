#include "Bench.h"

#include "controls/MultiLineTextBox.h"
#include "run/desktop/Execution.h"

#include <QElapsedTimer>

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

constexpr int VariableCount = 1000;

/// The time from the start of a run to the moment when it empties the log, which it does when all
/// commands are assembled. There is one command, a change into a folder that doesn't exist.
void Assemble(benchmark::State& state) {
    const RunningProgram program;
    for (int number = 0; number < VariableCount; ++number) {
        program->Variables()
            ->Add(u"NAME%1"_s.arg(number))
            ->Childs()
            ->Add(u"v%1"_s.arg(number % 10));
    }
    DataNodes& parameters = *program->Compilers()->Add(u"cd"_s)->Childs();
    for (int number = 0; number < state.range(0); ++number) {
        parameters.Add(u"${NAME%1}${NAME%2}"_s.arg(number % VariableCount)
                           .arg((number + VariableCount / 2) % VariableCount));
    }

    QElapsedTimer clock;
    qint64 nanoseconds = 0;
    QObject context;
    QObject::connect(&program->Execution()->Log(), &MultiLineTextBox::Change, &context, [&] {
        if (nanoseconds == 0) {
            nanoseconds = clock.nsecsElapsed();
        }
    });
    for (auto _ : state) {
        nanoseconds = 0;
        clock.start();
        program->Run();
        state.SetIterationTime(static_cast<double>(nanoseconds) * 1e-9);
    }
}

} // namespace

BENCHMARK(Assemble)
    ->Arg(1'000)
    ->Arg(10'000)
    ->Arg(100'000)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime();

} // namespace rivenfall
