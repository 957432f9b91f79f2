#include "library/NotesMerge.h"

#include <algorithm>

namespace {

template <class Field>
const Field& Merged(const Field& base, const Field& ours, const Field& theirs)
{
    return ours == base ? theirs : ours;
}

/// A bit's name is for itself.
std::vector<std::u16string> MergedBits(const ItemNotes& base, const ItemNotes& ours, const ItemNotes& theirs)
{
    std::vector<std::u16string> bits(std::max(ours.bits.size(), theirs.bits.size()));
    for (std::size_t bit = 0; bit < bits.size(); ++bit)
        bits[bit] = Merged(NameOfBit(base, bit), NameOfBit(ours, bit), NameOfBit(theirs, bit));
    return bits;
}

const ItemNotes& OfKey(const LibraryNotes& notes, const NotesKey& key)
{
    static const ItemNotes kNone;
    const auto found = notes.find(key);
    return found != notes.end() ? found->second : kNone;
}

} // namespace

ItemNotes MergeNotes(const ItemNotes& base, const ItemNotes& ours, const ItemNotes& theirs)
{
    if (ours == base || ours == theirs || (ours.IsEmpty() && theirs != base))
        return theirs;
    if (theirs == base || theirs.IsEmpty())
        return ours;
    ItemNotes merged;
    merged.unit = Merged(base.unit, ours.unit, theirs.unit);
    const bool isRangeOurs = ours.lowest != base.lowest || ours.highest != base.highest; // both ends are one field
    merged.lowest = isRangeOurs ? ours.lowest : theirs.lowest;
    merged.highest = isRangeOurs ? ours.highest : theirs.highest;
    merged.comment = Merged(base.comment, ours.comment, theirs.comment);
    merged.bits = MergedBits(base, ours, theirs);
    merged.texts = Merged(base.texts, ours.texts, theirs.texts);
    return Tidied(std::move(merged));
}

void MergeNotes(const LibraryNotes& base, const Formats& ours, const Formats& theirs, Formats& merged)
{
    const LibraryNotes theirItems = ItemsOf(theirs);
    LibraryNotes both;
    for (const auto& [key, notes] : ItemsOf(ours))
        if (const auto their = theirItems.find(key); their != theirItems.end())
            both.emplace(key, MergeNotes(OfKey(base, key), notes, their->second));
    SetNotes(merged, both);
}
