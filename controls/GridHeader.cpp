#include "controls/GridHeader.h"

#include "controls/GridModel.h"
#include "controls/GridTitles.h"

#include <QItemSelectionModel>
#include <QPainter>

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
