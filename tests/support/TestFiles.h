#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

using Bytes = std::vector<std::byte>;

/// A folder of one test's own, removed with all it holds when the object goes.
class CTempFolder {
public:
    CTempFolder();
    ~CTempFolder();
    CTempFolder(const CTempFolder&) = delete;
    CTempFolder& operator=(const CTempFolder&) = delete;

    const std::filesystem::path& Path() const { return m_path; }
    std::filesystem::path operator/(const std::filesystem::path& name) const { return m_path / name; }

private:
    std::filesystem::path m_path;
};

Bytes ReadAll(const std::filesystem::path& path); ///< the whole file; throws when it cannot
void WriteAll(const std::filesystem::path& path, std::span<const std::byte> bytes);

/// Makes a file or folder one that everybody may read and nobody may write.
void MakeReadOnly(const std::filesystem::path& path);

/// Makes the files of a folder an hour old, so that each later write shows by its time, whatever the clock does.
void MakeOld(const std::filesystem::path& folder);

Bytes BytesOf(std::initializer_list<int> values);            ///< each value one byte
Bytes WordBytes(std::initializer_list<std::uint16_t> words); ///< each word two bytes, low byte first
Bytes UnitBytes(std::u16string_view text);                   ///< each unit two bytes, low byte first
Bytes Utf16File(std::u16string_view text);                   ///< FF FE and the units of `text`
std::int32_t LoadLE32(std::span<const std::byte> bytes, std::size_t offset);
