// Ctrl+G: a row, an address or an item, and what the bar says where there is none.

#include "controls/GridCtrl.h"
#include "tests/app/EditFixture.h"
#include "views/GoToBar.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

namespace {

struct GoTo : EditFixture {
    CGoToBar& Bar() { return Find<CGoToBar>("barGoTo"); }

    /// Ctrl+G, the text, Enter.
    void Go(const QString& text)
    {
        Key(Qt::Key_G, Qt::ControlModifier);
        ASSERT_TRUE(Bar().isVisible());
        QTest::keyClicks(QApplication::focusWidget(), text);
        Key(Qt::Key_Return);
    }

    /// Where the focus is, once the bar has gone.
    QString Focus()
    {
        int row = 0;
        int column = 0;
        EXPECT_FALSE(Bar().isVisible()) << Bar().Told().toStdString();
        EXPECT_TRUE(Grid().hasFocus());
        return Grid().FocusCell(row, column) ? QStringLiteral("%1,%2").arg(row).arg(column) : QString();
    }
};

} // namespace

TEST_F(GoTo, LeadsToARowInTheSameColumn)
{
    ClickCell(1, 3);
    Go("4");
    EXPECT_EQ(Focus(), "4,3");
    EXPECT_EQ(Selected(), "4,3");
}

TEST_F(GoTo, LeadsToTheValueThatHoldsAWord)
{
    Go("RW8");
    EXPECT_EQ(Focus(), "3,3");
    Go("rw6");
    EXPECT_EQ(Focus(), "3,2");
}

TEST_F(GoTo, LeadsToAnItemInTheSameRowAndInAnother)
{
    ClickCell(3, 2);
    Go("na");
    EXPECT_EQ(Focus(), "3,3");
    Go("2 word");
    EXPECT_EQ(Focus(), "2,2");
}

TEST_F(GoTo, SaysThatAWordLiesInNoRowAndOffersTheNearestValue)
{
    ClickCell(1, 2);
    Go("RW4711");
    EXPECT_TRUE(Bar().isVisible());
    EXPECT_EQ(Bar().Told(), "RW4711 lies in no row. The nearest value is RW10, row 4, Name.");
    EXPECT_EQ(Selected(), "1,2") << "nothing has moved";
    auto& nearest = Find<QPushButton>("buttonGoToNearest");
    ASSERT_TRUE(nearest.isVisible());
    Key(Qt::Key_Tab); // Go
    Key(Qt::Key_Tab);
    ASSERT_TRUE(nearest.hasFocus());
    Key(Qt::Key_Return);
    EXPECT_EQ(Focus(), "4,3");
}

TEST_F(GoTo, SaysWhatIsWrongAndKeepsTheText)
{
    Go("12");
    EXPECT_EQ(Bar().Told(), "There is no row 12: the table has 4 rows.");
    EXPECT_EQ(Find<QLineEdit>("editGoTo").text(), "12");
    EXPECT_TRUE(Find<QLineEdit>("editGoTo").hasFocus());
    EXPECT_FALSE(Find<QPushButton>("buttonGoToNearest").isVisible());
    Key(Qt::Key_Backspace);
    EXPECT_EQ(Bar().Told(), "") << "another text is no mistake yet";
    Key(Qt::Key_Return);
    EXPECT_EQ(Focus(), "1,2");
}

TEST_F(GoTo, EscapeClosesItAndGoesNowhere)
{
    ClickCell(2, 2);
    Key(Qt::Key_G, Qt::ControlModifier);
    QTest::keyClicks(QApplication::focusWidget(), "4");
    Key(Qt::Key_Escape);
    EXPECT_EQ(Focus(), "2,2");
}

TEST_F(GoTo, KeepsTheLastTenTextsThatLedSomewhere)
{
    for (int i = 0; i < 12; ++i)
        Go(QString(i, u'0') + u'1');
    Go("12");
    Key(Qt::Key_Escape);
    Go("2");
    auto& texts = Find<QComboBox>("comboGoTo");
    ASSERT_EQ(texts.count(), 10);
    EXPECT_EQ(texts.itemText(0), "2");
    EXPECT_EQ(texts.itemText(1), "000000000001");
    EXPECT_EQ(texts.findText("12"), -1);
    Key(Qt::Key_G, Qt::ControlModifier);
    Key(Qt::Key_Down);
    EXPECT_EQ(texts.currentText(), "000000000001");
    Key(Qt::Key_Return);
    EXPECT_EQ(Focus(), "1,2");
    EXPECT_EQ(texts.count(), 10) << "it stands there once";
    EXPECT_EQ(texts.itemText(0), "000000000001");
}

TEST_F(GoTo, EndsAnOpenEditFirstAndStopsWhereItIsRefused)
{
    ClickCell(1, 2);
    QTest::keyClicks(&Grid(), "x");
    const CModalAnswer answer;
    Key(Qt::Key_G, Qt::ControlModifier);
    EXPECT_EQ(answer.texts.size(), 1u);
    EXPECT_FALSE(Bar().isVisible());
}

TEST_F(GoTo, SaysThatTheTableIsEmpty)
{
    frame.reset();
    Start();
    Grid().setFocus();
    Go("1");
    EXPECT_EQ(Bar().Told(), "The table is empty.");
}

TEST_F(GoTo, KnowsNoAddressesInATableOfTexts)
{
    WriteAll(folder / "t.csv", Bytes());
    OpenThroughDialog("t.csv");
    Grid().setFocus();
    Go("RW3");
    EXPECT_EQ(Bar().Told(), "A table of texts has no addresses. Type a row or an item.");
    Key(Qt::Key_Escape);
    Go("3");
    EXPECT_EQ(Focus(), "3,2");
}
