#include "tests/views/FormatCommandsFixture.h"

#include <functional>

namespace {

struct CommandCase {
    const char* name;
    std::function<void(FormatCommands&)> run;
    std::vector<DataFormat> formats; ///< after it, of kLine
    friend void PrintTo(const CommandCase& c, std::ostream* out) { *out << c.name; }
};

struct WithoutAutoUse : FormatCommands, testing::WithParamInterface<CommandCase> {};

} // namespace

TEST_P(WithoutAutoUse, AChangeWaitsUntilItIsUsed)
{
    Start();
    SetAutoUse(false);
    const CModalAnswer answer({[](QWidget& dialog) {
        if (dialog.findChild<QLineEdit*>("editName") != nullptr)
            TypeInto(dialog, "editName", "Test");
        ClickOn(dialog, "buttonOk");
    }});
    GetParam().run(*this);
    EXPECT_EQ(frame.calls, Calls{});
    ExpectStored({kLine}); // the file waits, too
    Press("buttonRefreshData");
    EXPECT_EQ(frame.calls.size(), 1U);
    ExpectStored(GetParam().formats);
}

TEST_P(WithoutAutoUse, AChangeIsSavedAtTheEnd)
{
    Start();
    SetAutoUse(false);
    const CModalAnswer answer({[](QWidget& dialog) {
        if (dialog.findChild<QLineEdit*>("editName") != nullptr)
            TypeInto(dialog, "editName", "Test");
        ClickOn(dialog, "buttonOk");
    }});
    GetParam().run(*this);
    view.reset();
    EXPECT_EQ(frame.calls, Calls{});
    ExpectStored(GetParam().formats);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Commands, WithoutAutoUse, testing::Values(
    CommandCase{"AddItem",
                [](FormatCommands& pane) { pane.RightClickRow(0); pane.ChooseInMenu("actionAddItem"); },
                {With(kLine, 1, ProposedItem(u"Desc1"))}},
    CommandCase{"DeleteItem",
                [](FormatCommands& pane) { pane.RightClickRow(0); pane.ChooseInMenu("actionDeleteItem"); },
                {Without(kLine, 0)}},
    CommandCase{"DeleteAllItems",
                [](FormatCommands& pane) { pane.RightClickRow(0); pane.ChooseInMenu("actionDeleteAllItems"); },
                {MakeFormat(u"Line", {})}},
    CommandCase{"AddFormat",
                [](FormatCommands& pane) { pane.Press("buttonAddFormat"); },
                {kLine, NewFormat(u"Test")}},
    CommandCase{"DeleteFormat",
                [](FormatCommands& pane) { pane.Press("buttonDeleteFormat"); },
                {}}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(FormatCommands, LookingChangesNotAByteOfTheLibrary)
{
    Store({kLine, kMixer});
    FormatPane::Start(); // nothing is open
    const Bytes before = ReadAll(LibraryPath());
    const auto written = std::filesystem::last_write_time(LibraryPath());
    SelectFormat(1);
    SetAutoUse(false);
    SetAutoUse(true);
    RightClickRow(0);
    ItemMenu().close();
    const CModalAnswer answer({kCancel});
    DoubleClickRow(0);
    EXPECT_EQ(answer.titles.size(), 1U);
    EXPECT_EQ(ReadAll(LibraryPath()), before);
    EXPECT_EQ(std::filesystem::last_write_time(LibraryPath()), written);
    EXPECT_FALSE(SavesAtTheEnd());
}

TEST_F(FormatCommands, UsingAndChoosingFormatsChangesNothing)
{
    Start({kLine, kMixer});
    SelectFormat(1);
    EXPECT_EQ(frame.calls, Calls{});
    Press("buttonUseFormat");
    Press("buttonRefreshData");
    SetAutoUse(false);
    SetAutoUse(true);
    EXPECT_EQ(frame.calls, (Calls{"show 0", "show 0"}));
    EXPECT_FALSE(SavesAtTheEnd());
}
