#include "files/PagedFile.h"
#include "files/RecipeFile.h"
#include "files/RecipeWalk.h"
#include "tests/files/AllocationLimit.h"
#include "tests/files/TestColumns.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/TestFiles.h"
#include "text/PathText.h"

#include <gtest/gtest.h>

#include <functional>
#include <utility>

namespace fs = std::filesystem;

namespace {

using Texts = std::vector<std::u16string>;

/// Keeps the texts, and notes when a cell does not follow the one before.
class CKeptCells final : public CCellTaker {
public:
    explicit CKeptCells(std::size_t columns) : m_columns(columns) {}

    void TakeCell(std::int32_t row, std::size_t column, std::u16string_view text) override
    {
        EXPECT_EQ(static_cast<std::size_t>(row), texts.size() / m_columns);
        EXPECT_EQ(column, texts.size() % m_columns);
        texts.emplace_back(text);
        if (onFirst)
            std::exchange(onFirst, nullptr)();
    }

    Texts texts;
    std::function<void()> onFirst;

private:
    std::size_t m_columns;
};

ColumnCoding ShortDouble() // is made of the words after its own, too
{
    ColumnCoding column = DoubleColumn();
    column.dataLength = 1;
    return column;
}

struct RecipeWalk : testing::Test {
    void LayOut(std::vector<ColumnCoding> columns, std::int32_t startAddress, std::int32_t rowCount)
    {
        layout.LayOut(std::move(columns), startAddress, rowCount);
    }

    Texts Walk(const fs::path& path)
    {
        CKeptCells cells(layout.Columns().size());
        EXPECT_TRUE(WalkRecipe(FileTypeOf(path).value(), layout, path, cells, reporter));
        EXPECT_TRUE(reporter.shown.empty());
        return cells.texts;
    }

    /// As a table that keeps all of the file shows them.
    Texts Rows(const fs::path& path)
    {
        CRecipeRows rows;
        rows.LayOut(layout.Columns(), layout.StartAddress(), layout.RowCount());
        CNoProgress progress;
        EXPECT_EQ(ReadRecipeOnly(FileTypeOf(path).value(), rows, path, reporter, progress), Outcome::Done);
        return TextsOf(rows);
    }

    void ExpectFails(const fs::path& path, const std::u16string& message)
    {
        reporter.shown.clear();
        CKeptCells cells(layout.Columns().size());
        EXPECT_FALSE(WalkRecipe(FileTypeOf(path).value(), layout, path, cells, reporter));
        EXPECT_EQ(reporter.shown, Texts{message});
    }

