#include "tests/views/ItemDialogFixture.h"

namespace {

struct TypeCase {
    DataType type;
    const char* length;
    bool decimal, integer, bcd, string; ///< what is enabled
    friend void PrintTo(const TypeCase& c, std::ostream* out) { *out << static_cast<int>(c.type); }
};

struct ChosenType : ItemDialog, testing::WithParamInterface<TypeCase> {};

} // namespace

TEST_P(ChosenType, SetsTheLengthAndEnablesWhatGoesWithIt)
{
    const TypeCase& c = GetParam();
    // From a string when it can be, so that all has to be enabled again.
    Modify(c.type == DataType::String ? MakeItem(u"Value", DataType::Signed16, 1, 3, 2) : StringItem(24, 1));
    ChooseType(c.type);
    EXPECT_EQ(Text("editLength"), c.length);
    EXPECT_EQ(IsEnabled("editLength"), c.string);
    EXPECT_TRUE(IsEnabled("radioBin"));
    EXPECT_EQ(IsEnabled("radioBcd"), c.bcd);
    EXPECT_EQ(IsEnabled("comboDecimal"), c.decimal);
    EXPECT_EQ(IsEnabled("comboInteger"), c.integer);
    EXPECT_EQ(IsEnabled("checkUnicode"), c.string);
    EXPECT_EQ(IsShown("checkUnicode"), c.string);
    PressOk();
    ASSERT_TRUE(IsAccepted());
    EXPECT_EQ(item.dataType, c.type);
    EXPECT_EQ(std::to_string(item.dataLength), c.length);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, ChosenType, testing::Values(
    //       type                  length decimal integer bcd    string
    TypeCase{DataType::Signed16,   "1",   true,   true,   true,  false},
    TypeCase{DataType::Signed32,   "2",   true,   true,   true,  false},
    TypeCase{DataType::Unsigned16, "1",   true,   true,   true,  false},
    TypeCase{DataType::Unsigned32, "2",   true,   true,   true,  false},
    TypeCase{DataType::Hex16,      "1",   false,  true,   true,  false},
    TypeCase{DataType::Hex32,      "2",   false,  true,   true,  false},
    TypeCase{DataType::Float,      "2",   true,   true,   false, false},
    TypeCase{DataType::Double,     "4",   true,   true,   false, false},
    TypeCase{DataType::String,     "4",   false,  false,  false, true}),
    [](const auto& c) { return "Type" + std::to_string(static_cast<int>(c.param.type)); });
// clang-format on

TEST_F(ItemDialog, ChoosingAStringSetsUnicodeAtOnceAndInSpiteOfCancel) // kept
{
    DataItem number = MakeItem(u"Value", DataType::Signed16, 1, 5);
    number.unicode = 1;
    Modify(number);
    ChooseType(DataType::String);
    EXPECT_EQ(item.unicode, 0); // the box is not checked
    PressCancel();
    DataItem expected = number;
    expected.unicode = 0;
    EXPECT_EQ(item, expected);

    Modify(StringItem(4, 1));
    ChooseType(DataType::Signed16);
    item.unicode = 0;
    ChooseType(DataType::String);
    EXPECT_EQ(item.unicode, 1); // the box kept its mark while it was hidden
}

TEST_F(ItemDialog, ClickingUnicodeTakesEffectOnlyWithOk)
{
    Modify(StringItem(4, 0));
    Click("checkUnicode");
    EXPECT_EQ(item.unicode, 0);
    PressOk();
    EXPECT_EQ(item.unicode, 1);
}

TEST_F(ItemDialog, UnicodeIsStoredForStringsOnly)
{
    DataItem number = MakeItem(u"Value", DataType::Signed16, 1, 5);
    number.unicode = 7;
    Modify(number);
    PressOk();
    EXPECT_EQ(item.unicode, 7);
}

TEST_F(ItemDialog, ADisabledCodingKeepsItsMark)
{
    Modify(WithCode(MakeItem(u"Value", DataType::Signed32, 2, 5), CodeType::Bcd));
    ChooseType(DataType::Float);
    EXPECT_FALSE(IsEnabled("radioBcd"));
    EXPECT_TRUE(IsChecked("radioBcd"));
    PressOk();
    EXPECT_EQ(item.codeType, CodeType::Bcd);
    EXPECT_EQ(item.dataType, DataType::Float);
}

TEST_F(ItemDialog, AHexadecimalTypeForcesNoDecimalsAndAtMostItsDigits)
{
    Modify(MakeItem(u"Value", DataType::Unsigned32, 2, 3, 5));
    ChooseType(DataType::Hex32);
    EXPECT_EQ(Chosen("comboDecimal"), "0");
    Choose("comboInteger", "9");
    EXPECT_EQ(Chosen("comboInteger"), "8");
    PressOk();
    EXPECT_EQ(item.integerDigits, 8);
    EXPECT_EQ(item.maxValue, 4294967295);
}

TEST_F(ItemDialog, ChoosingATypeLeavesTheDigitsAsTheyAre) // they are fitted when one of them is chosen
{
    Modify(MakeItem(u"Value", DataType::Signed32, 2, 6, 5));
    ChooseType(DataType::Signed16);
    EXPECT_EQ(Chosen("comboInteger"), "6");
    EXPECT_EQ(Chosen("comboDecimal"), "5");
    Choose("comboDecimal", "4");
    EXPECT_EQ(Chosen("comboDecimal"), "0");
}

namespace {

struct DigitCase {
    const char* name;
    DataType type;
    int integer, decimal; ///< shown before
    const char* list;     ///< in which an entry is chosen
    const char* entry;
    const char* integerAfter;
    const char* decimalAfter;
    friend void PrintTo(const DigitCase& c, std::ostream* out) { *out << c.name; }
};

struct ChosenDigits : ItemDialog, testing::WithParamInterface<DigitCase> {};

} // namespace

