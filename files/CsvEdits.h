#pragma once

#include "files/CsvSplices.h"
#include "files/Outcome.h"
#include "files/Progress.h"
#include "text/Reporter.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>

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
