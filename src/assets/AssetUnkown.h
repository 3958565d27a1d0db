#pragma once

#include "Asset.h"

// A file of no kind the strip knows.
class AssetUnkown : public Asset {
public:
    explicit AssetUnkown(jString path) : Asset(std::move(path), Kind::Unknown) {}
};
