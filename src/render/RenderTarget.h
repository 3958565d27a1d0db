#pragma once

#include <cstdint>
#include <vector>

// The frame the preview draws into: a multisampled colour and depth
// framebuffer, resolved into a single-sample one before its pixels are read.
class RenderTarget {
public:
    static constexpr int kSamples = 4;

    RenderTarget() = default;
    ~RenderTarget();
    RenderTarget(const RenderTarget&) = delete;
    RenderTarget& operator=(const RenderTarget&) = delete;

    // (Re)creates the buffers; samples is clamped to what the driver offers.
    // False when the framebuffer is incomplete.
    bool create(int width, int height, int samples = kSamples);
    void bind() const;
    // Resolves the samples and reads the frame as RGBA8, top row first.
    void readPixels(std::vector<uint8_t>& rgba) const;

    int getWidth() const { return m_width; }
    int getHeight() const { return m_height; }
    int getSamples() const { return m_samples; }

private:
    void release();

    int m_width = 0;
    int m_height = 0;
    int m_samples = 0;
    uint32_t m_drawFramebuffer = 0;
    uint32_t m_colour = 0;
    uint32_t m_depth = 0;
    uint32_t m_resolveFramebuffer = 0;
    uint32_t m_resolveColour = 0;
};
