#pragma once

#include "cli/ReadSettings.h"
#include "files/RecipeFile.h"
#include "files/RecipeRows.h"
#include "text/Reporter.h"

#include <filesystem>
#include <optional>
#include <string>

/// A recipe file that is there, and how it is to be read.
struct RecipeSource {
    ReadSettings settings;
    std::filesystem::path path;
    FileType type;
};

/// The source that the command line names; nothing, and then reported, when a setting is not possible, the file is
/// missing or its type is unknown.
std::optional<RecipeSource> FindSource(const std::string& file, const ReadOptions& options, CReporter& reporter);

/// The type that goes with the extension of `path`; nothing, and then reported, for an unknown one.
std::optional<FileType> KnownTypeOf(const std::filesystem::path& path, CReporter& reporter);

/// The rows that the settings ask for, with nothing in them yet. A format without words has no rows and no columns.
CRecipeRows LayOutRows(const ReadSettings& settings);

/// Lays `rows` out so and fills them with all that the source holds of them: nothing of the file is needed any more.
/// Never writes. False after a failure, then reported.
bool ReadRows(const RecipeSource& source, CRecipeRows& rows, CReporter& reporter);

/// Writes `rows` to `path`. False after a failure, then reported; a paged file that cannot be opened is one, too.
bool SaveRows(FileType type, const CRecipeRows& rows, const std::filesystem::path& path, CReporter& reporter);
