#include "tests/views/ItemDialogFixture.h"

#include <QAccessible>
#include <QPushButton>
#include <QTest>

TEST_F(ItemDialog, ProposesASignedNumberForANewItem)
{
    Add(3);
    EXPECT_TRUE(IsChecked("radioSingle"));
    EXPECT_TRUE(IsChecked("radioBin"));
    EXPECT_FALSE(IsShown("groupArrayLength"));
    EXPECT_FALSE(IsShown("editArrayLength"));
    EXPECT_FALSE(IsEnabled("editArrayLength"));
    EXPECT_EQ(Chosen("comboInteger"), "1");
    EXPECT_EQ(Chosen("comboDecimal"), "0");
    EXPECT_EQ(Chosen("comboType"), "16 bit signed number");
    EXPECT_EQ(Text("editLength"), "1");
    EXPECT_FALSE(IsEnabled("editLength"));
    EXPECT_EQ(Text("editDescription"), "Desc3");
    EXPECT_FALSE(IsShown("checkUnicode"));
    EXPECT_FALSE(IsEnabled("checkUnicode"));
}

TEST_F(ItemDialog, OkWithoutTouchingAnythingGivesASignedWordOfOneDigit)
{
    Add(0);
    PressOk();
    ASSERT_TRUE(IsAccepted());
    EXPECT_EQ(item.isArray, 0);
    EXPECT_EQ(item.decimalDigits, 0);
    EXPECT_EQ(item.dataType, DataType::Signed16);
    EXPECT_EQ(item.integerDigits, 1);
    EXPECT_EQ(item.dataLength, 1);
    EXPECT_EQ(item.codeType, CodeType::Bin);
    EXPECT_EQ(item.arrayLength, -1);
    EXPECT_EQ(TextOf(item.description), u"Desc0");
    EXPECT_EQ(item.minValue, 0);
    EXPECT_EQ(item.maxValue, 9);
    EXPECT_EQ(item.unicode, 0);
}

TEST_F(ItemDialog, TheListsHoldTheirEntriesInOrder)
{
    Add();
    auto& types = Find<QComboBox>("comboType");
    const QStringList names{"16 bit signed number",
                            "32 bit signed number",
                            "16 bit unsigned number",
                            "32 bit unsigned numebr",
                            "16 bit Hexadecimal",
                            "32 bit Hexadecimal",
                            "Single-precision float number",
                            "Double-precision float number",
                            "String Data"};
    ASSERT_EQ(types.count(), names.size());
    for (int i = 0; i < types.count(); ++i)
        EXPECT_EQ(types.itemText(i), names[i]);
    auto& integer = Find<QComboBox>("comboInteger");
    auto& decimal = Find<QComboBox>("comboDecimal");
    ASSERT_EQ(integer.count(), 11);
    ASSERT_EQ(decimal.count(), 12);
    for (int i = 0; i < 11; ++i)
        EXPECT_EQ(integer.itemText(i), QString::number(i + 1));
    for (int i = 0; i < 12; ++i)
        EXPECT_EQ(decimal.itemText(i), QString::number(i));
}

TEST_F(ItemDialog, TheWheelChoosesOnlyWithTheFocus)
{
    Add();
    for (const char* name : {"comboType", "comboInteger", "comboDecimal"}) {
        auto& list = Find<QComboBox>(name);
        Find<QLineEdit>("editDescription").setFocus();
        const int before = list.currentIndex();
        TurnWheel(list, 1);
        EXPECT_EQ(list.currentIndex(), before) << name;
        EXPECT_FALSE(list.hasFocus()) << name;
        list.setFocus();
        TurnWheel(list, 1);
        EXPECT_EQ(list.currentIndex(), before + 1) << name;
    }
}

