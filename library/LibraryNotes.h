#pragma once

#include "library/LibraryMerge.h"
#include "model/ItemNotes.h"

#include <cstddef>
#include <map>
#include <string>
#include <tuple>

// The notes of a library's items by the names of their formats and items, as the notes file has them.

/// Of which item notes are. Where several formats, or items of a format, have one name, they are told apart by their
/// number among these, counted from 1. Names are those that UTF-8 can hold.
struct NotesKey {
    std::u16string format;
    std::size_t formatNumber = 1;
    std::u16string item;
    std::size_t itemNumber = 1;

    friend bool operator==(const NotesKey&, const NotesKey&) = default;
    friend bool operator<(const NotesKey& a, const NotesKey& b)
    {
        return std::tie(a.format, a.formatNumber, a.item, a.itemNumber) <
               std::tie(b.format, b.formatNumber, b.item, b.itemNumber);
    }
};

bool AreOfOneFormat(const NotesKey& a, const NotesKey& b);

using LibraryNotes = std::map<NotesKey, ItemNotes>;

/// All items that a save keeps; they must outlive it.
std::map<NotesKey, const DataItem*> KeyedItemsOf(const Formats& formats);

/// The notes of all items that a save keeps; empty ones, too.
LibraryNotes ItemsOf(const Formats& formats);

/// The same without the empty ones.
LibraryNotes NotesOf(const Formats& formats);

/// Gives each item that `notes` name these notes, where empty ones take away what it had; others keep theirs.
void SetNotes(Formats& formats, const LibraryNotes& notes);

/// Gives each item the notes that `notes` have of it, and none where they have none.
void ReplaceNotes(Formats& formats, const LibraryNotes& notes);

/// Those that are of no item of `formats`.
LibraryNotes NotesOfOthers(const LibraryNotes& notes, const Formats& formats);
