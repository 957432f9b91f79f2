#include "library/FormatStore.h"

#include "disk/File.h"
#include "library/LibraryLock.h"
#include "library/NotesFile.h"
#include "library/NotesMerge.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <utility>

namespace fs = std::filesystem;

namespace {

LibraryState StateOf(const FormatLibrary& library, const LibraryOpening& opening)
{
    const bool isThere = !IsMissing(library.path);
    LibraryState state;
    if (IsDamaged(library, opening))
        state.content = LibraryState::Content::Damaged;
    else if (!library.versionsKnown && isThere)
        state.content = LibraryState::Content::Unreadable;
    if (!opening.mayBeWritten)
        state.changes = isThere ? LibraryState::Changes::NotWritten : LibraryState::Changes::NoFile;
    return state;
}

LibraryState::Content ContentOf(const NotesFile& notes)
{
    switch (notes.content) {
    case NotesFile::Content::Damaged:
        return LibraryState::Content::Damaged;
    case NotesFile::Content::Unreadable:
        return LibraryState::Content::Unreadable;
    default:
        return LibraryState::Content::Whole;
    }
}

bool HaveSameNotes(const DataFormat& a, const DataFormat& b)
{
    return std::equal(a.items.begin(), a.items.end(), b.items.begin(), b.items.end(),
                      [](const auto& itemA, const auto& itemB) { return itemA->notes == itemB->notes; });
}

/// Formats with other notes than they had count as changed by others.
void NoteOtherNotes(const Formats& ours, MergedFormats& merged)
{
    for (std::size_t i = 0; i < ours.size(); ++i)
        if (FormatMove& move = merged.moves[i]; move.to && !HaveSameNotes(*ours[i], *merged.formats[*move.to]))
            move.hasOtherItems = true;
}

} // namespace

CFormatStore::CFormatStore(const fs::path& path)
{
    const LibraryOpening opening = OpenLibrary(m_library, path);
    m_state = StateOf(m_library, opening);
    m_isDefaultOwn = m_library.formats.empty();
    EnsureFirstItem();
    m_base = CopyOf(m_library.formats);
    LoadNotes();
}

void CFormatStore::LoadNotes()
{
    NotesFile file = ReadNotes(NotesPathOf(m_library.path));
    m_state.notes = ContentOf(file);
    m_baseNotes = std::move(file.notes);
    ::SetNotes(m_library.formats, m_baseNotes);
    m_otherNotes = NotesOfOthers(m_baseNotes, m_library.formats);
}

/// All that the notes file is to hold.
LibraryNotes CFormatStore::Notes() const
{
    LibraryNotes notes = NotesOf(m_library.formats);
    const LibraryNotes others = NotesOfOthers(m_otherNotes, m_library.formats);
    notes.insert(others.begin(), others.end());
    return notes;
}

void CFormatStore::EnsureFirstItem()
{
    if (m_library.formats.empty())
        m_library.formats.push_back(std::make_unique<DataFormat>(DefaultFormat()));
    else if (DataFormat& first = *m_library.formats.front(); first.items.empty())
        first.insertItem(0, std::make_unique<DataItem>(DefaultItem())); // kept: shown, but itemCount is not raised
}

void CFormatStore::SetReadSettings(std::int32_t startAddress, std::int32_t rowCount, std::u16string_view filePattern)
{
    m_library.startAddress = startAddress;
    m_library.rowCount = rowCount;
    SetText(m_library.filePattern, filePattern);
}

bool CFormatStore::Save()
{
    const bool isSaved = m_library.isSavedAt(m_library.path) && AreNotesSavedAt(Notes(), NotesPathOf(m_library.path));
    if (!isSaved && !Write())
        return false;
    if (!AreSavedAlike(m_base, m_library.formats))
        m_base = CopyOf(m_library.formats);
    m_baseNotes = Notes();
    if (!m_baseNotes.empty())
        m_state.notes = LibraryState::Content::Whole; // damaged ones were copied and gave way
    m_isDefaultOwn = false;
    if (m_state.changes != LibraryState::Changes::Kept && MayBeWritten(m_library.path))
        m_state = {};
    return true;
}

bool CFormatStore::Write()
{
    const CLibraryLock lock(m_library.path);
    StandingLibrary standing = ReadStanding(m_library.path);
    Merge(standing);
    return ReplaceStanding(standing, m_library, Notes(), m_library.path, m_beforeChange);
}

void CFormatStore::TakeOthers()
{
    StandingLibrary standing = ReadStanding(m_library.path);
    Merge(standing);
}

/// A file that is missing, empty or not understood tells nothing of what others did. All that may fail comes before
/// anything is touched.
void CFormatStore::Merge(StandingLibrary& theirs)
{
    Formats& formats = theirs.library.formats;
    if (!theirs.IsUnderstood() || (m_isDefaultOwn && formats.empty()))
        return;
    const bool areNotesWhole = theirs.notes.content == NotesFile::Content::Whole;
    if (areNotesWhole)
        m_state.notes = LibraryState::Content::Whole;
    LibraryNotes notes = areNotesWhole ? theirs.notes.notes : m_baseNotes;
    if (AreSavedAlike(m_base, formats) && notes == m_baseNotes)
        return;
    ::SetNotes(formats, notes);
    ReplaceNotes(m_base, m_baseNotes);
    MergedFormats merged = MergeFormats(m_base, m_library.formats, formats);
    MergeNotes(m_base, m_library.formats, formats, merged.formats);
    NoteOtherNotes(m_library.formats, merged);
    m_otherNotes.merge(NotesOfOthers(notes, formats));
    m_otherNotes = NotesOfOthers(m_otherNotes, merged.formats);
    m_base = std::exchange(formats, {});
    m_baseNotes = std::move(notes);
    m_library.formats = std::move(merged.formats);
    m_moves = std::move(merged.moves);
    m_isDefaultOwn = false;
}

