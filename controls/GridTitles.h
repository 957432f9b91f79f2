#pragma once

#include "controls/GridCellPaint.h"

#include <QPalette>

#include <numeric>
#include <vector>

/// The sizes of the fixed rows and columns in pixels, which no header section holds.
struct GridTitleSizes {
    std::vector<int> rowHeights;
    std::vector<int> columnWidths;

    int Height() const { return std::accumulate(rowHeights.begin(), rowHeights.end(), 0); }
    int Width() const { return std::accumulate(columnWidths.begin(), columnWidths.end(), 0); }
};

/// Draws a fixed cell with its shadow; `marked` when it heads a selected cell.
void DrawTitle(QPainter& painter, const QRect& rect, const CGridModel& model, int row, int column,
               const QPalette& palette, bool marked);
