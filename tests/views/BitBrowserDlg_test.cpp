#include "controls/HeaderCtrlCl.h"
#include "controls/ListCtrlCl.h"
#include "model/CellCheck.h"
#include "model/DataFormat.h"
#include "tests/support/DialogSteps.h"
#include "tests/support/Formats.h"
#include "tests/support/GuiTest.h"
#include "tests/support/PictureOf.h"
#include "tests/views/RecordingFrame.h"
#include "views/BitBrowserDlg.h"
#include "views/TextCrossing.h"

#include <QAccessible>
#include <QHeaderView>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QWindow>
#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr int kColumn = 5;
constexpr int kRow = 3;

DataItem Signed16(std::int32_t decimals = 0)
{
    return MakeItem(u"Speed", DataType::Signed16, 1, 5, decimals);
}

/// The bit browser over a frame that checks as the data pane does, and keeps what it was asked and told.
struct BitBrowserDlg : testing::Test {
    void Open(const DataItem& item, const QString& text)
    {
        const ColumnCoding coding = LayOutColumns(MakeFormat(u"one", {item})).front();
        frame.acceptsValue = [this, coding](int column, const QString& value) {
            checked.emplace_back(column, value);
            return ValidateCellValue(coding, ViewOf(value));
        };
        dialog = std::make_unique<CBitBrowserDlg>(frame, item, kColumn, kRow, text);
        QObject::connect(dialog.get(), &CBitBrowserDlg::CellValueAccepted, dialog.get(),
                         [this](int column, int row, const QString& value) {
                             EXPECT_EQ(column, kColumn);
                             EXPECT_EQ(row, kRow);
                             EXPECT_TRUE(dialog->isVisible()); // the cell has its text before the dialog closes
                             accepted.push_back(value);
                         });
        ASSERT_TRUE(ShowActive(*dialog));
    }

    CListCtrlCl& List() { return FindIn<CListCtrlCl>(*dialog, "listBits"); }
    std::string Box(const char* name) { return TextIn(*dialog, name); }
    std::string Value() { return Box("editValue"); }

    /// Clicks the square of a bit, counted as the item's bits are.
    void FlipBit(int bit)
    {
        const int cell = 16 * List().rowCount() - 1 - bit;
        const QModelIndex index = List().model()->index(cell / 16, cell % 16);
        QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, List().visualRect(index).center());
    }

    /// The bits as the squares show them, a row of the matrix to a row of the text.
    std::string Bits()
    {
        std::string bits;
        const CPictureOf picture(*List().viewport(), 1);
        for (int row = 0; row < List().rowCount(); ++row) {
            for (int column = 0; column < 16; ++column) {
                const QPoint centre = List().visualRect(List().model()->index(row, column)).center();
                bits += picture.At(centre.x(), centre.y()) == QColor(255, 0, 255) ? '1' : '0';
            }
            bits += row + 1 < List().rowCount() ? " " : "";
        }
        return bits;
    }

    void ExpectNothingSent() { EXPECT_TRUE(accepted.empty()); }

    CRecordingFrame frame;
    std::vector<std::pair<int, QString>> checked;
    std::vector<QString> accepted;
    std::unique_ptr<CBitBrowserDlg> dialog;
};

struct TypeCase {
    const char* name;
    DataType type;
    int words;
    CodeType codeType;
    const char* typeName;
    const char* codeTypeName;
    int rows;
    friend void PrintTo(const TypeCase& c, std::ostream* out) { *out << c.name; }
};

struct EachType : BitBrowserDlg, testing::WithParamInterface<TypeCase> {};

struct LimitCase {
    const char* name;
    std::int64_t minValue, maxValue;
    const char *minText, *maxText;
    friend void PrintTo(const LimitCase& c, std::ostream* out) { *out << c.name; }
};

struct Limits : BitBrowserDlg, testing::WithParamInterface<LimitCase> {};

struct EndCase {
    const char* name;
    void (*end)(CBitBrowserDlg& dialog);
    friend void PrintTo(const EndCase& c, std::ostream* out) { *out << c.name; }
};

struct Cancelling : BitBrowserDlg, testing::WithParamInterface<EndCase> {};

} // namespace

TEST_F(BitBrowserDlg, TheCaptionNamesTheItem)
{
    Open(Signed16(), "1");
    EXPECT_EQ(dialog->windowTitle(), "Bit Browser[Speed]");
}

