#include "recovery/VersionSetting.h"

#include "disk/File.h"
#include "disk/Replacement.h"
#include "recovery/VersionJson.h"

#include <cstdlib>
#include <span>
#include <string_view>
#include <system_error>

namespace fs = std::filesystem;

namespace {

constexpr const char* kSettingFile = "versions.json";

} // namespace

bool AreVersionsSwitchedOff()
{
    const char* const value = std::getenv("VANTOR_VERSIONS");
    return value != nullptr && std::string_view(value) == "off";
}

bool AreVersionsKept(const fs::path& dataFolder)
{
    if (AreVersionsSwitchedOff())
        return false;
    if (dataFolder.empty())
        return true;
    const nlohmann::json setting = ReadSmallJson(dataFolder / kSettingFile);
    const auto keep = setting.find("keep");
    return keep == setting.end() || !keep->is_boolean() || keep->get<bool>();
}

bool SetVersionsKept(const fs::path& dataFolder, bool areKept)
{
    std::error_code fault;
    if (dataFolder.empty() || (!fs::is_directory(dataFolder, fault) && !MakePrivateFolder(dataFolder)))
        return false;
    CReplacement file(dataFolder / kSettingFile);
    const std::string_view text = areKept ? "{\"keep\":true}\n" : "{\"keep\":false}\n";
    return file.IsOpen() && file.Append(std::as_bytes(std::span(text))) && file.Finish();
}
