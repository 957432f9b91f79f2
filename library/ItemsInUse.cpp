#include "library/ItemsInUse.h"

#include <algorithm>
#include <map>
#include <string>
#include <utility>

namespace {

bool AreItemsReadAlike(const DataFormat& a, const DataFormat& b)
{
    return std::equal(a.items.begin(), a.items.end(), b.items.begin(), b.items.end(),
                      [](const auto& itemA, const auto& itemB) { return AreReadAlike(*itemA, *itemB); });
}

/// An item's name, and which one of that name it is.
using ItemKey = std::pair<std::u16string, std::size_t>;

class CItemKeys {
public:
    ItemKey KeyOf(const DataItem& item)
    {
        std::u16string name(TextOf(item.description));
        const std::size_t number = ++m_counts[name];
        return {std::move(name), number};
    }

private:
    std::map<std::u16string, std::size_t> m_counts;
};

std::map<ItemKey, std::size_t> PositionsOf(const DataFormat& format)
{
    CItemKeys keys;
    std::map<ItemKey, std::size_t> positions;
    for (std::size_t i = 0; i < format.items.size(); ++i)
        positions.emplace(keys.KeyOf(*format.items[i]), i);
    return positions;
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
    const std::map<ItemKey, std::size_t> positions = PositionsOf(format);
    CItemKeys keys;
    std::vector<std::optional<std::size_t>> found;
    for (const auto& item : used.items) {
        const auto place = positions.find(keys.KeyOf(*item));
        const bool isThere = place != positions.end() && AreReadAlike(*format.items[place->second], *item);
        found.push_back(isThere ? std::optional(place->second) : std::nullopt);
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
