#pragma once

#include "changes/FileTables.h"
#include "cli/ReadOptions.h"
#include "files/FileType.h"
#include "text/Reporter.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// A recipe file that is to be read, and how its words are laid out.
struct RecipeTables {
    std::filesystem::path path;
    FileType type = FileType::Rcp;
    std::vector<FileTable> tables; ///< of a table of texts one
};

/// The tables of the recipe file that the command line names. Nothing, and then reported, when the file is missing, its
/// type is unknown or a setting is not possible. Never writes.
std::optional<RecipeTables> TablesOf(const std::string& file, const ReadOptions& options, CReporter& reporter);
