#include "files/LibraryPlace.h"

#include "disk/File.h"
#include "model/FormatLibrary.h"

#include <string_view>
#include <system_error>

namespace fs = std::filesystem;

namespace {

/// Where the package keeps its sample library, seen from the programs' folder; empty in a build that keeps the library
/// beside the program.
constexpr std::string_view kSample = VANTOR_SAMPLE_LIBRARY;

/// By way of the library's own save, which shows another program that starts now all of the file or nothing.
void MakeFromSample(const fs::path& library, const fs::path& sample)
{
    FormatLibrary formats;
    if (formats.loadReadOnly(sample) <= 0)
        return;
    std::error_code fault;
    fs::create_directories(library.parent_path(), fault);
    formats.save(library);
}

} // namespace

fs::path ProgramLibraryPath(const fs::path& executable, CReporter& reporter)
{
    const fs::path dataFolder = kSample.empty() ? fs::path() : UserDataFolder();
    if (dataFolder.empty())
        return LibraryPathBeside(executable, reporter);
    return UserLibraryPath(dataFolder, executable.parent_path() / kSample);
}

fs::path UserLibraryPath(const fs::path& dataFolder, const fs::path& sample)
{
    fs::path library = dataFolder / "vantor" / FormatLibrary::kFileName;
    if (IsMissing(library))
        MakeFromSample(library, sample);
    return library;
}
