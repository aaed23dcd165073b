#include "BareTree.h"
#include "Bench.h"

#include "window/frmMain.h"

#include <QTreeWidget>

namespace rivenfall {

namespace {

/// Builds the tree of the whole program anew until it is laid out and painted.
void Refresh(benchmark::State& state) {
    RunningProgram program;
    program.OpenSample(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        program->Refresh();
        ProcessEvents();
    }
}

/// Does the same to a bare widget of the same size.
void RefreshBareTree(benchmark::State& state) {
    const RunningProgram program;
    QTreeWidget tree;
    tree.setHeaderHidden(true);
    tree.setUniformRowHeights(true);
    tree.resize(program->Form()->tvwContent.Widget()->size());
    tree.show();
    ProcessEvents();
    for (auto _ : state) {
        tree.clear();
        FillBareTree(tree, static_cast<int>(state.range(0)));
        ProcessEvents();
    }
}

} // namespace

BENCHMARK(Refresh)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(RefreshBareTree)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

} // namespace rivenfall
