#pragma once

#include "FileReader.h"
#include "jImage.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>

// Loads image files (DDS, PNG, TGA, JPEG) into RGBA8 images and keeps them
// cached by their root-relative path, so every user of a texture shares one
// decoded copy.
//
//   auto sky = TextureManager::get().load("data/core/textures/environment/sky.dds");
//   if (sky && sky->getType() == jImage::Type::Cube) ...
//
// Paths are root-relative (an absolute path or one that climbs out of the
// root with ".." is refused) and resolved through the data root
// (jDir::resolveRead); files are read through FileReader.
// Failures are logged as one line naming the path and the reason, and give
// null; they are not cached, so a fixed file loads on the next request.
class TextureManager {
public:
    using ImagePtr = std::shared_ptr<const jImage>;

    static constexpr uint64_t MaxFileBytes = FileReader::kImageLimit;

    TextureManager() = default;
    TextureManager(const TextureManager&) = delete;
    TextureManager& operator=(const TextureManager&) = delete;

    // The engine's process-wide manager.
    static TextureManager& get();

    // The cached image, loading it on first use.
    ImagePtr load(const jString& path);
    // The cached image, or null without loading or logging.
    ImagePtr find(const jString& path) const;
    // Reads the file again and replaces the cached entry. Holders of the
    // previous image keep it unchanged. On failure the previous entry stays
    // cached and null is returned.
    ImagePtr reload(const jString& path);
    // Drops an entry; false when it was not cached.
    bool remove(const jString& path);
    // Drops the entries nobody outside the cache holds; returns how many.
    size_t releaseUnused();
    void clear();
    size_t getCount() const;

    // Reads one file without the cache; logs and returns null on failure.
    static std::shared_ptr<jImage> loadFile(const jString& path);
    // Decodes an image held in memory. DDS is recognised by its magic or by a
    // ".dds" name; everything else goes to stb_image.
    static bool decode(const uint8_t* data, size_t size, const jString& name, jImage& image, jString& error);
    // The cache key of a path: normalised, '/'-separated.
    static jString makeKey(const jString& path);

private:
    mutable std::mutex m_mutex;
    std::map<jString, ImagePtr> m_images;
};
