#include "cli/SetCommand.h"

#include "cli/RecipeSource.h"
#include "model/CellCheck.h"
#include "text/MessageText.h"
#include "text/Utf8Text.h"

#include <algorithm>

namespace {

constexpr std::int64_t kFixedRows = 1;    // the titles
constexpr std::int64_t kFixedColumns = 2; // "ID" and "RW_Addr"

bool HoldsCell(const CRecipeRows& rows, const CellText& cell)
{
    return cell.row >= kFixedRows && cell.row < kFixedRows + rows.RowCount() && cell.column >= kFixedColumns &&
           cell.column < kFixedColumns + static_cast<std::int64_t>(rows.Columns().size());
}

/// FromUtf8 puts something else in the place of what is no UTF-8.
bool IsUtf8(const std::string& bytes)
{
    return ToUtf8(FromUtf8(bytes)) == bytes;
}

bool IsAccepted(const CRecipeRows& rows, const CellText& cell)
{
    return HoldsCell(rows, cell) && IsUtf8(cell.text) &&
           ValidateCellValue(rows.Columns()[static_cast<std::size_t>(cell.column - kFixedColumns)],
                             FromUtf8(cell.text));
}

bool AreAccepted(const CRecipeRows& rows, const std::vector<CellText>& cells, CReporter& reporter)
{
    const auto refused =
        std::find_if(cells.begin(), cells.end(), [&rows](const CellText& cell) { return !IsAccepted(rows, cell); });
    if (refused == cells.end())
        return true;
    // kept: the row stands where the message speaks of the column
    reporter.ShowError(FillMessage(u"Col %d,Row %d data error !", {refused->row, refused->column}));
    return false;
}

} // namespace

bool SetCells(const SetOptions& options, CReporter& reporter)
{
    const auto source = FindSource(options.file, options.read, reporter);
    CRecipeRows rows;
    if (!source || !ReadRows(*source, rows, reporter) || !AreAccepted(rows, options.cells, reporter))
        return false;
    for (const CellText& cell : options.cells)
        rows.SetText(static_cast<std::int32_t>(cell.row - kFixedRows),
                     static_cast<std::size_t>(cell.column - kFixedColumns), FromUtf8(cell.text));
    return SaveRows(source->type, rows, source->path, reporter);
}
