#include "controls/GridCtrl.h"
#include "tests/app/FrameFixture.h"
#include "tests/files/FileSizeLimit.h"
#include "views/TextCrossing.h"

#include <QLineEdit>
#include <QTest>

#include <optional>

// A "Save as" that fails changes nothing: the next save goes to the file of the title.

namespace {

struct SaveAsFailure : FrameFixture {
    void SetUp() override
    {
        Start();
        MakeFile("a.rcp");
        OpenThroughDialog("a.rcp");
        TypeIntoCell(1, 2, "9");
    }

    /// Has other rows with an edit.
    void ReadFrom(int startAddress)
    {
        auto& field = Find<QLineEdit>("editStartAddress");
        field.setFocus();
        field.selectAll();
        QTest::keyClicks(&field, QString::number(startAddress));
        QTest::keyClick(&field, Qt::Key_Return);
        TypeIntoCell(1, 2, "9");
        firstByte = 2 * static_cast<std::size_t>(startAddress);
    }

    /// Fails to save as `name`; what the last message said.
    QString FailToSaveAs(const std::string& name, std::optional<rlim_t> longestFile = std::nullopt)
    {
        const bool isThere = std::filesystem::exists(folder / name);
        std::vector<CModalAnswer::Action> actions = {ChoosePath(Path(name))};
        if (isThere)
            actions.push_back(CModalAnswer::Press(QMessageBox::Yes)); // to replace it
        actions.push_back(CModalAnswer::Press(QMessageBox::Ok));
        const CModalAnswer answer(actions);
        const std::optional<CFileSizeLimit> limit =
            longestFile ? std::optional<CFileSizeLimit>(std::in_place, *longestFile) : std::nullopt;
        Trigger(*frame, "actionSaveAs");
        EXPECT_EQ(answer.texts.size(), actions.size());
        return answer.texts.back();
    }

    void ExpectTheOpenFileIsStillTheCurrentOne()
    {
        EXPECT_EQ(ToQPath(frame->Document().Path()), Path("a.rcp"));
        EXPECT_EQ(frame->Document().Type(), FileType::Rcp);
        EXPECT_EQ(Title(), TitleWith("a.rcp"));
        EXPECT_TRUE(frame->Document().IsModified());
        EXPECT_TRUE(ShowActive(*frame));
        const CModalAnswer none(QMessageBox::Ok);
        QTest::keyClick(frame.get(), Qt::Key_S, Qt::ControlModifier);
        EXPECT_EQ(none.texts, std::vector<QString>{});
        EXPECT_EQ(ReadAll(folder / "a.rcp").at(firstByte), std::byte{9});
        EXPECT_FALSE(frame->Document().IsModified());
    }

    QString FailedRecipe(const std::string& name) const
    {
        return "Can't save file " + Path(name) + ",please check file or your disk!";
    }

    std::size_t firstByte = 0; ///< of the rows
};

} // namespace

TEST_F(SaveAsFailure, OfARecipeInNoFolderChangesNothing)
{
    EXPECT_EQ(FailToSaveAs("nofolder/q.rcp"), FailedRecipe("nofolder/q.rcp"));
    ExpectTheOpenFileIsStillTheCurrentOne();
}

TEST_F(SaveAsFailure, OfATableInNoFolderChangesNothing)
{
    EXPECT_EQ(FailToSaveAs("nofolder/q.csv"), "Save file " + Path("nofolder/q.csv") + " failed!");
    ExpectTheOpenFileIsStillTheCurrentOne();
}

TEST_F(SaveAsFailure, OfAPagedFileInNoFolderChangesNothing)
{
    EXPECT_EQ(FailToSaveAs("nofolder/q.erp"), "Can't open the file that need save!");
    ExpectTheOpenFileIsStillTheCurrentOne();
}

TEST_F(SaveAsFailure, OfARecipeThatCouldBeMadeButHasNoRoomForTheRowsChangesNothing)
{
    ReadFrom(100); // the file is made with 100 bytes, the rows begin after 200
    EXPECT_EQ(FailToSaveAs("q.rcp", 200), FailedRecipe("q.rcp"));
    ExpectTheOpenFileIsStillTheCurrentOne();
}

TEST_F(SaveAsFailure, OfARecipeThatCannotBeMadeForItsStartAddressTakesNameAndTypeOver) // kept
{
    ReadFrom(100);
    EXPECT_EQ(FailToSaveAs("nofolder/q.rcp"), "Open " + Path("nofolder/q.rcp") + " failed ,It can't save!");
    EXPECT_EQ(ToQPath(frame->Document().Path()), Path("nofolder/q.rcp"));
    EXPECT_EQ(Title(), TitleWith("a.rcp"));
    EXPECT_TRUE(frame->Document().IsModified());
    std::filesystem::create_directory(folder / "nofolder");
    EXPECT_TRUE(ShowActive(*frame));
    QTest::keyClick(frame.get(), Qt::Key_S, Qt::ControlModifier); // the rows are to be saved there
    EXPECT_EQ(ReadAll(folder / "nofolder/q.rcp").at(firstByte), std::byte{9});
    EXPECT_FALSE(frame->Document().IsModified());
}

TEST_F(SaveAsFailure, OfAPagedFileThatCouldBeMadeButHasNoRoomForTheRowsChangesNothing)
{
    EXPECT_EQ(FailToSaveAs("q.frp", 10), FailedRecipe("q.frp"));
    ExpectTheOpenFileIsStillTheCurrentOne();
}

TEST_F(SaveAsFailure, OfATableThatFindsNoRoomChangesNothing)
{
    EXPECT_EQ(FailToSaveAs("q.csv", 10), "Save file " + Path("q.csv") + " failed!");
    ExpectTheOpenFileIsStillTheCurrentOne();
}

TEST_F(SaveAsFailure, OfADamagedPagedFileChangesNothing)
{
    Bytes damaged(65536 + 4096);
    damaged[65536] = std::byte{1}; // a table that lies in the flat part
    WriteAll(folder / "q.frp", damaged);
    ReadFrom(32767); // across the end of the flat part
    EXPECT_EQ(FailToSaveAs("q.frp"), FailedRecipe("q.frp"));
    EXPECT_EQ(ReadAll(folder / "q.frp"), damaged);
    ExpectTheOpenFileIsStillTheCurrentOne();
}
