#include "files/CsvRecipeFile.h"
#include "files/RecipeFile.h"
#include "files/RowPieces.h"
#include "tests/files/TestColumns.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <random>

namespace fs = std::filesystem;

namespace {

ColumnCoding Column(DataType type, std::int32_t words)
{
    ColumnCoding coding;
    coding.dataType = type;
    coding.dataLength = words;
    coding.integerDigits = 5;
    coding.minValue = INT16_MIN;
    coding.maxValue = INT16_MAX;
    return coding;
}

struct RowPieces : testing::Test {
    /// The rows that `pieces` gives, one after the other, are those of `whole`, which was read from the file at once.
    static void ExpectSame(CRowPieces& pieces, const CRecipeRows& whole, FileType type, std::uint64_t fileBytes)
    {
        const CStoredCells stored(whole, type, fileBytes);
        std::int32_t next = 0;
        while (pieces.Next()) {
            ASSERT_EQ(pieces.First(), next);
            const CRecipeRows& rows = pieces.Rows();
            const CStoredCells storedPiece = pieces.Stored();
            next += rows.RowCount();
            for (std::int32_t row = 0; row < rows.RowCount(); ++row)
                for (std::uint32_t column = 0; column < rows.Columns().size(); ++column) {
                    const CellPlace inPiece{row, column};
                    const CellPlace inWhole{pieces.First() + row, column};
                    ASSERT_EQ(rows.Text(row, column), whole.Text(inWhole.row, column)) << inWhole.row;
                    ASSERT_EQ(rows.HasField(inPiece), whole.HasField(inWhole));
                    if (type != FileType::Csv)
                        ExpectSameWords(storedPiece, inPiece, stored, inWhole);
                }
        }
        EXPECT_FALSE(pieces.HasFailed());
        EXPECT_EQ(next, whole.RowCount());
    }

    static void ExpectSameWords(const CStoredCells& piece, CellPlace inPiece, const CStoredCells& whole,
                                CellPlace inWhole)
    {
        Bytes a(2 * static_cast<std::size_t>(whole.Cells().Columns()[inWhole.column].dataLength));
        Bytes b(a.size());
        ASSERT_EQ(piece.LoadWords(inPiece, a), whole.LoadWords(inWhole, b)) << inWhole.row;
        ASSERT_EQ(a, b) << inWhole.row;
    }

    void ExpectAsWhole(FileType type, const fs::path& file, const CRecipeRows& layout)
    {
        CRecipeRows whole = layout;
        CRecordingReporter reporter;
        CNoProgress progress;
        ASSERT_EQ(ReadRecipeOnly(type, whole, file, reporter, progress), Outcome::Done);
        if (type == FileType::Csv)
            return ExpectSame(*PiecesOfTexts(layout, file), whole, type, 0);
        CFileWords words(type, file);
        ExpectSame(*PiecesOfWords(type, layout, words), whole, type, words.Count());
    }

    static Bytes RandomBytes(std::size_t count)
    {
        std::mt19937 random(7);
        Bytes bytes(count);
        for (std::byte& byte : bytes)
            byte = static_cast<std::byte>(random());
        return bytes;
    }

    CTempFolder folder;
};

TEST_F(RowPieces, AreTheRowsOfTheWholeTable)
{
    CRecipeRows layout;
    layout.LayOut({Column(DataType::Signed16, 1), Column(DataType::Float, 2), Column(DataType::String, 5)}, 3, 70'000);
    WriteAll(folder / "a.rcp", RandomBytes(2 * 8 * 70'000 + 100));
    ExpectAsWhole(FileType::Rcp, folder / "a.rcp", layout);
}

TEST_F(RowPieces, GoOnBehindTheEndOfTheFile)
{
    CRecipeRows layout;
    layout.LayOut({Column(DataType::Signed16, 1), Column(DataType::Signed32, 2)}, 3, 100'000);
    for (const std::size_t size : {std::size_t{0}, std::size_t{9}, std::size_t{300'001}}) {
        WriteAll(folder / "a.rcp", RandomBytes(size));
        ExpectAsWhole(FileType::Rcp, folder / "a.rcp", layout);
        WriteAll(folder / "a.erp", RandomBytes(size)); // all of it within the flat part
        ExpectAsWhole(FileType::Erp, folder / "a.erp", layout);
    }
}

TEST_F(RowPieces, OfItemsShorterThanTheirTypeGoOnInTheNextRow)
{
    CRecipeRows layout;
    layout.LayOut({Column(DataType::Double, 1)}, 0, 200'000);
    WriteAll(folder / "a.rcp", RandomBytes(2 * 200'000));
    ExpectAsWhole(FileType::Rcp, folder / "a.rcp", layout);
}

TEST_F(RowPieces, OfATableOfTextsAreItsLines)
{
    CRecipeRows layout;
    layout.LayOut({Column(DataType::Signed16, 1), Column(DataType::Signed16, 1)}, 5, 90'000);
    std::string text;
    for (int i = 0; i < 80'000; ++i) {
        text += std::to_string(i) + (i % 7 == 0 ? "\n" : ",") + (i % 5 == 0 ? "x,behind\r\n" : "y");
        text += i % 5 == 0 ? "" : "\n";
    }
    for (const std::string& table : {text, std::string(), std::string("1"), std::string("1,\n\n,,")}) {
        WriteAll(folder / "a.csv", std::as_bytes(std::span(table)));
        ExpectAsWhole(FileType::Csv, folder / "a.csv", layout);
    }
}

TEST_F(RowPieces, FailWhereTheFileCannotBeRead)
{
    CRecipeRows layout;
    layout.LayOut({Column(DataType::Signed16, 1)}, 0, 10);
    const auto texts = PiecesOfTexts(layout, folder / "none.csv");
    EXPECT_FALSE(texts->Next());
    EXPECT_TRUE(texts->HasFailed());

    WriteAll(folder / "a.frp", Bytes(65536 + 4096, std::byte{0x77})); // the directory leads out of the file
    CRecipeRows far;
    far.LayOut({Column(DataType::Signed16, 1)}, 40'000, 10);
    CFileWords words(FileType::Frp, folder / "a.frp");
    EXPECT_FALSE(words.IsUndamaged());
    const auto pieces = PiecesOfWords(FileType::Frp, far, words);
    EXPECT_FALSE(pieces->Next());
    EXPECT_TRUE(pieces->HasFailed());
}

} // namespace
