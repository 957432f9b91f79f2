#include "library/LibraryOpening.h"

#include "disk/File.h"
#include "disk/TemporaryFile.h"

namespace fs = std::filesystem;

LibraryOpening OpenLibrary(FormatLibrary& library, const fs::path& path)
{
    const std::int64_t loaded = library.load(path);
    if (!library.versionsKnown)
        return {.loaded = library.loadReadOnly(path), .mayBeWritten = false};
    RemoveLeftOvers(LinkTarget(path).parent_path());
    return {.loaded = loaded, .mayBeWritten = true};
}

bool MayBeWritten(const fs::path& path)
{
    return CFile(path, CFile::Mode::ReadWrite).IsOpen();
}

bool IsDamaged(const FormatLibrary& library, const LibraryOpening& opening)
{
    return library.versionsKnown && opening.loaded < 0;
}
