#include "controls/GridCtrl.h"
#include "controls/GridModel.h"
#include "controls/ListCtrlCl.h"
#include "library/FormatLibrary.h"
#include "tests/app/FrameFixture.h"

#include <QComboBox>
#include <QMenu>
#include <QTest>
#include <QToolBar>

namespace {

constexpr const char* kRefusal = "Error: The Value is not illegal or beyond the range!";

/// The whole window over a file of two rows, a column for each of the types. The signed items have a digit for the
/// sign.
struct BitBrowseCommand : FrameFixture {
    enum Column { Signed16 = 2, Signed32, Unsigned16, Unsigned32, Hex16, Hex32, Float, Double, String, Array0, Array1 };

    void SetUp() override
    {
        SaveLibrary(
            {MakeFormat(u"Types",
                        {MakeItem(u"S16", DataType::Signed16, 1, 6), MakeItem(u"S32", DataType::Signed32, 2, 11),
                         MakeItem(u"U16", DataType::Unsigned16, 1, 5), MakeItem(u"U32", DataType::Unsigned32, 2, 10),
                         MakeItem(u"H16", DataType::Hex16, 1, 4), MakeItem(u"H32", DataType::Hex32, 2, 8),
                         MakeItem(u"Real", DataType::Float, 2, 3), MakeItem(u"Long", DataType::Double, 4, 3),
                         MakeItem(u"Name", DataType::String, 2, 0),
                         ArrayOf(MakeItem(u"Zone", DataType::Signed16, 1, 5, 1), 2)}),
             MakeFormat(u"Other", {MakeItem(u"Text", DataType::String, 19, 0)})});
        words[0] = BytesOf({100, 0});
        WriteAll(folder / "a.rcp", Image());
        Start();
        OpenThroughDialog("a.rcp");
    }

    void SaveLibrary(const std::vector<DataFormat>& formats)
    {
        FormatLibrary library;
        for (const DataFormat& format : formats)
            library.formats.push_back(std::make_unique<DataFormat>(format));
        library.rowCount = 2;
        library.save(folder / "RecipeFile.Dat");
    }

    /// The bytes of the file as the test expects them.
    Bytes Image() const
    {
        Bytes image;
        for (const Bytes& word : words)
            image.insert(image.end(), word.begin(), word.end());
        return image;
    }

    QPoint CellCentre(int row, int column) { return Grid().visualRect(Grid().Model().BodyIndex(row, column)).center(); }

    void ClickCell(int row, int column)
    {
        Grid().scrollTo(Grid().Model().BodyIndex(row, column));
        FrameFixture::ClickCell(row, column);
    }

    /// Right-clicks the cell and returns the menu that comes up.
    QMenu& RightClick(int row, int column)
    {
        Grid().scrollTo(Grid().Model().BodyIndex(row, column));
        QTest::mouseClick(Grid().viewport(), Qt::RightButton, {}, CellCentre(row, column));
        auto& menu = Find<QMenu>("menuBitBrowse");
        EXPECT_TRUE(WaitFor([&] { return menu.isVisible(); }));
        return menu;
    }

    static void Choose(QMenu& menu)
    {
        QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(menu.actions().front()).center());
    }

    /// Clicks the square of bit `bit` in the bit browser.
    static CModalAnswer::Action Flip(int bit)
    {
        return [bit](QWidget& dialog) {
            auto& list = FindIn<CListCtrlCl>(dialog, "listBits");
            const int cell = 16 * list.rowCount() - 1 - bit;
            const QModelIndex index = list.model()->index(cell / 16, cell % 16);
            QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualRect(index).center());
        };
    }

    static CModalAnswer::Action OK() { return CModalAnswer::PressNamed("buttonOK"); }
    static CModalAnswer::Action Cancel() { return CModalAnswer::PressNamed("buttonCancel"); }

    std::vector<Bytes> words = std::vector<Bytes>(38, BytesOf({0, 0}));
};

struct EachTypeCase {
    const char* name;
    int column;
    int bit;
    const char* text;
    std::size_t word; ///< in the file, of the first row
    std::uint16_t value;
    friend void PrintTo(const EachTypeCase& c, std::ostream* out) { *out << c.name; }
};

struct BitBrowseOfType : BitBrowseCommand, testing::WithParamInterface<EachTypeCase> {};

