#include "controls/GridCtrl.h"
#include "tests/app/FrameFixture.h"
#include "tests/support/ProcessRun.h"
#include "views/TextCrossing.h"

#include <QLineEdit>
#include <QTest>

#include <string>

namespace {

/// The bytes of a table: the mark, then the text, low byte first.
Bytes TableBytes(std::u16string_view text)
{
    Bytes bytes = BytesOf({0xFF, 0xFE});
    for (const char16_t unit : text) {
        bytes.push_back(static_cast<std::byte>(unit & 0xFF));
        bytes.push_back(static_cast<std::byte>(unit >> 8));
    }
    return bytes;
}

/// The rows 5 AB, 258 CD, -1 EF and 0 GH, as a flat file and the flat part of a paged one hold them.
Bytes FourRows()
{
    return WordBytes({5, 0x4241, 0, 258, 0x4443, 0, 0xFFFF, 0x4645, 0, 0, 0x4847, 0});
}

/// The same rows with 7 in the place of 258.
Bytes FourRowsWithSeven()
{
    Bytes bytes = FourRows();
    bytes[6] = std::byte{7};
    bytes[7] = std::byte{0};
    return bytes;
}

struct TypeCase {
    const char* name;
    FileType type;
    Bytes before;         ///< the four rows
    const char* cellText; ///< what the last cell of the first row shows of them
    Bytes after;          ///< with 7 typed over 258
    friend void PrintTo(const TypeCase& c, std::ostream* out) { *out << c.name; }
};

struct EveryFileType : FrameFixture, testing::WithParamInterface<TypeCase> {
    void SetUp() override { Start(); }

    std::string FileName() const { return std::string("rows.") + GetParam().name; }

    void ExpectIsCurrent(const std::string& name)
    {
        EXPECT_EQ(Title(), TitleWith(name));
        EXPECT_EQ(ToQPath(frame->Document().Path()), Path(name));
        EXPECT_EQ(frame->Document().Type(), GetParam().type);
        EXPECT_TRUE(frame->Document().IsOpen());
    }

    void ExpectIsUnsaved(bool modified, bool newFile)
    {
        EXPECT_EQ(frame->Document().IsModified(), modified);
        EXPECT_EQ(frame->Document().IsNew(), newFile);
    }

    void SaveAs(const std::string& name)
    {
        const CModalAnswer answer({ChoosePath(Path(name))});
        Trigger(*frame, "actionSaveAs");
        EXPECT_EQ(answer.texts, std::vector<QString>{"Save as"});
        EXPECT_TRUE(ShowActive(*frame)); // the offscreen platform does not do it after a dialog
    }

    void TypeStartAddress(const QString& text)
    {
        auto& field = Find<QLineEdit>("editStartAddress");
        field.setFocus();
        field.selectAll();
        QTest::keyClicks(&field, text);
    }
};

} // namespace

TEST_P(EveryFileType, IsOpenedEditedAndSavedInPlace)
{
    WriteAll(folder / FileName(), GetParam().before);
    OpenThroughDialog(FileName());
    ExpectIsCurrent(FileName());
    ExpectIsUnsaved(false, false);
    EXPECT_EQ(Grid().GetItemText(1, 2), "5");
    EXPECT_EQ(Grid().GetItemText(1, 3), GetParam().cellText);
    EXPECT_EQ(Grid().GetItemText(3, 2), "-1");

    TypeIntoCell(2, 2, "7");
    ExpectIsUnsaved(true, false);
    QTest::keyClick(frame.get(), Qt::Key_S, Qt::ControlModifier);
    ExpectIsCurrent(FileName());
    ExpectIsUnsaved(false, false);
    EXPECT_EQ(ReadAll(folder / FileName()), GetParam().after);
}

TEST_P(EveryFileType, IsWhatSaveAsMakesOfItsName)
{
    WriteAll(folder / "source.rcp", FourRows());
    OpenThroughDialog("source.rcp");
    TypeIntoCell(1, 2, "6");
    TypeIntoCell(1, 2, "5");
    ExpectIsUnsaved(true, false);
    SaveAs(FileName());
    ExpectIsCurrent(FileName());
    ExpectIsUnsaved(false, false);
    EXPECT_EQ(ReadAll(folder / FileName()), GetParam().before);

    TypeIntoCell(2, 2, "7"); // the next save goes there too, in that type
    Trigger(*frame, "actionSave");
    EXPECT_NE(ReadAll(folder / FileName()), GetParam().before);
    EXPECT_EQ(ReadAll(folder / "source.rcp"), FourRows());
}

