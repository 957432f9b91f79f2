#include "controls/GridTextPaint.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

namespace {

constexpr int kElideMargin = 16;

/// As much of a long text as can be seen in `width` pixels, so that measuring it takes no longer than showing it.
QString VisiblePart(const QString& text, int width)
{
    const qsizetype visible = 2 * qsizetype{std::max(width, 0)} + kElideMargin;
    return text.size() > visible ? text.left(visible) : text;
}

} // namespace

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
