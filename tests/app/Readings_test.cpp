// By what a recipe is read: remembered, offered, and told where the words look unlike the format.

#include "app/MainFrame.h"
#include "controls/GridCtrl.h"
#include "recovery/LastReadings.h"
#include "tests/app/SaveFixture.h"

#include <QApplication>
#include <QComboBox>
#include <QMenu>
#include <QTest>
#include <QToolButton>

#include <fstream>
#include <optional>

namespace fs = std::filesystem;

namespace {

const QString kOvenOffer = "Last read as Oven recipe from RW100, 12 rows.";

/// The window over copies of the sample, "a.rcp" and "b.rcp", with nothing open.
struct Readings : SaveFixture {
    void SetUp() override
    {
        fs::copy_file(fs::path(VANTOR_EXAMPLES) / "RecipeFile.Dat", folder / "RecipeFile.Dat",
                      fs::copy_options::overwrite_existing);
        for (const char* name : {"a.rcp", "b.rcp"})
            fs::copy_file(fs::path(VANTOR_EXAMPLES) / "bakery-oven.rcp", folder / name);
        StartAgain();
    }

    void StartAgain()
    {
        frame.reset();
        Start();
        frame->KeepIn(folder / "data");
        Activate();
    }

    void Enter(const QString& start, const QString& rows)
    {
        TypeInto(*frame, "editStartAddress", start);
        TypeInto(*frame, "editReadCount", rows);
    }

    void ChooseFormat(const QString& name)
    {
        auto& box = Find<QComboBox>("comboFormats");
        box.setFocus();
        QTest::keyClick(&box, Qt::Key_Home);
        for (int i = 0; i < box.count() && box.currentText() != name; ++i)
            QTest::keyClick(&box, Qt::Key_Down);
        ASSERT_EQ(box.currentText(), name);
    }

    void ReadAs(const QString& format, const QString& start, const QString& rows)
    {
        ChooseFormat(format);
        Enter(start, rows);
        ClickOn(*frame, "buttonUseFormat");
    }

    void WriteLayout(const std::string& text) { std::ofstream(folder / ".vantor.json") << text; }

    std::optional<LastReading> Remembered(const std::string& name) const
    {
        return CLastReadings(folder / "data").Find(folder / name);
    }

    QString FirstAddress() { return Grid().GetItemText(1, 1); }

    /// Opens the menu of several readings and chooses one by the keyboard.
    void ChooseReading(int index)
    {
        ASSERT_TRUE(WaitFor([] { return QApplication::activePopupWidget() != nullptr; }));
        QWidget* menu = QApplication::activePopupWidget();
        for (int i = 0; i < index; ++i)
            QTest::keyClick(menu, Qt::Key_Down);
        QTest::keyClick(menu, Qt::Key_Return);
    }
};

const LastReading kOvenReading{u"Oven recipe", 100, 12};
const LastReading kShiftReading{u"Shift log", 600, 15};

} // namespace

TEST_F(Readings, AreOfferedWhenTheRecipeIsOpenedWithOthers)
{
    Open("a.rcp");
    ClickOn(*frame, "buttonRefreshData"); // Oven recipe from RW100
    EXPECT_EQ(Remembered("a.rcp"), kOvenReading);
    Open("b.rcp");
    ReadAs("Shift log", "600", "15");
    EXPECT_EQ(Strip(), "");
    Open("a.rcp");
    EXPECT_TRUE(Strip().endsWith(kOvenOffer)) << Strip().toStdString();
    EXPECT_EQ(StripButtons(), (QStringList{"Use", "Forget"}));
    ClickInStrip("Use");
    EXPECT_EQ(Strip(), "");
    EXPECT_EQ(FirstAddress(), "RW100");
    EXPECT_EQ(Grid().RowCount(), 13);
    EXPECT_EQ(Grid().GetItemText(1, 3), "Farmhouse loaf");
    EXPECT_EQ(Find<QComboBox>("comboFormats").currentText(), "Oven recipe");
    EXPECT_EQ(TextIn(*frame, "editStartAddress"), "100");
    EXPECT_EQ(TextIn(*frame, "editReadCount"), "12");
    Grid().setFocus();
    EXPECT_EQ(NextUndo(), "Reading again");
    Undo();
    EXPECT_EQ(FirstAddress(), "RW600");
    EXPECT_EQ(Remembered("b.rcp"), kShiftReading);
}

