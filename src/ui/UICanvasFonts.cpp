#include "UICanvasFonts.h"

#include <cmath>

UICanvasFonts::UICanvasFonts() : m_base(makeBase()) {}

QFont UICanvasFonts::makeBase()
{
    QFont font(kFamily);
    font.setPixelSize(kDefaultSize);
    // Unhinted advances are the font's own, identical on every rasteriser.
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setStyleStrategy(QFont::PreferAntialias);
    return font;
}

void UICanvasFonts::setBase(const QFont& font)
{
    m_base = font;
    m_sizes.clear();
}

UICanvasFonts::Size& UICanvasFonts::size(int pixelSize)
{
    pixelSize = std::max(pixelSize, 1);
    auto it = m_sizes.find(pixelSize);
    if (it == m_sizes.end()) {
        QFont font = m_base;
        font.setPixelSize(pixelSize);
        QFontMetricsF metrics(font);
        it = m_sizes.emplace(pixelSize, Size{font, metrics, float(std::ceil(metrics.height())), {}}).first;
    }
    return it->second;
}

const QFont& UICanvasFonts::font(int pixelSize)
{
    return size(pixelSize).font;
}

void UICanvasFonts::measure(UICanvasItems::TextData& text)
{
    Size& s = size(text.size);
    auto it = s.widths.find(text.text);
    if (it == s.widths.end()) {
        float width = float(std::ceil(s.metrics.horizontalAdvance(QString::fromStdString(text.text))));
        it = s.widths.emplace(text.text, width).first;
    }
    text.width = it->second;
    text.height = s.height;
}
