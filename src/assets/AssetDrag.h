#pragma once

#include "jString.h"

class QMimeData;

// The data of an asset dragged out of the strip: its root-relative path
// under our own format, and as plain text for other drop targets (the
// texture thumbnail of the property panel takes either).
class AssetDrag {
public:
    static constexpr const char* kMimeType = "application/x-material-asset";

    // The data a drag of path carries (caller owns it).
    static QMimeData* makeMimeData(const jString& path);
    static bool isAssetDrag(const QMimeData* mime);
    // The path of an asset drag; empty for other drags.
    static jString path(const QMimeData* mime);
};
