#include "tests/views/FormatCommandsFixture.h"

#include <QContextMenuEvent>

namespace {

struct MoreFormatCommands : FormatCommands {
    QString Current() const { return List().currentItem() ? List().currentItem()->text(3) : QString(); }

    void GoTo(int row) { List().setCurrentItem(List().topLevelItem(row)); }

    void ExpectOneEdit(std::u16string_view name)
    {
        ASSERT_TRUE(frame.document.UndoName().has_value());
        EXPECT_EQ(frame.document.UndoName(), name);
        frame.document.Undo();
        EXPECT_EQ(frame.document.UndoName(), std::nullopt);
    }

    /// Answers the dialog of another name, which begins with `name`.
    static CModalAnswer::Action Rename(const QString& name, const QString& other)
    {
        return [name, other](QWidget& dialog) {
            EXPECT_EQ(TextIn(dialog, "editName"), name.toStdString());
            QTest::keyClicks(dialog.focusWidget(), other); // takes the place of all of it
            QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
        };
    }

    /// Opens the menu of the box of formats and clicks a command.
    void ChooseInFormatMenu(const char* action)
    {
        QTimer::singleShot(0, &Formats(), [this, action] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            ASSERT_NE(menu, nullptr);
            QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(&Find<QAction>(action)).center());
        });
        QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5), Formats().mapToGlobal(QPoint(5, 5)));
        QCoreApplication::sendEvent(&Formats(), &event);
    }
};

const DataFormat kMoved = MakeFormat(u"Line", {Word(u"B"), Word(u"A"), Word(u"C"), Word(u"D")});

} // namespace

