#include "controls/GridModel.h"
#include "tests/support/Formats.h"
#include "tests/support/GuiTest.h"
#include "tests/support/TestFiles.h"
#include "tests/views/RecordingFrame.h"
#include "views/RecipeDataShowView.h"
#include "views/TextCrossing.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

namespace {

/// A table of ten rows and two columns, 10·row + column, in a window of its own.
struct TableOfTen : testing::Test {
    TableOfTen()
    {
        frame.document.TakeSettings(
            {MakeFormat(u"two", {ArrayOf(MakeItem(u"Word", DataType::Signed16, 1, 5), 2)}), 0, 10});
        Bytes words;
        for (int row = 1; row <= 10; ++row)
            for (const int word : {10 * row, 10 * row + 1}) {
                words.push_back(std::byte(word));
                words.push_back(std::byte{0});
            }
        WriteAll(folder / "a.rcp", words);
        frame.document.StartOpen(folder / "a.rcp", FileType::Rcp);
        view.ShowData(FileType::Rcp);
        frame.acceptsValue = [this](int column, const QString& text) { return view.ValidateCellValue(column, text); };
        view.resize(600, 400);
        EXPECT_TRUE(ShowActive(view));
        view.setFocus();
    }

    QString Cell(int row, int column) { return view.Grid().GetItemText(row, column); }
    QString Value(int row, int column) // of the data
    {
        return ToQString(frame.document.Rows().Text(row, static_cast<std::size_t>(column)));
    }
    void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(view.window()->focusWidget(), key, modifiers);
    }
    std::string Focus()
    {
        const auto place = view.FocusCell();
        return place ? std::to_string(place->row) + "," + std::to_string(place->column) : "none";
    }

    CTempFolder folder;
    CRecordingFrame frame;
    CRecipeDataShowView view{frame};
};

} // namespace

