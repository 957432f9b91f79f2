#include "library/NotesMerge.h"

#include "model/DataItem.h"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

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

using KeyedItems = std::map<NotesKey, const DataItem*>;

bool AreAlikeButForTheirNames(const DataItem& a, DataItem b)
{
    b.description = a.description;
    return HaveSameRecord(a, b);
}

/// What both sides made of the notes of items.
class CItemsMerge {
public:
    CItemsMerge(const Formats& base, const Formats& ours, const Formats& theirs)
        : m_base(KeyedItemsOf(base)),
          m_ours(KeyedItemsOf(ours)),
          m_theirs(KeyedItemsOf(theirs))
    {
    }

    LibraryNotes Merge()
    {
        for (const auto& [key, item] : m_ours)
            if (const auto their = m_theirs.find(key); their != m_theirs.end())
                m_merged.emplace(key, MergeNotes(BaseOf(key), *item->notes, *their->second->notes));
            else if (const auto renamed = OnlyOther(key))
                MergeRenamed(key, *renamed);
        return std::move(m_merged);
    }

private:
    const ItemNotes& BaseOf(const NotesKey& key) const
    {
        static const ItemNotes kNone;
        const auto found = m_base.find(key);
        return found != m_base.end() ? *found->second->notes : kNone;
    }

    /// The key that only they have in the format in which only `ours` is ours alone.
    std::optional<NotesKey> OnlyOther(const NotesKey& ours) const
    {
        const auto isOurs = OnlyOneWithout(m_ours, m_theirs, ours);
        return isOurs ? OnlyOneWithout(m_theirs, m_ours, ours) : std::nullopt;
    }

    /// The one key of the format of `key` that `items` have and `others` do not; nothing when there are more or none.
    static std::optional<NotesKey> OnlyOneWithout(const KeyedItems& items, const KeyedItems& others,
                                                  const NotesKey& key)
    {
        std::optional<NotesKey> only;
        const NotesKey first{.format = key.format, .formatNumber = key.formatNumber, .item = {}, .itemNumber = 0};
        for (auto at = items.lower_bound(first); at != items.end() && AreOfOneFormat(at->first, key); ++at) {
            if (others.contains(at->first))
                continue;
            if (only)
                return std::nullopt;
            only = at->first;
        }
        return only;
    }

    /// The side with the new name has not touched the notes: what has others is another item.
    void MergeRenamed(const NotesKey& ours, const NotesKey& theirs)
    {
        const DataItem& our = *m_ours.at(ours);
        const DataItem& their = *m_theirs.at(theirs);
        const bool isOursOld = m_base.contains(ours);
        const ItemNotes& base = BaseOf(isOursOld ? ours : theirs);
        const DataItem& renamed = isOursOld ? their : our;
        if (isOursOld == m_base.contains(theirs) || base.IsEmpty() || *renamed.notes != base ||
            !AreAlikeButForTheirNames(our, their))
            return;
        const ItemNotes notes = MergeNotes(base, *our.notes, *their.notes);
        m_merged.emplace(ours, notes);
        m_merged.emplace(theirs, notes);
    }

    KeyedItems m_base;
    KeyedItems m_ours;
    KeyedItems m_theirs;
    LibraryNotes m_merged;
};

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

void MergeNotes(const Formats& base, const Formats& ours, const Formats& theirs, Formats& merged)
{
    SetNotes(merged, CItemsMerge(base, ours, theirs).Merge());
}
