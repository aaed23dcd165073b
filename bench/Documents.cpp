#include "Bench.h"

#include "Sample.h"
#include "document/TreeBags.h"

#include <QCborStreamReader>
#include <QCborStreamWriter>

#include <vector>

namespace rivenfall {

namespace {

/// A node's content without its place in a tree.
struct Value {
    QString Text;
    bool Active;
};

std::vector<Value> SampleValues(int count) {
    std::vector<Value> values;
    VisitSample(count, [&](int, const QString& text, bool active) {
        values.push_back({text, active});
    });
    return values;
}

QByteArray SaveTree(const DataNodes& compilers) {
    PropertyBag bag;
    TreeBags::SaveToBag(compilers, bag);
    return bag.Contents();
}

QByteArray SaveFlat(const std::vector<Value>& values) {
    QByteArray bytes;
    QCborStreamWriter writer(&bytes);
    writer.startArray();
    for (const Value& value : values) {
        writer.append(value.Text);
        writer.append(value.Active);
    }
    writer.endArray();
    return bytes;
}

std::vector<Value> LoadFlat(const QByteArray& bytes) {
    std::vector<Value> values;
    QCborStreamReader reader(bytes);
    reader.enterContainer();
    while (reader.hasNext()) {
        QString text;
        for (auto part = reader.readString(); part.status == QCborStreamReader::Ok;
             part = reader.readString()) {
            text += part.data;
        }
        const bool active = reader.toBool();
        reader.next();
        values.push_back({std::move(text), active});
    }
    return values;
}

void CountNodes(benchmark::State& state) {
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void Save(benchmark::State& state) {
    DataNodes compilers;
    FillCompilers(compilers, static_cast<int>(state.range(0)));
    for (auto _ : state) {
        DoNotOptimize(SaveTree(compilers));
    }
    CountNodes(state);
}

void SaveFlatStream(benchmark::State& state) {
    const std::vector<Value> values = SampleValues(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        DoNotOptimize(SaveFlat(values));
    }
    CountNodes(state);
}

void Load(benchmark::State& state) {
    DataNodes compilers;
    FillCompilers(compilers, static_cast<int>(state.range(0)));
    const QByteArray bytes = SaveTree(compilers);
    for (auto _ : state) {
        PropertyBag bag;
        bag.SetContents(bytes);
        DataNodes loaded;
        TreeBags::LoadFromBag(loaded, bag);
        DoNotOptimize(loaded.Count());
    }
    CountNodes(state);
}

void LoadFlatStream(benchmark::State& state) {
    const QByteArray bytes = SaveFlat(SampleValues(static_cast<int>(state.range(0))));
    for (auto _ : state) {
        DoNotOptimize(LoadFlat(bytes));
    }
    CountNodes(state);
}

void Sizes(benchmark::internal::Benchmark* work) {
    work->Arg(1'000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
}

} // namespace

BENCHMARK(Save)->Apply(Sizes);
BENCHMARK(SaveFlatStream)->Apply(Sizes);
BENCHMARK(Load)->Apply(Sizes);
BENCHMARK(LoadFlatStream)->Apply(Sizes);

} // namespace rivenfall
