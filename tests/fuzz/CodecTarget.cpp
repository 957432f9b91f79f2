#include "files/StretchCoding.h"
#include "model/WordCodec.h"
#include "tests/fuzz/ColumnInput.h"
#include "tests/fuzz/Numbers.h"
#include "tests/fuzz/Property.h"
#include "tests/fuzz/Scratch.h"
#include "tests/fuzz/StoredNumberCheck.h"
#include "tests/fuzz/Targets.h"
#include "text/AnsiText.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <utility>
#include <vector>

namespace {

using Text = std::u16string;

constexpr std::int32_t kMostDigits = 1100; ///< shown on one side of a point, whatever a record asks for
constexpr std::byte kGuard{0xA5};

bool IsSigned(const ColumnCoding& column)
{
    return column.dataType == DataType::Signed16 || column.dataType == DataType::Signed32;
}

std::size_t BytesOf(const ColumnCoding& column)
{
    return 2 * static_cast<std::size_t>(std::max(column.dataLength, 0));
}

std::uint64_t LowByteFirst(FuzzBytes bytes, std::size_t most)
{
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < std::min(most, bytes.size()); ++i)
        value += std::to_integer<std::uint64_t>(bytes[i]) << (8 * i);
    return value;
}

/// `value`, low byte first, zeros after it.
Bytes StoredNumber(std::uint64_t value, std::size_t length)
{
    Bytes bytes(length);
    for (std::size_t i = 0; i < length && i < 8; ++i)
        bytes[i] = static_cast<std::byte>(value >> (8 * i));
    return bytes;
}

Text WithZerosBehind(Text digits, std::int32_t count)
{
    digits.resize(std::max(digits.size(), static_cast<std::size_t>(count)), u'0');
    return digits;
}

Text ShownSigned(const ColumnCoding& column, std::uint32_t word, std::int32_t decimals)
{
    auto value = static_cast<std::int32_t>(word);
    if (value > column.maxValue)
        value = static_cast<std::int32_t>(word - 65536);
    if (value < column.minValue)
        value = 0;
    const Text digits = Printed("%d", value);
    if (decimals == 0)
        return digits;
    const Text whole =
        decimals > 9 ? Text(u"0") : Printed("%d", value / static_cast<std::int32_t>(std::pow(10, decimals)));
    const std::size_t kept = std::min(digits.size(), static_cast<std::size_t>(decimals));
    const Text text = whole + u"." + WithZerosBehind(digits.substr(digits.size() - kept), decimals);
    return value < 0 && text.find(u'-') == Text::npos ? u"-" + text : text;
}

Text ShownUnsigned(std::uint32_t word, std::int32_t decimals)
{
    if (decimals == 0)
        return Printed("%d", static_cast<std::int32_t>(word));
    const std::uint64_t power = decimals > 9 ? 10000000000U : static_cast<std::uint64_t>(std::pow(10, decimals));
    const Text fraction = Printed("%u", static_cast<std::uint32_t>(word % power));
    return Printed("%u.", static_cast<std::uint32_t>(word / power)) + WithZerosBehind(fraction, decimals);
}

/// A long double holds any limit, so that nothing is rounded.
Text ShownReal(const ColumnCoding& column, double value, std::int32_t decimals, std::int32_t width)
{
    const long double exact = value;
    if (exact > static_cast<long double>(column.maxValue) || exact < static_cast<long double>(column.minValue))
        return Printed("%e", value);
    if (decimals == 0)
        return std::isnan(value) ? Text(u"0") : Printed("%lld", static_cast<long long>(value));
    return Printed("%*.*f", width, decimals, value);
}

