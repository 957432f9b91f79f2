#include "recovery/DataFolder.h"

#include "disk/File.h"

std::filesystem::path OwnDataFolder()
{
    const std::filesystem::path folder = UserDataFolder();
    return folder.empty() ? folder : folder / "vantor";
}
