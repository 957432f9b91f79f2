#include "cli/RecipeSource.h"

#include "cli/InputFile.h"
#include "disk/File.h"
#include "files/FileMessages.h"

#include <utility>

namespace fs = std::filesystem;

namespace {

bool IsPaged(FileType type)
{
    return type == FileType::Erp || type == FileType::Frp;
}

/// A paged file is opened for writing even to read it. One that cannot be shows the same value in every cell, which a
/// user would see in the window but no script would notice.
bool CanBeOpened(const RecipeSource& source, CReporter& reporter)
{
    if (!IsPaged(source.type) || CFile(source.path, CFile::Mode::ReadWrite).IsOpen())
        return true;
    ShowFileError(reporter, kOpenFileError, source.path);
    return false;
}

} // namespace

std::optional<RecipeSource> FindSource(const std::string& file, const ReadOptions& options, CReporter& reporter)
{
    auto settings = SettleReadSettings(options, reporter);
    if (!settings)
        return std::nullopt;
    const fs::path path(file);
    if (!IsThere(path, reporter))
        return std::nullopt;
    const auto type = KnownTypeOf(path, reporter);
    if (!type)
        return std::nullopt;
    return RecipeSource{std::move(*settings), path, *type};
}

std::optional<FileType> KnownTypeOf(const fs::path& path, CReporter& reporter)
{
    const auto type = FileTypeOf(path);
    if (!type)
        ShowFileError(reporter, u"The type of file %s is unknown! It must be .rcp, .csv, .erp or .frp!", path);
    return type;
}

bool ReadRows(const RecipeSource& source, CRecipeRows& rows, CReporter& reporter)
{
    const ReadSettings& settings = source.settings;
    rows.Clear();
    if (settings.format.totalLength() == 0)
        return true;
    rows.LayOut(LayOutColumns(settings.format), settings.startAddress, settings.rowCount);
    CNoProgress progress;
    return CanBeOpened(source, reporter) && ReadRecipe(source.type, rows, source.path, false, reporter, progress);
}
