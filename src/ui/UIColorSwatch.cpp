#include "UIColorSwatch.h"

#include "DialogAnswerer.h"
#include "UIFloatField.h"
#include "tr.h"

#include <QColorDialog>
#include <QPainter>
#include <QPixmap>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

float clampUnit(float value)
{
    return std::clamp(value, 0.0f, 1.0f);
}

float roundedComponent(float value)
{
    return std::round(value * 10000.0f) / 10000.0f;
}

} // namespace

UIColorSwatch::UIColorSwatch(QWidget* parent, Getter getter, Setter setter)
    : QToolButton(parent), m_getter(std::move(getter)), m_setter(std::move(setter))
{
    setFixedSize(kSize, kSize);
    setIconSize(QSize(kSize - 6, kSize - 6));
    setToolTip(QString::fromStdString(::tr("choose_colour")));
    refresh();
    connect(this, &QToolButton::clicked, this, [this] { choose(); });
}

QColor UIColorSwatch::colourOf(const jString& value)
{
    std::vector<float> numbers;
    if (!UIFloatField::parse(value, numbers))
        return QColor(Qt::black);
    if (numbers.size() == 1)
        numbers = {numbers[0], numbers[0], numbers[0]};
    const float alpha = numbers.size() >= 4 ? numbers[3] : 1.0f;
    const float blue = numbers.size() >= 3 ? numbers[2] : 0.0f;
    return QColor::fromRgbF(clampUnit(numbers[0]), clampUnit(numbers[1]), clampUnit(blue), clampUnit(alpha));
}

jString UIColorSwatch::textOf(const QColor& colour, size_t count)
{
    std::vector<float> numbers{roundedComponent(colour.redF()), roundedComponent(colour.greenF()),
                               roundedComponent(colour.blueF())};
    if (count >= 4)
        numbers.push_back(roundedComponent(colour.alphaF()));
    return UIFloatField::format(numbers);
}

void UIColorSwatch::refresh()
{
    m_colour = colourOf(m_getter ? m_getter() : jString());
    // The colour over a checker board, so that its alpha shows.
    QPixmap pixmap(iconSize());
    QPainter painter(&pixmap);
    const int cell = pixmap.width() / 2;
    painter.fillRect(pixmap.rect(), Qt::white);
    painter.fillRect(0, 0, cell, cell, Qt::lightGray);
    painter.fillRect(cell, cell, pixmap.width() - cell, pixmap.height() - cell, Qt::lightGray);
    painter.fillRect(pixmap.rect(), m_colour);
    painter.setPen(QColor(0, 0, 0, 160));
    painter.drawRect(pixmap.rect().adjusted(0, 0, -1, -1));
    painter.end();
    setIcon(QIcon(pixmap));
}

void UIColorSwatch::choose()
{
    if (!m_setter)
        return;
    const jString current = m_getter ? m_getter() : jString();
    std::vector<float> numbers;
    const size_t count = UIFloatField::parse(current, numbers) && numbers.size() == 3 ? 3 : 4;
    QColorDialog dialog(m_colour, window());
    dialog.setOption(QColorDialog::ShowAlphaChannel, count == 4);
    dialog.setOption(QColorDialog::DontUseNativeDialog, true);
    if (DialogAnswerer::exec(dialog) != QDialog::Accepted)
        return;
    const jString chosen = textOf(dialog.currentColor(), count);
    if (chosen != current)
        m_setter(chosen);
    refresh();
}
