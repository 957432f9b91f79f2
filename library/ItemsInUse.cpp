#include "library/ItemsInUse.h"

#include <algorithm>
#include <map>
#include <string>
#include <vector>

namespace {

bool AreItemsReadAlike(const DataFormat& a, const DataFormat& b)
{
    return std::equal(a.items.begin(), a.items.end(), b.items.begin(), b.items.end(),
                      [](const auto& itemA, const auto& itemB) { return AreReadAlike(*itemA, *itemB); });
}

/// The positions of the items of each name, in order.
using Namesakes = std::map<std::u16string, std::vector<std::size_t>>;

Namesakes NamesakesIn(const DataFormat& format)
{
    Namesakes namesakes;
    for (std::size_t i = 0; i < format.items.size(); ++i)
        namesakes[std::u16string(TextOf(format.items[i]->description))].push_back(i);
    return namesakes;
}

} // namespace

std::optional<std::size_t> FormatInUse(const Formats& formats, const DataFormat& used)
{
    std::optional<std::size_t> namesake;
    for (std::size_t i = 0; i < formats.size(); ++i) {
        if (TextOf(formats[i]->name) != TextOf(used.name))
            continue;
        if (AreItemsReadAlike(*formats[i], used))
            return i;
        namesake = namesake.value_or(i);
    }
    return namesake;
}

std::vector<std::optional<std::size_t>> ItemsInUse(const DataFormat& format, const DataFormat& used)
{
    const Namesakes there = NamesakesIn(format);
    std::vector<std::optional<std::size_t>> found(used.items.size());
    for (const auto& [name, positions] : NamesakesIn(used)) {
        const auto same = there.find(name);
        if (same == there.end() || same->second.size() != positions.size())
            continue;
        for (std::size_t i = 0; i < positions.size(); ++i)
            if (AreReadAlike(*format.items[same->second[i]], *used.items[positions[i]]))
                found[positions[i]] = same->second[i];
    }
    return found;
}

std::optional<LibraryItem> ItemOfColumn(const Formats& formats, const DataFormat& used, std::size_t column)
{
    const auto index = FormatInUse(formats, used);
    const DataItem* shown = used.itemOfElement(static_cast<std::int64_t>(column));
    if (!index || shown == nullptr)
        return std::nullopt;
    const auto isShown = [shown](const auto& item) { return item.get() == shown; };
    const auto place = std::find_if(used.items.begin(), used.items.end(), isShown) - used.items.begin();
    const auto position = ItemsInUse(*formats[*index], used)[static_cast<std::size_t>(place)];
    return position ? std::optional(LibraryItem{*index, *position}) : std::nullopt;
}

bool TakeNotesFrom(const Formats& formats, DataFormat& used)
{
    const auto index = FormatInUse(formats, used);
    if (!index)
        return false;
    const DataFormat& format = *formats[*index];
    const auto positions = ItemsInUse(format, used);
    bool areOthers = false;
    for (std::size_t i = 0; i < positions.size(); ++i) {
        if (!positions[i])
            continue;
        const CSharedNotes& notes = format.items[*positions[i]]->notes;
        areOthers = areOthers || !(used.items[i]->notes == notes);
        used.items[i]->notes = notes;
    }
    return areOthers;
}
