#include "recovery/LibraryRestore.h"

#include "library/FormatLibrary.h"
#include "library/LibraryNotes.h"
#include "library/NotesFile.h"

#include <algorithm>

namespace fs = std::filesystem;

namespace {

LibraryNotes ItemsIn(const fs::path& path)
{
    FormatLibrary library;
    library.loadReadOnly(path);
    return ItemsOf(library.formats);
}

/// The notes as they were when the library's version was kept: a version of theirs is kept right before they change, so
/// it is the oldest one that is not older, or else what the file holds.
LibraryNotes NotesThen(const CVersionStore& store, const fs::path& path, std::string_view stamp)
{
    const auto versions = store.List(path); // the newest first
    const auto then = std::find_if(versions.rbegin(), versions.rend(),
                                   [stamp](const Version& version) { return version.stamp >= stamp; });
    return then == versions.rend() ? LibraryNotes{} : ReadNotes(store.PathOf(path, *then)).notes;
}

void GiveNotesBack(const CVersionStore& store, const fs::path& library, std::string_view stamp,
                   const LibraryNotes& itemsBefore)
{
    const fs::path path = NotesPathOf(library);
    NotesFile file = ReadNotes(path);
    if (!file.IsUnderstood())
        return;
    const LibraryNotes items = ItemsIn(library);
    bool areMore = false;
    for (const auto& [key, notes] : NotesThen(store, path, stamp))
        if (items.contains(key) && !itemsBefore.contains(key))
            areMore = file.notes.emplace(key, notes).second || areMore;
    if (!areMore)
        return;
    store.Keep(path, u"Restore");
    WriteNotes(file.notes, path); // the formats are back without them, too
}

} // namespace

VersionRestored RestoreLibrary(const CVersionStore& store, const fs::path& library, std::string_view stamp,
                               CReporter& reporter)
{
    const LibraryNotes itemsBefore = ItemsIn(library);
    const std::string wanted(stamp);
    VersionRestored restored = RestoreVersion(store, library, wanted, reporter);
    if (restored)
        GiveNotesBack(store, library, wanted, itemsBefore);
    return restored;
}