    CTempFolder folder;
    CRecipeRows layout;
    CRecordingReporter reporter;
};

Bytes Pattern(std::size_t size)
{
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<std::byte>(1 + (i * 7 + i / 251) % 255);
    return bytes;
}

/// Values that lie across the ends of the pieces, and the end of the file among them.
struct ManyPieces : RecipeWalk, testing::WithParamInterface<const char*> {};

TEST_P(ManyPieces, GiveTheTextsThatOneReadOfAllGives)
{
    const fs::path path = folder / GetParam();
    const Bytes words = Pattern(1'000'001);
    if (path.extension() == ".frp") {
        WriteAll(path, {});
        ASSERT_TRUE(PagedWrite(path, WordAddress(100), words.size() / 2, words, kFrp));
    } else {
        WriteAll(path, words);
    }
    for (const std::int32_t start : {0, 1, 100, 400000}) {
        LayOut({Signed16Column(), AnsiColumn(3), ShortDouble(), Hex16Column(), Unsigned32Column()}, start, 90000);
        EXPECT_TRUE(Walk(path) == Rows(path)) << start;
    }
    LayOut({AnsiColumn(262144), Signed16Column(), AnsiColumn(100001)}, 7, 3);
    EXPECT_TRUE(Walk(path) == Rows(path)) << "long values";
}

INSTANTIATE_TEST_SUITE_P(Types, ManyPieces, testing::Values("a.rcp", "a.frp", "a.erp"),
                         [](const auto& c) { return std::string(c.param).substr(2); });

TEST_F(RecipeWalk, CellsPastTheEndOfAFlatFileAreThoseOfMissingWords)
{
    WriteAll(folder / "a.rcp", WordBytes({1, 2, 3}));
    LayOut({Signed16Column(), AnsiColumn(1)}, 2, 2);
    EXPECT_EQ(Walk(folder / "a.rcp"), (Texts{u"3", u"", u"0", u""}));
    LayOut({Signed16Column()}, 300, 2);
    EXPECT_EQ(Walk(folder / "a.rcp"), (Texts{u"0", u"0"}));
}

TEST_F(RecipeWalk, FieldsThatATableLacksAreZero)
{
    const std::u16string table = u"\uFEFF\"1\"\t\"2\"\t\"3\"\t4\n5\n\n";
    WriteAll(folder / "a.csv", std::as_bytes(std::span(table)));
    LayOut({Signed16Column(), Signed16Column(), Signed16Column()}, 0, 4);
    EXPECT_EQ(Walk(folder / "a.csv"), (Texts{u"1", u"2", u"3", u"5", u"0", u"0", u"0", u"0", u"0", u"0", u"0", u"0"}));
    EXPECT_EQ(Walk(folder / "a.csv"), Rows(folder / "a.csv"));
    LayOut({Signed16Column(), Signed16Column()}, 0, 1);
    EXPECT_EQ(Walk(folder / "a.csv"), (Texts{u"1", u"2"}));
}

TEST_F(RecipeWalk, TablesOfManyPiecesGiveTheFieldsThatOneReadGives)
{
    std::string text;
    for (int line = 0; line < 60000; ++line)
        text += std::to_string(line) + ",\"b\"" + std::string(static_cast<std::size_t>(line % 40), 'c') + "\r\n";
    WriteAll(folder / "a.csv", std::as_bytes(std::span(text)));
    LayOut({AnsiColumn(9), AnsiColumn(9)}, 0, 60010);
    EXPECT_TRUE(Walk(folder / "a.csv") == Rows(folder / "a.csv"));
}

TEST_F(RecipeWalk, WhatCannotBeReadIsReportedOnceInTheWordsOfItsType)
{
    LayOut({Signed16Column()}, 0, 2);
    for (const char* name : {"a.rcp", "a.erp", "a.frp"})
        ExpectFails(folder / name, u"Open file " + PathText(folder / name) + u" error!");
    ExpectFails(folder / "a.csv", u"Can't open file " + PathText(folder / "a.csv") + u"!");
    EXPECT_TRUE(fs::is_empty(folder.Path()));
}

TEST_F(RecipeWalk, ADamagedPagedFileIsReportedBeforeAnyCellIsTaken)
{
    Bytes damaged(69632);
    damaged[65536] = std::byte{1};
    WriteAll(folder / "a.frp", damaged);
    LayOut({Signed16Column()}, 32767, 2); // the first word is in the flat part
    CKeptCells cells(1);
    EXPECT_FALSE(WalkRecipe(FileType::Frp, layout, folder / "a.frp", cells, reporter));
    EXPECT_TRUE(cells.texts.empty());
    EXPECT_EQ(reporter.shown.size(), 1u);
}

TEST_F(RecipeWalk, AFileThatIsCutMeanwhileEndsThere)
{
    const fs::path path = folder / "a.rcp";
    WriteAll(path, Bytes(2'000'000, std::byte{1}));
    LayOut({Signed16Column()}, 0, 1'000'000);
    CKeptCells cells(1);
    cells.onFirst = [&] { fs::resize_file(path, 1'000'000); };
    EXPECT_TRUE(WalkRecipe(FileType::Rcp, layout, path, cells, reporter));
    ASSERT_EQ(cells.texts.size(), 1'000'000u);
    EXPECT_EQ(cells.texts[499'999], u"257");
    EXPECT_EQ(cells.texts[500'000], u"0");
    EXPECT_EQ(cells.texts.back(), u"0");
}

TEST_F(RecipeWalk, APagedFileThatIsCutMeanwhileIsReported)
{
    const fs::path path = folder / "a.frp";
    WriteAll(path, {});
    ASSERT_TRUE(PagedWrite(path, WordAddress(0), 1'000'000, Bytes(2'000'000, std::byte{1}), kFrp));
    LayOut({Signed16Column()}, 0, 1'000'000);
    CKeptCells cells(1);
    cells.onFirst = [&] { fs::resize_file(path, 1'000'000); };
    EXPECT_FALSE(WalkRecipe(FileType::Frp, layout, path, cells, reporter));
    EXPECT_EQ(reporter.shown, Texts{u"Open file " + PathText(path) + u" error!"});
}

TEST_F(RecipeWalk, WithoutMemoryForAPieceItIsReported)
{
    WriteAll(folder / "a.rcp", Bytes(3'000'000));
    LayOut({AnsiColumn(262144)}, 0, 3);
    const CAllocationLimit limit(500'000);
    ExpectFails(folder / "a.rcp", u"Open file " + PathText(folder / "a.rcp") + u" error!");
}

/// Of what a file holds, or does not, no more than a piece is at hand.
TEST_F(RecipeWalk, NoRowsAreTooManyForTheMemory)
{
    struct CLast final : CCellTaker {
        void TakeCell(std::int32_t row, std::size_t, std::u16string_view text) override
        {
            last = row;
            length = text.size();
        }
        std::int32_t last = 0;
        std::size_t length = 0;
    };
    WriteAll(folder / "a.rcp", Bytes(2, std::byte{'x'}));
    fs::resize_file(folder / "a.rcp", std::uintmax_t{64} << 20);
    WriteAll(folder / "a.frp", {});
    ASSERT_TRUE(PagedWrite(folder / "a.frp", WordAddress(40000), 1, WordBytes({u'x'}), kFrp));
    std::string line(2000, 'x');
    line += '\n';
    std::string table;
    for (int i = 0; i < 5000; ++i)
        table += line;
    WriteAll(folder / "a.csv", std::as_bytes(std::span(table)));
    LayOut({AnsiColumn(262144)}, 0, 8192); // four gigabytes
    const std::string name = (folder / "a.").string();
    for (const char* ending : {"rcp", "frp", "csv"}) {
        const fs::path path = name + ending;
        CLast taker;
        const CAllocationLimit limit(3'000'000, 3'000'000);
        EXPECT_TRUE(WalkRecipe(FileTypeOf(path).value(), layout, path, taker, reporter)) << ending;
        EXPECT_EQ(taker.last, 8191) << ending;
    }
}

} // namespace
