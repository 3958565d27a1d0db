#pragma once

#include "Asset.h"

// A world file (.world, .scene).
class AssetWorld : public Asset {
public:
    explicit AssetWorld(jString path) : Asset(std::move(path), Kind::World) {}
};
