// Where a number stands in the file: found in a dialog, gone to, made the start address or an item.

#include "controls/GridCtrl.h"
#include "tests/app/EditFixture.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QTreeWidget>

namespace {

struct FindValue : EditFixture {
    /// Looks for the number in the dialog, and takes what it says.
    CModalAnswer::Action LookFor(const QString& number)
    {
        return [this, number](QWidget& dialog) {
            TypeInto(dialog, "editNumber", number);
            QTest::keyClick(&FindIn<QLineEdit>(dialog, "editNumber"), Qt::Key_Return);
            EXPECT_TRUE(WaitFor([&] { return !FindIn<QPushButton>(dialog, "buttonStop").isEnabled(); }));
            const auto& model = *FindIn<QTableView>(dialog, "tablePlaces").model();
            places.clear();
            for (int row = 0; row < model.rowCount() && row < 20; ++row) {
                QStringList texts;
                for (int column = 0; column < model.columnCount(); ++column)
                    texts << model.index(row, column).data().toString();
                places << texts.join(u'|');
            }
            state = FindIn<QLabel>(dialog, "labelState").text();
        };
    }

    /// Chooses the place in the row by keys.
    CModalAnswer::Action Choose(int row)
    {
        return [this, row](QWidget& dialog) {
            auto& table = FindIn<QTableView>(dialog, "tablePlaces");
            table.setFocus();
            QTest::keyClick(&table, Qt::Key_Home, Qt::ControlModifier);
            for (int i = 0; i < row; ++i)
                QTest::keyClick(&table, Qt::Key_Down);
            notice = FindIn<QLabel>(dialog, "labelNotice").isVisible() ? FindIn<QLabel>(dialog, "labelNotice").text()
                                                                       : QString();
            mayAdd = FindIn<QPushButton>(dialog, "buttonAddAsItem").isEnabled();
            mayGo = FindIn<QPushButton>(dialog, "buttonGoToCell").isEnabled();
        };
    }

    void Run(std::vector<CModalAnswer::Action> actions)
    {
        const CModalAnswer answer(std::move(actions));
        Trigger(*frame, "actionFindValue");
        Activate();
    }

    QStringList places;
    QString state;
    QString notice;
    bool mayAdd = false;
    bool mayGo = false;
};

} // namespace

TEST_F(FindValue, ListsEachPlaceWithTypeDecimalsAndOrder)
{
    WriteAll(folder / "a.rcp", WordBytes({7, 0, 0, 0, 2350, 0, 0x436B, 0x0000, 9}));
    Run({LookFor("235.0"), CModalAnswer::Key(Qt::Key_Escape)});
    EXPECT_EQ(places,
              (QStringList{"RW3|signed 32-bit|1|high word first|row 2, Word",
                           "RW3|unsigned 32-bit|1|high word first|row 2, Word", "RW4|signed 16-bit|1||row 2, Name",
                           "RW4|unsigned 16-bit|1||row 2, Name", "RW4|signed 32-bit|1|low word first|row 2, Name",
                           "RW4|unsigned 32-bit|1|low word first|row 2, Name", "RW5|float|0|low word first|row 2, Name",
                           "RW6|float|0|high word first|row 3, Word"}))
        << places.join("\n").toStdString();
    EXPECT_EQ(state, "8 places");
}

TEST_F(FindValue, SaysThatThereIsNoneAndWhatIsNoNumber)
{
    Run({LookFor("1234567"), CModalAnswer::Key(Qt::Key_Escape)});
    EXPECT_EQ(state, "Not found in the file");
    Run({LookFor("2,5"), CModalAnswer::Key(Qt::Key_Escape)});
    EXPECT_EQ(state, "2,5 is no number: decimals come after a point.");
    Run({LookFor("high"), CModalAnswer::Key(Qt::Key_Escape)});
    EXPECT_EQ(state, "high is no number.");
}

TEST_F(FindValue, GoesToTheCell)
{
    Run({LookFor("3"), Choose(0), CModalAnswer::PressNamed("buttonGoToCell")});
    EXPECT_TRUE(mayGo);
    EXPECT_EQ(Selected(), "3,2");
    EXPECT_TRUE(Grid().hasFocus());
}

