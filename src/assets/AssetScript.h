#pragma once

#include "Asset.h"

// A script file (.lua, .py, .js, .script).
class AssetScript : public Asset {
public:
    explicit AssetScript(jString path) : Asset(std::move(path), Kind::Script) {}
};
