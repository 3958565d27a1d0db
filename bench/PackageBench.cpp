// Reading and writing a 50 MB package held in memory.
#include "mjl.h"

#include <benchmark/benchmark.h>

#include <cstdint>

namespace {

constexpr size_t kTargetBytes = 50u << 20;

// Deterministic pseudo-random numbers, so every run measures the same text.
class Random {
public:
    uint32_t next(uint32_t bound)
    {
        m_state = m_state * 6364136223846793005ull + 1442695040888963407ull;
        return static_cast<uint32_t>(m_state >> 33) % bound;
    }

private:
    uint64_t m_state = 42;
};

const char* const kKeys[] = { "name", "type", "value", "default", "texture", "uv", "position", "flags",
    "min", "max", "input", "output", "link", "state", "tag", "description" };
const char* const kWords[] = { "float4", "Math.Add", "albedo", "data/core/textures/rock_albedo.dds", "0.5",
    "1", "-3.25", "true", "lerp", "saturate", "BASE_2D", "normal_map", "128", "0.70710677" };
const char* const kQuoted[] = { "a value with spaces", "@a + @b;", "line\nbreak", "", "say \"hi\"" };

jString randomValue(Random& random)
{
    if (random.next(8) == 0)
        return kQuoted[random.next(std::size(kQuoted))];
    return kWords[random.next(std::size(kWords))];
}

void fillBlock(Package& block, Random& random)
{
    block.addItem("type", kWords[random.next(std::size(kWords))]);
    if (random.next(4) == 0)
        block.addCommentLine("a comment line kept by the writer");
    const uint32_t items = 3 + random.next(6);
    for (uint32_t i = 0; i < items; ++i) {
        jVector<jString> values;
        const uint32_t count = 1 + random.next(3);
        for (uint32_t v = 0; v < count; ++v)
            values.push_back(randomValue(random));
        block.addItem(kKeys[random.next(std::size(kKeys))], std::move(values));
    }
    if (random.next(2) == 0) {
        Package* path = block.addPackage("input_path");
        path->addItem("name", "a");
        path->addItem("type", "float4");
    }
}

// A material library: materials holding blocks holding paths.
const Package& sampleTree()
{
    static const Package tree = [] {
        Package root;
        Random random;
        size_t bytes = 0;
        while (bytes < kTargetBytes) {
            Package* material = root.addPackage("material");
            material->addItem("version", "1");
            for (int b = 0; b < 64; ++b)
                fillBlock(*material->addPackage("block"), random);
            bytes += mjl::toText(*material).size();
        }
        return root;
    }();
    return tree;
}

const jString& sampleText()
{
    static const jString text = mjl::toText(sampleTree());
    return text;
}

void BM_ReadPackage(benchmark::State& state)
{
    const jString& text = sampleText();
    for (auto _ : state) {
        mjl file;
        if (!file.parse(text))
            state.SkipWithError("the sample does not parse");
        benchmark::DoNotOptimize(file.getRoot());
        // Freeing the tree is measured on its own below.
        state.PauseTiming();
        file.close();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}
BENCHMARK(BM_ReadPackage)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_FreePackageTree(benchmark::State& state)
{
    const jString& text = sampleText();
    for (auto _ : state) {
        state.PauseTiming();
        mjl file;
        file.parse(text);
        state.ResumeTiming();
        file.close();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}
// Each iteration reads a tree outside the timing, so a fixed count keeps the run short.
BENCHMARK(BM_FreePackageTree)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(20);

void BM_WritePackage(benchmark::State& state)
{
    const Package& tree = sampleTree();
    size_t bytes = 0;
    for (auto _ : state) {
        const jString text = mjl::toText(tree);
        bytes += text.size();
        benchmark::DoNotOptimize(text.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(bytes));
}
BENCHMARK(BM_WritePackage)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
