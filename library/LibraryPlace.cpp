#include "library/LibraryPlace.h"

#include "disk/File.h"
#include "library/FormatLibrary.h"
#include "library/LibraryLock.h"
#include "library/NotesFile.h"

#include <string_view>
#include <system_error>

namespace fs = std::filesystem;

namespace {

/// Where the package keeps its sample library, seen from the programs' folder; empty in a build that keeps the library
/// beside the program.
constexpr std::string_view kSample{VANTOR_SAMPLE_LIBRARY}; // NOLINT(readability-redundant-string-init): the build says

/// Notes that are there already, of formats that the user may bring back, stay; so does a file that is not understood.
void AddNotes(const fs::path& path, const fs::path& samples)
{
    NotesFile notes = ReadNotes(path);
    if (!notes.IsUnderstood())
        return;
    notes.notes.merge(ReadNotes(samples).notes);
    WriteNotes(notes.notes, path);
}

/// By way of the library's own save, which shows another program that starts now all of the file or nothing.
void MakeFromSample(const fs::path& library, const fs::path& sample)
{
    FormatLibrary formats;
    if (formats.loadReadOnly(sample) <= 0)
        return;
    std::error_code fault;
    fs::create_directories(library.parent_path(), fault);
    const CLibraryLock lock(library);
    if (!IsMissing(library)) // another program just made it
        return;
    AddNotes(NotesPathOf(library), NotesPathOf(sample));
    formats.save(library);
}

fs::path LibraryIn(const fs::path& dataFolder)
{
    return dataFolder / "vantor" / FormatLibrary::kFileName;
}

/// What `ofUser` makes of the user's data folder and the sample; the library beside the program where that is the one.
template <class OfUser>
fs::path LibraryOf(const fs::path& executable, CReporter& reporter, OfUser ofUser)
{
    const fs::path dataFolder = kSample.empty() ? fs::path() : UserDataFolder();
    if (dataFolder.empty())
        return LibraryPathBeside(executable, reporter);
    return ofUser(dataFolder, executable.parent_path() / kSample);
}

} // namespace

fs::path ProgramLibraryPath(const fs::path& executable, CReporter& reporter)
{
    return LibraryOf(executable, reporter, UserLibraryPath);
}

fs::path ProgramLibraryToRead(const fs::path& executable, CReporter& reporter)
{
    return LibraryOf(executable, reporter, UserLibraryToRead);
}

fs::path UserLibraryPath(const fs::path& dataFolder, const fs::path& sample)
{
    fs::path library = LibraryIn(dataFolder);
    if (IsMissing(library))
        MakeFromSample(library, sample);
    return library;
}

fs::path UserLibraryToRead(const fs::path& dataFolder, const fs::path& sample)
{
    fs::path library = LibraryIn(dataFolder);
    return IsMissing(library) && !IsMissing(sample) ? sample : library;
}
