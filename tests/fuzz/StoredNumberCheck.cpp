#include "tests/fuzz/StoredNumberCheck.h"

#include "model/LittleEndian.h"
#include "model/NumberChange.h"
#include "model/StoredNumber.h"
#include "model/TypedValue.h"
#include "tests/fuzz/Property.h"

#include <algorithm>
#include <vector>

namespace {

void CheckChange(const ColumnCoding& column, const CDecimal& stored)
{
    const ChangedNumber changed = Changed(column, stored, {NumberChange::Kind::Multiply, CDecimal(3)});
    if (changed.fault == ChangeFault::None)
        Require(WordsOfNumber(column, changed.number) == changed.words, "a changed number is stored by its words");
}

} // namespace

void CheckStoredNumber(const ColumnCoding& column, FuzzBytes words, RecipeKind kind)
{
    const auto number = StoredNumber(column, words);
    Require(number.has_value() == (KindOfNumber(column, words) == NumberKind::Finite), "a finite number is one");
    Require(StoredNumberText(column, words).empty() == (KindOfNumber(column, words) == NumberKind::None),
            "what is a number has a text");
    if (!number)
        return;
    const auto stored = WordsOfNumber(column, *number);
    Require(stored && StoredNumber(column, BytesOfWords(*stored)) == number, "a stored number can be stored");
    CheckChange(column, *number);
    std::size_t pos = 0;
    CheckJudgement(column, FormatValue(column, words, pos, kind), kind);
}

void CheckJudgement(const ColumnCoding& column, std::u16string_view text, RecipeKind kind)
{
    const TypedValue value = JudgeTyped(column, kind, text);
    const std::vector<std::byte> bytes = BytesOfWords(value.words);
    Require(bytes.size() == 2 * static_cast<std::size_t>(std::max(column.dataLength, 0)), "all words are told");
    Require(StoredNumber(column, bytes) == value.stored, "the number told is that of the words");
    std::size_t pos = 0;
    Require(FormatValue(column, bytes, pos, kind) == value.shown, "the text told is what the words show");
    if (value.verdict == TypedVerdict::Fine && value.typed)
        Require(NumberOfText(column, value.shown) == value.typed, "what is fine is shown as the typed number");
    if (value.exactWords)
        Require(*value.exactWords != value.words, "the exact words are other ones");
}
