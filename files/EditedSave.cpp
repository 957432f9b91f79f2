#include "files/EditedSave.h"

#include "files/CsvEdits.h"
#include "files/RecipeFile.h"
#include "files/WordRuns.h"
#include "text/FileMessages.h"

#include <new>
#include <optional>
#include <string>
#include <utility>

namespace fs = std::filesystem;

namespace {

/// The words that the edited cells have in the file then: for the file, and as states of the stored cells.
struct EditedWords {
    CWordRuns runs;
    std::vector<CellEdit> states;
};

EditedWords CollectEdited(const CRecipeRows& rows, const CStoredCells& stored)
{
    EditedWords edited;
    CCellComparison cells(rows, stored, false);
    for (const CellPlace place : rows.EditedPlaces()) {
        const auto words = cells.NewWords(place);
        edited.runs.Append(AddressOfCell(rows, place), words);
        edited.states.push_back({place, CCellState::OfWords(WordsOf(words))});
    }
    return edited;
}

/// Without the memory for it, or the file's length, what is stored is no longer known.
void Follow(CStoredCells& stored, std::vector<CellEdit> states, const fs::path& path)
try {
    if (const auto bytes = LogicalBytes(stored.Type(), path))
        stored.TakeWords(std::move(states), *bytes);
    else
        stored = CStoredCells();
} catch (const std::bad_alloc&) {
    stored = CStoredCells();
}

SaveResult SaveEditedWords(const CRecipeRows& rows, CStoredCells& stored, const WriteTarget& target,
                           CReporter& reporter)
{
    EditedWords edited;
    const Outcome collected = WithinMemory([&] {
        edited = CollectEdited(rows, stored);
        return Outcome::Done;
    });
    if (collected != Outcome::Done) {
        ShowFileError(reporter, kSaveFileError, target.path);
        return {};
    }
    const SaveResult result = WriteWordRuns(stored.Type(), edited.runs, target, std::nullopt, reporter);
    if (result.isSaved)
        Follow(stored, std::move(edited.states), target.path);
    return result;
}

/// Where the bytes lie that a save of a cell writes; nothing where the cell has no words.
struct BytesInFile {
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
};

std::optional<BytesInFile> BytesInFileOf(const CRecipeRows& rows, CellPlace place)
{
    const std::size_t bytes = BytesOfCell(rows, place);
    if (bytes == 0)
        return std::nullopt;
    const std::uint64_t begin = FirstByteOf(AddressOfCell(rows, place)).number;
    return BytesInFile{begin, begin + bytes};
}

/// Nothing, and then reported, when there is no memory for them.
std::optional<std::vector<CsvEdit>> CollectFields(const CRecipeRows& rows, const fs::path& path, CReporter& reporter)
{
    std::vector<CsvEdit> edits;
    const Outcome collected = WithinMemory([&] {
        for (const CellPlace place : rows.EditedPlaces())
            edits.push_back({place, rows.Text(place.row, place.column)});
        return Outcome::Done;
    });
    if (collected == Outcome::Done)
        return edits;
    ShowFileError(reporter, kSaveTableError, path);
    return std::nullopt;
}

/// What the table holds then is read again: lines may have come to be.
SaveResult SaveEditedFields(const CRecipeRows& rows, CStoredCells& stored, const fs::path& path, CReporter& reporter,
                            CProgress& progress)
{
    const auto edits = CollectFields(rows, path, reporter);
    if (!edits)
        return {};
    const SaveResult result = SaveCsvEdits(*edits, path, reporter, progress);
    if (result.isSaved)
        stored = ReadStoredCells(rows, FileType::Csv, path);
    return result;
}

} // namespace

SaveResult SaveEdited(const CRecipeRows& rows, CStoredCells& stored, const WriteTarget& target, CReporter& reporter,
                      CProgress& progress)
{
    if (rows.EditedCount() == 0)
        return {.isSaved = true};
    if (stored.Type() != FileType::Csv)
        return SaveEditedWords(rows, stored, target, reporter);
    return SaveEditedFields(rows, stored, target.path, reporter, progress);
}

std::vector<PlannedChange> PlanOfEdited(const CRecipeRows& rows, const CStoredCells& stored)
{
    std::vector<PlannedChange> changes;
    CCellComparison cells(rows, stored, false, SaveForm::EditedAlone);
    for (const CellPlace place : rows.EditedPlaces())
        if (cells.Compare(place))
            changes.push_back({place, ChangeReason::Edited});
    return changes;
}

std::vector<ZeroWords> ZeroWordsOfEdited(const CRecipeRows& rows, const CStoredCells& stored)
{
    std::vector<ZeroWords> zeros;
    if (stored.Type() == FileType::Csv)
        return zeros;
    std::uint64_t end = stored.FileBytes();
    for (const CellPlace place : rows.EditedPlaces()) {
        const auto written = BytesInFileOf(rows, place);
        if (!written)
            continue;
        AppendZeroWords(end, written->begin, zeros);
        end = FileBytesAfter(stored.Type(), end, written->end);
    }
    return zeros;
}

std::optional<std::uint64_t> FileBytesAfterEdited(const CRecipeRows& rows, const CStoredCells& stored,
                                                  const fs::path& path, CReporter& reporter, CProgress& progress)
{
    std::uint64_t bytes = stored.FileBytes();
    if (rows.EditedCount() == 0)
        return bytes;
    if (stored.Type() == FileType::Csv) {
        const auto edits = CollectFields(rows, path, reporter);
        return edits ? CsvBytesAfterEdits(*edits, path, reporter, progress) : std::nullopt;
    }
    for (const CellPlace place : rows.EditedPlaces())
        if (const auto written = BytesInFileOf(rows, place))
            bytes = FileBytesAfter(stored.Type(), bytes, written->end);
    return bytes;
}
