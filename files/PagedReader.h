#pragma once

#include "disk/File.h"
#include "files/PagedLayout.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <system_error>
#include <vector>

/// Which places of a paged file hold a directory, a table or a page, 4096 bytes each, so that no two share a byte.
class CPagePlaces {
public:
    /// Takes the place that begins at `offset`, not 0; false when part of it is taken.
    bool Take(std::uint32_t offset);

private:
    std::vector<std::uint32_t> m_begins; ///< of the place that begins within each 4096 bytes of the file; 0: none
};

/// A paged file, open for reading, with the directory and the tables it used at hand. Nothing here changes the file:
/// pages and tables that are missing read as zero bytes, and it need not be writable.
///
/// A directory or table that leads out of the file, into the flat part or to where something else lies is damaged: what
/// would go through it is refused. After a refusal or another failure the object is of no further use.
class CPagedReader {
public:
    CPagedReader() = default;
    virtual ~CPagedReader() = default;
    CPagedReader(const CPagedReader&) = delete;
    CPagedReader& operator=(const CPagedReader&) = delete;

    /// Opens the existing file `path`; false, with no file open, when it cannot be opened. LastError tells why then.
    bool Open(const std::filesystem::path& path, PagedKind kind);
    std::error_code LastError() const { return File().LastError(); }

    /// Whether `byteCount` bytes from a word on have addresses, and no directory or table on the way to them is
    /// damaged. Changes nothing in the file.
    bool IsSound(WordAddress wordAddress, std::uint64_t byteCount);

    /// The bytes from the first one up to the end of the last page that is there; of a file that ends within its flat
    /// part, up to its end. What is damaged is passed over. Nothing when the disk fails.
    std::optional<std::uint64_t> LogicalBytes();

    /// What has to be done before so many bytes are read, and is done by Read; here only asks whether they are sound.
    virtual bool PrepareToRead(WordAddress wordAddress, std::uint64_t byteCount);

    /// Reads into `bytes` from a word on; what the file does not hold reads as zero bytes. False after a failure.
    bool Read(WordAddress wordAddress, std::span<std::byte> bytes);

protected:
    struct Table { ///< the directory, or a page table
        std::uint32_t offset = 0;
        std::array<std::uint32_t, 1024> entries{};
        bool isChanged = false; ///< it has entries that the file does not have yet
    };

    /// For a file that is opened in another mode.
    explicit CPagedReader(CFile::Mode mode) : m_mode(mode) {}

    /// Goes on with `file`, which is open and outlives its use here, in the place of one that Open opens.
    void Borrow(CFile& file, PagedKind kind)
    {
        Begin(kind);
        m_own = CFile();
        m_pLent = &file;
    }
    bool IsLent() const { return m_pLent != nullptr; }

    CFile& File() { return m_pLent != nullptr ? *m_pLent : m_own; }
    const CFile& File() const { return m_pLent != nullptr ? *m_pLent : m_own; }

    ByteOffset FlatEnd() const { return ByteOffset(m_flatBytes); }
    std::size_t BytesInFlatPart(ByteOffset first, std::size_t count) const;
    std::uint32_t PageOf(ByteOffset address) const;
    bool LoadTable(std::size_t directoryIndex);

    std::uint32_t m_flatBytes = 0;
    std::unique_ptr<Table> m_directory;
    std::vector<std::unique_ptr<Table>> m_tables; ///< by directory index; none where it was not used yet
    CPagePlaces m_places;

private:
    void Begin(PagedKind kind);
    bool LoadDirectory();
    std::unique_ptr<Table> ReadTable(std::uint32_t offset);
    bool TakesPlace(std::uint32_t offset);

    CFile::Mode m_mode = CFile::Mode::Read;
    CFile m_own;
    CFile* m_pLent = nullptr;
};
