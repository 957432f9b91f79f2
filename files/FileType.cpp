#include "files/FileType.h"

#include <cstddef>

namespace fs = std::filesystem;

namespace {

/// The part of the file name after its last dot, its ASCII letters in lower case.
fs::path::string_type LowerExtension(const fs::path& path)
{
    fs::path::string_type name = path.filename().native();
    const std::size_t point = name.rfind(fs::path::value_type{'.'});
    if (point == fs::path::string_type::npos)
        return {};
    name.erase(0, point + 1);
    for (auto& letter : name)
        if (letter >= 'A' && letter <= 'Z')
            letter = static_cast<fs::path::value_type>(letter - 'A' + 'a');
    return name;
}

} // namespace

std::optional<FileType> FileTypeOf(const fs::path& path)
{
    const fs::path extension = LowerExtension(path);
    if (extension == "rcp")
        return FileType::Rcp;
    if (extension == "csv")
        return FileType::Csv;
    if (extension == "erp")
        return FileType::Erp;
    if (extension == "frp")
        return FileType::Frp;
    return std::nullopt;
}
