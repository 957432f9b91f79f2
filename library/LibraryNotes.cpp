#include "library/LibraryNotes.h"

#include "model/DataItem.h"
#include "text/Utf8Text.h"

#include <string_view>

namespace {

/// As it comes back from a file in UTF-8.
std::u16string KeyName(std::u16string_view name)
{
    return FromUtf8(ToUtf8(name));
}

/// Calls `visit(key, item)` for each item that a save keeps.
template <class Visit>
void VisitItems(const Formats& formats, Visit visit)
{
    std::map<std::u16string, std::size_t> formatCounts;
    for (const auto& format : formats) {
        NotesKey key;
        key.format = KeyName(CutText(TextOf(format->name), kReadNameLength));
        key.formatNumber = ++formatCounts[key.format];
        std::map<std::u16string, std::size_t> itemCounts;
        for (std::size_t i = 0; i < format->savedItemCount(); ++i) {
            key.item = KeyName(TextOf(format->items[i]->description));
            key.itemNumber = ++itemCounts[key.item];
            visit(key, *format->items[i]);
        }
    }
}

} // namespace

bool AreOfOneFormat(const NotesKey& a, const NotesKey& b)
{
    return a.format == b.format && a.formatNumber == b.formatNumber;
}

std::map<NotesKey, const DataItem*> KeyedItemsOf(const Formats& formats)
{
    std::map<NotesKey, const DataItem*> items;
    VisitItems(formats, [&items](const NotesKey& key, const DataItem& item) { items.emplace(key, &item); });
    return items;
}

LibraryNotes ItemsOf(const Formats& formats)
{
    LibraryNotes notes;
    VisitItems(formats, [&notes](const NotesKey& key, const DataItem& item) { notes.emplace(key, *item.notes); });
    return notes;
}

LibraryNotes NotesOf(const Formats& formats)
{
    LibraryNotes notes = ItemsOf(formats);
    std::erase_if(notes, [](const auto& entry) { return entry.second.IsEmpty(); });
    return notes;
}

void SetNotes(Formats& formats, const LibraryNotes& notes)
{
    VisitItems(formats, [&notes](const NotesKey& key, DataItem& item) {
        if (const auto found = notes.find(key); found != notes.end())
            item.notes = CSharedNotes(found->second);
    });
}

void ReplaceNotes(Formats& formats, const LibraryNotes& notes)
{
    VisitItems(formats, [&notes](const NotesKey& key, DataItem& item) {
        const auto found = notes.find(key);
        item.notes = found != notes.end() ? CSharedNotes(found->second) : CSharedNotes();
    });
}

LibraryNotes NotesOfOthers(const LibraryNotes& notes, const Formats& formats)
{
    LibraryNotes others = notes;
    VisitItems(formats, [&others](const NotesKey& key, const DataItem&) { others.erase(key); });
    return others;
}
