#include "cli/CellOrders.h"

#include "document/CellJudge.h"
#include "files/TableTitles.h"
#include "model/CellCheck.h"
#include "text/MessageText.h"
#include "text/Utf8Text.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace {

/// FromUtf8 puts something else in the place of what is not UTF-8.
bool IsUtf8(const std::string& bytes)
{
    return ToUtf8(FromUtf8(bytes)) == bytes;
}

bool HoldsCell(const CRecipeRows& rows, const TypedCell& cell)
{
    return cell.row >= kTitleRows && cell.row < kTitleRows + rows.RowCount() && cell.column >= kTitleColumns &&
           cell.column < kTitleColumns + static_cast<std::int64_t>(rows.Columns().size());
}

/// Turns orders into edits, in the order in which they were given.
class COrderedEdits {
public:
    COrderedEdits(const CRecipeRows& rows, const CStoredCells& stored, FileType type, const CNarrowedRows& narrowed,
                  CReporter& reporter)
        : m_rows(rows),
          m_judge(rows, stored, type),
          m_narrowed(narrowed),
          m_reporter(reporter)
    {
    }

    // Each is false, and then reported, when the order cannot be carried out.

    bool operator()(const TypedCell& cell);
    bool operator()(const ItemText& order);
    bool operator()(const ItemChange& order);

    /// All edits, each cell once.
    std::vector<CellEdit> Take();

private:
    struct Cells {
        std::uint32_t column = 0;
        std::vector<std::int32_t> rows;
    };

    std::optional<Cells> Choose(const RowChoice& rows, const std::string& item) const;
    bool IsAccepted(CellPlace place, std::u16string_view text) const;
    bool Refuse(std::int64_t row, std::int64_t column) const;
    bool Refuse(CellPlace place) const { return Refuse(place.row + kTitleRows, place.column + kTitleColumns); }
    bool Tell(CellPlace place, std::u16string_view fault) const;
    bool Change(CellPlace place, const NumberChange& change);
    const ColumnCoding& CodingOf(CellPlace place) const { return m_rows.Columns()[place.column]; }
    void Add(CellPlace place, CCellState state) { m_edits.push_back({place, std::move(state)}); }

    const CRecipeRows& m_rows;
    CCellJudge m_judge;
    const CNarrowedRows& m_narrowed;
    CReporter& m_reporter;
    std::vector<CellEdit> m_edits;
};

bool COrderedEdits::operator()(const TypedCell& cell)
{
    if (!HoldsCell(m_rows, cell))
        return Refuse(cell.row, cell.column);
    const CellPlace place{static_cast<std::int32_t>(cell.row - kTitleRows),
                          static_cast<std::uint32_t>(cell.column - kTitleColumns)};
    if (!IsUtf8(cell.text) || !IsAccepted(place, FromUtf8(cell.text)))
        return Refuse(place);
    Add(place, CCellState::OfText(FromUtf8(cell.text)));
    return true;
}

bool COrderedEdits::operator()(const ItemText& order)
{
    const auto cells = Choose(order.rows, order.item);
    if (!cells)
        return false;
    const std::u16string text = FromUtf8(order.text);
    const bool isUtf8 = IsUtf8(order.text);
    for (const std::int32_t row : cells->rows) {
        const CellPlace place{row, cells->column};
        if (!isUtf8 || !IsAccepted(place, text))
            return Refuse(place);
        Add(place, CCellState::OfText(text));
    }
    return true;
}

bool COrderedEdits::operator()(const ItemChange& order)
{
    const auto cells = Choose(order.rows, order.item);
    if (!cells)
        return false;
    return std::all_of(cells->rows.begin(), cells->rows.end(), [&](std::int32_t row) {
        return Change({row, cells->column}, order.change); //
    });
}

std::vector<CellEdit> COrderedEdits::Take()
{
    std::stable_sort(m_edits.begin(), m_edits.end(),
                     [](const CellEdit& a, const CellEdit& b) { return a.place < b.place; });
    std::vector<CellEdit> last;
    last.reserve(m_edits.size());
    for (CellEdit& edit : m_edits) {
        if (!last.empty() && last.back().place == edit.place)
            last.pop_back();
        last.push_back(std::move(edit));
    }
    return last;
}

std::optional<COrderedEdits::Cells> COrderedEdits::Choose(const RowChoice& rows, const std::string& item) const
{
    const auto column = ColumnOfItem(m_rows, item, m_reporter);
    if (!column)
        return std::nullopt;
    auto chosen = m_narrowed.Chosen(rows, m_reporter);
    if (!chosen)
        return std::nullopt;
    return Cells{static_cast<std::uint32_t>(*column), std::move(*chosen)};
}

bool COrderedEdits::IsAccepted(CellPlace place, std::u16string_view text) const
{
    return ValidateCellValue(CodingOf(place), text);
}

bool COrderedEdits::Refuse(std::int64_t row, std::int64_t column) const
{
    // kept: the row stands where the message speaks of the column
    m_reporter.ShowError(FillMessage(u"Col %d,Row %d data error !", {row, column}));
    return false;
}

bool COrderedEdits::Tell(CellPlace place, std::u16string_view fault) const
{
    m_reporter.ShowError(
        FillMessage(u"Row %d, %s: %s!", {std::int64_t{place.row} + kTitleRows, CodingOf(place).title, fault}));
    return false;
}

/// kept: what a table's cell does not take is told as a typed text is.
bool COrderedEdits::Change(CellPlace place, const NumberChange& change)
{
    CellVerdict verdict = m_judge.Changed(place, change);
    if (verdict.kind != CellVerdict::Kind::Refused) {
        Add(place, std::move(verdict.state));
        return true;
    }
    return verdict.isTextRefused ? Refuse(place) : Tell(place, verdict.reason);
}

} // namespace

std::optional<std::vector<CellEdit>> CellEditsOf(const CRecipeRows& rows, const CStoredCells& stored, FileType type,
                                                 const std::vector<CellOrder>& orders,
                                                 const std::vector<CellCondition>& conditions, CReporter& reporter)
{
    const auto narrowed = CNarrowedRows::Make(rows, conditions, reporter);
    if (!narrowed)
        return std::nullopt;
    COrderedEdits edits(rows, stored, type, *narrowed, reporter);
    const bool areDone = std::all_of(orders.begin(), orders.end(), [&edits](const CellOrder& order) {
        return std::visit([&edits](const auto& one) { return edits(one); }, order);
    });
    if (!areDone)
        return std::nullopt;
    auto all = edits.Take();
    if (!all.empty())
        return all;
    reporter.ShowError(u"No row shows what was asked for! Nothing was changed!");
    return std::nullopt;
}
