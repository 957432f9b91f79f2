#include "tests/support/DialogSteps.h"
#include "tests/support/GuiTest.h"
#include "views/IntegerEdit.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QTest>
#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <string>

namespace {

struct NumberCase {
    const char* name;
    QString text;
    QString number;
    friend void PrintTo(const NumberCase& c, std::ostream* out) { *out << c.name; }
};

struct FirstIntegerOf : testing::TestWithParam<NumberCase> {};

/// A window with one such field, which holds 100.
struct IntegerField : testing::Test {
    void SetUp() override
    {
        field.setObjectName("field");
        field.setText("100");
        TakeIntegersOnly(field);
        ASSERT_TRUE(ShowActive(field));
        field.setFocus();
    }

    void Keys(const QString& keys) { QTest::keyClicks(&field, keys); }
    void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyClick(&field, key, modifiers); }
    void SelectAll() { Key(Qt::Key_A, Qt::ControlModifier); }
    void Paste(const QString& text)
    {
        QGuiApplication::clipboard()->setText(text);
        Key(Qt::Key_V, Qt::ControlModifier);
    }

    QLineEdit field;
};

} // namespace

TEST_P(FirstIntegerOf, IsTaken)
{
    EXPECT_EQ(FirstInteger(GetParam().text), GetParam().number);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, FirstIntegerOf, testing::Values(
    NumberCase{"Nothing",         "",               ""},
    NumberCase{"Blanks",          " \t\n",          ""},
    NumberCase{"Digits",          "140",            "140"},
    NumberCase{"Address",         "RW140",          "140"},
    NumberCase{"AddressInAList",  " rw140\n",       "140"},
    NumberCase{"Minus",           "-5",             "-5"},
    NumberCase{"BlanksAndMinus",  "\t -5 ",         "-5"},
    NumberCase{"MinusAlone",      "-",              "-"},
    NumberCase{"MinusAndLetters", "-a5",            "5"},
    NumberCase{"Hyphen",          "RW-5",           "5"},
    NumberCase{"Range",           "1-2",            "1"},
    NumberCase{"Decimals",        "7.9",            "7"},
    NumberCase{"Thousands",       "1,000",          "1"},
    NumberCase{"FullWidth",       u"－１４０"_qs,   "-140"},
    NumberCase{"Arabic",          u"٣"_qs,          "3"},
    NumberCase{"TypographicMinus", u"\u2212" "5"_qs, "-5"},
    NumberCase{"NoDigitOfTen",    u"²½Ⅳ"_qs,        ""},
    NumberCase{"Letters",         "many",           ""}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(IntegerField, TakesOnlyTheNumberThatIsTyped)
{
    SelectAll();
    Keys("RW140");
    EXPECT_EQ(field.text(), "140");
    EXPECT_TRUE(field.hasAcceptableInput());
}

TEST_F(IntegerField, TakesTheFirstNumberThatIsPasted)
{
    SelectAll();
    Paste(" rw140\n");
    EXPECT_EQ(field.text(), "140");
    SelectAll();
    Paste("10-20");
    EXPECT_EQ(field.text(), "10");
}

TEST_F(IntegerField, StaysAsItWasWhenThereIsNoNumber)
{
    SelectAll();
    Keys("x");
    EXPECT_EQ(field.text(), "100");
    EXPECT_EQ(field.selectedText(), "100"); // the next key replaces it
    Paste("many");
    EXPECT_EQ(field.text(), "100");
}

TEST_F(IntegerField, TakesAKeyInTheMiddleWhereItIs)
{
    Key(Qt::Key_Home);
    Key(Qt::Key_Right);
    Keys("x7-.");
    EXPECT_EQ(field.text(), "1700");
    Paste("RW88 ");
    EXPECT_EQ(field.text(), "178800");
    EXPECT_EQ(field.cursorPosition(), 4);
}

TEST_F(IntegerField, TakesOneMinusInFront)
{
    Keys("-");
    EXPECT_EQ(field.text(), "100");
    Key(Qt::Key_Home);
    Keys("--");
    EXPECT_EQ(field.text(), "-100");
    Key(Qt::Key_Home);
    Keys("5");
    EXPECT_EQ(field.text(), "-100");
    Key(Qt::Key_Delete);
    EXPECT_EQ(field.text(), "100");
}

TEST_F(IntegerField, CanBeEmptied)
{
    SelectAll();
    Key(Qt::Key_Delete);
    EXPECT_EQ(field.text(), "");
    Keys("R");
    EXPECT_EQ(field.text(), "");
}

TEST_F(IntegerField, ARefusedKeyLeavesWhatCanBeTakenBack)
{
    Keys("7");
    ASSERT_EQ(field.text(), "1007");
    Keys("x");
    Key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(field.text(), "100");
}

TEST_F(IntegerField, EnterIsToldWhateverItHolds)
{
    int entered = 0;
    QObject::connect(&field, &QLineEdit::returnPressed, [&entered] { ++entered; });
    for (const char* keys : {"", "-", "5"}) {
        SelectAll();
        Key(Qt::Key_Delete);
        Keys(keys);
        Key(Qt::Key_Return);
    }
    EXPECT_EQ(entered, 3);
}
