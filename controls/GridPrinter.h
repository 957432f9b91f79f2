#pragma once

#include <QMarginsF>
#include <QPagedPaintDevice>

#include <functional>
#include <vector>

class CGridModel;
class QHeaderView;
struct GridTitleSizes;

/// Prints a grid to a printer or a PDF: the fixed rows and columns on every page, a wide grid in several bands of
/// columns, and "Page %d of %d" at the foot. The pages are worked out from the row heights, so that the number of rows
/// does not matter until they are printed.
class CGridPrinter {
public:
    /// Told before each page (from 1); false cancels.
    using Progress = std::function<bool(int page, int pages)>;

    CGridPrinter(const CGridModel& model, const GridTitleSizes& sizes, const QHeaderView& rows,
                 const QHeaderView& columns);

    int PageCount(const QPagedPaintDevice& device) const;
    /// False when the device cannot be painted on, a page could not be begun, or it was cancelled.
    bool Print(QPagedPaintDevice& device, const Progress& progress) const;

private:
    /// Body rows or columns from `first` to `last`, both counted from 0.
    struct Band {
        int first;
        int last;
    };
    struct Layout {
        double scale = 1; ///< device pixels to a pixel of the grid
        QSize page;       ///< in pixels of the grid
        std::vector<Band> rows;
        std::vector<Band> columns;
        int PageCount() const { return static_cast<int>(rows.size() * columns.size()); }
    };

    Layout LayOut(const QPagedPaintDevice& device) const;
    static std::vector<Band> Bands(const QHeaderView& sections, int room);
    void PaintPage(QPainter& painter, const Layout& layout, const Band& rows, const Band& columns) const;
    void PaintRow(QPainter& painter, int row, int top, int height, const Band& columns) const;
    void PaintCell(QPainter& painter, const QRect& rect, int row, int column) const;

    const CGridModel& m_model;
    const GridTitleSizes& m_sizes;
    const QHeaderView& m_rows;
    const QHeaderView& m_columns;
};
