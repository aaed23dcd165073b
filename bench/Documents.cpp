#include "Bench.h"

#include "system/PropertyBag.h"

namespace rivenfall {

namespace {

QByteArray SaveTree(const DataNodes& compilers) {
    return compilers.SaveToBag().Contents();
}

void Save(benchmark::State& state) {
    DataNodes compilers;
    FillCompilers(compilers, static_cast<int>(state.range(0)));
    for (auto _ : state) {
        DoNotOptimize(SaveTree(compilers));
    }
}

void Load(benchmark::State& state) {
    DataNodes compilers;
    FillCompilers(compilers, static_cast<int>(state.range(0)));
    const QByteArray bytes = SaveTree(compilers);
    for (auto _ : state) {
        PropertyBag bag;
        bag.SetContents(bytes);
        DataNodes loaded;
        loaded.LoadFromBag(bag);
        DoNotOptimize(loaded.Count());
    }
}

void Sizes(benchmark::internal::Benchmark* work) {
    work->Arg(1'000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
}

} // namespace

BENCHMARK(Save)->Apply(Sizes);
BENCHMARK(Load)->Apply(Sizes);

} // namespace rivenfall
