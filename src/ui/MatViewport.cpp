#include "MatViewport.h"

#include "UIEventTranslator.h"
#include "jLog.h"
#include "tr.h"

#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

namespace {

QColor backgroundColour()
{
    return QColor::fromRgbF(MatViewport::kBackgroundGrey, MatViewport::kBackgroundGrey, MatViewport::kBackgroundGrey);
}

} // namespace

MatViewport::MatViewport(QWidget* parent, int width, int height)
    : QWidget(parent)
{
    setFixedSize(width, height);
    // The viewport decides about its focus itself (press and release below),
    // so Qt must not hand it the focus on a click before the handler runs.
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    dragging = 0;
    lastX = 0;
    Render::calculateEnvironmentCoefficients(kSkyTexture, skyCoefficients);
    m_scene.setObjectMaterial(MatViewportScene::kEditorMesh);
}

MatViewport::~MatViewport() = default;

// ---------------------------------------------------------------- material

bool MatViewport::setMaterial(const jString& name)
{
    m_materialChanged = true;
    return m_scene.setObjectMaterial(name);
}

bool MatViewport::reloadMaterial()
{
    m_materialChanged = true;
    return m_scene.reloadObjectMaterial();
}

// ------------------------------------------------------------------ frames

void MatViewport::update(float dt)
{
    m_time += dt;
    render();
}

void MatViewport::render()
{
    MaterialManager::MaterialPtr material = m_scene.findObjectMaterial();
    if (!material || !is_frame_due(*material) || !ensure_render())
        return;
    render_frame(*material);
}

bool MatViewport::is_frame_due(const Material& material) const
{
    const OrbitCamera& camera = m_scene.getCamera();
    return m_materialChanged || m_renderCount == 0 || material.getSerial() != m_shown.serial
        || material.getPath() != m_shown.path || camera.getPosition() != m_shown.position
        || !(camera.getRotation() == m_shown.rotation) || (m_shown.readsTime && m_time != m_shown.time);
}

bool MatViewport::ensure_render()
{
    if (m_render)
        return true;
    if (m_renderFailed)
        return false;
    jString reason;
    m_render = create_render(width(), height(), reason);
    if (!m_render) {
        m_renderFailed = true;
        jLog::error("MatViewport: no OpenGL context, the preview is off: %s", reason.c_str());
        QWidget::update();
        return false;
    }
    m_render->setLight(m_scene.getLightDirection(), m_scene.getLightColour());
    return true;
}

std::unique_ptr<Render> MatViewport::create_render(int width, int height, jString& reason)
{
    return Render::create(width, height, reason);
}

void MatViewport::render_frame(Material& material)
{
    const OrbitCamera& camera = m_scene.getCamera();
    m_render->setCamera(camera);
    m_render->setTime(m_time);
    {
        // The preview's state values and sky lighting hold for this frame only.
        const PreviewPass pass(material, *m_render, skyCoefficients, m_passValues);
        // Without a program only the sky shows; the renderer has said why.
        m_render->renderFrame(material, m_scene.getSky());
    }
    m_render->readPixels(m_pixels);
    show_pixels();
    m_shown = {material.getPath(), material.getSerial(), camera.getPosition(), camera.getRotation(), m_time,
        m_render->lastFrameReadsTime()};
    m_materialChanged = false;
    ++m_renderCount;
    QWidget::update();
}

void MatViewport::show_pixels()
{
    // The image shares the pixel buffer, which keeps its size (the
    // renderer's) for the widget's life; it is wrapped again only if the
    // buffer ever moves.
    if (m_image.isNull() || m_image.constBits() != m_pixels.data())
        m_image = QImage(m_pixels.data(), m_render->getWidth(), m_render->getHeight(), m_render->getWidth() * 4,
            QImage::Format_RGBA8888);
}

void MatViewport::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    if (!m_image.isNull()) {
        painter.drawImage(rect(), m_image);
        return;
    }
    painter.fillRect(rect(), backgroundColour());
    if (m_renderFailed)
        painter.drawText(rect(), Qt::AlignCenter | Qt::TextWordWrap, QString::fromStdString(::tr("no_preview")));
}

// ------------------------------------------------------------------- input

bool MatViewport::is_inside(const UIEventMouse& event) const
{
    return rect().contains(event.localX, event.localY);
}

bool MatViewport::is_for_viewport(const UIEventMouse& event) const
{
    return event.getType() == UI_EVENT_MOUSE && (m_focused || is_inside(event));
}

void MatViewport::focus_viewport()
{
    m_focused = true;
    setFocus(Qt::MouseFocusReason);
}

void MatViewport::unfocus_viewport()
{
    m_focused = false;
    clearFocus();
}

void MatViewport::focusOutEvent(QFocusEvent* event)
{
    m_focused = false;
    QWidget::focusOutEvent(event);
}

bool MatViewport::onMouseDown(UIEventMouse& event)
{
    if (!is_for_viewport(event))
        return false;
    if (event.buttons & UIEventMouse::kLeft) {
        lastX = event.x;
        lastY = event.y;
        dragging = 1;
        if (!m_focused) {
            focus_viewport();
            emit pressedUnfocused(&event, this);
        } else {
            emit pressedFocused(&event, this);
        }
    }
    return true;
}

bool MatViewport::onMouseUp(UIEventMouse& event)
{
    if (!is_for_viewport(event))
        return false;
    if (event.buttons & UIEventMouse::kLeft)
        dragging = 0;
    // Unlike the graph canvas, a release over the viewport itself gives the
    // focus up: the view only holds it while a drag runs.
    if (is_inside(event))
        unfocus_viewport();
    return true;
}

bool MatViewport::onMouseMove(UIEventMouse& event)
{
    if (!is_for_viewport(event))
        return false;
    if (dragging)
        orbit_to(event.x, event.y);
    return true;
}

void MatViewport::orbit_to(int x, int y)
{
    const int dx = x - lastX;
    const int dy = y - lastY;
    lastX = x;
    lastY = y;
    // OrbitCamera::orbit turns q into rotation(z, -yaw) * q * rotation(y,
    // -pitch) and keeps the eye's distance; nothing happens for (0, 0).
    getCamera().orbit(float(dx) * kOrbitDegreesPerPixel, float(dy) * kOrbitDegreesPerPixel);
}

bool MatViewport::onMouseWheel(UIEventWheel& event)
{
    if (!is_for_viewport(event))
        return false;
    if (event.buttons & UIEventWheel::kWheelDown)
        getCamera().dolly(kDollyStep);
    else if (event.buttons & UIEventWheel::kWheelUp)
        getCamera().dolly(-kDollyStep);
    return true;
}

void MatViewport::mousePressEvent(QMouseEvent* event)
{
    UIEventMouse e = UIEventTranslator::mouse(*event, *this);
    onMouseDown(e);
    // Kept either way, so that the moves and the release of a drag come back.
    event->accept();
}

void MatViewport::mouseMoveEvent(QMouseEvent* event)
{
    UIEventMouse e = UIEventTranslator::mouse(*event, *this);
    event->setAccepted(onMouseMove(e));
}

void MatViewport::mouseReleaseEvent(QMouseEvent* event)
{
    UIEventMouse e = UIEventTranslator::mouse(*event, *this);
    event->setAccepted(onMouseUp(e));
}

void MatViewport::wheelEvent(QWheelEvent* event)
{
    UIEventWheel e = UIEventTranslator::wheel(*event, *this);
    event->setAccepted(onMouseWheel(e));
}
