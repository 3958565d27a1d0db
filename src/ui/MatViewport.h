#pragma once

#include "MatViewportScene.h"
#include "PreviewPass.h"
#include "Render.h"
#include "SphericalHarmonics.h"
#include "UIEventMouse.h"
#include "UIEventWheel.h"
#include "jString.h"

#include <QImage>
#include <QWidget>

#include <cstdint>
#include <memory>
#include <vector>

// The material preview of the editor window: a fixed-size view of the
// preview scene (the material on the sphere under the editor's sky),
// rendered off screen by the render layer into an image that paintEvent
// shows. Dragging with the left button orbits the camera about the object,
// the wheel moves it along its view axis.
//
// Frames cost nothing while nothing changes: a frame is rendered only when
// the camera moved, a material was assigned or the manager holds a newer
// copy of it, or, while the shown programs read the clock, the time went on.
// Otherwise update() and render() return at once and paint shows the last
// image. One GL context serves the widget's whole life; it is made on the
// first frame. Without one (no Mesa) one error is logged and the view shows
// a plain background with a short text.
class MatViewport : public QWidget {
    Q_OBJECT

public:
    static constexpr float kOrbitDegreesPerPixel = 0.2f;
    static constexpr float kDollyStep = 0.1f;
    static constexpr const char* kSkyTexture = "data/core/textures/environment/sky.dds";
    // Shown before the first frame and when there is nothing to render with.
    static constexpr float kBackgroundGrey = 0.66831f;

    // Computes the sky's environment coefficients and gives the object the
    // editor's neutral material; makes no GL context yet.
    MatViewport(QWidget* parent, int width, int height);
    ~MatViewport() override;

    // The object's material, by name ("EditorMesh") or root-relative path.
    // False when it did not load (logged).
    bool setMaterial(const jString& name);
    const jString& getMaterial() const { return m_scene.getObjectMaterial(); }
    // Reads the material's file again and shows the new copy.
    bool reloadMaterial();

    // The camera; moving it makes the next frame render.
    OrbitCamera& getCamera() { return m_scene.getCamera(); }
    const OrbitCamera& getCamera() const { return m_scene.getCamera(); }
    MatViewportScene& getScene() { return m_scene; }
    // The values "LightModulation" and "Environment" take while rendering.
    PreviewPass::Values& getPassValues() { return m_passValues; }
    const EnvironmentCoefficients& getSkyCoefficients() const { return skyCoefficients; }

    // Frame step: the preview clock goes on by dt seconds, then a due frame
    // is rendered.
    using QWidget::update;
    void update(float dt);
    // Renders a frame when one is due.
    void render();

    // Input; each returns whether the event was consumed. Events outside the
    // viewport are taken only while it has the focus.
    bool onMouseDown(UIEventMouse& event);
    bool onMouseUp(UIEventMouse& event);
    bool onMouseMove(UIEventMouse& event);
    bool onMouseWheel(UIEventWheel& event);

    bool isDragging() const { return dragging != 0; }
    bool hasViewportFocus() const { return m_focused; }
    // The last frame as shown (null before the first one).
    const QImage& getImage() const { return m_image; }
    // Frames rendered so far, and the renderer (null before the first frame
    // or without GL).
    size_t getRenderCount() const { return m_renderCount; }
    Render* getRender() const { return m_render.get(); }
    // True once making a GL context failed: no frame will ever render.
    bool isRenderUnavailable() const { return m_renderFailed; }
    float getTime() const { return m_time; }

signals:
    void pressedUnfocused(UIEventMouse* event, MatViewport* viewport);
    void pressedFocused(UIEventMouse* event, MatViewport* viewport);

protected:
    // The renderer of the widget's frames; null with the reason when no GL
    // context can be made.
    virtual std::unique_ptr<Render> create_render(int width, int height, jString& reason);

    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

    uint8_t dragging = 0;
    int32_t lastX = 0;
    int32_t lastY = 0;
    EnvironmentCoefficients skyCoefficients{};

private:
    // What the last frame showed, to tell whether the next one differs.
    struct Shown {
        jString path;
        uint64_t serial = 0;
        math3d::Vec3 position;
        math3d::Quat rotation;
        float time = 0.0f;
        bool readsTime = false;
    };

    bool is_inside(const UIEventMouse& event) const;
    bool is_for_viewport(const UIEventMouse& event) const;
    void focus_viewport();
    void unfocus_viewport();
    void orbit_to(int x, int y);

    bool is_frame_due(const Material& material) const;
    bool ensure_render();
    void render_frame(Material& material);
    void show_pixels();

    MatViewportScene m_scene;
    PreviewPass::Values m_passValues;
    std::unique_ptr<Render> m_render;
    bool m_renderFailed = false;
    std::vector<uint8_t> m_pixels;
    QImage m_image;
    Shown m_shown;
    bool m_materialChanged = true;
    float m_time = 0.0f;
    size_t m_renderCount = 0;
    bool m_focused = false;
};