Text ShownString(const ColumnCoding& column, FuzzBytes bytes)
{
    Text text;
    if (column.unicode == 0) {
        std::string narrow(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        return FromAnsi(narrow.substr(0, narrow.find('\0')));
    }
    for (std::size_t at = 0; at < bytes.size(); at += 2)
        text += static_cast<char16_t>(LowByteFirst(bytes.subspan(at), 2));
    return text.substr(0, text.find(u'\0'));
}

/// What the value at the beginning of `rest`, the image from there on, should show.
Text ShouldShow(const ColumnCoding& column, FuzzBytes rest, RecipeKind kind)
{
    const FuzzBytes bytes = rest.first(std::min(BytesOf(column), rest.size()));
    const auto word = static_cast<std::uint32_t>(LowByteFirst(bytes, 4));
    const std::int32_t decimals = std::clamp(column.decimalDigits, 0, kMostDigits);
    const std::int32_t width =
        kind == RecipeKind::Paged ? 0 : std::clamp(column.integerDigits, 0, kMostDigits) + decimals + 1;
    switch (static_cast<std::int32_t>(column.dataType)) {
    case 0:
    case 1:
        return bytes.size() < BytesOf(column) ? Text(u"0") : ShownSigned(column, word, decimals);
    case 2:
    case 3:
        return bytes.size() < BytesOf(column) ? Text(u"0") : ShownUnsigned(word, decimals);
    case 4:
    case 5:
        return Printed("%X", word);
    case 6:
        return ShownReal(column, std::bit_cast<float>(word), decimals, 0);
    case 7:
        return ShownReal(column, std::bit_cast<double>(LowByteFirst(rest, 8)), decimals, width);
    case 8:
        return ShownString(column, bytes);
    default:
        return {};
    }
}

Bytes StoredString(const ColumnCoding& column, const Text& text)
{
    const Text whole = text.substr(0, text.find(u'\0'));
    Bytes bytes;
    if (column.unicode == 0)
        for (const char c : ToAnsi(whole))
            bytes.push_back(static_cast<std::byte>(c));
    else
        for (const char16_t unit : whole)
            bytes.insert(bytes.end(), {static_cast<std::byte>(unit), static_cast<std::byte>(unit >> 8)});
    bytes.resize(BytesOf(column));
    return bytes;
}

std::uint32_t StoredInteger(const ColumnCoding& column, const Text& text, RecipeKind kind)
{
    const bool isHexadecimal = column.dataType == DataType::Hex16 || column.dataType == DataType::Hex32;
    if (kind == RecipeKind::Paged && column.codeType != CodeType::Bin)
        return static_cast<std::uint32_t>(PlainInteger64(text));
    return isHexadecimal ? PlainHexadecimal(text) : PlainScaled(text, column.decimalDigits);
}

/// The bytes that `text`, typed into a cell, should be saved as.
Bytes ShouldStore(const ColumnCoding& column, const Text& text, RecipeKind kind)
{
    switch (static_cast<std::int32_t>(column.dataType)) {
    case 0:
    case 1:
    case 2:
    case 3:
    case 4:
    case 5:
        return StoredNumber(StoredInteger(column, text, kind), BytesOf(column));
    case 6:
        return StoredNumber(std::bit_cast<std::uint32_t>(static_cast<float>(PlainDecimal(text))), BytesOf(column));
    case 7:
        return StoredNumber(std::bit_cast<std::uint64_t>(PlainDecimal(text)), BytesOf(column));
    case 8:
        return StoredString(column, text);
    default:
        return Bytes(BytesOf(column));
    }
}

Bytes Stored(const ColumnCoding& column, const Text& text, RecipeKind kind)
{
    constexpr std::size_t kGuardBytes = 3;
    Bytes image(kGuardBytes + BytesOf(column) + kGuardBytes, kGuard);
    std::size_t pos = kGuardBytes;
    CodeValue(column, kind == RecipeKind::Paged ? NormaliseForPagedFile(column, text) : text, image, pos, kind);
    Require(pos == kGuardBytes + BytesOf(column), "coding moves on by the length of the value");
    const auto isGuard = [](std::byte b) { return b == kGuard; };
    Require(std::all_of(image.begin(), image.begin() + kGuardBytes, isGuard) &&
                std::all_of(image.end() - kGuardBytes, image.end(), isGuard),
            "coding touches the bytes of the value only");
    return {image.begin() + kGuardBytes, image.end() - kGuardBytes};
}

Text Shown(const ColumnCoding& column, FuzzBytes image, std::size_t at, RecipeKind kind)
{
    std::size_t pos = at;
    Text text = FormatValue(column, image, pos, kind);
    Require(pos == at + BytesOf(column), "showing moves on by the length of the value");
    return text;
}

/// Whether what is shown of a value in exactly the words of its type is coded to the same words again.
bool IsLossless(const ColumnCoding& column, FuzzBytes value)
{
    const bool isLong = column.dataType == DataType::Signed32 || column.dataType == DataType::Unsigned32 ||
                        column.dataType == DataType::Hex32;
    if (value.size() != BytesOf(column) || value.size() != (isLong ? 4U : 2U) || column.dataType > DataType::Hex32 ||
        column.dataType < DataType::Signed16)
        return false;
    if (column.dataType >= DataType::Hex16)
        return true;
    const auto word = static_cast<std::int32_t>(LowByteFirst(value, 4));
    return column.decimalDigits <= 0 && (!IsSigned(column) || (word >= column.minValue && word <= column.maxValue));
}

void CheckValue(const ColumnCoding& column, FuzzBytes image, std::size_t at, RecipeKind kind)
{
    const FuzzBytes rest = image.subspan(std::min(at, image.size()));
    const Text text = Shown(column, image, at, kind);
    Require(text == ShouldShow(column, rest, kind), "a value shows as described");
    const Bytes stored = Stored(column, text, kind);
    Require(AreSame(stored, ShouldStore(column, text, kind)), "what is shown is coded as described");

    const FuzzBytes value = rest.first(std::min(BytesOf(column), rest.size()));
    const bool isPlain = kind == RecipeKind::Flat || column.codeType == CodeType::Bin;
    if (isPlain && IsLossless(column, value))
        Require(AreSame(stored, value), "a whole number within its limits keeps its words");
}

void CheckText(const ColumnCoding& column, const Text& text, RecipeKind kind)
{
    Require(AreSame(Stored(column, text, kind), ShouldStore(column, text, kind)), "a typed text is coded as described");
}

/// Rows are coded as one value after the other would be, shortcuts or not.
void CheckRows(const std::vector<ColumnCoding>& columns, FuzzBytes image, RecipeKind kind, CFuzzInput& input)
{
    CRecipeRows rows;
    rows.LayOut(columns, 0, 3);
    CByteBuffer words(image.size());
    std::copy(image.begin(), image.end(), words.Bytes().begin());
    rows.ShowWords(std::move(words), kind);
    for (std::uint32_t changes = input.TakeBelow(4); changes > 0; --changes) {
        const auto row = static_cast<std::int32_t>(input.TakeBelow(3));
        const std::size_t column = input.TakeBelow(static_cast<std::uint32_t>(columns.size()));
        const Text text = input.TakeText(24);
        Require(rows.SetText(row, column, text) && rows.Text(row, column) == text,
                "a cell shows the text it was given");
    }

    Bytes wanted;
    for (std::int32_t row = 0; row < rows.RowCount(); ++row)
        for (std::size_t column = 0; column < columns.size(); ++column) {
            const Bytes value = ShouldStore(columns[column], rows.Text(row, column), kind);
            wanted.insert(wanted.end(), value.begin(), value.end());
        }
    Bytes coded(static_cast<std::size_t>(rows.StretchBytes()), kGuard);
    CNoProgress progress;
    Require(CodeStretch(rows, kind, coded, progress) == Outcome::Done, "rows can be coded");
    Require(AreSame(coded, wanted), "rows are coded cell by cell");
}

bool CanBeShown(const ColumnCoding& column)
{
    return column.dataLength >= 0;
}

} // namespace

void FuzzCodec(FuzzBytes bytes)
{
    CFuzzInput input(bytes);
    const RecipeKind kind = input.TakeFlag() ? RecipeKind::Paged : RecipeKind::Flat;
    std::vector<ColumnCoding> columns(1 + input.TakeBelow(3));
    for (ColumnCoding& column : columns)
        column = TakeColumn(input);
    const Text text = input.TakeText(40);
    Bytes image(input.TakeBelow(64));
    for (std::byte& byte : image)
        byte = static_cast<std::byte>(input.TakeByte());

    CheckValue(columns.front(), image, input.TakeBelow(8), kind);
    CheckText(columns.front(), text, kind);
    CheckStoredNumber(columns.front(), image, kind);
    CheckJudgement(columns.front(), text, kind);
    std::erase_if(columns, [](const ColumnCoding& column) { return !CanBeShown(column); });
    if (!columns.empty())
        CheckRows(columns, image, kind, input);
}
