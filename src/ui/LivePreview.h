#pragma once

#include "DocumentProblems.h"
#include "LineRecord.h"
#include "MaterialManager.h"
#include "Render.h"
#include "jString.h"

#include <cstdint>

class AppData;

// The editor's live preview (docs/live-preview.md): every edit restarts a
// quiet period; when it ends without a further edit, the document's
// material is made in memory (the same package save would write, with both
// generated programs) and cached in the material manager under the
// document's path, where the preview finds it. No file is written. The
// driver's messages of that copy's build come back on the nodes whose
// code they are about, through the generator's line records.
//
// Frame driven: the window advances it in update(dt); it keeps no timer.
class LivePreview {
public:
    static constexpr float kQuietSeconds = 0.1f;
    // The cache path of a document that has no file yet.
    static constexpr const char* kUnsavedPath = "live-preview.mat";

    bool isEnabled() const { return m_enabled; }
    // Turning it off drops a pending rebuild.
    void setEnabled(bool enabled);

    // An edit: the preview follows once the quiet period passed without
    // another one.
    void noteEdit();
    bool isPending() const { return m_quiet >= 0.0f; }
    // Frame step of dt seconds; true once when the quiet period ended.
    bool advance(float dt);

    // Makes the document's material in memory and caches it; null (after
    // the document's own messages) when it cannot be made.
    MaterialManager::MaterialPtr build(AppData& document);
    // Drops the cached copy and a pending rebuild (a document is closed or
    // another one loaded: the file's material is what shows then).
    void discard();
    // Where the material of the document is cached.
    static jString previewPath(const AppData& document);
    // The serial of the last copy built, 0 before the first one.
    uint64_t getBuiltSerial() const { return m_serial; }

    // The problems of the build of the last copy, each on the node whose
    // generated line it names; false while that copy has not been built.
    bool collectProblems(const Render::BuildResult* result, const AppData& document,
        jVector<DocumentProblems::Entry>& problems) const;

private:
    void record_lines(const AppData& document);

    bool m_enabled = true;
    float m_quiet = -1.0f;
    uint64_t m_serial = 0;
    jString m_cachedPath;
    LineRecord m_vertex;
    LineRecord m_pixel;
};