FormatChange CFormatStore::AppendFormat(DataFormat format)
{
    auto& formats = m_library.formats;
    FormatChange change{.index = formats.size(), .before = nullptr, .after = std::make_shared<DataFormat>(format)};
    formats.push_back(std::make_unique<DataFormat>(std::move(format)));
    m_isChanged = true;
    return change;
}

FormatChange CFormatStore::RemoveFormat(std::size_t format)
{
    const auto place = m_library.formats.begin() + static_cast<std::ptrdiff_t>(format);
    FormatChange change{.index = format, .before = std::move(*place), .after = nullptr};
    m_library.formats.erase(place);
    m_isChanged = true;
    return change;
}

FormatChange CFormatStore::DuplicateFormat(std::size_t format)
{
    DataFormat copy = *m_library.formats[format];
    SetText(copy.name, FreeName(m_library.formats, TextOf(copy.name)));
    return AppendFormat(std::move(copy));
}

FormatChange CFormatStore::RenameFormat(std::size_t format, std::u16string_view name)
{
    return ChangeFormat(format, [name](DataFormat& changed) { SetText(changed.name, name); });
}

FormatChange CFormatStore::InsertItem(std::size_t format, std::size_t position, const DataItem& item)
{
    return ChangeFormat(format, [&](DataFormat& changed) {
        changed.insertItem(position, std::make_unique<DataItem>(item));
        if (changed.itemCount < std::numeric_limits<std::int32_t>::max())
            ++changed.itemCount;
    });
}

FormatChange CFormatStore::ReplaceItem(std::size_t format, std::size_t position, const DataItem& item)
{
    return ChangeFormat(format, [&](DataFormat& changed) { *changed.items[position] = item; });
}

FormatChange CFormatStore::RemoveItem(std::size_t format, std::size_t position)
{
    return ChangeFormat(format, [&](DataFormat& changed) { changed.removeItem(position); });
}

FormatChange CFormatStore::MoveItem(std::size_t format, std::size_t from, std::size_t to)
{
    return ChangeFormat(format, [from, to](DataFormat& changed) {
        const auto place = [&changed](std::size_t index) {
            return changed.items.begin() + static_cast<std::ptrdiff_t>(index);
        };
        if (from < to)
            std::rotate(place(from), place(from + 1), place(to + 1));
        else
            std::rotate(place(to), place(from), place(from + 1));
    });
}

FormatChange CFormatStore::SetNotes(std::size_t format, std::size_t position, ItemNotes notes)
{
    return ChangeFormat(
        format, [&](DataFormat& changed) { changed.items[position]->notes = CSharedNotes(Tidied(std::move(notes))); });
}

FormatChange CFormatStore::RemoveAllItems(std::size_t format)
{
    return ChangeFormat(format, [](DataFormat& changed) { changed.clear(); });
}

FormatChange CFormatStore::CountAllItems(std::size_t format)
{
    return ChangeFormat(
        format, [](DataFormat& changed) { changed.itemCount = static_cast<std::int32_t>(changed.items.size()); });
}

void CFormatStore::SetUnicode(std::size_t format, std::size_t position, std::int32_t unicode)
{
    m_library.formats[format]->items[position]->unicode = unicode;
}

void CFormatStore::Apply(const FormatChange& change)
{
    Exchange(PlaceOf(m_library, change, ChangeSide::Before).value(), change.before.get(), change.after.get());
}

void CFormatStore::TakeBack(const FormatChange& change)
{
    Exchange(PlaceOf(m_library, change, ChangeSide::After).value(), change.after.get(), change.before.get());
}

/// All that may fail comes before the format itself is touched.
template <class Edit>
FormatChange CFormatStore::ChangeFormat(std::size_t format, Edit edit)
{
    std::unique_ptr<DataFormat>& place = m_library.formats[format];
    auto after = std::make_shared<DataFormat>(*place);
    edit(*after);
    auto fresh = std::make_unique<DataFormat>(*after);
    FormatChange change{.index = format, .before = std::move(place), .after = std::move(after)};
    place = std::move(fresh);
    m_isChanged = true;
    return change;
}

void CFormatStore::Exchange(std::size_t index, const DataFormat* old, const DataFormat* fresh)
{
    auto copy = fresh ? std::make_unique<DataFormat>(*fresh) : nullptr;
    const auto place = m_library.formats.begin() + static_cast<std::ptrdiff_t>(index);
    if (old && fresh)
        *place = std::move(copy);
    else if (fresh)
        m_library.formats.insert(place, std::move(copy));
    else if (old)
        m_library.formats.erase(place);
    m_isChanged = true;
}