TEST_F(BitBrowserDlg, TheCaptionTakesTheDescriptionAsItStands)
{
    Open(MakeItem(u"*", DataType::Signed16, 1, 5), "1"); // "[*]" is a mark of the toolkit's
    EXPECT_EQ(dialog->windowHandle()->title(), "Bit Browser[*]");
}

TEST_P(EachType, IsNamedAndFillsItsRows)
{
    const TypeCase& c = GetParam();
    DataItem item = MakeItem(u"Item", c.type, c.words, 10);
    item.codeType = c.codeType;
    Open(item, "1");
    EXPECT_EQ(Box("editDataType"), c.typeName);
    EXPECT_EQ(Box("editCodeType"), c.codeTypeName);
    EXPECT_EQ(Value(), "1");
    EXPECT_EQ(List().rowCount(), c.rows);
}

TEST_P(EachType, HeadsItsColumnsWithTheBitsOfAWord)
{
    Open(MakeItem(u"Item", GetParam().type, GetParam().words, 10), "1");
    QStringList expected;
    for (const char* heading :
         {"15", "14", "13", "12", "11", "10", "09", "08", "07", "06", "05", "04", "03", "02", "01", "00"})
        expected << heading;
    EXPECT_EQ(List().Header().Headings(), expected);
    EXPECT_EQ(List().Header().Alignments(), QString(16, '0'));
    for (int column = 0; column < 16; ++column) {
        EXPECT_EQ(List().columnWidth(column), 18);
        EXPECT_EQ(List().Header().sectionViewportPosition(column), 18 * column);
    }
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Types, EachType, testing::Values(
    //       name         type                  words  code type           type name                 code type   rows
    TypeCase{"Signed16",   DataType::Signed16,    1, CodeType::Bin,       "16 bit signed number",   "BIN code", 1},
    TypeCase{"Signed32",   DataType::Signed32,    2, CodeType::Bcd,       "32 bit signed number",   "BCD code", 2},
    TypeCase{"Unsigned16", DataType::Unsigned16,  1, CodeType::Bin,       "16 bit unsigned number", "BIN code", 1},
    TypeCase{"Unsigned32", DataType::Unsigned32,  2, CodeType::Bcd,       "32 bit unsigned number", "BCD code", 2},
    TypeCase{"Hex16",      DataType::Hex16,       1, CodeType::NotChosen, "16 bit Hexadecimal",     "",         1},
    TypeCase{"Hex32",      DataType::Hex32,       2, static_cast<CodeType>(9), "32 bit Hexadecimal", "",        2},
    TypeCase{"Float",      DataType::Float,       2, CodeType::Bin,       "",                       "BIN code", 0},
    TypeCase{"Double",     DataType::Double,      4, CodeType::Bin,       "",                       "BIN code", 0},
    TypeCase{"String",     DataType::String,      4, CodeType::Bin,       "",                       "BIN code", 0},
    TypeCase{"NotChosen",  DataType::NotChosen,   1, CodeType::Bin,       "",                       "BIN code", 0}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_P(Limits, AreShownByTheirLow32Bits)
{
    DataItem item = Signed16();
    item.minValue = GetParam().minValue;
    item.maxValue = GetParam().maxValue;
    Open(item, "1");
    EXPECT_EQ(Box("editMin"), GetParam().minText);
    EXPECT_EQ(Box("editMax"), GetParam().maxText);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Pairs, Limits, testing::Values(
    //        name          lower          upper        Min            Max
    LimitCase{"Signed16",   -32768,        32767,       "-32768",      "32767"},
    LimitCase{"Signed32",   -2147483648LL, 2147483647,  "-2147483648", "2147483647"},
    LimitCase{"Unsigned32", 0,             4294967295,  "0",           "-1"}, // kept
    LimitCase{"Beyond",     4294967301,    8589934592,  "5",           "0"}), // kept
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(BitBrowserDlg, TheBoxesAreToReadOnly)
{
    Open(Signed16(), "1");
    for (const char* name : {"editMax", "editMin", "editDataType", "editCodeType", "editValue"})
        EXPECT_FALSE(FindIn<QLineEdit>(*dialog, name).isEnabled()) << name;
}

TEST_F(BitBrowserDlg, EachControlCarriesItsNumber)
{
    Open(Signed16(), "1");
    const std::pair<const char*, int> numbers[] = {
        {"listBits", 1077},      {"groupData", 1079},    {"labelMax", 1087},      {"editMax", 1084},
        {"labelMin", 1086},      {"editMin", 1085},      {"labelDataType", 1083}, {"editDataType", 1080},
        {"labelCodeType", 1089}, {"editCodeType", 1088}, {"labelValue", 1082},    {"editValue", 1081},
        {"buttonOK", 1},         {"buttonCancel", 2},
    };
    EXPECT_EQ(dialog->property("controlId"), 138);
    for (const auto& [name, number] : numbers)
        EXPECT_EQ(FindIn<QWidget>(*dialog, name).property("controlId"), number) << name;
}

TEST_F(BitBrowserDlg, TheMatrixHasItsLook)
{
    Open(Signed16(), "1");
    EXPECT_EQ(List().rowHeight(0), 18);
    EXPECT_EQ(List().CellFont(), ListFont(15, 0));
    EXPECT_EQ(List().BackColor(0, 7), QColor(Qt::white));
    EXPECT_EQ(List().TextColor(0, 0), QColor(0, 255, 255));
    EXPECT_EQ(List().TextColor(0, 2), QColor(Qt::black));
    EXPECT_EQ(List().TextColor(1, 3), QColor(Qt::black)); // row 1, column 3
    EXPECT_EQ(List().TextColor(3, 1), QColor(0, 255, 255));
    for (const int scale : {1, 2}) {
        const CPictureOf header(*List().Header().viewport(), scale);
        EXPECT_EQ(header.At(1, 0), QColor(100, 255, 100)) << scale;
        EXPECT_EQ(header.At(1, 2), QColor(84, 239, 84)) << scale;
        EXPECT_EQ(header.At(16 * 18 + 2, 2), QColor(84, 239, 84)) << scale;
        const CPictureOf matrix(*List().viewport(), scale);
        EXPECT_EQ(matrix.At(18 + 4, 2), QColor(0, 255, 255)) << scale;      // bit 14, clear
        EXPECT_EQ(matrix.At(15 * 18 + 4, 2), QColor(255, 0, 255)) << scale; // bit 0, set
        EXPECT_EQ(matrix.At(15 * 18 + 3, 2), QColor(Qt::white)) << scale;
        EXPECT_EQ(matrix.At(15 * 18 + 14, 14), QColor(255, 0, 255)) << scale;
        EXPECT_EQ(matrix.At(16 * 18 + 1, 2), QColor(Qt::white)) << scale; // after the last column
    }
}

TEST_F(BitBrowserDlg, MinusOneIsSixteenOnesAndWithoutBit0MinusTwo)
{
    Open(Signed16(), "-1");
    EXPECT_EQ(Bits(), "1111111111111111");
    FlipBit(0);
    EXPECT_EQ(Bits(), "1111111111111110");
    EXPECT_EQ(Value(), "-2");
}

TEST_F(BitBrowserDlg, OneHundredSetsBits6And5And2)
{
    Open(Signed16(), "100");
    EXPECT_EQ(Bits(), "0000000001100100");
}

TEST_F(BitBrowserDlg, AllBitsOfAnUnsigned32AreMinusOne)
{
    Open(MakeItem(u"Count", DataType::Unsigned32, 2, 10), "4294967294");
    EXPECT_EQ(Bits(), "1111111111111111 1111111111111110");
    FlipBit(0);
    EXPECT_EQ(Value(), "-1"); // kept
}

TEST_F(BitBrowserDlg, AnUnsigned32WithBit31IsNegative)
{
    Open(MakeItem(u"Count", DataType::Unsigned32, 2, 10), "0");
    FlipBit(31);
    EXPECT_EQ(Bits(), "1000000000000000 0000000000000000");
    EXPECT_EQ(Value(), "-2147483648"); // kept
}

TEST_F(BitBrowserDlg, AFlippedHexadecimalValueIsInLowerCase)
{
    Open(MakeItem(u"Flags", DataType::Hex16, 1, 4), "1A");
    EXPECT_EQ(Bits(), "0000000000011010");
    FlipBit(0);
    EXPECT_EQ(Value(), "1b"); // kept
}

TEST_F(BitBrowserDlg, DecimalDigitsAreNotCarriedIntoTheBitsAndBack)
{
    Open(Signed16(2), "12.34");
    EXPECT_EQ(Bits(), "0000010010110000"); // kept: 1200
    EXPECT_EQ(Value(), "12.34");
    FlipBit(0);
    EXPECT_EQ(Value(), "1201"); // kept
}

TEST_F(BitBrowserDlg, A32BitItemHasItsUpperHalfInTheFirstRow)
{
    Open(MakeItem(u"Long", DataType::Signed32, 2, 10), "65537");
    EXPECT_EQ(Bits(), "0000000000000001 0000000000000001");
    FlipBit(31); // under "15" of the first row
    EXPECT_EQ(Value(), "-2147418111");
    FlipBit(31);
    FlipBit(16);
    EXPECT_EQ(Value(), "1");
    FlipBit(15);
    EXPECT_EQ(Bits(), "0000000000000000 1000000000000001");
    EXPECT_EQ(Value(), "32769");
}

TEST_F(BitBrowserDlg, FlipsOnTheFirstAndTheLastColumnComeBack)
{
    Open(MakeItem(u"Word", DataType::Unsigned16, 1, 5), "0");
    FlipBit(15);
    EXPECT_EQ(Value(), "32768");
    FlipBit(0);
    EXPECT_EQ(Value(), "32769");
    FlipBit(15);
    FlipBit(0);
    EXPECT_EQ(Value(), "0");
}

TEST_F(BitBrowserDlg, TheSecondPressOfADoubleClickFlipsBack)
{
    Open(Signed16(), "0");
    FlipBit(15);
    const QPoint square = List().visualRect(List().model()->index(0, 0)).center();
    QTest::mouseDClick(List().viewport(), Qt::LeftButton, {}, square);
    QTest::mouseRelease(List().viewport(), Qt::LeftButton, {}, square);
    EXPECT_EQ(Value(), "0");
}

TEST_F(BitBrowserDlg, TheKeyboardMovesAmongTheBitsAndFlipsThem)
{
    Open(MakeItem(u"Long", DataType::Signed32, 2, 10), "0");
    EXPECT_EQ(dialog->focusWidget(), &List());
    QTest::keyClick(&List(), Qt::Key_Down);
    for (int i = 0; i < 13; ++i)
        QTest::keyClick(&List(), Qt::Key_Right);
    QTest::keyClick(&List(), Qt::Key_Space);
    EXPECT_EQ(Value(), "4");
    QTest::keyClick(&List(), Qt::Key_Tab);
    EXPECT_EQ(dialog->focusWidget()->objectName(), "buttonOK");
    QTest::keyClick(dialog->focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(dialog->focusWidget()->objectName(), "buttonCancel");
}

TEST_F(BitBrowserDlg, EachBitTellsItsNumberAndState)
{
    Open(MakeItem(u"Long", DataType::Signed32, 2, 10), "65536");
    QAccessibleTableInterface* table = QAccessible::queryAccessibleInterface(&List())->tableInterface();
    EXPECT_EQ(table->cellAt(0, 0)->text(QAccessible::Name), "Bit 31: 0");
    EXPECT_EQ(table->cellAt(0, 15)->text(QAccessible::Name), "Bit 16: 1");
    EXPECT_EQ(table->cellAt(1, 0)->text(QAccessible::Name), "Bit 15: 0");
    EXPECT_TRUE(table->cellAt(0, 15)->state().checked);
    EXPECT_EQ(List().item(0, 15)->toolTip(), "1");
    FlipBit(16);
    EXPECT_EQ(table->cellAt(0, 15)->text(QAccessible::Name), "Bit 16: 0");
    EXPECT_FALSE(table->cellAt(0, 15)->state().checked);
    EXPECT_EQ(List().item(0, 15)->toolTip(), "0");
}

TEST_F(BitBrowserDlg, OKSendsTheValueAndCloses)
{
    Open(Signed16(), "100");
    FlipBit(0);
    ClickOn(*dialog, "buttonOK");
    EXPECT_EQ(checked, (std::vector<std::pair<int, QString>>{{kColumn, "101"}}));
    EXPECT_EQ(accepted, std::vector<QString>{"101"});
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_TRUE(frame.reporter.shown.empty());
}

TEST_F(BitBrowserDlg, EnterInTheMatrixIsOKAndSendsAnUntouchedValueToo)
{
    Open(Signed16(), "-1");
    QTest::keyClick(&List(), Qt::Key_Return);
    EXPECT_EQ(accepted, std::vector<QString>{"-1"});
    EXPECT_FALSE(dialog->isVisible());
}

TEST_F(BitBrowserDlg, ARefusedValueIsReportedAndTheDialogStays)
{
    DataItem item = Signed16();
    item.minValue = 0;
    Open(item, "0");
    FlipBit(15);
    ASSERT_EQ(Value(), "-32768");
    ClickOn(*dialog, "buttonOK");
    EXPECT_EQ(frame.reporter.shown,
              std::vector<std::u16string>{u"Error: The Value is not illegal or beyond the range!"});
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(Bits(), "1000000000000000");
    EXPECT_EQ(Value(), "-32768");
    ExpectNothingSent();

    FlipBit(15); // and it can be put right
    ClickOn(*dialog, "buttonOK");
    EXPECT_EQ(accepted, std::vector<QString>{"0"});
}

TEST_F(BitBrowserDlg, AnUntouchedValueIsCheckedToo)
{
    DataItem item = Signed16();
    item.minValue = 0;
    Open(item, "-1");
    ClickOn(*dialog, "buttonOK");
    EXPECT_EQ(frame.reporter.shown.size(), 1u);
    ExpectNothingSent();
}

TEST_P(Cancelling, ChangesNothing)
{
    Open(Signed16(), "100");
    FlipBit(0);
    GetParam().end(*dialog);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), QDialog::Rejected);
    EXPECT_TRUE(checked.empty());
    ExpectNothingSent();
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Ways, Cancelling, testing::Values(
    EndCase{"Button",      [](CBitBrowserDlg& dialog) { ClickOn(dialog, "buttonCancel"); }},
    EndCase{"Escape",      [](CBitBrowserDlg& dialog) { QTest::keyClick(dialog.focusWidget(), Qt::Key_Escape); }},
    EndCase{"CloseButton", [](CBitBrowserDlg& dialog) { dialog.close(); }}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(BitBrowserDlg, ATypeThatIsNoIntegerShowsNoBitsAndOKChecksItsText)
{
    Open(MakeItem(u"Real", DataType::Float, 2, 3, 2), "1.5");
    EXPECT_EQ(List().rowCount(), 0);
    QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, QPoint(9, 9));
    QTest::keyClick(&List(), Qt::Key_Space);
    EXPECT_EQ(Value(), "1.5");
    ClickOn(*dialog, "buttonOK");
    EXPECT_EQ(checked, (std::vector<std::pair<int, QString>>{{kColumn, "1.5"}}));
    EXPECT_EQ(accepted, std::vector<QString>{"1.5"});
}

TEST_F(BitBrowserDlg, ATextThatIsNoNumberIsZero)
{
    Open(Signed16(), "abc");
    EXPECT_EQ(Bits(), "0000000000000000");
    EXPECT_EQ(Value(), "abc");
    FlipBit(1);
    EXPECT_EQ(Value(), "2");
}

TEST_F(BitBrowserDlg, ValueIsMadeOfAsManyRowsAsTheItemHasWords)
{
    DataItem item = MakeItem(u"Long", DataType::Signed32, 2, 10);
    item.dataLength = 1;
    Open(item, "65535");
    FlipBit(16);
    EXPECT_EQ(Value(), "1"); // kept: the upper half alone
    FlipBit(0);
    EXPECT_EQ(Value(), "1");
}

TEST_F(BitBrowserDlg, WordsWithoutBitsCountNothing)
{
    DataItem item = MakeItem(u"Word", DataType::Unsigned16, 1, 5);
    item.dataLength = 2'000'000'000;
    Open(item, "0");
    FlipBit(0);
    EXPECT_EQ(Value(), "1");
}

TEST_F(BitBrowserDlg, AllSquaresAreInSightAndTheMatrixGrowsWithTheDialog)
{
    Open(MakeItem(u"Long", DataType::Signed32, 2, 10), "0");
    EXPECT_EQ(List().horizontalScrollBar()->maximum(), 0);
    EXPECT_EQ(List().verticalScrollBar()->maximum(), 0);
    dialog->resize(1, 1); // as small as it goes
    EXPECT_EQ(List().horizontalScrollBar()->maximum(), 0);
    EXPECT_EQ(List().verticalScrollBar()->maximum(), 0);
    const int listWidth = List().width();
    const int boxWidth = FindIn<QLineEdit>(*dialog, "editValue").width();
    dialog->resize(dialog->width() + 100, dialog->height() + 50);
    EXPECT_EQ(List().width(), listWidth + 100);
    EXPECT_EQ(FindIn<QLineEdit>(*dialog, "editValue").width(), boxWidth + 100);
}
