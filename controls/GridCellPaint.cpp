#include "controls/GridCellPaint.h"

#include "controls/GridModel.h"

#include <QFontMetrics>
#include <QPainter>

namespace {

constexpr int kElideMargin = 16;
constexpr int kCornerSize = 7; // pixels, each leg
constexpr int kBarWidth = 3;   // pixels
constexpr QColor kWarningOnLight{196, 64, 0};
constexpr QColor kWarningOnDark{255, 150, 70};

/// As much of a long text as can be seen in `width` pixels, so that measuring it takes no longer than showing it.
QString VisiblePart(const QString& text, int width)
{
    const qsizetype visible = 2 * qsizetype{std::max(width, 0)} + kElideMargin;
    return text.size() > visible ? text.left(visible) : text;
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

Qt::Alignment AlignmentOf(std::uint32_t format)
{
    if ((format & CGridCellBase::Centred) != 0)
        return Qt::AlignCenter;
    return ((format & CGridCellBase::Right) != 0 ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter;
}

void DrawCellText(QPainter& painter, const QRect& rect, const GridCellLook& look, const QString& text)
{
    const QRect inner = rect.adjusted(look.margin, 0, -look.margin, 0);
    if (text.isEmpty() || inner.width() <= 0)
        return;
    painter.setFont(look.font);
    painter.setPen(look.textColor);
    const QFontMetrics metrics(look.font, painter.device());
    const bool wraps = (look.format & CGridCellBase::WordBreak) != 0 && inner.height() >= 2 * metrics.height();
    const int lines = wraps ? inner.height() / metrics.lineSpacing() : 1;
    const QString part = VisiblePart(text, inner.width() * lines);
    if (wraps) {
        painter.drawText(inner, static_cast<int>(AlignmentOf(look.format)) | Qt::TextWordWrap, part);
        return;
    }
    const QString shown = metrics.elidedText(part, Qt::ElideRight, inner.width(), Qt::TextSingleLine);
    painter.drawText(inner, static_cast<int>(AlignmentOf(look.format)) | Qt::TextSingleLine, shown);
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

// Filled, not drawn with a pen: on screens of higher resolution a pen's line lies half beside its pixels.
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
    const QColor warning = WarningColor(background);
    const auto mixed = [](int under, int over) { return (7 * under + over) / 8; };
    return {mixed(background.red(), warning.red()), mixed(background.green(), warning.green()),
            mixed(background.blue(), warning.blue())};
}

void DrawMarks(QPainter& painter, const QRect& rect, const GridCellMarks& marks, const QColor& changed,
               const QColor& outOfRange)
{
    const QRect inner = rect.adjusted(kFocusFrame, kFocusFrame, -kFocusFrame - 1, -kFocusFrame - 1);
    if (marks.outOfRange)
        painter.fillRect(inner.left(), inner.top(), kBarWidth, inner.height(), outOfRange);
    if (marks.changed)
        for (int line = 0; line < kCornerSize; ++line)
            painter.fillRect(inner.right() + 1 - kCornerSize + line, inner.top() + line, kCornerSize - line, 1,
                             changed);
}

void DrawFrame(QPainter& painter, const QRect& rect, int width, const QColor& color)
{
    painter.fillRect(rect.left(), rect.top(), rect.width(), width, color);
    painter.fillRect(rect.left(), rect.bottom() + 1 - width, rect.width(), width, color);
    painter.fillRect(rect.left(), rect.top(), width, rect.height(), color);
    painter.fillRect(rect.right() + 1 - width, rect.top(), width, rect.height(), color);
}
