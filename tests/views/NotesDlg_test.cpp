#include "model/DataFormat.h"
#include "tests/support/DialogSteps.h"
#include "tests/support/Formats.h"
#include "tests/support/GuiTest.h"
#include "views/NotesDlg.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>
#include <gtest/gtest.h>

namespace {

ItemNotes ZoneNotes()
{
    ItemNotes notes;
    notes.unit = u"°C";
    notes.lowest = CDecimal(150);
    notes.highest = CDecimal::Parse(u"280.5");
    notes.comment = u"Upper heat\nof the zone";
    notes.bits = {u"Fan", u"", u"Steam"};
    notes.texts = {{u"0", u"off"}};
    return notes;
}

struct NotesDialog : testing::Test {
    void Open(const DataItem& item, const ItemNotes& notes = {})
    {
        dialog = std::make_unique<CNotesDlg>(CodingOf(item), notes);
        ASSERT_TRUE(ShowActive(*dialog));
    }
    void Open(const ItemNotes& notes = {}) { Open(MakeItem(u"Zone", DataType::Signed16, 1, 5, 1), notes); }

    template <class Widget>
    Widget& Find(const char* name) const
    {
        return FindIn<Widget>(*dialog, name);
    }
    QTableWidget& Bits() const { return Find<QTableWidget>("tableBits"); }
    QTableWidget& Texts() const { return Find<QTableWidget>("tableTexts"); }
    QPlainTextEdit& Comment() const { return Find<QPlainTextEdit>("editComment"); }

    void Type(const char* edit, const QString& text) { TypeInto(*dialog, edit, text); }

    /// Keys, to whatever has the focus.
    static void Keys(const QString& text)
    {
        for (const QChar character : text)
            QTest::keyClicks(QApplication::focusWidget(), QString(character)); // the first may open an editor
    }
    static void Key(Qt::Key key)
    {
        QTest::keyClick(QApplication::focusWidget(), key);
        QCoreApplication::processEvents(); // an editor closes after the key that ended it
    }

    /// What the line says; empty while OK can be pressed.
    QString Told() const
    {
        const auto& line = Find<QLabel>("labelNotice");
        EXPECT_EQ(line.isVisible(), !Find<QPushButton>("buttonOk").isEnabled());
        return line.isVisible() ? line.text() : QString();
    }

    ItemNotes PressOk()
    {
        ClickOn(*dialog, "buttonOk");
        EXPECT_EQ(dialog->result(), QDialog::Accepted);
        EXPECT_FALSE(dialog->isVisible());
        return dialog->Notes();
    }

    std::unique_ptr<CNotesDlg> dialog;
};

QString NameFor(QObject& widget)
{
    return QAccessible::queryAccessibleInterface(&widget)->text(QAccessible::Name);
}

} // namespace

TEST_F(NotesDialog, ShowsWhatTheItemHasAndGivesTheSameBack)
{
    Open(ZoneNotes());
    EXPECT_EQ(dialog->windowTitle(), "Notes of Zone");
    EXPECT_EQ(TextIn(*dialog, "editUnit"), "°C");
    EXPECT_EQ(TextIn(*dialog, "editLowest"), "150");
    EXPECT_EQ(TextIn(*dialog, "editHighest"), "280.5");
    EXPECT_EQ(Comment().toPlainText(), "Upper heat\nof the zone");
    EXPECT_EQ(Bits().rowCount(), 16);
    EXPECT_EQ(Bits().item(2, 0)->text(), "Steam");
    EXPECT_EQ(Bits().verticalHeaderItem(15)->text(), "Bit 15");
    ASSERT_EQ(Texts().rowCount(), 1);
    EXPECT_EQ(Texts().item(0, 1)->text(), "off");
    EXPECT_EQ(PressOk(), ZoneNotes());
}

