// The live preview on a 300-node material with the bundled block library:
// from an edit of a colour constant to the preview frame that shows it
// (in-memory generation, material, program build, frame), the quiet period
// excluded; and the same for an edit that changes the program's code.
#include "BenchFolder.h"
#include "AppData.h"
#include "Block.h"
#include "DataAnchor.h"
#include "DataNode.h"
#include "Graph.h"
#include "GraphNode.h"
#include "MatViewport.h"
#include "MaterialEditorWindow.h"
#include "MsgMngr.h"
#include "Package.h"
#include "WindowlessRoot.h"
#include "jDir.h"
#include "jLog.h"
#include "mjl.h"
#include "BenchApplication.h"

#include <QApplication>

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

namespace {

constexpr int kNodes = 300;

// data/live300.mat in a temporary project root: the pixel stage nodes and
// 298 colour constants and additions, each addition summing the two nodes
// before it, the last one feeding the base colour.
const jString& projectRoot()
{
    static const jString root = [] {
        const std::string folder = makeBenchFolder("live-bench");
        jDir::setProjectRoot(folder);
        jLog::setStderrEnabled(false);
        AppData& doc = *AppData::get();
        if (!doc.init())
            std::abort();
        doc.createNode("Stage.PixelInput");
        DataNode* output = doc.createNode("Stage.PixelOutput");
        std::vector<DataNode*> nodes;
        for (int i = 0; i < kNodes - 2; ++i) {
            const bool add = i % 3 == 2;
            DataNode* node = doc.createNode(add ? "Math.Add" : "Constant.Color");
            node->setPosX(40000 + (i % 20) * 220);
            node->setPosY(40000 + (i / 20) * 140);
            if (add) {
                doc.createJoint(nodes[i - 2]->getOutputPath(0), node->getInputPath(0));
                doc.createJoint(nodes[i - 1]->getOutputPath(0), node->getInputPath(1));
            } else {
                node->setVariableValueOnly(0, "0.01,0.01,0.01,1");
            }
            nodes.push_back(node);
        }
        doc.createJoint(nodes.back()->getOutputPath(0), output->getInputPath(0));
        if (!doc.save("data/live300.mat"))
            std::abort();
        doc.init();
        return jString(folder);
    }();
    return root;
}

void drain()
{
    while (MsgMngr::instance().getPendingCount() > 0)
        MsgMngr::instance().dispatch();
}

struct LiveWindow {
    WindowlessRoot host{1440, 900};
    std::unique_ptr<MaterialEditorWindow> window;

    LiveWindow()
    {
        benchApplication("LivePreviewBench");
        const jString& root = projectRoot();
        window = std::make_unique<MaterialEditorWindow>(&host);
        window->load(root + "/data/live300.mat");
        drain();
        window->update(0.0f);
    }

    size_t builds() const
    {
        const Render* render = window->getPreview()->getRender();
        return render ? render->getProgramBuildCount() : 0;
    }

    // The quiet period passes in one frame; the next frame shows the copy.
    bool followEdit()
    {
        const size_t renders = window->getPreview()->getRenderCount();
        window->update(LivePreview::kQuietSeconds);
        drain();
        window->update(0.0f);
        return window->getPreview()->getRenderCount() > renders;
    }
};

void BM_LiveColourEdit300(benchmark::State& state)
{
    LiveWindow live;
    GraphNode* colour = live.window->getGraph()->getNodes()[2];
    int step = 0;
    const size_t builds = live.builds();
    for (auto _ : state) {
        colour->getData()->setVariableValueOnly(0, (step++ % 2) ? "1,0,0,1" : "0,1,0,1");
        MsgMngr::instance().postPtr(11, colour);
        drain();
        if (!live.followEdit())
            state.SkipWithError("the preview showed no new frame");
    }
    state.counters["builds/edit"] = benchmark::Counter(static_cast<double>(live.builds() - builds),
        benchmark::Counter::kAvgIterations);
}
BENCHMARK(BM_LiveColourEdit300)->Unit(benchmark::kMillisecond);

// A link removed and made again: the program's code changes every time.
void BM_LiveLinkEdit300(benchmark::State& state)
{
    LiveWindow live;
    AppData& doc = *AppData::get();
    DataNode* output = doc.findNodeByUsage(BLOCK_USAGE_PS_END);
    DataNode* colour = live.window->getGraph()->getNodes()[3]->getData();
    int step = 0;
    const size_t builds = live.builds();
    for (auto _ : state) {
        DataAnchor* emissive = output->getInputPath(5);
        if (step++ % 2 == 0)
            doc.createJoint(colour->getOutputPath(0), emissive);
        else
            doc.destroyJoint(doc.findJointTo(emissive));
        MsgMngr::instance().post(Graph::kMsgLinkMade);
        drain();
        if (!live.followEdit())
            state.SkipWithError("the preview showed no new frame");
    }
    state.counters["builds/edit"] = benchmark::Counter(static_cast<double>(live.builds() - builds),
        benchmark::Counter::kAvgIterations);
}
BENCHMARK(BM_LiveLinkEdit300)->Unit(benchmark::kMillisecond);

} // namespace
