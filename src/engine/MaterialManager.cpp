#include "MaterialManager.h"

#include "MaterialReader.h"
#include "Package.h"
#include "jDir.h"
#include "jKit.h"
#include "jLog.h"
#include "mjl.h"

#include <atomic>
#include <set>

namespace {

constexpr const char* kRoutine = "MaterialManager::load";

uint64_t nextSerial()
{
    static std::atomic<uint64_t> serial{0};
    return ++serial;
}

std::string_view parentPathOf(const Package& material)
{
    const std::string_view parentPath = material.getString("parent_path");
    return parentPath.empty() ? material.getString("parent") : parentPath;
}

// Loads a file and, for an instance, its parents first. chain holds the
// keys of the files being loaded, so that a parent cycle is refused.
MaterialManager::MaterialPtr loadChain(const jString& path, std::set<jString>& chain);

MaterialManager::MaterialPtr buildFromPackage(const Package& root, const jString& path, std::set<jString>& chain)
{
    const Package* material = MaterialReader::findMaterial(root);
    if (!material) {
        jLog::error("%s: \"%s\" has no \"materials\" -> \"material\" package", kRoutine, path.c_str());
        return nullptr;
    }
    MaterialManager::MaterialPtr result;
    const jString parentPath(parentPathOf(*material));
    if (!parentPath.empty()) {
        if (!jDir::checkStoredPath(kRoutine, path, "the parent", parentPath))
            return nullptr;
        MaterialManager::MaterialPtr parent = loadChain(parentPath, chain);
        if (!parent) {
            jLog::error("%s: parent material \"%s\" of \"%s\" can't be loaded", kRoutine, parentPath.c_str(),
                path.c_str());
            return nullptr;
        }
        result = std::make_shared<Material>(*parent);
        result->setParentPath(parentPath);
    } else {
        result = std::make_shared<Material>();
    }
    result->setPath(path);
    result->setName(jKit::getBaseName(path));
    const MaterialReader reader(path);
    if (!reader.read(*material, *result))
        return nullptr;
    reader.resolveAmbientReferences(*result);
    result->setSerial(nextSerial());
    return result;
}

MaterialManager::MaterialPtr loadChain(const jString& path, std::set<jString>& chain)
{
    const jString key = MaterialManager::makeKey(path);
    if (chain.size() >= size_t(MaterialManager::kMaxParentDepth) || !chain.insert(key).second) {
        jLog::error("%s: \"%s\" is its own parent or nested too deep", kRoutine, path.c_str());
        return nullptr;
    }
    mjl file;
    if (!file.open(path, false)) {
        jLog::error("%s: can't open material \"%s\"", kRoutine, path.c_str());
        return nullptr;
    }
    MaterialManager::MaterialPtr material = buildFromPackage(*file.getRoot(), path, chain);
    chain.erase(key);
    return material;
}

} // namespace

MaterialManager& MaterialManager::get()
{
    static MaterialManager manager;
    return manager;
}

jString MaterialManager::makeKey(const jString& path)
{
    return jKit::normalizePath(path);
}

MaterialManager::MaterialPtr MaterialManager::loadFile(const jString& path)
{
    std::set<jString> chain;
    return loadChain(path, chain);
}

MaterialManager::MaterialPtr MaterialManager::fromPackage(const Package& root, const jString& path)
{
    std::set<jString> chain{makeKey(path)};
    return buildFromPackage(root, path, chain);
}

MaterialManager::MaterialPtr MaterialManager::load(const jString& path)
{
    const jString key = makeKey(path);
    {
        std::lock_guard lock(m_mutex);
        if (auto it = m_materials.find(key); it != m_materials.end())
            return it->second;
    }
    MaterialPtr material = loadFile(path);
    if (!material)
        return nullptr;
    std::lock_guard lock(m_mutex);
    // Another thread may have loaded it meanwhile; the first copy wins.
    return m_materials.emplace(key, std::move(material)).first->second;
}

MaterialManager::MaterialPtr MaterialManager::find(const jString& path) const
{
    std::lock_guard lock(m_mutex);
    auto it = m_materials.find(makeKey(path));
    return it == m_materials.end() ? nullptr : it->second;
}

MaterialManager::MaterialPtr MaterialManager::reload(const jString& path)
{
    MaterialPtr material = loadFile(path);
    if (!material)
        return nullptr;
    std::lock_guard lock(m_mutex);
    m_materials[makeKey(path)] = material;
    return material;
}

void MaterialManager::put(const jString& path, MaterialPtr material)
{
    std::lock_guard lock(m_mutex);
    m_materials[makeKey(path)] = std::move(material);
}

bool MaterialManager::remove(const jString& path)
{
    std::lock_guard lock(m_mutex);
    return m_materials.erase(makeKey(path)) > 0;
}

void MaterialManager::clear()
{
    std::lock_guard lock(m_mutex);
    m_materials.clear();
}

size_t MaterialManager::getCount() const
{
    std::lock_guard lock(m_mutex);
    return m_materials.size();
}
