#include "tests/views/FormatCommandsFixture.h"

namespace {

const DataFormat kEmpty = MakeFormat(u"Empty", {});

/// What is told of a format that has more items than it counts.
struct FormatCount : FormatCommands {
    QString Told() const
    {
        const auto said = frame.strip.find(StripSubject::FormatCount);
        return said == frame.strip.end() ? QString() : said->second.text;
    }

    void Add(const QString& description)
    {
        const CModalAnswer answer({Describe(description)});
        PressKey(Qt::Key_Insert);
    }

    /// As a click on the dismissing button: the frame forgets what it said.
    void Dismiss() { frame.strip.erase(StripSubject::FormatCount); }
};

} // namespace

TEST_F(FormatCount, OfFormatsAsTheyAreMadeIsRight)
{
    Start({kLine, kEmpty});
    EXPECT_EQ(Told(), "");
    Add("More");
    EXPECT_EQ(Told(), "");
    SelectFormat(1);
    EXPECT_EQ(Told(), "");
    Add("First");
    EXPECT_EQ(Told(), "");
}

TEST_F(FormatCount, LeavesOutTheItemThatAnEmptyFormatIsShownWith)
{
    Start({kEmpty});
    EXPECT_EQ(Told(), "The item shown will not be saved.");
    Add("mine");
    EXPECT_EQ(Told(), "1 of the 2 items shown will be saved.");
    Add("mine, too");
    EXPECT_EQ(Told(), "2 of the 3 items shown will be saved.");
    ASSERT_EQ(frame.strip[StripSubject::FormatCount].buttons.size(), 1);
    EXPECT_EQ(frame.strip[StripSubject::FormatCount].buttons[0].text, "Keep all");
}

TEST_F(FormatCount, IsToldOfTheSelectedFormat)
{
    Start({kEmpty, kLine});
    EXPECT_NE(Told(), "");
    SelectFormat(1);
    EXPECT_EQ(Told(), "");
    QTest::keyClick(&Formats(), Qt::Key_Up);
    EXPECT_NE(Told(), "");
    Press("buttonDeleteFormat");
    EXPECT_EQ(Told(), "");
}

TEST_F(FormatCount, BelowZeroLeavesOutTheNextItem) // kept: deleting the item that does not count lowers it
{
    Start({kEmpty});
    List().setCurrentItem(List().topLevelItem(0));
    PressKey(Qt::Key_Delete);
    EXPECT_EQ(Told(), "") << "nothing is shown, and nothing lost";
    Add("mine");
    EXPECT_EQ(Told(), "The item shown will not be saved.");
    Add("mine, too");
    EXPECT_EQ(Told(), "1 of the 2 items shown will be saved.");
    PressKey(Qt::Key_Delete);
    PressKey(Qt::Key_Delete);
    EXPECT_EQ(Told(), "");
}

TEST_F(FormatCount, AboveTheItemsLeavesOutNone)
{
    Store({kEmpty});
    Bytes later = ReadAll(LibraryPath());
    later[24] = std::byte{'5'}; // "RecipeFile2.5": its formats come with their counts and no items
    later[72 + 260] = std::byte{1};
    later.insert(later.end() - 4, 320, std::byte{0});
    WriteAll(LibraryPath(), later);
    FormatPane::Start();
    EXPECT_EQ(List().topLevelItemCount(), 1);
    EXPECT_EQ(Told(), "");
}

TEST_F(FormatCount, IsRightAgainWhenAllItemsGo)
{
    Start({kEmpty});
    RightClickRow(0);
    ChooseInMenu("actionDeleteAllItems");
    EXPECT_EQ(Told(), "");
    Add("mine");
    EXPECT_EQ(Told(), "");
}

TEST_F(FormatCount, IsNotToldAgainOnceDismissed)
{
    Start({kEmpty});
    Dismiss();
    const CModalAnswer answer({kOk});
    List().setCurrentItem(List().topLevelItem(0));
    PressKey(Qt::Key_Return); // the item is changed, the count is not
    EXPECT_EQ(Told(), "");
    Add("mine");
    EXPECT_NE(Told(), "");
}
