#include "print/SheetPainter.h"

#include <QFontMetricsF>
#include <QPageSize>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QTextLayout>
#include <QTextOption>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

// Lengths in tenths of points.
constexpr double kUnitsPerPoint = 10;
constexpr double kUnitsPerInch = 72 * kUnitsPerPoint;
constexpr int kPlainSize = 85;
constexpr int kLargeSize = 150;
constexpr double kGap = 60;       ///< between two columns
constexpr double kPadding = 16;   ///< above and below a row's text, together
constexpr double kTableGap = 110; ///< above a table
constexpr double kFootHeight = 190;
constexpr double kSignatureHeight = 900;
constexpr double kSignatureGap = 300;
constexpr double kMarginMm = 15;
constexpr double kMostWider = 200; ///< than what stands in a column, where there is room
constexpr double kMostKept = 0.5;  ///< of a page: a table that takes less stays on one
constexpr qsizetype kLongText = 2000;
constexpr std::size_t kKeptRows = 2; ///< that stay with a table's title

QString ToQt(std::u16string_view text)
{
    return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

/// Each letter is printed as itself, so that a text that is taken from a page is what was written: a spacing, be it the
/// smallest that there is, keeps the font from making one sign of two letters, as of "fi".
QFont SheetFont(int size, bool isBold)
{
    constexpr double kSmallestSpacing = 1.0 / 64;
    QFont font;
    font.setFamilies({QStringLiteral("DejaVu Sans"), QStringLiteral("Liberation Sans"), QStringLiteral("Arial")});
    font.setStyleHint(QFont::SansSerif);
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setPixelSize(size);
    font.setBold(isBold);
    font.setLetterSpacing(QFont::AbsoluteSpacing, kSmallestSpacing);
    return font;
}

/// Makes the lines of `text`, at most so wide.
void Wrap(QTextLayout& layout, double width)
{
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTextDirection(Qt::LayoutDirectionAuto);
    layout.setTextOption(option);
    layout.setCacheEnabled(true);
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine())
        line.setLineWidth(width);
    layout.endLayout();
}

/// What a text takes to stand on one line. A layout's lines differ by roundings from what the metrics tell, and a text
/// that is wrapped where nobody counts with it would lose its end.
double WidthOnOneLine(const QFontMetricsF& metrics, const QString& text)
{
    constexpr double kSlack = 1.02;
    return std::ceil(kSlack * metrics.horizontalAdvance(text)) + 1;
}

} // namespace

QPageLayout PageLayoutOf(SheetPaper paper)
{
    const QPageSize size(paper == SheetPaper::Letter ? QPageSize::Letter : QPageSize::A4);
    return {size, QPageLayout::Portrait, QMarginsF(kMarginMm, kMarginMm, kMarginMm, kMarginMm),
            QPageLayout::Millimeter};
}

CSheetPainter::CSheetPainter(const RecipeSheet& sheet)
    : m_content(sheet),
      m_plain(SheetFont(kPlainSize, false)),
      m_strong(SheetFont(kPlainSize, true)),
      m_large(SheetFont(kLargeSize, true)),
      m_lineHeight(std::ceil(QFontMetricsF(m_plain).height()))
{
}

CSheetPainter::~CSheetPainter() = default;

double CSheetPainter::RowHeight(int lines) const
{
    return m_lineHeight * lines + kPadding;
}

bool CSheetPainter::HasTitles(std::size_t table) const
{
    const auto kind = m_content.KindOf(table);
    return (kind == CSheetContent::Kind::Values || kind == CSheetContent::Kind::Changes) &&
           m_content.RowCount(table) > 0;
}

const std::vector<double>& CSheetPainter::WidthsOf(std::size_t table) const
{
    return m_widths[static_cast<std::size_t>(m_content.KindOf(table))];
}

Outcome CSheetPainter::LayOut(const QSizeF& points, CProgress& progress)
{
    m_pages.clear();
    m_width = points.width() * kUnitsPerPoint;
    m_height = points.height() * kUnitsPerPoint - kFootHeight;
    m_long = {};
    if (!MeasureColumns(progress))
        return Outcome::GivenUp;
    BeginPage();
    const int titleLines = LinesOf(ToQt(m_content.Sheet().title), m_width * kPlainSize / kLargeSize, true);
    Place({.kind = Piece::Kind::SheetTitle, .lines = titleLines}, titleLines * m_lineHeight * kLargeSize / kPlainSize);
    for (std::size_t table = 0; table < m_content.TableCount(); ++table)
        if (!PlaceTable(table, progress)) {
            m_pages.clear();
            return Outcome::GivenUp;
        }
    if (Room() < kSignatureHeight)
        BeginPage();
    Place({.kind = Piece::Kind::Signatures}, kSignatureHeight);
    return Outcome::Done;
}

