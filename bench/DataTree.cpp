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

/// Measures building by @p build, which fills the collection that it is given, and clearing.
template <typename Build>
void BuildAndClear(benchmark::State& state, Build build) {
    const std::vector<SampleNode> nodes = SampleNodes(state);
    DataNodes root;
    const double before = AllocatedBytes();
    build(root, nodes);
    state.counters["bytes"] = (AllocatedBytes() - before) / static_cast<double>(nodes.size());
    root.Clear();
    for (auto _ : state) {
        build(root, nodes);
        root.Clear();
    }
}

void BuildTree(benchmark::State& state) {
    BuildAndClear(state, [](DataNodes& compilers, const std::vector<SampleNode>& nodes) {
        DataNodes* level[] = {nullptr, &compilers, nullptr, nullptr};
        for (const SampleNode& each : nodes) {
            const std::shared_ptr<DataNode> node = level[each.Level]->Add(each.Text);
            if (each.Level < 3) {
                level[each.Level + 1] = node->Childs();
            }
        }
    });
}

void BuildSiblings(benchmark::State& state) {
    BuildAndClear(state, [](DataNodes& siblings, const std::vector<SampleNode>& nodes) {
        for (const SampleNode& each : nodes) {
            siblings.Add(each.Text);
        }
    });
}

void Sizes(benchmark::internal::Benchmark* work) {
    work->Arg(100'000)->Arg(400'000)->Unit(benchmark::kMillisecond);
}

} // namespace

BENCHMARK(BuildTree)->Apply(Sizes);
BENCHMARK(BuildSiblings)->Apply(Sizes);

} // namespace rivenfall