TEST(ShownRows, AgreeWithAListOfThem)
{
    std::mt19937 random(20);
    const auto below = [&](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
    for (int round = 0; round < 300; ++round) {
        const int all = 1 + below(30);
        std::set<std::int32_t> model;
        for (int i = below(all + 1); i > 0; --i)
            model.insert(below(all));
        CShownRows shown;
        shown.ShowSome({model.begin(), model.end()}, all);
        std::vector<std::int32_t> added;
        for (int i = below(4); i > 0; --i)
            added.push_back(below(all + 2) - 1);
        const std::size_t before = model.size();
        for (const std::int32_t row : added)
            if (row >= 0 && row < all)
                model.insert(row);
        EXPECT_EQ(shown.Add(added), model.size() - before);
        const std::vector<std::int32_t> rows(model.begin(), model.end());
        EXPECT_EQ(shown.AreSome(), rows.size() < static_cast<std::size_t>(all));
        ASSERT_EQ(shown.Count(), static_cast<int>(rows.size()));
        for (int index = -1; index <= shown.Count(); ++index) {
            const bool isThere = index >= 0 && index < shown.Count();
            EXPECT_EQ(shown.RowAt(index), isThere ? rows[static_cast<std::size_t>(index)] : -1);
        }
        for (int row = -1; row <= all; ++row) {
            const auto found = std::lower_bound(rows.begin(), rows.end(), row);
            const int near = std::min(static_cast<int>(found - rows.begin()), shown.Count() - 1);
            EXPECT_EQ(shown.IndexNear(row), near);
            EXPECT_EQ(shown.IndexOf(row), model.contains(row) ? std::optional(near) : std::nullopt);
        }
    }
}

TEST_F(TableOfTen, ShowsTheChosenRowsWithTheirOwnNumbersAndAddresses)
{
    ASSERT_TRUE(view.ShowOnlyRows({2, 3, 7}));
    EXPECT_EQ(view.Grid().RowCount(), 4);
    EXPECT_EQ(Cell(1, 0), "3");
    EXPECT_EQ(Cell(3, 0), "8");
    EXPECT_EQ(Cell(3, 1), "RW14");
    EXPECT_EQ(Cell(3, 2), "80");
    EXPECT_EQ(view.DataRowOf(0), -1);
    EXPECT_EQ(view.DataRowOf(3), 7);
    EXPECT_EQ(view.GridRowOf(3), 2);
    EXPECT_EQ(view.GridRowOf(4), std::nullopt);
    ASSERT_TRUE(view.ShowAllRows());
    EXPECT_EQ(view.Grid().RowCount(), 11);
    EXPECT_EQ(Cell(3, 2), "30");
}

TEST_F(TableOfTen, TheFocusStaysOrGoesToTheNextRowThatIsShown)
{
    view.GoToCell({3, 1});
    ASSERT_TRUE(view.ShowOnlyRows({2, 3, 7}));
    EXPECT_EQ(Focus(), "3,1");
    ASSERT_TRUE(view.ShowOnlyRows({1, 7}));
    EXPECT_EQ(Focus(), "7,1");
    ASSERT_TRUE(view.ShowOnlyRows({1, 2}));
    EXPECT_EQ(Focus(), "2,1");
    ASSERT_TRUE(view.ShowAllRows());
    EXPECT_EQ(Focus(), "2,1");
    EXPECT_TRUE(view.ChosenCellInfo().startsWith("RW5"));
}

TEST_F(TableOfTen, TypingChangesTheRowThatIsSeen)
{
    ASSERT_TRUE(view.ShowOnlyRows({2, 7}));
    QTest::mouseClick(view.Grid().viewport(), Qt::LeftButton, {},
                      view.Grid().visualRect(view.Grid().Model().BodyIndex(2, 2)).center());
    QTest::keyClicks(view.window()->focusWidget(), "5");
    Key(Qt::Key_Return);
    EXPECT_EQ(Value(7, 0), "5");
    EXPECT_EQ(Value(1, 0), "20");
    EXPECT_EQ(view.Grid().RowCount(), 3);
    EXPECT_EQ(Cell(2, 2), "5");
}

TEST_F(TableOfTen, ARefusedTextIsToldWithTheNumberOfItsRow)
{
    ASSERT_TRUE(view.ShowOnlyRows({2, 7}));
    view.GoToCell({7, 1});
    QTest::keyClicks(view.window()->focusWidget(), "x");
    Key(Qt::Key_Return);
    EXPECT_EQ(frame.reporter.shown, std::vector<std::u16string>{u"Col 8,Row 3 data error !"});
}

TEST_F(TableOfTen, CommandsOnCellsLeaveHiddenRowsAlone)
{
    ASSERT_TRUE(view.ShowOnlyRows({2, 3, 7}));
    Key(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(view.ChosenRanges(), (std::vector<CellRange>{{2, 3, 0, 1}, {7, 7, 0, 1}}));
    Key(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "30\t31\n40\t41\n80\t81\n");
    QApplication::clipboard()->setText("1\n2\n3\n4\n");
    view.GoToCell({3, 0});
    Key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(Value(3, 0), "1");
    EXPECT_EQ(Value(4, 0), "50");
    EXPECT_EQ(Value(7, 0), "2");
    EXPECT_EQ(Value(8, 0), "90");
    EXPECT_EQ(frame.document.Rows().EditedCount(), 2u);
}

TEST_F(TableOfTen, ASaveSavesHiddenRows)
{
    view.GoToCell({5, 0});
    QTest::keyClicks(view.window()->focusWidget(), "7");
    Key(Qt::Key_Return);
    ASSERT_TRUE(view.ShowOnlyRows({2}));
    ASSERT_TRUE(view.WriteData(FileType::Rcp, ToQPath(frame.document.Path()), ForeignRule::Overwrite));
    const Bytes words = ReadAll(folder / "a.rcp");
    EXPECT_EQ(words.size(), 40u);
    EXPECT_EQ(words[20], std::byte{7});
    EXPECT_EQ(words[36], std::byte{100});
}

TEST_F(TableOfTen, WhoeverGoesToAHiddenCellSeesItsRow)
{
    ASSERT_TRUE(view.ShowOnlyRows({2, 7}));
    QSignalSpy told(&view, &CRecipeDataShowView::ShownRowsChanged);
    view.GoToCell({4, 1});
    EXPECT_EQ(Focus(), "4,1");
    EXPECT_EQ(view.Grid().RowCount(), 4);
    EXPECT_EQ(view.ShownRows().Count(), 3);
    ASSERT_EQ(told.size(), 1);
    EXPECT_EQ(told[0][0].toULongLong(), 1u);
    view.GoToCell({7, 1}); // nothing to be shown
    EXPECT_EQ(told.size(), 1);
}

TEST_F(TableOfTen, AnUndoOfAHiddenEditShowsItsRow)
{
    view.GoToCell({5, 0});
    QTest::keyClicks(view.window()->focusWidget(), "7");
    Key(Qt::Key_Return);
    ASSERT_TRUE(view.ShowOnlyRows({2}));
    view.ShowEdited(frame.document.Undo());
    EXPECT_EQ(Focus(), "5,0");
    EXPECT_EQ(Cell(2, 2), "60");
}

TEST_F(TableOfTen, TheNextChangeIsFoundInAHiddenRow)
{
    view.GoToCell({5, 0});
    QTest::keyClicks(view.window()->focusWidget(), "7");
    Key(Qt::Key_Return);
    ASSERT_TRUE(view.ShowOnlyRows({2}));
    EXPECT_TRUE(view.GoToNextEdited());
    EXPECT_EQ(Focus(), "5,0");
}

TEST_F(TableOfTen, ReadingAgainShowsAllRows)
{
    ASSERT_TRUE(view.ShowOnlyRows({2}));
    QSignalSpy told(&view, &CRecipeDataShowView::ShownRowsChanged);
    view.ShowData(FileType::Rcp);
    EXPECT_FALSE(view.ShownRows().AreSome());
    EXPECT_EQ(view.Grid().RowCount(), 11);
    EXPECT_EQ(told.size(), 1);
}

TEST_F(TableOfTen, ARefusedEditKeepsTheRowsAsTheyAre)
{
    view.GoToCell({5, 0});
    QTest::keyClicks(view.window()->focusWidget(), "x");
    EXPECT_FALSE(view.ShowOnlyRows({2}));
    EXPECT_EQ(view.Grid().RowCount(), 11);
}

TEST_F(TableOfTen, ColumnsKeepTheirWidths)
{
    view.Grid().SetColumnWidth(2, 171);
    ASSERT_TRUE(view.ShowOnlyRows({2}));
    EXPECT_EQ(view.Grid().ColumnWidth(2), 171);
    ASSERT_TRUE(view.ShowOnlyRows({}));
    EXPECT_EQ(view.Grid().ColumnWidth(2), 171);
    EXPECT_EQ(Focus(), "none");
    ASSERT_TRUE(view.ShowAllRows());
    EXPECT_EQ(view.Grid().ColumnWidth(2), 171);
}

TEST_F(TableOfTen, TheTableStaysScrolledAsItWas)
{
    const QScrollBar& bar = *view.Grid().horizontalScrollBar();
    view.Grid().SetColumnWidth(2, 900);
    QApplication::processEvents();
    view.GoToCell({3, 1});
    QApplication::processEvents();
    const int scrolled = bar.value();
    ASSERT_GT(scrolled, 0);
    ASSERT_TRUE(view.ShowOnlyRows({3, 4}));
    QApplication::processEvents();
    EXPECT_EQ(bar.value(), scrolled);
    EXPECT_EQ(view.Grid().horizontalHeader()->offset(), scrolled);
    EXPECT_EQ(bar.maximum(), view.Grid().horizontalHeader()->length() - view.Grid().viewport()->width());
    EXPECT_EQ(view.Grid().verticalScrollBar()->maximum(), 0);
}