/// The widths that the columns of each kind of table need, shared out where the page is too narrow for all of them.
bool CSheetPainter::MeasureColumns(CProgress& progress)
{
    const QFontMetricsF plain(m_plain);
    const QFontMetricsF strong(m_strong);
    for (auto& widths : m_widths)
        widths.clear();
    m_sharedLines.clear();
    bool areSharedMeasured = false;
    for (std::size_t table = 0; table < m_content.TableCount(); ++table) {
        const auto kind = m_content.KindOf(table);
        const auto& columns = m_content.ColumnsOf(kind);
        auto& widths = m_widths[static_cast<std::size_t>(kind)];
        if (widths.empty())
            for (const QString& title : columns)
                widths.push_back(WidthOnOneLine(strong, title));
        for (std::size_t column = 0; column < columns.size(); ++column) {
            if (areSharedMeasured && m_content.IsSharedColumn(kind, column))
                continue;
            for (std::size_t row = 0; row < m_content.RowCount(table); ++row) {
                const QString text = m_content.Text(table, row, column).left(kLongText);
                const QFontMetricsF& metrics = m_content.IsStrong(table, row, column) ? strong : plain;
                widths[column] = std::max(widths[column], WidthOnOneLine(metrics, text));
            }
        }
        areSharedMeasured = areSharedMeasured || kind == CSheetContent::Kind::Values;
        if (!progress.Advance(table, 2 * m_content.TableCount()))
            return false;
    }
    for (auto& widths : m_widths)
        ShareOut(widths);
    return true;
}

/// The narrow columns keep what they need, the others get the same share of what is left.
void CSheetPainter::ShareOut(std::vector<double>& widths) const
{
    if (widths.empty())
        return;
    double left = m_width - kGap * static_cast<double>(widths.size() - 1);
    std::vector<std::size_t> order(widths.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return widths[a] < widths[b]; });
    for (std::size_t i = 0; i < order.size(); ++i) {
        double& width = widths[order[i]];
        width = std::min(width, left / static_cast<double>(order.size() - i));
        left -= width;
    }
    const double wider = std::min(left / static_cast<double>(widths.size()), kMostWider);
    for (double& width : widths)
        width += wider;
}

int CSheetPainter::LinesOf(const QString& text, double width, bool isStrong) const
{
    if (text.size() < kLongText && WidthOnOneLine(QFontMetricsF(FontOf(isStrong)), text) <= width)
        return 1;
    QTextLayout layout(text, FontOf(isStrong));
    Wrap(layout, width);
    return std::max(layout.lineCount(), 1);
}

int CSheetPainter::LinesOf(std::size_t table, std::size_t row)
{
    const auto kind = m_content.KindOf(table);
    const std::vector<double>& widths = WidthsOf(table);
    const bool isKnown = kind == CSheetContent::Kind::Values && row < m_sharedLines.size();
    int shared = isKnown ? m_sharedLines[row] : 1;
    int lines = 1;
    for (std::size_t column = 0; column < widths.size(); ++column) {
        const bool isShared = m_content.IsSharedColumn(kind, column);
        if (isKnown && isShared)
            continue;
        const int count =
            LinesOf(m_content.Text(table, row, column), widths[column], m_content.IsStrong(table, row, column));
        (isShared ? shared : lines) = std::max(isShared ? shared : lines, count);
    }
    if (kind == CSheetContent::Kind::Values && !isKnown)
        m_sharedLines.push_back(shared);
    return std::max(shared, lines);
}

double CSheetPainter::TitleHeight(std::size_t table) const
{
    const QString title = m_content.TitleOf(table);
    return title.isEmpty() ? 0 : RowHeight(LinesOf(title, m_width, true));
}

void CSheetPainter::BeginPage()
{
    m_pages.emplace_back();
    m_top = 0;
}

void CSheetPainter::Place(Piece piece, double height)
{
    piece.top = m_top;
    m_pages.back().push_back(piece);
    m_top += height;
}

bool CSheetPainter::PlaceTable(std::size_t table, CProgress& progress)
{
    std::vector<int> lines;
    for (std::size_t row = 0; row < m_content.RowCount(table); ++row)
        lines.push_back(LinesOf(table, row));
    if (kTableGap + HeightToKeep(table, lines) > Room() && !m_pages.back().empty())
        BeginPage();
    if (m_top > 0)
        m_top += kTableGap;
    PlaceHead(table, false);
    for (std::size_t row = 0; row < lines.size(); ++row) {
        if (row > 0 && row + kKeptRows == lines.size())
            KeepTogether(table, std::span(lines).subspan(row));
        PlaceRow(table, row, lines[row]);
    }
    return progress.Advance(m_content.TableCount() + table, 2 * m_content.TableCount());
}

