// The grid as assistive programs see it: a table with named headers, whose cells can be read and changed.

#include "controls/GridModel.h"
#include "tests/controls/GridTestBed.h"
#include "tests/support/GuiTest.h"

#include <QAccessible>
#include <QTest>

namespace {

struct GridAccess : CGridTestBed {
    void SetUp() override
    {
        CGridTestBed::SetUp();
        Fill(4, 5);
        access = QAccessible::queryAccessibleInterface(grid);
        ASSERT_NE(access, nullptr);
        ASSERT_NE(access->tableInterface(), nullptr);
    }

    /// A data cell by its place in the grid.
    QAccessibleInterface* Cell(int row, int column) const
    {
        return access->tableInterface()->cellAt(row - grid->FixedRowCount(), column - grid->FixedColumnCount());
    }

    QAccessibleInterface* access = nullptr;
};

TEST_F(GridAccess, IsANamedTable)
{
    EXPECT_EQ(access->role(), QAccessible::Table);
    EXPECT_EQ(access->text(QAccessible::Name), QString("Grid"));
    EXPECT_EQ(access->tableInterface()->rowCount(), 3);
    EXPECT_EQ(access->tableInterface()->columnCount(), 3);
}

TEST_F(GridAccess, CellsHaveTheirTexts)
{
    for (int row = 1; row < 4; ++row)
        for (int column = 2; column < 5; ++column)
            EXPECT_EQ(Cell(row, column)->text(QAccessible::Name).toStdString(), TextAt(row, column));
}

TEST_F(GridAccess, HeadersHaveTheTitles)
{
    EXPECT_EQ(access->tableInterface()->columnDescription(1), QString("0,3"));
    EXPECT_EQ(access->tableInterface()->rowDescription(1), QString("2,0 2,1"));
    const auto* cell = Cell(2, 3)->tableCellInterface();
    ASSERT_NE(cell, nullptr);
    ASSERT_EQ(cell->columnHeaderCells().size(), 1);
    EXPECT_EQ(cell->columnHeaderCells().first()->text(QAccessible::Name), QString("0,3"));
    ASSERT_EQ(cell->rowHeaderCells().size(), 1);
    EXPECT_EQ(cell->rowHeaderCells().first()->text(QAccessible::Name), QString("2,0 2,1"));
}

TEST_F(GridAccess, SelectedCellsSaySo)
{
    Click(2, 3);
    EXPECT_TRUE(Cell(2, 3)->state().selected);
    EXPECT_TRUE(Cell(2, 3)->state().focused);
    EXPECT_FALSE(Cell(2, 4)->state().selected);
    EXPECT_EQ(access->tableInterface()->selectedCellCount(), 1);
}

TEST_F(GridAccess, AChildsNumberLeadsToItsCell)
{
    const CGridModel& model = grid->Model();
    for (int row = 1; row < 4; ++row)
        for (int column = 2; column < 5; ++column) {
            QAccessibleInterface* child = access->child(model.AccessibleChild(model.BodyIndex(row, column)));
            ASSERT_NE(child, nullptr);
            EXPECT_EQ(child->text(QAccessible::Name).toStdString(), TextAt(row, column));
        }
}

TEST_F(GridAccess, ATextSetIsCheckedAndToldAsAnEdit)
{
    Cell(2, 3)->setText(QAccessible::Value, "77");
    EXPECT_EQ(TextAt(2, 3), "77");
    EXPECT_EQ(log, Lines{"edited 2,3"});
    EXPECT_EQ(Cell(2, 3)->text(QAccessible::Name), QString("77"));
}

TEST_F(GridAccess, ARefusedTextIsReportedOnceWhoeverSetItHasGoneOn)
{
    Cell(2, 3)->setText(QAccessible::Value, "bad");
    EXPECT_EQ(TextAt(2, 3), "2,3");
    EXPECT_EQ(log, Lines{});
    EXPECT_TRUE(WaitFor([this] { return !log.empty(); }));
    EXPECT_EQ(log, Lines{"reported Col 2,Row 3 data error !"}); // kept: the row comes first
}

TEST_F(GridAccess, AReadOnlyCellKeepsItsText)
{
    grid->SetItem({.row = 2, .column = 3, .mask = GridItem::State, .state = CGridCellBase::ReadOnly});
    Cell(2, 3)->setText(QAccessible::Value, "77");
    EXPECT_EQ(TextAt(2, 3), "2,3");
    EXPECT_EQ(log, Lines{});
}

TEST_F(GridAccess, AModelsTextIsSetTheSameWay)
{
    CGridModel& model = grid->Model();
    EXPECT_TRUE(model.setData(model.BodyIndex(2, 3), "77"));
    EXPECT_TRUE(model.setData(model.BodyIndex(2, 3), "77")); // the same text is no edit
    EXPECT_FALSE(model.setData(model.BodyIndex(2, 4), "bad"));
    EXPECT_FALSE(model.setData(model.BodyIndex(2, 4), "1", Qt::DisplayRole));
    EXPECT_FALSE(model.setData(QModelIndex(), "1"));
    EXPECT_EQ(TextAt(2, 4), "2,4");
    EXPECT_EQ(log, Lines{"edited 2,3"});
}

TEST_F(GridAccess, TheEditorIsAFieldNamedAfterItsCell)
{
    Edit(2, 3, "1");
    QAccessibleInterface* editor = QAccessible::queryAccessibleInterface(Editor());
    ASSERT_NE(editor, nullptr);
    EXPECT_EQ(editor->role(), QAccessible::EditableText);
    EXPECT_EQ(editor->text(QAccessible::Name), QString("0,3, 2,0 2,1"));
    EXPECT_EQ(editor->text(QAccessible::Value), QString("1"));
    ASSERT_NE(editor->editableTextInterface(), nullptr);
    editor->editableTextInterface()->insertText(1, "23");
    Press(Qt::Key_Return);
    EXPECT_EQ(TextAt(2, 3), "123");
    EXPECT_EQ(log, (Lines{"edited 2,3", "-176 of 8 at 2,3"}));
}

} // namespace
