#include "files/StretchCoding.h"

#include "model/LittleEndian.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace {

constexpr std::size_t kCodedBetweenReports = std::size_t{128} << 10; // bytes: 64K values of one word

/// The bytes of a whole number; 0 for any other type.
std::size_t WholeNumberBytes(DataType type)
{
    return IsDecimalInteger(type) || IsHexadecimal(type) ? 2 * WordsOfType(type) : 0;
}

/// The number that `text` is, if it is nothing but some digits after at most one minus: the usual field of a table.
std::optional<std::int32_t> ReadPlainInteger(std::u16string_view text)
{
    constexpr std::size_t kMostDigits = 9; // any number of so many fits
    const bool isNegative = text.starts_with(u'-');
    text.remove_prefix(isNegative ? 1 : 0);
    if (text.empty() || text.size() > kMostDigits)
        return std::nullopt;
    std::int32_t value = 0;
    for (const char16_t c : text) {
        if (c < u'0' || c > u'9')
            return std::nullopt;
        value = 10 * value + (c - u'0');
    }
    return isNegative ? -value : value;
}

} // namespace

std::int32_t RowsWithin(std::size_t bytes, const CRecipeRows& rows)
{
    const auto rowBytes = 2 * static_cast<std::size_t>(rows.WordsPerRow());
    return static_cast<std::int32_t>(std::max<std::size_t>(bytes / std::max<std::size_t>(rowBytes, 1), 1));
}

CStretchCoder::CStretchCoder(const CRecipeRows& rows, RecipeKind kind) : m_kind(kind), m_texts(rows)
{
    for (std::size_t i = 0; i < rows.Columns().size(); ++i) {
        const ColumnCoding& coding = rows.Columns()[i];
        const std::size_t bytes = WholeNumberBytes(coding.dataType);
        if (coding.dataLength > 0)
            m_columns.push_back({i, &coding, bytes == 2 * static_cast<std::size_t>(coding.dataLength) ? bytes : 0});
    }
}

// The steps of a save's innermost loop, which its compiler is to put there.

/// Whether the text that `words` show is coded to the same words, so that nobody need make the text: true of whole
/// numbers within their limits and of hexadecimal values, which are most of a recipe. Too careful is harmless.
inline bool CStretchCoder::CodesToItself(const Column& column, std::span<const std::byte> words) const
{
    const ColumnCoding& coding = *column.coding;
    if (words.size() < column.wholeNumberBytes || column.wholeNumberBytes == 0)
        return false;
    if (IsHexadecimal(coding.dataType)) // else a paged file takes its digits for decimal ones
        return m_kind == RecipeKind::Flat || coding.codeType == CodeType::Bin;
    return coding.decimalDigits == 0 &&
           IsShownAsItIs(coding, LoadLittleEndian<std::uint32_t>(words.first(column.wholeNumberBytes)));
}

/// Codes `text` to byte `pos` of `image`, which holds it, and moves `pos` past it.
void CStretchCoder::CodeText(const Column& column, std::u16string_view text, std::span<std::byte> image,
                             std::size_t& pos) const
{
    const ColumnCoding& coding = *column.coding;
    if (column.wholeNumberBytes != 0 && coding.decimalDigits == 0 && IsDecimalInteger(coding.dataType))
        if (const auto number = ReadPlainInteger(text)) { // as below, but faster
            StoreLittleEndian(image.subspan(pos, column.wholeNumberBytes), static_cast<std::uint32_t>(*number));
            pos += column.wholeNumberBytes;
            return;
        }
    if (m_kind == RecipeKind::Paged)
        CodeValue(coding, NormaliseForPagedFile(coding, text), image, pos, m_kind);
    else
        CodeValue(coding, text, image, pos, m_kind);
}

/// Codes the cell at hand to byte `pos` of `image` and moves `pos` past it.
inline void CStretchCoder::Code(const Column& column, std::span<std::byte> image, std::size_t& pos)
{
    if (const std::u16string_view exact = m_texts.ExactWords(); !exact.empty()) {
        StoreEach(image.subspan(pos), exact);
        pos += exact.size() * sizeof(char16_t);
        return;
    }
    const auto words = m_texts.UntouchedWords();
    if (!CodesToItself(column, words)) {
        CodeText(column, m_texts.Text(), image, pos);
        return;
    }
    for (std::size_t i = 0; i < column.wholeNumberBytes; ++i)
        image[pos++] = words[i];
}

void CStretchCoder::CodeRows(std::int32_t first, std::int32_t count, std::span<std::byte> words)
{
    std::size_t pos = 0;
    m_texts.Seek(first, 0);
    for (std::int32_t row = first; row < first + count; ++row)
        for (const Column& column : m_columns) {
            m_texts.MoveTo(row, column.index);
            Code(column, words, pos);
        }
}

void CStretchCoder::CodeCell(CellPlace place, std::span<std::byte> words)
{
    const auto column = std::lower_bound(m_columns.begin(), m_columns.end(), place.column,
                                         [](const Column& a, std::size_t index) { return a.index < index; });
    if (column == m_columns.end() || column->index != place.column)
        return;
    m_texts.Seek(place.row, place.column);
    std::size_t pos = 0;
    Code(*column, words, pos);
}

Outcome CodeStretch(const CRecipeRows& rows, RecipeKind kind, std::span<std::byte> image, CProgress& progress)
{
    const std::uint64_t total = 2 * static_cast<std::uint64_t>(image.size());
    const auto rowBytes = 2 * static_cast<std::size_t>(rows.WordsPerRow());
    const std::int32_t rowsBetweenReports = RowsWithin(kCodedBetweenReports, rows);
    CStretchCoder coder(rows, kind);
    std::size_t pos = 0;
    for (std::int32_t row = 0; row < rows.RowCount();) {
        const std::int32_t count = std::min(rowsBetweenReports, rows.RowCount() - row);
        coder.CodeRows(row, count, image.subspan(pos));
        row += count;
        pos += static_cast<std::size_t>(count) * rowBytes;
        if (row < rows.RowCount() && !progress.Advance(pos, total))
            return Outcome::GivenUp;
    }
    return progress.Advance(pos, total) ? Outcome::Done : Outcome::GivenUp;
}
