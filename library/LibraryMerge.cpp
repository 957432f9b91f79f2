#include "library/LibraryMerge.h"

#include "text/NumberText.h"
#include "text/Surrogates.h"

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>

namespace {

std::u16string_view NameOf(const DataFormat& format)
{
    return CutText(TextOf(format.name), kReadNameLength);
}

/// Cut so that all of it is read again.
std::u16string NumberedName(std::u16string_view name, std::int64_t number)
{
    const std::u16string ending = u" (" + DecimalText(number) + u")";
    return std::u16string(CutText(name, kReadNameLength - ending.size())) + ending;
}

bool HaveSameItems(const DataFormat& a, const DataFormat& b)
{
    const auto count = static_cast<std::ptrdiff_t>(a.savedItemCount());
    return a.savedItemCount() == b.savedItemCount() &&
           std::equal(a.items.begin(), a.items.begin() + count, b.items.begin(),
                      [](const auto& itemA, const auto& itemB) { return HaveSameRecord(*itemA, *itemB); });
}

/// The items, one by one, of formats that have the same ones.
bool HaveSameNotes(const DataFormat& a, const DataFormat& b)
{
    const auto count = static_cast<std::ptrdiff_t>(a.savedItemCount());
    return std::equal(a.items.begin(), a.items.begin() + count, b.items.begin(),
                      [](const auto& itemA, const auto& itemB) { return itemA->notes == itemB->notes; });
}

/// The name, and which of that name it is.
using Key = std::pair<std::u16string_view, std::size_t>;

std::vector<Key> KeysOf(const Formats& formats)
{
    std::map<std::u16string_view, std::size_t> counts;
    std::vector<Key> keys;
    for (const auto& format : formats)
        keys.emplace_back(NameOf(*format), counts[NameOf(*format)]++);
    return keys;
}

/// Formats that are found by their keys.
class CKeyedFormats {
public:
    explicit CKeyedFormats(const Formats& formats) : m_formats(formats), m_keys(KeysOf(formats))
    {
        for (std::size_t i = 0; i < m_keys.size(); ++i)
            m_indices.emplace(m_keys[i], i);
    }

    std::size_t Count() const { return m_formats.size(); }
    const DataFormat& At(std::size_t index) const { return *m_formats[index]; }
    const Key& KeyAt(std::size_t index) const { return m_keys[index]; }

    std::optional<std::size_t> Find(const Key& key) const
    {
        const auto found = m_indices.find(key);
        return found != m_indices.end() ? std::optional(found->second) : std::nullopt;
    }

    /// Whether it has one like `format` of that key.
    bool Has(const Key& key, const DataFormat& format) const
    {
        const auto index = Find(key);
        return index && HaveSameItems(At(*index), format);
    }

    /// The same with the same notes.
    bool HasUntouched(const Key& key, const DataFormat& format) const
    {
        return Has(key, format) && HaveSameNotes(At(*Find(key)), format);
    }

private:
    const Formats& m_formats;
    std::vector<Key> m_keys;
    std::map<Key, std::size_t> m_indices;
};

class CFormatMerge {
public:
    CFormatMerge(const Formats& base, const Formats& ours, const Formats& theirs)
        : m_base(base),
          m_ours(ours),
          m_theirs(theirs),
          m_isPlaced(ours.size())
    {
        m_merged.moves.resize(ours.size());
        for (const Formats* formats : {&ours, &theirs})
            for (const auto& format : *formats)
                m_names.emplace(NameOf(*format));
    }

    MergedFormats Merge()
    {
        for (std::size_t i = 0; i < m_theirs.Count(); ++i)
            TakeTheirs(i);
        for (std::size_t i = 0; i < m_ours.Count(); ++i)
            if (!m_isPlaced[i])
                TakeRest(i);
        return std::move(m_merged);
    }

private:
    void TakeTheirs(std::size_t index)
    {
        const Key& key = m_theirs.KeyAt(index);
        const DataFormat& theirs = m_theirs.At(index);
        const auto our = m_ours.Find(key);
        if (!our)
            TakeWhatWeLack(key, theirs);
        else if (m_base.Has(key, theirs) || HaveSameItems(m_ours.At(*our), theirs))
            Place(*our, m_ours.At(*our), false);
        else if (m_base.Has(key, m_ours.At(*our)))
            Place(*our, theirs, true);
        else
            Add(theirs); // ours follows under another name
    }

