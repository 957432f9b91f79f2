#include "controls/GridCtrl.h"
#include "tests/app/FrameFixture.h"
#include "tests/support/ListOpenChoice.h"
#include "views/TextCrossing.h"

#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QTest>

#include <sys/stat.h>

namespace {

using Texts = std::vector<QString>;

struct FileCommands : FrameFixture {
    void SetUp() override { Start(); }

    void TypeSetting(const char* edit, const QString& text)
    {
        auto& field = Find<QLineEdit>(edit);
        field.setFocus();
        field.selectAll();
        QTest::keyClicks(&field, text);
    }

    void MakePipe(const char* name) { ASSERT_EQ(mkfifo((folder / name).c_str(), 0600), 0); }

    bool IsUnsaved() const
    {
        return frame->Document().IsOpen() && (frame->Document().IsModified() || frame->Document().IsNew());
    }
};

} // namespace

TEST_F(FileCommands, TheWindowStartsWithNothingOpen)
{
    EXPECT_EQ(Title(), "Vantor");
    EXPECT_FALSE(frame->Document().IsOpen());
    EXPECT_FALSE(frame->Document().IsNew());
    EXPECT_FALSE(frame->Document().IsModified());
    EXPECT_EQ(frame->Document().Type(), FileType::Rcp);
    EXPECT_TRUE(ToQPath(frame->Document().Path()).isEmpty());
}

TEST_F(FileCommands, NewRightAfterStartSavesNothing)
{
    const CModalAnswer answer(QMessageBox::Ok);
    Trigger(*frame, "actionNew");
    EXPECT_EQ(answer.texts, Texts{});
    EXPECT_EQ(Title(), "Vantor[NoName]");
    EXPECT_TRUE(frame->Document().IsOpen());
    EXPECT_TRUE(frame->Document().IsNew());
    EXPECT_EQ(Grid().RowCount(), 5);
    EXPECT_EQ(Grid().GetItemText(1, 2), "0");
    EXPECT_EQ(Grid().GetItemText(1, 3), "");
}

TEST_F(FileCommands, NewTwiceAsksWhereToSaveAndGoesOnWhenThatIsCancelled)
{
    Trigger(*frame, "actionNew");
    TypeIntoCell(1, 2, "5");
    const CModalAnswer answer({CancelDialog()});
    Trigger(*frame, "actionNew");
    EXPECT_EQ(answer.titles, Texts{"Save as"});
    EXPECT_EQ(Title(), "Vantor[NoName]");
    EXPECT_TRUE(frame->Document().IsNew());
    EXPECT_EQ(Grid().GetItemText(1, 2), "0");
}

TEST_F(FileCommands, OpenReadsTheChosenFile)
{
    WriteAll(folder / "a.rcp", WordBytes({5, 0x4241, 0, 6}));
    OpenThroughDialog("a.rcp");
    EXPECT_EQ(Title(), TitleWith("a.rcp"));
    EXPECT_TRUE(frame->Document().IsOpen());
    EXPECT_EQ(ToQPath(frame->Document().Path()), Path("a.rcp"));
    EXPECT_EQ(frame->Document().Type(), FileType::Rcp);
    EXPECT_EQ(Grid().GetItemText(1, 2), "5");
    EXPECT_EQ(Grid().GetItemText(1, 3), "AB");
    EXPECT_EQ(Grid().GetItemText(2, 2), "6");
}

TEST_F(FileCommands, NamesAreTypedWithTheListOfCompletionsOpen)
{
    MakeFile("a.rcp");
    MakeFile("recipes.rcp");
    OpenThroughDialog("a.rcp"); // the folder in which the dialogs start from now on
    {
        const CListOpenChoice choice("recipes.rcp");
        Trigger(*frame, "actionOpen");
        EXPECT_TRUE(choice.WasListOpen() && choice.ClosedListFirst());
        EXPECT_EQ(Title(), TitleWith("recipes.rcp"));
    }
    ASSERT_TRUE(ShowActive(*frame));
    const CListOpenChoice choice("recipe");
    Trigger(*frame, "actionSaveAs");
    EXPECT_TRUE(choice.WasListOpen() && choice.ClosedListFirst());
    EXPECT_EQ(Title(), TitleWith("recipe.rcp"));
}

