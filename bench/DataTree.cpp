#include "Bench.h"

#include "Sample.h"

#include <malloc.h>
#include <vector>

namespace rivenfall {

namespace {

/// The bytes that are allocated now.
double AllocatedBytes() {
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

struct SampleNode {
    int Level;
    QString Text;
};

/// The sample's nodes. What is built of them shares their texts.
std::vector<SampleNode> SampleNodes(const benchmark::State& state) {
    std::vector<SampleNode> nodes;
    const auto keep = [&](int level, const QString& text, bool) { nodes.push_back({level, text}); };
    VisitSample(static_cast<int>(state.range(0)), keep);
    return nodes;
}

/// Measures building by @p build, which fills what it is given, and clearing.
template <typename Collection, typename Build, typename Clear>
void BuildAndClear(benchmark::State& state, Collection& collection, Build build, Clear clear) {
    const std::vector<SampleNode> nodes = SampleNodes(state);
    const double before = AllocatedBytes();
    build(nodes);
    state.counters["bytes"] = (AllocatedBytes() - before) / static_cast<double>(nodes.size());
    clear();
    for (auto _ : state) {
        build(nodes);
        DoNotOptimize(&collection);
        clear();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BuildTree(benchmark::State& state) {
    DataNodes compilers;
    const auto build = [&](const std::vector<SampleNode>& nodes) {
        DataNodes* level[] = {nullptr, &compilers, nullptr, nullptr};
        for (const SampleNode& each : nodes) {
            const std::shared_ptr<DataNode> node = level[each.Level]->Add(each.Text);
            if (each.Level < 3) {
                level[each.Level + 1] = node->Childs();
            }
        }
    };
    BuildAndClear(state, compilers, build, [&] { compilers.Clear(); });
}

void BuildSiblings(benchmark::State& state) {
    DataNodes siblings;
    const auto build = [&](const std::vector<SampleNode>& nodes) {
        for (const SampleNode& each : nodes) {
            siblings.Add(each.Text);
        }
    };
    BuildAndClear(state, siblings, build, [&] { siblings.Clear(); });
}

void BuildVector(benchmark::State& state) {
    std::vector<QString> texts;
    const auto build = [&](const std::vector<SampleNode>& nodes) {
        for (const SampleNode& each : nodes) {
            texts.push_back(each.Text);
        }
    };
    BuildAndClear(state, texts, build, [&] { std::vector<QString>().swap(texts); });
}

void Sizes(benchmark::internal::Benchmark* work) {
    work->Arg(100'000)->Arg(400'000)->Unit(benchmark::kMillisecond);
}

} // namespace

BENCHMARK(BuildTree)->Apply(Sizes);
BENCHMARK(BuildSiblings)->Apply(Sizes);
BENCHMARK(BuildVector)->Apply(Sizes);

} // namespace rivenfall
