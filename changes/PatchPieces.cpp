#include "changes/PatchPieces.h"

#include <algorithm>

namespace {

/// A byte of one side; nothing where it has none.
std::optional<std::byte> ByteAt(const PatchPiece& piece, const WordRun& side, std::uint64_t end, std::uint64_t place)
{
    if (place >= end)
        return std::nullopt;
    return piece.zeros != 0 ? std::byte{0} : side[static_cast<std::size_t>(place - piece.begin)];
}

/// Whether both say the same of the bytes that both know.
bool Agree(const PatchPiece& one, const PatchPiece& other)
{
    if (one.zeros != 0 && other.zeros != 0)
        return (one.zeros > 0) == (other.zeros > 0);
    const std::uint64_t end = std::min(one.End(), other.End());
    for (std::uint64_t place = std::max(one.begin, other.begin); place < end; ++place) {
        if (ByteAt(one, one.to, one.ToEnd(), place) != ByteAt(other, other.to, other.ToEnd(), place))
            return false;
        const bool areLookedAt = one.looksAtFrom && other.looksAtFrom;
        if (areLookedAt &&
            ByteAt(one, one.from, one.FromEnd(), place) != ByteAt(other, other.from, other.FromEnd(), place))
            return false;
    }
    return true;
}

/// Whether `other` adds nothing to `one`, which it agrees with.
bool Covers(const PatchPiece& one, const PatchPiece& other)
{
    return one.begin <= other.begin && one.End() >= other.End() && (one.looksAtFrom || !other.looksAtFrom);
}

} // namespace

std::optional<PieceFault> SortPieces(std::vector<PatchPiece>& pieces)
{
    std::stable_sort(pieces.begin(), pieces.end(), [](const PatchPiece& a, const PatchPiece& b) {
        return a.begin != b.begin ? a.begin < b.begin : a.End() > b.End();
    });
    std::vector<PatchPiece> kept;
    kept.reserve(pieces.size());
    std::vector<std::size_t> reaching; // of those that were kept, in which the next may begin
    for (PatchPiece& piece : pieces) {
        std::erase_if(reaching, [&](std::size_t i) { return kept[i].End() <= piece.begin; });
        bool isCovered = false;
        for (const std::size_t i : reaching) {
            if (!Agree(kept[i], piece))
                return PieceFault{piece.entry, u"address", u"another record says something else of the same words"};
            isCovered = isCovered || Covers(kept[i], piece);
        }
        if (isCovered)
            continue;
        reaching.push_back(kept.size());
        kept.push_back(std::move(piece));
    }
    pieces = std::move(kept);
    return std::nullopt;
}

std::optional<PieceFault> SettleSize(const std::vector<PatchPiece>& pieces, PatchSizes& sizes)
{
    std::uint64_t grown = sizes.now;
    std::optional<std::uint64_t> cut;
    for (const PatchPiece& piece : pieces) {
        if (piece.ToEnd() > piece.begin)
            grown = std::max(grown, piece.ToEnd());
        if (piece.FromEnd() > piece.ToEnd())
            cut = std::min(cut.value_or(piece.ToEnd()), piece.ToEnd());
    }
    if (!sizes.next)
        sizes.next = cut.value_or(grown);
    const std::uint64_t next = *sizes.next;
    std::uint64_t seen = next; // up to here all that goes is looked at
    for (const PatchPiece& piece : pieces) {
        if (piece.ToEnd() > std::max(piece.begin, next) || (piece.ToEnd() > piece.begin && piece.begin >= next))
            return PieceFault{piece.entry, u"address", u"the words lie behind the end that the file is to have"};
        if (piece.FromEnd() > piece.ToEnd() && piece.ToEnd() < next)
            return PieceFault{piece.entry, u"address", u"words can only go at the end of the file"};
        if (piece.to.size() % 2 != 0 && piece.ToEnd() != next)
            return PieceFault{piece.entry, u"newWords", u"half a word can only stand at the end of the file"};
        if (piece.looksAtFrom && piece.begin <= seen)
            seen = std::max(seen, piece.FromEnd());
    }
    if (seen < sizes.now)
        return PieceFault{pieces.back().entry, u"address", u"words behind the new end go that no record names"};
    return std::nullopt;
}
