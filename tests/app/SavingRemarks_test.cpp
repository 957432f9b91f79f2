// The mark and the remark of a cell that a save would store otherwise, and what is told of typed values.

#include "controls/Strip.h"
#include "tests/app/SaveFixture.h"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

namespace {

struct SavingRemarks : SaveFixture {};

const QString kDecimalsRemark = "holds 1.05, shown as 1.50; a save stores 1.50. The decimals shown make "
                                "another number than the one stored, and a save stores them.";

struct TypedRemarks : SaveFixture {
    void PressStoreExactly(const char* how)
    {
        if (how == std::string("mouse"))
            ClickInStrip("Store exactly");
        else if (how == std::string("keys"))
            PressInStripByKeys("Store exactly");
        else
            Choose("actionStoreExactly");
    }
};

struct StoreExactlyBy : TypedRemarks, testing::WithParamInterface<const char*> {};

INSTANTIATE_TEST_SUITE_P(Ways, StoreExactlyBy, testing::Values("mouse", "keys", "menu"),
                         [](const auto& c) { return std::string(c.param); });

} // namespace

TEST_F(SavingRemarks, TellWhatTheFileHoldsWhatIsShownAndWhatASaveStores)
{
    EXPECT_TRUE(Marks(1, kBelt).rewritten);
    EXPECT_FALSE(Marks(1, kBelt).changed);
    EXPECT_EQ(Tip(1, kBelt), "<p>H" + kDecimalsRemark.mid(1) + "</p>");
    EXPECT_EQ(Description(1, kBelt), "Belt, 1 RW0, " + kDecimalsRemark);
    ClickCell(1, kBelt);
    EXPECT_EQ(Told(), "RW0, 16 bit unsigned number, 0.00 to 99.99, " + kDecimalsRemark);
    ClickCell(4, kBelt);
    EXPECT_TRUE(Told().contains("holds 0.05, shown as 0.50; a save stores 0.50. "));
    ClickCell(2, kSteam);
    EXPECT_TRUE(
        Told().endsWith("shown as 25.0; a save stores 25. The number has more digits than are shown, and a save "
                        "stores what is shown."))
        << Told().toStdString();
    EXPECT_TRUE(Told().contains("holds 25.04"));
    for (const auto& [row, column] :
         {std::pair(2, kBelt), std::pair(3, kBelt), std::pair(1, kSteam), std::pair(4, kName)})
        EXPECT_FALSE(Marks(row, column).rewritten) << row << "," << column;
}

TEST_F(SavingRemarks, GoWithASaveAndComeBackWithPuttingBack)
{
    ClickCell(1, kBelt);
    Save();
    EXPECT_FALSE(Marks(1, kBelt).rewritten);
    EXPECT_EQ(Told(), "RW0, 16 bit unsigned number, 0.00 to 99.99");
    ClickInStrip("Put back");
    EXPECT_TRUE(Marks(1, kBelt).rewritten);
    ClickCell(2, kBelt);
    ClickCell(1, kBelt);
    EXPECT_TRUE(Told().endsWith(kDecimalsRemark));
}

TEST_F(SavingRemarks, OfACellPastTheEndSayThatTheFileGrows)
{
    WriteAll(folder / "short.rcp", WordBytes({150, 0x0000, 0x4020, 0x4241, 0x4443}));
    Open("short.rcp");
    ClickCell(2, kBelt);
    EXPECT_TRUE(Told().endsWith("lies past the end of the file; a save stores 0.00. The value lies past the end of the "
                                "file, which becomes longer."))
        << Told().toStdString();
    EXPECT_TRUE(Marks(2, kBelt).rewritten);
}

TEST_F(SavingRemarks, OfAnEditedCellGiveWay)
{
    TypeIntoCell(1, kBelt, "2.00");
    EXPECT_FALSE(Marks(1, kBelt).rewritten);
    EXPECT_TRUE(Marks(1, kBelt).changed);
    EXPECT_TRUE(Told().endsWith("changed, not saved yet"));
    Undo();
    EXPECT_TRUE(Marks(1, kBelt).rewritten);
    EXPECT_TRUE(Told().startsWith("Undone"));
}

