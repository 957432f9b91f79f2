#include "tests/support/DialogSteps.h"
#include "tests/support/GuiTest.h"
#include "tests/support/ListOpenChoice.h"
#include "tests/support/PathLook.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/TestFiles.h"
#include "text/PathText.h"
#include "text/Utf8Text.h"
#include "views/SavePathDlg.h"

#include <QAccessible>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

using Texts = std::vector<std::u16string>;

struct SavePath : testing::Test {
    void SetUp() override { Open(folder / "vantor"); }

    void Open(const fs::path& executable)
    {
        dialog = std::make_unique<CSavePathDlg>(executable, reporter);
        ASSERT_TRUE(ShowActive(*dialog));
    }

    void TypeName(const QString& name) { TypeInto(*dialog, "editName", name); }
    std::string Shown() const { return PathLook(TextIn(*dialog, "editPath")); }
    std::string Result() const { return PathLook(dialog->Path().toStdString()); }
    std::string InFolder(const std::string& name) const
    {
        return PathLook(ToUtf8(PathText(folder / PathOfUtf8(name))));
    }

    void ChooseFolder(const CModalAnswer::Action& action)
    {
        const CModalAnswer answer({action});
        ClickOn(*dialog, "buttonFolder");
        EXPECT_EQ(answer.titles, std::vector<QString>{"Save Path Select"});
        EXPECT_TRUE(ShowActive(*dialog)); // the offscreen platform does not do it after a dialog
    }

    void ExpectAccepted() const
    {
        EXPECT_FALSE(dialog->isVisible());
        EXPECT_EQ(dialog->result(), QDialog::Accepted);
    }

    CTempFolder folder; // its name has no capitals
    CRecordingReporter reporter;
    std::unique_ptr<CSavePathDlg> dialog;
};

TEST_F(SavePath, HasItsControls)
{
    EXPECT_EQ(dialog->windowTitle(), "Save Path Dialog");
    EXPECT_EQ(dialog->property("controlId").toInt(), 140);
    EXPECT_TRUE(dialog->isSizeGripEnabled());
    const std::tuple<const char*, int, const char*> controls[] = {
        {"labelName", 1134, "Name:"}, {"editName", 1131, "Name:"},   {"labelPath", 1135, "Path:"},
        {"editPath", 1132, "Path:"},  {"buttonFolder", 1133, ">>>"}, {"buttonOk", 1, "OK"},
        {"buttonCancel", 2, "Cancel"}};
    for (const auto& [name, id, accessibleName] : controls) {
        auto& widget = FindIn<QWidget>(*dialog, name);
        EXPECT_EQ(widget.property("controlId").toInt(), id) << name;
        EXPECT_EQ(QAccessible::queryAccessibleInterface(&widget)->text(QAccessible::Name), accessibleName) << name;
    }
    EXPECT_EQ(FindIn<QLabel>(*dialog, "labelName").buddy(), &FindIn<QWidget>(*dialog, "editName"));
    EXPECT_EQ(FindIn<QLabel>(*dialog, "labelPath").buddy(), &FindIn<QWidget>(*dialog, "editPath"));
    EXPECT_TRUE(FindIn<QPushButton>(*dialog, "buttonOk").isDefault());
}

TEST_F(SavePath, AFolderIsTypedWithTheListOfCompletionsOpen)
{
    fs::create_directories(folder / "recipes" / "line one");
    const CListOpenChoice choice("recipes");
    ClickOn(*dialog, "buttonFolder");
    EXPECT_TRUE(choice.WasListOpen());
    EXPECT_TRUE(choice.ClosedListFirst());
    EXPECT_EQ(Shown(), InFolder("recipes/"));
}

TEST_F(SavePath, StartsInTheProgramsFolderWithoutAName)
{
    EXPECT_EQ(TextIn(*dialog, "editName"), "");
    EXPECT_EQ(Shown(), InFolder(""));
    EXPECT_EQ(dialog->focusWidget()->objectName(), "editName");
}

TEST_F(SavePath, StartsInTheLowerCasedFolderWhereItExists)
{
    fs::create_directory(folder / "Bin");
    fs::create_directory(folder / "bin");
    Open(folder / "Bin" / "Vantor");
    EXPECT_EQ(Shown(), InFolder("bin/"));
    TypeName("a");
    QTest::keyClick(dialog.get(), Qt::Key_Return);
    ExpectAccepted();
    EXPECT_EQ(Result(), InFolder("bin/a.rcp"));
}

TEST_F(SavePath, StartsInTheFolderItselfWhereOnlyThatExists)
{
    fs::create_directory(folder / "Bin");
    Open(folder / "Bin" / "Vantor");
    EXPECT_EQ(Shown(), InFolder("Bin/"));
}

