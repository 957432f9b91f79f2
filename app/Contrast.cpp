#include "app/Contrast.h"

#include <algorithm>
#include <cmath>

namespace {

double Linear(double component)
{
    return component <= 0.04045 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
}

double Luminance(const QColor& color)
{
    return 0.2126 * Linear(color.redF()) + 0.7152 * Linear(color.greenF()) + 0.0722 * Linear(color.blueF());
}

} // namespace

double Contrast(const QColor& one, const QColor& other)
{
    const auto [darker, lighter] = std::minmax({Luminance(one), Luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}
