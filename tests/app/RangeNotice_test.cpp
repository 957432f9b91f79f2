// What is told of values that were just given to cells and lie outside their sensible range, and how it is taken back.

#include "controls/GridModel.h"
#include "library/FormatLibrary.h"
#include "library/NotesFile.h"
#include "tests/app/NotesFixture.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QTableView>
#include <QTest>

namespace {

constexpr int kManyRows = 20'000;

struct RangeNotice : NotesFixture {};

struct RangeNoticeOfMany : NotesFixture {
    RangeNoticeOfMany() : NotesFixture(kManyRows) {}
    static QString Many() { return QStringLiteral("0.7\t0.7\n").repeated(kManyRows); }
};

/// With a second format, so that another one can be chosen, which takes what others wrote.
struct RangeNoticeOfOthers : NotesFixture {
    RangeNoticeOfOthers()
    {
        FormatLibrary library;
        library.load(folder / "RecipeFile.Dat");
        library.formats.push_back(
            std::make_unique<DataFormat>(MakeFormat(u"Belt", {MakeItem(u"Speed", DataType::Unsigned16, 1, 5)})));
        library.save(folder / "RecipeFile.Dat");
    }

    void AnotherProgramHasZonesBeginAt(int lowest) const
    {
        const auto path = NotesPathOf(folder / "RecipeFile.Dat");
        auto notes = ReadNotes(path).notes;
        for (auto& [place, ofItem] : notes)
            if (place.item == u"Zone °C")
                ofItem.lowest = CDecimal(lowest);
        EXPECT_TRUE(WriteNotes(notes, path));
    }
};

constexpr const char* kTold = "Zone °C(0) of row 1: 0.5 lies outside 150 to 280 °C.";

} // namespace

TEST_F(RangeNotice, ATypedValueIsTakenAndToldAtOnce)
{
    TypeIntoCell(1, kZone0, "0.5");
    EXPECT_EQ(Grid().GetItemText(1, kZone0), "0.5");
    EXPECT_EQ(Strip(), kTold);
    EXPECT_EQ(StripButtons(), QStringList{"Undo"});
}

TEST_F(RangeNotice, AValueWithinItsRangeOrOfAnItemWithoutOneIsNotTold)
{
    TypeIntoCell(1, kZone0, "150");
    EXPECT_EQ(Strip(), "");
    TypeIntoCell(1, kCount, "30000");
    EXPECT_EQ(Strip(), "");
}

TEST_F(RangeNotice, UndoTakesThatEditBack)
{
    TypeIntoCell(1, kCount, "7");
    TypeIntoCell(1, kZone0, "0.5");
    ClickInStrip("Undo");
    EXPECT_EQ(Grid().GetItemText(1, kZone0), "240.0");
    EXPECT_EQ(Grid().GetItemText(1, kCount), "7");
    EXPECT_EQ(Strip(), "");
    EXPECT_TRUE(Grid().hasFocus());
    EXPECT_EQ(Told(), "Undone: Typing");
}

TEST_F(RangeNotice, UndoIsThereForTheKeyboard)
{
    TypeIntoCell(1, kZone0, "0.5");
    PressInStripByKeys("Undo");
    EXPECT_EQ(Grid().GetItemText(1, kZone0), "240.0");
    EXPECT_EQ(Strip(), "");
}

TEST_F(RangeNotice, AnotherEditEndsTheOffer)
{
    TypeIntoCell(1, kZone0, "0.5");
    TypeIntoCell(1, kCount, "7");
    EXPECT_EQ(Strip(), "");
    EXPECT_TRUE(Marks(1, kZone0).unusual); // which the mark goes on telling
}

TEST_F(RangeNotice, UndoAndRedoByKeysEndTheOffer)
{
    TypeIntoCell(1, kZone0, "0.5");
    Undo();
    EXPECT_EQ(Strip(), "");
    Redo();
    EXPECT_EQ(Strip(), "");
}

TEST_F(RangeNotice, ASaveDoesNot)
{
    TypeIntoCell(1, kZone0, "0.5");
    Save();
    EXPECT_EQ(Strip(), kTold);
    ClickInStrip("Undo");
    EXPECT_EQ(Grid().GetItemText(1, kZone0), "240.0");
}

TEST_F(RangeNotice, AnotherFileDoes)
{
    TypeIntoCell(1, kZone0, "0.5");
    Save();
    Open("a.rcp");
    EXPECT_EQ(Strip(), "");
}

TEST_F(RangeNotice, SeveralValuesAreCountedInOneSentence)
{
    PasteZones("0.5\t200\n281\t282\n");
    EXPECT_TRUE(WaitFor([this] { return Strip() == "3 values lie outside their sensible range."; }));
    EXPECT_EQ(StripButtons(), (QStringList{"Undo", "Show"}));
    ClickInStrip("Undo");
    EXPECT_EQ(Grid().GetItemText(1, kZone0), "240.0");
    EXPECT_EQ(Grid().GetItemText(2, kZone1), "0.5");
}

