#include "ToolCommand.h"
#include "ToolFiles.h"

#include "MaterialManager.h"
#include "PreviewRenderer.h"
#include "jLog.h"

#include <CLI/CLI.hpp>

#include <filesystem>

namespace {

constexpr const char* kName = "preview";
constexpr int kDefaultSize = 256;
constexpr int kMaxSize = 4096;

// Renders a material on the preview sphere over the editor's sky, headless,
// and writes the frame as a PNG file.
class PreviewCommand : public tool::ToolCommand {
public:
    const char* name() const override { return kName; }
    const char* description() const override { return "Render a material on the preview sphere into a PNG file"; }

    void addOptions(CLI::App& command) override
    {
        command.add_option("PATH", m_path, "Material file")->required();
        command.add_option("-o,--output", m_output, "The PNG file to write")->required();
        command.add_option("--size", m_size, "Width and height in pixels")->check(CLI::Range(1, kMaxSize));
        command.add_option("--yaw", m_yaw, "Turn the camera about the vertical axis, in degrees");
        command.add_option("--pitch", m_pitch, "Raise the camera above the sphere's equator, in degrees");
    }

    jString firstPath() const override { return m_path; }

    int run(const tool::ToolContext& context) override
    {
        std::vector<jString> relative;
        // Checked before the context is made, so a typo is reported the same
        // way on a machine without OpenGL.
        if (const int exitCode = tool::prepareInputs(context, kName, {m_path}, relative))
            return exitCode;
        jString reason;
        std::unique_ptr<PreviewRenderer> preview = PreviewRenderer::create(m_size, m_size, reason);
        if (!preview) {
            jLog::error("%s: no OpenGL context: %s", kName, reason.c_str());
            return tool::kExitFailed;
        }
        MaterialManager::MaterialPtr material = MaterialManager::get().load(relative[0]);
        if (!material)
            return tool::kExitFailed;
        // The camera's orbit lowers the eye for a positive pitch.
        preview->getCamera().orbit(m_yaw, -m_pitch);
        std::vector<uint8_t> rgba;
        if (!preview->renderPixels(*material, rgba))
            return tool::kExitFailed;
        const jString output = std::filesystem::absolute(m_output).lexically_normal().string();
        if (!Render::writePng(output, m_size, m_size, rgba))
            return tool::kExitFailed;
        jLog::message("%s: wrote \"%s\"", kName, m_output.c_str());
        return tool::kExitSuccess;
    }

private:
    jString m_path;
    jString m_output;
    int m_size = kDefaultSize;
    float m_yaw = 0.0f;
    float m_pitch = 0.0f;
};

const tool::ToolCommandRegistration registration([] { return std::unique_ptr<tool::ToolCommand>(new PreviewCommand); });

} // namespace
