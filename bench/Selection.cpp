#include "Bench.h"

#include "window/frmMain.h"

#include <QTest>
#include <QTreeView>

namespace rivenfall {

namespace {

constexpr int NodeCount = 100'000;
constexpr int StepCount = 200;
constexpr int FarDown = NodeCount / 2;

/// Brings the middle of the tree into view.
void ScrollToMiddle(frmMain& form) {
    form.tvwContent.Nodes().Item(FarDown)->EnsureVisible();
    form.tvwContent.Nodes().Item(FarDown)->SetSelected(true);
    ProcessEvents();
}

/// A press of the Down key in the value box, until the next node is on view.
void ArrowKey(benchmark::State& state) {
    RunningProgram program;
    program.OpenSample(NodeCount);
    frmMain& form = *program->Form();
    ScrollToMiddle(form);
    const int before = form.tvwContent.SelectedItem()->Index();
    for (auto _ : state) {
        QTest::keyClick(form.txtValue.Widget(), Qt::Key_Down);
        ProcessEvents();
    }
    if (form.tvwContent.SelectedItem()->Index() != before + state.iterations()) {
        state.SkipWithError("the selection didn't move");
    }
}

/// A click on one row after the other, until it is on view.
void NodeClick(benchmark::State& state) {
    RunningProgram program;
    program.OpenSample(NodeCount);
    frmMain& form = *program->Form();
    ScrollToMiddle(form);
    QTreeView& view = *qobject_cast<QTreeView*>(form.tvwContent.Widget());
    const int height = view.visualRect(view.indexAt({0, 0})).height();
    const QPoint firstRow(view.viewport()->width() / 4, height / 2);
    int step = 0;
    for (auto _ : state) {
        const Node* former = form.tvwContent.SelectedItem();
        QTest::mouseClick(view.viewport(), Qt::LeftButton, {},
                          firstRow + QPoint(0, step++ % 2 * height));
        ProcessEvents();
        if (form.tvwContent.SelectedItem() == former) {
            state.SkipWithError("the selection didn't move");
        }
    }
}

} // namespace

BENCHMARK(ArrowKey)->Unit(benchmark::kMillisecond)->Iterations(StepCount);
BENCHMARK(NodeClick)->Unit(benchmark::kMillisecond)->Iterations(StepCount);

} // namespace rivenfall
