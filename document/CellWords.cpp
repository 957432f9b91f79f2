#include "document/CellWords.h"

#include "changes/CellsNow.h"
#include "document/RecipeDocument.h"
#include "files/CellComparison.h"
#include "model/CellCheck.h"
#include "model/CellRefusal.h"
#include "model/StoredNumber.h"
#include "model/WordCodec.h"

#include <algorithm>

namespace {

std::optional<CellPlace> After(const CRecipeRows& rows, CellPlace place)
{
    if (place.column + 1 < rows.Columns().size())
        return CellPlace{place.row, place.column + 1};
    return place.row + 1 < rows.RowCount() ? std::optional(CellPlace{place.row + 1, 0}) : std::nullopt;
}

} // namespace

CellWords CellWordsOf(const CRecipeDocument& document, CellPlace place, std::size_t most, std::size_t ahead)
{
    const CRecipeRows& rows = document.Rows();
    CCellsNow now(rows, document.Stored(), document.Type());
    const auto own = now.Words(place);
    CellWords words{{own.begin(), own.begin() + static_cast<std::ptrdiff_t>(std::min(own.size(), most))}, 0, 0};
    words.own = words.bytes.size();
    words.whole = BytesOfCell(rows, place);
    bool isWhole = words.own == words.whole;
    for (auto next = After(rows, place); isWhole && next && words.bytes.size() < ahead; next = After(rows, *next)) {
        const auto more = now.Words(*next);
        words.bytes.insert(words.bytes.end(), more.begin(), more.end());
        isWhole = more.size() == BytesOfCell(rows, *next);
    }
    return words;
}

CellVerdict JudgeWords(const CRecipeDocument& document, CellPlace place, std::span<const std::byte> bytes)
{
    const CCellJudge judge(document.Rows(), document.Stored(), document.Type());
    CellVerdict verdict = judge.Copied(place, CCellState::OfWords(WordsOf(bytes)));
    const ColumnCoding& coding = document.Rows().Columns()[place.column];
    const RecipeKind kind = IsPaged(document.Type()) ? RecipeKind::Paged : RecipeKind::Flat;
    std::size_t pos = 0;
    const std::u16string shown = FormatValue(coding, bytes, pos, kind);
    const auto text = IsReal(coding.dataType) ? WithoutBlanks(shown) : std::u16string_view(shown); // as it is typed
    if (verdict.kind != CellVerdict::Kind::Refused && !ValidateCellValue(coding, text))
        return CellVerdict::Refused(RefusalOf(coding, text));
    return verdict;
}
