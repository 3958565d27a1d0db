#include "Block.h"
#include "DataAnchor.h"
#include "DocumentFixture.h"
#include "GlslangCheck.h"
#include "XMatComplier.h"
#include "jLog.h"

#include <algorithm>
#include <future>

// The bundled block library against the bundled shader library: every block,
// in a minimal graph of each program, must generate code that glslangValidator
// compiles and links; the library loads without a message. See
// docs/block-library.md.
namespace {

using Lines = jVector<jString>;

// One vertex and pixel program pair to validate.
struct Program {
    std::string name;
    Lines vertex, pixel, defines;
    bool editor = true;
};

// The generated text with its line numbers, for failure messages.
std::string numbered(const Lines& lines)
{
    std::string text;
    for (size_t i = 0; i < lines.size(); ++i)
        text += std::to_string(i + 1) + ": " + lines[i] + "\n";
    return text;
}

class BlockLibraryShaderTest : public DocumentTest {
protected:
    const char* projectRoot() const override { return MATERIAL_SOURCE_ROOT; }
    void SetUp() override
    {
        jLog::Capture log;
        DocumentTest::SetUp();
        EXPECT_TRUE(log.empty()) << log.text();
    }

    BlockManager* blocks() const { return doc->getBlockManager(); }
    DataNode* add(const jString& type) { return create(type.c_str()); }
    void link(DataAnchor* out, DataAnchor* in)
    {
        ASSERT_TRUE(out && in);
        ASSERT_NE(doc->createJoint(out, in), nullptr);
    }

    // Every output of the nodes summed by a chain of Math.Add nodes whose
    // last one feeds `sink`, so that every output's code is generated.
    void collect(const jVector<DataNode*>& nodes, DataAnchor* sink)
    {
        DataNode* previous = nullptr;
        for (DataNode* node : nodes) {
            for (size_t i = 0; i < node->getOutputPathCount(); ++i) {
                DataNode* sum = add("Math.Add");
                link(node->getOutputPath(i), sum->findAnchor("a"));
                if (previous)
                    link(previous->findAnchor("out"), sum->findAnchor("b"));
                previous = sum;
            }
        }
        if (previous)
            link(previous->findAnchor("out"), sink);
    }

    void linkAllInputs(DataNode* node, DataAnchor* from)
    {
        for (size_t i = 0; i < node->getInputPathCount(); ++i)
            link(from, node->getInputPath(i));
    }

    // The block twice in each program: inputs unlinked (defaults) and inputs
    // linked to the start node's UV0.
    void placeInBothPrograms(const jString& type)
    {
        DataNode* pixelStart = add("Stage.PixelInput");
        DataNode* pixelEnd = add("Stage.PixelOutput");
        DataNode* vertexStart = add("Stage.VertexInput");
        DataNode* vertexEnd = add("Stage.VertexOutput");
        jVector<DataNode*> pixel{add(type), add(type)};
        jVector<DataNode*> vertex{add(type), add(type)};
        linkAllInputs(pixel[1], pixelStart->findAnchor("uv0"));
        linkAllInputs(vertex[1], vertexStart->findAnchor("uv0"));
        collect(pixel, pixelEnd->findAnchor("base_color"));
        collect(vertex, vertexEnd->findAnchor("offset"));
    }

    static Lines generate(bool vertex)
    {
        XMatComplier generator;
        Lines lines;
        EXPECT_TRUE(vertex ? generator.generate_vs(lines) : generator.generate_ps(lines));
        return lines;
    }

    Program programOfDocument(const std::string& name, Lines defines, bool editor)
    {
        Program program{name, generate(true), generate(false), std::move(defines), editor};
        doc->clear();
        return program;
    }

    // An end block with its inputs linked or defaulted, under the standard
    // vertex program.
    Program endBlockProgram(const jString& type, bool linked, Lines defines)
    {
        DataNode* start = add("Stage.PixelInput");
        DataNode* end = add(type);
        if (linked)
            linkAllInputs(end, start->findAnchor("uv0"));
        Program program{type + (linked ? " linked" : " unlinked"), {}, generate(false), std::move(defines), false};
        program.vertex = {"#include \"" + start->getBlock()->getVertex() + "\""};
        doc->clear();
        return program;
    }

    GlslangVerdict validate(const Program& program, size_t index) const
    {
        return glslangCheck(m_folder, "p" + std::to_string(index), program.vertex, program.pixel, program.defines,
            program.editor);
    }

    // Validates the programs two at a time.
    void expectValid(const std::vector<Program>& programs) const
    {
        constexpr size_t kParallel = 2;
        for (size_t first = 0; first < programs.size(); first += kParallel) {
            std::vector<std::future<GlslangVerdict>> batch;
            for (size_t i = first; i < std::min(first + kParallel, programs.size()); ++i)
                batch.push_back(std::async(std::launch::async, [this, &programs, i] { return validate(programs[i], i); }));
            for (size_t i = 0; i < batch.size(); ++i) {
                const GlslangVerdict verdict = batch[i].get();
                const Program& program = programs[first + i];
                EXPECT_EQ(verdict.exitCode, 0) << program.name << "\n" << verdict.log << "--- vertex lines\n"
                                               << numbered(program.vertex) << "--- pixel lines\n"
                                               << numbered(program.pixel);
            }
        }
    }

    TempFolder m_folder;
};

TEST_F(BlockLibraryShaderTest, EveryBlockCompilesInBothPrograms)
{
    std::vector<Program> programs;
    for (size_t i = 0; i < blocks()->getBlockCount(); ++i) {
        const Block* block = blocks()->getBlockAt(i);
        if (block->getUsage() != BLOCK_USAGE_BLOCK)
            continue;
        placeInBothPrograms(block->getType());
        programs.push_back(programOfDocument(block->getType() + " (editor)", {"EDITOR_MODE"}, true));
        for (size_t a = 0; a < block->getOutputPathCount(); ++a) {
            if (!block->getOutputPath(a)->getFunctionEditor().empty()) { // the non-editor variant differs
                placeInBothPrograms(block->getType());
                programs.push_back(programOfDocument(block->getType(), {}, false));
                break;
            }
        }
    }
    ASSERT_GE(programs.size(), 60u);
    expectValid(programs);
}

TEST_F(BlockLibraryShaderTest, EndBlocksCompileUnderTheStatesOfTheirTemplates)
{
    std::vector<Program> programs;
    for (const char* type : {"Stage.PixelOutput", "Stage.PixelOutputTransparent", "Stage.PixelOutputUnlit"}) {
        programs.push_back(endBlockProgram(type, false, {}));
        programs.push_back(endBlockProgram(type, true, {"EDITOR_MODE", "TESSELLATE"}));
    }
    programs.push_back(endBlockProgram("Stage.PixelOutput", true, {"LIGHT_MODULATION_DIFFUSE", "ENVIRONMENT_BANDS=1"}));
    expectValid(programs);
}

// The validator itself must reject what GLSL rejects, or the tests above
// prove nothing: float4 does not convert to float3 implicitly.
TEST_F(BlockLibraryShaderTest, TheValidatorRejectsAnInvalidProgram)
{
    Program program = endBlockProgram("Stage.PixelOutput", false, {});
    program.pixel.insert(program.pixel.end() - 1, "float3 wrong = float4_zero;");
    const GlslangVerdict verdict = validate(program, 999);
    EXPECT_NE(verdict.exitCode, 0);
    EXPECT_NE(verdict.log.find("ERROR: generated:" + std::to_string(program.pixel.size() - 1) + ":"), std::string::npos)
        << verdict.log;
}

} // namespace