TEST_F(ItemDialog, ShowsASingleItemAsItIs)
{
    Modify(WithCode(MakeItem(u"Oven 1", DataType::Unsigned32, 2, 7, 3), CodeType::Bcd));
    EXPECT_TRUE(IsChecked("radioSingle"));
    EXPECT_EQ(Chosen("comboType"), "32 bit unsigned numebr");
    EXPECT_EQ(Chosen("comboInteger"), "7");
    EXPECT_EQ(Chosen("comboDecimal"), "3");
    EXPECT_FALSE(IsChecked("radioBin"));
    EXPECT_TRUE(IsChecked("radioBcd"));
    EXPECT_EQ(Text("editLength"), "2");
    EXPECT_FALSE(IsEnabled("editLength"));
    EXPECT_EQ(Text("editDescription"), "Oven 1");
    EXPECT_FALSE(IsShown("groupArrayLength"));
    EXPECT_FALSE(IsEnabled("editArrayLength"));
    EXPECT_FALSE(IsShown("checkUnicode"));
}

TEST_F(ItemDialog, ShowsAnArrayWithItsLength)
{
    Modify(ArrayOf(MakeItem(u"Zone", DataType::Signed16, 1, 5), 12));
    EXPECT_TRUE(IsChecked("radioArray"));
    EXPECT_TRUE(IsShown("groupArrayLength"));
    EXPECT_TRUE(IsShown("editArrayLength"));
    EXPECT_TRUE(IsEnabled("editArrayLength"));
    EXPECT_EQ(Text("editArrayLength"), "12");
    EXPECT_FALSE(IsShown("checkUnicode"));
}

TEST_F(ItemDialog, ShowsAStringWithItsLengthAndUnicode)
{
    for (const std::int32_t unicode : {0, 1, -3}) {
        Modify(StringItem(24, unicode));
        EXPECT_EQ(Text("editLength"), "24");
        EXPECT_TRUE(IsEnabled("editLength"));
        EXPECT_TRUE(IsShown("checkUnicode"));
        EXPECT_TRUE(IsEnabled("checkUnicode"));
        EXPECT_EQ(IsChecked("checkUnicode"), unicode != 0);
        for (const char* name : {"comboInteger", "comboDecimal", "radioBin", "radioBcd"})
            EXPECT_FALSE(IsEnabled(name)) << name;
    }
}

TEST_F(ItemDialog, AnItemsOwnTypeDisablesLessThanAChosenOne) // kept
{
    Modify(MakeItem(u"Mask", DataType::Hex16, 1, 4));
    EXPECT_TRUE(IsEnabled("comboDecimal"));
    Modify(MakeItem(u"Ratio", DataType::Float, 2, 3, 2));
    EXPECT_TRUE(IsEnabled("radioBcd"));
}

TEST_F(ItemDialog, AnUnknownCodingChecksNeitherAndBecomesBcd) // kept
{
    Modify(WithCode(MakeItem(u"Odd", DataType::Signed16, 1, 5), CodeType::NotChosen));
    EXPECT_FALSE(IsChecked("radioBin"));
    EXPECT_FALSE(IsChecked("radioBcd"));
    PressOk();
    EXPECT_EQ(item.codeType, CodeType::Bcd);
}

TEST_F(ItemDialog, ATypeThatTheListDoesNotHoldIsShownAsNone)
{
    DataItem odd = MakeItem(u"Odd", DataType::Signed16, 1, 5);
    odd.dataType = static_cast<DataType>(99);
    Modify(odd);
    EXPECT_EQ(Find<QComboBox>("comboType").currentIndex(), -1);
    PressOk();
    EXPECT_EQ(item.dataType, DataType::NotChosen);
    EXPECT_EQ(item.maxValue, 0);
}

TEST_F(ItemDialog, DigitsThatTheListsDoNotHoldStayUntilOthersAreChosen)
{
    Modify(MakeItem(u"Wide", DataType::Double, 4, 15, 20));
    EXPECT_EQ(Chosen("comboInteger"), "");
    EXPECT_EQ(Chosen("comboDecimal"), "");
    PressOk();
    EXPECT_EQ(item.integerDigits, 15);
    EXPECT_EQ(item.decimalDigits, 20);
    Modify(MakeItem(u"Wide", DataType::Double, 4, 15, 20));
    Choose("comboDecimal", "2");
    PressOk();
    EXPECT_EQ(item.integerDigits, 15);
    EXPECT_EQ(item.decimalDigits, 0); // 15 digits leave no room for decimals
}

