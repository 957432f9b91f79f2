#pragma once

#include "disk/File.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <system_error>
#include <vector>

// The paged recipe file, ".erp" and ".frp". Word address a is the logical byte address A = 2a, 32 bits wide. With L,
// the length of the flat part, 1 MiB in an ".erp" and 64 KiB in a ".frp":
//
//   0 to L - 1    the bytes with A below L, flat
//   L             the directory: 1024 offsets of page tables, of 4 bytes each, little-endian; 0 for none
//   L + 4096 on   page tables (1024 offsets of pages each, likewise) and pages of 4096 bytes, in the order in which
//                 they came to be
//
// The byte at A, from L on, is byte A modulo 4096 of the page that entry A / 4096 modulo 1024 of a table gives, which
// entry A / 4194304 of the directory gives: A itself, not A - L.

/// The two kinds of paged file.
enum PagedKind : std::int32_t {
    kErp = 1, ///< a flat part of 1 MiB
    kFrp = 2, ///< a flat part of 64 KiB
};

/// Which places of a paged file hold a directory, a table or a page, 4096 bytes each, so that no two share a byte.
class CPagePlaces {
public:
    /// Takes the place that begins at `offset`, not 0; false when part of it is taken.
    bool Take(std::uint32_t offset);

private:
    std::vector<std::uint32_t> m_begins; ///< of the place that begins within each 4096 bytes of the file; 0: none
};

/// A paged file, open for reading and writing, with the directory and the tables it used at hand: any number of values
/// goes in and out with one open, and with the same bytes as one PagedWrite or PagedRead a value.
///
/// A directory or table that leads out of the file, into the flat part or to where something else lies is damaged: what
/// would go through it is refused. After a refusal or another failure the object is of no further use.
class CPagedFile {
public:
    /// Opens the existing file `path`; false, with no file open, when it cannot be both read and written. LastError
    /// tells why then.
    bool Open(const std::filesystem::path& path, PagedKind kind);
    std::error_code LastError() const { return m_file.LastError(); }

    /// Whether `byteCount` bytes from a word on have addresses, and no directory or table on the way to them is
    /// damaged. Changes nothing in the file.
    bool IsSound(std::int64_t wordAddress, std::uint64_t byteCount);

    /// Makes the file as long as writing `byteCount` bytes from a word on makes it, with all tables and pages on the
    /// way to them, so that the writing does not fail for want of room. No word changes: what is new reads as zero
    /// bytes, as it did before. False after a failure, also for a stretch that is not sound; the file is as it was
    /// then, unless the disk refuses to take the first entries back, and sound in any case.
    bool MakeRoom(std::int64_t wordAddress, std::uint64_t byteCount);

    /// What reading does before it reads. kept: in a file longer than its flat part, tables and pages are made where
    /// they are missing, as MakeRoom does; a shorter one only has to be sound.
    bool MakeRoomToRead(std::int64_t wordAddress, std::uint64_t byteCount);

    /// Writes `bytes` from a word on. The flat part grows up to its first byte, tables and pages are made where they
    /// are missing, before any word is written (MakeRoom). False after a failure; a stretch that is not sound is
    /// refused before anything is written.
    bool Write(std::int64_t wordAddress, std::span<const std::byte> bytes);

    /// Reads into `bytes` from a word on, after MakeRoomToRead; what the file does not hold reads as zero bytes. False
    /// after a failure.
    bool Read(std::int64_t wordAddress, std::span<std::byte> bytes);

    /// Hands what was written to the disk and closes. False when the disk refuses it.
    bool Close() { return m_file.Close(); }

private:
    struct Table { ///< the directory, or a page table
        std::uint32_t offset = 0;
        std::array<std::uint32_t, 1024> entries{};
        bool isChanged = false; ///< it has entries that the file does not have yet
    };

    std::size_t BytesInFlatPart(std::uint64_t first, std::size_t count) const;
    std::uint32_t PageOf(std::uint64_t address) const;
    bool LoadDirectory();
    bool LoadTable(std::size_t directoryIndex);
    std::unique_ptr<Table> ReadTable(std::uint32_t offset);
    bool TakesPlace(std::uint32_t offset);

    std::optional<std::uint64_t> EnterBlocks(std::uint64_t first, std::uint64_t end, std::uint64_t fileEnd);
    bool EnterTable(std::size_t directoryIndex, std::uint64_t& fileEnd);
    bool EnterBlock(Table& owner, std::size_t index, std::uint64_t& fileEnd);
    bool GrowTo(std::uint64_t oldEnd, std::uint64_t newEnd);
    bool ReserveRoom(std::uint64_t oldEnd, std::uint64_t newEnd);
    std::vector<Table*> ChangedTables();
    bool WriteTables(std::span<Table* const> tables);
    void TakeBack(std::span<Table* const> tables, std::uint64_t oldEnd);
    static std::unique_ptr<Table> MakeTable(std::uint32_t offset);

    CFile m_file;
    std::uint32_t m_flatBytes = 0;
    std::unique_ptr<Table> m_directory;
    std::vector<std::unique_ptr<Table>> m_tables; ///< by directory index; none where it was not used yet
    CPagePlaces m_places;
};

/// Writes `wordCount` words from `bytes`, which holds them, into the file at `path` from a word on: CPagedFile::Write.
/// False when the file cannot be opened, which is never created, or after another failure.
bool PagedWrite(const std::filesystem::path& path, std::int64_t wordAddress, std::size_t wordCount,
                std::span<const std::byte> bytes, PagedKind kind);

/// Reads `wordCount` words into `bytes`, which has room for them: CPagedFile::Read. False, with zero bytes, when the
/// file cannot be opened to read and to write; false after another failure too.
bool PagedRead(const std::filesystem::path& path, std::int64_t wordAddress, std::size_t wordCount,
               std::span<std::byte> bytes, PagedKind kind);
