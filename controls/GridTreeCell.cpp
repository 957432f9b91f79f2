#include "controls/GridTreeCell.h"

#include "controls/GridTextPaint.h"

#include <QFontMetrics>
#include <QPainter>

namespace {

/// The side of the box: odd, so that the cross inside is centred.
int BoxSize(const GridCellLook& look)
{
    return (QFontMetrics(look.font).ascent() * 3 / 4) | 1;
}

} // namespace

QRect CGridTreeCell::BoxRect(const QRect& rect, const GridCellLook& look) const
{
    const int size = BoxSize(look);
    return {rect.left() + look.margin + Level() * 2 * size, rect.center().y() - size / 2, size, size};
}

QRect CGridTreeCell::TextRect(const QRect& rect, const GridCellLook& look) const
{
    return rect.adjusted(BoxRect(rect, look).right() + 1 - rect.left(), 0, 0, 0);
}

void CGridTreeCell::Draw(QPainter& painter, const QRect& rect, const GridCellLook& look) const
{
    const QRect box = BoxRect(rect, look);
    painter.setPen(look.textColor);
    painter.drawRect(box.adjusted(0, 0, -1, -1));
    painter.drawLine(box.left() + 2, box.center().y(), box.right() - 2, box.center().y());
    if (!IsExpanded())
        painter.drawLine(box.center().x(), box.top() + 2, box.center().x(), box.bottom() - 2);
    DrawCellText(painter, TextRect(rect, look), look, Text());
}