TEST_F(ItemDialog, HostileNumbersAreShownAndHarmless)
{
    constexpr std::int32_t kLowest = -2147483647 - 1;
    DataItem odd = ArrayOf(MakeItem(u"Odd", DataType::Double, kLowest, 1), kLowest);
    odd.integerDigits = kLowest;
    odd.decimalDigits = kLowest;
    Modify(odd);
    EXPECT_EQ(Text("editLength"), "-2147483648");
    EXPECT_EQ(Text("editArrayLength"), "-2147483648");
    Choose("comboDecimal", "11");
    EXPECT_EQ(Chosen("comboDecimal"), "11");
    PressOk();
    EXPECT_EQ(reporter.shown, Shown{u"The length of array can't be less than 2!"});
}

TEST_F(ItemDialog, SingleAndArrayShowAndHideTheArrayLength)
{
    Add();
    Click("radioArray");
    EXPECT_TRUE(IsShown("groupArrayLength"));
    EXPECT_TRUE(IsShown("editArrayLength"));
    EXPECT_TRUE(IsEnabled("editArrayLength"));
    EXPECT_EQ(Text("editArrayLength"), "2");
    Type("editArrayLength", "50");
    Click("radioArray"); // kept: each click sets it
    EXPECT_EQ(Text("editArrayLength"), "2");
    Type("editArrayLength", "50");
    Click("radioSingle");
    EXPECT_FALSE(IsShown("groupArrayLength"));
    EXPECT_FALSE(IsShown("editArrayLength"));
    EXPECT_FALSE(IsEnabled("editArrayLength"));
    PressOk();
    EXPECT_EQ(item.isArray, 0);
    EXPECT_EQ(item.arrayLength, -1);
}

TEST_F(ItemDialog, AnArrowKeyChoosesSingleOrArrayToo)
{
    Add();
    Find<QWidget>("radioSingle").setFocus();
    QTest::keyClick(&Find<QWidget>("radioSingle"), Qt::Key_Right);
    EXPECT_TRUE(IsChecked("radioArray"));
    EXPECT_EQ(Text("editArrayLength"), "2");
    EXPECT_TRUE(IsShown("editArrayLength"));
}
// clang-format off
namespace {

struct AcceptCase {
    const char* name;
    bool isArray;
    const char* arrayLength;
    DataType type;
    const char* length;           ///< typed for a string
    const char16_t* message;      ///< none when it is accepted
    friend void PrintTo(const AcceptCase& c, std::ostream* out) { *out << c.name; }
};

struct EnteredLength : ItemDialog, testing::WithParamInterface<AcceptCase> {};

} // namespace
// clang-format on

TEST_P(EnteredLength, IsAcceptedOrReportedAndStaysAsTyped)
{
    const AcceptCase& c = GetParam();
    Add();
    const DataItem before = item;
    ChooseType(c.type);
    if (c.type == DataType::String)
        Type("editLength", c.length);
    if (c.isArray) {
        Click("radioArray");
        Type("editArrayLength", c.arrayLength);
    }
    PressOk();
    EXPECT_EQ(IsAccepted(), c.message == nullptr);
    EXPECT_EQ(reporter.shown, c.message == nullptr ? Shown{} : Shown{c.message});
    if (c.message != nullptr) {
        EXPECT_TRUE(dialog->isVisible());
        EXPECT_EQ(item, before);
        EXPECT_EQ(Text("editLength"), c.length);
        if (c.isArray) {
            EXPECT_EQ(Text("editArrayLength"), c.arrayLength);
        }
    }
}

// clang-format off
constexpr const char16_t* kShortArray = u"The length of array can't be less than 2!";
constexpr const char16_t* kLargeArray =
    u"The value that data length multiply by the length of  the array is too large,it exceed 512k!";
constexpr const char16_t* kShortString = u"The data length can't be less than 1!";
constexpr const char16_t* kLongString = u"The Data Length is too large ,it can't exceed 512k!";

