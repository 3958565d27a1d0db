#include "RenderTarget.h"

#include <epoxy/gl.h>

#include <algorithm>
#include <cstring>

RenderTarget::~RenderTarget()
{
    release();
}

void RenderTarget::release()
{
    glDeleteFramebuffers(1, &m_drawFramebuffer);
    glDeleteFramebuffers(1, &m_resolveFramebuffer);
    glDeleteRenderbuffers(1, &m_colour);
    glDeleteRenderbuffers(1, &m_depth);
    glDeleteRenderbuffers(1, &m_resolveColour);
    m_drawFramebuffer = m_resolveFramebuffer = m_colour = m_depth = m_resolveColour = 0;
}

bool RenderTarget::create(int width, int height, int samples)
{
    release();
    GLint maxSamples = 0;
    glGetIntegerv(GL_MAX_SAMPLES, &maxSamples);
    m_width = width;
    m_height = height;
    m_samples = std::clamp(samples, 0, int(maxSamples));

    glGenRenderbuffers(1, &m_colour);
    glBindRenderbuffer(GL_RENDERBUFFER, m_colour);
    glRenderbufferStorageMultisample(GL_RENDERBUFFER, m_samples, GL_RGBA8, width, height);
    glGenRenderbuffers(1, &m_depth);
    glBindRenderbuffer(GL_RENDERBUFFER, m_depth);
    glRenderbufferStorageMultisample(GL_RENDERBUFFER, m_samples, GL_DEPTH24_STENCIL8, width, height);
    glGenFramebuffers(1, &m_drawFramebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, m_drawFramebuffer);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, m_colour);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_STENCIL_ATTACHMENT, GL_RENDERBUFFER, m_depth);
    const bool drawComplete = glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;

    glGenRenderbuffers(1, &m_resolveColour);
    glBindRenderbuffer(GL_RENDERBUFFER, m_resolveColour);
    glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, width, height);
    glGenFramebuffers(1, &m_resolveFramebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, m_resolveFramebuffer);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, m_resolveColour);
    const bool resolveComplete = glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    return drawComplete && resolveComplete;
}

void RenderTarget::bind() const
{
    glBindFramebuffer(GL_FRAMEBUFFER, m_drawFramebuffer);
    glViewport(0, 0, m_width, m_height);
}

void RenderTarget::readPixels(std::vector<uint8_t>& rgba) const
{
    glBindFramebuffer(GL_READ_FRAMEBUFFER, m_drawFramebuffer);
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, m_resolveFramebuffer);
    glBlitFramebuffer(0, 0, m_width, m_height, 0, 0, m_width, m_height, GL_COLOR_BUFFER_BIT, GL_NEAREST);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, m_resolveFramebuffer);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    const size_t rowBytes = size_t(m_width) * 4;
    rgba.resize(rowBytes * size_t(m_height));
    glReadPixels(0, 0, m_width, m_height, GL_RGBA, GL_UNSIGNED_BYTE, rgba.data());
    // GL counts rows from the bottom.
    std::vector<uint8_t> row(rowBytes);
    for (int top = 0, bottom = m_height - 1; top < bottom; ++top, --bottom) {
        uint8_t* a = rgba.data() + size_t(top) * rowBytes;
        uint8_t* b = rgba.data() + size_t(bottom) * rowBytes;
        std::memcpy(row.data(), a, rowBytes);
        std::memcpy(a, b, rowBytes);
        std::memcpy(b, row.data(), rowBytes);
    }
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
}
