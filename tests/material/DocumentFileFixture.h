#pragma once

#include "DocumentFixture.h"
#include "TempFolder.h"
#include "jLog.h"
#include "mjl.h"

// A temporary data root with a small block library and an opaque template,
// holding the process-wide document for the duration of a test.
class DocumentFileTest : public DocumentTest {
protected:
    static constexpr const char* kBlocks = R"(blocks {
	version 1
	block {
		type PixelInput
		usage ps_start
		output_path { name uv; type float2; function "IN.uv0;" }
	}
	block {
		type PixelOutput
		usage ps_end
		mat data/core/materials/generate/opaque.mat
		input_path { name color; type float4 }
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
		type Texture.Sample2D
		texture2D true
		variable {
			name tex
			type texture2D
			default data/core/textures/common/white.dds
			sub { name tag; default hero }
			sub { name srgb; default 1 }
		}
		input_path { name uv; type float2 }
		output_path { name rgba; type float4; function "SAMPLE(@tex, @uv, @SAMPLER_ID);" }
	}
}
)";

    static constexpr const char* kTemplate = R"(materials {
	material {
		state { name EDITOR_MODE; type toggle; text 0; defines ",EDITOR" }
		state { name Quality; type switch; text 1; items "Low,Mid,High"; defines "Q_LOW,Q_MID,Q_HIGH" }
		state { name Lights; type int; text 3; defines LIGHT_COUNT }
		state { name Locked; type toggle; text 0; editable false }
		state { name Plain; text 1 }
		state { name Odd; type flag; text 1 }
		state { name Empty; type toggle }
		state { name ""; type toggle; text 1 }
		options { render_order 2 }
		shader { pass ambient; textures base }
		shader { pass shadow }
	}
}
)";

    const char* projectRoot() const override { return root.path().c_str(); }

    void SetUp() override
    {
        root.write("data/core/materials/generate/block.cfg", kBlocks);
        root.write("data/core/materials/generate/opaque.mat", kTemplate);
        DocumentTest::SetUp();
    }

    // Writes the document's editor packages to a root-relative file.
    void writeDocument(const jString& path, const jString& materialText = "")
    {
        mjl file;
        ASSERT_TRUE(file.parse(materialText));
        doc->write_editor(*file.getRoot());
        doc->write_blueprint(*file.getRoot());
        ASSERT_TRUE(file.saveAs(path));
    }

    TempFolder root;
};