TEST_F(Readings, AreOfferedInANewWindowAndByTheKeyboard)
{
    Open("b.rcp");
    ReadAs("Shift log", "600", "15");
    StartAgain();
    ChooseFormat("Oven recipe");
    Enter("100", "12");
    Open("b.rcp");
    EXPECT_EQ(Strip(), "Last read as Shift log from RW600, 15 rows.");
    PressInStripByKeys("Use");
    EXPECT_EQ(FirstAddress(), "RW600");
    EXPECT_EQ(Strip(), "");
}

TEST_F(Readings, AreNotOfferedWhereItIsReadSoAlready)
{
    Open("a.rcp");
    ClickOn(*frame, "buttonRefreshData");
    Open("b.rcp");
    Open("a.rcp");
    EXPECT_EQ(Strip(), "");
}

TEST_F(Readings, AreOfferedNoMoreOnceTheUserReadsOtherwise)
{
    Open("a.rcp");
    ReadAs("Shift log", "600", "15");
    ChooseFormat("Oven recipe");
    Enter("100", "12");
    Open("a.rcp");
    ASSERT_EQ(Strip(), "Last read as Shift log from RW600, 15 rows.");
    ReadAs("Line setup", "0", "1");
    EXPECT_FALSE(Strip().contains("Last read"));
    EXPECT_EQ(Remembered("a.rcp"), (LastReading{u"Line setup", 0, 1}));
}

TEST_F(Readings, OfAFormatThatIsGoneAreNotOffered)
{
    Open("a.rcp");
    ReadAs("Shift log", "600", "15");
    ClickOn(*frame, "buttonDeleteFormat");
    ChooseFormat("Oven recipe");
    Enter("100", "12");
    Open("a.rcp");
    EXPECT_EQ(Strip(), "");
}

TEST_F(Readings, CanBeForgotten)
{
    Open("a.rcp");
    ReadAs("Shift log", "600", "15");
    ChooseFormat("Oven recipe");
    Enter("100", "12");
    Open("a.rcp");
    ClickInStrip("Forget");
    EXPECT_EQ(Strip(), "");
    EXPECT_EQ(Remembered("a.rcp"), std::nullopt);
    Open("a.rcp");
    EXPECT_EQ(Strip(), "");
}

TEST_F(Readings, AreRememberedWhenTheRecipeIsSaved)
{
    Open("a.rcp");
    EXPECT_EQ(Remembered("a.rcp"), std::nullopt) << "to look is no reason";
    TypeIntoCell(1, 4, "FL0801");
    Save();
    EXPECT_EQ(Remembered("a.rcp"), kOvenReading);
}

TEST_F(Readings, OfANewRecipeAreRememberedUnderItsName)
{
    Trigger(*frame, "actionNew");
    {
        const CModalAnswer answer({ChoosePath(Path("new.rcp"))});
        Save();
    }
    EXPECT_EQ(Remembered("new.rcp"), kOvenReading);
    EXPECT_EQ(Strip(), "");
}

TEST_F(Readings, GoWithNew)
{
    Open("a.rcp");
    ReadAs("Shift log", "600", "15");
    ChooseFormat("Oven recipe");
    Enter("100", "12");
    Open("a.rcp");
    ASSERT_NE(Strip(), "");
    Trigger(*frame, "actionNew");
    EXPECT_EQ(Strip(), "");
}

TEST_F(Readings, ThatCannotBeKeptStopNothing)
{
    fs::create_directories(folder / "data");
    WriteAll(folder / "data" / "readings.json", BytesOf({'{'}));
    fs::create_directory(folder / "data" / "readings.json.damaged");
    std::ofstream(folder / "data" / "readings.json.damaged" / "x") << "x";
    Open("a.rcp");
    ReadAs("Shift log", "600", "15");
    EXPECT_EQ(FirstAddress(), "RW600");
    EXPECT_EQ(Strip(), "");
}