TEST_F(FileCommands, OpenCancelledTakesTheNameFromTheTitleOnly)
{
    MakeFile("a.rcp");
    OpenThroughDialog("a.rcp");
    const CModalAnswer answer({CancelDialog()});
    Trigger(*frame, "actionOpen");
    EXPECT_EQ(Title(), "Vantor");
    EXPECT_EQ(ToQPath(frame->Document().Path()), Path("a.rcp"));
    EXPECT_EQ(Grid().RowCount(), 5);
}

TEST_F(FileCommands, OpenOfAMissingFileIsReported)
{
    const CModalAnswer answer({ChoosePath(Path("gone.rcp")), CModalAnswer::Press(QMessageBox::Ok)});
    Trigger(*frame, "actionOpen");
    EXPECT_EQ(answer.texts, (Texts{"Open file", "Open error! " + Path("gone.rcp") + " doesn't exit!"}));
    EXPECT_EQ(answer.titles.back(), "Vantor");
    EXPECT_EQ(Title(), "Vantor");
    EXPECT_FALSE(frame->Document().IsOpen());
}

TEST_F(FileCommands, OpenOfAFolderIsRefused)
{
    for (const char* name : {"plain", "a.rcp", "a.csv", "a.frp", "note.txt"}) {
        std::filesystem::create_directory(folder / name);
        const CModalAnswer answer(QMessageBox::Ok);
        frame->OpenPath(Path(name));
        const bool isTable = std::string(name).ends_with(".csv");
        EXPECT_EQ(answer.texts,
                  Texts{isTable ? "Can't open file " + Path(name) + "!" : "Open file " + Path(name) + " error!"});
        EXPECT_EQ(Title(), "Vantor");
        EXPECT_FALSE(frame->Document().IsOpen());
        EXPECT_TRUE(ToQPath(frame->Document().Path()).isEmpty());
        EXPECT_FALSE(Action("actionSave").isEnabled());
        EXPECT_EQ(Grid().RowCount(), 0);
    }
    const CModalAnswer answer(QMessageBox::Ok);
    frame->OpenPath("/");
    const QString root = QDir::toNativeSeparators(QFileInfo("/").absoluteFilePath());
    EXPECT_EQ(answer.texts, Texts{"Open file " + root + " error!"});
    EXPECT_FALSE(Action("actionSave").isEnabled());
}

TEST_F(FileCommands, OpenOfAFolderLeavesTheOpenFileAndItsTypeAlone)
{
    WriteAll(folder / "a.rcp", WordBytes({5}));
    std::filesystem::create_directory(folder / "b.csv");
    OpenThroughDialog("a.rcp");
    {
        const CModalAnswer answer(QMessageBox::Ok);
        frame->OpenPath(Path("b.csv"));
    }
    EXPECT_EQ(ToQPath(frame->Document().Path()), Path("a.rcp"));
    EXPECT_EQ(Grid().GetItemText(1, 2), "5");
    QString firstFilter;
    const CModalAnswer answer({[&](QWidget& dialog) {
        firstFilter = dialog.findChild<QComboBox*>("fileTypeCombo")->currentText();
        QTest::keyClick(&dialog, Qt::Key_Escape);
    }});
    Trigger(*frame, "actionOpen");
    EXPECT_EQ(firstFilter, "(*.rcp)");
}

TEST_F(FileCommands, TheOpenDialogGoesIntoAFolder)
{
    std::filesystem::create_directory(folder / "a.rcp");
    const CModalAnswer answer({ChoosePath(Path("a.rcp")), CancelDialog()});
    Trigger(*frame, "actionOpen");
    EXPECT_EQ(answer.titles, (Texts{"Open file", "Open file"}));
    EXPECT_FALSE(frame->Document().IsOpen());
}

