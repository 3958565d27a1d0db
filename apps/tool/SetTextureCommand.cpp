#include "ToolCommand.h"
#include "ToolFiles.h"

#include "AppData.h"
#include "MaterialEditor.h"
#include "jLog.h"

#include <CLI/CLI.hpp>

#include <vector>

namespace {

constexpr const char* kName = "set-texture";

// Loads a material, gives the texture node named TAG a new texture
// (MaterialEditor::SetTexturePathByTag) and saves it. Nothing is written
// when no texture node carries the tag.
class SetTextureCommand : public tool::ToolCommand {
public:
    const char* name() const override { return kName; }
    const char* description() const override { return "Set the texture of the texture node named TAG"; }

    void addOptions(CLI::App& command) override
    {
        command.add_option("PATH", m_path, "Material file")->required();
        command.add_option("TAG", m_tag, "Name of the texture node (exact)")->required();
        command.add_option("TEXTURE", m_texture, "Texture file, relative to the working folder")->required();
    }

    jString firstPath() const override { return m_path; }

    int run(const tool::ToolContext& context) override
    {
        std::vector<jString> relative;
        if (const int exitCode = tool::prepareInputs(context, kName, {m_path, m_texture}, relative))
            return exitCode;
        AppData* document = AppData::get();
        if (!document->init() || !document->load(relative[0])) {
            jLog::error("%s: can't load \"%s\"", kName, m_path.c_str());
            return tool::kExitFailed;
        }
        // Without the states the save would write the template's state
        // values over the file's own. A document without a template has none.
        document->createStates();
        if (!MaterialEditor::SetTexturePathByTag(document, m_tag, relative[1])) {
            jLog::error("%s: \"%s\" has no texture node named \"%s\"", kName, m_path.c_str(), m_tag.c_str());
            return tool::kExitFailed;
        }
        if (!document->save(relative[0])) {
            jLog::error("%s: can't save \"%s\"", kName, m_path.c_str());
            return tool::kExitFailed;
        }
        jLog::message("%s: wrote \"%s\"", kName, m_path.c_str());
        return tool::kExitSuccess;
    }

private:
    jString m_path;
    jString m_tag;
    jString m_texture;
};

const tool::ToolCommandRegistration registration([] { return std::unique_ptr<tool::ToolCommand>(new SetTextureCommand); });

} // namespace
