#include "Bench.h"

#include "run/frmExec.h"

namespace rivenfall {

namespace {

constexpr int LargeLog = 10'000'000;
constexpr int TickCount = 300;

/// What one tick of the clock does to the log window with 64 bytes of output, until it is painted.
void AppendInTick(benchmark::State& state) {
    const QString chunk =
        QStringLiteral("compiling source/number.c to build/number.o with -O2 -g\r\n");
    const QString line = chunk.leftJustified(64, u'x', true);
    frmExec form;
    form.Show();
    form.txtOutput.SetText(line.repeated(state.range(0) / line.size()));
    form.txtOutput.SetSelStartToEnd();
    ProcessEvents();
    for (auto _ : state) {
        form.txtOutput.AppendText(line);
        form.txtOutput.SetSelStartToEnd();
        ProcessEvents();
    }
}

} // namespace

BENCHMARK(AppendInTick)
    ->Arg(0)
    ->Arg(LargeLog)
    ->Unit(benchmark::kMicrosecond)
    ->Iterations(TickCount);

} // namespace rivenfall
