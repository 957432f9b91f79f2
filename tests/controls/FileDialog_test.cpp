#include "controls/FileDialog.h"
#include "tests/support/GuiTest.h"
#include "tests/support/ListOpenChoice.h"
#include "tests/support/TestFiles.h"

#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QScreen>
#include <QTest>
#include <QTreeView>
#include <gtest/gtest.h>

namespace {

enum Column { Name, Size, Type, Date, Columns };

struct FileDialog : testing::Test {
    void SetUp() override
    {
        WriteAll(folder / "a.rcp", Bytes(1'234'567));
        WriteAll(folder / "b.a type with a long name", Bytes(3));
    }

    QString Folder() const { return QString::fromStdString(folder.Path().generic_string()); }

    CTempFolder folder;
};

struct ShownFileDialog : FileDialog {
    void SetUp() override
    {
        FileDialog::SetUp();
        dialog.setDirectory(Folder());
        ASSERT_TRUE(ShowActive(dialog));
        list = dialog.findChild<QTreeView*>("treeView");
        ASSERT_NE(list, nullptr);
        ASSERT_TRUE(WaitFor([this] { return list->model()->rowCount(list->rootIndex()) == 2; }));
        ASSERT_TRUE(WaitFor([this] { return list->columnWidth(Date) >= Needed(Date); }));
    }

    /// What the texts of a column take, its title among them.
    int Needed(int column) const
    {
        int width = list->header()->sectionSizeHint(column);
        for (int row = 0; row < list->model()->rowCount(list->rootIndex()); ++row)
            width =
                std::max(width, list->sizeHintForIndex(list->model()->index(row, column, list->rootIndex())).width());
        return width;
    }

    CFileDialog dialog{nullptr, "Open file", {}};
    QTreeView* list = nullptr;
};

TEST_F(ShownFileDialog, ShowsAllColumnsInFull)
{
    for (int column = Name; column < Columns; ++column)
        EXPECT_GE(list->columnWidth(column), Needed(column)) << column;
    EXPECT_LE(list->header()->length(), list->viewport()->width());
    EXPECT_LE(dialog.width(), dialog.screen()->availableSize().width());
}

TEST_F(FileDialog, FilesOfAnotherTypeAreShownInFullToo)
{
    WriteAll(folder / "c.rcp", Bytes(3));
    WriteAll(folder / "d.csv", Bytes(1'023'000));
    std::filesystem::remove(folder / "a.rcp");
    CFileDialog dialog(nullptr, "Open file", Folder());
    dialog.setNameFilters({"(*.rcp)", "(*.csv)"});
    ASSERT_TRUE(ShowActive(dialog));
    auto& list = *dialog.findChild<QTreeView*>("treeView");
    const auto shows = [&](const char* name) {
        const QModelIndex first = list.model()->index(0, Name, list.rootIndex());
        return list.model()->rowCount(list.rootIndex()) == 1 && first.data().toString() == name;
    };
    ASSERT_TRUE(WaitFor([&] { return shows("c.rcp"); }));
    list.setColumnWidth(Size, 20);
    QTest::keyClick(dialog.findChild<QComboBox*>("fileTypeCombo"), Qt::Key_Down);
    ASSERT_TRUE(WaitFor([&] { return shows("d.csv"); }));
    EXPECT_TRUE(WaitFor([&] {
        return list.columnWidth(Size) >= list.sizeHintForIndex(list.model()->index(0, Size, list.rootIndex())).width();
    }));
}

TEST_F(ShownFileDialog, TheNamesTakeWhatTheDialogGainsAndLoses)
{
    const int before = list->columnWidth(Name);
    dialog.resize(dialog.width() + 100, dialog.height());
    EXPECT_EQ(list->columnWidth(Name), before + 100);
    for (int column = Size; column < Columns; ++column)
        EXPECT_GE(list->columnWidth(column), Needed(column)) << column;
    dialog.resize(200, dialog.height());
    EXPECT_GE(list->columnWidth(Name), 20 * dialog.fontMetrics().averageCharWidth());
}

TEST_F(ShownFileDialog, AColumnStaysTheUsersToDrag)
{
    EXPECT_EQ(list->header()->sectionResizeMode(Size), QHeaderView::Interactive);
    list->header()->resizeSection(Size, 200);
    EXPECT_EQ(list->columnWidth(Size), 200);
}

TEST_F(FileDialog, TheListOfCompletionsGoesFirst)
{
    CFileDialog dialog(nullptr, "Open file", Folder());
    dialog.setFileMode(QFileDialog::AnyFile);
    const CListOpenChoice choice("a.rcp");
    EXPECT_EQ(dialog.exec(), QDialog::Accepted);
    EXPECT_TRUE(choice.WasListOpen());
    EXPECT_TRUE(choice.ClosedListFirst());
    EXPECT_EQ(dialog.selectedFiles(), QStringList{Folder() + "/a.rcp"});
}

} // namespace
