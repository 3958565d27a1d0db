#include "AssetMaterial.h"

#include "AssetIcons.h"
#include "MaterialHeader.h"
#include "jDir.h"
#include "jLog.h"

AssetMaterial::AssetMaterial(jString path) : Asset(std::move(path), Kind::Material) {}

void AssetMaterial::read_header() const
{
    if (m_headerRead)
        return;
    m_headerRead = true;
    MaterialHeader header;
    jString reason;
    if (!MaterialHeader::read(jDir::resolveRead(getPath()), header, reason))
        jLog::warning("AssetsBrowser: can't read the material \"%s\": %s", getPath().c_str(), reason.c_str());
    const jString& path = getPath();
    m_surfaceID = !header.name.empty() ? header.name : path.substr(0, path.size() - (path.size() >= 4 ? 4 : 0));
    m_parentPath = header.parentPath;
    m_instance = header.isInstance();
}

const jString& AssetMaterial::getSurfaceID() const
{
    read_header();
    return m_surfaceID;
}

void AssetMaterial::setSurfaceID(const jString& id)
{
    read_header();
    m_surfaceID = id;
}

bool AssetMaterial::isEnableInstance() const
{
    read_header();
    return m_instance;
}

void AssetMaterial::setEnableInstance(bool instance)
{
    read_header();
    m_instance = instance;
}

const jString& AssetMaterial::getParentPath() const
{
    read_header();
    return m_parentPath;
}

QPixmap AssetMaterial::getIcon() const
{
    return isEnableInstance() ? AssetIcons::instanceMaterial() : AssetIcons::get(Kind::Material);
}

jString AssetMaterial::getToolTip() const
{
    jString tip = getPath() + "\nsurface: " + getSurfaceID();
    if (isEnableInstance())
        tip += m_parentPath.empty() ? jString("\ninstance") : "\ninstance of " + m_parentPath;
    return tip;
}
