#include "tests/support/Formats.h"
#include "tests/support/GuiTest.h"
#include "tests/support/TestFiles.h"
#include "tests/views/RecordingFrame.h"
#include "views/RecipeDataShowView.h"
#include "views/TextCrossing.h"

#include <QTest>
#include <gtest/gtest.h>

namespace {

struct DataPane : testing::Test {
    void Use(const DataFormat& format, std::int32_t startAddress, std::int32_t rows)
    {
        frame.document.TakeSettings({format, startAddress, rows});
    }

    void Open(const std::string& name, const Bytes& bytes)
    {
        WriteAll(folder / name, bytes);
        frame.document.StartOpen(folder / name, FileTypeOf(name));
    }

    SaveResult Save(FileType type)
    {
        return view.WriteData(type, ToQPath(frame.Document().Path()), ForeignRule::Overwrite);
    }

    QString Cell(int row, int column) { return view.Grid().GetItemText(row, column); }

    CTempFolder folder;
    CRecordingFrame frame;
    CRecipeDataShowView view{frame};
};

const DataItem kWord = MakeItem(u"Word", DataType::Signed16, 1, 5);

} // namespace

TEST_F(DataPane, EachRowIsHeadedByItsNumberAndWordAddress)
{
    Use(MakeFormat(u"three words", {kWord, MakeItem(u"Long", DataType::Signed32, 2, 10)}), 100, 4);
    Open("a.rcp", Bytes(300));
    EXPECT_EQ(view.ShowData(FileType::Rcp), 1);
    EXPECT_EQ(Cell(0, 0), "ID");
    EXPECT_EQ(Cell(0, 1), "RW_Addr");
    for (int row = 1; row <= 4; ++row)
        EXPECT_EQ(Cell(row, 0), QString::number(row));
    EXPECT_EQ(Cell(1, 1), "RW100");
    EXPECT_EQ(Cell(2, 1), "RW103");
    EXPECT_EQ(Cell(3, 1), "RW106");
    EXPECT_EQ(Cell(4, 1), "RW109");
}

TEST_F(DataPane, AnArrayMakesOneNumberedColumnAnElement)
{
    Use(MakeFormat(u"array", {ArrayOf(MakeItem(u"Temp", DataType::Signed16, 1, 5), 3), kWord}), 0, 1);
    Open("a.rcp", WordBytes({7, 8, 9, 10}));
    view.ShowData(FileType::Rcp);
    EXPECT_EQ(view.Grid().ColumnCount(), 6);
    EXPECT_EQ(Cell(0, 2), "Temp(0)");
    EXPECT_EQ(Cell(0, 3), "Temp(1)");
    EXPECT_EQ(Cell(0, 4), "Temp(2)");
    EXPECT_EQ(Cell(0, 5), "Word");
    EXPECT_EQ(Cell(1, 2), "7");
    EXPECT_EQ(Cell(1, 4), "9");
    EXPECT_EQ(Cell(1, 5), "10");
}

TEST_F(DataPane, TheGridHasItsRowHeightsAndFixedParts)
{
    Use(MakeFormat(u"word", {kWord}), 0, 3);
    Open("a.rcp", WordBytes({1, 2, 3}));
    view.ShowData(FileType::Rcp);
    EXPECT_EQ(view.Grid().RowCount(), 4);
    EXPECT_EQ(view.Grid().FixedRowCount(), 1);
    EXPECT_EQ(view.Grid().FixedColumnCount(), 2);
    EXPECT_EQ(view.Grid().RowHeight(0), 24);
    EXPECT_EQ(view.Grid().RowHeight(1), 26);
    EXPECT_EQ(view.Grid().RowHeight(3), 26);
    EXPECT_EQ(view.Grid().ColumnWidth(0), 64);
}

TEST_F(DataPane, AFormatWithoutItemsEmptiesTheGridAndReadsNothing)
{
    Use(MakeFormat(u"word", {kWord}), 0, 3);
    Open("a.rcp", WordBytes({1, 2, 3}));
    view.ShowData(FileType::Rcp);
    Use(MakeFormat(u"nothing", {}), 0, 3);
    frame.document.StartOpen("/no/such/file.rcp", FileType::Rcp);
    EXPECT_EQ(view.ShowData(FileType::Rcp), 2);
    EXPECT_EQ(view.Grid().RowCount(), 0);
    EXPECT_EQ(view.Grid().ColumnCount(), 0);
    EXPECT_TRUE(frame.reporter.shown.empty());
}

