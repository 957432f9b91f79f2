// What the notes of items say of their cells: in the titles' tips, in the status bar, as a mark, in the inspector and
// in the bit browser.

#include "controls/GridHeader.h"
#include "controls/GridModel.h"
#include "controls/ListCtrlCl.h"
#include "tests/app/NotesFixture.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QScrollBar>
#include <QTableView>
#include <QTest>
#include <QToolTip>
#include <QTreeWidget>

namespace {

struct NotesShown : NotesFixture {
    QString TitleTip(int column)
    {
        QToolTip::hideText();
        EXPECT_TRUE(WaitFor([] { return !QToolTip::isVisible(); }));
        auto& titles = static_cast<CGridHeader&>(*Grid().horizontalHeader());
        const QPoint at(titles.PositionOf(column - 2) + 5, titles.height() / 2);
        QHelpEvent help(QEvent::ToolTip, at, titles.viewport()->mapToGlobal(at));
        QApplication::sendEvent(titles.viewport(), &help);
        return QToolTip::text();
    }

    QString TitleDescription(int column)
    {
        QAccessibleInterface* grid = QAccessible::queryAccessibleInterface(&Grid());
        return grid->child(column - 1)->text(QAccessible::Description); // the corner comes first
    }

    void EnterUnitOfZone(const QString& unit)
    {
        const CModalAnswer answer({[&unit](QWidget& dialog) {
            TypeInto(dialog, "editUnit", unit);
            QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
        }});
        Activate();
        auto& items = Find<QTreeWidget>("listItems");
        items.setFocus(Qt::TabFocusReason);
        QTest::keyClick(&items, Qt::Key_Home);
        QTest::keyClick(&items, Qt::Key_Return, Qt::ControlModifier);
        EXPECT_EQ(answer.titles, std::vector<QString>{"Notes of Zone °C"});
        Activate();
    }

    std::string Message() { return Find<QLabel>("labelMessage").text().toStdString(); }
};

} // namespace

TEST_F(NotesShown, ATitleTellsUnitRangeAndCommentInItsTip)
{
    EXPECT_EQ(TitleTip(kZone1),
              "<p>Zone °C(1)<br>Unit: °C<br>Sensible: 150 to 280 °C<br>Never &lt; 150<br>while the belt "
              "runs</p>");
    EXPECT_EQ(TitleTip(kCount), "");
    EXPECT_EQ(TitleTip(kMode), ""); // the names of bits stand with the bits
}

TEST_F(NotesShown, ATitleTellsItToScreenReaders)
{
    EXPECT_EQ(TitleDescription(kZone0), "Unit: °C\nSensible: 150 to 280 °C\nNever < 150\nwhile the belt runs");
    EXPECT_EQ(TitleDescription(kCount), "");
}

TEST_F(NotesShown, ATitleThatStaysInSightHasItsTipWhereItStands)
{
    frame->resize(600, 400);
    for (int column = kZone0; column <= kCount; ++column)
        Grid().SetColumnWidth(column, 200);
    Grid().SetColumnWidth(kZone0, 60);
    Grid().SetFrozenColumnCount(1);
    Grid().horizontalScrollBar()->setValue(Grid().horizontalScrollBar()->maximum());
    QApplication::processEvents();
    EXPECT_TRUE(TitleTip(kZone0).contains("Zone °C(0)")) << TitleTip(kZone0).toStdString();
    EXPECT_EQ(TitleTip(kCount), "");
}

TEST_F(NotesShown, TheStatusBarTellsTheMeaningOfTheCellFirst)
{
    ClickCell(1, kZone0);
    EXPECT_EQ(Message(), "RW0, sensible: 150 to 280 °C, 16 bit unsigned number, 0.0 to 999.9");
    ClickCell(3, kZone0);
    EXPECT_EQ(Message(), "RW10, 0.0 = off, sensible: 150 to 280 °C, 16 bit unsigned number, 0.0 to 999.9");
    ClickCell(2, kZone1);
    EXPECT_EQ(Message(), "RW6, 0.5 lies outside 150 to 280 °C, 16 bit unsigned number, 0.0 to 999.9");
    ClickCell(1, kMode);
    EXPECT_EQ(Message(), "RW2, set: Heater, Door open, 16 bit Hexadecimal, 0 to FFFF");
    ClickCell(2, kMode);
    EXPECT_EQ(Message(), "RW7, 16 bit Hexadecimal, 0 to FFFF"); // its bit has no name
    ClickCell(1, kCount);
    EXPECT_EQ(Message(), "RW3, 16 bit signed number, -32768 to 32767");
}

TEST_F(NotesShown, TheStatusBarFollowsWhatIsTyped)
{
    TypeIntoCell(1, kMode, "8", Qt::Key_Return);
    ClickCell(1, kMode);
    EXPECT_EQ(Message(), "RW2, set: Door open, 16 bit Hexadecimal, 0 to FFFF, changed, not saved yet");
}

TEST_F(NotesShown, AValueOutsideItsRangeIsMarkedAndSaysSo)
{
    EXPECT_TRUE(Marks(2, kZone1).unusual);
    EXPECT_FALSE(Marks(2, kZone1).outOfRange);
    EXPECT_FALSE(Marks(1, kZone1).unusual);
    EXPECT_FALSE(Marks(4, kZone0).unusual); // the ends belong to it
    EXPECT_FALSE(Marks(4, kZone1).unusual);
    EXPECT_FALSE(Marks(1, kCount).unusual);
    EXPECT_EQ(Tip(2, kZone1), "<p>0.5 lies outside 150 to 280 °C</p>");
    EXPECT_EQ(Description(2, kZone1), "Zone °C(1), 2 RW5, 0.5 lies outside 150 to 280 °C");
    EXPECT_EQ(Description(1, kZone1), "Zone °C(1), 1 RW0");
}

