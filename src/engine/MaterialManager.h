#pragma once

#include "Material.h"

#include <map>
#include <memory>
#include <mutex>

class Package;

// Loads compiled material files into Material records and keeps them cached
// by their root-relative path, so every user of a material shares one copy.
//
//   MaterialPtr rock = MaterialManager::get().load("data/materials/rock.mat");
//
// An instance file (one with "parent_path") is resolved against its parent:
// the parent's passes, states, options, parameters and textures, with the
// instance's own entries laid over them by name. A reload that fails leaves
// the previous material cached; holders of a material keep their copy until
// they let it go. Failures are logged and give null; nothing throws.
class MaterialManager {
public:
    using MaterialPtr = std::shared_ptr<Material>;

    // Parents nested deeper than this are refused (it also ends cycles).
    static constexpr int kMaxParentDepth = 16;

    MaterialManager() = default;
    MaterialManager(const MaterialManager&) = delete;
    MaterialManager& operator=(const MaterialManager&) = delete;

    // The engine's process-wide manager.
    static MaterialManager& get();

    // The cached material, loading it on first use.
    MaterialPtr load(const jString& path);
    // The cached material, or null without loading or logging.
    MaterialPtr find(const jString& path) const;
    // Reads the file again and replaces the cached entry; on failure the
    // previous entry stays and null is returned.
    MaterialPtr reload(const jString& path);
    // Caches a material made in memory (the editor's live preview) under
    // path, in place of what the file holds, until the next reload or put.
    void put(const jString& path, MaterialPtr material);
    // Drops an entry; false when it was not cached.
    bool remove(const jString& path);
    void clear();
    size_t getCount() const;

    // Programs are assembled for the editor ("__MATERAIL_EDITOR__" defined)
    // while this is set; the preview sets it around its frames.
    void setEditorMode(bool enabled) { m_editorMode = enabled; }
    bool isEditorMode() const { return m_editorMode; }

    // Reads one file without the cache.
    static MaterialPtr loadFile(const jString& path);
    // Builds a material from a parsed file's root package; path names the
    // material in messages and resolves nothing.
    static MaterialPtr fromPackage(const Package& root, const jString& path);
    // The cache key of a path: normalised, '/'-separated.
    static jString makeKey(const jString& path);

private:
    mutable std::mutex m_mutex;
    std::map<jString, MaterialPtr> m_materials;
    bool m_editorMode = false;
};
