#include "controls/GridPrinter.h"

#include "controls/GridModel.h"
#include "controls/GridTitles.h"

#include <QFontInfo>
#include <QHeaderView>
#include <QPageRanges>
#include <QPainter>

#include <algorithm>

namespace {

constexpr int kFooterHeight = 32; // pixels of the grid
constexpr int kFooterText = 12;

bool IsWanted(const QPageRanges& ranges, int page)
{
    return ranges.isEmpty() || ranges.contains(page);
}

void PaintFooter(QPainter& painter, const QSize& page, int number, int pages)
{
    QFont font(QStringLiteral("Arial"));
    font.setPixelSize(kFooterText);
    painter.setFont(font);
    painter.setPen(Qt::black);
    const QRect foot(0, page.height() - kFooterHeight, page.width(), kFooterHeight);
    painter.drawText(foot, Qt::AlignHCenter | Qt::AlignBottom, QString::asprintf("Page %d of %d", number, pages));
}

/// What a cell looks like on paper, whatever colours the screen has.
GridCellLook OnPaper(GridCellLook look, bool title)
{
    look.textColor = Qt::black;
    look.backColor = title ? QColor(Qt::lightGray).lighter(115) : QColor(Qt::white);
    // A size in points would be taken for the device's resolution and then scaled once more.
    look.font.setPixelSize(QFontInfo(look.font).pixelSize());
    return look;
}

} // namespace

CGridPrinter::CGridPrinter(const CGridModel& model, const GridTitleSizes& sizes, const QHeaderView& rows,
                           const QHeaderView& columns)
    : m_model(model),
      m_sizes(sizes),
      m_rows(rows),
      m_columns(columns)
{
}

int CGridPrinter::PageCount(const QPagedPaintDevice& device) const
{
    return LayOut(device).PageCount();
}

bool CGridPrinter::Print(QPagedPaintDevice& device, const Progress& progress) const
{
    const Layout layout = LayOut(device);
    const int pages = layout.PageCount();
    const QPageRanges ranges = device.pageRanges();
    QPainter painter;
    if (!painter.begin(&device))
        return false;
    bool begun = false;
    for (int page = 1; page <= pages; ++page) {
        if (!IsWanted(ranges, page))
            continue;
        if ((progress && !progress(page, pages)) || (begun && !device.newPage()))
            return false;
        begun = true;
        const auto at = static_cast<std::size_t>(page - 1);
        painter.save();
        painter.scale(layout.scale, layout.scale);
        PaintPage(painter, layout, layout.rows[at / layout.columns.size()], layout.columns[at % layout.columns.size()]);
        PaintFooter(painter, layout.page, page, pages);
        painter.restore();
    }
    return painter.end();
}

CGridPrinter::Layout CGridPrinter::LayOut(const QPagedPaintDevice& device) const
{
    Layout layout;
    layout.scale = static_cast<double>(device.logicalDpiX()) / m_rows.logicalDpiX();
    layout.page =
        QSize(static_cast<int>(device.width() / layout.scale), static_cast<int>(device.height() / layout.scale));
    layout.rows = Bands(m_rows, layout.page.height() - m_sizes.Height() - kFooterHeight);
    layout.columns = Bands(m_columns, layout.page.width() - m_sizes.Width());
    return layout;
}

/// Splits the sections into bands that fit into `room` pixels, one section at least in each. Without sections there is
/// one empty band: the titles alone make a page.
std::vector<CGridPrinter::Band> CGridPrinter::Bands(const QHeaderView& sections, int room)
{
    std::vector<Band> bands;
    for (int first = 0; first < sections.count();) {
        const int end = sections.sectionPosition(first) + std::max(room, 1);
        const int beyond = sections.visualIndexAt(end - sections.offset());
        const int last = beyond < 0 ? sections.count() - 1 : std::max(first, beyond - 1);
        bands.push_back({first, last});
        first = last + 1;
    }
    if (bands.empty())
        bands.push_back({0, -1});
    return bands;
}

void CGridPrinter::PaintPage(QPainter& painter, const Layout& layout, const Band& rows, const Band& columns) const
{
    painter.setClipRect(0, 0, layout.page.width(), layout.page.height());
    int top = 0;
    int row = 0;
    for (const int height : m_sizes.rowHeights) {
        PaintRow(painter, row++, top, height, columns);
        top += height;
    }
    for (int body = rows.first; body <= rows.last; ++body) {
        const int height = m_rows.sectionSize(body);
        PaintRow(painter, body + m_model.FixedRowCount(), top, height, columns);
        top += height;
    }
}

void CGridPrinter::PaintRow(QPainter& painter, int row, int top, int height, const Band& columns) const
{
    int left = 0;
    int column = 0;
    for (const int width : m_sizes.columnWidths) {
        PaintCell(painter, {left, top, width, height}, row, column++);
        left += width;
    }
    for (int body = columns.first; body <= columns.last; ++body) {
        const int width = m_columns.sectionSize(body);
        PaintCell(painter, {left, top, width, height}, row, body + m_model.FixedColumnCount());
        left += width;
    }
}

void CGridPrinter::PaintCell(QPainter& painter, const QRect& rect, int row, int column) const
{
    const bool title = !m_model.IsBody(row, column);
    DrawCell(painter, rect, m_model, row, column, OnPaper(LookOf(m_model, row, column), title));
    DrawCellLines(painter, rect, title ? QColor(Qt::gray) : QColor(kGridLine));
}
