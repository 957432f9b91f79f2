#include "tests/views/FormatCommandsFixture.h"

TEST_F(FormatCommands, ANewFormatComesLastWithOneItemAndIsSelected)
{
    Start({kLine, kMixer});
    const CModalAnswer answer({Name(" Test ")});
    Press("buttonAddFormat");
    EXPECT_EQ(answer.titles, std::vector<QString>{"New Format Name Dialog"});
    EXPECT_EQ(Formats().count(), 3);
    EXPECT_EQ(Formats().currentIndex(), 2);
    EXPECT_EQ(Formats().currentText(), "Test");
    ASSERT_EQ(List().topLevelItemCount(), 1);
    EXPECT_EQ(Row(0), (QStringList{"0", "1", "16 bit signed number", "Desc0"}));
    EXPECT_EQ(FormatLength(), "1");
    EXPECT_TRUE(Find<QPushButton>("buttonDeleteFormat").isEnabled());
    EXPECT_EQ(frame.calls, Calls{"show 0"});
    EXPECT_EQ(TextOf(frame.Document().Settings().format.name), u"Test");
    ExpectStored({kLine, kMixer, NewFormat(u"Test")});
}

TEST_F(FormatCommands, TwoFormatsMayBearTheSameName)
{
    Start();
    const CModalAnswer answer({Name("Line")});
    Press("buttonAddFormat");
    EXPECT_EQ(frame.reporter.shown, Shown{});
    EXPECT_EQ(Formats().count(), 2);
    ExpectStored({kLine, NewFormat(u"Line")});
}

TEST_F(FormatCommands, ARefusedNameIsReportedAndCanBePutRight)
{
    Start();
    const CModalAnswer answer({Name("a.b"), Name("ab")});
    Press("buttonAddFormat");
    EXPECT_EQ(frame.reporter.shown, Shown{u"The File name Error!"});
    ExpectStored({kLine, NewFormat(u"ab")});
}

TEST_F(FormatCommands, ACancelledFormatAddsNothingButCountsAsAChange) // kept
{
    Start();
    const CModalAnswer answer({kCancel});
    Press("buttonAddFormat");
    EXPECT_EQ(Formats().count(), 1);
    EXPECT_EQ(frame.calls, Calls{});
    EXPECT_TRUE(SavesAtTheEnd());
    ExpectStored({kLine});
}

namespace {

struct DeleteCase {
    const char* name;
    int deleted;
    int selected; ///< after that
    friend void PrintTo(const DeleteCase& c, std::ostream* out) { *out << c.name; }
};

struct DeletedFormat : FormatCommands, testing::WithParamInterface<DeleteCase> {};

} // namespace

TEST_P(DeletedFormat, SelectsTheNextOneOrTheOneBeforeTheLast)
{
    std::vector<DataFormat> formats{kLine, kMixer, kTank};
    Start(formats);
    SelectFormat(GetParam().deleted);
    Press("buttonDeleteFormat");
    formats.erase(formats.begin() + GetParam().deleted);
    ASSERT_EQ(Formats().count(), 2);
    EXPECT_EQ(Formats().currentIndex(), GetParam().selected);
    const DataFormat& selected = formats[static_cast<std::size_t>(GetParam().selected)];
    EXPECT_EQ(Formats().currentText().toStdU16String(), TextOf(selected.name));
    EXPECT_EQ(List().topLevelItemCount(), selected.itemCount);
    EXPECT_EQ(Row(0)[3].toStdU16String(), TextOf(selected.items[0]->description));
    EXPECT_EQ(FormatLength(), std::to_string(selected.totalLength()));
    EXPECT_TRUE(Find<QPushButton>("buttonDeleteFormat").isEnabled());
    EXPECT_EQ(frame.calls, Calls{"show 0"});
    EXPECT_EQ(frame.reporter.asked, Shown{});
    ExpectStored(formats);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, DeletedFormat, testing::Values(
    DeleteCase{"FirstOfThree", 0, 0}, DeleteCase{"SecondOfThree", 1, 1}, DeleteCase{"ThirdOfThree", 2, 1}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(FormatCommands, TheCommandsOfTheItemsAreOffWithoutAFormat)
{
    Start();
    Press("buttonDeleteFormat");
    for (const char* command : {"actionAddItem", "actionModifyItem", "actionDeleteItem", "actionDeleteAllItems"})
        EXPECT_FALSE(Find<QAction>(command).isEnabled()) << command;
    const CModalAnswer answer({Name("Test")});
    Press("buttonAddFormat");
    EXPECT_TRUE(Find<QAction>("actionAddItem").isEnabled());
    EXPECT_TRUE(Find<QAction>("actionDeleteAllItems").isEnabled());
}

TEST_F(FormatCommands, DeletingTheOnlyFormatEmptiesAllAndClearsTheData)
{
    Start();
    Press("buttonDeleteFormat");
    EXPECT_EQ(Formats().count(), 0);
    EXPECT_EQ(List().topLevelItemCount(), 0);
    EXPECT_EQ(FormatLength(), "0");
    EXPECT_FALSE(Find<QPushButton>("buttonDeleteFormat").isEnabled());
    EXPECT_FALSE(view->HasSelectedFormat());
    EXPECT_EQ(frame.calls, Calls{"clear"});
    ExpectStored({});
    const CModalAnswer answer({Name("Test")});
    Press("buttonAddFormat");
    EXPECT_EQ(Formats().currentText(), "Test");
    EXPECT_TRUE(Find<QPushButton>("buttonDeleteFormat").isEnabled());
    EXPECT_EQ(frame.calls, (Calls{"clear", "show 0"}));
    ExpectStored({NewFormat(u"Test")});
}
