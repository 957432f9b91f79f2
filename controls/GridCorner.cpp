#include "controls/GridCorner.h"

#include "controls/GridModel.h"
#include "controls/GridTitles.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cstdlib>

namespace {

constexpr int kGrip = 4;      // how near to a border the mouse grabs it, in pixels
constexpr int kNarrowest = 8; // a fixed column stays wide enough to be grabbed again, in pixels

} // namespace

CGridCorner::CGridCorner(const CGridModel& model, const GridTitleSizes& sizes, QWidget* parent)
    : QWidget(parent),
      m_model(model),
      m_sizes(sizes)
{
    setMouseTracking(true);
}

void CGridCorner::RefreshName()
{
    QStringList titles;
    for (int row = 0; row < m_model.FixedRowCount(); ++row)
        for (int column = 0; column < m_model.FixedColumnCount(); ++column)
            titles += m_model.Text(row, column);
    setAccessibleName(titles.join(u' '));
}

void CGridCorner::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    int row = 0;
    int top = 0;
    for (const int height : m_sizes.rowHeights) {
        int column = 0;
        int left = 0;
        for (const int width : m_sizes.columnWidths) {
            DrawTitle(painter, {left, top, width, height}, m_model, row, column++, palette(), false);
            left += width;
        }
        top += height;
        ++row;
    }
}

void CGridCorner::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    m_nResized = BorderAt(event->pos().x());
    m_bPressed = m_nResized == kNone;
}

void CGridCorner::mouseMoveEvent(QMouseEvent* event)
{
    const int x = event->pos().x();
    if (m_nResized != kNone)
        emit ColumnResized(m_nResized, std::max(kNarrowest, x - LeftOf(m_nResized)));
    else
        setCursor(BorderAt(x) != kNone ? Qt::SplitHCursor : Qt::ArrowCursor);
}

void CGridCorner::mouseReleaseEvent(QMouseEvent* event)
{
    if (m_bPressed && event->button() == Qt::LeftButton && rect().contains(event->pos()))
        emit Clicked();
    m_nResized = kNone;
    m_bPressed = false;
}

void CGridCorner::mouseDoubleClickEvent(QMouseEvent* event)
{
    const int column = event->button() == Qt::LeftButton ? BorderAt(event->pos().x()) : kNone;
    if (column != kNone)
        emit BorderDoubleClicked(column);
    else
        mousePressEvent(event);
}

int CGridCorner::BorderAt(int x) const
{
    int right = 0;
    for (int column = 0; column < m_model.FixedColumnCount(); ++column) {
        right += m_sizes.columnWidths[static_cast<std::size_t>(column)];
        if (std::abs(x - right) <= kGrip)
            return column;
    }
    return kNone;
}

int CGridCorner::LeftOf(int column) const
{
    return std::accumulate(m_sizes.columnWidths.begin(), m_sizes.columnWidths.begin() + column, 0);
}