TEST_F(FileCommands, OpenRemembersTheTypeForTheNextDialog)
{
    MakeFile("a.frp");
    {
        const CModalAnswer answer({ChoosePath(Path("a.frp")), CModalAnswer::Press(QMessageBox::Ok)});
        Trigger(*frame, "actionOpen");
    }
    QString firstFilter;
    QString proposed;
    const CModalAnswer answer({[&](QWidget& dialog) {
        firstFilter = dialog.findChild<QComboBox*>("fileTypeCombo")->currentText();
        proposed = dialog.findChild<QLineEdit*>("fileNameEdit")->text();
        QTest::keyClick(&dialog, Qt::Key_Escape);
    }});
    Trigger(*frame, "actionOpen");
    EXPECT_EQ(firstFilter, "(*.frp)");
    EXPECT_EQ(proposed, "new");
}

TEST_F(FileCommands, ANameWithoutAnExtensionGetsThatOfTheChosenType)
{
    Trigger(*frame, "actionNew");
    const CModalAnswer answer({ChoosePath(Path("plain"))});
    Trigger(*frame, "actionSaveAs");
    EXPECT_EQ(Title(), TitleWith("plain.rcp"));
    EXPECT_TRUE(std::filesystem::exists(folder / "plain.rcp"));
}

TEST_F(FileCommands, OpenOfAnUnknownTypeShowsNothing)
{
    MakeFile("a.rcp");
    OpenThroughDialog("a.rcp");
    MakeFile("notes.txt");
    frame->OpenPath(Path("notes.txt"));
    EXPECT_EQ(Title(), TitleWith("notes.txt"));
    EXPECT_EQ(frame->Document().Type(), FileType::Rcp);
    EXPECT_EQ(Grid().RowCount(), 0); // the rows of a.rcp must not be saved into notes.txt
}

TEST_F(FileCommands, OpenAfterNewKeepsTheNewFlagWhenSavingIsCancelled)
{
    MakeFile("a.rcp");
    Trigger(*frame, "actionNew");
    {
        const CModalAnswer answer({CancelDialog(), ChoosePath(Path("a.rcp"))});
        Trigger(*frame, "actionOpen");
        EXPECT_EQ(answer.titles, (Texts{"Save as", "Open file"}));
    }
    EXPECT_TRUE(frame->Document().IsNew());
    EXPECT_EQ(Title(), TitleWith("a.rcp"));
    const CModalAnswer answer({CancelDialog()});
    Trigger(*frame, "actionSave");
    EXPECT_EQ(answer.titles, Texts{"Save as"});
}

TEST_F(FileCommands, OpenSavesUnsavedWorkWithoutAQuestion)
{
    MakeFile("a.rcp");
    MakeFile("b.rcp");
    OpenThroughDialog("a.rcp");
    TypeIntoCell(1, 2, "9");
    OpenThroughDialog("b.rcp");
    EXPECT_EQ(ReadAll(folder / "a.rcp")[0], std::byte{9});
    EXPECT_FALSE(frame->Document().IsModified());
}

