#include "Asset.h"

#include "AssetFolder.h"
#include "AssetIcons.h"
#include "AssetImage.h"
#include "AssetMaterial.h"
#include "AssetMesh.h"
#include "AssetPrefab.h"
#include "AssetScript.h"
#include "AssetUnkown.h"
#include "AssetWorld.h"
#include "jKit.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <utility>

namespace {

struct ExtensionKind {
    const char* extension;
    Asset::Kind kind;
};

// The file kinds the strip knows; docs/asset-strip.md lists them.
constexpr std::array kExtensions = {
    ExtensionKind{"mat", Asset::Kind::Material},
    ExtensionKind{"dds", Asset::Kind::Image},
    ExtensionKind{"png", Asset::Kind::Image},
    ExtensionKind{"tga", Asset::Kind::Image},
    ExtensionKind{"jpg", Asset::Kind::Image},
    ExtensionKind{"jpeg", Asset::Kind::Image},
    ExtensionKind{"mesh", Asset::Kind::Mesh},
    ExtensionKind{"obj", Asset::Kind::Mesh},
    ExtensionKind{"fbx", Asset::Kind::Mesh},
    ExtensionKind{"gltf", Asset::Kind::Mesh},
    ExtensionKind{"glb", Asset::Kind::Mesh},
    ExtensionKind{"prefab", Asset::Kind::Prefab},
    ExtensionKind{"lua", Asset::Kind::Script},
    ExtensionKind{"py", Asset::Kind::Script},
    ExtensionKind{"js", Asset::Kind::Script},
    ExtensionKind{"script", Asset::Kind::Script},
    ExtensionKind{"world", Asset::Kind::World},
    ExtensionKind{"scene", Asset::Kind::World},
};

} // namespace

Asset::Asset(jString path, Kind kind)
    : m_path(std::move(path)), m_name(jKit::getFileName(m_path)), m_kind(kind)
{
}

Asset::~Asset() = default;

QPixmap Asset::getIcon() const
{
    return AssetIcons::get(m_kind);
}

jString Asset::getToolTip() const
{
    return m_path;
}

Asset::Kind Asset::kindOfFile(const jString& path)
{
    jString extension = jKit::getExtension(path);
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return char(std::tolower(c)); });
    for (const ExtensionKind& entry : kExtensions)
        if (extension == entry.extension)
            return entry.kind;
    return Kind::Unknown;
}

const char* Asset::kindName(Kind kind)
{
    switch (kind) {
    case Kind::Folder: return "folder";
    case Kind::Material: return "material";
    case Kind::Image: return "image";
    case Kind::Mesh: return "mesh";
    case Kind::Prefab: return "prefab";
    case Kind::Script: return "script";
    case Kind::World: return "world";
    case Kind::Unknown: break;
    }
    return "unknown";
}

std::unique_ptr<Asset> Asset::create(const jString& path, bool isFolder)
{
    if (isFolder)
        return std::make_unique<AssetFolder>(path);
    switch (kindOfFile(path)) {
    case Kind::Material: return std::make_unique<AssetMaterial>(path);
    case Kind::Image: return std::make_unique<AssetImage>(path);
    case Kind::Mesh: return std::make_unique<AssetMesh>(path);
    case Kind::Prefab: return std::make_unique<AssetPrefab>(path);
    case Kind::Script: return std::make_unique<AssetScript>(path);
    case Kind::World: return std::make_unique<AssetWorld>(path);
    case Kind::Folder:
    case Kind::Unknown: break;
    }
    return std::make_unique<AssetUnkown>(path);
}