TEST_P(ChosenDigits, AreFittedToTheType)
{
    const DigitCase& c = GetParam();
    Modify(MakeItem(u"Value", c.type, 2, c.integer, c.decimal));
    Choose(c.list, c.entry);
    EXPECT_EQ(Chosen("comboInteger"), c.integerAfter);
    EXPECT_EQ(Chosen("comboDecimal"), c.decimalAfter);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, ChosenDigits, testing::Values(
    //        name                         type                  shown   list            entry after
    DigitCase{"SignedOneMovesToTwo",       DataType::Signed16,   4, 0,   "comboInteger", "1",  "2",  "0"},
    DigitCase{"Signed32OneMovesToTwo",     DataType::Signed32,   4, 0,   "comboInteger", "1",  "2",  "0"},
    DigitCase{"SignedOneWithDecimals",     DataType::Signed16,   4, 1,   "comboInteger", "1",  "1",  "1"},
    DigitCase{"DoubleOneMovesToTwo",       DataType::Double,     4, 0,   "comboInteger", "1",  "2",  "0"},
    DigitCase{"DoubleOneWithDecimals",     DataType::Double,     4, 3,   "comboInteger", "1",  "2",  "3"},
    DigitCase{"UnsignedOneStays",          DataType::Unsigned16, 4, 0,   "comboInteger", "1",  "1",  "0"},
    DigitCase{"FloatOneStays",             DataType::Float,      4, 0,   "comboInteger", "1",  "1",  "0"},
    DigitCase{"SixForSigned16",            DataType::Signed16,   4, 0,   "comboInteger", "8",  "6",  "0"},
    DigitCase{"FiveForUnsigned16",         DataType::Unsigned16, 4, 0,   "comboInteger", "6",  "5",  "0"},
    DigitCase{"ElevenForUnsigned32",       DataType::Unsigned32, 4, 2,   "comboInteger", "11", "9",  "2"},
    DigitCase{"FourForHex16",              DataType::Hex16,      2, 0,   "comboInteger", "5",  "4",  "0"},
    DigitCase{"EightForHex32",             DataType::Hex32,      2, 0,   "comboInteger", "9",  "8",  "0"},
    DigitCase{"DecimalsBeyondAllAreNone",  DataType::Unsigned16, 2, 0,   "comboDecimal", "6",  "2",  "0"},
    DigitCase{"DecimalsTakeTheRoomLeft",   DataType::Signed16,   4, 0,   "comboDecimal", "5",  "4",  "2"},
    DigitCase{"DecimalsThatFit",           DataType::Double,     4, 0,   "comboDecimal", "7",  "4",  "7"},
    DigitCase{"Signed32TakesTheRoomLeft",  DataType::Signed32,   4, 0,   "comboDecimal", "8",  "4",  "7"},
    DigitCase{"HexDecimalsAreForcedToNone", DataType::Hex16,     4, 0,   "comboDecimal", "3",  "4",  "0"},
    DigitCase{"Signed32OneWithDecimals",   DataType::Signed32,   4, 2,   "comboInteger", "1",  "1",  "2"},
    DigitCase{"Unsigned32OneStays",        DataType::Unsigned32, 4, 0,   "comboInteger", "1",  "1",  "0"},
    DigitCase{"Hex16OneStays",             DataType::Hex16,      4, 0,   "comboInteger", "1",  "1",  "0"},
    DigitCase{"Hex32OneStays",             DataType::Hex32,      4, 0,   "comboInteger", "1",  "1",  "0"},
    DigitCase{"DoubleOneWithoutRoom",      DataType::Double,     4, 10,  "comboInteger", "1",  "1",  "10"},
    DigitCase{"ElevenForSigned32",         DataType::Signed32,   4, 0,   "comboInteger", "11", "11", "0"},
    DigitCase{"SharedBySigned32",          DataType::Signed32,   4, 3,   "comboInteger", "11", "8",  "3"},
    DigitCase{"SharedBySigned16",          DataType::Signed16,   3, 2,   "comboInteger", "6",  "4",  "2"},
    DigitCase{"SharedByUnsigned16",        DataType::Unsigned16, 3, 2,   "comboInteger", "5",  "3",  "2"},
    DigitCase{"SharedByFloat",             DataType::Float,      3, 5,   "comboInteger", "7",  "6",  "5"},
    DigitCase{"SharedByDouble",            DataType::Double,     3, 1,   "comboInteger", "11", "10", "1"},
    DigitCase{"OneIsLeftWithoutRoom",      DataType::Signed16,   1, 6,   "comboInteger", "3",  "1",  "6"},
    DigitCase{"Signed16BeyondAll",         DataType::Signed16,   2, 0,   "comboDecimal", "7",  "2",  "0"},
    DigitCase{"Unsigned16TakesTheRoomLeft", DataType::Unsigned16, 3, 0,  "comboDecimal", "5",  "3",  "2"},
    DigitCase{"Unsigned32TakesTheRoomLeft", DataType::Unsigned32, 4, 0,  "comboDecimal", "9",  "4",  "7"},
    DigitCase{"FloatTakesTheRoomLeft",     DataType::Float,      4, 0,   "comboDecimal", "11", "4",  "7"},
    DigitCase{"DoubleTakesTheRoomLeft",    DataType::Double,     11, 0,  "comboDecimal", "1",  "11", "0"},
    DigitCase{"Hex32HasNoDecimals",        DataType::Hex32,      4, 0,   "comboDecimal", "1",  "4",  "0"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on
