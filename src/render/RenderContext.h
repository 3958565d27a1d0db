#pragma once

#include "jString.h"

#include <memory>

// A headless OpenGL 4.1+ core context: EGL on Mesa's surfaceless platform,
// current without any surface (rendering goes into framebuffer objects). It
// needs no display server; Mesa picks a GPU driver through the render node
// when there is one and its software rasteriser otherwise.
class RenderContext {
public:
    static constexpr int kMajorVersion = 4;
    static constexpr int kMinorVersion = 1;

    // Null when no context can be made; reason then says why.
    static std::unique_ptr<RenderContext> create(jString& reason);
    ~RenderContext();
    RenderContext(const RenderContext&) = delete;
    RenderContext& operator=(const RenderContext&) = delete;

    bool makeCurrent() const;
    // GL_RENDERER and GL_VERSION, for messages and benchmarks.
    const jString& getDescription() const { return m_description; }

private:
    RenderContext() = default;

    void* m_display = nullptr;
    void* m_context = nullptr;
    jString m_description;
};
