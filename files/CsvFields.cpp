#include "files/CsvFields.h"

#include "disk/File.h"
#include "files/ByteBuffer.h"
#include "files/CsvRules.h"
#include "text/AnsiText.h"
#include "text/Utf16Bytes.h"

#include <algorithm>
#include <array>
#include <span>
#include <string>

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kPieceBytes = std::size_t{256} << 10;
constexpr std::size_t kMostReserved = std::size_t{32} << 20; // units; a longer text grows as it is read

/// Finds lines and fields in a text that arrives in pieces, and puts them into a table.
class CFieldSplitter {
public:
    CFieldSplitter(const CsvTextForm& form, std::size_t lines, std::size_t columns, CFieldTable& fields)
        : m_form(form),
          m_lines(lines),
          m_columns(columns),
          m_fields(fields)
    {
    }

    /// The text that is not split yet, for the next piece to be appended to.
    std::u16string& Text() { return m_text; }

    bool HasAllLines() const { return m_ended >= m_lines; }

    /// Takes off the text the fields that have an end.
    void Split()
    {
        const std::u16string_view text = m_text;
        std::size_t begin = 0;
        std::size_t end = NextMark(text, m_searched);
        for (; end < text.size() && !HasAllLines(); end = NextMark(text, begin)) {
            const auto field = text.substr(begin, end - begin);
            if (text[end] == m_form.separator)
                EndField(field);
            else
                EndLine(field);
            begin = end + 1;
        }
        m_text.erase(0, begin);
        m_searched = m_text.size();
    }

    /// The text is complete: what has no end yet is the last line.
    void Finish()
    {
        if ((!m_text.empty() || m_column > 0) && !HasAllLines())
            EndLine(m_text);
    }

private:
    /// The next separator or line feed; the end of the text when there is none.
    std::size_t NextMark(std::u16string_view text, std::size_t pos) const
    {
        const char16_t separator = m_form.separator;
        const char16_t highest = std::max(separator, u'\n'); // nearly all characters are above it
        while (pos < text.size() && (text[pos] > highest || (text[pos] != separator && text[pos] != u'\n')))
            ++pos;
        return pos;
    }

    void EndField(std::u16string_view field)
    {
        if (m_column < m_columns)
            m_fields.AddField(m_form.stripsQuotes ? WithoutQuotes(field) : field);
        ++m_column;
    }

    void EndLine(std::u16string_view field)
    {
        while (field.ends_with(u'\r'))
            field.remove_suffix(1);
        if (m_column < m_columns && !field.empty()) // an empty rest after a separator is no field
            m_fields.AddField(field);               // kept: with its quotes
        m_fields.EndLine();
        ++m_ended;
        m_column = 0;
    }

    const CsvTextForm m_form;
    const std::size_t m_lines;
    const std::size_t m_columns;
    CFieldTable& m_fields;
    std::u16string m_text;
    std::size_t m_searched = 0; ///< so much of the text has no mark
    std::size_t m_column = 0;
    std::size_t m_ended = 0; ///< lines
};

/// Cuts ANSI bytes into lines as a text stream with a small buffer does, and appends them to a text with a line feed
/// after each.
class CAnsiLines {
public:
    explicit CAnsiLines(std::u16string& text) : m_text(text) {}

    void Append(std::span<const std::byte> bytes)
    {
        for (const std::byte byte : bytes)
            Put(static_cast<char>(byte));
    }

    /// A return that is held would go off the end of the line anyway.
    void Finish()
    {
        if (!m_line.empty())
            EndLine();
    }

private:
    void Put(char c)
    {
        if (m_isReturnHeld && c != '\n') // before a line feed it goes without being counted
            PutInLine('\r');
        m_isReturnHeld = c == '\r';
        if (c == '\n')
            EndLine();
        else if (c != '\r')
            PutInLine(c);
    }