struct DisabledCase {
    const char* name;
    int column;
    friend void PrintTo(const DisabledCase& c, std::ostream* out) { *out << c.name; }
};

struct BitBrowseDisabled : BitBrowseCommand, testing::WithParamInterface<DisabledCase> {};

} // namespace

TEST_F(BitBrowseCommand, ARightClickOpensItsMenuAtTheMouse)
{
    QMenu& menu = RightClick(1, Signed16);
    ASSERT_EQ(menu.actions().size(), 1);
    EXPECT_EQ(menu.actions().front()->text(), "BitBrowse");
    EXPECT_EQ(menu.actions().front()->property("controlId"), 32784);
    EXPECT_EQ(menu.pos(), Grid().viewport()->mapToGlobal(CellCentre(1, Signed16)));
    menu.close();
}

TEST_P(BitBrowseOfType, PutsTheFlippedValueIntoCellAndFile)
{
    const EachTypeCase& c = GetParam();
    QMenu& menu = RightClick(1, c.column);
    EXPECT_FALSE(frame->Document().IsModified());
    {
        const CModalAnswer answer({Flip(c.bit), OK()});
        Choose(menu);
    }
    EXPECT_EQ(Grid().GetItemText(1, c.column), c.text);
    EXPECT_EQ(Grid().GetItemText(2, c.column), "0");
    EXPECT_TRUE(frame->Document().IsModified());
    EXPECT_EQ(ReadAll(folder / "a.rcp"), Image()); // nothing is written before it is saved
    Trigger(*frame, "actionSave");
    words[c.word] = BytesOf({c.value % 256, c.value / 256});
    EXPECT_EQ(ReadAll(folder / "a.rcp"), Image());
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Types, BitBrowseOfType, testing::Values(
    //           name          column                        bit  text        word  value
    EachTypeCase{"Signed16",   BitBrowseCommand::Signed16,     0, "101",         0, 101},
    EachTypeCase{"Negative",   BitBrowseCommand::Signed16,    15, "-32668",      0, 0x8064},
    EachTypeCase{"Signed32",   BitBrowseCommand::Signed32,    31, "-2147483648", 2, 0x8000},
    EachTypeCase{"Unsigned16", BitBrowseCommand::Unsigned16,  15, "32768",       3, 0x8000},
    EachTypeCase{"Unsigned32", BitBrowseCommand::Unsigned32,  16, "65536",       5, 1},
    EachTypeCase{"Hex16",      BitBrowseCommand::Hex16,       11, "800",         6, 0x0800},
    EachTypeCase{"Hex16Lower", BitBrowseCommand::Hex16,        3, "8",           6, 8},
    EachTypeCase{"Hex32",      BitBrowseCommand::Hex32,       30, "40000000",    8, 0x4000}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(BitBrowseCommand, HexadecimalDigitsReachTheCellInLowerCase)
{
    ClickCell(1, Hex16);
    const CModalAnswer answer({Flip(15), Flip(13), Flip(3), Flip(1), Flip(0), OK()});
    Trigger(*frame, "actionBitBrowse");
    EXPECT_EQ(Grid().GetItemText(1, Hex16), "a00b"); // kept
    Trigger(*frame, "actionSave");
    words[6] = BytesOf({0x0B, 0xA0});
    EXPECT_EQ(ReadAll(folder / "a.rcp"), Image());
}

TEST_F(BitBrowseCommand, DecimalsAreLostWithTheFirstFlip)
{
    Grid().SetItemText(1, Array0, "12.3");
    ClickCell(1, Array0);
    const CModalAnswer answer({Flip(0), OK()});
    Trigger(*frame, "actionBitBrowse");
    EXPECT_EQ(Grid().GetItemText(1, Array0), "121"); // kept: 12 * 10 + 1
}

TEST_P(BitBrowseDisabled, InToolBarAndMenu)
{
    ClickCell(1, BitBrowseCommand::Signed16);
    EXPECT_TRUE(Action("actionBitBrowse").isEnabled());
    ClickCell(1, GetParam().column);
    EXPECT_FALSE(Action("actionBitBrowse").isEnabled());
    QMenu& menu = RightClick(2, GetParam().column);
    EXPECT_FALSE(menu.actions().front()->isEnabled());
    Choose(menu); // opens nothing, or the test would hang
    menu.close();
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Types, BitBrowseDisabled, testing::Values(
    DisabledCase{"Float",  BitBrowseCommand::Float},
    DisabledCase{"Double", BitBrowseCommand::Double},
    DisabledCase{"String", BitBrowseCommand::String}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(BitBrowseCommand, IsDisabledWhileNoCellIsChosen)
{
    EXPECT_FALSE(Action("actionBitBrowse").isEnabled());
    ClickCell(1, Signed16);
    EXPECT_TRUE(Action("actionBitBrowse").isEnabled());
    frame->ShowRecipeData(FileType::Rcp); // read again: no cell is chosen any more
    EXPECT_FALSE(Action("actionBitBrowse").isEnabled());
}

TEST_F(BitBrowseCommand, TheToolBarButtonOpensItOnTheChosenCell)
{
    ClickCell(1, Signed16);
    const CModalAnswer answer({Flip(2), OK()});
    auto& bar = Find<QToolBar>("toolBar");
    QTest::mouseClick(bar.widgetForAction(&Action("actionBitBrowse")), Qt::LeftButton);
    EXPECT_EQ(answer.titles, (std::vector<QString>{"Bit Browser[S16]", "Bit Browser[S16]"}));
    EXPECT_EQ(Grid().GetItemText(1, Signed16), "96");
}

TEST_F(BitBrowseCommand, AClickOnTheFocusCellChoosesItAgain)
{
    ClickCell(1, Signed16);
    RightClick(2, String).close(); // chooses that one without moving the focus
    EXPECT_FALSE(Action("actionBitBrowse").isEnabled());
    ClickCell(1, Signed16);
    ASSERT_TRUE(Action("actionBitBrowse").isEnabled());
    const CModalAnswer answer({Flip(0), OK()});
    Trigger(*frame, "actionBitBrowse");
    EXPECT_EQ(answer.titles.front(), "Bit Browser[S16]");
    EXPECT_EQ(Grid().GetItemText(1, Signed16), "101");
}

TEST_F(BitBrowseCommand, AKeyOnTheFocusCellChoosesItAgain)
{
    ClickCell(1, Signed16);
    for (const Qt::Key key : {Qt::Key_Up, Qt::Key_F2}) { // one with nowhere to go, one that edits
        RightClick(2, String).close();
        EXPECT_FALSE(Action("actionBitBrowse").isEnabled());
        QTest::keyClick(&Grid(), key);
        EXPECT_TRUE(Action("actionBitBrowse").isEnabled());
    }
}

TEST_F(BitBrowseCommand, CtrlArrowsChooseTheCellTheyGoTo)
{
    ClickCell(1, Signed16);
    QTest::keyClick(&Grid(), Qt::Key_Down, Qt::ControlModifier);
    const CModalAnswer answer({Flip(0), OK()});
    Trigger(*frame, "actionBitBrowse");
    EXPECT_EQ(answer.titles.front(), "Bit Browser[S16]");
    EXPECT_EQ(Grid().GetItemText(1, Signed16), "100");
    EXPECT_NE(Grid().GetItemText(Grid().RowCount() - 1, Signed16), "0");
}

TEST_F(BitBrowseCommand, TheKeyboardDoesTheWholeRoad)
{
    ClickCell(1, Signed16);
    QTest::keyClick(&Grid(), Qt::Key_F10, Qt::ShiftModifier);
    auto& menu = Find<QMenu>("menuBitBrowse");
    ASSERT_TRUE(WaitFor([&] { return menu.isVisible(); }));
    QTest::keyClick(&menu, Qt::Key_Down);
    const CModalAnswer answer(
        {CModalAnswer::Key(Qt::Key_End), CModalAnswer::Key(Qt::Key_Space), CModalAnswer::Key(Qt::Key_Return)});
    QTest::keyClick(&menu, Qt::Key_Return);
    EXPECT_EQ(Grid().GetItemText(1, Signed16), "101");
    EXPECT_TRUE(frame->Document().IsModified());
}

TEST_F(BitBrowseCommand, AnElementOfAnArrayIsNamedAsItsItem)
{
    ClickCell(1, Array1);
    const CModalAnswer answer({Flip(3), OK()});
    Trigger(*frame, "actionBitBrowse");
    EXPECT_EQ(answer.titles.front(), "Bit Browser[Zone]");
    EXPECT_EQ(Grid().GetItemText(1, Array1), "8");
}

TEST_F(BitBrowseCommand, CancelLeavesCellAndFlagAsTheyWere)
{
    ClickCell(1, Signed16);
    const CModalAnswer answer({Flip(0), Cancel()});
    Trigger(*frame, "actionBitBrowse");
    EXPECT_EQ(Grid().GetItemText(1, Signed16), "100");
    EXPECT_FALSE(frame->Document().IsModified());
}

TEST_F(BitBrowseCommand, EachOpeningStartsFromTheCellsText)
{
    ClickCell(1, Signed16);
    {
        const CModalAnswer answer({Flip(0), Cancel()});
        Trigger(*frame, "actionBitBrowse");
    }
    {
        const CModalAnswer answer({Flip(1), OK()});
        Trigger(*frame, "actionBitBrowse");
    }
    EXPECT_EQ(Grid().GetItemText(1, Signed16), "102"); // the cancelled flip of bit 0 is forgotten
    {
        const CModalAnswer answer({Flip(3), OK()});
        Trigger(*frame, "actionBitBrowse");
    }
    EXPECT_EQ(Grid().GetItemText(1, Signed16), "110"); // and the accepted one of bit 1 is not
}

TEST_F(BitBrowseCommand, ARefusedValueIsReportedOverTheDialogWhichStays)
{
    ClickCell(1, Hex32);
    const CModalAnswer answer({Flip(31), OK(), CModalAnswer::Press(QMessageBox::Ok), Flip(31), OK()});
    Trigger(*frame, "actionBitBrowse");
    EXPECT_EQ(answer.texts, (std::vector<QString>{"Bit Browser[H32]", "Bit Browser[H32]", kRefusal, "Bit Browser[H32]",
                                                  "Bit Browser[H32]"}));
    EXPECT_EQ(answer.titles[2], "Vantor");
    EXPECT_EQ(Grid().GetItemText(1, Hex32), "0");
    EXPECT_TRUE(frame->Document().IsModified()); // OK was pressed in the end
}

TEST_F(BitBrowseCommand, ARefusedValueThatIsCancelledChangesNothing)
{
    ClickCell(1, Hex32);
    const CModalAnswer answer({Flip(31), OK(), CModalAnswer::Press(QMessageBox::Ok), Cancel()});
    Trigger(*frame, "actionBitBrowse");
    EXPECT_EQ(Grid().GetItemText(1, Hex32), "0");
    EXPECT_FALSE(frame->Document().IsModified());
}

TEST_F(BitBrowseCommand, EndsAnOpenEditFirst)
{
    ClickCell(1, Signed16);
    QTest::keyClick(&Grid(), Qt::Key_8);
    const CModalAnswer answer({Flip(0), OK()});
    Trigger(*frame, "actionBitBrowse");
    EXPECT_FALSE(Grid().IsEditing());
    EXPECT_EQ(Grid().GetItemText(1, Signed16), "9");
}

TEST_F(BitBrowseCommand, IsStoppedByAnEditThatIsRefused)
{
    ClickCell(1, Signed16);
    QTest::keyClick(&Grid(), Qt::Key_X);
    const CModalAnswer answer(QMessageBox::Ok);
    Trigger(*frame, "actionBitBrowse");
    EXPECT_EQ(answer.texts, std::vector<QString>{"Col 1,Row 2 data error !"});
    EXPECT_EQ(Grid().GetItemText(1, Signed16), "100");
}

TEST_F(BitBrowseCommand, GoesByTheFormatThatTheTableShows)
{
    Find<QComboBox>("comboFormats").setFocus();
    QTest::keyClick(&Find<QComboBox>("comboFormats"), Qt::Key_Down);
    Trigger(*frame, "actionSave"); // takes the other format over, without showing the file through it
    ASSERT_EQ(Grid().GetItemText(0, Signed16), "S16");
    ClickCell(1, Signed16);
    const CModalAnswer answer({Flip(0), OK()});
    Trigger(*frame, "actionBitBrowse");
    EXPECT_EQ(answer.titles.front(), "Bit Browser[S16]");
    EXPECT_EQ(Grid().GetItemText(1, Signed16), "101");
}