TEST_F(NotesDialog, IsFilledByKeysAlone)
{
    Open();
    Keys("m/min");
    Key(Qt::Key_Tab);
    Keys("-1.5");
    Key(Qt::Key_Tab);
    Keys("20");
    Key(Qt::Key_Tab);
    Keys("The belt");
    Key(Qt::Key_Return);
    Keys("and its speed");
    Key(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), &Texts());
    Key(Qt::Key_Tab);
    Key(Qt::Key_Space); // Add
    Keys("0");
    Key(Qt::Key_Tab);
    Keys("stands");
    Key(Qt::Key_Return);
    EXPECT_TRUE(dialog->isVisible());
    Key(Qt::Key_Tab);
    Key(Qt::Key_Tab);
    Key(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), &Bits());
    Key(Qt::Key_Down);
    Keys("Fan");
    Key(Qt::Key_Tab);
    Keys("Steam");
    Key(Qt::Key_Return);
    QTest::keyClick(&Find<QWidget>("editUnit"), Qt::Key_Return);
    EXPECT_FALSE(dialog->isVisible());
    ItemNotes expected;
    expected.unit = u"m/min";
    expected.lowest = CDecimal::Parse(u"-1.5");
    expected.highest = CDecimal(20);
    expected.comment = u"The belt\nand its speed";
    expected.bits = {u"", u"Fan", u"Steam"};
    expected.texts = {{u"0", u"stands"}};
    EXPECT_EQ(dialog->Notes(), expected);
}

TEST_F(NotesDialog, TellsWhatIsNoNumberWhileItStands)
{
    Open();
    Type("editLowest", "1,5");
    EXPECT_EQ(Told(), "Numbers are typed with a point here, as in 1.5.");
    EXPECT_EQ(Find<QWidget>("editLowest").accessibleDescription(), Told());
    Type("editLowest", "warm");
    EXPECT_EQ(Told(), "That is not a number.");
    Key(Qt::Key_Return);
    EXPECT_TRUE(dialog->isVisible());
    Type("editLowest", " 1.5 ");
    EXPECT_EQ(Told(), "");
    EXPECT_EQ(Find<QWidget>("editLowest").accessibleDescription(), "");
    EXPECT_EQ(PressOk().lowest, CDecimal::Parse(u"1.5"));
}

TEST_F(NotesDialog, TellsAHighestValueBelowTheLowest)
{
    Open();
    Type("editLowest", "10");
    Type("editHighest", "9.99");
    EXPECT_EQ(Told(), "The highest value lies below the lowest one.");
    EXPECT_EQ(Find<QWidget>("editHighest").accessibleDescription(), Told());
    Type("editHighest", "x");
    EXPECT_EQ(Told(), "That is not a number.");
    Type("editHighest", "10");
    EXPECT_EQ(Told(), "");
    EXPECT_EQ(RangeText(PressOk()), u"10 to 10");
}

TEST_F(NotesDialog, AValueWithoutTextThatTheItemCannotHaveOrTwiceIsTold)
{
    Open();
    ClickOn(*dialog, "buttonAddText");
    EXPECT_EQ(Told(), "");
    Keys("1,5");
    Key(Qt::Key_Tab);
    EXPECT_EQ(Told(), "A text is missing for the value 1,5.");
    Keys("half");
    Key(Qt::Key_Return);
    EXPECT_EQ(Told(), "1,5: numbers are typed with a point here, as in 1.5.");
    EXPECT_EQ(Texts().accessibleDescription(), Told());
    Texts().setCurrentCell(0, 0);
    Keys("1.55");
    Key(Qt::Key_Return);
    EXPECT_EQ(Told(), "No cell of this item can hold the value 1.55.");
    Texts().setCurrentCell(0, 0);
    Keys("1.5");
    Key(Qt::Key_Return);
    EXPECT_EQ(Told(), "");
    ClickOn(*dialog, "buttonAddText");
    Keys("1.50");
    Key(Qt::Key_Tab);
    Keys("again");
    Key(Qt::Key_Return);
    EXPECT_EQ(Told(), "The value 1.50 has a text already.");
    ClickOn(*dialog, "buttonRemoveText");
    EXPECT_EQ(Told(), "");
    EXPECT_EQ(PressOk().texts, (std::vector<ValueText>{{u"1.5", u"half"}}));
}

TEST_F(NotesDialog, OkTakesWhatTheOpenEditorHolds)
{
    Open(ZoneNotes());
    QTest::mouseDClick(Bits().viewport(), Qt::LeftButton, {}, Bits().visualItemRect(Bits().item(1, 0)).center());
    Keys("Lamp");
    EXPECT_EQ(PressOk().bits, (std::vector<std::u16string>{u"Fan", u"Lamp", u"Steam"}));
}

TEST_F(NotesDialog, AFaultInTheOpenEditorKeepsOkFromBeingPressed)
{
    Open(ZoneNotes());
    Texts().setFocus();
    Texts().setCurrentCell(0, 0);
    Keys("off");
    ClickOn(*dialog, "buttonOk");
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(Told(), "No cell of this item can hold the value off.");
}

