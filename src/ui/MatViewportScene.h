#pragma once

#include "MaterialManager.h"
#include "Math3D.h"
#include "OrbitCamera.h"
#include "jString.h"

// What the preview viewport shows: the preview object "Sphere" (the unit
// sphere at the origin) with one material on all its surfaces, the editor's
// sky ("EditorSky" on the sky's "sphere" surface), the orbit camera and the
// direct light.
//
// Materials are named the way the editor window names them: "EditorMesh"
// and "EditorSky" are the editor's own materials, any other name is the
// root-relative path of a compiled material file. The scene keeps names,
// not materials: the object's material is fetched from MaterialManager for
// each frame, so a material the manager reloads shows without telling the
// scene.
class MatViewportScene {
public:
    static constexpr const char* kObjectName = "Sphere";
    static constexpr const char* kAllSurfaces = "*";
    static constexpr const char* kSkySurface = "sphere";
    static constexpr const char* kEditorMesh = "EditorMesh";
    static constexpr const char* kEditorMeshPath = "data/core/editor/materials/EditorMesh.mat";
    static constexpr const char* kEditorSky = "EditorSky";
    static constexpr const char* kEditorSkyPath = "data/core/editor/materials/EditorSky.mat";

    // The file of a material name: the editor's own materials by name,
    // anything else is taken as a path.
    static jString materialPath(const jString& name);

    MatViewportScene();

    // Gives the object a material on all its surfaces; loads it through
    // MaterialManager when it is not cached (a file that does not load is
    // logged by the manager, once). False when it did not load.
    bool setObjectMaterial(const jString& name);
    const jString& getObjectMaterial() const { return m_objectMaterial; }
    const jString& getObjectMaterialPath() const { return m_objectPath; }
    // The object's material as the manager holds it now; null when absent.
    MaterialManager::MaterialPtr findObjectMaterial() const;
    // Reads the object's material file again (MaterialManager::reload).
    bool reloadObjectMaterial();

    // The sky's material, loaded on first use and kept; null when it does
    // not load (the preview then draws over black).
    const Material* getSky();

    OrbitCamera& getCamera() { return m_camera; }
    const OrbitCamera& getCamera() const { return m_camera; }
    const math3d::Vec3& getLightDirection() const { return m_lightDirection; }
    const math3d::Vec3& getLightColour() const { return m_lightColour; }

private:
    jString m_objectMaterial;
    jString m_objectPath;
    MaterialManager::MaterialPtr m_sky;
    bool m_skyTried = false;
    OrbitCamera m_camera;
    math3d::Vec3 m_lightDirection{0.4f, -0.6f, 0.7f};
    math3d::Vec3 m_lightColour{1.0f, 1.0f, 1.0f};
};
