#include "document/CellJudge.h"

#include "files/CellTexts.h"
#include "files/StoredCells.h"
#include "model/CellCheck.h"
#include "model/CellRefusal.h"
#include "model/LittleEndian.h"
#include "model/StoredNumber.h"
#include "model/TypedValue.h"
#include "model/ValueLimits.h"
#include "text/MessageText.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace {

/// Of words that stand for no number, as those of a string.
std::u16string TextOfWords(const ColumnCoding& coding, RecipeKind kind, std::span<const std::byte> words)
{
    const std::u16string number = StoredNumberText(coding, words);
    if (!number.empty())
        return number;
    std::size_t pos = 0;
    return FormatValue(coding, words, pos, kind);
}

CellVerdict::Kind KindOf(bool isSame)
{
    return isSame ? CellVerdict::Kind::LeftAlone : CellVerdict::Kind::Changes;
}

} // namespace

CellVerdict CCellJudge::OfText(CellPlace place, std::u16string_view text) const
{
    const bool isSame = m_rows.Text(place.row, place.column) == text;
    return {KindOf(isSame), CCellState::OfText(std::u16string(text)), std::u16string(text), {}};
}

CellVerdict CCellJudge::OfWords(CellPlace place, std::u16string words, std::u16string text) const
{
    const CCellState& state = m_rows.State(place);
    const bool isSame = state.IsExact() ? state.Words() == words : state.IsUntouched() && WordsIn(place) == words;
    return {KindOf(isSame), CCellState::OfWords(words), std::move(text), {}};
}

CellVerdict CCellJudge::Typed(CellPlace place, std::u16string_view text) const
{
    if (ValidateCellValue(CodingOf(place), text))
        return OfText(place, text);
    CellVerdict refused = CellVerdict::Refused(RefusalOf(CodingOf(place), text));
    refused.isTextRefused = true;
    return refused;
}

/// kept: the check lets texts pass that begin with "-" and are no numbers, and numbers with decimals that do not fit
/// into their words. Both are refused here.
CellVerdict CCellJudge::Entered(CellPlace place, std::u16string_view text) const
{
    CellVerdict verdict = Typed(place, text);
    const ColumnCoding& coding = CodingOf(place);
    if (verdict.kind == CellVerdict::Kind::Refused || coding.dataType == DataType::String || text.empty())
        return verdict;
    const auto number = NumberOfText(coding, text);
    if (!number)
        return CellVerdict::Refused(RefusalOf(coding, text));
    if (const ChangedNumber changed = ::Changed(coding, *number, {}); changed.fault != ChangeFault::None)
        return CellVerdict::Refused(RefusalOf(coding, changed));
    if (!TakesWords())
        return verdict;
    const auto judged = JudgeTyped(coding, IsPaged(m_type) ? RecipeKind::Paged : RecipeKind::Flat, text);
    if (judged.exactWords)
        return OfWords(place, *judged.exactWords, std::u16string(text));
    if (m_rows.State(place).IsUntouched() && WordsIn(place) != judged.words)
        verdict.kind = CellVerdict::Kind::Changes; // the number that is shown need not be the one that is stored
    return verdict;
}

CellVerdict CCellJudge::Changed(CellPlace place, const NumberChange& change) const
{
    const auto number = NumberIn(place);
    return number ? Changed(place, *number, change) : CellVerdict::Refused(std::u16string(kNoNumberToChange));
}

CellVerdict CCellJudge::Changed(CellPlace place, const CDecimal& number, const NumberChange& change) const
{
    const ColumnCoding& coding = CodingOf(place);
    const ChangedNumber changed = ::Changed(coding, number, change);
    if (changed.fault != ChangeFault::None)
        return CellVerdict::Refused(RefusalOf(coding, changed));
    if (TakesWords())
        return OfWords(place, changed.words, NumberText(coding, changed.number));
    const std::u16string text =
        IsReal(coding.dataType) ? changed.number.Text(DecimalsOf(coding)) : NumberText(coding, changed.number);
    return Typed(place, text);
}

/// The number that a text shows, or the one that words store. Rows that nothing was read for show theirs.
std::optional<CDecimal> CCellJudge::NumberIn(CellPlace place) const
{
    const CCellState& state = m_rows.State(place);
    if (m_type == FileType::Csv || !m_rows.IsOfWords() || state.IsText() ||
        (state.IsUntouched() && m_rows.SourceId() == nullptr))
        return NumberOfText(CodingOf(place), m_rows.Text(place.row, place.column));
    if (state.IsExact()) {
        std::vector<std::byte> bytes(2 * state.Words().size());
        StoreEach(bytes, state.Words());
        return StoredNumber(CodingOf(place), bytes);
    }
    CCellTexts cell(m_rows);
    cell.Seek(place.row, place.column);
    return StoredNumber(CodingOf(place), cell.UntouchedWords());
}

std::u16string CCellJudge::WordsIn(CellPlace place) const
{
    std::vector<std::byte> bytes(2 * static_cast<std::size_t>(std::max(CodingOf(place).dataLength, 0)));
    m_rows.LoadWords(place, bytes);
    return WordsOf(bytes);
}

CCellState CCellJudge::ContentOf(CellPlace place) const
{
    if (m_rows.State(place).IsText() || !TakesWords())
        return CCellState::OfText(m_rows.Text(place.row, place.column));
    return CCellState::OfWords(WordsIn(place));
}

CellVerdict CCellJudge::Copied(CellPlace place, const CCellState& content) const
{
    if (content.IsText())
        return Typed(place, content.Text());
    const ColumnCoding& coding = CodingOf(place);
    std::vector<std::byte> bytes(2 * content.Words().size());
    StoreEach(bytes, content.Words());
    if (const auto value = ValueOutsideLimits(coding, bytes, 0))
        return CellVerdict::Refused(FillMessage(u"%s lies outside %s", {*value, LimitsText(coding)}));
    const RecipeKind kind = IsPaged(m_type) ? RecipeKind::Paged : RecipeKind::Flat;
    return OfWords(place, std::u16string(content.Words()), TextOfWords(coding, kind, bytes));
}