    void TakeWhatWeLack(const Key& key, const DataFormat& theirs)
    {
        if (m_base.HasUntouched(key, theirs))
            return; // we deleted it
        m_theirsAlone.push_back(m_merged.formats.size());
        Add(theirs);
    }

    void TakeRest(std::size_t index)
    {
        const Key& key = m_ours.KeyAt(index);
        if (m_theirs.Find(key))
            PlaceUnderAnotherName(index);
        else if (m_base.HasUntouched(key, m_ours.At(index)))
            m_merged.moves[index] = {.to = std::nullopt, .hasOtherItems = true}; // they deleted it
        else
            Place(index, m_ours.At(index), false);
    }

    void PlaceUnderAnotherName(std::size_t index)
    {
        const DataFormat& ours = m_ours.At(index);
        for (std::int64_t number = 2;; ++number) {
            const std::u16string name = NumberedName(NameOf(ours), number);
            if (const auto alike = TakeAlikeOfTheirs(name, ours)) {
                m_merged.moves[index].to = *alike;
                return;
            }
            if (!m_names.insert(name).second)
                continue;
            Place(index, ours, false);
            SetText(m_merged.formats.back()->name, name);
            return;
        }
    }

    /// The place of one that has that name and the items of `format`; it counts as taken then.
    std::optional<std::size_t> TakeAlikeOfTheirs(std::u16string_view name, const DataFormat& format)
    {
        const auto alike = std::find_if(m_theirsAlone.begin(), m_theirsAlone.end(), [&](std::size_t place) {
            const DataFormat& theirs = *m_merged.formats[place];
            return NameOf(theirs) == name && HaveSameItems(theirs, format);
        });
        if (alike == m_theirsAlone.end())
            return std::nullopt;
        const std::size_t place = *alike;
        m_theirsAlone.erase(alike);
        return place;
    }

    void Place(std::size_t ours, const DataFormat& format, bool hasOtherItems)
    {
        m_merged.moves[ours] = {.to = m_merged.formats.size(), .hasOtherItems = hasOtherItems};
        m_isPlaced[ours] = true;
        Add(format);
    }

    void Add(const DataFormat& format) { m_merged.formats.push_back(std::make_unique<DataFormat>(format)); }

    CKeyedFormats m_base;
    CKeyedFormats m_ours;
    CKeyedFormats m_theirs;
    std::vector<bool> m_isPlaced;           ///< of each of ours
    std::vector<std::size_t> m_theirsAlone; ///< the places of those that we have none of
    std::set<std::u16string, std::less<>> m_names;
    MergedFormats m_merged;
};

/// Whether they gave other notes to a format that we do not have any more.
bool HaveNotedWhatWeLack(const Formats& base, const Formats& ours, const Formats& theirs)
{
    const CKeyedFormats keyedBase(base);
    const CKeyedFormats keyedOurs(ours);
    const CKeyedFormats keyedTheirs(theirs);
    for (std::size_t i = 0; i < keyedTheirs.Count(); ++i)
        if (const Key& key = keyedTheirs.KeyAt(i);
            !keyedOurs.Find(key) && !keyedBase.HasUntouched(key, keyedTheirs.At(i)))
            return true;
    return false;
}

MergedFormats AllOf(const Formats& ours)
{
    MergedFormats merged{.formats = CopyOf(ours), .moves = {}};
    for (std::size_t i = 0; i < ours.size(); ++i)
        merged.moves.push_back({.to = i});
    return merged;
}

} // namespace

Formats CopyOf(const Formats& formats)
{
    Formats copy;
    copy.reserve(formats.size());
    for (const auto& format : formats)
        copy.push_back(std::make_unique<DataFormat>(*format));
    return copy;
}

std::u16string FreeName(const Formats& formats, std::u16string_view name)
{
    std::int64_t number = 2;
    const auto isTaken = [&](const std::u16string& numbered) {
        return std::any_of(formats.begin(), formats.end(),
                           [&](const auto& format) { return NameOf(*format) == numbered; });
    };
    while (isTaken(NumberedName(name, number)))
        ++number;
    return NumberedName(name, number);
}

bool AreSavedAlike(const Formats& a, const Formats& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const auto& formatA, const auto& formatB) {
        return NameOf(*formatA) == NameOf(*formatB) && HaveSameItems(*formatA, *formatB);
    });
}

MergedFormats MergeFormats(const Formats& base, const Formats& ours, const Formats& theirs)
{
    if (AreSavedAlike(base, theirs) && !HaveNotedWhatWeLack(base, ours, theirs))
        return AllOf(ours);
    return CFormatMerge(base, ours, theirs).Merge();
}