TEST_F(FileCommands, SaveWritesInPlaceAndClearsTheMark)
{
    MakeFile("a.rcp");
    OpenThroughDialog("a.rcp");
    TypeIntoCell(2, 2, "258");
    EXPECT_TRUE(frame->Document().IsModified());
    QTest::keyClick(frame.get(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_FALSE(frame->Document().IsModified());
    EXPECT_EQ(Title(), TitleWith("a.rcp"));
    Bytes expected(24);
    expected[6] = std::byte{2};
    expected[7] = std::byte{1};
    EXPECT_EQ(ReadAll(folder / "a.rcp"), expected);
}

TEST_F(FileCommands, SaveEndsAnOpenEditFirst)
{
    MakeFile("a.rcp");
    OpenThroughDialog("a.rcp");
    ClickCell(1, 2);
    QTest::keyClick(&Grid(), Qt::Key_F2);
    QTest::keyClick(frame->focusWidget(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(frame->focusWidget(), "7");
    Trigger(*frame, "actionSave");
    EXPECT_EQ(ReadAll(folder / "a.rcp")[0], std::byte{7});
    EXPECT_FALSE(frame->Document().IsModified());
}

TEST_F(FileCommands, ARefusedTextStopsTheSave)
{
    MakeFile("a.rcp");
    OpenThroughDialog("a.rcp");
    TypeIntoCell(1, 2, "3");
    ClickCell(2, 2);
    QTest::keyClick(&Grid(), Qt::Key_F2);
    QTest::keyClicks(frame->focusWidget(), "bad");
    const CModalAnswer answer(QMessageBox::Ok);
    Trigger(*frame, "actionSave");
    EXPECT_EQ(answer.texts, Texts{"Col 2,Row 2 data error !"});
    EXPECT_TRUE(frame->Document().IsModified());
    EXPECT_EQ(ReadAll(folder / "a.rcp"), Bytes(24));
}

TEST_F(FileCommands, AFailedSaveIsReportedAndTheWorkStaysUnsaved)
{
    MakeFile("a.rcp");
    OpenThroughDialog("a.rcp");
    TypeIntoCell(1, 2, "3");
    std::filesystem::remove(folder / "a.rcp");
    std::filesystem::create_directory(folder / "a.rcp"); // a folder in its place cannot be written
    MakeFile("b.rcp");
    const CModalAnswer answer(QMessageBox::Ok);
    Trigger(*frame, "actionSave");
    const QString message = "Can't save file " + Path("a.rcp") + ",please check file or your disk!";
    EXPECT_EQ(answer.texts, Texts{message});
    EXPECT_TRUE(frame->Document().IsModified());
    frame->OpenPath(Path("b.rcp")); // would lose the edit
    EXPECT_EQ(answer.texts, (Texts{message, message}));
    EXPECT_EQ(Grid().GetItemText(1, 2), "3");
    EXPECT_EQ(ToQPath(frame->Document().Path()), Path("a.rcp"));
}

TEST_F(FileCommands, CtrlSBeforeAnythingIsOpenWritesToAnEmptyPath)
{
    EXPECT_FALSE(Action("actionSave").isEnabled());
    const CModalAnswer answer(QMessageBox::Ok);
    QTest::keyClick(frame.get(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(answer.texts, Texts{"Can't save file ,please check file or your disk!"});
}

TEST_F(FileCommands, SaveAsWritesTheNewFileAndTakesItsName)
{
    MakeFile("a.rcp");
    OpenThroughDialog("a.rcp");
    TypeIntoCell(1, 2, "9");
    const CModalAnswer answer({ChoosePath(Path("b.RCP"))});
    Trigger(*frame, "actionSaveAs");
    EXPECT_EQ(Title(), TitleWith("b.RCP"));
    EXPECT_EQ(ToQPath(frame->Document().Path()), Path("b.RCP"));
    EXPECT_FALSE(IsUnsaved());
    EXPECT_EQ(ReadAll(folder / "b.RCP")[0], std::byte{9});
    EXPECT_EQ(ReadAll(folder / "a.rcp"), Bytes(24));
}

TEST_F(FileCommands, SaveAsCancelledChangesNothing)
{
    Trigger(*frame, "actionNew");
    const CModalAnswer answer({CancelDialog()});
    Trigger(*frame, "actionSaveAs");
    EXPECT_EQ(Title(), "Vantor[NoName]");
    EXPECT_TRUE(IsUnsaved());
}

TEST_F(FileCommands, SaveAsAsksBeforeItReplacesAFile)
{
    MakeFile("old.rcp", 100);
    Trigger(*frame, "actionNew");
    const CModalAnswer answer({ChoosePath(Path("old.rcp")), CModalAnswer::Press(QMessageBox::No), CancelDialog()});
    Trigger(*frame, "actionSaveAs");
    EXPECT_EQ(ReadAll(folder / "old.rcp").size(), 200u);
    EXPECT_TRUE(frame->Document().IsNew());
}

TEST_F(FileCommands, SaveAsUnderAnUnknownExtensionWritesNothingYetCountsAsSaved) // kept
{
    Trigger(*frame, "actionNew");
    const CModalAnswer answer({ChoosePath(Path("notes.txt"))});
    Trigger(*frame, "actionSaveAs");
    EXPECT_EQ(Title(), TitleWith("notes.txt"));
    EXPECT_FALSE(std::filesystem::exists(folder / "notes.txt"));
    EXPECT_FALSE(IsUnsaved());
    EXPECT_TRUE(ToQPath(frame->Document().Path()).isEmpty());
}

TEST_F(FileCommands, SaveAsWithAStartAddressPutsOneZeroByteAWordBeforeTheRows) // kept: not two
{
    TypeSetting("editStartAddress", "100");
    Trigger(*frame, "actionNew");
    TypeIntoCell(4, 2, "1");
    const CModalAnswer answer({ChoosePath(Path("b.rcp"))});
    Trigger(*frame, "actionSaveAs");
    EXPECT_EQ(ReadAll(folder / "b.rcp").size(), 200u + 24u); // the rows begin at byte 200 all the same
    EXPECT_EQ(ReadAll(folder / "b.rcp")[218], std::byte{1});
}

TEST_F(FileCommands, SaveAsOfRowsThatCouldNotBeReadLeavesTheTargetAlone)
{
    TypeSetting("editStartAddress", "100");
    MakeFile("old.rcp", 300);
    const Bytes old = ReadAll(folder / "old.rcp");
    MakePipe("a.rcp");
    MakePipe("a.frp");
    for (const char* unread : {"a.rcp", "a.frp"}) {
        {
            const CModalAnswer refused(QMessageBox::Ok);
            frame->OpenPath(Path(unread));
        }
        const CModalAnswer answer(
            {ChoosePath(Path("old.rcp")), CModalAnswer::Press(QMessageBox::Yes), CModalAnswer::Press(QMessageBox::Ok)});
        Trigger(*frame, "actionSaveAs");
        ASSERT_FALSE(answer.texts.empty());
        EXPECT_EQ(answer.texts.back(), "Can't save file " + Path("old.rcp") + ",please check file or your disk!");
        EXPECT_EQ(ReadAll(folder / "old.rcp"), old);
        EXPECT_EQ(Title(), TitleWith(unread));
    }
}

TEST_F(FileCommands, SaveAsToAPlaceThatCannotBeWrittenKeepsTheWorkUnsaved)
{
    TypeSetting("editStartAddress", "100");
    Trigger(*frame, "actionNew");
    const QString path = Path("no such folder/b.rcp");
    const CModalAnswer answer({ChoosePath(path), CModalAnswer::Press(QMessageBox::Ok)});
    Trigger(*frame, "actionSaveAs");
    ASSERT_FALSE(answer.texts.empty());
    EXPECT_EQ(answer.texts.back(), "Open " + path + " failed ,It can't save!");
    EXPECT_EQ(ToQPath(frame->Document().Path()), path); // kept: taken over before the file is created
    EXPECT_EQ(Title(), "Vantor[NoName]");
    EXPECT_TRUE(IsUnsaved());
}

TEST_F(FileCommands, SaveAsOfAPagedFileThatCannotBeCreatedChangesNothing)
{
    Trigger(*frame, "actionNew");
    const CModalAnswer answer({ChoosePath(Path("no such folder/b.erp")), CModalAnswer::Press(QMessageBox::Ok)});
    Trigger(*frame, "actionSaveAs");
    ASSERT_FALSE(answer.texts.empty());
    EXPECT_EQ(answer.texts.back(), "Can't open the file that need save!");
    EXPECT_TRUE(ToQPath(frame->Document().Path()).isEmpty());
    EXPECT_EQ(frame->Document().Type(), FileType::Rcp);
    EXPECT_TRUE(IsUnsaved());
}

TEST_F(FileCommands, ATitleShowsOddNamesAsTheyStand)
{
    MakeFile("a[*]b.rcp");
    frame->OpenPath(Path("a[*]b.rcp"));
    EXPECT_EQ(frame->windowHandle()->title(), QString::fromStdString(TitleWith("a[*]b.rcp")));
}
