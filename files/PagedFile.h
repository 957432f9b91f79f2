#pragma once

#include "files/PagedReader.h"
#include "files/WriteTarget.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <vector>

/// A paged file, open for reading and writing: any number of values goes in and out with one open, and with the same
/// bytes as one PagedWrite or PagedRead a value. Open fails when the file cannot be both read and written.
class CPagedFile final : public CPagedReader {
public:
    CPagedFile() : CPagedReader(CFile::Mode::ReadWrite) {}

    /// Makes the file as long as writing `byteCount` bytes from a word on makes it, with all tables and pages on the
    /// way to them, so that the writing does not fail for want of room. No word changes: what is new reads as zero
    /// bytes, as it did before. False after a failure, also for a stretch that is not sound; the file is as it was
    /// then, unless the disk refuses to take the first entries back, and sound in any case.
    bool MakeRoom(WordAddress wordAddress, std::uint64_t byteCount);

    struct Stretch {
        WordAddress first{0};
        std::uint64_t byteCount = 0;
    };

    /// The same for several stretches, at once: there is room for all of them or for none.
    bool MakeRoom(std::span<const Stretch> stretches);

    /// kept: in a file longer than its flat part, tables and pages are made where they are missing, as MakeRoom does; a
    /// shorter one only has to be sound.
    bool PrepareToRead(WordAddress wordAddress, std::uint64_t byteCount) override;

    /// Writes `bytes` from a word on. The flat part grows up to its first byte, tables and pages are made where they
    /// are missing, before any word is written (MakeRoom). False after a failure; a stretch that is not sound is
    /// refused before anything is written.
    bool Write(WordAddress wordAddress, std::span<const std::byte> bytes);

    /// Opens the file of `target`: as Open, or through what holds it.
    bool OpenTarget(const WriteTarget& target, PagedKind kind);

    /// Hands what was written to the disk and closes, but for a file that is held. False when the disk refuses it.
    bool Close() { return IsLent() ? File().Flush() : File().Close(); }

private:
    std::optional<std::uint64_t> EnterBlocks(ByteOffset first, ByteOffset end, std::uint64_t fileEnd);
    bool EnterTable(std::size_t directoryIndex, std::uint64_t& fileEnd);
    bool EnterBlock(Table& owner, std::size_t index, std::uint64_t& fileEnd);
    bool GrowTo(std::uint64_t oldEnd, std::uint64_t newEnd);
    bool ReserveRoom(std::uint64_t oldEnd, std::uint64_t newEnd);
    std::vector<Table*> ChangedTables();
    bool WriteTables(std::span<Table* const> tables);
    void TakeBack(std::span<Table* const> tables, std::uint64_t oldEnd);
    static std::unique_ptr<Table> MakeTable(std::uint32_t offset);
};

/// Writes `wordCount` words from `bytes`, which holds them, into the file at `path` from a word on: CPagedFile::Write.
/// False when the file cannot be opened, which is never created, or after another failure.
bool PagedWrite(const std::filesystem::path& path, WordAddress wordAddress, std::size_t wordCount,
                std::span<const std::byte> bytes, PagedKind kind);

/// Reads `wordCount` words into `bytes`, which has room for them: CPagedReader::Read of a CPagedFile. False, with zero
/// bytes, when the file cannot be opened to read and to write; false after another failure too.
bool PagedRead(const std::filesystem::path& path, WordAddress wordAddress, std::size_t wordCount,
               std::span<std::byte> bytes, PagedKind kind);
