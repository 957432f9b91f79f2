#include "recovery/Journal.h"

#include "disk/TemporaryFile.h"
#include "recovery/JournalLines.h"
#include "recovery/JournalPlace.h"
#include "recovery/JournalReader.h"

#include <new>
#include <string_view>
#include <utility>

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kMostKeptRoom = std::size_t{1} << 20; // for the next line
constexpr std::size_t kUsualCell = 28;                      // bytes in a line

/// A new file in `folder` that is held. One that another program cleared away before it was held is made again.
std::optional<CFile> MakeHeldFile(const fs::path& folder, fs::path& path, std::error_code& fault)
{
    constexpr int kMostTries = 10;
    for (int i = 0; i < kMostTries; ++i) {
        path = folder / TemporaryName();
        CFile file(path, CFile::Mode::CreatePrivate);
        fault = file.LastError();
        if (!file.IsOpen() && fault != std::errc::file_exists)
            return std::nullopt;
        if (file.IsOpen() && file.Hold() != Holder::AnotherFile && file.IsAt(path))
            return file;
    }
    fault = std::make_error_code(std::errc::device_or_resource_busy);
    return std::nullopt;
}

} // namespace

std::optional<CJournal> CJournal::Begin(const fs::path& dataFolder, const WorkHeader& header, std::error_code& fault)
try {
    fault = std::make_error_code(std::errc::no_such_file_or_directory);
    const fs::path folder = UnsavedFolder(dataFolder);
    if (dataFolder.empty() || !MakeFolder(folder, fault))
        return std::nullopt;
    CJournal journal;
    auto file = MakeHeldFile(folder, journal.m_path, fault);
    if (!file)
        return std::nullopt;
    journal.m_file = *std::move(file);
    journal.m_isOfWords = HasFileOfWords(header);

    journal.m_line.assign(kLinePrefix, ' ');
    AppendHeaderJson(header, journal.m_line);
    const fs::path path = NewJournalPath(folder, header.begun);
    const bool isWritten = journal.WriteLine();
    fault = journal.m_lastError;
    if (isWritten)
        fs::rename(journal.m_path, path, fault);
    if (!isWritten || fault) {
        std::error_code ignored;
        fs::remove(journal.m_path, ignored);
        return std::nullopt;
    }
    journal.m_path = path;
    journal.m_headerSize = journal.m_size;
    return journal;
} catch (const std::bad_alloc&) {
    fault = std::make_error_code(std::errc::not_enough_memory);
    return std::nullopt;
}

void CJournal::BeginCommand(std::size_t cells)
{
    BeginLine();
    m_line.reserve(m_line.size() + kUsualCell * cells);
    m_isFirstCell = true;
}

void CJournal::Add(const UnsavedCell& cell)
{
    if (!std::exchange(m_isFirstCell, false))
        m_line += ',';
    AppendCellJson(cell, m_isOfWords, m_line);
}

bool CJournal::EndCommand()
{
    return WriteCells();
}

bool CJournal::Append(std::span<const UnsavedCell> command)
try {
    if (command.empty())
        return true;
    BeginCommand(command.size());
    for (const UnsavedCell& cell : command)
        Add(cell);
    return EndCommand();
} catch (const std::bad_alloc&) {
    m_lastError = std::make_error_code(std::errc::not_enough_memory);
    return false;
}

/// Up to the cells of a command, with those that wait to be written.
void CJournal::BeginLine()
{
    m_line.assign(kLinePrefix, ' ');
    m_line.append(R"({"time":")").append(UtcStamp(UtcNow())).append(R"(","cells":[)");
    m_cellsBegin = m_line.size();
    m_line += m_waiting;
    if (!m_waiting.empty())
        m_line += ',';
}

/// Ends the line and writes it. Where that fails its cells wait.
bool CJournal::WriteCells()
{
    const std::size_t cellsEnd = m_line.size();
    m_line += "]}";
    const bool isWritten = WriteLine();
    if (isWritten)
        m_waiting.clear();
    else if (m_file.IsOpen() && m_line.size() <= kMostJournalLine)
        m_waiting.assign(m_line, m_cellsBegin, cellsEnd - m_cellsBegin);
    if (m_line.capacity() > kMostKeptRoom)
        m_line = {};
    return isWritten;
}

/// Hands the line to the system in one write. What is in the file of one that failed is cut off, or written over.
bool CJournal::WriteLine()
{
    m_isFlushed = false;
    const std::uint32_t checksum = ChecksumOf(std::string_view(m_line).substr(kLinePrefix), m_checksum);
    PutChecksum(checksum, m_line);
    m_line += '\n';
    if (m_line.size() > kMostJournalLine) {
        m_lastError = std::make_error_code(std::errc::file_too_large);
        return false;
    }
    if (!m_file.WriteAt(m_size, std::as_bytes(std::span(m_line)))) {
        m_lastError = m_file.LastError();
        m_file.CutTo(m_size);
        return false;
    }
    m_size += m_line.size();
    m_checksum = checksum;
    return true;
}

/// Cells that could not be written are written now.
bool CJournal::WriteWaiting()
try {
    if (m_waiting.empty())
        return true;
    BeginLine();
    m_line.pop_back(); // the comma after them
    return WriteCells();
} catch (const std::bad_alloc&) {
    m_lastError = std::make_error_code(std::errc::not_enough_memory);
    return false;
}

bool CJournal::Flush()
{
    if (m_isFlushed)
        return true;
    if (!WriteWaiting())
        return false;
    m_isFlushed = m_file.IsOpen() && m_file.Flush() && (m_hasName || FlushFolderOf(m_path));
    m_hasName = m_hasName || m_isFlushed;
    if (!m_isFlushed)
        m_lastError = m_file.LastError();
    return m_isFlushed;
}

/// Where it cannot be removed, nothing is left to be put back.
void CJournal::End()
{
    std::error_code fault;
    m_waiting.clear();
    if (m_file.IsAt(m_path) && !fs::remove(m_path, fault)) {
        m_file.CutTo(m_headerSize);
        m_file = CFile(); // a system may only remove what is not open
        fs::remove(m_path, fault);
    }
    m_file = CFile();
}

bool CJournal::Drop(UtcTime now)
{
    WriteWaiting();
    const JournalContent content = ReadJournal(m_file);
    if (content.kind == JournalContent::Kind::Readable && content.work.cells.empty()) {
        End();
        return true;
    }
    const bool isThere = m_file.IsAt(m_path);
    bool isDropped = isThere && MoveToDropped(m_path, now, m_lastError);
    m_file = CFile();
    if (isThere && !isDropped) // a system may only move what is not open
        isDropped = MoveToDropped(m_path, now, m_lastError);
    return isDropped;
}
