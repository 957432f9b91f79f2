// What the window tells of a cell besides its text: in the status bar, in its tip, to screen readers.

#include "controls/GridCtrl.h"
#include "controls/GridModel.h"
#include "library/FormatLibrary.h"
#include "tests/app/FrameFixture.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QTest>

namespace {

/// The word lies within -9 and 99 in these tests.
struct CellInfo : FrameFixture {
    void SetUp() override
    {
        FormatLibrary library;
        library.formats.push_back(std::make_unique<DataFormat>(MakeFormat(
            u"Row", {MakeItem(u"Temp", DataType::Signed16, 1, 2), MakeItem(u"Name", DataType::String, 2, 0)})));
        library.rowCount = 4;
        library.startAddress = 10;
        library.save(folder / "RecipeFile.Dat");
        Bytes words(2 * 10);
        const Bytes rows = WordBytes({5, 0x4241, 0, 500, 0x4443, 0, 7, 0x4645, 0, 8, 0x4847, 0});
        words.insert(words.end(), rows.begin(), rows.end());
        WriteAll(folder / "a.rcp", words);
        Start();
        frame->OpenPath(Path("a.rcp"));
    }

    std::string Message() { return Find<QLabel>("labelMessage").text().toStdString(); }
    QString Description(int row, int column)
    {
        return Grid().Model().BodyIndex(row, column).data(Qt::AccessibleDescriptionRole).toString();
    }
    QString Tip(int row, int column) { return Grid().Model().BodyIndex(row, column).data(Qt::ToolTipRole).toString(); }
    GridCellMarks Marks(int row, int column) { return Grid().Model().Marks(row, column); }
};

TEST_F(CellInfo, TheStatusBarTellsAddressTypeAndLimitsOfTheChosenCell)
{
    EXPECT_EQ(Message(), "Ready");
    ClickCell(1, 2);
    EXPECT_EQ(Message(), "RW10, 16 bit signed number, -9 to 99");
    QTest::keyClick(&Grid(), Qt::Key_Right);
    EXPECT_EQ(Message(), "RW11, String Data, up to 2 characters");
    QTest::keyClick(&Grid(), Qt::Key_End, Qt::ControlModifier);
    EXPECT_EQ(Message(), "RW20, String Data, up to 2 characters");
    Trigger(*frame, "actionNew");
    EXPECT_EQ(Message(), "Ready");
}

TEST_F(CellInfo, ACommandsPromptTakesTheStatusBarForAWhileOnly)
{
    ClickCell(1, 2);
    QStatusTipEvent prompt("Open file");
    QCoreApplication::sendEvent(frame.get(), &prompt);
    EXPECT_FALSE(Find<QLabel>("labelMessage").isVisible());
    QStatusTipEvent none("");
    QCoreApplication::sendEvent(frame.get(), &none);
    EXPECT_TRUE(Find<QLabel>("labelMessage").isVisible());
    EXPECT_EQ(Message(), "RW10, 16 bit signed number, -9 to 99");
}

TEST_F(CellInfo, AChangedCellSaysSoUntilItIsSaved)
{
    TypeIntoCell(1, 2, "6");
    EXPECT_TRUE(Marks(1, 2).changed);
    EXPECT_FALSE(Marks(1, 3).changed);
    EXPECT_EQ(Message(), "RW10, 16 bit signed number, -9 to 99, changed, not saved yet");
    EXPECT_EQ(Tip(1, 2), "<p>Changed, not saved yet</p>");
    EXPECT_EQ(Description(1, 2), "Temp, 1 RW10, changed, not saved yet");
    EXPECT_EQ(Tip(1, 3), "");
    EXPECT_EQ(Description(1, 3), "Name, 1 RW10");
    Trigger(*frame, "actionSave");
    EXPECT_FALSE(Marks(1, 2).changed);
    EXPECT_EQ(Message(), "RW10, 16 bit signed number, -9 to 99");
    EXPECT_EQ(Description(1, 2), "Temp, 1 RW10");
    TypeIntoCell(1, 2, "7");
    EXPECT_TRUE(Marks(1, 2).changed);
}

TEST_F(CellInfo, AnEditWithTheSameTextChangesNothing)
{
    TypeIntoCell(1, 2, "5");
    EXPECT_FALSE(Marks(1, 2).changed);
}

TEST_F(CellInfo, ASaveUnderAnotherNameIsASaveToo)
{
    TypeIntoCell(1, 2, "6");
    const CModalAnswer answer({ChoosePath(Path("b.csv"))});
    Trigger(*frame, "actionSaveAs");
    EXPECT_FALSE(Marks(1, 2).changed);
}

TEST_F(CellInfo, AfterAFailedSaveTheMarksStay)
{
    TypeIntoCell(1, 2, "6");
    std::filesystem::remove(folder / "a.rcp");
    std::filesystem::create_directory(folder / "a.rcp"); // a folder in its place cannot be written
    const CModalAnswer answer(QMessageBox::Ok);
    Trigger(*frame, "actionSave");
    EXPECT_EQ(answer.texts.size(), 1u);
    EXPECT_TRUE(Marks(1, 2).changed);
}

TEST_F(CellInfo, RowsReadAgainAreUnchanged)
{
    TypeIntoCell(1, 2, "6");
    QTest::mouseClick(&Find<QPushButton>("buttonRefreshData"), Qt::LeftButton);
    EXPECT_EQ(Grid().GetItemText(1, 2), "5");
    EXPECT_FALSE(Marks(1, 2).changed);
}

TEST_F(CellInfo, EveryCellThatAPasteChangedIsMarked)
{
    QGuiApplication::clipboard()->setText("6\tX\n5\tY\n");
    ClickCell(3, 2);
    QTest::keyClick(&Grid(), Qt::Key_V, Qt::ControlModifier);
    for (const int row : {3, 4})
        for (const int column : {2, 3})
            EXPECT_TRUE(Marks(row, column).changed) << row << "," << column;
    EXPECT_FALSE(Marks(2, 2).changed);
    EXPECT_EQ(Message(), "RW16, 16 bit signed number, -9 to 99, changed, not saved yet");
}

/// 500 is shown as "0": only the mark tells that the file holds something else.
TEST_F(CellInfo, AValueOutsideItsLimitsSaysWhatItIs)
{
    EXPECT_EQ(Grid().GetItemText(2, 2), "0");
    EXPECT_TRUE(Marks(2, 2).outOfRange);
    EXPECT_FALSE(Marks(1, 2).outOfRange);
    EXPECT_FALSE(Marks(2, 3).outOfRange);
    EXPECT_TRUE(Marks(2, 2).rewritten);
    const QString remark =
        "he value 500 lies outside the limits -9 to 99, holds 500, shown as 0; a save stores 0. Because of its limits "
        "the number is shown as another one, and a save stores what is shown.";
    EXPECT_EQ(Tip(2, 2), "<p>T" + remark + "</p>");
    EXPECT_EQ(Description(2, 2), "Temp, 2 RW13, t" + remark);
    ClickCell(2, 2);
    EXPECT_EQ(Message(), "RW13, 16 bit signed number, -9 to 99, t" + remark.toStdString());
    TypeIntoCell(2, 2, "9");
    EXPECT_FALSE(Marks(2, 2).outOfRange);
    EXPECT_EQ(Message(), "RW13, 16 bit signed number, -9 to 99, changed, not saved yet");
}

TEST_F(CellInfo, DeleteClearsThroughTheCheck)
{
    ClickCell(1, 2);
    QTest::keyClick(&Grid(), Qt::Key_Delete);
    EXPECT_EQ(Grid().GetItemText(1, 2), ""); // an empty text is zero, which the limits allow
    EXPECT_TRUE(Marks(1, 2).changed);
    EXPECT_TRUE(frame->Document().IsModified());
}

TEST_F(CellInfo, ColumnsAreFittedOncePerLoad)
{
    const int fitted = Grid().ColumnWidth(2);
    EXPECT_EQ(Grid().ColumnWidth(0), 64);
    TypeIntoCell(1, 3, "ZZ");
    Grid().SetColumnWidth(2, 200);
    Trigger(*frame, "actionSave");
    EXPECT_EQ(Grid().ColumnWidth(2), 200);
    QTest::mouseClick(&Find<QPushButton>("buttonRefreshData"), Qt::LeftButton);
    EXPECT_EQ(Grid().ColumnWidth(2), fitted);
}

} // namespace
