#include "RenderContext.h"

#include <epoxy/egl.h>
#include <epoxy/gl.h>

#include <cstring>
#include <mutex>

namespace {

bool hasExtension(const char* list, const char* name)
{
    if (!list)
        return false;
    const size_t length = std::strlen(name);
    for (const char* p = list; (p = std::strstr(p, name)) != nullptr; p += length)
        if ((p == list || p[-1] == ' ') && (p[length] == ' ' || p[length] == '\0'))
            return true;
    return false;
}

// The surfaceless display is initialised once and shared: terminating it
// would tear down the contexts of every other renderer in the process.
EGLDisplay surfacelessDisplay(jString& reason)
{
    static std::once_flag once;
    static EGLDisplay display = EGL_NO_DISPLAY;
    static jString failure;
    std::call_once(once, [] {
        if (!hasExtension(eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS), "EGL_MESA_platform_surfaceless")) {
            failure = "EGL has no surfaceless platform (EGL_MESA_platform_surfaceless; is Mesa's libegl-mesa0 installed?)";
            return;
        }
        EGLDisplay candidate = eglGetPlatformDisplayEXT(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
        EGLint major = 0, minor = 0;
        if (candidate == EGL_NO_DISPLAY || !eglInitialize(candidate, &major, &minor)) {
            failure = jFormat("eglInitialize failed on the surfaceless platform (0x%x)", eglGetError());
            return;
        }
        display = candidate;
    });
    reason = failure;
    return display;
}

EGLConfig chooseConfig(EGLDisplay display)
{
    const EGLint attributes[] = {EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT, EGL_NONE};
    EGLConfig config = nullptr;
    EGLint count = 0;
    if (!eglChooseConfig(display, attributes, &config, 1, &count) || count == 0)
        return EGL_NO_CONFIG_KHR;
    return config;
}

} // namespace

std::unique_ptr<RenderContext> RenderContext::create(jString& reason)
{
    EGLDisplay display = surfacelessDisplay(reason);
    if (display == EGL_NO_DISPLAY)
        return nullptr;
    if (!hasExtension(eglQueryString(display, EGL_EXTENSIONS), "EGL_KHR_surfaceless_context")) {
        reason = "the EGL display cannot make a context current without a surface";
        return nullptr;
    }
    if (!eglBindAPI(EGL_OPENGL_API)) {
        reason = "EGL does not offer desktop OpenGL";
        return nullptr;
    }
    const EGLint attributes[] = {EGL_CONTEXT_MAJOR_VERSION, kMajorVersion, EGL_CONTEXT_MINOR_VERSION, kMinorVersion,
        EGL_CONTEXT_OPENGL_PROFILE_MASK, EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT, EGL_NONE};
    EGLContext context = eglCreateContext(display, chooseConfig(display), EGL_NO_CONTEXT, attributes);
    if (context == EGL_NO_CONTEXT) {
        reason = jFormat("no OpenGL %d.%d core context (EGL error 0x%x)", kMajorVersion, kMinorVersion, eglGetError());
        return nullptr;
    }
    std::unique_ptr<RenderContext> result(new RenderContext);
    result->m_display = display;
    result->m_context = context;
    if (!result->makeCurrent()) {
        reason = jFormat("eglMakeCurrent failed (0x%x)", eglGetError());
        return nullptr;
    }
    result->m_description = jFormat("%s, OpenGL %s", reinterpret_cast<const char*>(glGetString(GL_RENDERER)),
        reinterpret_cast<const char*>(glGetString(GL_VERSION)));
    return result;
}

RenderContext::~RenderContext()
{
    if (!m_context)
        return;
    if (eglGetCurrentContext() == m_context)
        eglMakeCurrent(m_display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    eglDestroyContext(m_display, m_context);
}

bool RenderContext::makeCurrent() const
{
    return eglMakeCurrent(m_display, EGL_NO_SURFACE, EGL_NO_SURFACE, m_context) == EGL_TRUE;
}