TEST_F(Readings, OfTheLayoutFileAreOffered)
{
    WriteLayout(R"({"tables":[{"files":"*.rcp","format":"Oven recipe","start":100,"rows":12}]})");
    ChooseFormat("Shift log");
    Enter("600", "15");
    Open("a.rcp");
    EXPECT_EQ(Strip(), "This folder's layout names: Oven recipe from RW100, 12 rows.");
    EXPECT_EQ(StripButtons(), QStringList{"Use"});
    ClickInStrip("Use");
    EXPECT_EQ(FirstAddress(), "RW100");
    EXPECT_EQ(Remembered("a.rcp"), kOvenReading);
}

TEST_F(Readings, OfALayoutWithSeveralTablesAreChosenInAMenu)
{
    WriteLayout(R"({"tables":[{"files":"*.rcp","format":"Oven recipe","start":100,"rows":12},)"
                R"({"files":"*.rcp","format":"No such","start":0,"rows":1},)"
                R"({"files":"*.rcp","format":"Shift log","start":600}]})");
    ChooseFormat("Line setup");
    Enter("0", "1");
    Open("a.rcp");
    const QString text = "This folder's layout names: Oven recipe from RW100, 12 rows; Shift log from RW600, 15 rows.";
    EXPECT_EQ(Strip(), text);
    ClickInStrip("Use…");
    ChooseReading(1);
    EXPECT_EQ(FirstAddress(), "RW600");
    EXPECT_EQ(Grid().RowCount(), 16);
    EXPECT_EQ(Strip(), "");
}

TEST_F(Readings, OfALayoutAreNotOfferedWhereOneIsInUse)
{
    WriteLayout(R"({"tables":[{"files":"*.rcp","format":"Oven recipe","start":100,"rows":12},)"
                R"({"files":"*.rcp","format":"Shift log","start":600}]})");
    Open("a.rcp");
    EXPECT_EQ(Strip(), "");
}

TEST_F(Readings, OfADamagedLayoutAreNone)
{
    WriteLayout("{");
    ChooseFormat("Shift log");
    Enter("600", "15");
    Open("a.rcp");
    EXPECT_EQ(Strip(), "");
}

TEST_F(Readings, ThatLookUnlikeTheFormatAreTold)
{
    Enter("101", "12");
    Open("a.rcp");
    EXPECT_TRUE(Strip().startsWith("These words look unlike Oven recipe: ")) << Strip().toStdString();
    EXPECT_TRUE(Strip().endsWith(" Is RW101 the right start address?"));
    EXPECT_EQ(StripButtons(), QStringList{});
    TypeIntoCell(1, 4, "x"); // it stays
    EXPECT_NE(Strip(), "");
    Enter("100", "12");
    ClickOn(*frame, "buttonRefreshData");
    EXPECT_EQ(Strip(), "");
    Grid().setFocus();
    Undo();
    EXPECT_TRUE(Strip().startsWith("These words look unlike Oven recipe: "));
    Redo();
    EXPECT_EQ(Strip(), "");
}

TEST_F(Readings, ThatLookUnlikeHaveTheLastOneBesideThem)
{
    Open("a.rcp");
    ClickOn(*frame, "buttonRefreshData");
    Enter("0", "12");
    Open("a.rcp");
    EXPECT_TRUE(Strip().startsWith("These words look unlike Oven recipe: ")) << Strip().toStdString();
    EXPECT_TRUE(Strip().endsWith("Is RW0 the right start address? " + kOvenOffer));
    ClickInStrip("Use");
    EXPECT_EQ(FirstAddress(), "RW100");
    EXPECT_EQ(Strip(), "");
}

TEST_F(Readings, ThatWereDismissedStayAwayUntilTheNextReading)
{
    Enter("101", "12");
    Open("a.rcp");
    ASSERT_NE(Strip(), "");
    Find<QToolButton>("buttonDismissStrip").click();
    EXPECT_EQ(Strip(), "");
    ClickCell(2, 3);
    TypeIntoCell(1, 4, "x");
    EXPECT_EQ(Strip(), "");
    ClickOn(*frame, "buttonRefreshData");
    EXPECT_NE(Strip(), "");
}

TEST_F(Readings, OfANewRecipeLookRight)
{
    Trigger(*frame, "actionNew");
    EXPECT_EQ(Strip(), "");
}