TEST_P(StoreExactlyBy, HasTheTypedNumberItself)
{
    TypeIntoCell(2, kBelt, "1.15");
    EXPECT_EQ(Strip(), "1.15 will be stored as 1.14.");
    EXPECT_EQ(StripButtons(), QStringList{"Store exactly"});
    EXPECT_TRUE(Marks(2, kBelt).rewritten && Marks(2, kBelt).changed);
    EXPECT_TRUE(Told().endsWith("changed, not saved yet, 1.15 will be stored as 1.14"));
    EXPECT_EQ(Tip(2, kBelt), "<p>Changed, not saved yet, 1.15 will be stored as 1.14</p>");
    PressStoreExactly(GetParam());
    EXPECT_EQ(Strip(), "");
    EXPECT_EQ(QApplication::focusWidget(), &Grid());
    EXPECT_FALSE(Marks(2, kBelt).rewritten);
    EXPECT_EQ(Grid().GetItemText(2, kBelt), "1.15");
    EXPECT_EQ(NextUndo(), "Store exactly");
    SaveEditedOnly();
    EXPECT_EQ(Oven(), OvenWith({{5, 115}}));
    Save();
    EXPECT_EQ(Oven()[2 * 5], std::byte{115}) << "a save leaves the words that were asked for";
}

TEST_F(TypedRemarks, StoringExactlyIsUndoneToTheTypedText)
{
    TypeIntoCell(2, kBelt, "1.15");
    ClickInStrip("Store exactly");
    Undo();
    EXPECT_EQ(NextUndo(), "Typing");
    EXPECT_TRUE(Marks(2, kBelt).rewritten);
    Undo();
    EXPECT_EQ(Strip(), "");
    EXPECT_EQ(Field(), "0 edited, 3 others change");
    EXPECT_EQ(Grid().GetItemText(2, kBelt), "0.75");
}

TEST_F(TypedRemarks, OfANumberThatIsShownAsAnotherSaySo)
{
    TypeIntoCell(2, kBelt, "0.05");
    EXPECT_EQ(Strip(), "0.05 will be stored as it is, but shown as 0.50.");
    EXPECT_EQ(StripButtons(), QStringList());
    Save();
    EXPECT_EQ(Oven()[2 * 5], std::byte{5});
    EXPECT_TRUE(Strip().startsWith("3 values")) << "what a save did weighs more";
    QTest::mouseClick(&Find<QWidget>("buttonDismissStrip"), Qt::LeftButton);
    EXPECT_EQ(Strip(), "0.05 is stored as it is, but will be shown as 0.50.");
}

TEST_F(TypedRemarks, OfAnEmptiedCellStandInItsRemarkAlone)
{
    ClickCell(2, kBelt);
    Key(Qt::Key_Delete);
    EXPECT_EQ(Strip(), "");
    EXPECT_TRUE(Marks(2, kBelt).rewritten);
    EXPECT_TRUE(Told().endsWith("changed, not saved yet, the empty text will be stored as 0.00"))
        << Told().toStdString();
}

TEST_F(TypedRemarks, OfManyPastedValuesAreCountedShownAndStoredExactly)
{
    PasteAt(1, kBelt, "1.15\n2.50\n2.00\n1.15");
    EXPECT_EQ(Strip(), "2 values are stored, or shown again, as others than were typed.");
    EXPECT_EQ(StripButtons(), (QStringList{"Show", "Store exactly"}));
    ClickCell(3, kSteam);
    ClickInStrip("Show");
    EXPECT_EQ(Selected(), "1,2 4,2");
    ClickInStrip("Store exactly");
    EXPECT_EQ(NextUndo(), "Store exactly (2 cells)");
    EXPECT_EQ(Strip(), "");
    SaveEditedOnly();
    EXPECT_EQ(Oven(), OvenWith({{0, 115}, {5, 250}, {10, 200}, {15, 115}}));
}

