#include "controls/GridHeader.h"

#include "controls/GridModel.h"
#include "controls/GridTitles.h"

#include <QHelpEvent>
#include <QItemSelectionModel>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

#include <algorithm>

namespace {

constexpr int kNarrowest = 8; // pixels: a column stays wide enough to be grabbed again

} // namespace

CGridHeader::CGridHeader(Qt::Orientation orientation, const CGridModel& model, const GridTitleSizes& sizes,
                         QWidget* parent)
    : QHeaderView(orientation, parent),
      m_model(model),
      m_sizes(sizes)
{
    setSectionsClickable(true);
    setHighlightSections(true);
    setMinimumSectionSize(1); // heights and widths are exactly what they were set to
}

/// Not the base class's, which asks for the titles of hundreds of sections. The length along the body is not used.
QSize CGridHeader::sizeHint() const
{
    return orientation() == Qt::Horizontal ? QSize(0, m_sizes.Height()) : QSize(m_sizes.Width(), 0);
}

void CGridHeader::paintSection(QPainter* painter, const QRect& rect, int section) const
{
    if (!rect.isValid())
        return;
    if (orientation() == Qt::Horizontal)
        PaintFixedRows(*painter, rect, section);
    else
        PaintFixedColumns(*painter, rect, section);
}

void CGridHeader::PaintFixedRows(QPainter& painter, QRect rect, int section) const
{
    const bool marked = selectionModel()->columnIntersectsSelection(section);
    int row = 0;
    for (const int height : m_sizes.rowHeights) {
        rect.setHeight(height);
        DrawTitle(painter, rect, m_model, row++, section + m_model.FixedColumnCount(), palette(), marked);
        rect.translate(0, height);
    }
}

void CGridHeader::PaintFixedColumns(QPainter& painter, QRect rect, int section) const
{
    const bool marked = selectionModel()->rowIntersectsSelection(section);
    int column = 0;
    for (const int width : m_sizes.columnWidths) {
        rect.setWidth(width);
        DrawTitle(painter, rect, m_model, section + m_model.FixedRowCount(), column++, palette(), marked);
        rect.translate(width, 0);
    }
}

void CGridHeader::SetFrozen(int count)
{
    m_nFrozen = count;
    viewport()->update();
}

int CGridHeader::Frozen() const
{
    const int count = std::min(m_nFrozen, this->count());
    const int width = count < this->count() ? sectionPosition(count) : length();
    return 3 * width <= 2 * viewport()->width() ? count : 0;
}

QRect CGridHeader::FrozenArea() const
{
    const int frozen = Frozen();
    const int width = frozen > 0 ? sectionPosition(frozen - 1) + sectionSize(frozen - 1) : 0;
    const int left = isRightToLeft() ? viewport()->width() - width : 0;
    return {left, 0, width, viewport()->height()};
}

int CGridHeader::FrozenAt(int position) const
{
    const int frozen = Frozen();
    for (int section = 0; section < frozen; ++section)
        if (const int left = PositionOf(section); position >= left && position < left + sectionSize(section))
            return section;
    return -1;
}

int CGridHeader::PositionOf(int section) const
{
    if (section >= Frozen())
        return sectionViewportPosition(section);
    const int position = sectionPosition(section);
    return isRightToLeft() ? viewport()->width() - position - sectionSize(section) : position;
}

int CGridHeader::SectionAt(int position) const
{
    const int frozen = FrozenAt(position);
    return frozen >= 0 ? frozen : logicalIndexAt(position);
}

void CGridHeader::PaintEdge(QPainter& painter, const QRect& frozen) const
{
    const int x = isRightToLeft() ? frozen.left() : frozen.right() - 1;
    painter.fillRect(x, frozen.top(), 2, frozen.height(), palette().color(QPalette::Shadow));
}

