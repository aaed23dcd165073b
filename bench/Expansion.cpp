#include "Bench.h"

#include "run/VariableExpander.h"

#include <QStringList>

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

constexpr int TextLength = 1 << 20;
constexpr int ReferenceCount = 20'000;
constexpr int VariableCount = 10;
/// What is left for the text between two references, which are eight characters each.
constexpr int FillerLength = TextLength / ReferenceCount - 8;

QString Filler() {
    return QString(FillerLength, u'x');
}

QStringList Values() {
    QStringList values;
    for (int number = 0; number < VariableCount; ++number) {
        values += u"/home/user/project/%1"_s.arg(number);
    }
    return values;
}

QString AppendPlainly(const QString& filler, const QStringList& values) {
    QString result;
    for (int number = 0; number < ReferenceCount; ++number) {
        result += filler;
        result += values[number % VariableCount];
    }
    return result;
}

void Expand(benchmark::State& state) {
    const RunningProgram program;
    const QStringList values = Values();
    QString text;
    for (int number = 0; number < ReferenceCount; ++number) {
        text += Filler() + u"${NAME%1}"_s.arg(number % VariableCount);
    }
    for (int number = 0; number < VariableCount; ++number) {
        program->Variables()->Add(u"NAME%1"_s.arg(number))->Childs()->Add(values[number]);
    }
    if (VariableExpander(*program->Variables()).Expand(text) != AppendPlainly(Filler(), values)) {
        state.SkipWithError("the expansion is wrong");
    }
    for (auto _ : state) {
        DoNotOptimize(VariableExpander(*program->Variables()).Expand(text));
    }
}

void ExpandByPlainAppends(benchmark::State& state) {
    const QString filler = Filler();
    const QStringList values = Values();
    for (auto _ : state) {
        DoNotOptimize(AppendPlainly(filler, values));
    }
}

} // namespace

BENCHMARK(Expand)->Unit(benchmark::kMillisecond);
BENCHMARK(ExpandByPlainAppends)->Unit(benchmark::kMillisecond);

} // namespace rivenfall
