#pragma once

#include "files/FileType.h"
#include "files/WordsOfFile.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <span>
#include <vector>

/// The words of something as bytes, of a paged file by their logical addresses. What lies behind the end reads as
/// zeros. Nothing here writes a file.
class CWordBytes {
public:
    virtual ~CWordBytes() = default;

    virtual std::uint64_t Count() const = 0;

    /// Fills `bytes` from `offset`, which is even. False after a failure.
    virtual bool Read(std::uint64_t offset, std::span<std::byte> bytes) = 0;
};

/// Those of a file, read in pieces that serve neighbours, too.
class CFileWords final : public CWordBytes {
public:
    /// Of the file at `path`, of a type that has words.
    CFileWords(FileType type, const std::filesystem::path& path) : m_isPaged(IsPaged(type)), m_file(type, path) {}

    bool IsOpen() const { return m_file.Count().has_value(); }
    bool IsSound(std::uint64_t offset, std::uint64_t byteCount) { return m_file.IsSound(offset, byteCount); }
    bool IsUndamaged() { return m_file.IsUndamaged(); }
    std::uint64_t Count() const override { return m_file.Count().value_or(0); }
    bool Read(std::uint64_t offset, std::span<std::byte> bytes) override;

private:
    bool m_isPaged;
    CWordsOfFile m_file;
    std::vector<std::byte> m_piece;
    std::optional<std::uint64_t> m_pieceBegin; ///< where the piece lies, once there is one
};

/// Those of something else, some of them changed. Throws std::bad_alloc.
class CChangedWords final : public CWordBytes {
public:
    static constexpr std::size_t kBlockBytes = 4096;

    /// `base` must outlive it.
    explicit CChangedWords(CWordBytes& base) : m_base(base), m_count(base.Count()) {}

    std::uint64_t Count() const override { return m_count; }
    bool Read(std::uint64_t offset, std::span<std::byte> bytes) override;

    void SetCount(std::uint64_t count) { m_count = count; }

    /// False after a failure.
    bool Write(std::uint64_t offset, std::span<const std::byte> bytes);

    /// Where blocks begin in which something was written, in ascending order.
    std::vector<std::uint64_t> ChangedBlocks() const;

private:
    using Block = std::array<std::byte, kBlockBytes>;

    Block* BlockOf(std::uint64_t offset);

    CWordBytes& m_base;
    std::uint64_t m_count;
    std::map<std::uint64_t, Block> m_blocks; ///< by the offset of their first byte
};