TEST_P(EveryFileType, NewRowsAreSavedUnderTheChosenName)
{
    Trigger(*frame, "actionNew");
    ExpectIsUnsaved(false, true);
    EXPECT_EQ(frame->Document().Type(), FileType::Rcp);
    SaveAs(FileName());
    ExpectIsCurrent(FileName());
    ExpectIsUnsaved(false, false);
    const Bytes zeros(24);
    EXPECT_EQ(ReadAll(folder / FileName()),
              GetParam().type == FileType::Csv
                  ? TableBytes(u"\"0\"\t\"\"\r\n\"0\"\t\"\"\r\n\"0\"\t\"\"\r\n\"0\"\t\"\"\r\n")
                  : zeros);
}

TEST_P(EveryFileType, IsWrittenByteForByteAsTheCommandLineDoes)
{
    TypeStartAddress("32767"); // the rows lie across the end of the shorter flat part
    Trigger(*frame, "actionNew");
    TypeIntoCell(1, 2, "-2");
    TypeIntoCell(4, 3, "xy");
    SaveAs("window.erp");
    SaveAs("window-" + FileName());
    const ProcessResult run = RunProcess(
        VANTOR_CLI_PROGRAM, {"convert", (folder / "window.erp").string(), (folder / ("cli-" + FileName())).string(),
                             "--library", (folder / "RecipeFile.Dat").string(), "--start", "32767", "--rows", "4"});
    EXPECT_EQ(run.exitCode, 0) << run.error;
    EXPECT_EQ(ReadAll(folder / ("window-" + FileName())), ReadAll(folder / ("cli-" + FileName())));
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, EveryFileType, testing::Values(
    TypeCase{"rcp", FileType::Rcp, FourRows(), "AB", FourRowsWithSeven()},
    // kept: what no TAB ends comes back with its quotes, which are then text like any other
    TypeCase{"csv", FileType::Csv,
             TableBytes(u"\"5\"\t\"AB\"\r\n\"258\"\t\"CD\"\r\n\"-1\"\t\"EF\"\r\n\"0\"\t\"GH\"\r\n"), "\"AB\"",
             TableBytes(u"\"5\"\t\"\"AB\"\"\r\n\"7\"\t\"\"CD\"\"\r\n\"-1\"\t\"\"EF\"\"\r\n\"0\"\t\"\"GH\"\"\r\n")},
    TypeCase{"erp", FileType::Erp, FourRows(), "AB", FourRowsWithSeven()},
    TypeCase{"frp", FileType::Frp, FourRows(), "AB", FourRowsWithSeven()}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

#ifdef VANTOR_SPREADSHEET

namespace {

/// The table at `path` as the spreadsheet program reads it, written by it with commas between the cells, in UTF-8.
std::string AsSpreadsheetReads(const std::filesystem::path& path, const std::filesystem::path& folder)
{
    const auto out = folder / "out";
    const ProcessResult run = RunProcess(
        VANTOR_SPREADSHEET, {"-env:UserInstallation=file://" + (folder / "profile").string(), "--headless",
                             "--infilter=Text - txt - csv (StarCalc):9,34,65535,1", "--convert-to",
                             "csv:Text - txt - csv (StarCalc):44,34,76,1", "--outdir", out.string(), path.string()});
    EXPECT_EQ(run.exitCode, 0) << run.error;
    const Bytes bytes = ReadAll(out / path.filename());
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

} // namespace

TEST_F(FrameFixture, SavedTableOpensInASpreadsheetWithTheSameRowsAndColumns)
{
    Start();
    WriteAll(folder / "source.rcp", FourRows());
    OpenThroughDialog("source.rcp");
    TypeIntoCell(2, 3, "Öl");
    const CModalAnswer answer({ChoosePath(Path("table.csv"))});
    Trigger(*frame, "actionSaveAs");
    EXPECT_EQ(AsSpreadsheetReads(folder / "table.csv", folder.Path()),
              "5,\"AB\"\n258,\"Öl\"\n-1,\"EF\"\n0,\"GH\"\n"); // numbers are numbers, texts are texts
}

#endif