INSTANTIATE_TEST_SUITE_P(Table, EnteredLength, testing::Values(
    //         name                    array         type                length    message
    AcceptCase{"Number",               false, "",    DataType::Signed16, "1",      nullptr},
    AcceptCase{"ArrayOfTwo",           true, "2",    DataType::Signed16, "1",      nullptr},
    AcceptCase{"BlanksAround",         true, " 2 ",  DataType::Signed16, "1",      nullptr},
    AcceptCase{"ArrayOfOne",           true, "1",    DataType::Signed16, "1",      kShortArray},
    AcceptCase{"ArrayLengthNoNumber",  true, "x",    DataType::Signed16, "1",      kShortArray},
    AcceptCase{"ArrayLengthEmpty",     true, "",     DataType::Signed16, "1",      kShortArray},
    AcceptCase{"StringArray363",       true, "9",    DataType::String,   "363",    nullptr},
    AcceptCase{"StringArray513",       true, "2",    DataType::String,   "513",    kLargeArray},
    AcceptCase{"LongStringArray513",   true, "5000", DataType::String,   "513",    kLargeArray},
    AcceptCase{"StringArray512",       true, "2",    DataType::String,   "512",    nullptr},
    AcceptCase{"StringArray65536",     true, "2",    DataType::String,   "65536",  nullptr}, // kept: squared in 32 bits
    AcceptCase{"ArrayComesFirst",      true, "1",    DataType::String,   "0",      kShortArray},
    AcceptCase{"BlanksAroundLength",   false, "",    DataType::String,   " 24 ",   nullptr},
    AcceptCase{"NegativeLength",       false, "",    DataType::String,   "-1",     kShortString},
    AcceptCase{"HugeLength",           false, "",    DataType::String,   "99999999999", kLongString},
    AcceptCase{"StringArrayOfNothing", true, "2",    DataType::String,   "0",      kShortString},
    AcceptCase{"String",               false, "",    DataType::String,   "1",      nullptr},
    AcceptCase{"StringOfNothing",      false, "",    DataType::String,   "0",      kShortString},
    AcceptCase{"StringNoNumber",       false, "",    DataType::String,   "abc",    kShortString},
    AcceptCase{"LongestString",        false, "",    DataType::String,   "262144", nullptr},
    AcceptCase{"StringTooLong",        false, "",    DataType::String,   "262145", kLongString}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(ItemDialog, OkWritesEveryFieldAndDerivesTheBounds)
{
    DataItem before = DefaultItem();
    before.reserved0 = 11;
    before.reserved1 = 12;
    before.reserved2 = 13;
    Modify(before);
    Click("radioArray");
    Type("editArrayLength", "5");
    Type("editDescription", "Zone");
    ChooseType(DataType::Signed32);
    Choose("comboInteger", "3");
    Choose("comboDecimal", "2");
    Click("radioBcd");
    PressOk();
    ASSERT_TRUE(IsAccepted());
    DataItem expected = before; // what is not used is carried through
    expected.isArray = 1;
    expected.arrayLength = 5;
    expected.dataType = DataType::Signed32;
    expected.dataLength = 2;
    expected.integerDigits = 3;
    expected.decimalDigits = 2;
    expected.codeType = CodeType::Bcd;
    SetText(expected.description, u"Zone");
    expected.minValue = -9999;
    expected.maxValue = 99999;
    EXPECT_EQ(item, expected);
}

TEST_F(ItemDialog, OkAndCancelHaveTheirKeys)
{
    Add();
    Type("editDescription", "Typed");
    QTest::keyClick(&Find<QWidget>("editDescription"), Qt::Key_Escape);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), QDialog::Rejected);
    EXPECT_EQ(item, DataItem());

    Add();
    Type("editDescription", "Typed");
    QTest::keyClick(&Find<QWidget>("editDescription"), Qt::Key_Return);
    EXPECT_TRUE(IsAccepted());
    EXPECT_EQ(TextOf(item.description), u"Typed");
}

TEST_F(ItemDialog, CancelLeavesTheItemAsItWas)
{
    const DataItem before = ArrayOf(MakeItem(u"Zone", DataType::Signed16, 1, 5), 3);
    Modify(before);
    Type("editDescription", "Other");
    Click("radioSingle");
    ChooseType(DataType::Double);
    PressCancel();
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), QDialog::Rejected);
    EXPECT_EQ(item, before);
}

