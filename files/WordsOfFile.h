#pragma once

#include "disk/File.h"
#include "files/FileType.h"
#include "files/PagedReader.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>

/// The words of a flat or paged file as bytes, of a paged one by their logical addresses, read from where one likes.
/// Never writes.
class CWordsOfFile {
public:
    /// Of the file at `path`, of a type that has words.
    CWordsOfFile(FileType type, const std::filesystem::path& path);

    /// The bytes that the file holds (LogicalBytes in RecipeFile.h); nothing when it cannot be read.
    std::optional<std::uint64_t> Count() const { return m_count; }

    /// Whether so many bytes from `offset` on, which is even, have addresses, and nothing on the way to them is
    /// damaged.
    bool IsSound(std::uint64_t offset, std::uint64_t byteCount);

    /// Whether that holds for all addresses: else some words of the file cannot be had, nor counted.
    bool IsUndamaged() { return IsSound(0, std::uint64_t{1} << 32); }

    /// Fills `bytes` from `offset`, which is even; what lies behind the end reads as zeros. False after a failure.
    bool Read(std::uint64_t offset, std::span<std::byte> bytes);

private:
    bool m_isPaged;
    CFile m_file;
    CPagedReader m_pages;
    std::optional<std::uint64_t> m_count;
};
