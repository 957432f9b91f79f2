#pragma once

#include "changes/ChangeRecord.h"
#include "changes/ChangeSyntax.h"
#include "changes/RecordPlaces.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// Bytes of a file of words that a patch makes others.
struct PatchPiece {
    std::uint64_t begin = 0; ///< in bytes
    WordRun from;            ///< what is there; it is shorter than `to` where the file ends
    WordRun to;
    bool looksAtFrom = true;
    std::int64_t zeros = 0; ///< words that come or go, in the place of `from` and `to`
    std::size_t entry = 0;  ///< of the patch
    std::optional<TableCell> cell;

    std::uint64_t FromEnd() const { return begin + (zeros != 0 ? ZeroBytes(-zeros) : from.size()); }
    std::uint64_t ToEnd() const { return begin + (zeros != 0 ? ZeroBytes(zeros) : to.size()); }
    std::uint64_t End() const { return FromEnd() > ToEnd() ? FromEnd() : ToEnd(); }

private:
    static std::uint64_t ZeroBytes(std::int64_t words) { return words > 0 ? 2 * static_cast<std::uint64_t>(words) : 0; }
};

/// What is wrong with some pieces.
struct PieceFault {
    std::size_t entry = 0; ///< of the patch
    std::u16string key;
    std::u16string text;
};

/// Sorts the pieces by where they begin, and drops those that others say the same as. A fault where two of them do not
/// agree about a byte.
std::optional<PieceFault> SortPieces(std::vector<PatchPiece>& pieces);

/// The sizes of a flat file that a patch is for.
struct PatchSizes {
    std::uint64_t now = 0;             ///< of the file
    std::optional<std::uint64_t> next; ///< what it is to be, where the patch says so; else what the pieces come to
};

/// How many bytes the file has after the patch, in `sizes.next`; or what keeps it from having so many: pieces that do
/// not end there, or bytes that go with the end and that no piece looks at. `pieces` are sorted.
std::optional<PieceFault> SettleSize(const std::vector<PatchPiece>& pieces, PatchSizes& sizes);
