#pragma once

#include "library/FormatChange.h"
#include "library/FormatLibrary.h"
#include "library/LibraryMerge.h"
#include "library/LibraryNotes.h"
#include "library/LibraryOpening.h"
#include "library/StandingLibrary.h"
#include "model/DataItem.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

/// What there is to tell of the library's file: what of it is shown, and whether changes get there.
struct LibraryState {
    enum class Content {
        Whole,
        Damaged,    ///< only what stands before the damage
        Unreadable, ///< nothing of a file that is there
    };
    enum class Changes {
        Kept,
        NotWritten, ///< the file may not be written
        NoFile,     ///< there is none, and none can be made
    };

    Content content = Content::Whole;
    Content notes = Content::Whole; ///< of the notes beside it: none are shown unless it is whole
    Changes changes = Changes::Kept;

    friend bool operator==(const LibraryState&, const LibraryState&) = default;
};

/// The format library of the running program and all that is known of its file. It always begins with a format to
/// show. Each operation on formats gives what it did, so that it can be taken back; one that fails for want of memory
/// did nothing. Nothing is saved before Save().
///
/// Several stores, of this and of other programs, may work on one file. What others changed in it since this one last
/// read or wrote it is merged by format (LibraryMerge.h) when this one saves, or when it is asked to take it; the read
/// settings are each store's own. What the store itself made of a library without formats is no change of anybody.
///
/// The notes of items are kept in a file beside the library's (NotesFile.h), and go with the items in all of this.
///
/// A file that is not understood in full is not merged. It is copied before it is overwritten (LibraryOriginal.h), and
/// left alone when it cannot be copied.
class CFormatStore {
public:
    /// Loads the library from `path`, as OpenLibrary does. One without formats gets the built-in default format.
    /// kept: a first format without items is given the default item, but its `itemCount` is not raised.
    explicit CFormatStore(const std::filesystem::path& path);

    const FormatLibrary& Library() const { return m_library; }
    const LibraryState& State() const { return m_state; }

    /// Whether anything was changed since the library was loaded, saved or not.
    bool IsChanged() const { return m_isChanged; }

    /// Has it count as changed.
    void SetChanged() { m_isChanged = true; }

    /// Keeps all three, whatever they are: `filePattern` as far as its field goes. Does not count as a change.
    void SetReadSettings(std::int32_t startAddress, std::int32_t rowCount, std::u16string_view filePattern);

    /// Has `before` called under the library's lock, right before a file that is there gets other formats.
    using BeforeChange = BeforeFormatsChange;
    void SetBeforeFormatsChange(BeforeChange before) { m_beforeChange = std::move(before); }

    /// Merges what others changed in the file with the library and writes that to the file, under the library's lock
    /// (LibraryLock.h); where the file holds these bytes already, it is not touched. False when that failed. Reports
    /// nothing. A file that could not be written before and now can be holds what is shown from here on, as State()
    /// then tells.
    ///
    /// The merged formats stand at other indices: ask TakeMoves() after it.
    bool Save();

    /// Merges what others changed in the file with the library and writes nothing. Ask TakeMoves() after it.
    void TakeOthers();

    /// What the latest merge did to the formats that were there before it, once; nothing when there was none since.
    /// Formats may have come, too.
    std::optional<std::vector<FormatMove>> TakeMoves() { return std::exchange(m_moves, std::nullopt); }

    // `format` is the index of a format that there is, `position` that of an item of it or, for one that is put in, one
    // beyond.

    FormatChange AppendFormat(DataFormat format);
    FormatChange RemoveFormat(std::size_t format);
    FormatChange
    DuplicateFormat(std::size_t format); ///< at the end, as "NAME (2)" or with the next number that is free
    FormatChange RenameFormat(std::size_t format, std::u16string_view name);
    FormatChange InsertItem(std::size_t format, std::size_t position, const DataItem& item); ///< and counts it
    FormatChange ReplaceItem(std::size_t format, std::size_t position, const DataItem& item);
    FormatChange RemoveItem(std::size_t format, std::size_t position);           ///< and lowers the count
    FormatChange MoveItem(std::size_t format, std::size_t from, std::size_t to); ///< to where it stands then
    FormatChange SetNotes(std::size_t format, std::size_t position, ItemNotes notes);
    FormatChange RemoveAllItems(std::size_t format);
    FormatChange CountAllItems(std::size_t format); ///< so that a save keeps them all

    /// Sets the `unicode` of an item. Is no change of its own, and does not count as one.
    void SetUnicode(std::size_t format, std::size_t position, std::int32_t unicode);

    /// Puts what the change left, or what stood there before it, in its place (PlaceOf). The library holds the other
    /// side (Holds).
    void Apply(const FormatChange& change);
    void TakeBack(const FormatChange& change);

private:
    void EnsureFirstItem();
    void LoadNotes();
    template <class Edit>
    FormatChange ChangeFormat(std::size_t format, Edit edit);
    void Exchange(std::size_t index, const DataFormat* old, const DataFormat* fresh);
    void Merge(StandingLibrary& theirs);
    bool Write();
    LibraryNotes Notes() const;

    FormatLibrary m_library;
    Formats m_base;            ///< as the file held them when it was last read or written
    LibraryNotes m_baseNotes;  ///< the same of the notes
    LibraryNotes m_otherNotes; ///< in the notes file, of no item of the library
    LibraryState m_state;
    BeforeChange m_beforeChange;
    std::optional<std::vector<FormatMove>> m_moves;
    bool m_isDefaultOwn = false; ///< the file had no formats, and the default one has not reached it yet
    bool m_isChanged = false;
};
