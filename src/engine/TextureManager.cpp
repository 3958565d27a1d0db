#include "TextureManager.h"

#include "DdsReader.h"
#include "FileReader.h"
#include "StbImageReader.h"
#include "jDir.h"
#include "jKit.h"
#include "jLog.h"

#include <algorithm>
#include <cctype>

namespace {

jString lowerExtension(const jString& name)
{
    jString extension = jKit::getExtension(name);
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return char(std::tolower(c)); });
    return extension;
}

} // namespace

TextureManager& TextureManager::get()
{
    static TextureManager manager;
    return manager;
}

jString TextureManager::makeKey(const jString& path)
{
    return jKit::normalizePath(path);
}

bool TextureManager::decode(const uint8_t* data, size_t size, const jString& name, jImage& image, jString& error)
{
    if (DdsReader::hasMagic(data, size) || lowerExtension(name) == "dds")
        return DdsReader::decode(data, size, image, error);
    return StbImageReader::decode(data, size, image, error);
}

std::shared_ptr<jImage> TextureManager::loadFile(const jString& path)
{
    jString bytes;
    jString error;
    auto image = std::make_shared<jImage>();
    if (path.empty())
        error = "empty path";
    else if (!jDir::isInsideRoot(path))
        error = "outside the data root";
    else if (FileReader::read(jDir::resolveRead(path), MaxFileBytes, bytes, error) == FileReader::Status::Read
        && decode(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size(), path, *image, error))
        return image;
    jLog::error("TextureManager: can't load \"%s\": %s", path.c_str(), error.c_str());
    return nullptr;
}

TextureManager::ImagePtr TextureManager::load(const jString& path)
{
    const jString key = makeKey(path);
    std::lock_guard lock(m_mutex);
    auto found = m_images.find(key);
    if (found != m_images.end())
        return found->second;
    ImagePtr image = loadFile(key);
    if (image)
        m_images.emplace(key, image);
    return image;
}

TextureManager::ImagePtr TextureManager::find(const jString& path) const
{
    std::lock_guard lock(m_mutex);
    auto found = m_images.find(makeKey(path));
    return found == m_images.end() ? nullptr : found->second;
}

TextureManager::ImagePtr TextureManager::reload(const jString& path)
{
    const jString key = makeKey(path);
    ImagePtr image = loadFile(key);
    if (!image)
        return nullptr;
    std::lock_guard lock(m_mutex);
    m_images[key] = image;
    return image;
}

bool TextureManager::remove(const jString& path)
{
    std::lock_guard lock(m_mutex);
    return m_images.erase(makeKey(path)) > 0;
}

size_t TextureManager::releaseUnused()
{
    std::lock_guard lock(m_mutex);
    return std::erase_if(m_images, [](const auto& entry) { return entry.second.use_count() == 1; });
}

void TextureManager::clear()
{
    std::lock_guard lock(m_mutex);
    m_images.clear();
}

size_t TextureManager::getCount() const
{
    std::lock_guard lock(m_mutex);
    return m_images.size();
}
