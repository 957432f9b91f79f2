#pragma once

#include "changes/ChangeRecord.h"
#include "changes/FileTables.h"
#include "files/FileType.h"
#include "files/Outcome.h"
#include "files/Progress.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>

// What a check finds in recipe files.

enum class FindingKind {
    OutsideLimits,     ///< a value outside its limits, by its stored words, or the text of a table
    PastEnd,           ///< rows that the file ends before, or within: the first of them
    Unreadable,        ///< the file cannot be read
    Rewritten,         ///< a save would store other words, or another text, of a value that nobody edited
    ControlCharacters, ///< in a string
    NotANumber,   ///< a float or double that is none, or is infinite; in a table of texts what is no number in full
    OutsideRange, ///< a number outside the range that the item's notes call sensible
};

inline constexpr std::size_t kFindingKinds = 7;

/// "outside-limits" for example.
std::u16string_view WordOf(FindingKind kind);

/// Whether it is an error; else it is a warning.
bool IsError(FindingKind kind);

/// One finding. What there is none of is left out.
struct Finding {
    FindingKind kind = FindingKind::Unreadable;
    std::optional<std::size_t> table;   ///< which of the file's tables
    std::optional<std::int32_t> row;    ///< as in the table: 1 is the first
    std::optional<std::int32_t> column; ///< as in the table: 2 is the first with data
    std::optional<std::u16string> item; ///< the column's title
    std::optional<WordAddress> address; ///< of the value's, or the row's, first word
    std::optional<std::u16string> text; ///< that the cell shows
    WordRun words;                      ///< of the value, as far as the file goes
    std::u16string message;             ///< what is wrong, in one line
};

/// Takes findings one after the other.
class CFindingTaker {
public:
    virtual ~CFindingTaker() = default;

    /// False to end the check.
    virtual bool Take(const Finding& finding) = 0;
};

/// Looks at all values of the tables of the recipe file at `path`, table by table and row by row: those of one value in
/// the order of their kinds. A value that is no number counts as that alone, not as one outside its limits too; of rows
/// behind the end of the file nothing else is found. Never writes; keeps a piece of the file, however many rows there
/// are. Reports nothing. Failed when the file cannot be read, which is not among the findings then.
Outcome FindIn(FileType type, const std::filesystem::path& path, std::span<const FileTable> tables,
               CFindingTaker& taker, CProgress& progress);
