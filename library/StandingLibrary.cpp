#include "library/StandingLibrary.h"

#include "library/LibraryOriginal.h"

#include <utility>

namespace fs = std::filesystem;

namespace {

/// Notes that take the place of others while the library changes: in between, the file has both.
class CNotesReplacement {
public:
    CNotesReplacement(const NotesFile& standing, const LibraryNotes& notes, fs::path path)
        : m_standing(standing),
          m_notes(notes),
          m_path(std::move(path)),
          m_isNeeded(!(notes.empty() && !standing.IsUnderstood()) && !AreNotesSavedAt(notes, m_path))
    {
    }

    /// False when there is a file that cannot be kept, or no room for the notes.
    bool Begin(const BeforeFormatsChange& before) const
    {
        if (!m_isNeeded)
            return true;
        if (!m_standing.IsUnderstood() && !KeepOriginal(m_path))
            return false;
        if (before && !m_standing.notes.empty())
            before(m_path);
        LibraryNotes both = m_notes;
        both.insert(m_standing.notes.begin(), m_standing.notes.end());
        return WriteNotes(both, m_path);
    }

    bool Finish() const { return !m_isNeeded || WriteNotes(m_notes, m_path); }

private:
    const NotesFile& m_standing;
    const LibraryNotes& m_notes;
    fs::path m_path;
    bool m_isNeeded;
};

} // namespace

bool StandingLibrary::IsUnderstood() const
{
    return loaded > 0 && !IsOriginalAtRisk(library, loaded);
}

StandingLibrary ReadStanding(const fs::path& path)
{
    StandingLibrary standing;
    standing.loaded = standing.library.loadReadOnly(path);
    standing.notes = ReadNotes(NotesPathOf(path));
    SetNotes(standing.library.formats, standing.notes.notes);
    return standing;
}

bool ReplaceStanding(const StandingLibrary& standing, const FormatLibrary& library, const LibraryNotes& notes,
                     const fs::path& path, const BeforeFormatsChange& before)
{
    if (IsOriginalAtRisk(standing.library, standing.loaded) && !KeepOriginal(path))
        return false;
    const bool holdsSomething = standing.loaded != 0 && standing.library.versionsKnown;
    if (before && holdsSomething && !library.hasFormatsOf(path))
        before(path);
    CNotesReplacement replacement(standing.notes, notes, NotesPathOf(path));
    const bool areOldKept = replacement.Begin(before);
    return library.save(path) == 0 && areOldKept && replacement.Finish();
}
