// The graph canvas over large loaded documents: building it (one addNode
// per node, one createGrahpJoint per link, layout included), one pointer
// move over a 5,000-node graph (hit test, highlight refresh, cursor) and
// one step of dragging a node that has 50 links.
#include "BenchFolder.h"
#include "../fuzz/DocumentLibrary.h"
#include "AppData.h"
#include "Block.h"
#include "DataNode.h"
#include "Graph.h"
#include "GraphAnchor.h"
#include "GraphNode.h"
#include "MsgMngr.h"
#include "jDir.h"
#include "jLog.h"
#include "mjl.h"
#include "BenchApplication.h"

#include <QApplication>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <vector>

namespace {

const char* const kTypes[] = {"Constant.Float", "Texture.Sample2D", "Math.Add", "Constant.Color", "Math.Lerp",
    "Util.Note", "Texture.SampleCube", "Math.Add", "Constant.Int", "Texture.Legacy"};
constexpr int kColumns = 100;
constexpr int kStepX = 260;
constexpr int kStepY = 220;

class Random {
public:
    uint32_t next(uint32_t bound)
    {
        m_state = m_state * 6364136223846793005ull + 1442695040888963407ull;
        return static_cast<uint32_t>(m_state >> 33) % bound;
    }

private:
    uint64_t m_state = 7;
};

// A data root holding the document block library, removed at exit.
class BenchRoot {
public:
    BenchRoot()
    {
        m_path = makeBenchFolder("graph-bench");
        DocumentLibrary::install(m_path);
        jDir::setProjectRoot(m_path);
        jLog::setStderrEnabled(false);
        if (!AppData::get()->reloadBlocks())
            std::abort();
    }
    ~BenchRoot()
    {
        std::error_code ec;
        std::filesystem::remove_all(m_path, ec);
    }

private:
    std::string m_path;
};

// Every input path takes a joint from one of the 50 nodes before it, as
// the document benchmark's graphs do; nodes sit on a grid.
jString documentText(int count)
{
    static const BenchRoot root;
    AppData& doc = *AppData::get();
    doc.clear();
    Random random;
    std::vector<DataNode*> nodes;
    for (int i = 0; i < count; ++i) {
        DataNode& node = *doc.createNode(kTypes[i % std::size(kTypes)]);
        node.setPosX((i % kColumns) * kStepX);
        node.setPosY((i / kColumns) * kStepY);
        if (i % 7 == 0)
            node.setName(jFormat("Node %d", i));
        const auto earlier = static_cast<uint32_t>(std::min<size_t>(nodes.size(), 50));
        for (size_t k = 0; earlier > 0 && k < node.getInputPathCount(); ++k) {
            DataNode& source = *nodes[nodes.size() - 1 - random.next(earlier)];
            doc.createJoint(source.getOutputPath(0), node.getInputPath(k));
        }
        nodes.push_back(&node);
    }
    Package file;
    doc.write_editor(file);
    doc.write_blueprint(file);
    return mjl::toText(file);
}

void loadDocument(int count)
{
    const jString text = documentText(count);
    mjl file;
    if (!file.parse(text, "bench.mat") || !AppData::get()->load_document(*file.getRoot(), "bench.mat"))
        std::abort();
}

void fill(Graph& graph)
{
    const AppData& doc = *AppData::get();
    for (const auto& node : doc.getNodes())
        graph.addNode(new GraphNode(node.get(), Graph::kWhite));
    for (const auto& joint : doc.getJoints())
        graph.createGrahpJoint(joint.get());
}

std::unique_ptr<Graph> makeGraph()
{
    benchApplication("GraphBench");
    auto graph = std::make_unique<Graph>(nullptr, kColumns * kStepX, 50 * kStepY + kStepY);
    fill(*graph);
    graph->refreshHighlight(-1, -1);
    MsgMngr::instance().clearQueue();
    return graph;
}

void BM_BuildGraph(benchmark::State& state)
{
    benchApplication("GraphBench");
    loadDocument(10000);
    Graph graph(nullptr, kColumns * kStepX, 100 * kStepY);
    for (auto _ : state) {
        state.PauseTiming();
        graph.clear();
        MsgMngr::instance().clearQueue();
        state.ResumeTiming();
        fill(graph);
    }
    state.counters["nodes"] = static_cast<double>(graph.getNodes().size());
    state.counters["joints"] = static_cast<double>(graph.getJoints().size());
    graph.clear();
    MsgMngr::instance().clearQueue();
}
BENCHMARK(BM_BuildGraph)->Unit(benchmark::kMillisecond);

// Pointer positions spread over the graph: on frames, on anchors, on the
// empty canvas between nodes (where the joints are tested).
std::vector<UIEventMouse> pointerPath(const Graph& graph)
{
    std::vector<UIEventMouse> path;
    const auto& nodes = graph.getNodes();
    for (size_t i = 0; i < nodes.size(); i += 97) {
        const GraphNode& node = *nodes[i];
        const int points[3][2] = {{node.getX() + node.getWidth() / 2, node.getY() + 3},
            {node.getX(), node.getY() + 40}, {node.getX() + node.getWidth() + 30, node.getY() + 60}};
        for (const auto& p : points)
            path.emplace_back(p[0], p[1], p[0], p[1], 0u);
    }
    return path;
}

void BM_PointerMove(benchmark::State& state)
{
    loadDocument(5000);
    const std::unique_ptr<Graph> graph = makeGraph();
    std::vector<UIEventMouse> path = pointerPath(*graph);
    size_t step = 0;
    for (auto _ : state) {
        graph->onMouseMove(path[step]);
        step = (step + 1) % path.size();
    }
    state.counters["nodes"] = static_cast<double>(graph->getNodes().size());
    state.counters["joints"] = static_cast<double>(graph->getJoints().size());
}
BENCHMARK(BM_PointerMove)->Unit(benchmark::kMicrosecond);

// One node in the middle of a 5,000-node graph with 50 links to others.
void BM_DragNodeWith50Links(benchmark::State& state)
{
    loadDocument(5000);
    AppData& doc = *AppData::get();
    DataNode* hub = doc.findNode(2550);
    if (!hub || hub->getOutputPathCount() == 0)
        std::abort();
    int linked = 0;
    for (const auto& node : doc.getNodes()) {
        if (linked == 50)
            break;
        if (node.get() != hub && node->getInputPathCount() > 0 && !doc.findJointTo(node->getInputPath(0))) {
            doc.createJoint(hub->getOutputPath(0), node->getInputPath(0));
            ++linked;
        }
    }
    const std::unique_ptr<Graph> graph = makeGraph();
    GraphNode* node = graph->findNode(hub->getId());
    const int x = node->getX() + node->getWidth() / 2;
    const int y = node->getY() + 3;
    UIEventMouse press(x, y, x, y, UIEventMouse::kLeft);
    graph->onMouseDown(press);
    int offset = 0;
    for (auto _ : state) {
        offset = offset == 0 ? 7 : 0;
        UIEventMouse move(x + offset, y + offset, x + offset, y + offset, UIEventMouse::kLeft);
        graph->onMouseMove(move);
        MsgMngr::instance().clearQueue();
    }
    state.counters["links"] = static_cast<double>(node->getJoints().size());
}
BENCHMARK(BM_DragNodeWith50Links)->Unit(benchmark::kMicrosecond);

} // namespace
