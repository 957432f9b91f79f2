#include "files/UnlikeFormat.h"

#include "files/CellTexts.h"
#include "model/LittleEndian.h"
#include "model/StoredNumber.h"
#include "model/ValueLimits.h"
#include "text/MessageText.h"
#include "text/Surrogates.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <span>

namespace {

constexpr std::int64_t kMostRowsLookedAt = 1000;
constexpr std::int64_t kMostWordsLookedAt = std::int64_t{1} << 18;
constexpr double kSmallest = 1e-9; ///< what a recipe holds has no reason to be nearer to zero
constexpr double kLargest = 1e12;

using Bytes = std::span<const std::byte>;

bool IsSensible(double value)
{
    const double size = std::abs(value); // NaN compares as false
    return size == 0 || (size >= kSmallest && size <= kLargest);
}

/// Of words that are finite.
bool IsSensibleReal(DataType type, Bytes words)
{
    return IsSensible(type == DataType::Float ? std::bit_cast<float>(LoadLittleEndian<std::uint32_t>(words.first(4)))
                                              : std::bit_cast<double>(LoadLittleEndian<std::uint64_t>(words.first(8))));
}

bool IsControl(char32_t unit)
{
    const bool isLayout = unit == u'\t' || unit == u'\n' || unit == u'\r';
    return (unit < 0x20 && !isLayout) || unit == 0x7F;
}

bool IsSensibleAnsi(Bytes text)
{
    const auto end = std::find(text.begin(), text.end(), std::byte{0});
    return std::none_of(text.begin(), end, [](std::byte byte) { return IsControl(std::to_integer<char32_t>(byte)); });
}

/// No character, in any text.
bool IsNoText(char16_t unit)
{
    return IsControl(unit) || (unit >= 0x80 && unit <= 0x9F) || unit >= 0xFFFE;
}

/// A pair that the end of the value cuts was cut by whoever wrote it.
bool IsSensibleUnicode(Bytes text)
{
    bool isAfterHigh = false;
    for (; text.size() >= 2; text = text.subspan(2)) {
        const auto unit = static_cast<char16_t>(LoadLittleEndian<std::uint16_t>(text.first(2)));
        if (IsLowSurrogate(unit) != isAfterHigh)
            return false;
        if (unit == 0)
            return true;
        if (IsNoText(unit))
            return false;
        isAfterHigh = IsHighSurrogate(unit);
    }
    return true;
}

/// Values of one kind that were looked at.
struct Tally {
    std::size_t wrong = 0;
    std::size_t all = 0;

    void Count(bool isWrong)
    {
        ++all;
        wrong += isWrong ? 1 : 0;
    }

    /// Whether so many are wrong that it is no coincidence: `fewest`, and more than one of `parts`.
    bool IsDoubtful(std::size_t fewest, std::size_t parts) const { return wrong >= fewest && wrong * parts > all; }

    double Share() const { return all == 0 ? 0 : static_cast<double>(wrong) / static_cast<double>(all); }
};

class CJudge {
public:
    void Look(const ColumnCoding& coding, Bytes words)
    {
        if (std::all_of(words.begin(), words.end(), [](std::byte byte) { return byte == std::byte{0}; }))
            return;
        if (coding.dataType == DataType::String)
            m_texts.Count(!(coding.unicode != 0 ? IsSensibleUnicode(words) : IsSensibleAnsi(words)));
        else
            LookAtNumber(coding, words);
    }

    /// Of several kinds that are doubtful that with the largest share.
    std::optional<FormatDoubt> Doubt() const
    {
        struct Candidate {
            FormatDoubt::Kind kind;
            const Tally& tally;
            std::size_t fewest;
            std::size_t parts;
        };
        const std::array candidates{Candidate{FormatDoubt::Kind::Floats, m_floats, 3, 3},
                                    Candidate{FormatDoubt::Kind::Texts, m_texts, 3, 4},
                                    Candidate{FormatDoubt::Kind::Limits, m_limits, 6, 2}};
        const Candidate* worst = nullptr;
        for (const Candidate& candidate : candidates)
            if (candidate.tally.IsDoubtful(candidate.fewest, candidate.parts) &&
                (!worst || candidate.tally.Share() > worst->tally.Share()))
                worst = &candidate;
        if (!worst)
            return std::nullopt;
        return FormatDoubt{worst->kind, worst->tally.wrong, worst->tally.all, std::nullopt};
    }

private:
    void LookAtNumber(const ColumnCoding& coding, Bytes words)
    {
        const NumberKind kind = KindOfNumber(coding, words);
        if (kind == NumberKind::None)
            return;
        if (IsReal(coding.dataType))
            m_floats.Count(kind != NumberKind::Finite || !IsSensibleReal(coding.dataType, words));
        if (kind == NumberKind::Finite)
            m_limits.Count(ValueOutsideLimits(coding, words, 0).has_value());
    }

    Tally m_floats;
    Tally m_texts;
    Tally m_limits;
};

std::int64_t RowsToLookAt(const CRecipeRows& rows)
{
    const std::int64_t most = std::max<std::int64_t>(kMostWordsLookedAt / std::max(rows.WordsPerRow(), 1), 1);
    return std::min({std::int64_t{rows.RowCount()}, kMostRowsLookedAt, most});
}

/// Of a value that is longer the beginning.
std::size_t BytesToLookAt(const ColumnCoding& coding)
{
    constexpr std::int32_t kMostWords = 4096;
    return 2 * static_cast<std::size_t>(std::clamp(coding.dataLength, 0, kMostWords));
}

} // namespace

std::optional<FormatDoubt> DoubtAbout(const CRecipeRows& rows)
{
    if (rows.RowCount() == 0 || !rows.IsOfWords())
        return std::nullopt;
    const std::int64_t count = RowsToLookAt(rows);
    const auto& columns = rows.Columns();
    CCellTexts cells(rows);
    CJudge judge;
    for (std::int64_t i = 0; i < count; ++i) {
        const auto row = static_cast<std::int32_t>(i * rows.RowCount() / count);
        for (std::size_t column = 0; column < columns.size(); ++column) {
            cells.MoveTo(row, column);
            const std::size_t bytes = BytesToLookAt(columns[column]);
            if (const Bytes words = cells.UntouchedWords(); words.size() >= bytes)
                judge.Look(columns[column], words.first(bytes));
        }
    }
    auto doubt = judge.Doubt();
    if (doubt && count < rows.RowCount())
        doubt->rowsLookedAt = static_cast<std::int32_t>(count);
    return doubt;
}

std::u16string DoubtText(const FormatDoubt& doubt, std::u16string_view format, std::int32_t startAddress)
{
    const auto message = [&doubt] {
        switch (doubt.kind) {
        case FormatDoubt::Kind::Floats:
            return u"%d of %d floats are no sensible numbers";
        case FormatDoubt::Kind::Texts:
            return u"%d of %d texts hold control characters";
        case FormatDoubt::Kind::Limits:
            break;
        }
        return u"%d of %d values lie outside their limits";
    };
    std::u16string what =
        FillMessage(message(), {static_cast<std::int64_t>(doubt.wrong), static_cast<std::int64_t>(doubt.of)});
    if (doubt.rowsLookedAt)
        what += FillMessage(u", in %d rows that were looked at", {std::int64_t{*doubt.rowsLookedAt}});
    return FillMessage(u"These words look unlike %s: %s. Is RW%d the right start address?",
                       {format, std::u16string_view(what), std::int64_t{startAddress}});
}
