#include "PreviewPass.h"

#include "MaterialManager.h"
#include "Render.h"

PreviewPass::PreviewPass(Material& material, Render& render, const EnvironmentCoefficients& sky, const Values& values)
    : m_material(material)
    , m_render(render)
    , m_savedEnvironment(render.getEnvironmentCoefficients())
    , m_savedManagerEditorMode(MaterialManager::get().isEditorMode())
{
    override(kEditorModeState, 1);
    override(kLightModulationState, values.lightModulation);
    override(kEnvironmentState, values.environment);
    m_render.setEnvironmentCoefficients(sky);
    MaterialManager::get().setEditorMode(true);
}

PreviewPass::~PreviewPass()
{
    for (const SavedState& saved : m_saved)
        m_material.findState(saved.name)->value = saved.value;
    m_render.setEnvironmentCoefficients(m_savedEnvironment);
    MaterialManager::get().setEditorMode(m_savedManagerEditorMode);
}

void PreviewPass::override(const char* name, std::optional<uint8_t> value)
{
    Material::State* state = value ? m_material.findState(name) : nullptr;
    if (!state)
        return;
    m_saved.push_back({name, state->value});
    state->value = *value;
}
