#include "ToolCommand.h"

#include "BlockManager.h"
#include "JsonText.h"

#include <CLI/CLI.hpp>

#include <cstdio>

namespace {

constexpr const char* kName = "blocks";

// Writes a JSON array whose elements are produced by write(index, out).
template <typename WriteElement>
jString jsonArray(size_t count, const jString& indent, WriteElement write)
{
    if (count == 0)
        return "[]";
    jString out = "[\n";
    for (size_t i = 0; i < count; ++i) {
        out += indent + "  " + write(i);
        out += i + 1 < count ? ",\n" : "\n";
    }
    return out + indent + "]";
}

jString anchorJson(const BlockAnchor& anchor)
{
    return jFormat("{\"name\": %s, \"text\": %s, \"type\": %s, \"default\": %s, \"edit\": %s}",
        JsonText::string(anchor.getName()).c_str(), JsonText::string(anchor.getText()).c_str(),
        JsonText::string(anchor.getType()).c_str(), JsonText::string(anchor.getDefault()).c_str(),
        JsonText::boolean(anchor.isEdit()));
}

jString anchorListJson(size_t count, BlockAnchor* (Block::*get)(size_t) const, const Block& block)
{
    return jsonArray(count, "      ", [&](size_t i) { return anchorJson(*(block.*get)(i)); });
}

jString valueJson(const BlockVariable::Value& value)
{
    return jFormat("{\"name\": %s, \"text\": %s, \"type\": %s, \"default\": %s, \"edit\": %s}",
        JsonText::string(value.getName()).c_str(), JsonText::string(value.getText()).c_str(),
        JsonText::string(value.getType()).c_str(), JsonText::string(value.getDefault()).c_str(),
        JsonText::boolean(value.isEdit()));
}

jString variableJson(const BlockVariable& variable)
{
    const jString values
        = jsonArray(variable.getValueCount(), "      ", [&](size_t i) { return valueJson(*variable.getValue(i)); });
    return jFormat("{\"name\": %s, \"text\": %s, \"type\": %s, \"default\": %s, \"mask\": %d, \"edit\": %s, "
                   "\"values\": %s}",
        JsonText::string(variable.getName()).c_str(), JsonText::string(variable.getText()).c_str(),
        JsonText::string(variable.getType()).c_str(), JsonText::string(variable.getDefault()).c_str(),
        variable.getMask(), JsonText::boolean(variable.isEdit()), values.c_str());
}

jString blockJson(const Block& block)
{
    jString out = "{\n";
    out += "    \"type\": " + JsonText::string(block.getType()) + ",\n";
    out += jFormat("    \"usage\": %d,\n", block.getUsage());
    out += jFormat("    \"flags\": {\"constant\": %s, \"texture2D\": %s, \"texture3D\": %s, \"textureCube\": %s},\n",
        JsonText::boolean(block.isConstant()), JsonText::boolean(block.isTexture2D()),
        JsonText::boolean(block.isTexture3D()), JsonText::boolean(block.isTextureCube()));
    out += "    \"anchors\": {\n";
    out += "      \"input_path\": " + anchorListJson(block.getInputPathCount(), &Block::getInputPath, block) + ",\n";
    out += "      \"output_path\": " + anchorListJson(block.getOutputPathCount(), &Block::getOutputPath, block) + ",\n";
    out += "      \"input_link\": " + anchorListJson(block.getInputLinkCount(), &Block::getInputLink, block) + ",\n";
    out += "      \"output_link\": " + anchorListJson(block.getOutputLinkCount(), &Block::getOutputLink, block) + "\n";
    out += "    },\n";
    out += "    \"variables\": "
        + jsonArray(block.getVariableCount(), "    ", [&](size_t i) { return variableJson(*block.getVariable(i)); })
        + "\n";
    return out + "  }";
}

void printText(const jString& text)
{
    std::fputs(text.c_str(), stdout);
}

// Lists the block types of the block library in library order: one type
// per line, or with --json one object per block (type, usage, flags,
// anchors, variables).
class BlocksCommand : public tool::ToolCommand {
public:
    const char* name() const override { return kName; }
    const char* description() const override { return "List the block types of the block library, in library order"; }

    void addOptions(CLI::App& command) override
    {
        command.add_flag("--json", m_json, "Print every block with its usage, flags, anchors and variables as JSON");
    }

    int run(const tool::ToolContext&) override
    {
        BlockManager library;
        if (!library.init())
            return tool::kExitFailed; // the log on stderr says why
        if (m_json)
            printText(jsonArray(library.size(), "", [&](size_t i) { return blockJson(*library[i]); }) + "\n");
        else
            for (const Block* block : library)
                printText(block->getType() + "\n");
        std::fflush(stdout);
        return tool::kExitSuccess;
    }

private:
    bool m_json = false;
};

const tool::ToolCommandRegistration registration([] { return std::unique_ptr<tool::ToolCommand>(new BlocksCommand); });

} // namespace
