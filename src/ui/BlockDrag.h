#pragma once

#include "jString.h"

#include <Qt>

class QMimeData;
class QWidget;

// The drag of a block type from the block browser onto the graph: the MIME
// data carries the full type name under our own format (and as plain text,
// for other drop targets). The drop side reads it back through typeName().
class BlockDrag {
public:
    static constexpr const char* kMimeType = "application/x-material-block";

    // Starts the drag from source (the browser's tree) and returns when it
    // ends: the action the target took, or Qt::IgnoreAction.
    static Qt::DropAction start(QWidget* source, const jString& typeName);

    // The data a drag of typeName carries (caller owns it).
    static QMimeData* makeMimeData(const jString& typeName);
    static bool isBlockDrag(const QMimeData* mime);
    // The type name of a block drag; empty for other drags.
    static jString typeName(const QMimeData* mime);
};
