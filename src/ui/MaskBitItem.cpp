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
    // A fixed dark text stays readable on every background the cell takes.
    QPalette palette = m_label->palette();
    palette.setColor(QPalette::WindowText, Qt::black);
    m_label->setPalette(palette);
    layout->addWidget(m_label);
}

void MaskBitItem::setHighlight(bool on)
{
    if (m_highlight == on)
        return;
    m_highlight = on;
    update();
}

void MaskBitItem::setColour(const Colour& colour)
{
    if (m_colour == colour)
        return;
    m_colour = colour;
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
