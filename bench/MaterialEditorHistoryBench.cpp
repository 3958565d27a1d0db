// Undo and redo in the editor window on a 10,000-node document, the canvas
// following included (target: one undo or one redo under 20 ms): a node
// removed with its two links, the same with the window painted after each,
// and a drag of a node.
#include "AppData.h"
#include "DataNode.h"
#include "Graph.h"
#include "GraphNode.h"
#include "MaterialEditorWindow.h"
#include "MsgMngr.h"
#include "WindowlessRoot.h"
#include "jDir.h"
#include "jLog.h"
#include "BenchApplication.h"

#include <QApplication>
#include <QPixmap>

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <memory>
#include <vector>

namespace {

constexpr int kNodes = 10000;

void drain()
{
    while (MsgMngr::instance().getPendingCount() > 0)
        MsgMngr::instance().dispatch();
}

// A window showing 10,000 constants and additions, each addition linked to
// the two nodes before it, as the message 6 rebuild shows a loaded document.
std::unique_ptr<MaterialEditorWindow> makeWindow(WindowlessRoot& host)
{
    benchApplication("MaterialEditorHistoryBench");
    jDir::setProjectRoot(MATERIAL_SOURCE_ROOT);
    jLog::setStderrEnabled(false);
    auto window = std::make_unique<MaterialEditorWindow>(&host);
    window->resize(1440, 900);
    AppData& doc = *AppData::get();
    std::vector<DataNode*> nodes;
    for (int i = 0; i < kNodes; ++i) {
        DataNode* node = doc.createNode(i % 3 == 2 ? "Math.Add" : "Constant.Float");
        node->setPosition(40000 + (i % 100) * 220, 40000 + (i / 100) * 140);
        if (i % 3 == 2) {
            doc.createJoint(nodes[i - 2]->getOutputPath(0), node->getInputPath(0));
            doc.createJoint(nodes[i - 1]->getOutputPath(0), node->getInputPath(1));
        }
        nodes.push_back(node);
    }
    MsgMngr::instance().post(MaterialEditorWindow::kMsgLoaded);
    drain();
    return window;
}

// An addition with its two input links.
GraphNode* middleAddition(Graph& graph)
{
    return graph.findNode(kNodes / 2 + 3);
}

void BM_UndoRedoNodeRemoval(benchmark::State& state)
{
    WindowlessRoot host{1440, 900};
    auto window = makeWindow(host);
    window->getGraph()->removeNode(middleAddition(*window->getGraph()));
    drain();
    for (auto _ : state) {
        if (!window->undo() || !window->redo())
            state.SkipWithError("nothing to undo or redo");
        drain();
    }
    state.counters["nodes"] = static_cast<double>(window->getGraph()->getNodes().size());
}
BENCHMARK(BM_UndoRedoNodeRemoval)->Unit(benchmark::kMillisecond);

void BM_UndoRedoNodeRemovalPainted(benchmark::State& state)
{
    WindowlessRoot host{1440, 900};
    auto window = makeWindow(host);
    window->getGraph()->removeNode(middleAddition(*window->getGraph()));
    drain();
    for (auto _ : state) {
        for (bool (MaterialEditorWindow::*step)() : {&MaterialEditorWindow::undo, &MaterialEditorWindow::redo}) {
            if (!((*window).*step)())
                state.SkipWithError("nothing to undo or redo");
            drain();
            QPixmap shown = window->grab();
            benchmark::DoNotOptimize(shown.cacheKey());
        }
    }
}
BENCHMARK(BM_UndoRedoNodeRemovalPainted)->Unit(benchmark::kMillisecond);

void BM_UndoRedoDrag(benchmark::State& state)
{
    WindowlessRoot host{1440, 900};
    auto window = makeWindow(host);
    GraphNode* node = middleAddition(*window->getGraph());
    {
        EditHistory::Group drag(AppData::get()->getHistory());
        for (int i = 1; i <= 30; ++i)
            node->setPosition(node->getX() + 4, node->getY() + 2);
    }
    for (auto _ : state) {
        if (!window->undo() || !window->redo())
            state.SkipWithError("nothing to undo or redo");
        drain();
    }
}
BENCHMARK(BM_UndoRedoDrag)->Unit(benchmark::kMillisecond);

} // namespace
