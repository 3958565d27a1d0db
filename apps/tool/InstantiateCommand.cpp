#include "ToolCommand.h"
#include "ToolFiles.h"

#include "MaterialEditor.h"
#include "jLog.h"

#include <CLI/CLI.hpp>

#include <map>
#include <vector>

namespace {

constexpr const char* kName = "instantiate";

// Writes DST as an instance of PARENT (MaterialEditor::Instantiate), with
// texture paths replaced by tag when --texture is given.
class InstantiateCommand : public tool::ToolCommand {
public:
    const char* name() const override { return kName; }
    const char* description() const override { return "Write an instance of a material"; }

    void addOptions(CLI::App& command) override
    {
        command.add_option("PARENT", m_parent, "Material the instance derives from")->required();
        command.add_option("DST", m_destination, "Instance file to write")->required();
        command.add_option("--texture", m_textures,
            "TAG=TEXTURE: the texture node named TAG takes TEXTURE (repeatable; the last one of a tag counts)");
    }

    jString firstPath() const override { return m_parent; }

    int run(const tool::ToolContext& context) override
    {
        if (!tool::requireNonEmpty(kName, "parent", m_parent)
            || !tool::requireNonEmpty(kName, "destination", m_destination))
            return tool::kExitUsage;
        std::vector<jString> relative;
        std::map<jString, jString> textures;
        if (!context.toRootRelative(kName, {m_parent, m_destination}, relative)
            || !tool::requireDestination(kName, m_destination, relative[0], relative[1])
            || !readTextures(context, textures))
            return tool::kExitUsage;
        if (!tool::requireReadableFile(kName, m_parent, relative[0]))
            return tool::kExitFailed;
        const bool written = m_textures.empty() ? MaterialEditor::Instantiate(relative[0], relative[1])
                                                : MaterialEditor::Instantiate(relative[0], relative[1], textures);
        if (!written) {
            jLog::error("%s: can't write \"%s\" as an instance of \"%s\"", kName, m_destination.c_str(),
                m_parent.c_str());
            return tool::kExitFailed;
        }
        jLog::message("%s: wrote \"%s\"", kName, m_destination.c_str());
        return tool::kExitSuccess;
    }

private:
    // Tag -> root-relative texture path; false (logged) for a malformed
    // value or a texture outside the data root.
    bool readTextures(const tool::ToolContext& context, std::map<jString, jString>& textures) const
    {
        bool valid = true;
        for (const jString& entry : m_textures) {
            const size_t equals = entry.find('=');
            if (equals == 0 || equals == jString::npos || equals + 1 == entry.size()) {
                jLog::error("%s: --texture \"%s\" is not TAG=TEXTURE", kName, entry.c_str());
                valid = false;
                continue;
            }
            std::vector<jString> texture;
            if (!context.toRootRelative(kName, {entry.substr(equals + 1)}, texture))
                valid = false;
            else
                textures[entry.substr(0, equals)] = texture[0];
        }
        return valid;
    }

    jString m_parent;
    jString m_destination;
    std::vector<jString> m_textures;
};

const tool::ToolCommandRegistration registration([] { return std::unique_ptr<tool::ToolCommand>(new InstantiateCommand); });

} // namespace
