#include "changes/ChangeLines.h"
#include "changes/SaveRecords.h"
#include "files/RecipeFile.h"
#include "recovery/UnsavedChanges.h"
#include "tests/recovery/UnsavedSample.h"
#include "tests/support/Formats.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <random>

namespace fs = std::filesystem;

namespace {

std::string LineOf(const ChangeRecord& record)
{
    std::string line;
    AppendLine(record, line);
    return line;
}

/// A file of two rows, read as one of five, whose cells are edited.
struct UnsavedChanges : testing::Test {
    void Open(FileType type, std::int32_t start)
    {
        work.header = SampleHeader(type);
        WorkHeader& header = work.header;
        header.format = MakeFormat(
            u"Oven",
            {MakeItem(u"Level", DataType::Signed16, 1, 4, 1), ArrayOf(MakeItem(u"Temp", DataType::Float, 2, 4, 1), 2),
             MakeItem(u"Sum", DataType::Unsigned32, 2, 6), MakeItem(u"Deep", DataType::Double, 4, 6, 2),
             MakeItem(u"Bits", DataType::Hex16, 1, 4), MakeItem(u"Name", DataType::String, 2, 4)});
        header.file = folder / header.file.filename();
        header.startAddress = start;
        header.rowCount = 5;
        fs::remove(header.file);
        CRecipeRows saved;
        saved.LayOut(LayOutColumns(header.format), start, 2);
        saved.ShowNewDocument();
        saved.SetText(0, 0, u"123.4");
        saved.SetText(1, 5, u"BEEF");
        if (IsPaged(type))
            WriteAll(header.file, Bytes(type == FileType::Erp ? 1 << 20 : 1 << 16));
        ASSERT_TRUE(SaveRecipe(type, saved, header.file, reporter, progress));
        Read();
    }

    void Read()
    {
        const WorkHeader& header = work.header;
        rows.LayOut(LayOutColumns(header.format), header.startAddress, header.rowCount);
        ASSERT_EQ(ReadRecipe(header.type, rows, header.file, false, reporter, progress), Outcome::Done);
        stored = CStoredCells(rows, header.type, LogicalBytes(header.type, header.file).value());
    }

    void Edit(CellPlace place, CCellState state)
    {
        CellEdit edit{place, std::move(state)};
        rows.Exchange({&edit, 1});
    }

    /// The edited cells, as a journal has them.
    void TakeCells()
    {
        work.cells.clear();
        for (const CellPlace place : rows.EditedPlaces()) {
            UnsavedCell& cell = work.cells.emplace_back();
            cell.place = place;
            cell.state = rows.State(place);
            if (work.header.type == FileType::Csv) {
                if (stored.HasField(place))
                    cell.oldText = stored.Cells().Text(place.row, place.column);
                continue;
            }
            cell.oldWords.resize(BytesOfCell(rows, place));
            cell.oldWords.resize(stored.LoadWords(place, cell.oldWords));
        }
    }

    /// What a save of the edited cells changes, but for the zeros before them.
    std::vector<std::string> Expected()
    {
        const CEditedChanges list(rows, stored, {work.header.file, u"Oven"});
        std::vector<std::string> lines;
        for (std::size_t i = 0; i < list.Count(); ++i)
            if (list.PlaceOf(i))
                lines.push_back(LineOf(list.At(i)));
        return lines;
    }

    std::vector<std::string> Unsaved()
    {
        TakeCells();
        const CUnsavedChanges list(work);
        EXPECT_TRUE(list.IsComplete());
        std::vector<std::string> lines;
        for (std::size_t i = 0; i < list.Count(); ++i) {
            lines.push_back(LineOf(list.At(i)));
            EXPECT_EQ(list.PlaceOf(i)->row + 1, list.At(i).row);
        }
        return lines;
    }

