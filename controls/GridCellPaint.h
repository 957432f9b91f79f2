#pragma once

#include "controls/GridCellBase.h"
#include "controls/GridTextSource.h"

class CGridModel;
class QPainter;
class QRect;

constexpr QRgb kGridLine = qRgb(192, 192, 192);
constexpr int kFocusFrame = 2; ///< width of the frame around the selected focus cell, in pixels

GridCellLook LookOf(const CGridModel& model, int row, int column);

/// Draws background and content of a cell; `rect` holds the line at its right and bottom side, which stays free.
void DrawCell(QPainter& painter, const QRect& rect, const CGridModel& model, int row, int column,
              const GridCellLook& look);

/// Draws the line at the right and bottom side of a cell.
void DrawCellLines(QPainter& painter, const QRect& rect, const QColor& color);

/// The colour that says "out of range" on `background`.
QColor WarningColor(const QColor& background);

/// `background` with a breath of that colour, on which the same text is just as readable.
QColor WarningTint(const QColor& background);

/// The colour that says "differs" on `background`, and `background` with a breath of it.
QColor DifferenceColor(const QColor& background);
QColor DifferenceTint(const QColor& background);

/// The colour that says "unusual" on `background`, and `background` with a breath of it.
QColor UnusualColor(const QColor& background);
QColor UnusualTint(const QColor& background);

/// What the marks of a cell are drawn in.
struct GridMarkColors {
    QColor corner;
    QColor outOfRange;
    QColor unusual;
    QColor differs;
};

/// Draws the marks of a cell beside its text: a filled corner at the top right for a changed value, an open one at the
/// bottom left for a value that a save rewrites, a bar at the left side for one out of range, one at the right side for
/// one that differs from what it is compared with, and a zigzag line at the bottom for an unusual one. They differ in
/// shape and place, not in colour alone, and a cell may have all of them.
void DrawMarks(QPainter& painter, const QRect& rect, const GridCellMarks& marks, const GridMarkColors& colors);

/// Draws a frame of that width in pixels within `rect`.
void DrawFrame(QPainter& painter, const QRect& rect, int width, const QColor& color);