TEST_F(NotesDialog, DeleteRemovesTheChosenLine)
{
    Open(ZoneNotes());
    EXPECT_FALSE(Find<QPushButton>("buttonRemoveText").isEnabled());
    Texts().setFocus();
    Texts().setCurrentCell(0, 1);
    EXPECT_TRUE(Find<QPushButton>("buttonRemoveText").isEnabled());
    Key(Qt::Key_Delete);
    EXPECT_EQ(Texts().rowCount(), 0);
    EXPECT_FALSE(Find<QPushButton>("buttonRemoveText").isEnabled());
    EXPECT_TRUE(PressOk().texts.empty());
}

TEST_F(NotesDialog, TwoWordsHave32BitsAndRealsAndStringsNone)
{
    Open(MakeItem(u"Word", DataType::Hex32, 2, 8));
    EXPECT_EQ(Bits().rowCount(), 32);
    for (const DataType type : {DataType::Float, DataType::Double, DataType::String}) {
        Open(MakeItem(u"X", type, 4, 8), ZoneNotes());
        EXPECT_FALSE(Bits().isVisible());
        EXPECT_FALSE(Find<QWidget>("labelBits").isVisible());
        EXPECT_EQ(PressOk().bits, ZoneNotes().bits) << "names that are not shown stay";
    }
}

TEST_F(NotesDialog, AStringHasNoRange)
{
    Open(MakeItem(u"Name", DataType::String, 4, 0));
    EXPECT_FALSE(Find<QWidget>("editLowest").isEnabled());
    EXPECT_FALSE(Find<QWidget>("editHighest").isEnabled());
    Open(MakeItem(u"Name", DataType::String, 4, 0), ZoneNotes());
    EXPECT_TRUE(Find<QWidget>("editLowest").isEnabled()) << "one that is there can be taken away";
}

TEST_F(NotesDialog, LengthsAreLimited)
{
    Open();
    Type("editUnit", QString(40, u'u'));
    EXPECT_EQ(TextIn(*dialog, "editUnit"), std::string(32, 'u'));
    Bits().setFocus();
    Bits().setCurrentCell(0, 0);
    Keys("n");
    QApplication::clipboard()->setText(QString(200, u'n'));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_V, Qt::ControlModifier);
    Key(Qt::Key_Return);
    EXPECT_EQ(Bits().item(0, 0)->text().size(), 128);
    QApplication::clipboard()->setText(QString(4001, u'c'));
    Comment().setFocus();
    QTest::keyClick(&Comment(), Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(Told(), "A comment has at most 4000 characters: this one has 4001.");
    Key(Qt::Key_Backspace);
    EXPECT_EQ(Told(), "");
    EXPECT_EQ(PressOk().comment.size(), 4000U);
}

TEST_F(NotesDialog, WhatAPasteBringsIsTakenOnOneLineAndWithoutControlCharacters)
{
    Open();
    QApplication::clipboard()->setText("a\tb\nc");
    Find<QWidget>("editUnit").setFocus();
    QTest::keyClick(&Find<QWidget>("editUnit"), Qt::Key_V, Qt::ControlModifier);
    Comment().setFocus();
    QTest::keyClick(&Comment(), Qt::Key_V, Qt::ControlModifier);
    const ItemNotes notes = PressOk();
    EXPECT_EQ(notes.unit, u"a b c");
    EXPECT_EQ(notes.comment, u"a b\nc");
}

TEST_F(NotesDialog, CancelGivesNothing)
{
    Open(ZoneNotes());
    Type("editUnit", "K");
    ClickOn(*dialog, "buttonCancel");
    EXPECT_EQ(dialog->result(), QDialog::Rejected);
    EXPECT_EQ(dialog->Notes(), ZoneNotes());
}

TEST_F(NotesDialog, ScreenReadersHearWhatEachFieldIs)
{
    Open();
    const std::pair<const char*, const char*> names[] = {
        {"editUnit", "Unit"},       {"editLowest", "Lowest"},       {"editHighest", "Highest"},
        {"editComment", "Comment"}, {"tableBits", "Names of bits"}, {"tableTexts", "Texts for single values"}};
    for (const auto& [widget, name] : names)
        EXPECT_EQ(NameFor(Find<QWidget>(widget)), name);
    Bits().setFocus();
    Bits().setCurrentCell(3, 0);
    Keys("x");
    EXPECT_EQ(NameFor(*QApplication::focusWidget()), "Name");
}
