#include "files/RecipeWalk.h"

#include "files/CellTexts.h"
#include "files/Outcome.h"
#include "files/RecipeMessages.h"
#include "files/RowPieces.h"
#include "files/WordBytes.h"

namespace fs = std::filesystem;

namespace {

Outcome WalkPieces(CRowPieces& pieces, CCellTaker& taker)
{
    while (pieces.Next()) {
        if (!taker.GoesOn())
            return Outcome::GivenUp;
        const CRecipeRows& rows = pieces.Rows();
        CCellTexts texts(rows);
        for (std::int32_t row = 0; row < rows.RowCount(); ++row)
            for (std::size_t column = 0; column < rows.Columns().size(); ++column) {
                texts.MoveTo(row, column);
                taker.TakeCell(pieces.First() + row, column, texts.Text());
            }
    }
    return pieces.HasFailed() ? Outcome::Failed : Outcome::Done;
}

Outcome WalkWords(FileType type, const CRecipeRows& layout, const fs::path& path, CCellTaker& taker)
{
    CFileWords words(type, path);
    if (!words.IsOpen() || !words.IsSound(layout.FirstByte().number, layout.StretchBytes()))
        return Outcome::Failed;
    return WalkPieces(*PiecesOfWords(type, layout, words), taker);
}

Outcome Walk(FileType type, const CRecipeRows& layout, const fs::path& path, CCellTaker& taker)
{
    return type == FileType::Csv ? WalkPieces(*PiecesOfTexts(layout, path), taker)
                                 : WalkWords(type, layout, path, taker);
}

} // namespace

bool WalkRecipe(FileType type, const CRecipeRows& layout, const fs::path& path, CCellTaker& taker, CReporter& reporter)
{
    const Outcome outcome = WithinMemory([&] { return Walk(type, layout, path, taker); });
    if (HasFailed(outcome))
        ShowFileError(reporter, OpenErrorOf(type), path);
    return outcome == Outcome::Done;
}
