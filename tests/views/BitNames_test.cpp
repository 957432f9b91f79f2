// The names of bits in the bit browser.

#include "controls/ListCtrlCl.h"
#include "model/ItemNotes.h"
#include "tests/support/DialogSteps.h"
#include "tests/support/Formats.h"
#include "tests/support/GuiTest.h"
#include "tests/views/RecordingFrame.h"
#include "views/BitBrowserDlg.h"

#include <QAccessible>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

struct BitNames : testing::Test {
    void Open(DataItem item, const std::vector<std::u16string>& names, const QString& text)
    {
        ItemNotes notes;
        notes.bits = names;
        item.notes = CSharedNotes(notes);
        dialog = std::make_unique<CBitBrowserDlg>(frame, item, 2, 1, text);
        ASSERT_TRUE(ShowActive(*dialog));
    }

    CListCtrlCl& List() { return FindIn<CListCtrlCl>(*dialog, "listBits"); }
    QListWidget& Names() { return FindIn<QListWidget>(*dialog, "listBitNames"); }
    bool HasNames() { return dialog->findChild<QListWidget*>() != nullptr; }
    std::string Value() { return TextIn(*dialog, "editValue"); }
    QModelIndex Square(int bit)
    {
        const int cell = 16 * List().rowCount() - 1 - bit;
        return List().model()->index(cell / 16, cell % 16);
    }
    void ClickSquare(int bit)
    {
        QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, List().visualRect(Square(bit)).center());
    }

    /// "03  Door open=1" of each line.
    std::vector<std::string> Lines()
    {
        std::vector<std::string> lines;
        for (int row = 0; row < Names().count(); ++row)
            lines.push_back(Names().item(row)->text().toStdString() +
                            (Names().item(row)->checkState() == Qt::Checked ? "=1" : "=0"));
        return lines;
    }

    CRecordingFrame frame;
    std::unique_ptr<CBitBrowserDlg> dialog;
};

const std::vector<std::u16string> kTwo{u"Heater", u"", u"", u"Door open"};
using Text = std::vector<std::string>;

DataItem Word()
{
    return MakeItem(u"Mode", DataType::Unsigned16, 1, 5);
}

} // namespace

TEST_F(BitNames, AreListedInTheOrderOfTheSquaresWithTheirStates)
{
    Open(Word(), kTwo, "8");
    EXPECT_EQ(Lines(), (Text{"03  Door open=1", "00  Heater=0"}));
}

TEST_F(BitNames, OfTwoWordsAreThoseOfBoth)
{
    std::vector<std::u16string> names(32);
    names[31] = u"Top";
    names[16] = u"Middle";
    names[0] = u"Low";
    Open(MakeItem(u"Mode", DataType::Unsigned32, 2, 10), names, "65536");
    EXPECT_EQ(Lines(), (Text{"31  Top=0", "16  Middle=1", "00  Low=0"}));
    Open(Word(), names, "1"); // bits that the value does not have
    EXPECT_EQ(Lines(), (Text{"00  Low=1"}));
}

TEST_F(BitNames, FollowTheirSquares)
{
    Open(Word(), kTwo, "8");
    ClickSquare(3);
    ClickSquare(0);
    EXPECT_EQ(Lines(), (Text{"03  Door open=0", "00  Heater=1"}));
    EXPECT_EQ(Value(), "1");
}

TEST_F(BitNames, FlipTheirSquaresByMouseAndKey)
{
    Open(Word(), kTwo, "8");
    const QRect line = Names().visualItemRect(Names().item(1));
    QTest::mouseClick(Names().viewport(), Qt::LeftButton, {}, {line.left() + 8, line.center().y()}); // its box
    EXPECT_EQ(Value(), "9");
    EXPECT_EQ(List().BitState(0, 15), true);
    List().setFocus();
    QTest::keyClick(&List(), Qt::Key_Tab);
    EXPECT_TRUE(Names().hasFocus());
    QTest::keyClick(&Names(), Qt::Key_Down);
    QTest::keyClick(&Names(), Qt::Key_Space);
    EXPECT_EQ(Value(), "8");
    EXPECT_EQ(List().BitState(0, 15), false);
}

TEST_F(BitNames, StandInTipsAndNamesOfTheSquares)
{
    Open(Word(), {u"<Heater>"}, "1");
    EXPECT_EQ(Square(0).data(Qt::ToolTipRole), QString("<p>Bit 0, &lt;Heater&gt;: 1</p>"));
    EXPECT_EQ(Square(0).data(Qt::DisplayRole), QString("1"));
    EXPECT_EQ(Square(1).data(Qt::ToolTipRole), QString("0"));
    ClickSquare(0);
    EXPECT_EQ(Square(0).data(Qt::ToolTipRole), QString("<p>Bit 0, &lt;Heater&gt;: 0</p>"));
    QAccessibleTableInterface* table = QAccessible::queryAccessibleInterface(&List())->tableInterface();
    EXPECT_EQ(table->cellAt(0, 15)->text(QAccessible::Name), "Bit 0, <Heater>: 0");
    EXPECT_EQ(table->cellAt(0, 14)->text(QAccessible::Name), "Bit 1: 0");
    QAccessibleInterface* names = QAccessible::queryAccessibleInterface(&Names());
    EXPECT_EQ(names->text(QAccessible::Name), "Bits by name");
    EXPECT_EQ(names->child(0)->text(QAccessible::Name), "Bit 0, <Heater>");
    EXPECT_TRUE(names->child(0)->state().checkable);
    EXPECT_FALSE(names->child(0)->state().checked);
}

TEST_F(BitNames, ALongOneIsCutAndWholeInItsTip)
{
    Open(Word(), {u"Heater"}, "1");
    const int width = dialog->width();
    const std::u16string name(ItemNotes::kLongestName, u'W');
    Open(Word(), {name}, "1");
    EXPECT_EQ(dialog->width(), width);
    EXPECT_EQ(Names().textElideMode(), Qt::ElideRight);
    EXPECT_FALSE(Names().horizontalScrollBar()->isVisible());
    EXPECT_TRUE(Names().item(0)->toolTip().contains(QString::fromStdU16String(name)));
}

TEST_F(BitNames, WithoutAnyTheDialogIsAsItWas)
{
    dialog = std::make_unique<CBitBrowserDlg>(frame, Word(), 2, 1, "8");
    ASSERT_TRUE(ShowActive(*dialog));
    const QImage plain = dialog->grab().toImage();
    const QImage squares = List().grab().toImage();
    EXPECT_FALSE(HasNames());
    Open(Word(), {}, "8");
    EXPECT_FALSE(HasNames());
    EXPECT_EQ(dialog->grab().toImage(), plain);
    std::vector<std::u16string> beyond(32);
    beyond[20] = u"of no square";
    Open(Word(), beyond, "8");
    EXPECT_FALSE(HasNames());
    EXPECT_EQ(dialog->grab().toImage(), plain);
    Open(Word(), kTwo, "8");
    EXPECT_EQ(List().size().width(), squares.width());
    EXPECT_EQ(List().viewport()->grab({0, 0, 288, 18}).toImage().size(), QSize(288, 18));
}