TEST_F(NotesShown, TheNumberThatTheCellStandsForIsJudged)
{
    TypeIntoCell(2, kZone1, "200.0");
    EXPECT_FALSE(Marks(2, kZone1).unusual);
    TypeIntoCell(2, kZone1, "281");
    EXPECT_TRUE(Marks(2, kZone1).unusual);
    EXPECT_EQ(Tip(2, kZone1), "<p>281.0 lies outside 150 to 280 °C, changed, not saved yet</p>");
    Save();
    EXPECT_TRUE(Marks(2, kZone1).unusual);
    Undo();
    EXPECT_FALSE(Marks(2, kZone1).unusual);
}

TEST_F(NotesShown, TheInspectorTellsItToo)
{
    ClickCell(3, kZone0);
    Grid().setFocus();
    Key(Qt::Key_I, Qt::ControlModifier);
    const auto& inspected = Find<QLabel>("labelInspected");
    EXPECT_EQ(inspected.text(), "RW10, row 3, Zone °C(0)\n0.0 = off\nsensible: 150 to 280 °C");
    ClickCell(1, kMode);
    EXPECT_EQ(inspected.text(), "RW2, row 1, Mode\nset: Heater, Door open");
    ClickCell(1, kCount);
    EXPECT_EQ(inspected.text(), "RW3, row 1, Count");
}

TEST_F(NotesShown, TheBitBrowserNamesTheBitsAndFlipsThemByName)
{
    ClickCell(1, kMode);
    const auto flip = [](QWidget& dialog) {
        auto& names = FindIn<QListWidget>(dialog, "listBitNames");
        EXPECT_EQ(names.count(), 2);
        EXPECT_EQ(names.item(0)->text(), "03  Door open");
        EXPECT_EQ(names.item(1)->text(), "00  Heater");
        names.setFocus();
        QTest::keyClick(&names, Qt::Key_Space);
    };
    const CModalAnswer answer({flip, CModalAnswer::PressNamed("buttonOK")});
    Trigger(*frame, "actionBitBrowse");
    EXPECT_EQ(Grid().GetItemText(1, kMode), "1");
}

TEST_F(NotesShown, ThePanelShowsValuesWithUnitAndText)
{
    TypeIntoCell(1, kZone0, "0.0");
    TypeIntoCell(1, kCount, "7");
    WaitForPlan();
    Trigger(*frame, "actionChangesOnSaving");
    EXPECT_EQ(Listed(), (QStringList{"1 Zone °C(0) 240.0 °C>0.0 °C = off edited", "1 Count 1>7 edited"}));
    ChooseLine(0);
    QTest::keyClick(&Lines(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "RW0\t1\tZone °C(0)\t240.0\t0.0\tedited\n");
    EXPECT_EQ(Lines().model()->index(0, 4).data(Qt::ToolTipRole).toString(), "<p>0.0 °C = off</p>");
}

TEST_F(NotesShown, TheFilterOfThePanelFindsThemAsTheyAreShown)
{
    TypeIntoCell(1, kZone0, "0.0");
    TypeIntoCell(1, kCount, "7");
    WaitForPlan();
    Trigger(*frame, "actionChangesOnSaving");
    QTest::keyClicks(&Find<QLineEdit>("editFilter"), "= off");
    EXPECT_TRUE(WaitFor([&] { return Listed().size() == 1; }));
    EXPECT_EQ(Listed(), QStringList{"1 Zone °C(0) 240.0 °C>0.0 °C = off edited"});
}

TEST_F(NotesShown, ThePanelFollowsAnotherUnitAtOnce)
{
    TypeIntoCell(1, kZone0, "200.0");
    WaitForPlan();
    Trigger(*frame, "actionChangesOnSaving");
    QTest::keyClicks(&Find<QLineEdit>("editFilter"), "kelvin");
    ASSERT_TRUE(WaitFor([this] { return Listed().isEmpty(); }));
    EnterUnitOfZone("kelvin");
    EXPECT_TRUE(WaitFor([this] { return Listed() == QStringList{"1 Zone °C(0) 240.0 kelvin>200.0 kelvin edited"}; }))
        << Listed().join('|').toStdString();
    Grid().setFocus();
    Undo();
    EXPECT_TRUE(WaitFor([this] { return Listed().isEmpty(); }));
}

TEST_F(NotesShown, TheSheetOfATableOfTextsNamesBitsToo)
{
    {
        const CModalAnswer answer({ChoosePath(Path("t.csv"))});
        Trigger(*frame, "actionSaveAs");
    }
    Activate();
    {
        const CModalAnswer answer({CModalAnswer::PressNamed("buttonHtml"), ChoosePath(Path("sheet.html")),
                                   CModalAnswer::Key(Qt::Key_Escape)});
        Key(Qt::Key_P, Qt::ControlModifier);
    }
    const Bytes html = ReadAll(folder / "sheet.html");
    const std::string_view text(reinterpret_cast<const char*>(html.data()), html.size());
    EXPECT_NE(text.find("<h1 dir=\"auto\">Recipe sheet of t.csv</h1>"), text.npos);
    EXPECT_NE(text.find("<td dir=\"auto\">Heater, Door open</td>"), text.npos) << text;
}
