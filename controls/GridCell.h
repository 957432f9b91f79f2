#pragma once

#include "controls/GridCellBase.h"

/// The ordinary cell, which shows its text.
class CGridCell : public CGridCellBase {
public:
    void Draw(QPainter& painter, const QRect& rect, const GridCellLook& look) const override;
};
