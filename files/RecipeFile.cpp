#include "files/RecipeFile.h"

#include "disk/File.h"
#include "files/BinaryRecipeFile.h"
#include "files/CsvRecipeFile.h"
#include "files/PagedReader.h"
#include "files/PagedRecipeFile.h"
#include "text/FileMessages.h"

#include <array>
#include <cstddef>
#include <new>
#include <optional>

namespace fs = std::filesystem;

namespace {

/// kept: one zero byte a word of the start address, not two.
bool CreateWithZeros(const fs::path& path, std::int32_t startAddress)
{
    CFile file(path, CFile::Mode::Truncate);
    if (!file.IsOpen())
        return false;
    if (startAddress < 0) // as many bytes as that cannot be written
        return file.Close();
    const std::array lastZero = {std::byte{0}}; // those before it are the gap, which reads as zeros
    if (file.WriteAt(static_cast<std::uint64_t>(startAddress) - 1, lastZero))
        return file.Close();
    file.Discard();
    return false;
}

/// A file that can be read only is good enough here: its save will tell.
bool OpensOrIsCreated(const fs::path& path)
{
    if (CFile(path, CFile::Mode::Read).IsOpen())
        return true;
    CFile file(path, CFile::Mode::OpenOrCreate);
    return file.IsOpen() && file.Close();
}

} // namespace

Outcome ReadRecipe(FileType type, CRecipeRows& rows, const fs::path& path, bool newFile, CReporter& reporter,
                   CProgress& progress)
{
    rows.ShowNothing();
    switch (type) {
    case FileType::Rcp:
        return ReadBinaryRecipe(rows, path, newFile, reporter, progress);
    case FileType::Csv:
        return ReadCsv(rows, path, reporter, progress);
    case FileType::Erp:
    case FileType::Frp:
        return ReadPaged(rows, path, type, reporter, progress);
    }
    return Outcome::Done; // any other number reads nothing
}

Outcome ReadRecipeOnly(FileType type, CRecipeRows& rows, const fs::path& path, CReporter& reporter, CProgress& progress)
{
    if (IsPaged(type))
        return ReadPagedOnly(rows, path, type, reporter, progress);
    return ReadRecipe(type, rows, path, false, reporter, progress);
}

SaveResult SaveRecipe(FileType type, const CRecipeRows& rows, const WriteTarget& target, CReporter& reporter,
                      CProgress& progress, SavedContent* saved)
{
    CByteBuffer* const words = saved != nullptr ? &saved->words : nullptr;
    std::optional<CFieldTable>* const fields = saved != nullptr ? &saved->fields : nullptr;
    switch (type) {
    case FileType::Rcp:
        return SaveBinaryRecipe(rows, target, reporter, progress, words);
    case FileType::Csv:
        return SaveCsv(rows, target.path, reporter, progress, fields);
    case FileType::Erp:
    case FileType::Frp:
        return SavePaged(rows, target, type, reporter, progress, words);
    }
    return {.isSaved = true}; // any other number writes nothing
}

CStoredCells ReadStoredCells(const CRecipeRows& layout, FileType type, const fs::path& path)
try {
    CRecipeRows cells;
    cells.LayOut(layout.Columns(), layout.StartAddress(), layout.RowCount());
    CSilentReporter nobody;
    CNoProgress progress;
    if (ReadRecipeOnly(type, cells, path, nobody, progress) != Outcome::Done)
        return {};
    cells.ShareSourceOf(layout);
    const auto bytes = LogicalBytes(type, path);
    return bytes ? CStoredCells(cells, type, *bytes) : CStoredCells();
} catch (const std::bad_alloc&) {
    return {};
}

std::optional<std::uint64_t> LogicalBytes(FileType type, const fs::path& path)
{
    if (!IsPaged(type))
        return CFile(path, CFile::Mode::Read).Size();
    CPagedReader file;
    return file.Open(path, KindOf(type)) ? file.LogicalBytes() : std::nullopt;
}

bool PrepareSaveAs(FileType type, const fs::path& path, std::int32_t startAddress, CReporter& reporter)
{
    switch (type) {
    case FileType::Rcp:
        if (startAddress == 0 || CreateWithZeros(path, startAddress))
            return true;
        ShowFileError(reporter, kMakeFileError, path);
        return false;
    case FileType::Erp:
    case FileType::Frp:
        if (OpensOrIsCreated(path))
            return true;
        reporter.ShowError(kOpenPagedError);
        return false;
    case FileType::Csv:
        break;
    }
    return true;
}