TEST_F(DataPane, AFormatThatNoGridCanShowIsReportedOnceAndTouchesNothing)
{
    const Bytes words = WordBytes({1, 2, 3});
    Use(MakeFormat(u"too wide", {ArrayOf(kWord, 40'000)}), 0, 3);
    Open("a.rcp", words);
    EXPECT_EQ(view.ShowData(FileType::Rcp), 2);
    EXPECT_EQ(view.Grid().RowCount(), 0);
    EXPECT_EQ(frame.reporter.shown.size(), 1u);
    EXPECT_FALSE(Save(FileType::Rcp));
    EXPECT_EQ(frame.reporter.shown.size(), 2u);
    EXPECT_EQ(ReadAll(folder / "a.rcp"), words);
}

TEST_F(DataPane, AFileThatCannotBeOpenedLeavesEmptyCells)
{
    Use(MakeFormat(u"word", {kWord}), 0, 2);
    frame.document.StartOpen("/no/such/file.rcp", FileType::Rcp);
    EXPECT_EQ(view.ShowData(FileType::Rcp), 1);
    EXPECT_EQ(frame.reporter.shown, std::vector<std::u16string>{u"Open file /no/such/file.rcp error!"});
    EXPECT_EQ(view.Grid().RowCount(), 3);
    EXPECT_EQ(Cell(1, 2), "");
    EXPECT_EQ(Cell(2, 1), "RW1");
}

TEST_F(DataPane, RowsThatCouldNotBeReadAreNotWritten)
{
    Use(MakeFormat(u"word", {kWord}), 0, 2);
    const Bytes words = WordBytes({1, 2, 3});
    Open("a.rcp", words);
    std::filesystem::rename(folder / "a.rcp", folder / "away.rcp");
    view.ShowData(FileType::Rcp);
    std::filesystem::rename(folder / "away.rcp", folder / "a.rcp"); // it is back before the save
    frame.reporter.shown.clear();
    EXPECT_FALSE(Save(FileType::Rcp));
    EXPECT_EQ(frame.reporter.shown,
              std::vector{u"Can't save file " + ToQPath(frame.Document().Path()).toStdU16String() +
                          u",please check file or your disk!"});
    EXPECT_EQ(ReadAll(folder / "a.rcp"), words);
    view.ShowData(FileType::Rcp); // and once it is read, it can be written
    EXPECT_TRUE(Save(FileType::Rcp));
}

TEST_F(DataPane, RowsOfATableThatCouldNotBeReadAreNotWritten)
{
    Use(MakeFormat(u"word", {kWord}), 0, 2);
    const Bytes table = BytesOf({'7', '\n', '8'});
    Open("a.csv", table);
    std::filesystem::rename(folder / "a.csv", folder / "away.csv");
    view.ShowData(FileType::Csv);
    std::filesystem::rename(folder / "away.csv", folder / "a.csv");
    frame.reporter.shown.clear();
    EXPECT_FALSE(Save(FileType::Csv));
    EXPECT_EQ(frame.reporter.shown,
              std::vector{u"Save file " + ToQPath(frame.Document().Path()).toStdU16String() + u" failed!"});
    EXPECT_EQ(ReadAll(folder / "a.csv"), table);
}

TEST_F(DataPane, RowsOfAPagedFileThatCouldNotBeOpenedAreNotWrittenOnceItCan)
{
    Use(MakeFormat(u"word", {kWord}), 0, 2);
    const Bytes words = WordBytes({1, 2, 3});
    Open("a.frp", words);
    std::filesystem::rename(folder / "a.frp", folder / "away.frp");
    view.ShowData(FileType::Frp);
    EXPECT_EQ(Cell(2, 2), "48");
    const SaveResult leftOut = Save(FileType::Frp);
    EXPECT_TRUE(leftOut.isLeftOut); // kept: there is nothing to write to, and no message about it
    EXPECT_FALSE(leftOut.isSaved);
    EXPECT_TRUE(frame.reporter.shown.empty());
    std::filesystem::rename(folder / "away.frp", folder / "a.frp");
    EXPECT_FALSE(Save(FileType::Frp));
    EXPECT_EQ(frame.reporter.shown,
              std::vector{u"Can't save file " + ToQPath(frame.Document().Path()).toStdU16String() +
                          u",please check file or your disk!"});
    EXPECT_EQ(ReadAll(folder / "a.frp"), words);
}

TEST_F(DataPane, AFileOfUnknownTypeIsOnlyLookedAt)
{
    const Bytes table = BytesOf({'7', '\n', '8', '\n'});
    Use(MakeFormat(u"word", {kWord}), 0, 2);
    Open("note.txt", table);
    EXPECT_EQ(view.ShowData(FileType::Rcp), 1); // kept
    EXPECT_FALSE(Save(FileType::Csv));
    EXPECT_FALSE(Save(FileType::Rcp));
    EXPECT_EQ(frame.reporter.shown.size(), 2u);
    EXPECT_EQ(ReadAll(folder / "note.txt"), table);
}

TEST_F(DataPane, SavingToNoPathIsReported)
{
    EXPECT_FALSE(Save(FileType::Rcp));
    EXPECT_EQ(frame.reporter.shown, std::vector<std::u16string>{u"Can't save file ,please check file or your disk!"});
}

TEST_F(DataPane, AnEditedCellMarksTheWorkAndReachesTheFile)
{
    Use(MakeFormat(u"word", {kWord}), 1, 2);
    Open("a.rcp", WordBytes({1, 2, 3, 4}));
    view.ShowData(FileType::Rcp);
    ASSERT_TRUE(ShowActive(view));
    QTest::mouseClick(view.Grid().viewport(), Qt::LeftButton, {}, QPoint(10, 10));
    QTest::keyClick(&view.Grid(), Qt::Key_7); // opens the editor, which takes the next one
    QTest::keyClick(view.window()->focusWidget(), Qt::Key_7);
    QTest::keyClick(view.window()->focusWidget(), Qt::Key_Return);
    EXPECT_EQ(Cell(1, 2), "77");
    EXPECT_TRUE(frame.Document().IsModified());
    EXPECT_TRUE(Save(FileType::Rcp));
    EXPECT_EQ(ReadAll(folder / "a.rcp"), WordBytes({1, 77, 3, 4}));
}

struct BitBrowseCase {
    const char* name;
    DataType type;
    std::int32_t words;
    bool allowed;
    friend void PrintTo(const BitBrowseCase& c, std::ostream* out) { *out << c.name; }
};

struct BitBrowse : DataPane, testing::WithParamInterface<BitBrowseCase> {};

TEST_P(BitBrowse, IsOfferedForIntegersOnly)
{
    Use(MakeFormat(u"one", {MakeItem(u"Value", GetParam().type, GetParam().words, 5)}), 0, 2);
    Open("a.rcp", Bytes(32));
    view.ShowData(FileType::Rcp);
    ASSERT_TRUE(ShowActive(view));
    EXPECT_FALSE(view.CanBitBrowse()); // no cell is chosen yet
    QTest::mouseClick(view.Grid().viewport(), Qt::LeftButton, {}, QPoint(10, 10));
    EXPECT_EQ(view.CanBitBrowse(), GetParam().allowed);
    view.ClearGrid();
    EXPECT_FALSE(view.CanBitBrowse());
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Types, BitBrowse, testing::Values(
    BitBrowseCase{"Signed16",   DataType::Signed16,   1, true},
    BitBrowseCase{"Signed32",   DataType::Signed32,   2, true},
    BitBrowseCase{"Unsigned16", DataType::Unsigned16, 1, true},
    BitBrowseCase{"Unsigned32", DataType::Unsigned32, 2, true},
    BitBrowseCase{"Hex16",      DataType::Hex16,      1, true},
    BitBrowseCase{"Hex32",      DataType::Hex32,      2, true},
    BitBrowseCase{"Float",      DataType::Float,      2, false},
    BitBrowseCase{"Double",     DataType::Double,     4, false},
    BitBrowseCase{"String",     DataType::String,     4, false}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(DataPane, ARightClickChoosesItsCell)
{
    Use(MakeFormat(u"two", {MakeItem(u"Real", DataType::Float, 2, 5), kWord}), 0, 2);
    Open("a.rcp", Bytes(32));
    view.ShowData(FileType::Rcp);
    ASSERT_TRUE(ShowActive(view));
    const QPoint second(view.Grid().columnViewportPosition(1) + 5, 5);
    QTest::mouseClick(view.Grid().viewport(), Qt::RightButton, {}, second);
    EXPECT_TRUE(view.CanBitBrowse());
}

TEST_F(DataPane, ANewDocumentShowsZerosAndEmptyStrings)
{
    Use(MakeFormat(u"mixed", {kWord, MakeItem(u"Name", DataType::String, 2, 0)}), 0, 2);
    frame.document.StartNew();
    EXPECT_EQ(view.ShowData(FileType::Rcp), 1);
    for (int row = 1; row <= 2; ++row) {
        EXPECT_EQ(Cell(row, 2), "0");
        EXPECT_EQ(Cell(row, 3), "");
    }
    EXPECT_TRUE(view.WriteDataAs(FileType::Rcp, ToQPath(folder / "new.rcp")).isSaved);
    EXPECT_EQ(ReadAll(folder / "new.rcp"), Bytes(12));
}

TEST_F(DataPane, AColumnWithoutACodingAcceptsNothing)
{
    Use(MakeFormat(u"word", {kWord}), 0, 1);
    Open("a.rcp", Bytes(2));
    view.ShowData(FileType::Rcp);
    EXPECT_TRUE(view.ValidateCellValue(2, "1"));
    EXPECT_FALSE(view.ValidateCellValue(1, "1"));
    EXPECT_FALSE(view.ValidateCellValue(3, "1"));
    EXPECT_FALSE(view.ValidateCellValue(-5, "1"));
}
