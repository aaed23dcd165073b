#include "Bench.h"

#include "run/desktop/frmExec.h"

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

constexpr int LargeLog = 10'000'000;
constexpr int LongLine = 65'536;
constexpr int VeryLongLine = 1'000'000;
constexpr int TickCount = 300;

/// What one tick of the clock does to the log window with 64 bytes of output, @p line, until it is
/// painted, where the log has so many already.
void Append(benchmark::State& state, const QString& line) {
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

void AppendInTick(benchmark::State& state) {
    const QString chunk = u"compiling source/number.c to build/number.o with -O2 -g\r\n"_s;
    Append(state, chunk.leftJustified(64, u'x', true));
}

/// As a program does that shows its progress in one line without an end.
void AppendToLine(benchmark::State& state) {
    Append(state, u"compiling source/number.c . "_s.leftJustified(64, u'.'));
}

void Ticks(benchmark::internal::Benchmark* work) {
    work->Unit(benchmark::kMicrosecond)->Iterations(TickCount);
}

} // namespace

BENCHMARK(AppendInTick)->Arg(0)->Arg(LargeLog)->Apply(Ticks);
BENCHMARK(AppendToLine)->Arg(LongLine)->Arg(VeryLongLine)->Apply(Ticks);

} // namespace rivenfall