    CTempFolder folder;
    CRecordingReporter reporter;
    CNoProgress progress;
    CRecipeRows rows;
    CStoredCells stored;
    UnsavedWork work;
};

/// Where the rows begin: in a paged file so that the last ones lie on a page that is not there.
struct FilePlace {
    FileType type;
    std::int32_t start;
};

constexpr FilePlace kFilePlaces[] = {{FileType::Rcp, 100},
                                     {FileType::Csv, 7},
                                     {FileType::Erp, (1 << 19) + 2048 - 30},
                                     {FileType::Frp, (1 << 15) + 2048 - 30},
                                     {FileType::Frp, 0}};

} // namespace

TEST_F(UnsavedChanges, AreThoseThatASaveOfTheEditedCellsMakes)
{
    constexpr const char16_t* kTexts[] = {u"1.15", u"-3", u"0", u"999.9", u"abc", u"", u"12345678", u"1.50", u"AB"};
    for (const FilePlace& place : kFilePlaces)
        for (std::uint32_t seed = 0; seed < 30; ++seed) {
            Open(place.type, place.start);
            std::mt19937 random(seed);
            for (auto edits = random() % 12; edits-- > 0;) {
                const CellPlace cell{static_cast<std::int32_t>(random() % 5), static_cast<std::uint32_t>(random() % 7)};
                const auto words = static_cast<std::size_t>(rows.Columns()[cell.column].dataLength);
                if (place.type != FileType::Csv && random() % 3 == 0)
                    Edit(cell, CCellState::OfWords(std::u16string(words, static_cast<char16_t>(random()))));
                else
                    Edit(cell, CCellState::OfText(kTexts[random() % std::size(kTexts)]));
            }
            ASSERT_EQ(Unsaved(), Expected()) << static_cast<int>(place.type) << ' ' << seed;
        }
}

TEST_F(UnsavedChanges, StandBehindTheEndOfAFileAsNew)
{
    Open(FileType::Rcp, 100);
    const auto size = fs::file_size(work.header.file);
    fs::resize_file(work.header.file, size - 3); // within the last value of the second row
    Read();
    Edit({1, 6}, CCellState::OfText(u"xyz"));
    Edit({4, 0}, CCellState::OfText(u"7.5"));
    const auto lines = Unsaved();
    EXPECT_EQ(lines, Expected());
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0], R"({"address":126,"row":2,"column":8,"item":"Name","new":"xyz","oldWords":"00",)"
                        R"("newWords":"7978 007A","why":"edited"})"
                        "\n");
}

TEST_F(UnsavedChanges, OfEditsThatStoreTheSameAreNone)
{
    Open(FileType::Rcp, 0);
    Edit({0, 0}, CCellState::OfText(u"123.40"));
    EXPECT_EQ(Unsaved(), std::vector<std::string>{});
    EXPECT_EQ(work.cells.size(), 1u);
}

TEST_F(UnsavedChanges, HaveAHeaderWithoutSizes)
{
    Open(FileType::Rcp, 100);
    std::string line;
    AppendLine(CUnsavedChanges(work).Header(), line);
    EXPECT_EQ(line, "{\"vantor\":\"changes\",\"version\":1,\"file\":\"oven.rcp\",\"type\":\"rcp\",\"tables\":"
                    "[{\"format\":\"Oven\",\"start\":100,\"rows\":5}]}\n");
}

TEST_F(UnsavedChanges, OfANewDocumentHaveNoOldSide)
{
    work.header = SampleHeader();
    work.header.file.clear();
    work.cells = {{{0, 0}, CCellState::OfText(u"0"), {}, u"0"}, {{1, 0}, CCellState::OfWords(u"\x105"), {}, u"0"}};
    const CUnsavedChanges list(work);
    EXPECT_EQ(list.Header().file, std::nullopt);
    ASSERT_EQ(list.Count(), 2u);
    EXPECT_EQ(LineOf(list.At(0)), R"({"address":100,"row":1,"column":2,"item":"Level","new":"0","newWords":"0000",)"
                                  R"("why":"edited"})"
                                  "\n");
    EXPECT_EQ(LineOf(list.At(1)), R"({"address":107,"row":2,"column":2,"item":"Level","new":"261","newWords":"0105",)"
                                  R"("why":"edited"})"
                                  "\n");
}
