#include "controls/GridCtrl.h"
#include "library/FormatLibrary.h"
#include "tests/app/FrameFixture.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>

namespace fs = std::filesystem;

namespace {

/// The window over four rows of a "Word" and a two-word "Name", from a file of counting words.
struct FormatEditor : FrameFixture {
    void SetUp() override
    {
        WriteAll(folder / "a.rcp", WordBytes({1, 0x4241, 0x4443, 2, 0x4645, 0x4847, 3, 0, 0, 4, 0, 0}));
        Start();
        OpenThroughDialog("a.rcp");
        List().setFocus();
        List().setCurrentItem(List().topLevelItem(0));
    }

    QTreeWidget& List() { return Find<QTreeWidget>("listItems"); }
    void Press(const char* button) { ClickOn(*frame, button); }

    /// Opens the item menu for the current row by the keyboard and goes down to entry `index` of the enabled ones.
    void ChooseInItemMenu(int index)
    {
        QTest::keyClick(&List(), Qt::Key_F10, Qt::ShiftModifier);
        auto& menu = Find<QMenu>("menuItems");
        ASSERT_TRUE(WaitFor([&] { return menu.isVisible(); }));
        for (int i = 0; i <= index; ++i)
            QTest::keyClick(&menu, Qt::Key_Down);
        QTest::keyClick(&menu, Qt::Key_Return);
    }

    QStringList Titles()
    {
        QStringList titles;
        for (int column = 2; column < Grid().ColumnCount(); ++column)
            titles << Grid().GetItemText(0, column);
        return titles;
    }

    QStringList FirstRow()
    {
        QStringList texts;
        for (int column = 2; column < Grid().ColumnCount(); ++column)
            texts << Grid().GetItemText(1, column);
        return texts;
    }

    void Uncheck(const char* name)
    {
        auto& box = Find<QCheckBox>(name);
        QTest::mouseClick(&box, Qt::LeftButton, {}, QPoint(8, box.height() / 2));
        ASSERT_FALSE(box.isChecked());
    }

    CModalAnswer::Action Describe(const QString& description)
    {
        return [description](QWidget& dialog) {
            TypeInto(dialog, "editDescription", description);
            QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
        };
    }
};

using Texts = QStringList;

} // namespace

TEST_F(FormatEditor, AnAddedItemIsAColumnAtOnce)
{
    EXPECT_EQ(Titles(), (Texts{"Word", "Name"}));
    const CModalAnswer answer({Describe("Speed")});
    ChooseInItemMenu(0);
    EXPECT_EQ(Titles(), (Texts{"Word", "Speed", "Name"}));
    EXPECT_EQ(FirstRow(), (Texts{"1", "0", "CD\x02"})); // one digit: 0x4241 is beyond its limits
    EXPECT_EQ(Grid().GetItemText(2, 1), "RW4");
}

TEST_F(FormatEditor, WithoutAutoUseAChangeReachesTheDataWhenItIsUsed)
{
    for (const char* button : {"buttonUseFormat", "buttonRefreshData"}) {
        if (Find<QCheckBox>("checkAutoUse").isChecked())
            Uncheck("checkAutoUse");
        List().setFocus();
        const Texts before = Titles();
        QTest::keyClick(&List(), Qt::Key_Delete);
        EXPECT_EQ(Titles(), before);
        Press(button);
        EXPECT_EQ(Titles().size(), before.size() - 1);
        List().setCurrentItem(List().topLevelItem(0));
    }
}

TEST_F(FormatEditor, AModifiedItemIsShownByReturnAndByDoubleClick)
{
    const CModalAnswer answer({Describe("First"), Describe("Second")});
    QTest::keyClick(&List(), Qt::Key_Return);
    EXPECT_EQ(Titles(), (Texts{"First", "Name"}));
    const QPoint second = List().visualItemRect(List().topLevelItem(1)).center();
    QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, second);
    QTest::mouseDClick(List().viewport(), Qt::LeftButton, {}, second);
    EXPECT_EQ(Titles(), (Texts{"First", "Second"}));
    EXPECT_EQ(FirstRow(), (Texts{"1", "ABCD"}));
}

TEST_F(FormatEditor, DeletingAllItemsLeavesATableWithoutValues)
{
    ChooseInItemMenu(3);
    EXPECT_EQ(Titles(), Texts{});
    EXPECT_EQ(List().topLevelItemCount(), 0);
}

TEST_F(FormatEditor, ANewFormatIsUsedAtOnce)
{
    const CModalAnswer answer({[](QWidget& dialog) {
        TypeInto(dialog, "editName", "Words");
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
    }});
    Press("buttonAddFormat");
    EXPECT_EQ(Titles(), Texts{"Desc0"});
    EXPECT_EQ(Grid().GetItemText(3, 2), "0"); // word 2 holds 0x4443, beyond four digits
    EXPECT_EQ(Grid().GetItemText(4, 2), "2"); // word 3
    EXPECT_EQ(TextOf(frame->Document().Settings().format.name), u"Words");
}