TEST_F(ItemDialog, ADescriptionTakes127Characters)
{
    Add();
    Type("editDescription", QString(130, 'd'));
    EXPECT_EQ(Text("editDescription"), std::string(127, 'd'));
    PressOk();
    EXPECT_EQ(TextOf(item.description), std::u16string(127, u'd'));
}

TEST_F(ItemDialog, APastedDescriptionIsOneLine)
{
    Add();
    PasteInto(*dialog, "editDescription", "Zone\n1\t\x1B end");
    PressOk();
    EXPECT_EQ(TextOf(item.description), u"Zone 1   end");
}

TEST_F(ItemDialog, ACutDescriptionEndsWithAWholeCharacter)
{
    Add();
    PasteInto(*dialog, "editDescription", QString(126, 'd') + QStringLiteral(u"\U0001F525"));
    PressOk();
    EXPECT_EQ(TextOf(item.description), std::u16string(126, u'd'));
    Add();
    PasteInto(*dialog, "editDescription", QString(125, 'd') + QStringLiteral(u"\U0001F525"));
    PressOk();
    EXPECT_EQ(TextOf(item.description), std::u16string(125, u'd') + u"\U0001F525");
}

TEST_F(ItemDialog, ADescriptionFromTheLibraryStaysAsItIs)
{
    DataItem before = MakeItem(u"Zone\n1\xD83D", DataType::Signed16, 1, 5);
    before.arrayLength = -1;
    Modify(before);
    PressOk();
    EXPECT_EQ(item, before);
}

TEST_F(ItemDialog, TypingStartsInTheDescriptionAndReplacesIt)
{
    Add();
    QTest::keyClicks(dialog->focusWidget(), "Speed");
    EXPECT_EQ(Text("editDescription"), "Speed");
}

TEST_F(ItemDialog, TheTabKeyGoesThroughTheControlsInOrder)
{
    Modify(ArrayOf(StringItem(4), 3));
    Find<QWidget>("radioArray").setFocus();
    for (const char* next : {"editDescription", "comboType", "editLength", "checkUnicode", "editArrayLength",
                             "buttonNotes", "buttonOk", "buttonCancel", "radioArray"}) {
        QTest::keyClick(dialog->focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(dialog->focusWidget()->objectName(), next);
    }
}

TEST_F(ItemDialog, EveryControlHasItsNumberItsTextAndAName)
{
    Modify(ArrayOf(StringItem(4), 3));
    EXPECT_EQ(dialog->windowTitle(), "Data Type Edit Dialog");
    EXPECT_EQ(dialog->property("controlId"), 132);
    EXPECT_TRUE(Find<QPushButton>("buttonOk").isDefault());
    const std::pair<int, const char*> controls[] = {{1002, "Data Type"},
                                                    {1008, "Single data"},
                                                    {1009, "Array data"},
                                                    {1003, "Description"},
                                                    {1010, "Description"},
                                                    {1004, "DataItem type"},
                                                    {1011, "DataItem type"},
                                                    {1012, "Length"},
                                                    {1013, "Length"},
                                                    {1136, "Unicode"},
                                                    {1005, "Integer and Decimal"},
                                                    {1016, "Integer"},
                                                    {1014, "Integer"},
                                                    {1017, "Decimal"},
                                                    {1015, "Decimal"},
                                                    {1006, "Codetype"},
                                                    {1018, "BIN"},
                                                    {1019, "BCD"},
                                                    {1007, "Array len"},
                                                    {1020, "Array len"},
                                                    {1000, "OK"},
                                                    {1001, "Cancel"}};
    for (const auto& [id, name] : controls) {
        QWidget* found = nullptr;
        for (QWidget* widget : dialog->findChildren<QWidget*>())
            if (widget->property("controlId").toInt() == id)
                found = widget;
        ASSERT_NE(found, nullptr) << id;
        const bool isList = qobject_cast<QComboBox*>(found) != nullptr; // it is called by what is chosen in it
        EXPECT_EQ(isList ? found->accessibleName()
                         : QAccessible::queryAccessibleInterface(found)->text(QAccessible::Name),
                  name)
            << id;
    }
}
