#pragma once

#include "files/CsvPatch.h"
#include "files/CsvSplices.h"
#include "files/Outcome.h"
#include "files/Progress.h"
#include "text/Reporter.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Saves cells alone into the table at `path`: only the bytes of their fields change, and a field is lengthened or a
/// line added only where the cell has none (CsvSplices.h). The places of `edits` are in ascending order, none twice.
/// Where every cell shows its text already, nothing is written, and it is saved.
///
/// Refused, with one message that says why, when the file is missing or not in the form in which a save leaves one
/// (CCsvFormCheck), and when no field shows a text as it is: one with a TAB or line feed in it, or with a quote at an
/// end where a TAB follows. Not saved either when the file cannot be read or written (then reported: "Save file %s
/// failed!"), or the work was given up. The file is then as it was, as after SaveCsv.
SaveResult SaveCsvEdits(std::span<const CsvEdit> edits, const std::filesystem::path& path, CReporter& reporter,
                        CProgress& progress);

/// How many bytes the table at `path` would hold after SaveCsvEdits. Never writes. Nothing where that would not save,
/// told apart and reported as it does.
std::optional<std::uint64_t> CsvBytesAfterEdits(std::span<const CsvEdit> edits, const std::filesystem::path& path,
                                                CReporter& reporter, CProgress& progress);

/// What is told of a table whose fields cannot be written one by one.
std::u16string CsvRefusalText(const std::filesystem::path& path, std::u16string_view reason);

/// How changes of fields and lines (CsvPatch.h) went, or would go.
struct CsvPatchEnd {
    Outcome outcome = Outcome::Failed;
    std::u16string refusal; ///< why the table cannot become so (CsvRefusalText); empty where it can, or cannot be read
    std::vector<CCsvPatcher::Other> others; ///< what changes do not find; `refusal` is of no use then
    std::uint64_t oldBytes = 0;             ///< that the table holds before
    std::uint64_t newBytes = 0;             ///< and after
};

/// Looks at the table at `path`, in the place of SaveCsvPatch. Never writes. Reports nothing.
CsvPatchEnd LookAtCsvPatch(std::span<const CsvChange> changes, const CsvExtent& extent,
                           const std::filesystem::path& path, CProgress& progress);

/// Makes `changes` in the table at `path`, with the rules of SaveCsvEdits, but reports nothing: all or none of them.
CsvPatchEnd SaveCsvPatch(std::span<const CsvChange> changes, const CsvExtent& extent, const std::filesystem::path& path,
                         CProgress& progress);
