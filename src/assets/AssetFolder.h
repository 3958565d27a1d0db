#pragma once

#include "Asset.h"

// A folder under the data root; double-clicking it enters it.
class AssetFolder : public Asset {
public:
    explicit AssetFolder(jString path) : Asset(std::move(path), Kind::Folder) {}
};
