#include "controls/GridCellPaint.h"

#include "controls/GridModel.h"
#include "controls/GridTextPaint.h"

#include <QPainter>

namespace {

constexpr int kCornerSize = 7;   // pixels, each leg
constexpr int kBarWidth = 3;     // pixels
constexpr int kOpenSize = 8;     // pixels, each leg of the open corner
constexpr int kZigzagHeight = 2; // pixels from its lowest points to its highest, and from one to the next
constexpr int kZigzagPen = 2;    // pixels
constexpr QColor kWarningOnLight{196, 64, 0};
constexpr QColor kWarningOnDark{255, 150, 70};
constexpr QColor kDifferenceOnLight{128, 32, 160};
constexpr QColor kDifferenceOnDark{205, 150, 255};
constexpr QColor kUnusualOnLight{0, 112, 104};
constexpr QColor kUnusualOnDark{80, 215, 195};

/// The corner at the top right.
void DrawFilledCorner(QPainter& painter, const QRect& inner, const QColor& color)
{
    for (int line = 0; line < kCornerSize; ++line)
        painter.fillRect(inner.right() + 1 - kCornerSize + line, inner.top() + line, kCornerSize - line, 1, color);
}

/// The corner at the bottom left, of which only the sides are drawn.
void DrawOpenCorner(QPainter& painter, const QRect& inner, const QColor& color)
{
    const int top = inner.bottom() + 1 - kOpenSize;
    painter.fillRect(inner.left(), top, 1, kOpenSize, color);
    painter.fillRect(inner.left(), inner.bottom(), kOpenSize, 1, color);
    for (int line = 1; line < kOpenSize; ++line)
        painter.fillRect(inner.left() + line - 1, top + line - 1, 2, 1, color);
}

/// The line along the bottom from `left` to `right`.
void DrawZigzag(QPainter& painter, int left, int right, int bottom, const QColor& color)
{
    constexpr int kPeriod = 2 * kZigzagHeight;
    for (int x = left; x <= right; ++x) {
        const int phase = (x - left) % kPeriod;
        const int above = phase < kZigzagHeight ? phase : kPeriod - phase;
        painter.fillRect(x, bottom + 1 - kZigzagPen - above, 1, kZigzagPen, color);
    }
}

/// `background` with an eighth of `color`.
QColor Tinted(const QColor& background, const QColor& color)
{
    const auto mixed = [](int under, int over) { return (7 * under + over) / 8; };
    return {mixed(background.red(), color.red()), mixed(background.green(), color.green()),
            mixed(background.blue(), color.blue())};
}

} // namespace

GridCellLook LookOf(const CGridModel& model, int row, int column)
{
    const CGridDefaultCell& defaults = model.DefaultCellAt(row, column);
    GridCellLook look{*defaults.TextColor(), *defaults.BackColor(), *defaults.Font(), defaults.TextFormat(),
                      *defaults.Margin()};
    const CGridCellBase* cell = model.FindCell(row, column);
    if (cell == nullptr)
        return look;
    look.textColor = cell->TextColor().value_or(look.textColor);
    look.backColor = cell->BackColor().value_or(look.backColor);
    look.font = cell->Font().value_or(look.font);
    look.margin = cell->Margin().value_or(look.margin);
    if (cell->TextFormat() != CGridCellBase::kNoFormat)
        look.format = cell->TextFormat();
    return look;
}

void DrawCell(QPainter& painter, const QRect& rect, const CGridModel& model, int row, int column,
              const GridCellLook& look)
{
    const QRect inner = rect.adjusted(0, 0, -1, -1);
    painter.fillRect(inner, look.backColor);
    if (const CGridCellBase* cell = model.FindCell(row, column))
        cell->Draw(painter, inner, look);
    else
        DrawCellText(painter, inner, look, model.Text(row, column));
}

// Filled, not drawn with a pen: on screens of higher resolution a pen's line lies half a pixel off.
void DrawCellLines(QPainter& painter, const QRect& rect, const QColor& color)
{
    painter.fillRect(rect.right(), rect.top(), 1, rect.height(), color);
    painter.fillRect(rect.left(), rect.bottom(), rect.width(), 1, color);
}

QColor WarningColor(const QColor& background)
{
    return background.lightness() < 128 ? kWarningOnDark : kWarningOnLight;
}

QColor WarningTint(const QColor& background)
{
    return Tinted(background, WarningColor(background));
}

QColor DifferenceColor(const QColor& background)
{
    return background.lightness() < 128 ? kDifferenceOnDark : kDifferenceOnLight;
}

QColor DifferenceTint(const QColor& background)
{
    return Tinted(background, DifferenceColor(background));
}

QColor UnusualColor(const QColor& background)
{
    return background.lightness() < 128 ? kUnusualOnDark : kUnusualOnLight;
}

QColor UnusualTint(const QColor& background)
{
    return Tinted(background, UnusualColor(background));
}

void DrawMarks(QPainter& painter, const QRect& rect, const GridCellMarks& marks, const GridMarkColors& colors)
{
    const QRect inner = rect.adjusted(kFocusFrame, kFocusFrame, -kFocusFrame - 1, -kFocusFrame - 1);
    if (marks.outOfRange)
        painter.fillRect(inner.left(), inner.top(), kBarWidth, inner.height(), colors.outOfRange);
    if (marks.differs) // below the place of the corner
        painter.fillRect(inner.right() + 1 - kBarWidth, inner.top() + kCornerSize + 1, kBarWidth,
                         inner.height() - kCornerSize - 1, colors.differs);
    if (marks.unusual)
        DrawZigzag(painter, inner.left() + (marks.outOfRange ? kBarWidth : 0) + (marks.rewritten ? kOpenSize : 0) + 2,
                   inner.right() - (marks.differs ? kBarWidth : 0) - 2, inner.bottom() - 1, colors.unusual);
    if (marks.changed)
        DrawFilledCorner(painter, inner, colors.corner);
    if (marks.rewritten) // clear of the focus frame and, where there is one, of the bar
        DrawOpenCorner(painter, inner.adjusted(marks.outOfRange ? kBarWidth + 1 : 1, 0, 0, -1), colors.corner);
}

void DrawFrame(QPainter& painter, const QRect& rect, int width, const QColor& color)
{
    painter.fillRect(rect.left(), rect.top(), rect.width(), width, color);
    painter.fillRect(rect.left(), rect.bottom() + 1 - width, rect.width(), width, color);
    painter.fillRect(rect.left(), rect.top(), width, rect.height(), color);
    painter.fillRect(rect.right() + 1 - width, rect.top(), width, rect.height(), color);
}
