#include "tests/views/FormatCommandsFixture.h"

#include <QContextMenuEvent>
#include <QKeyEvent>

#include <functional>
#include <optional>

TEST_F(FormatCommands, TheItemMenuHoldsItsCommands)
{
    Start();
    const QList<QAction*> actions = ItemMenu().actions();
    ASSERT_EQ(actions.size(), 14);
    const std::pair<int, QString> expected[] = {{32771, "Add DataItem"},
                                                {32772, "Modify DataItem"},
                                                {32773, "Del DataItem"},
                                                {0, ""},
                                                {32774, "Del All DataItem"}};
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(actions[i]->property("controlId").toInt(), expected[i].first);
        EXPECT_EQ(actions[i]->text(), expected[i].second);
        EXPECT_EQ(actions[i]->isSeparator(), expected[i].second.isEmpty());
    }
    EXPECT_EQ(ItemMenu().title(), "DoFormatDataItem");
    QStringList further;
    for (int i = 5; i < 14; ++i)
        further << actions[i]->text();
    EXPECT_EQ(further, (QStringList{"", "Move DataItem up", "Move DataItem down", "Duplicate DataItem", "", "Notes…",
                                    "", "Rename Dataformat…", "Duplicate Dataformat"}));
}

TEST_F(FormatCommands, ARightClickOpensTheMenuForTheRowBelowTheCursor)
{
    Start();
    RightClickRow(1);
    EXPECT_TRUE(ItemMenu().isVisible());
    for (const char* action : {"actionAddItem", "actionModifyItem", "actionDeleteItem", "actionDeleteAllItems"})
        EXPECT_TRUE(Find<QAction>(action).isEnabled()) << action;
    ItemMenu().close();
    RightClickBelowTheRows();
    EXPECT_TRUE(ItemMenu().isVisible());
    EXPECT_TRUE(Find<QAction>("actionAddItem").isEnabled());
    EXPECT_FALSE(Find<QAction>("actionModifyItem").isEnabled());
    EXPECT_FALSE(Find<QAction>("actionDeleteItem").isEnabled());
    EXPECT_TRUE(Find<QAction>("actionDeleteAllItems").isEnabled());
    ItemMenu().close();
    EXPECT_FALSE(SavesAtTheEnd());
}

TEST_F(FormatCommands, WithoutAFormatThereIsNoMenu)
{
    Start();
    DeleteAllFormats();
    RightClickBelowTheRows();
    EXPECT_FALSE(ItemMenu().isVisible());
    PressKey(Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_FALSE(ItemMenu().isVisible());
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Delete})
        PressKey(key); // and these have no row to work on
    EXPECT_EQ(List().topLevelItemCount(), 0);
}

TEST_F(FormatCommands, ARightClickBesideTheListOpensNoItemMenu)
{
    Start();
    QTest::mouseClick(view->windowHandle(), Qt::RightButton, {},
                      Find<QWidget>("groupReadAddress").mapTo(view.get(), QPoint(4, 30)));
    EXPECT_FALSE(ItemMenu().isVisible());
}

TEST_F(FormatCommands, TheKeyboardOpensTheMenuForTheCurrentRow)
{
    Start();
    List().setCurrentItem(List().topLevelItem(2));
    PressKey(Qt::Key_F10, Qt::ShiftModifier);
    ASSERT_TRUE(ItemMenu().isVisible());
    EXPECT_TRUE(Find<QAction>("actionModifyItem").isEnabled());
    const QRect row = List().visualItemRect(List().topLevelItem(2));
    EXPECT_EQ(ItemMenu().pos(), List().viewport()->mapToGlobal(row.bottomLeft()));
    ItemMenu().close();

    List().setCurrentItem(nullptr);
    QContextMenuEvent menuKey(QContextMenuEvent::Keyboard, QPoint(5, 5),
                              List().mapToGlobal(QPoint(5, 5))); // what the platform makes of the key
    QCoreApplication::sendEvent(&List(), &menuKey);
    EXPECT_TRUE(ItemMenu().isVisible());
    EXPECT_FALSE(Find<QAction>("actionModifyItem").isEnabled());
}

