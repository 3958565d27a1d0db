#include "MaskBitItem.h"

#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

MaskBitItem::MaskBitItem(QWidget* parent, int bit) : QWidget(parent), m_bit(bit)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFixedSize(kWidth, kHeight);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->setSpacing(4);
    m_label = new QLabel(QString::number(bit), this);
    m_label->setAlignment(Qt::AlignCenter);
    layout->addWidget(m_label);
    update_label_colour();
}

// Black on light backgrounds, white on dark ones (the hover grey), so the
// number stays readable.
void MaskBitItem::update_label_colour()
{
    const bool dark = m_highlight && 0.299f * m_colour.r + 0.587f * m_colour.g + 0.114f * m_colour.b < 0.5f;
    QPalette palette = m_label->palette();
    palette.setColor(QPalette::WindowText, dark ? Qt::white : Qt::black);
    m_label->setPalette(palette);
}

void MaskBitItem::setHighlight(bool on)
{
    if (m_highlight == on)
        return;
    m_highlight = on;
    update_label_colour();
    update();
}

void MaskBitItem::setColour(const Colour& colour)
{
    if (m_colour == colour)
        return;
    m_colour = colour;
    update_label_colour();
    update();
}

void MaskBitItem::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QRect cell = rect().adjusted(0, 0, -1, -1);
    const QColor background = m_highlight ? QColor::fromRgbF(m_colour.r, m_colour.g, m_colour.b, m_colour.a)
                                          : QColor(Qt::white);
    painter.fillRect(cell, background);
    painter.setPen(QColor(150, 150, 150));
    painter.drawRect(cell);
}
