#pragma once

#include "controls/GridCellBase.h"

#include <QString>

class QPainter;
class QRect;

Qt::Alignment AlignmentOf(std::uint32_t format);

/// Draws `text` in one line with an ellipsis where it is cut off, or wrapped when the format says so.
void DrawCellText(QPainter& painter, const QRect& rect, const GridCellLook& look, const QString& text);
