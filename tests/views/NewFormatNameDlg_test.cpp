#include "tests/support/DialogSteps.h"
#include "tests/support/GuiTest.h"
#include "tests/support/RecordingReporter.h"
#include "views/NewFormatNameDlg.h"

#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

namespace {

using Shown = std::vector<std::u16string>;

struct NameDialog : testing::Test {
    void SetUp() override { ASSERT_TRUE(ShowActive(dialog)); }
    void Type(const QString& text) { TypeInto(dialog, "editName", text); }
    void PressReturn() { QTest::keyClick(dialog.focusWidget(), Qt::Key_Return); }

    CRecordingReporter reporter;
    CNewFormatNameDlg dialog{reporter};
};

struct RefusedNameCase {
    const char* name;
    QString typed;
    const char16_t* message;
    friend void PrintTo(const RefusedNameCase& c, std::ostream* out) { *out << c.name; }
};

struct RefusedFormatName : NameDialog, testing::WithParamInterface<RefusedNameCase> {};

struct AcceptedNameCase {
    const char* name;
    QString typed;
    QString accepted;
    friend void PrintTo(const AcceptedNameCase& c, std::ostream* out) { *out << c.name; }
};

struct AcceptedFormatName : NameDialog, testing::WithParamInterface<AcceptedNameCase> {};

} // namespace

TEST_P(RefusedFormatName, IsReportedAndStaysAsTyped)
{
    Type(GetParam().typed);
    PressReturn();
    EXPECT_EQ(reporter.shown, Shown{GetParam().message});
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(TextIn(dialog, "editName"), GetParam().typed.toStdString());
    EXPECT_EQ(dialog.Name(), "");
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, RefusedFormatName, testing::Values(
    RefusedNameCase{"Nothing",       "",                u"The File name is Empty!"},
    RefusedNameCase{"BlanksOnly",    "   ",             u"The File name is Empty!"},
    RefusedNameCase{"TooLong",       QString(129, 'n'), u" File name's length Error!"},
    RefusedNameCase{"FarTooLong",    QString(500, 'n'), u" File name's length Error!"},
    RefusedNameCase{"LengthFirst",   QString(129, '.'), u" File name's length Error!"},
    RefusedNameCase{"FullStop",      "a.b",             u"The File name Error!"},
    RefusedNameCase{"VerticalBar",   "a|b",             u"The File name Error!"},
    RefusedNameCase{"Backslash",     "a\\b",            u"The File name Error!"},
    RefusedNameCase{"DoubleQuote",   "a\"b",            u"The File name Error!"},
    RefusedNameCase{"Asterisk",      "a*b",             u"The File name Error!"},
    RefusedNameCase{"Slash",         "a/b",             u"The File name Error!"},
    RefusedNameCase{"LessThan",      "a<b",             u"The File name Error!"},
    RefusedNameCase{"GreaterThan",   "a>b",             u"The File name Error!"},
    RefusedNameCase{"QuestionMark",  "a?b",             u"The File name Error!"},
    RefusedNameCase{"Colon",         "x:y",             u"The File name Error!"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_P(AcceptedFormatName, ClosesTheDialog)
{
    Type(GetParam().typed);
    PressReturn();
    EXPECT_EQ(reporter.shown, Shown{});
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(dialog.Name(), GetParam().accepted);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, AcceptedFormatName, testing::Values(
    AcceptedNameCase{"Plain",               "Test",                        "Test"},
    AcceptedNameCase{"BlanksAround",        " Test ",                      "Test"},
    AcceptedNameCase{"InnerBlank",          "my format",                   "my format"},
    AcceptedNameCase{"Longest",             QString(128, 'n'),             QString(128, 'n')},
    AcceptedNameCase{"LongestWithBlanks",   ' ' + QString(128, 'n') + ' ', QString(128, 'n')}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(NameDialog, ARefusedNameCanBePutRight)
{
    Type("a.b");
    ClickOn(dialog, "buttonOk");
    ASSERT_TRUE(dialog.isVisible());
    Type("ab");
    ClickOn(dialog, "buttonOk");
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(dialog.Name(), "ab");
}

TEST_F(NameDialog, APastedNameIsOneLine)
{
    PasteInto(dialog, "editName", u"two\r\nlines\tand\u2028a null\0 "_qs);
    EXPECT_EQ(TextIn(dialog, "editName"), "two  lines and a null  ");
    PressReturn();
    EXPECT_EQ(dialog.Name(), "two  lines and a null");
}

TEST_F(NameDialog, APastedNameThatIsTooLongReachesTheMessage)
{
    const QString tooLong(100'000, 'n');
    PasteInto(dialog, "editName", tooLong);
    PressReturn();
    EXPECT_EQ(reporter.shown, Shown{u" File name's length Error!"});
    EXPECT_TRUE(dialog.isVisible());
}

TEST_F(NameDialog, TheTabKeyGoesThroughTheControlsInOrder)
{
    for (const char* next : {"buttonOk", "buttonCancel", "editName"}) {
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(dialog.focusWidget()->objectName(), next);
    }
}

TEST_F(NameDialog, CancelAndEscapeTakeNothing)
{
    Type("Test");
    ClickOn(dialog, "buttonCancel");
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
    EXPECT_EQ(dialog.Name(), "");
    ASSERT_TRUE(ShowActive(dialog));
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
    EXPECT_EQ(reporter.shown, Shown{});
}

TEST_F(NameDialog, HasItsTitleItsControlsAndTheFocusInTheField)
{
    EXPECT_EQ(dialog.windowTitle(), "New Format Name Dialog");
    EXPECT_EQ(dialog.property("controlId"), 136);
    EXPECT_EQ(FindIn<QLineEdit>(dialog, "editName").property("controlId"), 1040);
    EXPECT_EQ(FindIn<QLineEdit>(dialog, "editName").accessibleName(), "Format name");
    EXPECT_EQ(FindIn<QPushButton>(dialog, "buttonOk").property("controlId"), 1);
    EXPECT_EQ(FindIn<QPushButton>(dialog, "buttonOk").text(), "OK");
    EXPECT_TRUE(FindIn<QPushButton>(dialog, "buttonOk").isDefault());
    EXPECT_EQ(FindIn<QPushButton>(dialog, "buttonCancel").property("controlId"), 2);
    EXPECT_EQ(FindIn<QPushButton>(dialog, "buttonCancel").text(), "Cancel");
    EXPECT_EQ(dialog.focusWidget(), &FindIn<QWidget>(dialog, "editName"));
}
