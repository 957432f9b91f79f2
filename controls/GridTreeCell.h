#pragma once

#include "controls/GridTreeCellBase.h"

#include <QRect>

/// The tree cell: its text stands indented by its level behind a box that tells whether it is expanded.
class CGridTreeCell final : public CGridTreeCellBase {
public:
    void Draw(QPainter& painter, const QRect& rect, const GridCellLook& look) const override;

    QRect BoxRect(const QRect& rect, const GridCellLook& look) const;  ///< of the box in a cell at `rect`
    QRect TextRect(const QRect& rect, const GridCellLook& look) const; ///< what is left for the text
};
