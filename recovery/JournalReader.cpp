#include "recovery/JournalReader.h"

#include "recovery/JournalLines.h"
#include "recovery/JournalSyntax.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <map>
#include <new>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

constexpr std::size_t kPieceBytes = std::size_t{256} << 10;

/// The lines of a journal, of which it keeps one, and its sums.
class CLineReader {
public:
    explicit CLineReader(const CFile& file) : m_file(file) {}

    /// The object of the next line, good until the next call; nothing at the end of those that are whole.
    std::optional<std::string_view> Next();

    bool HasFailed() const { return m_hasFailed; }  ///< the disk has
    bool IsAtEnd() const { return m_rest.empty(); } ///< of the file, once Next has given nothing

private:
    bool Fill();
    bool MayBeLine() const;
    std::size_t FindEnd();

    const CFile& m_file;
    std::uint64_t m_offset = 0; ///< of what is read next
    std::string m_bytes;
    std::string_view m_rest;  ///< of the bytes, what comes after the last line
    std::size_t m_looked = 0; ///< so much of it has no line feed
    std::uint32_t m_checksum = 0;
    bool m_hasFailed = false;
};

std::optional<std::string_view> CLineReader::Next()
{
    const std::size_t end = FindEnd();
    if (end == std::string_view::npos)
        return std::nullopt;
    const std::string_view line = m_rest.substr(0, end);
    if (line.size() < kLinePrefix)
        return std::nullopt;
    const std::string_view json = line.substr(kLinePrefix);
    const std::uint32_t checksum = ChecksumOf(json, m_checksum);
    std::string prefix(kLinePrefix, ' ');
    PutChecksum(checksum, prefix);
    if (!line.starts_with(prefix))
        return std::nullopt;
    m_checksum = checksum;
    m_rest.remove_prefix(end + 1);
    m_looked = 0;
    return json;
}

/// Where the line feed stands that ends the line; npos where none does.
std::size_t CLineReader::FindEnd()
{
    for (;;) {
        const std::size_t end = m_rest.find('\n', m_looked);
        if (end != std::string_view::npos)
            return end;
        m_looked = m_rest.size();
        if (!MayBeLine() || !Fill())
            return std::string_view::npos;
    }
}

/// What is no line, such as a gap that the disk left, is not looked through for its end.
bool CLineReader::MayBeLine() const
{
    const bool begins = m_rest.size() <= kLinePrefix || (m_rest[kLinePrefix - 1] == ' ' && m_rest[kLinePrefix] == '{');
    return begins && m_rest.size() < kMostJournalLine;
}

/// Reads more of the file; false at its end.
bool CLineReader::Fill()
{
    m_bytes.erase(0, m_bytes.size() - m_rest.size());
    const std::size_t before = m_bytes.size();
    m_bytes.resize(before + std::max(kPieceBytes, before)); // twice as much each time: a long line is moved seldom
    const auto count = m_file.ReadAt(m_offset, std::as_writable_bytes(std::span(m_bytes).subspan(before)));
    m_hasFailed = m_hasFailed || !count;
    m_bytes.resize(before + count.value_or(0));
    m_offset += count.value_or(0);
    m_rest = m_bytes;
    return count.value_or(0) > 0;
}

/// The last states of cells, in the order of their places.
using LastCells = std::map<CellPlace, UnsavedCell>;

void TakeCells(std::vector<UnsavedCell>& cells, LastCells& last)
{
    auto hint = last.end();
    for (UnsavedCell& cell : cells) {
        const CellPlace place = cell.place;
        hint = std::next(last.insert_or_assign(hint, place, std::move(cell)));
    }
}

std::vector<UnsavedCell> EditedOf(LastCells& cells)
{
    std::vector<UnsavedCell> edited;
    edited.reserve(cells.size());
    for (auto& [place, cell] : cells)
        if (!cell.state.IsUntouched())
            edited.push_back(std::move(cell));
    return edited;
}

void ReadCommands(CLineReader& lines, JournalContent& content)
{
    UnsavedWork& work = content.work;
    const CCommandReader commands(work.header);
    LastCells last;
    std::vector<UnsavedCell> cells;
    while (const auto line = lines.Next()) {
        UtcTime time;
        content.isCut = !commands.Read(*line, time, cells);
        if (content.isCut)
            break;
        work.lastEdit = time;
        TakeCells(cells, last);
    }
    content.isCut = content.isCut || !lines.IsAtEnd();
    work.cells = EditedOf(last);
}

JournalContent::Kind ReadAll(const CFile& file, JournalContent& content)
{
    using enum JournalContent::Kind;
    CLineReader lines(file);
    const auto first = lines.Next();
    if (!first)
        return lines.HasFailed() ? Unreadable : Damaged;
    const HeaderReading reading = HeaderFromJson(*first, content.work.header);
    if (reading != HeaderReading::Done)
        return reading == HeaderReading::Later ? Later : Damaged;
    content.work.lastEdit = content.work.header.begun;
    ReadCommands(lines, content);
    return lines.HasFailed() ? Unreadable : Readable;
}

} // namespace

JournalContent ReadJournal(const CFile& file)
try {
    JournalContent content;
    content.kind = ReadAll(file, content);
    return content;
} catch (const std::bad_alloc&) {
    return {};
}
