#include "files/CsvCutter.h"

#include "text/AnsiText.h"
#include "text/Utf16Bytes.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::size_t kPieceBytes = std::size_t{256} << 10;

/// The next TAB or line feed; the end of the text when there is none.
std::size_t NextMark(std::u16string_view text, std::size_t pos)
{
    while (pos < text.size() && (text[pos] > u'\n' || (text[pos] != u'\t' && text[pos] != u'\n')))
        ++pos;
    return pos;
}

std::size_t TrailingReturns(std::u16string_view text)
{
    const std::size_t last = text.find_last_not_of(u'\r');
    return text.size() - (last == std::u16string_view::npos ? 0 : last + 1);
}

} // namespace

CCsvCutter::CCsvCutter(const CsvTextForm& form) : m_form(form), m_begin(form.begin), m_endOffset(form.begin) {}

void CCsvCutter::Append(std::span<const std::byte> bytes, CCsvRawTaker& taker)
{
    if (m_form.isUtf16) {
        AppendUnits(bytes);
        CutText(taker);
        return;
    }
    for (const std::byte byte : bytes)
        PutAnsi(static_cast<char>(byte), taker);
}

void CCsvCutter::Finish(CCsvRawTaker& taker)
{
    const std::size_t rest = m_form.isUtf16 ? m_text.size() : m_ansiLine.size();
    m_endOffset = m_begin + rest * m_form.unitSize;
    m_needsLineEnd = rest > 0 || m_column > 0;
    if (!m_needsLineEnd)
        return;
    if (m_form.isUtf16)
        HandOut(m_text, m_begin, rest * m_form.unitSize, CsvRawField::End::File, taker);
    else
        EndAnsiLine(CsvRawField::End::File, taker);
}

void CCsvCutter::AppendUnits(std::span<const std::byte> bytes)
{
    const std::size_t before = m_text.size();
    m_text.resize(before + bytes.size() / 2);
    const auto units = std::span(m_text).subspan(before);
    std::copy_n(bytes.begin(), units.size_bytes(), std::as_writable_bytes(units).begin());
    SwapUnlessLowByteFirst(units);
}

void CCsvCutter::CutText(CCsvRawTaker& taker)
{
    using End = CsvRawField::End;
    const std::u16string_view text = m_text;
    std::size_t begin = 0;
    for (std::size_t end = NextMark(text, m_searched); end < text.size(); end = NextMark(text, begin)) {
        const End kind = text[end] == m_form.separator ? End::Separator : End::LineFeed;
        HandOut(text.substr(begin, end - begin), m_begin + 2 * begin, 2 * (end - begin), kind, taker);
        begin = end + 1;
    }
    m_text.erase(0, begin);
    m_begin += 2 * begin;
    m_searched = m_text.size();
}

/// As a text stream does: a return goes with the line feed that comes after it, and is not counted.
void CCsvCutter::PutAnsi(char c, CCsvRawTaker& taker)
{
    const bool endsWithReturn = m_isReturnHeld && c == '\n';
    if (m_isReturnHeld && c != '\n')
        PutInAnsiLine('\r', taker);
    m_isReturnHeld = c == '\r';
    if (c == '\n') {
        EndAnsiLine(CsvRawField::End::LineFeed, taker);
        m_begin += endsWithReturn ? 2 : 1;
    } else if (c != '\r') {
        PutInAnsiLine(c, taker);
    }
}

void CCsvCutter::PutInAnsiLine(char c, CCsvRawTaker& taker)
{
    m_ansiLine += c;
    if (m_ansiLine.size() == kLongestAnsiLine)
        EndAnsiLine(CsvRawField::End::Length, taker);
}

void CCsvCutter::EndAnsiLine(CsvRawField::End end, CCsvRawTaker& taker)
{
    const std::string_view line = m_ansiLine;
    std::size_t begin = 0;
    for (bool isLast = false; !isLast;) {
        const std::size_t separator = line.find(static_cast<char>(m_form.separator), begin);
        isLast = separator == std::string_view::npos;
        const std::string_view field = line.substr(begin, isLast ? separator : separator - begin);
        m_text.clear();
        AppendFromAnsi(field, m_text);
        HandOut(m_text, m_begin + begin, field.size(), isLast ? end : CsvRawField::End::Separator, taker);
        begin += field.size() + 1;
    }
    m_begin += line.size();
    m_ansiLine.clear();
}

void CCsvCutter::HandOut(std::u16string_view text, std::uint64_t offset, std::uint64_t length, CsvRawField::End end,
                         CCsvRawTaker& taker)
{
    CsvRawField field{m_line, m_column, offset, length, text, end};
    ++m_column;
    if (field.EndsLine()) {
        field.returns = TrailingReturns(text);
        field.raw.remove_suffix(field.returns);
        field.length -= field.returns * m_form.unitSize;
        ++m_line;
        m_column = 0;
    }
    taker.Take(field);
}

CCsvFileCutter::CCsvFileCutter(const CFile& file) : CCsvFileCutter(file, MarkOf(file)) {}

CCsvFileCutter::CCsvFileCutter(const CFile& file, std::optional<Mark> mark)
    : m_file(file),
      m_cutter(CsvFormOf(mark.value_or(Mark{}))),
      m_buffer(kPieceBytes),
      m_hasWholeMark(mark == Mark{std::byte{0xFF}, std::byte{0xFE}}),
      m_position(m_cutter.Form().begin)
{
    const auto size = file.Size();
    m_hasFailed = !mark || !size;
    m_size = size.value_or(0);
}

/// Zeros stand for bytes that the file does not have; nothing when it cannot be read.
std::optional<CCsvFileCutter::Mark> CCsvFileCutter::MarkOf(const CFile& file)
{
    Mark mark{};
    return file.ReadAt(0, mark) ? std::optional(mark) : std::nullopt;
}

bool CCsvFileCutter::Continue(CCsvRawTaker& taker)
{
    if (m_isDone || m_hasFailed)
        return false;
    const auto arrived = m_file.ReadAt(m_position, m_buffer.Bytes());
    m_hasFailed = !arrived;
    if (m_hasFailed)
        return false;
    m_position += *arrived;
    m_cutter.Append(m_buffer.Bytes().first(*arrived), taker);
    m_isDone = *arrived < kPieceBytes;
    if (m_isDone)
        m_cutter.Finish(taker);
    return !m_isDone;
}

CCsvCutter CutCsv(std::span<const std::byte> bytes, CCsvRawTaker& taker)
{
    CCsvCutter cutter(CsvFormOf(bytes));
    for (std::size_t pos = cutter.Form().begin; pos < bytes.size(); pos += kPieceBytes)
        cutter.Append(bytes.subspan(pos, std::min(kPieceBytes, bytes.size() - pos)), taker);
    cutter.Finish(taker);
    return cutter;
}

const CsvTextForm& CsvFormOf(std::span<const std::byte> bytes)
{
    return CsvFormOf(bytes.empty() ? std::byte{0} : bytes[0], bytes.size() < 2 ? std::byte{0} : bytes[1]);
}

CCsvShownFields::CCsvShownFields(const CsvTextForm& form, std::size_t lines, std::size_t columns, CFieldTable& fields)
    : m_form(form),
      m_lines(lines),
      m_columns(columns),
      m_fields(fields)
{
}

void CCsvShownFields::Take(const CsvRawField& field)
{
    if (field.line >= m_lines)
        return;
    if (field.column < m_columns && field.IsField())
        m_fields.AddField(field.Shown(m_form));
    if (field.EndsLine())
        m_fields.EndLine();
}
