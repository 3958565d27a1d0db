#pragma once

#include "TempFolder.h"

#include <string>

// A throw-away data root for the headless operations: a block library whose
// fragments are plain GLSL (so generated programs compile with
// glslangValidator), a template with three states, and one material.
namespace materialproject {

inline const char* const kBlocks = R"CFG(code_include {
	i "#define vec2_zero vec2(0.0)"
	i "#define vec3_zero vec3(0.0)"
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
		type PixelInput
		usage ps_start
		include {
			i "#define INIT_SAMPLER(index) const int default_sampler = index"
			i "#define INIT_TEXTURE_2D_GROUP(slot, name, count) uniform sampler2D name[count]"
			i "#define INIT_TEXTURE_CUBE_GROUP(slot, name, count) uniform samplerCube name[count]"
			i "#define INIT_TEXTURE_3D_GROUP(slot, name, count) uniform sampler3D name[count]"
			i "#define CBUFFER_BEGIN(name) uniform name {"
			i "#define CBUFFER_END };"
			i "#define UNIFORM"
			i "in vec2 uv_in;"
			i "out vec4 frag_color;"
		}
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
		output_path { name out; type float; function "&parameter;" }
	}
	block {
		type Math.Add
		input_path { name a; type vec3 }
		input_path { name b; type vec3 }
		output_path { name out; type vec3; function "@a + @b;" }
	}
	block {
		type Broken.Call
		input_path { name a; type vec3 }
		output_path { name out; type vec3; function "undefined_function(@a);" }
	}
	block {
		type Texture.Sample2D
		texture2D true
		variable { name tex; type texture2D; default data/white.dds }
		input_path { name uv; type vec2 }
		output_path { name rgb; type vec3; function "texture(BASE_2D[@tex], @uv).rgb;" }
	}
	block {
		type Texture.SampleCube
		textureCube true
		variable { name cube; type textureCube; default data/sky.dds }
		input_path { name dir; type vec3 }
		output_path { name rgb; type vec3; function "texture(BASE_CUBE[@cube], @dir).rgb;" }
	}
	block {
		type Texture.Sample3D
		texture3D true
		variable { name volume; type texture3D; default data/noise.dds }
		input_path { name uvw; type vec3 }
		output_path { name rgb; type vec3; function "texture(BASE_3D[@volume], @uvw).rgb;" }
	}
}
)CFG";

inline const char* const kTemplate = R"(materials {
	material {
		state { name Quality; type switch; text 1; items "Low,Mid,High"; defines "Q_LOW,Q_MID,Q_HIGH" }
		state { name Mode; type int; text 3; defines MODE }
		state { name Locked; type toggle; text 0; editable false }
		options { render_order 0 }
		shader { pass ambient }
	}
}
)";

// Start, output, a 2D texture named "albedo" feeding the output, and a
// constant.
inline const char* const kRock = R"(blueprint {
	version 1
	node { id 0; type PixelInput }
	node { id 1; type PixelOutput }
	node { id 2; type Texture.Sample2D; name albedo }
	node { id 3; type Constant.Float }
	joint { node_0 0; node_1 2; anchor_0 uv; anchor_1 uv }
	joint { node_0 2; node_1 1; anchor_0 rgb; anchor_1 color }
}
)";

inline const std::string kBlockPath = "data/core/materials/generate/block.cfg";
inline const std::string kTemplatePath = "data/core/materials/generate/opaque.mat";

// Writes the block library, the template and data/rock.mat.
inline void write(const TempFolder& root)
{
    root.write(kBlockPath, kBlocks);
    root.write(kTemplatePath, kTemplate);
    root.write("data/rock.mat", kRock);
}

} // namespace materialproject
