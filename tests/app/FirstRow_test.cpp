// What the table's first row holds, beside the items of the format.

#include "controls/GridCtrl.h"
#include "library/FormatLibrary.h"
#include "tests/app/EditFixture.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QTest>
#include <QTreeWidget>

namespace {

struct FirstRow : EditFixture {
    void StartWith(const std::vector<DataFormat>& formats)
    {
        frame.reset();
        FormatLibrary library;
        for (const DataFormat& format : formats)
            library.formats.push_back(std::make_unique<DataFormat>(format));
        library.rowCount = 2;
        library.save(folder / "RecipeFile.Dat");
        Start();
    }

    QTreeWidget& List() { return Find<QTreeWidget>("listItems"); }

    QStringList Beside()
    {
        QStringList texts;
        for (int row = 0; row < List().topLevelItemCount(); ++row)
            texts << List().topLevelItem(row)->text(4);
        return texts;
    }

    void ChooseFormat(int index)
    {
        auto& box = Find<QComboBox>("comboFormats");
        box.setFocus();
        QTest::keyClick(&box, Qt::Key_Home);
        for (int i = 0; i < index; ++i)
            QTest::keyClick(&box, Qt::Key_Down);
    }
};

using Texts = QStringList;

DataFormat Words(std::u16string_view name, std::int32_t count)
{
    return MakeFormat(name, {ArrayOf(MakeItem(u"W", DataType::Unsigned16, 1, 5), count)});
}

} // namespace

TEST_F(FirstRow, FollowsEditsUndoAndReadings)
{
    EXPECT_EQ(Beside(), (Texts{"1", "ABCD"}));
    TypeIntoCell(1, 2, "9");
    EXPECT_EQ(Beside(), (Texts{"9", "ABCD"}));
    TypeIntoCell(2, 2, "7"); // another row
    EXPECT_EQ(Beside(), (Texts{"9", "ABCD"}));
    Undo();
    Undo();
    EXPECT_EQ(Beside(), (Texts{"1", "ABCD"}));
    TypeInto(*frame, "editStartAddress", "3");
    ClickOn(*frame, "buttonRefreshData");
    EXPECT_EQ(Beside(), (Texts{"2", "EFGH"}));
    EXPECT_TRUE(List().topLevelItem(1)->toolTip(0).endsWith("First row: EFGH"));
    Grid().setFocus();
    Undo();
    EXPECT_EQ(Beside(), (Texts{"1", "ABCD"}));
}

TEST_F(FirstRow, IsThatOfTheFormatInUseAlone)
{
    StartWith({Words(u"Three", 3), Words(u"Twenty", 20)});
    EXPECT_EQ(Beside(), Texts{""}) << "nothing is open";
    frame->OpenPath(MakeFile("zeros.rcp", 40));
    EXPECT_EQ(Beside(), Texts{"0, 0, 0"});
    TypeIntoCell(1, 3, "12");
    EXPECT_EQ(Beside(), Texts{"0, 12, 0"});
    ChooseFormat(1);
    EXPECT_EQ(Beside(), Texts{""});
    ClickOn(*frame, "buttonUseFormat");
    EXPECT_EQ(Beside(), Texts{"0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, …"});
    ChooseFormat(0);
    EXPECT_EQ(Beside(), Texts{""});
}

TEST_F(FirstRow, IsToldBelowTheListForTheCurrentItem)
{
    const auto told = [this] { return Find<QLabel>("labelFirstRow").text(); };
    EXPECT_EQ(told(), "");
    List().setFocus(Qt::TabFocusReason);
    EXPECT_EQ(told(), "First row: 1");
    Key(Qt::Key_Down);
    EXPECT_EQ(told(), "First row: ABCD");
    TypeIntoCell(1, 3, "<b");
    EXPECT_EQ(told(), "First row: <b");
    ClickOn(*frame, "buttonDeleteFormat");
    EXPECT_EQ(told(), "");
}

TEST_F(FirstRow, GoesWithTheItems)
{
    List().setFocus();
    List().setCurrentItem(List().topLevelItem(0));
    Key(Qt::Key_Down, Qt::AltModifier);
    ASSERT_EQ(List().topLevelItem(0)->text(3), "Name");
    EXPECT_EQ(Beside()[0], Grid().GetItemText(1, 2));
    EXPECT_EQ(Beside()[1], Grid().GetItemText(1, 3));
    Key(Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(Beside(), (Texts{"1", "ABCD"}));
    auto& box = Find<QCheckBox>("checkAutoUse");
    QTest::mouseClick(&box, Qt::LeftButton, {}, QPoint(8, box.height() / 2));
    List().setFocus();
    Key(Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(Beside(), (Texts{"", ""})) << "the rows are not read so";
}

TEST_F(FirstRow, IsEmptyWithoutRows)
{
    ClickOn(*frame, "buttonDeleteFormat");
    EXPECT_EQ(Beside(), Texts{});
    Grid().setFocus();
    Undo();
    EXPECT_EQ(Beside(), (Texts{"1", "ABCD"}));
    frame->OpenPath(MakeFile("notes.txt"));
    EXPECT_EQ(Beside(), (Texts{"", ""}));
}
