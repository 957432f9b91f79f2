#include "controls/GridCell.h"

#include "controls/GridTextPaint.h"

void CGridCell::Draw(QPainter& painter, const QRect& rect, const GridCellLook& look) const
{
    DrawCellText(painter, rect, look, Text());
}
