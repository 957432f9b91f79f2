// "Keep stored": saves leave the words of cells as the file holds them.

#include "tests/app/SaveFixture.h"
#include "views/ChangesPanel.h"

#include <QApplication>
#include <QMenu>
#include <QPushButton>
#include <QTableView>
#include <QTest>

namespace {

struct KeepStored : SaveFixture {
    void OpenPanel() { Key(Qt::Key_F9); }
};

using Keep = void (*)(KeepStored&);

struct KeepCase {
    const char* name;
    Keep keep; ///< the belts of rows 1 and 4
    friend void PrintTo(const KeepCase& c, std::ostream* out) { *out << c.name; }
};

struct KeepStoredBy : KeepStored, testing::WithParamInterface<KeepCase> {};

void ChooseBeltsInPanel(KeepStored& window)
{
    window.OpenPanel();
    window.ChooseLine(0);
    const QModelIndex last = window.Lines().model()->index(2, 1);
    QTest::mouseClick(window.Lines().viewport(), Qt::LeftButton, Qt::ControlModifier,
                      window.Lines().visualRect(last).center());
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Ways, KeepStoredBy, testing::Values(
    KeepCase{"Menu", [](KeepStored& w) { w.ChooseCells(1, SaveFixture::kBelt, 4, SaveFixture::kBelt);
                                         w.Choose("actionKeepStored"); }},
    KeepCase{"PanelButton", [](KeepStored& w) { ChooseBeltsInPanel(w);
                                                w.Find<QPushButton>("buttonKeepStored").click(); }},
    KeepCase{"PanelKey", [](KeepStored& w) { ChooseBeltsInPanel(w); w.Key(Qt::Key_K, Qt::ControlModifier); }}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

} // namespace

TEST_P(KeepStoredBy, HasASaveLeaveTheWords)
{
    GetParam().keep(*this);
    EXPECT_EQ(NextUndo(), "Keep stored (2 cells)");
    EXPECT_EQ(Field(), "0 edited, 1 other changes");
    EXPECT_FALSE(Marks(1, kBelt).rewritten);
    EXPECT_FALSE(Marks(4, kBelt).rewritten);
    EXPECT_TRUE(Marks(2, kSteam).rewritten);
    Grid().setFocus();
    Save();
    EXPECT_EQ(Oven(), OvenWith({{6, 0x0000}, {7, 0x41C8}}));
    EXPECT_EQ(Strip(), "1 value that you did not edit was stored as shown.");
}

TEST_P(KeepStoredBy, IsUndoneInOneStep)
{
    GetParam().keep(*this);
    Grid().setFocus();
    Undo();
    EXPECT_EQ(Field(), "0 edited, 3 others change");
    EXPECT_FALSE(IsModified());
    EXPECT_EQ(Selected(), "1,2 4,2");
    Redo();
    EXPECT_EQ(Field(), "0 edited, 1 other changes");
    Undo();
    Save();
    EXPECT_EQ(Oven(), ovenAsShown);
}

TEST_F(KeepStored, OfAllLinesLeavesTheFileAsItIs)
{
    OpenPanel();
    Key(Qt::Key_A, Qt::ControlModifier);
    Key(Qt::Key_K, Qt::ControlModifier);
    EXPECT_EQ(Listed(), QStringList());
    EXPECT_EQ(PanelSummary(), "No value changes.");
    EXPECT_TRUE(Panel().isAncestorOf(QApplication::focusWidget()));
    Key(Qt::Key_Escape);
    Save();
    EXPECT_EQ(Oven(), oven);
    EXPECT_EQ(Strip(), "");
    Save(); // it stays so
    EXPECT_EQ(Oven(), oven);
}

TEST_F(KeepStored, ShowsTheWordsAsTheyAreReadAndKeepsTheCellsText)
{
    ClickCell(1, kBelt);
    Choose("actionKeepStored");
    EXPECT_EQ(Grid().GetItemText(1, kBelt), "1.50");
    EXPECT_FALSE(Told().contains("a save stores")) << Told().toStdString();
}

TEST_F(KeepStored, IsOffWhereTheChosenCellsStayAsTheyAre)
{
    const auto isOn = [this](const char* action) {
        OpenEditMenu();
        const bool is = Action(action).isEnabled();
        CloseEditMenu();
        return is;
    };
    ClickCell(2, kBelt);
    EXPECT_FALSE(isOn("actionKeepStored"));
    TypeIntoCell(1, kBelt, "1.15");
    EXPECT_FALSE(isOn("actionKeepStored")) << "it is edited";
    EXPECT_TRUE(isOn("actionStoreExactly"));
    ClickCell(4, kBelt);
    EXPECT_TRUE(isOn("actionKeepStored"));
    EXPECT_FALSE(isOn("actionStoreExactly"));
}

TEST_F(KeepStored, OfAnEditedLineOffersNothing)
{
    TypeIntoCell(2, kBelt, "0.80");
    OpenPanel();
    ChooseLine(1);
    EXPECT_FALSE(Find<QPushButton>("buttonKeepStored").isEnabled());
    Key(Qt::Key_K, Qt::ControlModifier);
    EXPECT_EQ(Field(), "1 edited, 3 others change");
    ChooseLine(0);
    EXPECT_TRUE(Find<QPushButton>("buttonKeepStored").isEnabled());
}