    void PutInLine(char c)
    {
        m_line += c;
        if (m_line.size() == kLongestAnsiLine) // kept: a line feed that comes now ends an empty line
            EndLine();
    }

    void EndLine()
    {
        AppendFromAnsi(m_line, m_text);
        m_text += u'\n';
        m_line.clear();
    }

    std::u16string& m_text;
    std::string m_line;
    bool m_isReturnHeld = false;
};

/// Appends the units that `bytes` hold, low byte first; half a unit at the end does not count.
void AppendUnits(std::span<const std::byte> bytes, std::u16string& text)
{
    const std::size_t before = text.size();
    text.resize(before + bytes.size() / 2);
    const auto units = std::span(text).subspan(before);
    std::copy_n(bytes.begin(), units.size_bytes(), std::as_writable_bytes(units).begin());
    SwapUnlessLowByteFirst(units);
}

/// Null when the file cannot be read.
const CsvTextForm* FormOf(const CFile& file)
{
    std::array<std::byte, 2> mark{};
    return file.ReadAt(0, mark) ? &CsvFormOf(mark[0], mark[1]) : nullptr;
}

/// Hands the bytes of `file` from `pos` up to its end to `take`, piece by piece, as long as `isWanted` says so.
template <class IsWanted, class Take>
Outcome ReadPieces(const CFile& file, std::uint64_t pos, CProgress& progress, IsWanted isWanted, Take take)
{
    const auto size = file.Size();
    if (!size)
        return Outcome::Failed;
    CByteBuffer buffer(kPieceBytes);
    for (std::size_t last = kPieceBytes; last == kPieceBytes && isWanted();) {
        const auto arrived = file.ReadAt(pos, buffer.Bytes());
        if (!arrived)
            return Outcome::Failed;
        last = *arrived;
        pos += last;
        take(std::span<const std::byte>(buffer.Bytes().first(last)));
        if (!progress.Advance(std::min(pos, *size), *size))
            return Outcome::GivenUp;
    }
    return Outcome::Done;
}

Outcome ReadUtf16(const CFile& file, CFieldSplitter& splitter, CProgress& progress)
{
    return ReadPieces(
        file, kUtf16Csv.begin, progress, [&] { return !splitter.HasAllLines(); },
        [&](std::span<const std::byte> bytes) {
            AppendUnits(bytes, splitter.Text());
            splitter.Split();
        });
}

Outcome ReadAnsi(const CFile& file, CFieldSplitter& splitter, CProgress& progress)
{
    CAnsiLines ansiLines(splitter.Text());
    const Outcome outcome = ReadPieces(
        file, 0, progress, [&] { return !splitter.HasAllLines(); },
        [&](std::span<const std::byte> bytes) {
            ansiLines.Append(bytes);
            splitter.Split();
        });
    ansiLines.Finish();
    splitter.Split();
    return outcome;
}

Outcome Split(const CFile& file, std::size_t lines, std::size_t columns, CFieldTable& fields, CProgress& progress)
{
    const CsvTextForm* const form = FormOf(file);
    if (form == nullptr)
        return Outcome::Failed;
    CFieldSplitter splitter(*form, lines, columns, fields);
    const Outcome outcome = form->isUtf16 ? ReadUtf16(file, splitter, progress) : ReadAnsi(file, splitter, progress);
    if (outcome == Outcome::Done)
        splitter.Finish();
    return outcome;
}

} // namespace

Outcome ReadCsvFields(const fs::path& path, std::size_t lines, std::size_t columns, CFieldTable& fields,
                      CProgress& progress)
{
    return WithinMemory([&] {
        const CFile file(path, CFile::Mode::Read);
        const auto size = file.Size();
        if (!size)
            return Outcome::Failed;
        const auto characters = static_cast<std::size_t>(std::min<std::uint64_t>(*size, kMostReserved));
        fields.Reserve(characters, std::min(lines * columns, characters / 4));
        return Split(file, lines, columns, fields, progress);
    });
}
