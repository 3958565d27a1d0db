// Shader generation on large graphs: a long chain (no recursion, linear
// walk), a diamond lattice (shared inputs walked once) and a material of a
// realistic size.
#include "BenchFolder.h"
#include "AppData.h"
#include "DataNode.h"
#include "XMatComplier.h"
#include "jDir.h"
#include "jLog.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>

namespace {

const char* const kBlockLibrary = R"cfg(code_include {
	i "#include \"core.h\""
}
code_begin {
	i "void main()"
	i "{"
}
code_end {
	i "}"
}
blocks {
	version 1
	block {
		type PixelStart
		usage ps_start
		include {
			i "#include \"pixel.h\""
		}
		output_path {
			name uv
			type float2
			function "IN.uv0;"
		}
	}
	block {
		type PixelOutput
		usage ps_end
		input_path {
			name color
			type float3
		}
		function {
			i "OUT.color = float4(@color, 1.0);"
		}
	}
	block {
		type Math.Add
		input_path {
			name a
			type float3
		}
		input_path {
			name b
			type float3
			default 0.5
		}
		output_path {
			name out
			type float3
			function "@a + @b;"
		}
	}
	block {
		type Constant.Color
		constant true
		data_type float4
		variable {
			name color
			type color
		}
		output_path {
			name rgb
			type float3
			function "&parameter.rgb;"
		}
	}
	block {
		type Texture.Sample2D
		texture2D true
		variable {
			name tex
			type texture2D
		}
		input_path {
			name uv
			type float2
		}
		output_path {
			name rgb
			type float3
			function "SAMPLE_2D(@tex, @uv, @SAMPLER_ID).rgb;"
			function_editor "SAMPLE_2D_EDITOR(@tex, @uv, @SAMPLER_ID).rgb;\n"
		}
	}
}
)cfg";

// A data root holding only the block library above, for the whole run.
class BenchRoot {
public:
    BenchRoot()
    {
        m_path = makeBenchFolder("xmat-bench");
        const std::filesystem::path file = m_path / "data/core/materials/generate/block.cfg";
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file) << kBlockLibrary;
        jDir::setProjectRoot(m_path.string());
        if (!AppData::get()->reloadBlocks())
            std::abort();
    }
    ~BenchRoot()
    {
        std::error_code ec;
        std::filesystem::remove_all(m_path, ec);
    }

private:
    std::filesystem::path m_path;
};

AppData* document()
{
    static BenchRoot root;
    return AppData::get();
}

void link(DataNode* from, const char* out, DataNode* to, const char* in)
{
    document()->createJoint(from->findAnchor(out), to->findAnchor(in));
}

// start -> n additions in a row -> output.
void build_chain(int count)
{
    AppData* doc = document();
    doc->clear();
    DataNode* previous = doc->createNode("PixelStart");
    const char* out = "uv";
    for (int i = 0; i < count; ++i) {
        DataNode* next = doc->createNode("Math.Add");
        link(previous, out, next, "a");
        previous = next;
        out = "out";
    }
    link(previous, out, doc->createNode("PixelOutput"), "color");
}

// Two constants, then layers of two additions that each read both nodes of
// the layer before; the output reads the last layer.
void build_lattice(int layers)
{
    AppData* doc = document();
    doc->clear();
    DataNode* left = doc->createNode("Constant.Color");
    DataNode* right = doc->createNode("Constant.Color");
    const char* out = "rgb";
    for (int i = 0; i < layers; ++i) {
        DataNode* nextLeft = doc->createNode("Math.Add");
        DataNode* nextRight = doc->createNode("Math.Add");
        for (DataNode* next : {nextLeft, nextRight}) {
            link(left, out, next, "a");
            link(right, out, next, "b");
        }
        left = nextLeft;
        right = nextRight;
        out = "out";
    }
    link(left, out, doc->createNode("PixelOutput"), "color");
}

// A start and an output node, 20 textures, 30 constants and 248 additions,
// each addition reading two earlier values picked at random (fixed seed).
void build_material()
{
    AppData* doc = document();
    doc->clear();
    std::mt19937 random(1234);
    DataNode* start = doc->createNode("PixelStart");
    jVector<std::pair<DataNode*, const char*>> values;
    for (int i = 0; i < 20; ++i) {
        DataNode* texture = doc->createNode("Texture.Sample2D");
        link(start, "uv", texture, "uv");
        values.emplace_back(texture, "rgb");
    }
    for (int i = 0; i < 30; ++i)
        values.emplace_back(doc->createNode("Constant.Color"), "rgb");
    for (int i = 0; i < 248; ++i) {
        DataNode* sum = doc->createNode("Math.Add");
        for (const char* input : {"a", "b"}) {
            const auto& [node, out] = values[random() % values.size()];
            link(node, out, sum, input);
        }
        values.emplace_back(sum, "out");
    }
    link(values.back().first, "out", doc->createNode("PixelOutput"), "color");
}

void run_pixel_program(benchmark::State& state)
{
    size_t lineCount = 0;
    for (auto _ : state) {
        XMatComplier generator;
        jVector<jString> lines;
        if (!generator.generate_ps(lines))
            state.SkipWithError("generation refused");
        lineCount = lines.size();
        benchmark::DoNotOptimize(lines.data());
    }
    state.counters["nodes"] = static_cast<double>(document()->getNodeCount());
    state.counters["lines"] = static_cast<double>(lineCount);
}

void BM_Chain(benchmark::State& state)
{
    build_chain(static_cast<int>(state.range(0)));
    run_pixel_program(state);
    document()->clear();
}
BENCHMARK(BM_Chain)->Arg(100000)->Arg(10000)->Unit(benchmark::kMillisecond);

void BM_Lattice40(benchmark::State& state)
{
    build_lattice(40);
    run_pixel_program(state);
    document()->clear();
}
BENCHMARK(BM_Lattice40)->Unit(benchmark::kMicrosecond);

void BM_Material300(benchmark::State& state)
{
    build_material();
    run_pixel_program(state);
    document()->clear();
}
BENCHMARK(BM_Material300)->Unit(benchmark::kMicrosecond);

} // namespace
