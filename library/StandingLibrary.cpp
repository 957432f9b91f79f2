#include "library/StandingLibrary.h"

#include "library/LibraryOriginal.h"

namespace fs = std::filesystem;

bool StandingLibrary::IsUnderstood() const
{
    return loaded > 0 && !IsOriginalAtRisk(library, loaded);
}

StandingLibrary ReadStanding(const fs::path& path)
{
    StandingLibrary standing;
    standing.loaded = standing.library.loadReadOnly(path);
    return standing;
}

bool ReplaceStanding(const StandingLibrary& standing, const FormatLibrary& library, const fs::path& path,
                     const BeforeFormatsChange& before)
{
    if (IsOriginalAtRisk(standing.library, standing.loaded) && !KeepOriginal(path))
        return false;
    const bool holdsSomething = standing.loaded != 0 && standing.library.versionsKnown;
    if (before && holdsSomething && !library.hasFormatsOf(path))
        before(path);
    return library.save(path) == 0;
}
