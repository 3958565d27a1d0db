#include "PreviewRenderer.h"

#include "MaterialManager.h"

std::unique_ptr<PreviewRenderer> PreviewRenderer::create(int width, int height, jString& reason)
{
    std::unique_ptr<Render> render = Render::create(width, height, reason);
    if (!render)
        return nullptr;
    std::unique_ptr<PreviewRenderer> preview(new PreviewRenderer);
    preview->m_render = std::move(render);
    preview->m_sky = MaterialManager::get().load(kSkyMaterial);
    Render::calculateEnvironmentCoefficients(kSkyTexture, preview->m_skyCoefficients);
    return preview;
}

bool PreviewRenderer::renderFrame(Material& material)
{
    m_render->setCamera(m_camera);
    const PreviewPass pass(material, *m_render, m_skyCoefficients, m_values);
    return m_render->renderFrame(material, m_sky.get());
}

bool PreviewRenderer::renderPixels(Material& material, std::vector<uint8_t>& rgba)
{
    if (!renderFrame(material))
        return false;
    m_render->readPixels(rgba);
    return true;
}
