#include "controls/ListFont.h"

#include <QFontMetrics>

#include <algorithm>

namespace {

constexpr int kWidestStretch = 4000; // the toolkit's limit

void FitLineHeight(QFont& font, int height)
{
    int size = height;
    font.setPixelSize(size);
    while (size > 1 && QFontMetrics(font).height() > height)
        font.setPixelSize(--size);
}

void FitLetterWidth(QFont& font, int width)
{
    const int natural = std::max(QFontMetrics(font).averageCharWidth(), 1);
    font.setStretch(std::clamp(100 * width / natural, 1, kWidestStretch));
}

} // namespace

QFont ListFont(int height, int width)
{
    QFont font;
    font.setFamily(QStringLiteral("宋体"));
    if (height > 0)
        FitLineHeight(font, height);
    else if (height < 0)
        font.setPixelSize(-height);
    if (width > 0)
        FitLetterWidth(font, width);
    return font;
}