TEST_F(SavePath, ThePathFollowsEachKey)
{
    auto& field = FindIn<QLineEdit>(*dialog, "editName");
    QTest::keyClicks(&field, "a");
    EXPECT_EQ(Shown(), InFolder("a"));
    QTest::keyClicks(&field, " b");
    EXPECT_EQ(Shown(), InFolder("a b"));
    QTest::keyClick(&field, Qt::Key_Home);
    QTest::keyClicks(&field, " ");
    EXPECT_EQ(Shown(), InFolder(" a b"));
    QTest::keyClick(&field, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&field, Qt::Key_Backspace);
    EXPECT_EQ(Shown(), InFolder(""));
}

TEST_F(SavePath, ThePathCannotBeTypedInto)
{
    TypeInto(*dialog, "editPath", "x");
    EXPECT_EQ(Shown(), InFolder(""));
}

TEST_F(SavePath, ALongPathShowsItsEndAndTheWholeInItsTip)
{
    const QString name(200, 'n');
    TypeName(name);
    auto& field = FindIn<QLineEdit>(*dialog, "editPath");
    EXPECT_EQ(field.cursorPosition(), field.text().size());
    const std::string tip = PathLook(field.toolTip().remove(QChar(0x200B)).toStdString());
    EXPECT_NE(tip.find(InFolder(name.toStdString())), std::string::npos) << tip;
    TypeName("a<b>&");
    EXPECT_TRUE(
        field.toolTip().remove(QChar(0x200B)).contains("a&lt;b&gt;&amp;")); // the tip is no markup of the user's
}

struct AcceptedCase {
    const char* name;
    const char* typed;
    const char* file;
    friend void PrintTo(const AcceptedCase& c, std::ostream* out) { *out << c.name; }
};
struct AcceptedName : SavePath, testing::WithParamInterface<AcceptedCase> {};

