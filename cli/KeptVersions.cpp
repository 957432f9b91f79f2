#include "cli/KeptVersions.h"

#include "recovery/DataFolder.h"

namespace fs = std::filesystem;

CVersionStore UsersVersions()
{
    return CVersionStore(OwnDataFolder());
}

void KeepVersionOf(const fs::path& path, std::u16string_view command, CReporter& reporter)
{
    TellUnlessKept(UsersVersions().Keep(path, command), path, reporter);
}

void TellUnlessKept(const VersionKept& kept, const fs::path& file, CReporter& reporter)
{
    if (const std::u16string text = NotKeptText(kept, file); !text.empty())
        reporter.ShowError(text);
}
