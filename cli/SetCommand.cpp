#include "cli/SetCommand.h"

#include "cli/OpenRecipe.h"
#include "files/TableTitles.h"
#include "model/CellCheck.h"
#include "text/FileMessages.h"
#include "text/MessageText.h"
#include "text/Utf8Text.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace {

bool HoldsCell(const CRecipeRows& rows, const TypedCell& cell)
{
    return cell.row >= kTitleRows && cell.row < kTitleRows + rows.RowCount() && cell.column >= kTitleColumns &&
           cell.column < kTitleColumns + static_cast<std::int64_t>(rows.Columns().size());
}

/// FromUtf8 puts something else in the place of what is not UTF-8.
bool IsUtf8(const std::string& bytes)
{
    return ToUtf8(FromUtf8(bytes)) == bytes;
}

bool IsAccepted(const CRecipeRows& rows, const TypedCell& cell)
{
    return HoldsCell(rows, cell) && IsUtf8(cell.text) &&
           ValidateCellValue(rows.Columns()[static_cast<std::size_t>(cell.column - kTitleColumns)],
                             FromUtf8(cell.text));
}

bool AreAccepted(const CRecipeRows& rows, const std::vector<TypedCell>& cells, CReporter& reporter)
{
    const auto refused =
        std::find_if(cells.begin(), cells.end(), [&rows](const TypedCell& cell) { return !IsAccepted(rows, cell); });
    if (refused == cells.end())
        return true;
    // kept: the row stands where the message speaks of the column
    reporter.ShowError(FillMessage(u"Col %d,Row %d data error !", {refused->row, refused->column}));
    return false;
}

TextForCell TextFor(const TypedCell& cell)
{
    return {{static_cast<std::int32_t>(cell.row - kTitleRows), static_cast<std::uint32_t>(cell.column - kTitleColumns)},
            FromUtf8(cell.text)};
}

bool SetTexts(CRecipeDocument& document, const std::vector<TypedCell>& cells, CReporter& reporter)
{
    std::vector<TextForCell> texts;
    std::transform(cells.begin(), cells.end(), std::back_inserter(texts), TextFor);
    if (document.SetTexts(EditKind::Typing, std::move(texts)) != EditOutcome::OutOfMemory)
        return true;
    reporter.ShowError(kNoMemoryForEdit);
    return false;
}

/// A file that is left out is one that cannot be opened: a script is told of it.
bool Save(CRecipeDocument& document, CReporter& reporter)
{
    CNoProgress progress;
    const SaveResult result = document.Write(document.Type(), document.Path(), reporter, progress);
    if (result.isLeftOut)
        ShowFileError(reporter, kSaveFileError, document.Path());
    return result.isSaved;
}

} // namespace

bool SetCells(const SetOptions& options, CReporter& reporter)
{
    CRecipeDocument document;
    return OpenAndRead(document, options.file, options.read, reporter) &&
           AreAccepted(document.Rows(), options.cells, reporter) && SetTexts(document, options.cells, reporter) &&
           Save(document, reporter);
}
