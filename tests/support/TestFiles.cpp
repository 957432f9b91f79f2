#include "tests/support/TestFiles.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>

namespace fs = std::filesystem;

CTempFolder::CTempFolder()
{
    std::random_device random;
    do
        m_path = fs::temp_directory_path() / ("vantor-test-" + std::to_string(random()));
    while (!fs::create_directory(m_path));
}

CTempFolder::~CTempFolder()
{
    std::error_code ignored;
    fs::remove_all(m_path, ignored);
}

Bytes ReadAll(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw std::runtime_error("cannot open " + path.string());
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    Bytes bytes(text.size());
    std::transform(text.begin(), text.end(), bytes.begin(), [](char c) { return static_cast<std::byte>(c); });
    return bytes;
}

void WriteAll(const fs::path& path, std::span<const std::byte> bytes)
{
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    for (const std::byte b : bytes)
        file.put(static_cast<char>(b));
    if (!file.flush())
        throw std::runtime_error("cannot write " + path.string());
}

void MakeReadOnly(const fs::path& path)
{
    fs::permissions(path, fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write,
                    fs::perm_options::remove);
    fs::permissions(path, fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read,
                    fs::perm_options::add);
}

void MakeOld(const fs::path& folder)
{
    for (const fs::directory_entry& entry : fs::directory_iterator(folder))
        fs::last_write_time(entry, entry.last_write_time() - std::chrono::hours(1));
}

Bytes BytesOf(std::initializer_list<int> values)
{
    Bytes bytes;
    for (const int value : values)
        bytes.push_back(static_cast<std::byte>(value));
    return bytes;
}

Bytes WordBytes(std::initializer_list<std::uint16_t> words)
{
    Bytes bytes;
    for (const std::uint16_t word : words) {
        bytes.push_back(static_cast<std::byte>(word & 0xFF));
        bytes.push_back(static_cast<std::byte>(word >> 8));
    }
    return bytes;
}

Bytes UnitBytes(std::u16string_view text)
{
    Bytes bytes;
    for (const char16_t unit : text) {
        bytes.push_back(static_cast<std::byte>(unit & 0xFF));
        bytes.push_back(static_cast<std::byte>(unit >> 8));
    }
    return bytes;
}

Bytes Utf16File(std::u16string_view text)
{
    Bytes bytes = UnitBytes(text);
    bytes.insert(bytes.begin(), {std::byte{0xFF}, std::byte{0xFE}});
    return bytes;
}

std::int32_t LoadLE32(std::span<const std::byte> bytes, std::size_t offset)
{
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i)
        value |= std::to_integer<std::uint32_t>(bytes[offset + i]) << (8 * i);
    return static_cast<std::int32_t>(value);
}
