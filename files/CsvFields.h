#pragma once

#include "files/FieldTable.h"
#include "files/Outcome.h"
#include "files/Progress.h"

#include <cstddef>
#include <filesystem>

/// Reads at most `lines` lines of at most `columns` fields each from the text table at `path` and appends them to
/// `fields`, which is to be empty.
///
/// A file is UTF-16 when its first byte is FF or its second is FE: then two bytes are passed over, fields end at a TAB,
/// and those that do lose all double quotes at both ends. Any other file is ANSI text: fields end at a comma, quotes
/// stay, and a line is at most 2047 bytes long, its end included, the rest counting as the next line.
Outcome ReadCsvFields(const std::filesystem::path& path, std::size_t lines, std::size_t columns, CFieldTable& fields,
                      CProgress& progress);
