#include "document/CellJudge.h"

#include "files/CellComparison.h"
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
    std::u16string number = StoredNumberText(coding, words);
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
    bool isSame = m_rows.Text(place.row, place.column) == text;
    if (isSame && TakesWords() && !m_rows.State(place).IsText()) // what is shown need not be what is stored
        isSame = !IsOtherInFile(place) &&
                 (CodingOf(place).dataType == DataType::String || WordsIn(place) == WordsOfText(place, text));
    return {KindOf(isSame), CCellState::OfText(std::u16string(text)), std::u16string(text), {}};
}

CellVerdict CCellJudge::OfWords(CellPlace place, const std::u16string& words, std::u16string text) const
{
    return {KindOf(HasWords(place, words)), CCellState::OfWords(words), std::move(text), {}};
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
    const auto judged = JudgeTyped(coding, Kind(), text);
    return judged.exactWords ? OfWords(place, *judged.exactWords, std::u16string(text)) : verdict;
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

/// Of a text that is not saved yet, the number that was typed: a save may store another one. Rows that nothing was read
/// for show theirs.
std::optional<CDecimal> CCellJudge::NumberIn(CellPlace place) const
{
    const CCellState& state = m_rows.State(place);
    const bool isShown = state.IsText() || (state.IsUntouched() && m_rows.SourceId() == nullptr);
    const bool isStored = TakesWords() && IsStored(place);
    if (!TakesWords() || (isShown && !isStored))
        return NumberOfText(CodingOf(place), m_rows.Text(place.row, place.column));
    std::vector<std::byte> bytes = BytesOfWords(WordsIn(place, isStored));
    if (isStored && !IsPaged(m_type))
        bytes.resize(m_stored.LoadWords(place, bytes)); // none where the file ends
    return StoredNumber(CodingOf(place), bytes);
}

std::u16string CCellJudge::WordsIn(CellPlace place, bool isStored) const
{
    const CCellState& state = m_rows.State(place);
    if (state.IsExact())
        return std::u16string(state.Words());
    if (state.IsText() || IsStoredKnown()) {
        if (!isStored)
            return WordsOfText(place, m_rows.Text(place.row, place.column));
        std::vector<std::byte> stored(BytesOfCell(m_rows, place));
        m_stored.LoadWords(place, stored);
        return WordsOf(stored);
    }
    std::vector<std::byte> read(BytesOfCell(m_rows, place));
    m_rows.LoadWords(place, read);
    return WordsOf(read);
}

std::u16string CCellJudge::WordsOfText(CellPlace place, std::u16string_view text) const
{
    return JudgeTyped(CodingOf(place), Kind(), text).words;
}

/// Whether the cell has these words, and a save leaves them.
bool CCellJudge::HasWords(CellPlace place, std::u16string_view words) const
{
    return WordsIn(place) == words &&
           (m_rows.State(place).IsExact() ||
            (WordsOfText(place, m_rows.Text(place.row, place.column)) == words && !IsOtherInFile(place)));
}

/// Whether what is shown, and not edited, is neither what the file's words show nor what they were made of: another
/// program wrote them, and the user has not taken them over.
bool CCellJudge::IsOtherInFile(CellPlace place) const
{
    if (!IsStoredKnown() || m_rows.IsEdited(place.row, place.column))
        return false;
    std::vector<std::byte> stored(BytesOfCell(m_rows, place));
    const std::size_t within = m_stored.LoadWords(place, stored);
    const std::u16string shown = m_rows.Text(place.row, place.column);
    std::size_t pos = 0;
    const auto read = std::span<const std::byte>(stored).first(IsPaged(m_type) ? stored.size() : within);
    return FormatValue(CodingOf(place), read, pos, Kind()) != shown && WordsOfText(place, shown) != WordsOf(stored);
}

CCellState CCellJudge::ContentOf(CellPlace place) const
{
    const bool isTyped = m_rows.State(place).IsText() && !IsStored(place);
    if (isTyped || !TakesWords())
        return CCellState::OfText(m_rows.Text(place.row, place.column));
    return CCellState::OfWords(WordsIn(place));
}

CellVerdict CCellJudge::Copied(CellPlace place, const CCellState& content) const
{
    if (content.IsText())
        return Typed(place, content.Text());
    const ColumnCoding& coding = CodingOf(place);
    const std::vector<std::byte> bytes = BytesOfWords(content.Words());
    if (const auto value = ValueOutsideLimits(coding, bytes, 0))
        return CellVerdict::Refused(FillMessage(u"%s lies outside %s", {*value, LimitsText(coding)}));
    return OfWords(place, std::u16string(content.Words()), TextOfWords(coding, Kind(), bytes));
}
