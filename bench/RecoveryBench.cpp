// The recovery copy of a 1,000-node document (target: under 10 ms): the part
// the UI thread does (the document's recovery package and its text), and
// the whole write: that part, then the editor's writer thread writing the
// file atomically, waited for.
#include "AppData.h"
#include "DataNode.h"
#include "Package.h"
#include "RecoveryWriter.h"
#include "jDir.h"
#include "jLog.h"
#include "mjl.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <vector>

namespace {

constexpr int kNodes = 1000;

AppData& documentOf1000Nodes()
{
    static AppData& doc = [] () -> AppData& {
        jDir::setProjectRoot(MATERIAL_SOURCE_ROOT);
        jLog::setStderrEnabled(false);
        AppData& document = *AppData::get();
        if (!document.init() || !document.load("data/materials/metal_gold.mat"))
            std::abort();
        document.createStates();
        std::vector<DataNode*> nodes;
        const int added = kNodes - static_cast<int>(document.getNodeCount());
        for (int i = 0; i < added; ++i) {
            DataNode* node = document.createNode(i % 3 == 2 ? "Math.Add" : "Constant.Float");
            node->setPosition(40000 + (i % 100) * 220, 40000 + (i / 100) * 140);
            if (i % 3 == 2) {
                document.createJoint(nodes[i - 2]->getOutputPath(0), node->getInputPath(0));
                document.createJoint(nodes[i - 1]->getOutputPath(0), node->getInputPath(1));
            }
            nodes.push_back(node);
        }
        return document;
    }();
    return doc;
}

void BM_RecoveryCopyText1000Nodes(benchmark::State& state)
{
    AppData& doc = documentOf1000Nodes();
    size_t bytes = 0;
    for (auto _ : state) {
        Package root;
        doc.writeRecovery(root);
        const jString text = mjl::toText(root);
        bytes = text.size();
        benchmark::DoNotOptimize(text.data());
    }
    state.counters["bytes"] = static_cast<double>(bytes);
    state.counters["nodes"] = static_cast<double>(doc.getNodeCount());
}
BENCHMARK(BM_RecoveryCopyText1000Nodes)->Unit(benchmark::kMillisecond);

void BM_RecoveryWrite1000Nodes(benchmark::State& state)
{
    AppData& doc = documentOf1000Nodes();
    const std::filesystem::path file = std::filesystem::temp_directory_path() / "recovery-bench.mat";
    RecoveryWriter writer;
    for (auto _ : state) {
        Package root;
        doc.writeRecovery(root);
        writer.write(file.string(), mjl::toText(root));
        writer.flush();
    }
    if (!writer.takeFailure().empty())
        state.SkipWithError("the recovery copy could not be written");
    std::filesystem::remove(file);
}
BENCHMARK(BM_RecoveryWrite1000Nodes)->Unit(benchmark::kMillisecond);

} // namespace