/// A short table stays whole; of a longer one the title stays with the first rows.
double CSheetPainter::HeightToKeep(std::size_t table, const std::vector<int>& lines) const
{
    const double head = TitleHeight(table) + (HasTitles(table) ? RowHeight(1) : 0);
    const auto add = [this](double height, int rowLines) { return height + RowHeight(rowLines); };
    const double whole = std::accumulate(lines.begin(), lines.end(), head, add);
    if (whole <= kMostKept * m_height)
        return whole;
    const auto kept = static_cast<std::ptrdiff_t>(std::min(lines.size(), kKeptRows));
    return std::accumulate(lines.begin(), lines.begin() + kept, head, add);
}

/// Rows that come last begin a page together, where they find room on one.
void CSheetPainter::KeepTogether(std::size_t table, std::span<const int> lines)
{
    double height = 0;
    for (const int rowLines : lines)
        height += RowHeight(rowLines);
    if (height <= Room() || height > kMostKept * m_height)
        return;
    BeginPage();
    PlaceHead(table, true);
}

void CSheetPainter::PlaceHead(std::size_t table, bool isContinued)
{
    if (const double height = TitleHeight(table); height > 0)
        Place({.kind = Piece::Kind::TableTitle, .table = table, .isContinued = isContinued}, height);
    if (HasTitles(table))
        Place({.kind = Piece::Kind::Titles, .table = table}, RowHeight(1));
}

/// A row that fits on no page goes on on the next ones.
void CSheetPainter::PlaceRow(std::size_t table, std::size_t row, int lines)
{
    for (int first = 0; first < lines;) {
        const double wholePage = m_height - TitleHeight(table) - RowHeight(1);
        const bool fitsOnPage = RowHeight(lines - first) <= wholePage;
        const int room = static_cast<int>((Room() - kPadding) / m_lineHeight);
        if (room < 1 || (fitsOnPage && room < lines - first)) {
            BeginPage();
            PlaceHead(table, true);
            if ((Room() - kPadding) / m_lineHeight >= 1)
                continue;
        }
        const int count = std::clamp(room, 1, lines - first); // a page without room gets a line all the same
        Place({.kind = Piece::Kind::Row, .table = table, .row = row, .firstLine = first, .lines = count},
              RowHeight(count));
        first += count;
    }
}

Outcome CSheetPainter::Paint(QPagedPaintDevice& device, int first, int last, CProgress& progress) const
{
    QPainter painter;
    if (!painter.begin(&device))
        return Outcome::Failed;
    const double scale = painter.device()->logicalDpiX() / kUnitsPerInch;
    for (int page = first; page <= last; ++page) {
        if (page > first && !device.newPage())
            return Outcome::Failed;
        painter.save();
        painter.scale(scale, scale);
        PaintPage(painter, static_cast<std::size_t>(page));
        painter.restore();
        if (!progress.Advance(static_cast<std::uint64_t>(page - first) + 1,
                              static_cast<std::uint64_t>(last - first) + 1))
            return Outcome::GivenUp;
    }
    return painter.end() ? Outcome::Done : Outcome::Failed;
}

void CSheetPainter::PaintPage(QPainter& painter, std::size_t page) const
{
    painter.setPen(Qt::black);
    for (const Piece& piece : m_pages[page])
        switch (piece.kind) {
        case Piece::Kind::SheetTitle:
        case Piece::Kind::TableTitle:
            PaintTitle(painter, piece);
            break;
        case Piece::Kind::Titles:
            PaintTitles(painter, piece);
            break;
        case Piece::Kind::Row:
            PaintRow(painter, piece);
            break;
        case Piece::Kind::Signatures:
            PaintSignatures(painter, piece);
            break;
        }
    PaintFoot(painter, page);
}

void CSheetPainter::PaintFoot(QPainter& painter, std::size_t page) const
{
    const RecipeSheet& sheet = m_content.Sheet();
    const double top = m_height + kFootHeight - m_lineHeight - kPadding;
    painter.setPen(QPen(Qt::black, 4));
    painter.drawLine(QPointF(0, top), QPointF(m_width, top));
    painter.setFont(m_plain);
    const QRectF line(0, top + kPadding, m_width, m_lineHeight);
    const QString number = QStringLiteral("Page %1 of %2").arg(page + 1).arg(m_pages.size());
    painter.drawText(line, Qt::AlignRight | Qt::AlignTop, number);
    QString name = ToQt(sheet.file.empty() ? sheet.title : sheet.file);
    const QString sha = sheet.shortSha.empty() ? QString() : QStringLiteral(" · SHA-256 %1…").arg(ToQt(sheet.shortSha));
    const QFontMetricsF metrics(m_plain);
    const double room = m_width - metrics.horizontalAdvance(number) - metrics.horizontalAdvance(sha) - kGap;
    name = metrics.elidedText(name, Qt::ElideMiddle, room);
    painter.drawText(line, Qt::AlignLeft | Qt::AlignTop, name + sha);
}

