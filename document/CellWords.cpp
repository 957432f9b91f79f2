#include "document/CellWords.h"

#include "changes/CellsNow.h"
#include "document/RecipeDocument.h"
#include "files/CellComparison.h"
#include "model/CellCheck.h"
#include "model/ValueLimits.h"
#include "model/WordCodec.h"

#include <algorithm>

namespace {

std::optional<CellPlace> After(const CRecipeRows& rows, CellPlace place)
{
    if (place.column + 1 < rows.Columns().size())
        return CellPlace{place.row, place.column + 1};
    return place.row + 1 < rows.RowCount() ? std::optional(CellPlace{place.row + 1, 0}) : std::nullopt;
}

RecipeKind KindOf(FileType type)
{
    return IsPaged(type) ? RecipeKind::Paged : RecipeKind::Flat;
}

/// Whether `text`, given to a cell, is stored as these words.
bool CodesTo(const ColumnCoding& coding, RecipeKind kind, std::u16string_view text, std::span<const std::byte> bytes)
{
    std::vector<std::byte> coded(bytes.size());
    std::size_t pos = 0;
    CodeValue(coding, kind == RecipeKind::Paged ? NormaliseForPagedFile(coding, text) : std::u16string(text), coded,
              pos, kind);
    return std::equal(coded.begin(), coded.end(), bytes.begin());
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

std::optional<CCellState> StateWithWords(const CRecipeDocument& document, CellPlace place,
                                         std::span<const std::byte> bytes)
{
    const ColumnCoding& coding = document.Rows().Columns()[place.column];
    if (ValueOutsideLimits(coding, bytes, 0))
        return std::nullopt;
    const RecipeKind kind = KindOf(document.Type());
    std::size_t pos = 0;
    std::u16string text = FormatValue(coding, bytes, pos, kind);
    if (!ValidateCellValue(coding, text))
        return std::nullopt;
    return CodesTo(coding, kind, text, bytes) ? CCellState::OfText(std::move(text))
                                              : CCellState::OfWords(WordsOf(bytes));
}
