#include "Button.h"

#include "TintedSheetCache.h"
#include "UICanvasTextures.h"
#include "UIEventTranslator.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>
#include <QVBoxLayout>

namespace {

constexpr int kMargin = 4;

// Luminance grey of every texel, alpha kept (premultiplied stays valid).
QImage desaturated(const QImage& image)
{
    QImage grey = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < grey.height(); ++y) {
        QRgb* row = reinterpret_cast<QRgb*>(grey.scanLine(y));
        for (int x = 0; x < grey.width(); ++x) {
            const QRgb p = row[x];
            const int l = (qRed(p) * 299 + qGreen(p) * 587 + qBlue(p) * 114) / 1000;
            row[x] = qRgba(l, l, l, qAlpha(p));
        }
    }
    return grey;
}

} // namespace

Button::Button(QWidget* parent, const jString& name, const jString& iconPath) : QWidget(parent)
{
    setFocusPolicy(Qt::ClickFocus);
    m_layout = new QVBoxLayout(this);
    m_layout->setSpacing(2);

    m_icon = new QLabel(this);
    m_icon->setFixedSize(kIconSize, kIconSize);
    if (!iconPath.empty()) {
        QImage image = UICanvasTextures::load(iconPath);
        if (!image.isNull() && image.size() != QSize(kIconSize, kIconSize))
            image = image.scaled(kIconSize, kIconSize, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        m_iconSource = image;
    }
    m_layout->addWidget(m_icon, 0, Qt::AlignHCenter);

    auto* row = new QWidget(this);
    auto* rowLayout = new QHBoxLayout(row);
    rowLayout->setContentsMargins(0, 0, 0, 0);
    m_label = new QLabel(row);
    m_label->setAlignment(Qt::AlignCenter);
    rowLayout->addWidget(m_label);
    m_layout->addWidget(row);

    reposition_childs();
    update_icon();
    setName(name);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

Button::~Button() = default;

void Button::setName(const jString& name)
{
    if (name == m_name)
        return;
    m_name = name;
    m_label->setText(QString::fromStdString(name));
    setObjectName(QString::fromStdString(name));
}

void Button::setButtonEnabled(bool enabled)
{
    if (enabled == m_enabled)
        return;
    m_enabled = enabled;
    setIconColour(enabled ? kIconColour : kDisabledIconColour);
    setGreyMode(!enabled);
}

void Button::setIconColour(const Colour& colour)
{
    if (colour == m_iconColour)
        return;
    m_iconColour = colour;
    update_icon();
}

void Button::setGreyMode(bool grey)
{
    if (grey == m_greyMode)
        return;
    m_greyMode = grey;
    update_icon();
}

void Button::update_icon()
{
    if (m_iconSource.isNull()) {
        m_iconShown = QImage();
        m_icon->clear();
        return;
    }
    TintedSheetCache tint(m_greyMode ? desaturated(m_iconSource) : m_iconSource);
    m_iconShown = tint.get(m_iconColour);
    m_icon->setPixmap(QPixmap::fromImage(m_iconShown));
}

void Button::setPressed(bool pressed)
{
    if (pressed == m_pressed)
        return;
    m_pressed = pressed;
    reposition_childs();
}

// The pressed look: every child one pixel lower. The top margin grows by
// the pixel the bottom one gives up, so the children keep their sizes.
void Button::reposition_childs()
{
    const int shift = m_pressed ? 1 : 0;
    m_layout->setContentsMargins(kMargin, kMargin + shift, kMargin, kMargin + 1 - shift);
}

void Button::setBackground(bool on)
{
    if (on == m_background)
        return;
    m_background = on;
    update_label_colour();
    update();
}

void Button::setBackgroundColour(const Colour& colour)
{
    if (colour == m_backgroundColour)
        return;
    m_backgroundColour = colour;
    update_background();
}

void Button::setBackgroundTexture(const QImage& texture)
{
    if (texture.cacheKey() == m_backgroundTexture.cacheKey())
        return;
    m_backgroundTexture = texture;
    update_background();
}

void Button::update_background()
{
    m_backgroundShown = m_backgroundTexture.isNull() ? QImage() : TintedSheetCache(m_backgroundTexture).get(m_backgroundColour);
    update_label_colour();
    update();
}

// The name stays readable on a dark background (the hover grey).
void Button::update_label_colour()
{
    const Colour& c = m_backgroundColour;
    const float luminance = (0.299f * c.r + 0.587f * c.g + 0.114f * c.b) * c.a + (1.0f - c.a);
    QPalette palette = m_label->palette();
    palette.setColor(QPalette::WindowText,
                     m_background && luminance < 0.5f ? QColor(Qt::white) : QWidget::palette().color(QPalette::WindowText));
    m_label->setPalette(palette);
}

void Button::paintEvent(QPaintEvent*)
{
    if (!m_background)
        return;
    QPainter painter(this);
    if (!m_backgroundShown.isNull()) {
        painter.drawImage(rect(), m_backgroundShown);
        return;
    }
    const Colour& c = m_backgroundColour;
    painter.fillRect(rect(), QColor::fromRgbF(c.r, c.g, c.b, c.a));
}

// ------------------------------------------------------------------ input

bool Button::is_inside(const UIEventMouse& event) const
{
    return rect().contains(event.localX, event.localY);
}

void Button::take_focus()
{
    m_focused = true;
    setFocus(Qt::MouseFocusReason);
}

void Button::drop_focus()
{
    m_focused = false;
    if (hasFocus())
        clearFocus();
}

void Button::focusOutEvent(QFocusEvent* event)
{
    m_focused = false;
    QWidget::focusOutEvent(event);
}

bool Button::onMouseDown(UIEventMouse& event)
{
    if (!is_inside(event) && !m_focused)
        return false;
    if (!(event.buttons & UIEventMouse::kLeft))
        return false;
    if (m_focused) {
        m_move.fire(&event, this);
        return true;
    }
    take_focus();
    m_press.fire(&event, this);
    return true;
}

bool Button::onMouseMove(UIEventMouse& event)
{
    if (is_inside(event)) {
        m_move.fire(&event, this);
        return true;
    }
    return false;
}

bool Button::onMouseUp(UIEventMouse& event)
{
    if (!is_inside(event) && !m_focused)
        return false;
    m_release.fire(&event, this);
    if (!UIEventTranslator::isUnderPointer(*this, event))
        return true;
    drop_focus();
    m_click.fire(&event, this);
    return true;
}

bool Button::checkShortcut(const UIEventKey& key)
{
    for (ButtonSignal* signal : {&m_click, &m_press, &m_move, &m_release}) {
        if (signal->matches(key)) {
            signal->fire(nullptr, this);
            return true;
        }
    }
    return false;
}

void Button::mousePressEvent(QMouseEvent* event)
{
    UIEventMouse e = UIEventTranslator::mouse(*event, *this);
    onMouseDown(e);
    // Kept either way, so the release comes back here (it may fire release
    // over another widget).
    event->accept();
}

void Button::mouseMoveEvent(QMouseEvent* event)
{
    UIEventMouse e = UIEventTranslator::mouse(*event, *this);
    event->setAccepted(onMouseMove(e));
}

void Button::mouseReleaseEvent(QMouseEvent* event)
{
    UIEventMouse e = UIEventTranslator::mouse(*event, *this);
    event->setAccepted(onMouseUp(e));
}

void Button::keyPressEvent(QKeyEvent* event)
{
    UIEventKey e;
    if (UIEventTranslator::key(*event, e) && checkShortcut(e))
        event->accept();
    else
        QWidget::keyPressEvent(event);
}
