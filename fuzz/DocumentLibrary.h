#pragma once

// The data root shared by the document fuzz target, its regression tests and
// the document benchmark: a block library with anchors of every kind,
// constants, texture variables of every type, variables with sub values, a
// material template with states, and two parent materials (one of them an
// instance itself, which cannot serve as a parent).
//
// Variable and sub value names are unique within their block: the file
// names them, and a repeated name would only ever reach the first.

#include <filesystem>
#include <fstream>
#include <string>

namespace DocumentLibrary {

inline constexpr const char* kBlocks = R"(blocks {
	version 1
	block {
		type VertexInput
		usage vs_start
		num_limit 1
		output_path { name position; type float3; function "IN.position;" }
	}
	block {
		type VertexOutput
		usage vs_end
		num_limit 1
		input_path { name offset; type float3 }
	}
	block {
		type PixelInput
		usage ps_start
		num_limit 1
		output_path { name uv; type float2; function "IN.uv0;" }
		output_path { name normal; type float3; function "IN.normal;" }
	}
	block {
		type PixelOutput
		usage ps_end
		num_limit 1
		mat data/core/materials/generate/opaque.mat
		input_path { name color; type float4 }
		input_path { name alpha; type float }
		input_link { name tag; type string }
	}
	block {
		type Constant.Float
		constant true
		data_type float
		variable { name value; type float; default 0.5 }
		output_path { name out; type float; function "&parameter;" }
		output_link { name note; type string }
	}
	block {
		type Constant.Color
		constant true
		data_type float4
		variable { name color; type color; default 1,1,1,1 }
		output_path { name out; type float4; function "&parameter;" }
	}
	block {
		type Constant.Int
		constant true
		data_type int
		variable { name count; type int; default 3 }
		output_path { name out; type int; function "&parameter;" }
	}
	block {
		type Texture.Sample2D
		texture2D true
		variable {
			name tex
			type texture2D
			default data/core/textures/common/white.dds
			sub { name tag; default albedo }
			sub { name srgb; default 1 }
		}
		input_path { name uv; type float2 }
		output_path { name rgba; type float4; function "SAMPLE(@tex, @uv, SAMPLER_ID);" }
	}
	block {
		type Texture.SampleCube
		textureCube true
		variable { name cube; type textureCube; default data/core/textures/common/sky.dds }
		input_path { name dir; type float3 }
		output_path { name rgba; type float4; function "SAMPLE_CUBE(@cube, @dir, SAMPLER_ID);" }
	}
	block {
		type Texture.Sample3D
		texture3D true
		variable { name volume; type texture3D }
		input_path { name uvw; type float3 }
		output_path { name rgba; type float4; function "SAMPLE_3D(@volume, @uvw, SAMPLER_ID);" }
	}
	block {
		type Texture.Legacy
		variable { name map; type texture; default data/core/textures/common/black.dds }
		input_path { name uv; type float2 }
		output_path { name rgba; type float4; function "SAMPLE(@map, @uv, SAMPLER_ID);" }
	}
	block {
		type Math.Add
		input_path { name a; type float4 }
		input_path { name b; type float4 }
		output_path { name out; type float4; function "@a + @b;" }
	}
	block {
		type Math.Lerp
		input_path { name a; type float4 }
		input_path { name b; type float4 }
		input_path { name t; type float }
		output_path { name out; type float4; function "lerp(@a, @b, @t);" }
	}
	block {
		type Util.Note
		variable {
			name mode
			type slider
			default 0.25
			sub { name low; default 0 }
			sub { name high; default 1 }
		}
		variable { name label; type tag }
		input_link { name in; type string; default "" }
		output_link { name next; type string }
		input_path { name in; type float4 }
		output_path { name out; type float4; function "@in;" }
	}
}
)";

inline constexpr const char* kTemplate = R"(materials {
	material {
		state { name EDITOR_MODE; type toggle; text 0; defines ",EDITOR" }
		state { name Quality; type switch; text 1; items "Low,Mid,High"; defines "Q_LOW,Q_MID,Q_HIGH" }
		state { name Lights; type int; text 3; defines LIGHT_COUNT }
		state { name Locked; type toggle; text 0; editable false }
		state { name Plain; text 1 }
		options { render_order 2 }
		shader { pass ambient; textures base }
		shader { pass shadow }
	}
}
)";

// A plain material: instances name it with "parent_path".
inline constexpr const char* kParentPath = "data/materials/parent.mat";
inline constexpr const char* kParent = R"(materials {
	material {
		state { name Quality; text 2 }
		state { name Locked; text 1 }
		options { render_order 4; depth_offset -3; two_sided true; tessellate on }
		shader { pass ambient; depth_func DEPTH_LESS; blend_op max; blend_func one,one }
		parameter { name value1; type float; text 0.75 }
		texture { name tex2; type texture2D; text data/textures/rock.dds; sampler 9 }
	}
}
editor { scale 0.5; h_scroll 0.25; v_scroll 0.75; use_file_name_as_material_name true }
blueprint {
	version 1
	node { id 0; type PixelOutput; pos_x 400; input_link { i tag parent } }
	node { id 1; type Constant.Float; name Gloss; pos_y -40; variable { i { name value; value 0.75 } } }
	node {
		id 2
		type Texture.Sample2D
		variable { i { name tex; value data/textures/rock.dds; wrap clamp; anisotropy 4; sub { name tag; value rock } } }
	}
	node { id 3; type PixelInput }
	node { id 4; type Util.Note; variable { i mode 0.5; i label "a note" } }
	joint { node_0 3; node_1 2; anchor_0 uv; anchor_1 uv }
	joint { node_0 2; node_1 0; anchor_0 rgba; anchor_1 color }
	joint { node_0 1; node_1 0; anchor_0 out; anchor_1 alpha }
}
)";

// An instance: as a parent it has no graph, so loading through it fails.
inline constexpr const char* kInstanceParentPath = "data/materials/instance.mat";
inline constexpr const char* kInstanceParent = R"(materials {
	material {
		parent_path data/materials/parent.mat
		parameter { name value1; text 0.1 }
	}
}
)";

inline void writeFile(const std::filesystem::path& file, const char* text)
{
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << text;
}

// Writes the library, the template and both parents under folder.
inline void install(const std::string& folder)
{
    const std::filesystem::path root(folder);
    writeFile(root / "data/core/materials/generate/block.cfg", kBlocks);
    writeFile(root / "data/core/materials/generate/opaque.mat", kTemplate);
    writeFile(root / kParentPath, kParent);
    writeFile(root / kInstanceParentPath, kInstanceParent);
}

} // namespace DocumentLibrary