TEST_F(FormatEditor, WithoutAFormatTheTableIsEmptyAndTheFileStaysAsItIs)
{
    const Bytes before = ReadAll(folder / "a.rcp");
    Press("buttonDeleteFormat");
    EXPECT_EQ(Grid().GetItemText(0, 2), "");
    EXPECT_EQ(Grid().GetItemText(1, 2), "");
    EXPECT_FALSE(Find<QPushButton>("buttonDeleteFormat").isEnabled());
    {
        const CModalAnswer answer(QMessageBox::Ok); // should the save say anything
        Trigger(*frame, "actionSave");
    }
    EXPECT_EQ(ReadAll(folder / "a.rcp"), before);
}

TEST_F(FormatEditor, AMessageIsShownOverTheDialogAndTheDialogStays)
{
    const CModalAnswer answer({[](QWidget& dialog) {
                                   TypeInto(dialog, "editName", "a.b");
                                   QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
                               },
                               [](QWidget& box) {
                                   EXPECT_EQ(box.parentWidget()->windowTitle(), "New Format Name Dialog");
                                   QTest::keyClick(&box, Qt::Key_Return);
                               },
                               [](QWidget& dialog) {
                                   EXPECT_EQ(TextIn(dialog, "editName"), "a.b");
                                   QTest::keyClick(&dialog, Qt::Key_Escape);
                               }});
    Press("buttonAddFormat");
    EXPECT_EQ(answer.texts,
              (std::vector<QString>{"New Format Name Dialog", "The File name Error!", "New Format Name Dialog"}));
    EXPECT_EQ(Find<QComboBox>("comboFormats").count(), 1);
}

TEST_F(FormatEditor, ANegativeStartAddressIsReportedAndTheDataShownAsBefore)
{
    TypeInto(*frame, "editStartAddress", "-1");
    const CModalAnswer answer(QMessageBox::Ok);
    Press("buttonRefreshData");
    EXPECT_EQ(answer.texts, std::vector<QString>{"The Address for reading data is error , it can' be less than 0!"});
    EXPECT_EQ(Grid().GetItemText(1, 1), "RW0");
    FormatLibrary library;
    library.load(folder / "RecipeFile.Dat");
    EXPECT_EQ(library.startAddress, -1);
}

TEST_F(FormatEditor, MoreRowsThanAnyTableHasAreReportedOnceAndTheFileStaysAsItIs)
{
    const Bytes before = ReadAll(folder / "a.rcp");
    TypeInto(*frame, "editReadCount", "2147483647");
    const CModalAnswer answer(QMessageBox::Ok);
    Press("buttonRefreshData");
    EXPECT_EQ(answer.texts, std::vector<QString>{"The data can't be shown! It has more than 16777216 rows!"});
    EXPECT_EQ(FirstRow(), Texts());
    EXPECT_TRUE(ReadAll(folder / "a.rcp") == before);
}

TEST_F(FormatEditor, RowsPastTheLastAddressShowAsMissingWords)
{
    const Bytes before = ReadAll(folder / "a.rcp");
    TypeInto(*frame, "editStartAddress", "2147483647");
    Press("buttonRefreshData");
    EXPECT_EQ(Grid().GetItemText(1, 1), "RW2147483647");
    EXPECT_EQ(Grid().GetItemText(2, 1), "RW2147483650");
    EXPECT_EQ(FirstRow(), Texts({"0", ""}));
    EXPECT_TRUE(ReadAll(folder / "a.rcp") == before);
}

TEST_F(FormatEditor, TheStatusBarTellsThatTheFormatsCouldNotBeSaved)
{
    fs::remove(folder / "RecipeFile.Dat");
    fs::create_directory(folder / "RecipeFile.Dat");
    QTest::keyClick(&List(), Qt::Key_Delete);
    EXPECT_EQ(Find<QLabel>("labelMessage").text(), "The data formats could not be saved in " + Path("RecipeFile.Dat"));
    EXPECT_EQ(Titles(), Texts{"Name"}); // used all the same
}

TEST_F(FormatEditor, FormatsComeBackAtTheNextStart)
{
    Uncheck("checkAutoUse");
    {
        const CModalAnswer answer({Describe("Speed")});
        List().setFocus();
        ChooseInItemMenu(0);
    }
    frame.reset(); // saved only here
    Start();
    ASSERT_EQ(List().topLevelItemCount(), 3);
    EXPECT_EQ(List().topLevelItem(1)->text(3), "Speed");
}
