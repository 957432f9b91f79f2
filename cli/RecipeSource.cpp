#include "cli/RecipeSource.h"

#include "cli/InputFile.h"
#include "text/FileMessages.h"

#include <utility>

namespace fs = std::filesystem;

namespace {

bool Failed(std::u16string_view message, const fs::path& path, CReporter& reporter)
{
    ShowFileError(reporter, message, path);
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

CRecipeRows LayOutRows(const ReadSettings& settings)
{
    CRecipeRows rows;
    if (settings.format.totalLength() != 0)
        rows.LayOut(LayOutColumns(settings.format), settings.startAddress, settings.rowCount);
    return rows;
}

bool ReadRows(const RecipeSource& source, CRecipeRows& rows, CReporter& reporter)
{
    rows = LayOutRows(source.settings);
    CNoProgress progress;
    return rows.RowCount() == 0 || ReadRecipeOnly(source.type, rows, source.path, reporter, progress) == Outcome::Done;
}

bool SaveRows(FileType type, const CRecipeRows& rows, const fs::path& path, CReporter& reporter)
{
    CNoProgress progress;
    const SaveResult result = SaveRecipe(type, rows, path, reporter, progress);
    return result.isLeftOut ? Failed(kSaveFileError, path, reporter) : result.isSaved; // a script is told of it
}
