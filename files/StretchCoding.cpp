#include "files/StretchCoding.h"

#include "files/CellTexts.h"
#include "model/LittleEndian.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace {

constexpr std::size_t kCodedBetweenReports = std::size_t{128} << 10; // bytes: 64K values of one word

/// A column whose values lie in words; a damaged format may give any number of others.
struct CodedColumn {
    std::size_t index;
    const ColumnCoding* coding;
    std::size_t wholeNumberBytes; ///< 2 or 4 when the column takes exactly the words of a whole number, else 0
};

/// The bytes of a whole number; 0 for any other type.
std::size_t WholeNumberBytes(DataType type)
{
    if (!IsDecimalInteger(type) && !IsHexadecimal(type))
        return 0;
    const bool isLong = type == DataType::Signed32 || type == DataType::Unsigned32 || type == DataType::Hex32;
    return isLong ? 4 : 2;
}

std::vector<CodedColumn> ColumnsWithWords(const CRecipeRows& rows)
{
    std::vector<CodedColumn> columns;
    for (std::size_t i = 0; i < rows.Columns().size(); ++i) {
        const ColumnCoding& coding = rows.Columns()[i];
        const std::size_t bytes = WholeNumberBytes(coding.dataType);
        if (coding.dataLength > 0)
            columns.push_back({i, &coding, bytes == 2 * static_cast<std::size_t>(coding.dataLength) ? bytes : 0});
    }
    return columns;
}

/// A signed value that its limits neither set to 0 nor, in 32 bits, move by 65536.
bool IsShownAsItIs(const ColumnCoding& coding, std::uint32_t word)
{
    std::int64_t value = static_cast<std::int32_t>(word);
    if (coding.dataType == DataType::Signed16 && value > coding.maxValue)
        value -= 0x10000; // the same 16 bits
    return value >= coding.minValue && value <= coding.maxValue;
}

/// Whether the text that `words` show is coded to the same words, so that nobody need make the text: true of whole
/// numbers within their limits and of hexadecimal values, which are most of a recipe. Too careful is harmless.
bool CodesToItself(const CodedColumn& column, RecipeKind kind, std::span<const std::byte> words)
{
    const ColumnCoding& coding = *column.coding;
    if (words.size() < column.wholeNumberBytes || column.wholeNumberBytes == 0)
        return false;
    if (IsHexadecimal(coding.dataType)) // else a paged file takes its digits for decimal ones
        return kind == RecipeKind::Flat || coding.codeType == CodeType::Bin;
    const bool isSigned = coding.dataType == DataType::Signed16 || coding.dataType == DataType::Signed32;
    return coding.decimalDigits == 0 &&
           (!isSigned || IsShownAsItIs(coding, LoadLittleEndian<std::uint32_t>(words.first(column.wholeNumberBytes))));
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

/// Codes `text` to byte `pos` of `image`, which holds it, and moves `pos` past it.
void CodeText(const CodedColumn& column, RecipeKind kind, std::u16string_view text, std::span<std::byte> image,
              std::size_t& pos)
{
    const ColumnCoding& coding = *column.coding;
    if (column.wholeNumberBytes != 0 && coding.decimalDigits == 0 && IsDecimalInteger(coding.dataType))
        if (const auto number = ReadPlainInteger(text)) { // as below, but faster
            StoreLittleEndian(image.subspan(pos, column.wholeNumberBytes), static_cast<std::uint32_t>(*number));
            pos += column.wholeNumberBytes;
            return;
        }
    if (kind == RecipeKind::Paged)
        CodeValue(coding, NormaliseForPagedFile(coding, text), image, pos, kind);
    else
        CodeValue(coding, text, image, pos, kind);
}

/// Codes the cell that `texts` stands at to byte `pos` of `image` and moves `pos` past it.
void CodeCell(const CodedColumn& column, RecipeKind kind, CCellTexts& texts, std::span<std::byte> image,
              std::size_t& pos)
{
    if (const std::u16string_view exact = texts.ExactWords(); !exact.empty()) {
        StoreEach(image.subspan(pos), exact);
        pos += exact.size() * sizeof(char16_t);
        return;
    }
    const auto words = texts.UntouchedWords();
    if (!CodesToItself(column, kind, words)) {
        CodeText(column, kind, texts.Text(), image, pos);
        return;
    }
    for (std::size_t i = 0; i < column.wholeNumberBytes; ++i)
        image[pos++] = words[i];
}

} // namespace

Outcome CodeStretch(const CRecipeRows& rows, RecipeKind kind, std::span<std::byte> image, CProgress& progress)
{
    const std::uint64_t total = 2 * static_cast<std::uint64_t>(image.size());
    const std::vector<CodedColumn> columns = ColumnsWithWords(rows);
    CCellTexts texts(rows);
    std::size_t pos = 0;
    std::size_t reported = 0;
    for (std::int32_t row = 0; row < rows.RowCount(); ++row) {
        for (const CodedColumn& column : columns) {
            texts.MoveTo(row, column.index);
            CodeCell(column, kind, texts, image, pos);
            if (pos - reported < kCodedBetweenReports)
                continue;
            reported = pos;
            if (!progress.Advance(pos, total))
                return Outcome::GivenUp;
        }
    }
    return progress.Advance(pos, total) ? Outcome::Done : Outcome::GivenUp;
}