void CGridHeader::paintEvent(QPaintEvent* event)
{
    QHeaderView::paintEvent(event);
    const int frozen = Frozen();
    if (frozen == 0)
        return;
    QPainter painter(viewport());
    painter.setClipRect(FrozenArea());
    for (int section = 0; section < frozen; ++section)
        paintSection(&painter, {PositionOf(section), 0, sectionSize(section), viewport()->height()}, section);
    PaintEdge(painter, FrozenArea());
}

/// The base class does not know of the frozen sections when it looks for the tip.
bool CGridHeader::viewportEvent(QEvent* event)
{
    if (event->type() != QEvent::ToolTip || orientation() != Qt::Horizontal)
        return QHeaderView::viewportEvent(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    const int section = SectionAt(help->pos().x());
    const QString tip =
        section < 0 ? QString() : model()->headerData(section, orientation(), Qt::ToolTipRole).toString();
    QToolTip::showText(help->globalPos(), tip, viewport());
    return true;
}

int CGridHeader::ShiftAt(int position) const
{
    const int section = FrozenAt(position);
    return section >= 0 ? sectionViewportPosition(section) - PositionOf(section) : 0;
}

/// The base class knows of scrolled sections only.
QMouseEvent CGridHeader::Shifted(const QMouseEvent& event) const
{
    return {event.type(),          event.position() + QPointF(m_nShift, 0),
            event.scenePosition(), event.globalPosition(),
            event.button(),        event.buttons(),
            event.modifiers(),     event.pointingDevice()};
}

/// The base class takes no places below 0 while a border is dragged.
void CGridHeader::mousePressEvent(QMouseEvent* event)
{
    const int position = event->pos().x();
    m_nResized = event->button() == Qt::LeftButton ? FrozenBorderAt(position) : -1;
    if (m_nResized >= 0) {
        m_nPressedAt = position;
        m_nPressedSize = sectionSize(m_nResized);
        return;
    }
    m_nShift = ShiftAt(position);
    QMouseEvent shifted = Shifted(*event);
    QHeaderView::mousePressEvent(&shifted);
}

/// While a button is down the mouse has what it was pressed on.
void CGridHeader::mouseMoveEvent(QMouseEvent* event)
{
    const int position = event->pos().x();
    if (m_nResized >= 0) {
        const int wider = isRightToLeft() ? m_nPressedAt - position : position - m_nPressedAt;
        resizeSection(m_nResized, std::max(m_nPressedSize + wider, kNarrowest));
    } else if (event->buttons() != Qt::NoButton || FrozenAt(position) < 0) {
        QHeaderView::mouseMoveEvent(event);
    } else if (FrozenBorderAt(position) >= 0) {
        setCursor(Qt::SplitHCursor);
    } else {
        unsetCursor();
    }
}

void CGridHeader::mouseReleaseEvent(QMouseEvent* event)
{
    if (m_nResized >= 0) {
        m_nResized = -1;
        return;
    }
    QMouseEvent shifted = Shifted(*event);
    QHeaderView::mouseReleaseEvent(&shifted);
}

/// The frozen section whose end is there, as the base class finds it for the others; -1 for none.
int CGridHeader::FrozenBorderAt(int position) const
{
    const int section = FrozenAt(position);
    if (section < 0)
        return -1;
    const int grip = style()->pixelMetric(QStyle::PM_HeaderGripMargin, nullptr, this);
    const int left = PositionOf(section);
    const bool atLeft = position < left + grip;
    const bool atRight = position > left + sectionSize(section) - 1 - grip;
    if (isRightToLeft() ? atLeft : atRight)
        return section;
    return (isRightToLeft() ? atRight : atLeft) ? section - 1 : -1;
}

void CGridHeader::mouseDoubleClickEvent(QMouseEvent* event)
{
    m_nShift = ShiftAt(event->pos().x());
    QMouseEvent shifted = Shifted(*event);
    QHeaderView::mouseDoubleClickEvent(&shifted);
}
