// The editor's problem list after an edit: the structure check of a
// 10,000-node document (cycles, stage nodes, unlinked inputs), which runs
// after every node or link edit.
#include "AppData.h"
#include "DataNode.h"
#include "DocumentProblems.h"
#include "jDir.h"
#include "jLog.h"

#include <benchmark/benchmark.h>

#include <vector>

namespace {

void BM_StructureCheck10000(benchmark::State& state)
{
    jDir::setProjectRoot(MATERIAL_SOURCE_ROOT);
    jLog::setStderrEnabled(false);
    AppData& doc = *AppData::get();
    if (!doc.init()) {
        state.SkipWithError("the block library did not load");
        return;
    }
    doc.createNode("Stage.PixelInput");
    DataNode* output = doc.createNode("Stage.PixelOutput");
    std::vector<DataNode*> nodes;
    for (int i = 0; i < 10000; ++i) {
        const bool add = i % 3 == 2;
        DataNode* node = doc.createNode(add ? "Math.Add" : "Constant.Color");
        if (add) {
            doc.createJoint(nodes[i - 2]->getOutputPath(0), node->getInputPath(0));
            doc.createJoint(nodes[i - 1]->getOutputPath(0), node->getInputPath(1));
        }
        nodes.push_back(node);
    }
    doc.createJoint(nodes.back()->getOutputPath(0), output->getInputPath(0));
    DocumentProblems problems;
    for (auto _ : state)
        problems.afterEdit(doc);
    state.counters["problems"] = static_cast<double>(problems.getEntries().size());
    doc.init();
}
BENCHMARK(BM_StructureCheck10000)->Unit(benchmark::kMillisecond);

} // namespace