TEST_P(AcceptedName, EndsInRcp)
{
    TypeName(QString::fromUtf8(GetParam().typed));
    QTest::keyClick(dialog->focusWidget(), Qt::Key_Return);
    ExpectAccepted();
    EXPECT_EQ(Result(), InFolder(GetParam().file));
    EXPECT_TRUE(reporter.shown.empty());
    EXPECT_TRUE(reporter.asked.empty());
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, AcceptedName, testing::Values(
    //           name                typed        file
    AcceptedCase{"Plain",            "a",         "a.rcp"},
    AcceptedCase{"OwnEnding",        "Plan.Rcp",  "Plan.Rcp"},
    AcceptedCase{"CapitalEnding",    "a.RCP",     "a.RCP"},
    AcceptedCase{"OtherEnding",      "data.bin",  "data.bin.rcp"},
    AcceptedCase{"Dot",              "x.y",       "x.y.rcp"},
    AcceptedCase{"BlankWithin",      "a b",       "a b.rcp"},
    AcceptedCase{"BlanksAround",     " b ",       " b .rcp"},     // kept: only the check is made without them
    AcceptedCase{"EndingAlone",      ".rcp",      ".rcp"},
    AcceptedCase{"BeyondAscii",      "配方 ü",    "配方 ü.rcp"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(SavePath, ANameMayBeOfAnyLength)
{
    TypeName(QString(40000, QChar(0xE9))); // as if pasted
    ClickOn(*dialog, "buttonOk");
    ExpectAccepted();
    EXPECT_EQ(dialog->Path().size(), static_cast<qsizetype>(InFolder("").size()) + 40000 + 4);
}

struct RefusedCase {
    const char* name;
    const char* typed;
    const char16_t* message;
    friend void PrintTo(const RefusedCase& c, std::ostream* out) { *out << c.name; }
};
struct RefusedName : SavePath, testing::WithParamInterface<RefusedCase> {};

TEST_P(RefusedName, IsReportedAndStaysAsTyped)
{
    TypeName(GetParam().typed);
    const std::string shown = Shown();
    ClickOn(*dialog, "buttonOk");
    EXPECT_EQ(reporter.shown, Texts{GetParam().message});
    EXPECT_TRUE(reporter.asked.empty());
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(TextIn(*dialog, "editName"), GetParam().typed);
    EXPECT_EQ(Shown(), shown);
}

constexpr const char16_t* kEmpty = u"The file name can't be empty ,please input it!";
constexpr const char16_t* kIllegal =
    u"the file isn't illegal \uFF0Cplease reinput it!"; // kept, the full-width comma too

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, RefusedName, testing::Values(
    //          name           typed      message
    RefusedCase{"Nothing",     "",        kEmpty},
    RefusedCase{"BlanksOnly",  "   ",     kEmpty},
    RefusedCase{"Bar",         "a|b",     kIllegal},
    RefusedCase{"Backslash",   "a\\b",    kIllegal},
    RefusedCase{"Quote",       "a\"b",    kIllegal},
    RefusedCase{"Asterisk",    "a*b",     kIllegal},
    RefusedCase{"Slash",       "a/b",     kIllegal},
    RefusedCase{"Less",        "a<b",     kIllegal},
    RefusedCase{"Greater",     "a>b",     kIllegal},
    RefusedCase{"Question",    "a?b",     kIllegal},
    RefusedCase{"Colon",       "x:y",     kIllegal}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(SavePath, AChosenFolderTakesThePlaceOfTheFirst)
{
    fs::create_directory(folder / "Other");
    TypeName("a");
    ChooseFolder(ChoosePath(QString::fromStdString(InFolder("Other"))));
    EXPECT_EQ(Shown(), InFolder("Other/a"));
    TypeName("b");
    EXPECT_EQ(Shown(), InFolder("Other/b"));
    ClickOn(*dialog, "buttonOk");
    EXPECT_EQ(Result(), InFolder("Other/b.rcp"));
}

TEST_F(SavePath, TheRootEndsInOneSeparator)
{
    TypeName("a");
    ChooseFolder(ChoosePath(QDir::rootPath()));
    EXPECT_EQ(Shown(), PathLook(QDir::rootPath().toStdString() + "a"));
}

TEST_F(SavePath, ANameIsPutAfterAChosenFolderAsTyped)
{
    TypeName(QString("a%1%1b").arg(QDir::separator()));
    EXPECT_EQ(Shown(), InFolder("a/b"));
    ChooseFolder(ChoosePath(QString::fromStdString(InFolder(""))));
    EXPECT_EQ(Shown(), InFolder("a//b")); // kept: doubles go only while the name is typed
}

TEST_F(SavePath, ACancelledFolderChangesNothing)
{
    TypeName("a");
    ChooseFolder(CancelDialog());
    EXPECT_EQ(Shown(), InFolder("a"));
}

TEST_F(SavePath, TheFolderBrowserStartsWhereThePathIsAndShowsFoldersOnly)
{
    QString start;
    QFileDialog::FileMode mode{};
    ChooseFolder([&](QWidget& browser) {
        start = dynamic_cast<QFileDialog&>(browser).directory().path() + '/';
        mode = dynamic_cast<QFileDialog&>(browser).fileMode();
        QTest::keyClick(&browser, Qt::Key_Escape);
    });
    EXPECT_EQ(PathLook(start.toStdString()), InFolder(""));
    EXPECT_EQ(mode, QFileDialog::Directory);
}

TEST_F(SavePath, AnExistingFileIsAskedForEachTime)
{
    WriteAll(folder / "old.rcp", BytesOf({1, 2, 3}));
    const std::u16string question = u"The file " + (folder / "old.rcp").u16string() +
                                    u" exist,\nMerge operation can empty the file content,continue?";
    TypeName("old");
    reporter.answer = false;
    ClickOn(*dialog, "buttonOk");
    EXPECT_EQ(PathLook(reporter.asked), PathLook(Texts{question}));
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(TextIn(*dialog, "editName"), "old");
    EXPECT_EQ(Shown(), InFolder("old"));
    ClickOn(*dialog, "buttonOk");
    EXPECT_EQ(PathLook(reporter.asked), PathLook(Texts{question, question}));
    EXPECT_TRUE(dialog->isVisible());
    reporter.answer = true;
    ClickOn(*dialog, "buttonOk");
    EXPECT_EQ(reporter.asked.size(), 3u);
    ExpectAccepted();
    EXPECT_EQ(Result(), InFolder("old.rcp"));
    EXPECT_EQ(ReadAll(folder / "old.rcp"), BytesOf({1, 2, 3})); // the merge empties it, not the question
}

TEST_F(SavePath, AFolderOfThatNameIsNoFileToReplace)
{
    fs::create_directory(folder / "sub.rcp");
    TypeName("sub");
    ClickOn(*dialog, "buttonOk");
    EXPECT_TRUE(reporter.asked.empty());
    ExpectAccepted();
}

TEST_F(SavePath, EscapeAndCancelEndWithoutAPath)
{
    TypeName("a");
    QTest::keyClick(dialog->focusWidget(), Qt::Key_Escape);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), QDialog::Rejected);
    ASSERT_TRUE(ShowActive(*dialog));
    ClickOn(*dialog, "buttonCancel");
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), QDialog::Rejected);
    EXPECT_TRUE(reporter.shown.empty());
    EXPECT_EQ(Result(), "");
}

TEST_F(SavePath, TabGoesFromControlToControl)
{
    QStringList order;
    for (int i = 0; i < 5; ++i) {
        order << dialog->focusWidget()->objectName();
        QTest::keyClick(dialog->focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(order, (QStringList{"editName", "editPath", "buttonFolder", "buttonOk", "buttonCancel"}));
    EXPECT_EQ(dialog->focusWidget()->objectName(), "editName");
}

} // namespace
