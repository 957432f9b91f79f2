#pragma once

#include "files/ByteBuffer.h"
#include "files/CellState.h"
#include "files/FieldTable.h"
#include "files/Outcome.h"
#include "files/Progress.h"
#include "text/Reporter.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>

/// All bytes of the file at `path`. Nothing when it cannot be read, has more than `limit` bytes, or there is no memory.
std::optional<CByteBuffer> ReadWholeFile(const std::filesystem::path& path, std::uint64_t limit);

/// What a save of a whole table changed.
struct CsvPutBack {
    std::span<const std::byte> oldBytes; ///< of the file before that save
    std::size_t rows = 0;
    std::size_t columns = 0;
    const CFieldTable& stored;       ///< the fields as reading showed them after that save
    std::span<const CellPlace> kept; ///< in ascending order: these stay as the file shows them now
};

/// Gives the table at `path` its old bytes back, lines and fields that the save dropped among them. Carried over from
/// the file as it is now are the fields of `kept`, and those that no longer show what the save wrote; they are written
/// in the old file's form, so that reading shows them as it does now, and every other cell as before that save.
///
/// Refused, with one message that says why, when the file is missing, when it has text outside the rows (others put it
/// there, or the save did with a text that had a TAB or line feed in it), or when the old form cannot show a text that
/// is carried over. Not saved either when the file cannot be
/// read or written (then reported: "Save file %s failed!"), or the work was given up. The file is then as it was, as
/// after SaveCsv.
SaveResult PutBackCsv(const CsvPutBack& saved, const std::filesystem::path& path, CReporter& reporter,
                      CProgress& progress);
