#include "app/MainFrame.h"
#include "controls/GridCtrl.h"
#include "tests/app/FrameFixture.h"

#include <QLineEdit>
#include <QTest>

namespace fs = std::filesystem;

namespace {

/// The window over a copy of the sample library and the sample recipe.
struct TypicalEdit : FrameFixture {
    void SetUp() override
    {
        for (const char* name : {"RecipeFile.Dat", "bakery-oven.rcp"})
            fs::copy_file(fs::path(VANTOR_EXAMPLES) / name, folder / name, fs::copy_options::overwrite_existing);
        Start();
        OpenThroughDialog("bakery-oven.rcp");
    }

    QLineEdit& Editor() { return *qobject_cast<QLineEdit*>(frame->focusWidget()); }

    void Retype(const QString& text)
    {
        QTest::keyClick(&Editor(), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(&Editor(), text);
    }
};

constexpr int kRow = 3;                                                 // the third product
constexpr int kZone1Column = 6;                                         // "Zone °C(1)"
constexpr std::size_t kZone1Byte = 2 * (100 + 2 * 40 + 1 + 16 + 6 + 1); // start, two rows, then the items before it

} // namespace

TEST_F(TypicalEdit, ChangesTheEditedCellsWordsOnly)
{
    EXPECT_EQ(Title(), TitleWith("bakery-oven.rcp"));
    EXPECT_EQ(Grid().GetItemText(0, kZone1Column), QString::fromUtf8("Zone °C(1)"));
    const QString before = Grid().GetItemText(kRow, kZone1Column);
    const QString below = Grid().GetItemText(kRow + 1, kZone1Column);

    ClickCell(kRow, kZone1Column);
    QTest::keyClick(&Grid(), Qt::Key_F2);
    {
        const CModalAnswer answer(QMessageBox::Ok);
        Retype("2055.5"); // one digit too many before the point
        QTest::keyClick(&Editor(), Qt::Key_Return);
        EXPECT_EQ(answer.texts, std::vector<QString>{"Col 3,Row 6 data error !"});
        EXPECT_EQ(answer.titles, std::vector<QString>{"Vantor"});
        ASSERT_TRUE(ShowActive(*frame)); // the offscreen platform does not do it after a dialog
    }
    EXPECT_EQ(Grid().GetItemText(kRow, kZone1Column), before);
    EXPECT_FALSE(frame->Document().IsModified());

    QTest::keyClick(&Grid(), Qt::Key_F2);
    Retype("205.5");
    QTest::keyClick(&Editor(), Qt::Key_Down);
    EXPECT_EQ(Grid().GetItemText(kRow, kZone1Column), "205.5");
    EXPECT_EQ(Editor().text(), below); // the editor went on to the cell below
    QTest::keyClick(&Editor(), Qt::Key_Escape);

    QTest::keyClick(frame.get(), Qt::Key_S, Qt::ControlModifier);
    Bytes expected = ReadAll(fs::path(VANTOR_EXAMPLES) / "bakery-oven.rcp");
    expected[kZone1Byte] = std::byte{0x07}; // 2055 = 0x0807
    expected[kZone1Byte + 1] = std::byte{0x08};
    EXPECT_EQ(ReadAll(folder / "bakery-oven.rcp"), expected);
    EXPECT_FALSE(frame->Document().IsModified());
}

TEST_F(TypicalEdit, SavingTheSampleUnchangedChangesNoByte)
{
    Trigger(*frame, "actionSave");
    EXPECT_EQ(ReadAll(folder / "bakery-oven.rcp"), ReadAll(fs::path(VANTOR_EXAMPLES) / "bakery-oven.rcp"));
}
