#include "controls/GridCtrl.h"
#include "tests/app/FrameFixture.h"

#include <QPushButton>
#include <QTest>

namespace {

using Texts = std::vector<QString>;

const QString kQuestion = QStringLiteral("Editing the recipe file,Do you want to save it?");
const QString kClosingTitle = QStringLiteral("Saving file，Please be patient!");

struct Closing : FrameFixture {
    void SetUp() override { Start(); }

    void OpenAndChange()
    {
        MakeFile("a.rcp");
        OpenThroughDialog("a.rcp");
        TypeIntoCell(1, 2, "9");
    }

    bool IsSaved() const { return ReadAll(folder / "a.rcp")[0] == std::byte{9}; }
};

} // namespace

TEST_F(Closing, WithNothingToSaveAsksNothingButChangesTheTitle)
{
    MakeFile("a.rcp");
    OpenThroughDialog("a.rcp");
    const CModalAnswer answer(QMessageBox::Ok);
    EXPECT_TRUE(frame->close());
    EXPECT_EQ(answer.texts, Texts{});
    EXPECT_EQ(frame->windowTitle(), kClosingTitle);
}

TEST_F(Closing, WithUnsavedWorkAsksAndSavesOnYes)
{
    OpenAndChange();
    const CModalAnswer answer({[this](QWidget& dialog) {
        EXPECT_EQ(frame->windowTitle(), kClosingTitle);
        CModalAnswer::Press(QMessageBox::Yes)(dialog);
    }});
    EXPECT_TRUE(frame->close());
    EXPECT_EQ(answer.texts, Texts{kQuestion});
    EXPECT_EQ(answer.titles, Texts{"Notify of Vantor"});
    EXPECT_EQ(ReadAll(folder / "a.rcp")[0], std::byte{9});
}

TEST_F(Closing, WithUnsavedWorkSavesNothingOnNo)
{
    OpenAndChange();
    const CModalAnswer answer(QMessageBox::No);
    EXPECT_TRUE(frame->close());
    EXPECT_EQ(answer.texts, Texts{kQuestion});
    EXPECT_EQ(ReadAll(folder / "a.rcp"), Bytes(24));
}

TEST_F(Closing, CannotBeCancelledByTheSaveDialog)
{
    Trigger(*frame, "actionNew");
    const CModalAnswer answer({CModalAnswer::Press(QMessageBox::Yes), CancelDialog()});
    EXPECT_TRUE(frame->close());
    EXPECT_EQ(answer.titles, (Texts{"Notify of Vantor", "Save as"}));
    EXPECT_FALSE(frame->isVisible());
}

TEST_F(Closing, EndsAnOpenEditAndAsksAboutIt)
{
    MakeFile("a.rcp");
    OpenThroughDialog("a.rcp");
    ClickCell(1, 2);
    QTest::keyClick(&Grid(), Qt::Key_F2);
    QTest::keyClick(frame->focusWidget(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(frame->focusWidget(), "7");
    const CModalAnswer answer(QMessageBox::Yes);
    EXPECT_TRUE(frame->close());
    EXPECT_EQ(answer.texts, Texts{kQuestion});
    EXPECT_EQ(ReadAll(folder / "a.rcp")[0], std::byte{7});
}

TEST_F(Closing, IsAskedAboutUntilOneOfTheTwoButtonsAnswers)
{
    OpenAndChange();
    const auto staysOpen = [this](const CModalAnswer::Action& action) {
        return [this, action](QWidget& dialog) {
            action(dialog);
            EXPECT_TRUE(dialog.isVisible());
            EXPECT_TRUE(frame->isVisible());
        };
    };
    const CModalAnswer answer({
        staysOpen(CModalAnswer::Key(Qt::Key_Escape)),
        staysOpen([](QWidget& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); }),
        staysOpen([](QWidget& dialog) { dialog.close(); }), // as the window's close button and Alt+F4 do
        CModalAnswer::Press(QMessageBox::Yes),
    });
    EXPECT_TRUE(frame->close());
    EXPECT_EQ(answer.texts, (Texts{kQuestion, kQuestion, kQuestion, kQuestion}));
    EXPECT_TRUE(IsSaved());
}

TEST_F(Closing, ItsQuestionHasNoCloseButton)
{
    OpenAndChange();
    const CModalAnswer answer({[](QWidget& dialog) {
        EXPECT_FALSE(dialog.windowFlags().testFlag(Qt::WindowCloseButtonHint));
        CModalAnswer::Press(QMessageBox::No)(dialog);
    }});
    EXPECT_TRUE(frame->close());
    EXPECT_EQ(answer.texts, Texts{kQuestion});
}

namespace {

struct KeyCase {
    const char* name;
    std::vector<Qt::Key> keys;
    bool saves;
    friend void PrintTo(const KeyCase& c, std::ostream* out) { *out << c.name; }
};

struct ClosingByKeys : Closing, testing::WithParamInterface<KeyCase> {};

} // namespace

TEST_P(ClosingByKeys, AnswersTheQuestion)
{
    OpenAndChange();
    std::vector<CModalAnswer::Action> actions;
    for (const Qt::Key key : GetParam().keys)
        actions.push_back(CModalAnswer::Key(key));
    actions.emplace_back([](QWidget&) {}); // a letter's button is seen pressed before it answers
    const CModalAnswer answer(actions);
    EXPECT_TRUE(frame->close());
    EXPECT_EQ(IsSaved(), GetParam().saves);
    EXPECT_FALSE(frame->isVisible());
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Keys, ClosingByKeys, testing::Values(
    KeyCase{"Return",     {Qt::Key_Return},               true},
    KeyCase{"Space",      {Qt::Key_Space},                true},
    KeyCase{"Y",          {Qt::Key_Y},                    true},
    KeyCase{"N",          {Qt::Key_N},                    false},
    KeyCase{"TabReturn",  {Qt::Key_Tab, Qt::Key_Return},  false},
    KeyCase{"TabSpace",   {Qt::Key_Tab, Qt::Key_Space},   false},
    KeyCase{"EscapeThenReturn", {Qt::Key_Escape, Qt::Key_Return}, true}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on
