// Reading and writing a 10,000-node editor document held in memory: mixed
// constant, texture, maths and note blocks, set variables, names and
// positions, and about 1.2 joints per node.
#include "BenchFolder.h"
#include "../fuzz/DocumentLibrary.h"
#include "AppData.h"
#include "Block.h"
#include "DataNode.h"
#include "jDir.h"
#include "jLog.h"
#include "mjl.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>

namespace {

constexpr int kNodes = 10000;

const char* const kTypes[] = {"Constant.Float", "Texture.Sample2D", "Math.Add", "Constant.Color", "Math.Lerp",
    "Util.Note", "Texture.SampleCube", "Math.Add", "Constant.Int", "Texture.Legacy"};
const char* const kWraps[] = {"repeat", "clamp", "mirror"};
const char* const kFilters[] = {"bilinear", "trilinear"};

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
        m_path = makeBenchFolder("document-bench");
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

void fillVariables(DataNode& node, int index, Random& random)
{
    const jString type = node.getBlock()->getType();
    if (type.rfind("Texture.", 0) == 0) {
        node.setVariableValue(0, jFormat("data/textures/set%d/map_%d.dds", index % 40, index), "",
            kWraps[random.next(3)], kFilters[random.next(2)], random.next(4) == 0 ? 4 : 1, random.next(8) == 0);
        if (DataVariable::Value* tag = node.getVariable(0)->getSubValue(0))
            tag->setValue(jFormat("layer%d", index % 5));
    } else if (type == "Constant.Color") {
        node.setVariableValueOnly(0, jFormat("%g,%g,%g,1", random.next(100) / 100.0, random.next(100) / 100.0,
                                        random.next(100) / 100.0));
    } else if (type == "Util.Note") {
        node.setVariableValueOnly(1, jFormat("note %d", index));
    } else if (node.getVariableCount() > 0) {
        node.setVariableValueOnly(0, jFormat("%g", random.next(1000) / 250.0));
    }
}

// Every input path takes a joint from an earlier node's output; each note
// also links its output link to the previous note's input link.
void linkNode(AppData& doc, const std::vector<DataNode*>& nodes, DataNode*& previousNote, DataNode& node,
    Random& random)
{
    const auto earlier = static_cast<uint32_t>(std::min<size_t>(nodes.size(), 50));
    for (size_t i = 0; earlier > 0 && i < node.getInputPathCount(); ++i) {
        DataNode& source = *nodes[nodes.size() - 1 - random.next(earlier)];
        doc.createJoint(source.getOutputPath(0), node.getInputPath(i));
    }
    if (node.getBlock()->getType() == "Util.Note") {
        if (previousNote)
            doc.createJoint(previousNote->getOutputLink(0), node.getInputLink(0));
        previousNote = &node;
    }
}

const jString& documentText()
{
    static const BenchRoot root;
    static const jString text = [] {
        AppData& doc = *AppData::get();
        doc.clear();
        Random random;
        std::vector<DataNode*> nodes;
        DataNode* previousNote = nullptr;
        for (int i = 0; i < kNodes; ++i) {
            DataNode& node = *doc.createNode(kTypes[i % std::size(kTypes)]);
            node.setPosX((i % 100) * 180 - 9000);
            node.setPosY((i / 100) * 120);
            if (i % 7 == 0)
                node.setName(jFormat("Node %d", i));
            fillVariables(node, i, random);
            linkNode(doc, nodes, previousNote, node, random);
            nodes.push_back(&node);
        }
        Package file;
        doc.write_editor(file);
        doc.write_blueprint(file);
        return mjl::toText(file);
    }();
    return text;
}

void loadText(const jString& text)
{
    mjl file;
    if (!file.parse(text, "bench.mat") || !AppData::get()->load_document(*file.getRoot(), "bench.mat"))
        std::abort();
}

void setCounters(benchmark::State& state)
{
    const AppData& doc = *AppData::get();
    state.counters["nodes"] = static_cast<double>(doc.getNodeCount());
    state.counters["joints"] = static_cast<double>(doc.getJointCount());
    state.counters["bytes"] = static_cast<double>(documentText().size());
}

// Parse and build, as opening a file does after reading it; the previous
// document is cleared outside the timing.
void BM_ReadDocument(benchmark::State& state)
{
    const jString& text = documentText();
    for (auto _ : state) {
        state.PauseTiming();
        AppData::get()->clear();
        state.ResumeTiming();
        loadText(text);
    }
    setCounters(state);
}
BENCHMARK(BM_ReadDocument)->Unit(benchmark::kMillisecond);

// The same, replacing the loaded document: includes freeing the old graph.
void BM_ReadDocumentReplacing(benchmark::State& state)
{
    const jString& text = documentText();
    for (auto _ : state)
        loadText(text);
    setCounters(state);
}
BENCHMARK(BM_ReadDocumentReplacing)->Unit(benchmark::kMillisecond);

void BM_ParseDocumentText(benchmark::State& state)
{
    const jString& text = documentText();
    for (auto _ : state) {
        mjl file;
        benchmark::DoNotOptimize(file.parse(text, "bench.mat"));
    }
}
BENCHMARK(BM_ParseDocumentText)->Unit(benchmark::kMillisecond);

void BM_WriteDocument(benchmark::State& state)
{
    loadText(documentText());
    const AppData& doc = *AppData::get();
    for (auto _ : state) {
        Package file;
        doc.write_editor(file);
        doc.write_blueprint(file);
        jString text = mjl::toText(file);
        benchmark::DoNotOptimize(text.data());
    }
    setCounters(state);
}
BENCHMARK(BM_WriteDocument)->Unit(benchmark::kMillisecond);

} // namespace
