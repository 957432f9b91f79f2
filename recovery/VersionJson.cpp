#include "recovery/VersionJson.h"

#include "disk/File.h"

#include <cstddef>
#include <span>
#include <string>

nlohmann::json ReadSmallJson(const std::filesystem::path& path)
{
    constexpr std::size_t kMostBytes = std::size_t{64} << 10;
    nlohmann::json none = nlohmann::json::object();
    const CFile file(path, CFile::Mode::Read);
    const auto size = file.Size();
    if (!size || *size > kMostBytes || !file.IsOwn())
        return none;
    std::string text(static_cast<std::size_t>(*size), '\0');
    if (file.ReadAt(0, std::as_writable_bytes(std::span(text))) != text.size())
        return none;
    const nlohmann::json json = nlohmann::json::parse(text, nullptr, false);
    return json.is_object() ? json : none;
}
