#pragma once

#include "cli/InputFile.h"
#include "cli/ReadOptions.h"
#include "document/RecipeDocument.h"
#include "text/Reporter.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

/// Makes the file that the command line names the open one of `document`, with the settings to read it by; it is not
/// read yet. False, and then reported, when a setting is not possible, the file is missing or its type is unknown.
bool OpenRecipe(CRecipeDocument& document, const std::filesystem::path& file, const ReadOptions& options,
                CReporter& reporter);

/// As OpenRecipe, and fills the rows with all that the file holds of them: nothing of it is needed any more. Never
/// writes. False after a failure, then reported. A format without words gives no rows.
bool OpenAndRead(CRecipeDocument& document, const std::filesystem::path& file, const ReadOptions& options,
                 CReporter& reporter, CProgress& progress);

/// Keeps other programs from writing the file at `path` until `document` has written it, or goes; to be called before
/// what is to be changed is read. False, and then reported, when another program writes it and does not end within some
/// seconds.
bool HoldForWriting(CRecipeDocument& document, const std::filesystem::path& path, CReporter& reporter);