TEST_F(TypedRemarks, OfAnEarlierCellAreWithdrawnByTheNextEdit)
{
    TypeIntoCell(2, kBelt, "1.15");
    TypeIntoCell(3, kBelt, "1.25");
    EXPECT_EQ(Strip(), "");
    TypeIntoCell(2, kBelt, "1.15"); // the same text: nothing is typed
    TypeIntoCell(2, kBelt, "1.16");
    EXPECT_EQ(Strip(), "1.16 will be stored as 1.15.");
    TypeIntoCell(2, kBelt, "1.50");
    EXPECT_EQ(Strip(), "");
}

TEST_F(TypedRemarks, AreWithdrawnByUndoAndByAnotherFileAndToldAgainByRedo)
{
    TypeIntoCell(2, kBelt, "1.15");
    Undo();
    EXPECT_EQ(Strip(), "");
    Redo();
    EXPECT_TRUE(Marks(2, kBelt).rewritten);
    TypeIntoCell(3, kBelt, "1.15");
    EXPECT_NE(Strip(), "");
    Save();
    OpenByDialog("a.rcp");
    EXPECT_FALSE(Strip().contains("1.15"));
}

TEST_F(TypedRemarks, AfterASaveTellWhatIsStored)
{
    TypeIntoCell(2, kBelt, "1.15");
    SaveEditedOnly();
    EXPECT_EQ(Strip(), "1.15 is stored as 1.14.");
    EXPECT_TRUE(Told().endsWith(", 1.15 is stored as 1.14")) << Told().toStdString();
    EXPECT_EQ(Tip(2, kBelt), "<p>1.15 is stored as 1.14</p>");
    EXPECT_TRUE(Marks(2, kBelt).rewritten);
    ClickInStrip("Store exactly");
    EXPECT_EQ(Field(), "1 edited, 3 others change");
    SaveEditedOnly();
    EXPECT_EQ(Oven(), OvenWith({{5, 115}}));
}

/// Many values are looked at in idle time: what they were typed into may be gone by then.
TEST_F(TypedRemarks, OfManyValuesAreForgottenWithTheirTable)
{
    MakeFile("long.rcp", 5 * 60'000);
    TypeInto(*frame, "editReadCount", "60000");
    Open("long.rcp");
    ClickCell(1, kBelt);
    Key(Qt::Key_Space, Qt::ControlModifier); // the column
    QApplication::clipboard()->setText("1.15");
    Key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(NextUndo(), "Paste (60000 cells)");
    EXPECT_EQ(Strip(), "") << "not yet";
    TypeInto(*frame, "editReadCount", "2");
    {
        const CModalAnswer answer({[](QWidget&) {}}); // how far the save is may be shown
        Open("oven.rcp");
    }
    QTest::qWait(300);
    EXPECT_FALSE(Strip().contains("typed")) << Strip().toStdString();
}

TEST_F(TypedRemarks, OfManyValuesAreToldWhenAllWereLookedAt)
{
    MakeFile("long.rcp", 5 * 20'000);
    TypeInto(*frame, "editReadCount", "20000");
    Open("long.rcp");
    ClickCell(1, kBelt);
    Key(Qt::Key_Space, Qt::ControlModifier); // the column
    QApplication::clipboard()->setText("1.15");
    Key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_TRUE(WaitFor([this] { return !Strip().isEmpty(); }));
    EXPECT_EQ(Strip(), "20000 values are stored, or shown again, as others than were typed.");
}

/// The key is pressed while the text still stands in the editor.
TEST_F(TypedRemarks, StoringExactlyTakesTheTextOfAnOpenEditor)
{
    ClickCell(2, kBelt);
    Key(Qt::Key_F2);
    QWidget* editor = QApplication::focusWidget();
    QTest::keyClick(editor, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(editor, "1.15");
    OpenEditMenuByKeys();
    EXPECT_TRUE(Grid().IsEditing());
    CloseEditMenu();
    Trigger(*frame, "actionStoreExactly");
    EXPECT_FALSE(Grid().IsEditing());
    SaveEditedOnly();
    EXPECT_EQ(Oven(), OvenWith({{5, 115}}));
}
