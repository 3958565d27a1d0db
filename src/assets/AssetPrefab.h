#pragma once

#include "Asset.h"

// A prefab file (.prefab).
class AssetPrefab : public Asset {
public:
    explicit AssetPrefab(jString path) : Asset(std::move(path), Kind::Prefab) {}
};
