#include "app/MainFrame.h"
#include "controls/GridCtrl.h"
#include "tests/app/FrameFixture.h"

#include <QLabel>
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

void Put(Bytes& bytes, std::size_t word, std::initializer_list<std::uint16_t> words)
{
    const Bytes put = WordBytes(words);
    std::copy(put.begin(), put.end(), bytes.begin() + static_cast<std::ptrdiff_t>(2 * word));
}

/// The sample with the zone edited below.
Bytes SampleWithZone()
{
    Bytes bytes = ReadAll(fs::path(VANTOR_EXAMPLES) / "bakery-oven.rcp");
    Put(bytes, kZone1Byte / 2, {0x0807}); // 2055
    return bytes;
}

/// `bytes` with what a save of all cells stores of the three values that it cannot store as they are.
Bytes StoredAsShown(Bytes bytes)
{
    Put(bytes, 252, {0x0000, 0x41C8});                 // "25.0" in place of 25.04
    Put(bytes, 416, {0x0000, 0x0000, 0xE800, 0x4076}); // "366.50" in place of 366.4975
    Put(bytes, 569, {0x0032});                         // "0.50" in place of 0.05, which is shown so
    return bytes;
}

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

    QTest::keyClick(frame.get(), Qt::Key_F9, Qt::ShiftModifier);
    EXPECT_EQ(ReadAll(folder / "bakery-oven.rcp"), SampleWithZone());
    EXPECT_FALSE(frame->Document().IsModified());
}

TEST_F(TypicalEdit, ASaveStoresWhatIsShownAndPutsBackWhatWasNotEdited)
{
    TypeIntoCell(kRow, kZone1Column, "205.5");
    QTest::keyClick(frame.get(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(ReadAll(folder / "bakery-oven.rcp"), StoredAsShown(SampleWithZone()));
    EXPECT_EQ(Find<QLabel>("labelStrip").text(), "3 values that you did not edit were stored as shown.");
    QTest::keyClick(frame->focusWidget(), Qt::Key_F6); // from the table to the strip
    QTest::keyClick(frame->focusWidget(), Qt::Key_Tab);
    QTest::keyClick(frame->focusWidget(), Qt::Key_Return);
    EXPECT_EQ(ReadAll(folder / "bakery-oven.rcp"), SampleWithZone());
}
