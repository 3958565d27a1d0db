// The document's edit history on a 10,000-node document: the memory that
// 1,000 edits of every kind hold (counter "history_bytes", target under
// 20 MB), and one undo followed by one redo of a node removed with its links.
#include "AppData.h"
#include "DataNode.h"
#include "jDir.h"
#include "jLog.h"

#include <benchmark/benchmark.h>

#include <random>
#include <vector>

namespace {

constexpr int kNodes = 10000;
constexpr int kEdits = 1000;

// 10,000 constants and additions in rows, each addition linked to the two
// nodes before it; the history starts empty.
std::vector<DataNode*> buildDocument(AppData& doc)
{
    jDir::setProjectRoot(MATERIAL_SOURCE_ROOT);
    jLog::setStderrEnabled(false);
    if (!doc.init())
        std::abort();
    std::vector<DataNode*> nodes;
    nodes.reserve(kNodes);
    for (int i = 0; i < kNodes; ++i) {
        DataNode* node = doc.createNode(i % 3 == 2 ? "Math.Add" : "Constant.Float");
        node->setPosition(40000 + (i % 100) * 220, 40000 + (i / 100) * 140);
        if (i % 3 == 2) {
            doc.createJoint(nodes[i - 2]->getOutputPath(0), node->getInputPath(0));
            doc.createJoint(nodes[i - 1]->getOutputPath(0), node->getInputPath(1));
        }
        nodes.push_back(node);
    }
    doc.getHistory().clear();
    return nodes;
}

// One edit of each kind in turn, as the canvas and the panels make them.
void edit(AppData& doc, std::vector<DataNode*>& nodes, std::mt19937& random, int i)
{
    EditHistory::Group gesture(doc.getHistory());
    DataNode* node = nodes[random() % nodes.size()];
    switch (i % 6) {
    case 0:
        for (int step = 0; step < 20; ++step)
            node->setPosition(node->getPosX() + 3, node->getPosY() + 2);
        break;
    case 1:
        if (node->getVariableCount() > 0)
            node->setVariableValueOnly(0, std::to_string(random() % 1000) + ".25");
        break;
    case 2:
        doc.setRenderOrder(static_cast<int32_t>(random() % 10));
        break;
    case 3: {
        DataNode* added = doc.createNode("Constant.Float");
        added->setPosition(100, 100);
        nodes.push_back(added);
        break;
    }
    case 4:
        if (node->getOutputPathCount() > 0 && nodes.back()->getInputPathCount() > 0)
            doc.createJoint(node->getOutputPath(0), nodes.back()->getInputPath(0));
        break;
    default:
        std::swap(nodes[random() % nodes.size()], nodes.back());
        doc.destroyNode(nodes.back());
        nodes.pop_back();
        break;
    }
}

void BM_History1000EditsOf10000Nodes(benchmark::State& state)
{
    AppData& doc = *AppData::get();
    size_t bytes = 0;
    for (auto _ : state) {
        state.PauseTiming();
        std::vector<DataNode*> nodes = buildDocument(doc);
        std::mt19937 random(19);
        state.ResumeTiming();
        for (int i = 0; i < kEdits; ++i)
            edit(doc, nodes, random, i);
        bytes = doc.getHistory().bytes();
    }
    state.counters["history_bytes"] = static_cast<double>(bytes);
    state.counters["steps"] = static_cast<double>(doc.getHistory().getStepCount());
}
BENCHMARK(BM_History1000EditsOf10000Nodes)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_UndoRedoNodeRemovalOf10000Nodes(benchmark::State& state)
{
    AppData& doc = *AppData::get();
    std::vector<DataNode*> nodes = buildDocument(doc);
    doc.destroyNode(nodes[kNodes / 2 + 3]);
    for (auto _ : state) {
        if (!doc.undo() || !doc.redo())
            state.SkipWithError("nothing to undo or redo");
    }
    state.counters["nodes"] = static_cast<double>(doc.getNodeCount());
    state.counters["joints"] = static_cast<double>(doc.getJointCount());
}
BENCHMARK(BM_UndoRedoNodeRemovalOf10000Nodes)->Unit(benchmark::kMicrosecond);

} // namespace
