// The editor window: building it and showing a bundled sample up to its
// first complete frame (canvas painted, preview rendered); opening a
// 10,000-node document (load, the message 6 rebuild, the first paint); and
// an idle window, whose frames must repaint nothing.
#include "BenchFolder.h"
#include "AppData.h"
#include "DataNode.h"
#include "Graph.h"
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
#include <QEvent>
#include <QPixmap>

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

namespace {

constexpr int kNodes = 10000;
constexpr int kWidth = 1440;
constexpr int kHeight = 900;

// Paint events delivered anywhere in the application.
class PaintCounter : public QObject {
public:
    PaintCounter() { benchApplication("MaterialEditorBench").installEventFilter(this); }
    ~PaintCounter() override { benchApplication("MaterialEditorBench").removeEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            ++count;
        return false;
    }
    long count = 0;
};

// A project root in a temporary folder (the bundled data is read through the
// fallback) holding big.mat: 10,000 constants and additions in rows, each
// addition linked to the two nodes before it.
const jString& projectRoot()
{
    static const jString root = [] {
        const std::string folder = makeBenchFolder("editor-bench");
        jDir::setProjectRoot(folder);
        jLog::setStderrEnabled(false);
        AppData& doc = *AppData::get();
        if (!doc.init())
            std::abort();
        std::vector<DataNode*> nodes;
        for (int i = 0; i < kNodes; ++i) {
            DataNode* node = doc.createNode(i % 3 == 2 ? "Math.Add" : "Constant.Float");
            node->setPosX(40000 + (i % 100) * 220);
            node->setPosY(40000 + (i / 100) * 140);
            if (i % 3 == 2) {
                doc.createJoint(nodes[i - 2]->getOutputPath(0), node->getInputPath(0));
                doc.createJoint(nodes[i - 1]->getOutputPath(0), node->getInputPath(1));
            }
            nodes.push_back(node);
        }
        Package file;
        doc.write_editor(file);
        doc.write_blueprint(file);
        if (!mjl::writeFileAtomic(folder + "/big.mat", mjl::toText(file)))
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

std::unique_ptr<MaterialEditorWindow> makeWindow(WindowlessRoot& root)
{
    auto window = std::make_unique<MaterialEditorWindow>(&root);
    window->resize(kWidth, kHeight);
    return window;
}

// One frame as the host runs it, then the pending paint.
void frame(MaterialEditorWindow& window)
{
    window.update(0.016f);
    drain();
    window.render();
}

void BM_OpenSampleToFirstFrame(benchmark::State& state)
{
    benchApplication("MaterialEditorBench");
    const jString& root = projectRoot();
    WindowlessRoot host{kWidth, kHeight};
    for (auto _ : state) {
        auto window = makeWindow(host);
        window->load(root + "/data/materials/metal_gold.mat");
        frame(*window);
        QPixmap shown = window->grab();
        benchmark::DoNotOptimize(shown.cacheKey());
        if (window->getPreview()->getRenderCount() == 0)
            state.SkipWithError("the preview rendered no frame");
        state.PauseTiming();
        window.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_OpenSampleToFirstFrame)->Unit(benchmark::kMillisecond);

void BM_Open10000Nodes(benchmark::State& state)
{
    benchApplication("MaterialEditorBench");
    const jString& root = projectRoot();
    WindowlessRoot host{kWidth, kHeight};
    auto window = makeWindow(host);
    for (auto _ : state) {
        window->load(root + "/big.mat");
        drain();
        QPixmap shown = window->grab();
        benchmark::DoNotOptimize(shown.cacheKey());
    }
    state.counters["nodes"] = static_cast<double>(window->getGraph()->getNodes().size());
}
BENCHMARK(BM_Open10000Nodes)->Unit(benchmark::kMillisecond);

// Sixty frames of a shown window with a still sample: the repaints counter
// must stay 0.
void BM_IdleFrames(benchmark::State& state)
{
    benchApplication("MaterialEditorBench");
    const jString& root = projectRoot();
    WindowlessRoot host{kWidth, kHeight};
    auto window = makeWindow(host);
    window->show();
    window->load(root + "/data/materials/metal_gold.mat");
    for (int i = 0; i < 10; ++i) {
        frame(*window);
        QApplication::processEvents();
    }
    PaintCounter paints;
    long frames = 0;
    for (auto _ : state) {
        for (int i = 0; i < 60; ++i) {
            frame(*window);
            QApplication::processEvents();
        }
        frames += 60;
    }
    state.counters["repaints"] = static_cast<double>(paints.count);
    state.counters["frames"] = static_cast<double>(frames);
}
BENCHMARK(BM_IdleFrames)->Unit(benchmark::kMillisecond);

} // namespace
