#include "LivePreview.h"

#include "AppData.h"
#include "Block.h"
#include "DataNode.h"
#include "Package.h"
#include "XMatComplier.h"

void LivePreview::setEnabled(bool enabled)
{
    m_enabled = enabled;
    if (!enabled)
        m_quiet = -1.0f;
}

void LivePreview::noteEdit()
{
    if (m_enabled)
        m_quiet = kQuietSeconds;
}

bool LivePreview::advance(float dt)
{
    if (m_quiet < 0.0f)
        return false;
    m_quiet -= dt;
    if (m_quiet > 0.0f)
        return false;
    m_quiet = -1.0f;
    return true;
}

void LivePreview::discard()
{
    if (!m_cachedPath.empty())
        MaterialManager::get().remove(m_cachedPath);
    m_cachedPath.clear();
    m_quiet = -1.0f;
}

jString LivePreview::previewPath(const AppData& document)
{
    return document.getPath().empty() ? jString(kUnsavedPath) : document.getPath();
}

MaterialManager::MaterialPtr LivePreview::build(AppData& document)
{
    if (document.getNodeCount() == 0)
        return nullptr;
    const jString path = previewPath(document);
    Package root;
    if (!document.fillMaterial(root, path))
        return nullptr;
    MaterialManager::MaterialPtr material = MaterialManager::fromPackage(root, path);
    if (!material)
        return nullptr;
    record_lines(document);
    m_serial = material->getSerial();
    m_cachedPath = path;
    MaterialManager::get().put(path, material);
    return material;
}

// The generator is deterministic: generating again gives the lines the
// material holds, with their owners.
void LivePreview::record_lines(const AppData& document)
{
    jVector<jString> lines;
    XMatComplier vertex(false, &document);
    if (vertex.generate_vs(lines) && !lines.empty())
        m_vertex.assign(lines, vertex.getLineNodes());
    else
        m_vertex.clear();
    lines.clear();
    XMatComplier pixel(false, &document);
    pixel.generate_ps(lines);
    m_pixel.assign(lines, pixel.getLineNodes());
}

bool LivePreview::collectProblems(const Render::BuildResult* result, const AppData& document,
    jVector<DocumentProblems::Entry>& problems) const
{
    if (!result || m_serial == 0 || result->serial != m_serial)
        return false;
    problems.clear();
    for (const ProgramBuilder::Error& error : result->errors) {
        const bool vertex = error.stage == "vertex";
        const bool pixel = error.stage == "fragment";
        const LineRecord* record = vertex ? &m_vertex : pixel ? &m_pixel : nullptr;
        DocumentProblems::Entry entry;
        entry.line = error.line;
        // Named as check names the programs.
        entry.message = (vertex ? "vertex program: " : pixel ? "pixel program: " : error.stage + ": ") + error.message;
        if (record && error.line > 0)
            entry.nodeId = record->nodeAt(static_cast<size_t>(error.line));
        const DataNode* node = entry.nodeId >= 0 ? document.findNode(entry.nodeId) : nullptr;
        if (node && node->getBlock())
            entry.nodeType = node->getBlock()->getType();
        problems.push_back(std::move(entry));
    }
    return true;
}
