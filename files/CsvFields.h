#pragma once

#include "files/FieldTable.h"
#include "files/Outcome.h"
#include "files/Progress.h"

#include <cstddef>
#include <filesystem>
#include <string_view>

/// Reads at most `lines` lines of at most `columns` fields each from the text table at `path` and appends them to
/// `fields`, which is to be empty.
///
/// A file is UTF-16 when its first byte is FF or its second is FE: then two bytes are passed over, fields end at a TAB,
/// and those that do lose all double quotes at both ends. Any other file is ANSI text: fields end at a comma, quotes
/// stay, and a line is at most 2047 bytes long, its end included, the rest counting as the next line.
Outcome ReadCsvFields(const std::filesystem::path& path, std::size_t lines, std::size_t columns, CFieldTable& fields,
                      CProgress& progress);

/// Takes the fields of a text table one after the other.
class CFieldTaker {
public:
    virtual ~CFieldTaker() = default;

    /// The next field of the line at hand; good until this returns.
    virtual void AddField(std::u16string_view field) = 0;
    virtual void EndLine() = 0;
};

/// As ReadCsvFields, but hands the fields on and keeps no more of the file than a piece, or the field at hand if that
/// is longer.
Outcome WalkCsvFields(const std::filesystem::path& path, std::size_t lines, std::size_t columns, CFieldTaker& fields);