TEST_F(RangeNotice, ShowListsThemAndGoesToThem)
{
    PasteZones("0.5\t200\n281\t282\n");
    ClickInStrip("Show");
    EXPECT_TRUE(Panel().isVisible());
    EXPECT_EQ(Panel().windowTitle(), "Outside the sensible range");
    EXPECT_EQ(Listed(), (QStringList{"1 Zone °C(0) >0.5 °C lies outside 150 to 280 °C",
                                     "2 Zone °C(0) >281 °C lies outside 150 to 280 °C",
                                     "2 Zone °C(1) >282 °C lies outside 150 to 280 °C"}));
    ChooseLine(2);
    QTest::keyClick(&Lines(), Qt::Key_Return);
    EXPECT_EQ(Selected(), "2,3");
}

TEST_F(RangeNotice, TheListStaysWhileItsValuesAreMended)
{
    PasteZones("0.5\t200\n281\t282\n");
    ClickInStrip("Show");
    TypeIntoCell(1, kZone0, "151");
    EXPECT_EQ(Strip(), "");
    EXPECT_EQ(Listed(), (QStringList{"1 Zone °C(0) >151 °C no longer outside its range",
                                     "2 Zone °C(0) >281 °C lies outside 150 to 280 °C",
                                     "2 Zone °C(1) >282 °C lies outside 150 to 280 °C"}));
    Save();
    Open("a.rcp");
    EXPECT_EQ(Panel().windowTitle(), "Changes on saving");
}

TEST_F(RangeNotice, TheBitBrowserIsARoadToo)
{
    ClickCell(1, kSpeed);
    const CModalAnswer answer(
        {CModalAnswer::Key(Qt::Key_Home), CModalAnswer::Key(Qt::Key_Space), CModalAnswer::PressNamed("buttonOK")});
    Trigger(*frame, "actionBitBrowse");
    EXPECT_EQ(Strip(), "Speed of row 1: 32778 lies above 100.");
}

TEST_F(RangeNotice, TheInspectorIsARoadToo)
{
    ClickCell(1, kSpeed);
    Key(Qt::Key_I, Qt::ControlModifier);
    auto& views = Find<QTableView>("tableInspector");
    Key(Qt::Key_F2); // the hexadecimal words come first
    auto* editor = views.findChild<QLineEdit*>();
    ASSERT_NE(editor, nullptr);
    editor->selectAll();
    QTest::keyClicks(editor, "00C8");
    QTest::keyClick(editor, Qt::Key_Return);
    QApplication::processEvents();
    EXPECT_EQ(Strip(), "Speed of row 1: 200 lies above 100.");
    EXPECT_TRUE(Marks(1, kSpeed).unusual);
}

TEST_F(RangeNotice, WhatFillsManyCellsIsARoadToo)
{
    ChooseCells(1, kSpeed, 4, kSpeed);
    Key(Qt::Key_F2);
    QTest::keyClicks(QApplication::focusWidget(), "500");
    Key(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_TRUE(WaitFor([this] { return Strip() == "4 values lie outside their sensible range."; }))
        << Strip().toStdString();
    ClickInStrip("Undo");
    EXPECT_EQ(Grid().GetItemText(1, kSpeed), "10");
}

TEST_F(RangeNoticeOfMany, ValuesAreCountedWhileTheWindowGoesOn)
{
    PasteZones(Many());
    EXPECT_TRUE(WaitFor([this] { return Strip() == "40000 values lie outside their sensible range."; }));
    ClickInStrip("Undo");
    EXPECT_NE(Grid().GetItemText(kManyRows, kZone1), "0.7");
    EXPECT_EQ(Strip(), "");
}

TEST_F(RangeNoticeOfMany, AnotherEditEndsTheCounting)
{
    PasteZones(Many());
    TypeIntoCell(1, kCount, "7");
    EXPECT_EQ(Strip(), "");
    WaitForPlan();
    EXPECT_EQ(Strip(), "");
}

TEST_F(RangeNoticeOfOthers, AnotherRangeEndsTheOffer)
{
    TypeIntoCell(1, kZone0, "0.5");
    EXPECT_EQ(Strip(), kTold);
    AnotherProgramHasZonesBeginAt(0);
    auto& formats = Find<QComboBox>("comboFormats");
    formats.setFocus();
    QTest::keyClick(&formats, Qt::Key_Down);
    EXPECT_EQ(formats.currentText(), "Belt");
    EXPECT_FALSE(Marks(1, kZone0).unusual);
    EXPECT_EQ(Strip(), "");
}
