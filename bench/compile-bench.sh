#!/usr/bin/env bash
# Benchmarks material-tool: compiling many small materials with worker
# processes, and the start-up of one run.
#
#   bench/compile-bench.sh [TOOL] [COUNT] [JOBS]
#
# TOOL defaults to build/apps/tool/material-tool ($BUILD_DIR honoured),
# COUNT to 1000 materials, JOBS to 2. The materials are generated into a
# temporary data root from one sample, each with its own constant, texture
# path and chain length. Start-up is timed with hyperfine when it is
# installed (optional), else with a loop over `date +%s%N`.
set -euo pipefail
root_dir="$(cd "$(dirname "$0")/.." && pwd)"
tool="${1:-${BUILD_DIR:-$root_dir/build}/apps/tool/material-tool}"
count="${2:-1000}"
jobs="${3:-2}"
[ -x "$tool" ] || { echo "compile-bench: no tool at $tool (build it first)" >&2; exit 2; }
# The runs below happen in the generated project, so a relative TOOL is made absolute.
tool="$(cd "$(dirname "$tool")" && pwd)/$(basename "$tool")"

project="$(mktemp -d /tmp/material-compile-bench-XXXXXX)"
trap 'rm -rf "$project"' EXIT
mkdir -p "$project/data/core/materials/generate" "$project/data/materials"

cat > "$project/data/core/materials/generate/block.cfg" <<'CFG'
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
		type PixelInput
		usage ps_start
		include { i "in vec2 uv_in;"; i "out vec4 frag_color;" }
		output_path { name uv; type vec2; function "uv_in;" }
	}
	block {
		type PixelOutput
		usage ps_end
		mat data/core/materials/generate/opaque.mat
		input_path { name color; type vec3 }
		function { i "frag_color = vec4(@color, 1.0);" }
	}
	block {
		type Constant.Float
		constant true
		data_type float
		variable { name value; type float; default 0.5 }
		output_path { name out; type vec3; function "vec3(&parameter);" }
	}
	block {
		type Math.Add
		input_path { name a; type vec3 }
		input_path { name b; type vec3 }
		output_path { name out; type vec3; function "@a + @b;" }
	}
	block {
		type Texture.Sample2D
		texture2D true
		variable { name tex; type texture2D; default data/white.dds }
		input_path { name uv; type vec2 }
		output_path { name rgb; type vec3; function "texture(BASE_2D[@tex], @uv).rgb;" }
	}
}
CFG
cat > "$project/data/core/materials/generate/opaque.mat" <<'MAT'
materials {
	material {
		state { name Quality; type switch; text 1; items "Low,High"; defines "Q_LOW,Q_HIGH" }
		options { render_order 0 }
		shader { pass ambient }
		shader { pass shadow }
	}
}
MAT

# The sample: start -> texture -> add chain (length 1 to 5) fed by a
# constant -> output. Each copy changes the constant, the texture and the chain.
files=()
for ((i = 0; i < count; i++)); do
  adds=$((1 + i % 5))
  {
    echo "blueprint {"
    echo "	node { id 0; type PixelInput }"
    echo "	node { id 1; type PixelOutput }"
    echo "	node { id 2; type Texture.Sample2D; name albedo; variable { i tex data/textures/t$i.dds } }"
    echo "	node { id 3; type Constant.Float; variable { i value 0.$i } }"
    echo "	joint { node_0 0; node_1 2; anchor_0 uv; anchor_1 uv }"
    previous=2
    for ((a = 0; a < adds; a++)); do
      id=$((10 + a))
      echo "	node { id $id; type Math.Add }"
      echo "	joint { node_0 $previous; node_1 $id; anchor_0 $([ $previous = 2 ] && echo rgb || echo out); anchor_1 a }"
      echo "	joint { node_0 3; node_1 $id; anchor_0 out; anchor_1 b }"
      previous=$id
    done
    echo "	joint { node_0 $previous; node_1 1; anchor_0 out; anchor_1 color }"
    echo "}"
  } > "$project/data/materials/m$i.mat"
  files+=("data/materials/m$i.mat")
done

now_ns() { date +%s%N; }

cd "$project"
start=$(now_ns)
summary=$("$tool" --quiet compile --jobs "$jobs" "${files[@]}")
end=$(now_ns)
echo "compile: $summary: $count materials, --jobs $jobs: $(( (end - start) / 1000000 )) ms"

if command -v hyperfine >/dev/null 2>&1; then
  hyperfine --warmup 5 --runs 50 -N "$tool --version" "$tool can-edit data/materials/m0.mat"
else
  runs=50
  for command in "--version" "can-edit data/materials/m0.mat"; do
    # shellcheck disable=SC2086
    start=$(now_ns)
    for ((r = 0; r < runs; r++)); do "$tool" $command >/dev/null; done
    end=$(now_ns)
    echo "start-up: material-tool $command: $(( (end - start) / runs / 1000 )) us per run (mean of $runs)"
  done
fi