TEST_F(MoreFormatCommands, AltAndTheArrowsMoveTheItemAndStayOnIt)
{
    Start();
    GoTo(1);
    PressKey(Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(Column(3), (QStringList{"B", "A", "C", "D"}));
    EXPECT_EQ(Column(0), (QStringList{"0", "1", "2", "3"}));
    EXPECT_EQ(Current(), "B");
    EXPECT_EQ(frame.calls, Calls{"show 0"});
    ExpectStored({kMoved});
    for (int i = 0; i < 3; ++i)
        PressKey(Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(Column(3), (QStringList{"A", "C", "D", "B"}));
    EXPECT_EQ(Current(), "B");
}

TEST_F(MoreFormatCommands, AtTheEndsNothingMoves)
{
    Start();
    GoTo(0);
    PressKey(Qt::Key_Up, Qt::AltModifier);
    GoTo(3);
    PressKey(Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(Column(3), (QStringList{"A", "B", "C", "D"}));
    EXPECT_EQ(frame.calls, Calls{});
    EXPECT_EQ(frame.document.UndoName(), std::nullopt);
    EXPECT_FALSE(SavesAtTheEnd());
}

TEST_F(MoreFormatCommands, TheMenuMovesTheClickedRow)
{
    Start();
    GoTo(3);
    RightClickRow(0);
    EXPECT_FALSE(Find<QAction>("actionMoveItemUp").isEnabled());
    ChooseInMenu("actionMoveItemDown");
    ExpectStored({kMoved});
    RightClickRow(3);
    EXPECT_FALSE(Find<QAction>("actionMoveItemDown").isEnabled());
    EXPECT_TRUE(Find<QAction>("actionMoveItemUp").isEnabled());
    ItemMenu().close();
    RightClickBelowTheRows();
    for (const char* action : {"actionMoveItemUp", "actionMoveItemDown", "actionDuplicateItem"})
        EXPECT_FALSE(Find<QAction>(action).isEnabled()) << action;
    EXPECT_TRUE(Find<QAction>("actionRenameFormat").isEnabled());
}

TEST_F(MoreFormatCommands, AMoveIsOneEdit)
{
    Start();
    GoTo(1);
    PressKey(Qt::Key_Up, Qt::AltModifier);
    ExpectOneEdit(u"Move DataItem");
    view->FormatChanged(0);
    EXPECT_EQ(Column(3), (QStringList{"A", "B", "C", "D"}));
}

TEST_F(MoreFormatCommands, WithoutAutoUseAMoveIsStoredOnlyWithTheNextUse)
{
    Start();
    SetAutoUse(false);
    GoTo(1);
    PressKey(Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(frame.calls, Calls{});
    EXPECT_EQ(Column(3), (QStringList{"B", "A", "C", "D"}));
    ExpectStored({kLine});
    Press("buttonUseFormat");
    ExpectStored({kMoved});
}

TEST_F(MoreFormatCommands, ADuplicateItemFollowsTheItem)
{
    Start();
    RightClickRow(1);
    ChooseInMenu("actionDuplicateItem");
    EXPECT_EQ(Column(3), (QStringList{"A", "B", "B", "C", "D"}));
    EXPECT_EQ(List().currentIndex().row(), 2);
    EXPECT_EQ(FormatLength(), "5");
    EXPECT_EQ(frame.calls, Calls{"show 0"});
    ExpectStored({With(kLine, 2, Word(u"B"))});
    ExpectOneEdit(u"Duplicate DataItem");
}

TEST_F(MoreFormatCommands, ADuplicateFormatComesLastUnderAFreeNameAndIsSelected)
{
    Start({kLine, kMixer});
    ChooseInFormatMenu("actionDuplicateFormat");
    ASSERT_EQ(Formats().count(), 3);
    EXPECT_EQ(Formats().currentText(), "Line (2)");
    EXPECT_EQ(Column(3), (QStringList{"A", "B", "C", "D"}));
    EXPECT_EQ(frame.calls, Calls{"show 0"});
    EXPECT_EQ(TextOf(frame.Document().Settings().format.name), u"Line (2)");
    DataFormat copy = kLine;
    SetText(copy.name, u"Line (2)");
    ExpectStored({kLine, kMixer, copy});
    ExpectOneEdit(u"Duplicate Dataformat");
}

TEST_F(MoreFormatCommands, ARenamedFormatKeepsItsPlaceItsItemsAndTheCurrentRow)
{
    Start({kLine, kMixer});
    GoTo(2);
    const CModalAnswer answer({Rename("Line", " Oven ")});
    ChooseInFormatMenu("actionRenameFormat");
    EXPECT_EQ(answer.titles, std::vector<QString>{"Rename Dataformat"});
    EXPECT_EQ(Formats().currentIndex(), 0);
    EXPECT_EQ(Formats().itemText(0), "Oven");
    EXPECT_EQ(Current(), "C");
    EXPECT_EQ(frame.calls, Calls{"show 0"});
    EXPECT_EQ(TextOf(frame.Document().Settings().format.name), u"Oven");
    DataFormat renamed = kLine;
    SetText(renamed.name, u"Oven");
    ExpectStored({renamed, kMixer});
    ExpectOneEdit(u"Rename Dataformat");
}

TEST_F(MoreFormatCommands, F2RenamesTheFormatInTheBox)
{
    Start();
    Formats().setFocus();
    const CModalAnswer answer({Rename("Line", "Oven")});
    QTest::keyClick(&Formats(), Qt::Key_F2);
    EXPECT_EQ(Formats().currentText(), "Oven");
}

TEST_F(MoreFormatCommands, TheItemMenuRenamesTheFormat)
{
    Start();
    RightClickBelowTheRows();
    const CModalAnswer answer({Rename("Line", "Oven")});
    ChooseInMenu("actionRenameFormat");
    EXPECT_EQ(Formats().currentText(), "Oven");
}

TEST_F(MoreFormatCommands, TheNameOfAnotherFormatMayBeTaken)
{
    Start({kLine, kMixer});
    const CModalAnswer answer({Rename("Line", "Mixer")});
    ChooseInFormatMenu("actionRenameFormat");
    EXPECT_EQ(frame.reporter.shown, Shown{});
    EXPECT_EQ(Formats().itemText(0), "Mixer");
    EXPECT_EQ(Formats().itemText(1), "Mixer");
}

TEST_F(MoreFormatCommands, ARefusedNameIsReportedAndTheDialogStays)
{
    Start();
    const CModalAnswer answer({Rename("Line", "a.b"), kCancel});
    ChooseInFormatMenu("actionRenameFormat");
    EXPECT_EQ(frame.reporter.shown, Shown{u"The File name Error!"});
    EXPECT_EQ(Formats().currentText(), "Line");
}

TEST_F(MoreFormatCommands, TheSameNameOrACancelledDialogIsNoCommand)
{
    Start();
    for (const CModalAnswer::Action& action : {kOk, kCancel}) {
        const CModalAnswer answer({action});
        ChooseInFormatMenu("actionRenameFormat");
        EXPECT_EQ(answer.titles.size(), 1u);
    }
    EXPECT_EQ(frame.calls, Calls{});
    EXPECT_EQ(frame.document.UndoName(), std::nullopt);
    EXPECT_FALSE(SavesAtTheEnd());
}

TEST_F(MoreFormatCommands, WithoutAFormatThereIsNothingToRenameOrDuplicate)
{
    Start();
    DeleteAllFormats();
    EXPECT_FALSE(Find<QAction>("actionRenameFormat").isEnabled());
    EXPECT_FALSE(Find<QAction>("actionDuplicateFormat").isEnabled());
}
