#pragma once

#include "files/Outcome.h"
#include "files/Progress.h"
#include "print/SheetContent.h"

#include <QFont>
#include <QPageLayout>
#include <QSizeF>
#include <QString>

#include <array>
#include <cstddef>
#include <memory>
#include <span>
#include <utility>
#include <vector>

class QPagedPaintDevice;
class QPainter;
class QTextLayout;

/// The page of that paper, upright, with the margins of a sheet.
QPageLayout PageLayoutOf(SheetPaper paper);

/// Lays a sheet out on pages and paints it. The pages follow from the size of the paper alone, so that a preview, a
/// printer and a PDF have the same. Each table's title stays with its first rows; titles are repeated where a table
/// goes on; long texts are wrapped, over pages if need be; at the foot stand file, content and "Page 1 of 4". What
/// stands out does so without colours.
class CSheetPainter {
public:
    /// The sheet outlives the painter.
    explicit CSheetPainter(const RecipeSheet& sheet);
    ~CSheetPainter();
    CSheetPainter(const CSheetPainter&) = delete;
    CSheetPainter& operator=(const CSheetPainter&) = delete;

    /// Lays it out for pages of that size within their margins, in points. GivenUp by the user's wish; then, and
    /// before, there are no pages.
    Outcome LayOut(const QSizeF& points, CProgress& progress);

    int PageCount() const { return static_cast<int>(m_pages.size()); }

    /// Paints the pages from `first` to `last`, counted from 0, on the device, whose pages within their margins are
    /// those that it was laid out for. Failed when it cannot be painted on.
    Outcome Paint(QPagedPaintDevice& device, int first, int last, CProgress& progress) const;

private:
    /// What stands on a page below each other.
    struct Piece {
        enum class Kind { SheetTitle, TableTitle, Titles, Row, Signatures };

        Kind kind;
        std::size_t table = 0;
        std::size_t row = 0;
        int firstLine = 0; ///< of the row, where it goes on
        int lines = 1;
        double top = 0;
        bool isContinued = false; ///< the table has begun on another page
    };
    using Page = std::vector<Piece>;
    using CellKey = std::array<std::size_t, 3>;

    static constexpr std::size_t kKinds = 4;

    QFont FontOf(bool isStrong) const { return isStrong ? m_strong : m_plain; }
    bool MeasureColumns(CProgress& progress);
    void ShareOut(std::vector<double>& widths) const;
    int LinesOf(std::size_t table, std::size_t row);
    int LinesOf(const QString& text, double width, bool isStrong) const;
    double RowHeight(int lines) const;
    double TitleHeight(std::size_t table) const;
    bool HasTitles(std::size_t table) const;
    bool PlaceTable(std::size_t table, CProgress& progress);
    double HeightToKeep(std::size_t table, const std::vector<int>& lines) const;
    void KeepTogether(std::size_t table, std::span<const int> lines);
    void PlaceHead(std::size_t table, bool isContinued);
    void PlaceRow(std::size_t table, std::size_t row, int lines);
    void Place(Piece piece, double height);
    void BeginPage();
    double Room() const { return m_height - m_top; }

    void PaintPage(QPainter& painter, std::size_t page) const;
    void PaintFoot(QPainter& painter, std::size_t page) const;
    void PaintTitle(QPainter& painter, const Piece& piece) const;
    void PaintTitles(QPainter& painter, const Piece& piece) const;
    void PaintRow(QPainter& painter, const Piece& piece) const;
    void PaintSignatures(QPainter& painter, const Piece& piece) const;
    void PaintCell(QPainter& painter, const Piece& piece, std::size_t column, double left, double width) const;
    std::shared_ptr<QTextLayout> LayoutOf(const Piece& piece, std::size_t column, double width) const;
    const std::vector<double>& WidthsOf(std::size_t table) const;

    CSheetContent m_content;
    QFont m_plain;
    QFont m_strong;
    QFont m_large;
    double m_lineHeight = 0;
    double m_width = 0;  ///< of a page, as all lengths here in tenths of points
    double m_height = 0; ///< of a page without its foot
    double m_top = 0;    ///< where the next piece goes
    std::array<std::vector<double>, kKinds> m_widths;
    std::vector<int> m_sharedLines; ///< of each item, for the texts that all tables of values have
    std::vector<Page> m_pages;
    mutable std::pair<CellKey, std::shared_ptr<QTextLayout>> m_long; ///< the long text that was painted last
};