TEST_F(FindValue, MakesAPlaceTheStartAddressAsAReadingThatCanBeUndone)
{
    Run({LookFor("2"), Choose(0), CModalAnswer::PressNamed("buttonUseAsStart")});
    EXPECT_EQ(Find<QLineEdit>("editStartAddress").text(), "3");
    EXPECT_EQ(Grid().GetItemText(1, 1), "RW3");
    EXPECT_EQ(Grid().GetItemText(1, 2), "2");
    Grid().setFocus();
    Undo();
    EXPECT_EQ(Grid().GetItemText(1, 1), "RW0");
}

TEST_F(FindValue, AddsAnItemOfThatTypeAndThoseDecimals)
{
    WriteAll(folder / "a.rcp", WordBytes({105, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    QString type;
    QString decimals;
    const auto look = [&](QWidget& dialog) {
        type = FindIn<QComboBox>(dialog, "comboType").currentText();
        decimals = FindIn<QComboBox>(dialog, "comboDecimal").currentText();
        ClickOn(dialog, "buttonOk");
    };
    Run({LookFor("1.05"), Choose(1), CModalAnswer::PressNamed("buttonAddAsItem"), look});
    EXPECT_EQ(places.value(1), "RW0|unsigned 16-bit|2||row 1, Word");
    EXPECT_EQ(type, "16 bit unsigned number");
    EXPECT_EQ(decimals, "2");
    EXPECT_EQ(Find<QTreeWidget>("listItems").topLevelItemCount(), 3);
    EXPECT_EQ(Grid().ColumnCount(), 5) << "the format is used at once, as by the list's own command";
}

TEST_F(FindValue, SaysWhereAnItemCannotHaveTheWordOrder)
{
    WriteAll(folder / "a.rcp", WordBytes({1, 0x86A0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0})); // 100000
    Run({LookFor("100000"), Choose(0), CModalAnswer::Key(Qt::Key_Escape)});
    EXPECT_EQ(places.value(0), "RW0|signed 32-bit|0|high word first|row 1, Word");
    EXPECT_FALSE(mayAdd);
    EXPECT_EQ(notice, "An item always has its low word first: it would show another number here.");
}

TEST_F(FindValue, LooksInTheFileAndSaysThatEditsAreNotInIt)
{
    TypeIntoCell(1, 2, "77");
    Run({LookFor("77"), Choose(0), CModalAnswer::Key(Qt::Key_Escape)});
    EXPECT_EQ(state, "Not found in the file");
    EXPECT_EQ(notice, "Edits that are not saved yet are not in the file.");
}

TEST_F(FindValue, StopsAfterManyPlacesUntilItIsAskedForMore)
{
    MakeFile("a.rcp", 200000);
    int first = 0;
    int then = 0;
    const auto count = [](QWidget& dialog) { return FindIn<QTableView>(dialog, "tablePlaces").model()->rowCount(); };
    Run({LookFor("0"), [&](QWidget& dialog) { first = count(dialog); }, CModalAnswer::PressNamed("buttonMore"),
         [&](QWidget& dialog) { then = count(dialog); }, CModalAnswer::Key(Qt::Key_Escape)});
    EXPECT_EQ(first, 1000);
    EXPECT_EQ(then, 2000);
    EXPECT_EQ(state, "1000 places, and the file is not looked through yet");
}

TEST_F(FindValue, FindsFieldsOfATableOfTexts)
{
    const QByteArray text("7.50,Bread\n8,7.5\n");
    Bytes bytes;
    for (const char c : text)
        bytes.push_back(static_cast<std::byte>(c));
    WriteAll(folder / "t.csv", bytes);
    OpenThroughDialog("t.csv");
    Run({LookFor("7.5"), Choose(0), CModalAnswer::Key(Qt::Key_Escape)});
    EXPECT_EQ(places, (QStringList{"1|1|7.50", "2|2|7.5"})) << state.toStdString();
    EXPECT_FALSE(mayGo || mayAdd);
}

TEST_F(FindValue, IsOffWhileThereIsNoFile)
{
    EXPECT_TRUE(Action("actionFindValue").isEnabled());
    Trigger(*frame, "actionNew");
    EXPECT_FALSE(Action("actionFindValue").isEnabled());
}

TEST_F(FindValue, SaysThatTheFileCannotBeRead)
{
    std::filesystem::remove(folder / "a.rcp");
    Run({LookFor("3"), CModalAnswer::Key(Qt::Key_Escape)});
    EXPECT_EQ(state, "The file could not be read.");
}
