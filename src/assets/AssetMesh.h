#pragma once

#include "Asset.h"

// A mesh file (.mesh, .obj, .fbx, .gltf, .glb).
class AssetMesh : public Asset {
public:
    explicit AssetMesh(jString path) : Asset(std::move(path), Kind::Mesh) {}
};
