#include "controls/GridCtrl.h"
#include "library/FormatLibrary.h"
#include "tests/app/FrameFixture.h"
#include "views/TextCrossing.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <string_view>
#include <tuple>

// Rows that are not those of the current file are saved to no file, however they came to be so.

namespace {

using Texts = std::vector<QString>;

constexpr std::u16string_view kTable = u"1,AB\n2,CD\n3,EF\n4,GH\n";

Bytes AnsiBytes(std::u16string_view text)
{
    Bytes bytes;
    for (const char16_t unit : text)
        bytes.push_back(static_cast<std::byte>(unit));
    return bytes;
}

/// Presses the button of the window that shows how far the reading is.
CModalAnswer::Action CancelReading()
{
    return [](QWidget& dialog) {
        if (auto* button = dialog.findChild<QPushButton*>())
            QTest::mouseClick(button, Qt::LeftButton);
    };
}

/// The window over a library of three formats: "Row", one without items, and one with more columns than can be shown.
struct RowsOfFile : FrameFixture {
    void SetUp() override
    {
        FormatLibrary library;
        library.formats.push_back(std::make_unique<DataFormat>(MakeFormat(
            u"Row", {MakeItem(u"Word", DataType::Signed16, 1, 5), MakeItem(u"Name", DataType::String, 2, 0)})));
        library.formats.push_back(std::make_unique<DataFormat>(MakeFormat(u"Nothing", {})));
        library.formats.push_back(std::make_unique<DataFormat>(
            MakeFormat(u"Too wide", {ArrayOf(MakeItem(u"Word", DataType::Signed16, 1, 5), 40'000)})));
        library.rowCount = 4;
        library.save(folder / "RecipeFile.Dat");
        Start();
    }

    void Open(const std::string& name) { frame->OpenPath(Path(name)); }

    void UseFormat(int index)
    {
        auto& combo = Find<QComboBox>("comboFormats");
        combo.setFocus();
        QTest::keyClick(&combo, Qt::Key_Home);
        for (int i = 0; i < index; ++i)
            QTest::keyClick(&combo, Qt::Key_Down);
        ASSERT_EQ(combo.currentIndex(), index);
        Press("buttonUseFormat");
    }

    void Press(const char* button) { QTest::mouseClick(&Find<QPushButton>(button), Qt::LeftButton); }

    void DeleteAllFormats()
    {
        while (Find<QPushButton>("buttonDeleteFormat").isEnabled())
            Press("buttonDeleteFormat");
    }

    void ReadAgainWhileItIsAway(const std::string& name)
    {
        std::filesystem::rename(folder / name, folder / "away");
        Press("buttonRefreshData");
        std::filesystem::rename(folder / "away", folder / name);
    }

    /// What a failed save of `name` tells; `type` is the extension of the type that it would be saved as.
    QString SaveMessage(const std::string& name, const std::string& type) const
    {
        return type == "csv" ? "Save file " + Path(name) + " failed!"
                             : "Can't save file " + Path(name) + ",please check file or your disk!";
    }
};

/// A road on which the rows of "a" and an extension, or of the file that it leads to, stop being those of the file.
struct Road {
    const char* name;
    void (*go)(RowsOfFile& test, const std::string& file);
    const char* leadsTo = ""; ///< another file than the one it began with
    friend void PrintTo(const Road& road, std::ostream* out) { *out << road.name; }
};

struct ForeignRows : RowsOfFile, testing::WithParamInterface<std::tuple<Road, std::string>> {
    void SetUp() override
    {
        RowsOfFile::SetUp();
        for (const std::string& name : {File(), std::string("note.txt"), std::string("other.") + Type()})
            WriteAll(folder / name, AnsiBytes(kTable));
        {
            const CModalAnswer answer(QMessageBox::Ok); // to what the road itself has to tell
            Open(File());
            std::get<Road>(GetParam()).go(*this, File());
        }
        EXPECT_TRUE(ShowActive(*frame));
        target = *std::get<Road>(GetParam()).leadsTo == '\0' ? File() : std::get<Road>(GetParam()).leadsTo;
        title = Title();
    }

    std::string Type() const { return std::get<1>(GetParam()); }
    std::string File() const { return "a." + Type(); }

    void ExpectNothingIsChanged()
    {
        for (const std::string& name : {File(), std::string("note.txt"), std::string("other.") + Type()})
            EXPECT_EQ(ReadAll(folder / name), AnsiBytes(kTable)) << name;
        EXPECT_EQ(Title(), title);
        EXPECT_EQ(ToQPath(frame->Document().Path()), Path(target));
    }

    std::string target;
    std::string title;
};

TEST_P(ForeignRows, AreNotSaved)
{
    const CModalAnswer answer(QMessageBox::Ok);
    QTest::keyClick(frame.get(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(answer.texts, Texts{SaveMessage(target, Type())});
    ExpectNothingIsChanged();
}

TEST_P(ForeignRows, AreNotSavedUnderAnotherName)
{
    const std::string other = "other." + Type();
    const CModalAnswer answer(
        {ChoosePath(Path(other)), CModalAnswer::Press(QMessageBox::Yes), CModalAnswer::Press(QMessageBox::Ok)});
    Trigger(*frame, "actionSaveAs");
    ASSERT_FALSE(answer.texts.empty());
    EXPECT_EQ(answer.texts.back(), SaveMessage(other, Type()));
    ExpectNothingIsChanged();
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Roads, ForeignRows, testing::Combine(testing::Values(
    Road{"UnknownExtension",  [](RowsOfFile& test, const std::string&) { test.Open("note.txt"); }, "note.txt"},
    Road{"UnknownExtensionShownAsWords", [](RowsOfFile& test, const std::string&) {
             test.Open("note.txt");
             test.Press("buttonUseFormat");
         }, "note.txt"},
    Road{"FormatWithoutWords", [](RowsOfFile& test, const std::string&) { test.UseFormat(1); }},
    Road{"BeyondTheLimits",    [](RowsOfFile& test, const std::string&) { test.UseFormat(2); }},
    Road{"NoFormat",           [](RowsOfFile& test, const std::string&) { test.DeleteAllFormats(); }},
    Road{"CouldNotBeRead",     [](RowsOfFile& test, const std::string& file) { test.ReadAgainWhileItIsAway(file); }}),
    testing::Values(std::string("rcp"), std::string("csv"), std::string("erp"), std::string("frp"))),
    [](const auto& c) { return std::string(std::get<0>(c.param).name) + "_" + std::get<1>(c.param); });
// clang-format on

TEST_F(RowsOfFile, OnceReadAgainAreSaved)
{
    WriteAll(folder / "a.csv", AnsiBytes(kTable));
    Open("a.csv");
    UseFormat(1);
    UseFormat(0);
    TypeIntoCell(1, 2, "7");
    const CModalAnswer answer(QMessageBox::Ok);
    QTest::keyClick(frame.get(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(answer.texts, Texts{});
    EXPECT_FALSE(frame->Document().IsModified());
    EXPECT_EQ(ReadAll(folder / "a.csv")[4], std::byte{'7'}); // after the mark and a quote
}

TEST_F(RowsOfFile, ThatWentAfterAnEditAreNotSavedAtClosing)
{
    WriteAll(folder / "a.csv", AnsiBytes(kTable));
    Open("a.csv");
    TypeIntoCell(1, 2, "7");
    UseFormat(1);
    const CModalAnswer answer({CModalAnswer::Press(QMessageBox::Yes), CModalAnswer::Press(QMessageBox::Ok)});
    EXPECT_TRUE(frame->close());
    ASSERT_EQ(answer.texts.size(), 2u);
    EXPECT_EQ(answer.texts.back(), SaveMessage("a.csv", "csv"));
    EXPECT_EQ(ReadAll(folder / "a.csv"), AnsiBytes(kTable));
}

TEST_F(RowsOfFile, OfATableInCapitalsThatIsShownAsWordsAreSavedAsShown) // kept
{
    WriteAll(folder / "A.CSV", AnsiBytes(kTable));
    Open("A.CSV");
    EXPECT_EQ(Grid().GetItemText(1, 2), "1");
    Press("buttonRefreshData");
    EXPECT_NE(Grid().GetItemText(1, 2), "1");
    const QString shown = Grid().GetItemText(1, 2);
    QTest::keyClick(frame.get(), Qt::Key_S, Qt::ControlModifier);
    Open("A.CSV");
    EXPECT_EQ(Grid().GetItemText(1, 2), shown);
}

TEST_F(RowsOfFile, ThatWereCancelledWhileTheyWereReadAreNotSaved)
{
    Bytes table;
    const Bytes line = AnsiBytes(u"1,AB\n");
    constexpr int kRows = 4'000'000;
    for (int i = 0; i < kRows; ++i)
        table.insert(table.end(), line.begin(), line.end());
    WriteAll(folder / "a.csv", table);
    auto& rows = Find<QLineEdit>("editReadCount");
    rows.setFocus();
    rows.selectAll();
    QTest::keyClicks(&rows, QString::number(kRows));
    {
        const CModalAnswer cancel({CancelReading()});
        Open("a.csv");
        ASSERT_FALSE(cancel.texts.empty()) << "it was read too fast to be cancelled";
    }
    EXPECT_EQ(Grid().RowCount(), 0);
    EXPECT_TRUE(ShowActive(*frame));
    const CModalAnswer answer(QMessageBox::Ok);
    QTest::keyClick(frame.get(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(answer.texts, Texts{SaveMessage("a.csv", "csv")});
    EXPECT_EQ(ReadAll(folder / "a.csv"), table);
}

TEST_F(RowsOfFile, OfANewFileInAFormatWithoutWordsAreNotSaved)
{
    UseFormat(1);
    Trigger(*frame, "actionNew");
    const CModalAnswer answer({ChoosePath(Path("new.csv")), CModalAnswer::Press(QMessageBox::Ok)});
    Trigger(*frame, "actionSave");
    EXPECT_EQ(answer.texts, (Texts{"Save as", SaveMessage("new.csv", "csv")}));
    EXPECT_FALSE(std::filesystem::exists(folder / "new.csv"));
    EXPECT_TRUE(frame->Document().IsNew());
}

} // namespace