void CSheetPainter::PaintTitle(QPainter& painter, const Piece& piece) const
{
    const bool isSheets = piece.kind == Piece::Kind::SheetTitle;
    const bool isText = !isSheets && m_content.KindOf(piece.table) == CSheetContent::Kind::Text;
    QString title = isSheets ? ToQt(m_content.Sheet().title) : m_content.TitleOf(piece.table);
    if (piece.isContinued)
        title += QStringLiteral(" (continued)");
    QTextLayout layout(title, isSheets ? m_large : FontOf(!isText));
    Wrap(layout, m_width);
    painter.setPen(Qt::black);
    for (int i = 0; i < layout.lineCount(); ++i) {
        const QTextLine line = layout.lineAt(i);
        const double height = isSheets ? m_lineHeight * kLargeSize / kPlainSize : m_lineHeight;
        line.draw(&painter, QPointF(0, piece.top + kPadding / 2 + i * height - line.y()));
    }
}

void CSheetPainter::PaintTitles(QPainter& painter, const Piece& piece) const
{
    const double height = RowHeight(1);
    painter.fillRect(QRectF(0, piece.top, m_width, height), QColor(0xE8, 0xE8, 0xE8));
    painter.setFont(m_strong);
    painter.setPen(Qt::black);
    const auto& columns = m_content.ColumnsOf(m_content.KindOf(piece.table));
    const std::vector<double>& widths = WidthsOf(piece.table);
    double left = 0;
    for (std::size_t column = 0; column < columns.size(); ++column) {
        painter.drawText(QRectF(left, piece.top, widths[column], height), Qt::AlignLeft | Qt::AlignVCenter,
                         columns[column]);
        left += widths[column] + kGap;
    }
    painter.setPen(QPen(Qt::black, 7));
    painter.drawLine(QPointF(0, piece.top + height), QPointF(m_width, piece.top + height));
}

void CSheetPainter::PaintRow(QPainter& painter, const Piece& piece) const
{
    const std::vector<double>& widths = WidthsOf(piece.table);
    double left = 0;
    for (std::size_t column = 0; column < widths.size(); ++column) {
        PaintCell(painter, piece, column, left, widths[column]);
        left += widths[column] + kGap;
    }
    const double bottom = piece.top + RowHeight(piece.lines);
    painter.setPen(QPen(QColor(0x90, 0x90, 0x90), 3));
    painter.drawLine(QPointF(0, bottom), QPointF(m_width, bottom));
}

/// Texts in other writings may have taller lines: each stands on the line's own base.
void CSheetPainter::PaintCell(QPainter& painter, const Piece& piece, std::size_t column, double left,
                              double width) const
{
    const auto layout = LayoutOf(piece, column, width);
    const double ascent = QFontMetricsF(m_plain).ascent();
    painter.setPen(Qt::black);
    for (int i = 0; i < piece.lines && piece.firstLine + i < layout->lineCount(); ++i) {
        const QTextLine line = layout->lineAt(piece.firstLine + i);
        const double top = piece.top + kPadding / 2 + i * m_lineHeight + ascent - line.ascent();
        line.draw(&painter, QPointF(left, top - line.y()));
    }
}

/// One that goes over many pages is made once.
std::shared_ptr<QTextLayout> CSheetPainter::LayoutOf(const Piece& piece, std::size_t column, double width) const
{
    const CellKey key = {piece.table, piece.row, column};
    if (m_long.second && m_long.first == key)
        return m_long.second;
    const QString text = m_content.Text(piece.table, piece.row, column);
    auto layout = std::make_shared<QTextLayout>(text, FontOf(m_content.IsStrong(piece.table, piece.row, column)));
    Wrap(*layout, width);
    if (text.size() >= kLongText)
        m_long = {key, layout};
    return layout;
}

void CSheetPainter::PaintSignatures(QPainter& painter, const Piece& piece) const
{
    const double top = piece.top + kSignatureHeight - 3 * m_lineHeight;
    const double width = (m_width - kSignatureGap) / 2;
    double left = 0;
    for (const std::u16string_view who : {kSheetIssued, kSheetApproved}) {
        painter.setPen(QPen(Qt::black, 6));
        painter.drawLine(QPointF(left, top), QPointF(left + width, top));
        painter.setPen(Qt::black);
        painter.setFont(m_strong);
        painter.drawText(QRectF(left, top + kPadding, width, m_lineHeight), Qt::AlignLeft, ToQt(who));
        painter.setFont(m_plain);
        painter.drawText(QRectF(left, top + kPadding + m_lineHeight, width, m_lineHeight), Qt::AlignLeft,
                         ToQt(kSheetSignature));
        left += width + kSignatureGap;
    }
}
