// What users come for, done from start to end with keys and clicks. Each says how many of these it took.

#include "controls/GridCtrl.h"
#include "controls/GridModel.h"
#include "controls/Strip.h"
#include "tests/app/FindFixture.h"
#include "views/GoToBar.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QScrollBar>
#include <QTableView>
#include <QTest>
#include <QTreeWidget>

namespace fs = std::filesystem;

namespace {

constexpr int kProduct = 3; ///< columns of the grid, in "Oven recipe"
constexpr int kZone0 = 5;

/// The window over a copy of the sample, as big as a usual screen of a panel builder's notebook.
struct WholeTasks : FindFixture {
    void SetUp() override
    {
        fs::copy_file(fs::path(VANTOR_EXAMPLES) / "RecipeFile.Dat", folder / "RecipeFile.Dat",
                      fs::copy_options::overwrite_existing);
        fs::copy_file(fs::path(VANTOR_EXAMPLES) / "bakery-oven.rcp", folder / "bakery-oven.rcp");
        Start();
        frame->resize(1366, 728);
        frame->OpenPath(Path("bakery-oven.rcp"));
        Activate();
        Grid().setFocus();
    }

    /// A press of a key, counted.
    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        Key(key, modifiers);
        ++inputs;
    }

    void Type(const QString& text)
    {
        QTest::keyClicks(QApplication::focusWidget(), text);
        inputs += static_cast<int>(text.size());
    }

    QString FocusCell()
    {
        int row = 0;
        int column = 0;
        return Grid().FocusCell(row, column) ? QStringLiteral("%1,%2").arg(row).arg(column) : QString();
    }

    /// The format of the sample over more rows than the sample has.
    void ReadRows(int count)
    {
        Find<QLineEdit>("editReadCount").setText(QString::number(count));
        QTest::keyClick(&Find<QLineEdit>("editReadCount"), Qt::Key_Return);
        Grid().setFocus();
    }

    bool IsInSight(int row, int column)
    {
        const QModelIndex index = Grid().Model().BodyIndex(row, column);
        return Grid().viewport()->rect().contains(Grid().visualRect(index).center());
    }

    int inputs = 0;
};

} // namespace

TEST_F(WholeTasks, ARowIsGoneToByItsNumber)
{
    ReadRows(1000);
    Press(Qt::Key_G, Qt::ControlModifier);
    Type("812");
    Press(Qt::Key_Return);
    EXPECT_TRUE(FocusCell().startsWith("812,"));
    EXPECT_EQ(inputs, 5);
}

TEST_F(WholeTasks, AnAddressIsGoneTo)
{
    ReadRows(1000);
    Press(Qt::Key_G, Qt::ControlModifier);
    Type("RW4711");
    Press(Qt::Key_Return);
    EXPECT_EQ(FocusCell(), QStringLiteral("116,%1").arg(kProduct)); // RW4701 to RW4716
    EXPECT_EQ(inputs, 8);
}

TEST_F(WholeTasks, AProductIsFoundByItsName)
{
    Press(Qt::Key_F, Qt::ControlModifier);
    Type("ciab");
    EXPECT_TRUE(WaitFor([this] { return FocusCell() == QStringLiteral("10,%1").arg(kProduct); }));
    Press(Qt::Key_Escape);
    EXPECT_TRUE(Grid().hasFocus());
    EXPECT_EQ(inputs, 6);
}

TEST_F(WholeTasks, FortyRowsWithDecimalCommasArePasted)
{
    ReadRows(40);
    QString text;
    for (int row = 0; row < 40; ++row)
        text += QStringLiteral("%1,5\t%1,5\t%1,5\t%1,5\t%1,5\t%1,5\r\n").arg(200 + row);
    QApplication::clipboard()->setText(text);
    ClickCell(1, kZone0);
    {
        const CModalAnswer answer({CModalAnswer::Key(Qt::Key_Return)});
        Press(Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier);
        ++inputs; // the dialog's Enter
        Activate();
    }
    for (int row = 0; row < 40; ++row)
        for (int column = 0; column < 6; ++column)
            ASSERT_EQ(Grid().GetItemText(row + 1, kZone0 + column), QStringLiteral("%1.5").arg(200 + row));
    EXPECT_EQ(NextUndo(), "Paste (240 cells)");
    EXPECT_EQ(inputs, 2);
}

TEST_F(WholeTasks, APasteTellsOfTheRowsThatHaveNoPlace)
{
    QString text;
    for (int row = 0; row < 20; ++row)
        text += QStringLiteral("%1.5\n").arg(100 + row);
    PasteAt(9, kZone0, text);
    EXPECT_EQ(EditFixture::Told(), "16 rows did not fit.");
    EXPECT_EQ(Grid().GetItemText(12, kZone0), "103.5");
}

TEST_F(WholeTasks, ANumberIsFoundInTheWholeFile)
{
    QStringList places;
    const CModalAnswer answer({[&](QWidget& dialog) {
        QTest::keyClicks(QApplication::focusWidget(), "235.0");
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        const auto& model = *FindIn<QTableView>(dialog, "tablePlaces").model();
        EXPECT_TRUE(WaitFor([&] { return model.rowCount() > 0; }));
        for (int row = 0; row < model.rowCount(); ++row)
            places << model.index(row, 0).data().toString() + u' ' + model.index(row, 1).data().toString();
        dialog.close();
    }});
    QMenu& menu = OpenEditMenuByKeys();
    QTest::keyClick(&menu, Qt::Key_E);
    inputs = 2 + 5 + 1;
    EXPECT_TRUE(places.contains("RW123 signed 16-bit")) << places.join('|').toStdString();
    EXPECT_EQ(inputs, 8);
}

TEST_F(WholeTasks, TheProductsNameStaysInSight)
{
    ClickCell(1, kProduct);
    Press(Qt::Key_V, Qt::AltModifier);
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_F);
    ++inputs;
    Press(Qt::Key_Right, Qt::ControlModifier); // to the last column
    EXPECT_GT(Grid().horizontalScrollBar()->value(), 0);
    EXPECT_TRUE(IsInSight(1, kProduct));
    EXPECT_TRUE(IsInSight(12, kProduct));
    EXPECT_EQ(inputs, 3);
}

TEST_F(WholeTasks, ADataSheetOfSevenLikeItemsIsEntered)
{
    auto& list = Find<QTreeWidget>("listItems");
    const int before = list.topLevelItemCount();
    list.setFocus();
    Press(Qt::Key_End);
    {
        const CModalAnswer answer({[this](QWidget& dialog) {
            QTest::keyClicks(&FindIn<QLineEdit>(dialog, "editDescription"), "T1");
            QTest::keyClick(&dialog, Qt::Key_Return);
            inputs += 3;
        }});
        Press(Qt::Key_Insert);
    }
    for (int i = 2; i <= 7; ++i) {
        Activate();
        list.setFocus();
        Press(Qt::Key_D, Qt::ControlModifier);
        const CModalAnswer answer({[this, i](QWidget& dialog) {
            auto& name = FindIn<QLineEdit>(dialog, "editDescription");
            EXPECT_TRUE(name.hasFocus());
            QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("T%1").arg(i));
            QTest::keyClick(&dialog, Qt::Key_Return);
            inputs += 3;
        }});
        Press(Qt::Key_Return);
    }
    ASSERT_EQ(list.topLevelItemCount(), before + 7);
    for (int i = 1; i <= 7; ++i)
        EXPECT_EQ(list.topLevelItem(before + i - 1)->text(3), QStringLiteral("T%1").arg(i));
    EXPECT_EQ(inputs, 5 + 6 * 5);
}
