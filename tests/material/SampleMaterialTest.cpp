#include "GlslangCheck.h"
#include "MaterialEditor.h"
#include "TempRootTest.h"
#include "jLog.h"
#include "mjl.h"

#include <filesystem>

// The bundled sample materials (data/materials) and editor materials: each
// compiles without a message to exactly the committed file, and the
// programs of a non-instance's ambient pass link under its states' defines.
namespace {

using Lines = jVector<jString>;
namespace fs = std::filesystem;

// Parents before their instances.
const char* const kSamples[] = {"data/materials/metal_gold.mat", "data/materials/metal_iron_tiles.mat",
    "data/materials/plastic_red.mat", "data/materials/rubber.mat", "data/materials/glass.mat",
    "data/materials/emissive_pulse.mat", "data/materials/textured.mat", "data/materials/panner.mat",
    "data/materials/rotator.mat", "data/materials/vertex_wobble.mat", "data/materials/vertex_color.mat",
    "data/materials/chrome_cubemap.mat", "data/materials/marble_volume.mat", "data/materials/rim_light.mat",
    "data/materials/unlit_bands.mat", "data/materials/metal_copper.mat", "data/materials/plastic_blue.mat",
    "data/materials/glass_tinted.mat", "data/materials/textured_black.mat",
    "data/core/editor/materials/EditorMesh.mat", "data/core/editor/materials/EditorSky.mat"};

// The lines of a stage entry: a package of "i" items, or an item naming a
// shader file (included).
Lines stageLines(const Package& pass, const char* stage)
{
    Lines lines;
    if (const Package* package = pass.findPackage(stage)) {
        for (size_t i = 0; i < package->getItemCount(); ++i)
            lines.emplace_back(package->getItem(i)->getValue());
    } else if (pass.hasItem(stage)) {
        lines.push_back("#include \"" + jString(pass.getString(stage)) + "\"");
    }
    return lines;
}

// The define of each state's value; an int state passes its number.
Lines stateDefines(const Package& material)
{
    Lines defines;
    for (size_t i = 0; i < material.getPackageCount(); ++i) {
        const Package& state = *material.getPackage(i);
        if (state.getName() != "state")
            continue;
        if (state.getString("type") == "int") {
            defines.push_back(jString(state.getString("defines")) + "=" + jString(state.getString("text")));
            continue;
        }
        const Lines names = jSplit(state.getString("defines"), ',');
        if (const size_t value = static_cast<size_t>(state.getInt("text")); value < names.size())
            defines.push_back(names[value]);
    }
    return defines;
}

const Package* ambientPass(const Package& material)
{
    for (size_t i = 0; i < material.getPackageCount(); ++i) {
        const Package* pass = material.getPackage(i);
        if (pass->getName() == "shader" && pass->getString("pass") == "ambient")
            return pass;
    }
    return nullptr;
}

class SampleMaterialTest : public TempRootTest {
protected:
    void SetUp() override
    {
        TempRootTest::SetUp();
        for (const char* sample : kSamples)
            root.write(sample, committed(sample));
    }

    static std::string committed(const std::string& sample)
    {
        std::ifstream in(std::string(MATERIAL_SOURCE_ROOT) + "/" + sample, std::ios::binary);
        std::ostringstream text;
        text << in.rdbuf();
        return text.str();
    }

    TempFolder scratch;
};

TEST_F(SampleMaterialTest, EverySampleCompilesToItsCommittedFileAndThePlainOnesLink)
{
    size_t checked = 0;
    for (const char* sample : kSamples) {
        jLog::Capture log;
        EXPECT_TRUE(MaterialEditor::Compile(sample)) << sample;
        EXPECT_TRUE(log.empty()) << sample << "\n" << log.text();
        EXPECT_EQ(root.read(sample), committed(sample)) << sample << " is not compiled with the current library";

        mjl file;
        ASSERT_TRUE(file.open(sample, false)) << sample;
        const Package* materials = file.getRoot()->findPackage("materials");
        const Package* material = materials ? materials->findPackage("material") : nullptr;
        ASSERT_NE(material, nullptr) << sample;
        if (material->hasItem("parent_path"))
            continue;
        const Package* pass = ambientPass(*material);
        ASSERT_NE(pass, nullptr) << sample;
        const Lines vertex = stageLines(*pass, "vertex");
        const Lines pixel = stageLines(*pass, "fragment");
        ASSERT_FALSE(vertex.empty() || pixel.empty()) << sample;
        for (bool editor : {true, false}) {
            const GlslangVerdict verdict = glslangCheck(scratch, "s" + std::to_string(checked++), vertex, pixel,
                stateDefines(*material), editor);
            EXPECT_EQ(verdict.exitCode, 0) << sample << (editor ? " (editor)" : "") << "\n" << verdict.log;
        }
    }
    EXPECT_EQ(checked, 2u * 17u);
}

} // namespace
