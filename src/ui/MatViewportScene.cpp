#include "MatViewportScene.h"

jString MatViewportScene::materialPath(const jString& name)
{
    if (name == kEditorMesh)
        return kEditorMeshPath;
    if (name == kEditorSky)
        return kEditorSkyPath;
    return name;
}

MatViewportScene::MatViewportScene()
    : m_objectMaterial(kEditorMesh)
    , m_objectPath(kEditorMeshPath)
{
}

bool MatViewportScene::setObjectMaterial(const jString& name)
{
    m_objectMaterial = name;
    m_objectPath = materialPath(name);
    return MaterialManager::get().find(m_objectPath) || MaterialManager::get().load(m_objectPath);
}

MaterialManager::MaterialPtr MatViewportScene::findObjectMaterial() const
{
    return MaterialManager::get().find(m_objectPath);
}

bool MatViewportScene::reloadObjectMaterial()
{
    return MaterialManager::get().reload(m_objectPath) != nullptr;
}

const Material* MatViewportScene::getSky()
{
    if (!m_skyTried) {
        m_skyTried = true;
        m_sky = MaterialManager::get().load(kEditorSkyPath);
    }
    return m_sky.get();
}
