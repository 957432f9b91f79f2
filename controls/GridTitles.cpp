#include "controls/GridTitles.h"

#include "controls/GridModel.h"

#include <QPainter>

namespace {

/// A third of `over` on two thirds of `under`: marks a title and leaves its text readable on light and dark palettes.
QColor Tint(const QColor& under, const QColor& over)
{
    const auto mix = [](int a, int b) { return (2 * a + b) / 3; };
    return {mix(under.red(), over.red()), mix(under.green(), over.green()), mix(under.blue(), over.blue())};
}

} // namespace

void DrawTitle(QPainter& painter, const QRect& rect, const CGridModel& model, int row, int column,
               const QPalette& palette, bool marked)
{
    GridCellLook look = LookOf(model, row, column);
    if (marked)
        look.backColor = Tint(look.backColor, palette.color(QPalette::Highlight));
    DrawCell(painter, rect, model, row, column, look);
    DrawCellLines(painter, rect, palette.color(QPalette::Dark));
}
