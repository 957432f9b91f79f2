#include "tests/views/FormatCommandsFixture.h"

namespace {

const char* const kItemCommands[] = {"actionAddItem", "actionModifyItem", "actionDeleteItem", "actionDeleteAllItems"};

/// The pane, and formats that change without it.
struct FormatChangedOutside : FormatCommands {
    /// What was done is taken back as another part of the program would do it.
    void TakeBack(const FormatChange& change)
    {
        view->Store().TakeBack(change);
        view->FormatChanged(change.index);
    }

    void Apply(const FormatChange& change)
    {
        view->Store().Apply(change);
        view->FormatChanged(change.index);
    }

    QStringList Names() const
    {
        QStringList names;
        for (int i = 0; i < Formats().count(); ++i)
            names << Formats().itemText(i);
        return names;
    }

    bool ToldOfCount() const { return frame.strip.contains(StripSubject::FormatCount); }
};

} // namespace

TEST_F(FormatChangedOutside, AnItemComesAndGoes)
{
    Start();
    const FormatChange change = view->Store().InsertItem(0, 1, *kMixer.items[0]);
    view->FormatChanged(change.index);
    EXPECT_EQ(Column(0), (QStringList{"0", "1", "2", "3", "4"}));
    EXPECT_EQ(Column(3), (QStringList{"A", "Speed", "B", "C", "D"}));
    EXPECT_EQ(FormatLength(), "6");
    TakeBack(change);
    EXPECT_EQ(Column(0), (QStringList{"0", "1", "2", "3"}));
    EXPECT_EQ(Column(3), (QStringList{"A", "B", "C", "D"}));
    EXPECT_EQ(FormatLength(), "4");
}

TEST_F(FormatChangedOutside, NothingIsUsedAndNothingSaved)
{
    Start({kLine, kMixer});
    const Bytes before = ReadAll(LibraryPath());
    for (const FormatChange& change : {view->Store().RemoveItem(0, 0), view->Store().RemoveFormat(1)})
        view->FormatChanged(change.index);
    EXPECT_EQ(frame.calls, Calls{});
    EXPECT_EQ(frame.libraryTroubles, std::vector<QString>{});
    EXPECT_EQ(ReadAll(LibraryPath()), before);
    EXPECT_TRUE(view->SaveFormats());
    ExpectStored({Without(kLine, 0)});
    EXPECT_EQ(frame.libraryTroubles, std::vector<QString>{""});
    EXPECT_EQ(frame.calls, Calls{});
}

TEST_F(FormatChangedOutside, ASaveThatFailsIsTold)
{
    Start();
    std::filesystem::remove(LibraryPath());
    std::filesystem::create_directory(LibraryPath());
    EXPECT_FALSE(view->SaveFormats());
    EXPECT_EQ(frame.libraryTroubles, std::vector<QString>{"The data formats could not be saved in " +
                                                          QString::fromStdString(LibraryPath().string())});
}

TEST_F(FormatChangedOutside, TheFormatThatChangedIsSelected)
{
    Start({kLine, kMixer, kTank});
    const FormatChange change = view->Store().ReplaceItem(2, 0, Word(u"Depth"));
    view->FormatChanged(change.index);
    EXPECT_EQ(Formats().currentText(), "Tank");
    EXPECT_EQ(Row(0), (QStringList{"0", "1", "16 bit signed number", "Depth"}));
    EXPECT_EQ(FormatLength(), "1");
    TakeBack(change);
    EXPECT_EQ(Row(0)[3], "Level");
    EXPECT_EQ(List().currentIndex().row(), -1);
    Press("buttonUseFormat");
    EXPECT_EQ(TextOf(frame.Document().Settings().format.name), u"Tank");
}

TEST_F(FormatChangedOutside, AFormatThatCameAndWentTakesItsPlaceAmongTheOthers)
{
    Start({kLine, kMixer, kTank});
    const FormatChange change = view->Store().RemoveFormat(1);
    view->FormatChanged(change.index);
    EXPECT_EQ(Names(), (QStringList{"Line", "Tank"}));
    EXPECT_EQ(Formats().currentText(), "Tank");
    EXPECT_EQ(Column(3), QStringList{"Level"});
    TakeBack(change);
    EXPECT_EQ(Names(), (QStringList{"Line", "Mixer", "Tank"}));
    EXPECT_EQ(Formats().currentText(), "Mixer");
    EXPECT_EQ(Column(3), QStringList{"Speed"});
    Apply(change);
    EXPECT_EQ(Names(), (QStringList{"Line", "Tank"}));
    EXPECT_EQ(Formats().currentText(), "Tank");
}

