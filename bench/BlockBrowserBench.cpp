// Building the block browser's tree from a large library: 5,000 block types
// named Group<g>.Kind<k>.Block<n> (50 groups of 10 kinds of 10 blocks), all
// listed, and filtered down to a tenth of them.
#include "BlockBrowser.h"
#include "BlockManager.h"
#include "jLog.h"
#include "BenchApplication.h"

#include <QApplication>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include <unistd.h>

namespace {

constexpr int kGroups = 50;
constexpr int kKinds = 10;
constexpr int kBlocks = 10;

// The library, written to a temporary file once and read by the manager.
const BlockManager& library()
{
    static BlockManager blocks;
    if (blocks.empty()) {
        const std::string path = "/tmp/BlockBrowserBench-" + std::to_string(getpid()) + ".cfg";
        {
            std::ofstream out(path);
            out << "blocks {\n\tversion 1\n";
            for (int g = 0; g < kGroups; ++g)
                for (int k = 0; k < kKinds; ++k)
                    for (int b = 0; b < kBlocks; ++b)
                        out << "\tblock {\n\t\ttype Group" << g << ".Kind" << k << ".Block" << b
                            << "\n\t\toutput_path {\n\t\t\tname out\n\t\t\ttype float4\n\t\t}\n\t}\n";
            out << "}\n";
        }
        blocks.loadBlocks(path);
        std::remove(path.c_str());
    }
    return blocks;
}

void BM_BuildWholeTree(benchmark::State& state)
{
    benchApplication("BlockBrowserBench");
    const BlockManager& blocks = library();
    BlockBrowser browser;
    for (auto _ : state) {
        browser.build(blocks);
        benchmark::DoNotOptimize(browser.topLevelItemCount());
    }
    state.counters["types"] = double(blocks.size());
}
BENCHMARK(BM_BuildWholeTree)->Unit(benchmark::kMillisecond);

void BM_BuildFilteredTree(benchmark::State& state)
{
    benchApplication("BlockBrowserBench");
    const BlockManager& blocks = library();
    BlockBrowser browser;
    browser.getFilter() = "block3";
    for (auto _ : state) {
        browser.build(blocks);
        benchmark::DoNotOptimize(browser.topLevelItemCount());
    }
}
BENCHMARK(BM_BuildFilteredTree)->Unit(benchmark::kMillisecond);

} // namespace