TEST_F(FormatCommands, ARowThatWentWithItsMenuIsNoLongerMeant)
{
    Start();
    RightClickRow(3);
    ItemMenu().close();
    Find<QAction>("actionDeleteAllItems").trigger(); // out of the menu, as a screen reader may
    const CModalAnswer answer({kCancel});
    Find<QAction>("actionModifyItem").trigger();
    Find<QAction>("actionDeleteItem").trigger();
    EXPECT_EQ(answer.titles, std::vector<QString>{});
    DataFormat empty = kLine;
    empty.clear();
    ExpectStored({empty});
}

namespace {

struct AddCase {
    const char* name;
    std::optional<int> row; ///< right-clicked, if any
    std::size_t position;
    std::u16string description; ///< as it is proposed
    friend void PrintTo(const AddCase& c, std::ostream* out) { *out << c.name; }
};

struct AddedItem : FormatCommands, testing::WithParamInterface<AddCase> {};

} // namespace

TEST_P(AddedItem, GoesAfterTheClickedRow)
{
    Start();
    if (GetParam().row)
        RightClickRow(*GetParam().row);
    else
        RightClickBelowTheRows();
    const CModalAnswer answer({kOk});
    ChooseInMenu("actionAddItem");
    EXPECT_EQ(answer.titles, std::vector<QString>{"Data Type Edit Dialog"});
    const DataFormat expected = With(kLine, GetParam().position, ProposedItem(GetParam().description));
    EXPECT_EQ(Column(0), (QStringList{"0", "1", "2", "3", "4"}));
    EXPECT_EQ(Row(static_cast<int>(GetParam().position))[3].toStdU16String(), GetParam().description);
    EXPECT_EQ(List().currentIndex().row(), static_cast<int>(GetParam().position));
    EXPECT_EQ(FormatLength(), "5");
    EXPECT_EQ(frame.calls, Calls{"show 0"});
    ExpectStored({expected});
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, AddedItem, testing::Values(
    AddCase{"FirstRow",     0,            1, u"Desc1"},
    AddCase{"RowTwo",       2,            3, u"Desc3"},
    AddCase{"LastRow",      3,            4, u"Desc4"},
    AddCase{"BelowTheRows", std::nullopt, 4, u"Desc4"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(FormatCommands, TheFirstItemOfAnEmptyFormatIsDesc0)
{
    Start();
    RightClickRow(3);
    ChooseInMenu("actionDeleteAllItems");
    RightClickBelowTheRows();
    const CModalAnswer answer({kOk});
    ChooseInMenu("actionAddItem");
    ExpectStored({MakeFormat(u"Line", {ProposedItem(u"Desc0")})});
}

TEST_F(FormatCommands, ACancelledAddAddsNothingButCountsAsAChange) // kept
{
    Start();
    RightClickRow(1);
    const CModalAnswer answer({kCancel});
    ChooseInMenu("actionAddItem");
    EXPECT_EQ(answer.titles.size(), 1U);
    EXPECT_EQ(List().topLevelItemCount(), 4);
    EXPECT_EQ(frame.calls, Calls{});
    EXPECT_TRUE(SavesAtTheEnd());
    ExpectStored({kLine});
}

TEST_F(FormatCommands, AClickedRowIsForgottenAfterTheCommand)
{
    Start();
    RightClickRow(0);
    const CModalAnswer answer({kCancel, kOk});
    ChooseInMenu("actionAddItem");
    RightClickBelowTheRows();
    ChooseInMenu("actionAddItem");
    ExpectStored({With(kLine, 4, ProposedItem(u"Desc4"))});
}

namespace {

struct ModifyCase {
    const char* name;
    std::function<void(FormatCommands&)> run; ///< for row 2
    friend void PrintTo(const ModifyCase& c, std::ostream* out) { *out << c.name; }
};

struct ModifiedItem : FormatCommands, testing::WithParamInterface<ModifyCase> {};

void ModifyByMenu(FormatCommands& pane)
{
    pane.RightClickRow(2);
    pane.ChooseInMenu("actionModifyItem");
}

void ModifyByDoubleClick(FormatCommands& pane)
{
    pane.DoubleClickRow(2);
}

void ModifyByReturn(FormatCommands& pane)
{
    pane.List().setCurrentItem(pane.List().topLevelItem(2));
    pane.PressKey(Qt::Key_Return);
}

void ModifyByEnter(FormatCommands& pane)
{
    pane.List().setCurrentItem(pane.List().topLevelItem(2));
    pane.PressKey(Qt::Key_Enter, Qt::KeypadModifier);
}

} // namespace

TEST_P(ModifiedItem, IsTheOneInTheFormat)
{
    Start();
    const CModalAnswer answer({Describe("Zone")});
    GetParam().run(*this);
    EXPECT_EQ(answer.titles, std::vector<QString>{"Data Type Edit Dialog"});
    EXPECT_EQ(Column(3), (QStringList{"A", "B", "Zone", "D"}));
    EXPECT_EQ(List().currentIndex().row(), 2);
    EXPECT_EQ(frame.calls, Calls{"show 0"});
    ExpectStored({With(Without(kLine, 2), 2, Word(u"Zone"))});
    EXPECT_TRUE(SavesAtTheEnd());
}

TEST_P(ModifiedItem, StaysAfterCancel)
{
    Start();
    const CModalAnswer answer({kCancel});
    GetParam().run(*this);
    EXPECT_EQ(answer.titles.size(), 1U);
    EXPECT_EQ(Column(3), (QStringList{"A", "B", "C", "D"}));
    EXPECT_EQ(frame.calls, Calls{});
    EXPECT_FALSE(SavesAtTheEnd());
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Ways, ModifiedItem, testing::Values(
    ModifyCase{"Menu", ModifyByMenu}, ModifyCase{"DoubleClick", ModifyByDoubleClick},
    ModifyCase{"Return", ModifyByReturn}, ModifyCase{"Enter", ModifyByEnter}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(FormatCommands, ChoosingAStringSetsTheUnicodeOfTheItemInSpiteOfCancel) // kept
{
    DataItem wide = Word(u"A");
    wide.unicode = 1;
    Start({MakeFormat(u"Wide", {wide, wide})});
    const CModalAnswer answer({[](QWidget& dialog) {
        QTest::keyClick(&FindIn<QComboBox>(dialog, "comboType"), Qt::Key_End); // String Data
        ClickOn(dialog, "buttonCancel");
    }});
    DoubleClickRow(1);
    EXPECT_EQ(answer.titles.size(), 1U);
    EXPECT_EQ(frame.calls, Calls{}) << "it is no command";
    Press("buttonUseFormat");
    ExpectStored({MakeFormat(u"Wide", {wide, Word(u"A")})});
    EXPECT_FALSE(SavesAtTheEnd());
}

TEST_F(FormatCommands, ChoosingAStringForANewItemThatIsCancelledChangesNoItem)
{
    DataItem wide = Word(u"A");
    wide.unicode = 1;
    Start({MakeFormat(u"Wide", {wide})});
    const CModalAnswer answer({[](QWidget& dialog) {
        QTest::keyClick(&FindIn<QComboBox>(dialog, "comboType"), Qt::Key_End); // String Data
        ClickOn(dialog, "buttonCancel");
    }});
    RightClickRow(0);
    ChooseInMenu("actionAddItem");
    Press("buttonUseFormat");
    ExpectStored({MakeFormat(u"Wide", {wide})});
}

TEST_F(FormatCommands, AModifiedLengthReachesTheFormatLength)
{
    Start();
    const CModalAnswer answer({[](QWidget& dialog) {
        QTest::keyClick(&FindIn<QComboBox>(dialog, "comboType"), Qt::Key_Down); // to 32 bit
        ClickOn(dialog, "buttonOk");
    }});
    DoubleClickRow(0);
    EXPECT_EQ(Row(0), (QStringList{"0", "2", "32 bit signed number", "A"}));
    EXPECT_EQ(FormatLength(), "5");
}

TEST_F(FormatCommands, ARefusedItemIsReportedAndCanBePutRight)
{
    Start();
    const CModalAnswer answer({[](QWidget& dialog) {
                                   auto& array = FindIn<QAbstractButton>(dialog, "radioArray");
                                   QTest::mouseClick(&array, Qt::LeftButton, {}, QPoint(8, array.height() / 2));
                                   TypeInto(dialog, "editArrayLength", "1");
                                   ClickOn(dialog, "buttonOk");
                               },
                               [](QWidget& dialog) {
                                   TypeInto(dialog, "editArrayLength", "6");
                                   ClickOn(dialog, "buttonOk");
                               }});
    DoubleClickRow(0);
    EXPECT_EQ(frame.reporter.shown, Shown{u"The length of array can't be less than 2!"});
    EXPECT_EQ(FormatLength(), "9");
    EXPECT_EQ(Row(0)[1], "1"); // the length of one element
    EXPECT_TRUE(List().topLevelItem(0)->toolTip(1).contains("Array of 6"));
}

TEST_F(FormatCommands, ADeletedItemLeavesTheNumbersOfTheOthers) // kept
{
    Start();
    RightClickRow(1);
    ChooseInMenu("actionDeleteItem");
    EXPECT_EQ(Column(0), (QStringList{"0", "2", "3"}));
    EXPECT_EQ(Column(3), (QStringList{"A", "C", "D"}));
    EXPECT_EQ(FormatLength(), "3");
    EXPECT_EQ(frame.calls, Calls{"show 0"});
    ExpectStored({Without(kLine, 1)});
    RightClickRow(1); // the row shows 2, but it is the second
    ChooseInMenu("actionDeleteItem");
    EXPECT_EQ(Column(0), (QStringList{"0", "3"}));
    ExpectStored({Without(Without(kLine, 1), 1)});
}

TEST_F(FormatCommands, TheDeleteKeyDeletesTheCurrentRowAndNothingWithoutOne)
{
    Start();
    List().setCurrentItem(List().topLevelItem(3));
    PressKey(Qt::Key_Delete);
    ExpectStored({Without(kLine, 3)});
    PressKey(Qt::Key_Delete, Qt::ShiftModifier);
    EXPECT_EQ(List().topLevelItemCount(), 3);
    QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Delete, Qt::NoModifier, QString(), true);
    QCoreApplication::sendEvent(&List(), &repeated); // a key held down
    EXPECT_EQ(List().topLevelItemCount(), 3);
    for (int rows = 3; rows > 0; --rows)
        PressKey(Qt::Key_Delete); // the neighbour becomes the current row
    EXPECT_EQ(List().topLevelItemCount(), 0);
    PressKey(Qt::Key_Delete);
    ExpectStored({MakeFormat(u"Line", {})});
}

TEST_F(FormatCommands, TheInsertKeyAddsAnItemAfterTheCurrentRowOrAtTheEnd)
{
    Start();
    List().setCurrentItem(List().topLevelItem(1));
    const CModalAnswer answer({kOk});
    PressKey(Qt::Key_Insert);
    const DataFormat expected = With(kLine, 2, ProposedItem(u"Desc2"));
    ExpectStored({expected});
    List().setCurrentItem(nullptr);
    PressKey(Qt::Key_Insert);
    ExpectStored({With(expected, 5, ProposedItem(u"Desc5"))});
    EXPECT_EQ(answer.titles, (std::vector<QString>{"Data Type Edit Dialog", "Data Type Edit Dialog"}));
}

TEST_F(FormatCommands, TheInsertKeyDoesNothingWithoutAFormat)
{
    Start();
    DeleteAllFormats();
    const CModalAnswer answer({kCancel});
    PressKey(Qt::Key_Insert);
    EXPECT_EQ(answer.titles, std::vector<QString>{});
}

TEST_F(FormatCommands, TheRowThatTheKeyboardComesToIsSelected)
{
    Start();
    Find<QWidget>("buttonDeleteFormat").setFocus();
    QTest::keyClick(&Find<QWidget>("buttonDeleteFormat"), Qt::Key_Tab);
    ASSERT_TRUE(List().hasFocus());
    EXPECT_TRUE(List().topLevelItem(0)->isSelected()); // so one sees what Delete takes
    QTest::keyClick(&List(), Qt::Key_Delete);
    ExpectStored({Without(kLine, 0)});
}

TEST_F(FormatCommands, DeletingAllItemsAsksNothing)
{
    Start();
    RightClickBelowTheRows();
    ChooseInMenu("actionDeleteAllItems");
    EXPECT_EQ(List().topLevelItemCount(), 0);
    EXPECT_EQ(FormatLength(), "0");
    EXPECT_EQ(frame.calls, Calls{"show 0"});
    EXPECT_EQ(frame.reporter.asked, Shown{});
    ExpectStored({MakeFormat(u"Line", {})});
}

TEST_F(FormatCommands, TheShownDefaultItemOfAnEmptyFormatIsNotCounted) // kept
{
    Start({MakeFormat(u"Empty", {})});
    List().setCurrentItem(List().topLevelItem(0));
    PressKey(Qt::Key_Delete);
    EXPECT_EQ(List().topLevelItemCount(), 0);
    ExpectStored({MakeFormat(u"Empty", {})});
    RightClickBelowTheRows();
    const CModalAnswer answer({kOk});
    ChooseInMenu("actionAddItem");
    EXPECT_EQ(frame.Document().Settings().format.itemCount, 0); // -1 after the deletion
    ExpectStored({MakeFormat(u"Empty", {})});
}

TEST_F(FormatCommands, ATipTellsWhatARowHasNoRoomFor)
{
    Start(
        {MakeFormat(u"Tips", {ArrayOf(MakeItem(u"<b>Zone</b> & more", DataType::Unsigned32, 2, 5), 40), Word(u"A")})});
    for (int column = 0; column < 4; ++column)
        EXPECT_EQ(List().topLevelItem(0)->toolTip(column),
                  "&lt;b&gt;Zone&lt;/b&gt; &amp; more<br>32 bit unsigned numebr<br>Array of 40");
    EXPECT_EQ(List().topLevelItem(1)->toolTip(3), "A<br>16 bit signed number");
    EXPECT_EQ(List().topLevelItem(0)->data(3, Qt::AccessibleDescriptionRole),
              "<b>Zone</b> & more\n32 bit unsigned numebr\nArray of 40");
}

TEST_F(FormatCommands, ALongListIsShownToItsEnd)
{
    DataFormat format(u"Long");
    for (int i = 0; i < 10'000; ++i)
        format.insertItem(format.items.size(), std::make_unique<DataItem>(Word(u"W")));
    format.itemCount = 10'000;
    Start({format});
    EXPECT_EQ(List().topLevelItemCount(), 10'000);
    EXPECT_EQ(FormatLength(), "10000");
    List().setCurrentItem(List().topLevelItem(9'999));
    const CModalAnswer answer({Describe("Last")});
    PressKey(Qt::Key_Return);
    EXPECT_EQ(Row(9'999)[3], "Last");
    EXPECT_TRUE(List().viewport()->rect().intersects(List().visualItemRect(List().topLevelItem(9'999))));
}