TEST_F(FormatChangedOutside, TheOneBeforeTheLastIsSelectedWhenThatWent)
{
    Start({kLine, kMixer});
    const FormatChange change = view->Store().AppendFormat(kTank);
    view->FormatChanged(change.index);
    EXPECT_EQ(Formats().currentText(), "Tank");
    TakeBack(change);
    EXPECT_EQ(Names(), (QStringList{"Line", "Mixer"}));
    EXPECT_EQ(Formats().currentText(), "Mixer");
    EXPECT_EQ(Column(3), QStringList{"Speed"});
    EXPECT_EQ(FormatLength(), "2");
}

TEST_F(FormatChangedOutside, TheOnlyFormatGoesAndComesBackWithItsCommands)
{
    Start();
    const FormatChange change = view->Store().RemoveFormat(0);
    view->FormatChanged(change.index);
    EXPECT_EQ(Names(), QStringList());
    EXPECT_FALSE(view->HasSelectedFormat());
    EXPECT_EQ(List().topLevelItemCount(), 0);
    EXPECT_EQ(FormatLength(), "0");
    EXPECT_FALSE(Find<QPushButton>("buttonDeleteFormat").isEnabled());
    for (const char* command : kItemCommands)
        EXPECT_FALSE(Find<QAction>(command).isEnabled()) << command;
    RightClickBelowTheRows();
    EXPECT_FALSE(ItemMenu().isVisible());

    TakeBack(change);
    EXPECT_EQ(Names(), QStringList{"Line"});
    EXPECT_EQ(Column(3), (QStringList{"A", "B", "C", "D"}));
    EXPECT_TRUE(Find<QPushButton>("buttonDeleteFormat").isEnabled());
    RightClickRow(3);
    ChooseInMenu("actionDeleteItem");
    ExpectStored({Without(kLine, 3)});
}

TEST_F(FormatChangedOutside, TheCurrentRowStaysOrIsTheLast)
{
    Start({kLine, kMixer});
    List().setCurrentItem(List().topLevelItem(3));
    const FormatChange change = view->Store().RemoveItem(0, 0);
    view->FormatChanged(change.index);
    EXPECT_EQ(List().currentIndex().row(), 2);
    EXPECT_TRUE(List().topLevelItem(2)->isSelected());
    TakeBack(change);
    EXPECT_EQ(List().currentIndex().row(), 2);
    PressKey(Qt::Key_Delete);
    ExpectStored({Without(kLine, 2), kMixer});
}

TEST_F(FormatChangedOutside, TheNoticeOfTheCountComesAndGoes)
{
    Start({MakeFormat(u"Empty", {})});
    ASSERT_TRUE(ToldOfCount());
    const FormatChange change = view->Store().CountAllItems(0);
    view->FormatChanged(change.index);
    EXPECT_FALSE(ToldOfCount());
    TakeBack(change);
    EXPECT_TRUE(ToldOfCount());
    const FormatChange removed = view->Store().RemoveFormat(0);
    view->FormatChanged(removed.index);
    EXPECT_FALSE(ToldOfCount());
}

TEST_F(FormatChangedOutside, ACommandOfThePaneCanBeTakenBack)
{
    Start({kLine, kMixer});
    const auto before = std::make_shared<const DataFormat>(kLine);
    List().setCurrentItem(List().topLevelItem(1));
    PressKey(Qt::Key_Delete);
    EXPECT_EQ(Column(0), (QStringList{"0", "2", "3"}));
    TakeBack({.index = 0, .before = before, .after = std::make_shared<const DataFormat>(Without(kLine, 1))});
    EXPECT_EQ(Column(0), (QStringList{"0", "1", "2", "3"}));
    EXPECT_EQ(Column(3), (QStringList{"A", "B", "C", "D"}));
    EXPECT_TRUE(view->SaveFormats());
    ExpectStored({kLine, kMixer});
}
