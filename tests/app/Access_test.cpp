// Every window and dialog as met by somebody who does not see it or has no mouse: names and roles, what is said of each
// cell, the order of Tab, a key for each command.

#include "controls/GridCtrl.h"
#include "controls/ListCtrlCl.h"
#include "controls/SlowWork.h"
#include "tests/app/FrameFixture.h"
#include "views/ProgressDialog.h"

#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QDialogButtonBox>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QToolBar>
#include <QTreeWidget>

#include <functional>
#include <map>
#include <set>

namespace {

// ---------------------------------------------------------------- names and roles

/// What holds or moves controls and is not one itself.
bool NeedsNoName(QAccessible::Role role)
{
    switch (role) {
    case QAccessible::Client:
    case QAccessible::LayeredPane:
    case QAccessible::Pane:
    case QAccessible::PopupMenu:
    case QAccessible::Splitter:
    case QAccessible::Grip:
    case QAccessible::Separator:
    case QAccessible::ScrollBar:
    case QAccessible::Whitespace:
        return true;
    default:
        return false;
    }
}

bool IsOperated(QAccessible::Role role)
{
    switch (role) {
    case QAccessible::Button:
    case QAccessible::CheckBox:
    case QAccessible::RadioButton:
    case QAccessible::ComboBox:
    case QAccessible::EditableText:
    case QAccessible::MenuItem:
    case QAccessible::Table:
    case QAccessible::Tree:
        return true;
    default:
        return false;
    }
}

std::string RoleName(QAccessible::Role role)
{
    return std::to_string(static_cast<int>(role));
}

/// Goes over what can be seen in a window and writes down what is wrong.
class CAccessWalk {
public:
    void Walk(QAccessibleInterface& node, const std::string& path)
    {
        if (node.state().invisible)
            return;
        const std::string name = node.text(QAccessible::Name).trimmed().toStdString();
        const std::string place = path + "/" + RoleName(node.role()) + " '" + name + "'";
        Look(node, name, place);
        if (node.tableInterface() != nullptr)
            WalkTable(node, place);
        else
            for (int i = 0; i < node.childCount(); ++i)
                if (QAccessibleInterface* child = node.child(i))
                    Walk(*child, place);
    }

    std::vector<std::string> faults;
    int operated = 0;

private:
    void Look(const QAccessibleInterface& node, const std::string& name, const std::string& place)
    {
        const QAccessible::Role role = node.role();
        if (role == QAccessible::NoRole)
            faults.push_back(place + " has no role");
        const bool isButtonRow = qobject_cast<QDialogButtonBox*>(node.object()) != nullptr;
        if (name.empty() && !NeedsNoName(role) && !isButtonRow)
            faults.push_back(place + " has no name");
        if (!IsOperated(role))
            return;
        ++operated;
        if (!m_operated.insert(place).second) // in another group box the same name is another place
            faults.push_back(place + " has a name that another one beside it has");
    }

    void WalkTable(QAccessibleInterface& node, const std::string& place)
    {
        QAccessibleTableInterface& table = *node.tableInterface();
        for (int row = 0; row < table.rowCount(); ++row)
            for (int column = 0; column < table.columnCount(); ++column) {
                QAccessibleInterface* cell = table.cellAt(row, column);
                const bool named = cell != nullptr && !cell->text(QAccessible::Name).isEmpty();
                if (!named)
                    faults.push_back(place + " has a cell without a name");
                else if (cell->role() == QAccessible::NoRole)
                    faults.push_back(place + " has a cell without a role");
            }
        for (int column = 0; column < table.columnCount(); ++column)
            if (table.columnDescription(column).isEmpty())
                faults.push_back(place + " has a column without a title");
    }

    std::set<std::string> m_operated;
};

void ExpectNamesAndRoles(QWidget& window)
{
    CAccessWalk walk;
    walk.Walk(*QAccessible::queryAccessibleInterface(&window), {});
    for (const std::string& fault : walk.faults)
        ADD_FAILURE() << fault;
    EXPECT_GT(walk.operated, 0) << "nothing was looked at";
}

// ---------------------------------------------------------------- the order of Tab

/// The widgets that Tab comes to, from the one with the focus on until it is there again.
std::vector<QWidget*> TabOrder(const QWidget& window)
{
    std::vector<QWidget*> order;
    for (QWidget* next = window.focusWidget(); next != nullptr && order.size() < 100; next = window.focusWidget()) {
        if (!order.empty() && next == order.front())
            break;
        order.push_back(next);
        QTest::keyClick(next, Qt::Key_Tab);
    }
    return order;
}

QRect PlaceIn(const QWidget& window, const QWidget& widget)
{
    return {widget.mapTo(&window, QPoint(0, 0)), widget.size()};
}

/// Whether the eye goes back from one to the other: not down and not to the right.
bool GoesBack(const QRect& from, const QRect& to)
{
    return to.top() < from.bottom() && to.left() < from.right();
}

void ExpectTabFollowsTheEye(const QWidget& window)
{
    const std::vector<QWidget*> order = TabOrder(window);
    ASSERT_FALSE(order.empty()) << "nothing has the focus";
    std::vector<std::string> back;
    for (std::size_t i = 0; i < order.size(); ++i) {
        const QWidget& next = *order[(i + 1) % order.size()];
        if (GoesBack(PlaceIn(window, *order[i]), PlaceIn(window, next)))
            back.push_back(order[i]->objectName().toStdString() + " -> " + next.objectName().toStdString());
    }
    EXPECT_EQ(back.size(), 1u) << testing::PrintToString(back); // from the last to the first
}

// ---------------------------------------------------------------- the windows

struct Access : FrameFixture {
    void SetUp() override
    {
        Start();
        WriteAll(folder / "a.rcp", WordBytes({5, 0x4241, 0x43, 6, 0x4241, 0, 7, 0x4241, 0, 8, 0x4241, 0}));
    }

    void Open() { frame->OpenPath(Path("a.rcp")); }

    /// Runs `open`, which brings up a dialog with that title, and looks at the dialog.
    void Look(const QString& title, const std::function<void()>& open, const CModalAnswer::Action& look)
    {
        const CModalAnswer answer({[&](QWidget& dialog) {
            look(dialog);
            dialog.close();
        }});
        open();
        EXPECT_EQ(answer.titles, std::vector<QString>{title});
    }

    static void ExpectAccess(QWidget& window)
    {
        ExpectNamesAndRoles(window);
        ExpectTabFollowsTheEye(window);
    }

    void Press(const char* button) { QTest::mouseClick(&Find<QPushButton>(button), Qt::LeftButton); }
};

TEST_F(Access, TheEmptyWindow)
{
    Find<QWidget>("editStartAddress").setFocus();
    ExpectAccess(*frame);
}

TEST_F(Access, TheWindowWithAFile)
{
    Open();
    ExpectNamesAndRoles(*frame);
}

TEST_F(Access, About)
{
    Look(
        "About Vantor", [&] { Trigger(*frame, "actionAbout"); }, ExpectAccess);
}

TEST_F(Access, TheMergeAndItsMessage)
{
    Look(
        "RecipeFile Merge Param Setting Dialog", [&] { Trigger(*frame, "actionFileMerge"); }, ExpectAccess);
    const CModalAnswer answer({CModalAnswer::PressNamed("buttonMerge"),
                               [](QWidget& box) {
                                   ExpectAccess(box);
                                   CModalAnswer::Press(QMessageBox::Ok)(box);
                               },
                               CModalAnswer::PressNamed("buttonCancel")});
    Trigger(*frame, "actionFileMerge");
    EXPECT_EQ(answer.titles.size(), 3u);
}

TEST_F(Access, ThePathOfTheMergedFile)
{
    const CModalAnswer answer({CModalAnswer::PressNamed("buttonMergedPath"),
                               [](QWidget& dialog) {
                                   ExpectAccess(dialog);
                                   CModalAnswer::PressNamed("buttonCancel")(dialog);
                               },
                               CModalAnswer::PressNamed("buttonCancel")});
    Trigger(*frame, "actionFileMerge");
    EXPECT_EQ(answer.titles.size(), 3u);
}

TEST_F(Access, ANewFormat)
{
    Look(
        "New Format Name Dialog", [&] { Press("buttonAddFormat"); }, ExpectAccess);
}

TEST_F(Access, AnItemOfEachKind)
{
    for (const int row : {0, 1}) {
        auto& list = Find<QTreeWidget>("listItems");
        list.setCurrentItem(list.topLevelItem(row));
        Look(
            "Data Type Edit Dialog", [&] { QTest::keyClick(&list, Qt::Key_Return); }, ExpectAccess);
    }
    auto& list = Find<QTreeWidget>("listItems");
    Look(
        "Data Type Edit Dialog", [&] { QTest::keyClick(&list, Qt::Key_Return); },
        [](QWidget& dialog) {
            ClickOn(dialog, "radioArray");
            ExpectAccess(dialog);
        });
}

TEST_F(Access, TheEarlierVersions)
{
    const CVersionStore store(folder / "data");
    frame->KeepIn(store.DataFolder());
    Open();
    const auto open = [this] { Trigger(*frame, "actionEarlierVersions"); };
    Look("Earlier versions", open, ExpectAccess);
    store.Keep(folder / "a.rcp", u"Save");
    Look("Earlier versions", open, [](QWidget& dialog) {
        const auto& counting = FindIn<QTimer>(dialog, "timerVersions");
        ASSERT_TRUE(WaitFor([&] { return !counting.isActive(); }));
        ExpectAccess(dialog);
        ClickOn(dialog, "buttonForget");
        ExpectAccess(dialog);
    });
    frame.reset();
}

TEST_F(Access, TheBitBrowserAndItsSquares)
{
    Open();
    ClickCell(1, 2);
    Look(
        "Bit Browser[Word]", [&] { Trigger(*frame, "actionBitBrowse"); },
        [](QWidget& dialog) {
            ExpectAccess(dialog);
            auto& list = FindIn<CListCtrlCl>(dialog, "listBits");
            auto& table = *QAccessible::queryAccessibleInterface(&list)->tableInterface();
            ASSERT_EQ(table.columnCount(), 16);
            for (int column = 0; column < 16; ++column) { // 5 is set in bits 0 and 2
                const int bit = 15 - column;
                const bool set = bit == 0 || bit == 2;
                EXPECT_EQ(table.cellAt(0, column)->text(QAccessible::Name),
                          QStringLiteral("Bit %1: %2").arg(bit).arg(set ? 1 : 0));
                EXPECT_EQ(table.cellAt(0, column)->state().checked, set);
                EXPECT_EQ(table.columnDescription(column), QStringLiteral("%1").arg(bit, 2, 10, QLatin1Char('0')));
            }
        });
}

TEST_F(Access, TheProgressOfWork)
{
    CProgressDialog reading(*frame, "Reading", std::chrono::milliseconds(0));
    ASSERT_TRUE(WaitFor([&] { return !reading.Advance(1, 2) || QApplication::activeModalWidget() != nullptr; }));
    ExpectNamesAndRoles(*QApplication::activeModalWidget());
}

TEST_F(Access, TheProgressOfWorkOnCells)
{
    CSlowWork pasting(&Grid(), "Pasting", 2, std::chrono::milliseconds(0));
    ASSERT_TRUE(WaitFor([&] { return !pasting.Step(1) || QApplication::activeModalWidget() != nullptr; }));
    ExpectNamesAndRoles(*QApplication::activeModalWidget());
}

TEST_F(Access, EachCellIsDescribedByItsColumnAndRow)
{
    Open();
    const QStringList titles{"Word", "Name"};
    auto& table = *QAccessible::queryAccessibleInterface(&Grid())->tableInterface();
    ASSERT_EQ(table.rowCount(), 4);
    ASSERT_EQ(table.columnCount(), 2);
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 2; ++column)
            EXPECT_EQ(table.cellAt(row, column)->text(QAccessible::Description),
                      QStringLiteral("%1, %2 RW%3").arg(titles[column]).arg(row + 1).arg(3 * row));
}

// ---------------------------------------------------------------- keys of commands

bool HasMnemonic(const QString& text)
{
    return !QKeySequence::mnemonic(text).isEmpty();
}

/// The commands of the menus and of the tool bar.
QList<QAction*> Commands(const QMenuBar& menus, const QToolBar& tools)
{
    QList<QAction*> commands = tools.actions();
    for (const QAction* menu : menus.actions())
        commands += menu->menu()->actions();
    commands.removeIf([](const QAction* action) { return action->isSeparator(); });
    return commands;
}

TEST_F(Access, EveryCommandHasAKey)
{
    const auto& menus = Find<QMenuBar>("menuBar");
    const auto& tools = Find<QToolBar>("toolBar");
    QSet<const QAction*> inMenus;
    for (const QAction* menu : menus.actions()) {
        EXPECT_TRUE(HasMnemonic(menu->text())) << menu->text().toStdString();
        for (const QAction* action : menu->menu()->actions())
            inMenus.insert(action);
    }
    for (const QAction* command : Commands(menus, tools)) {
        const bool byMnemonic = inMenus.contains(command) && HasMnemonic(command->text());
        const bool isPlaceholder = command->objectName() == "actionRecentFiles";
        EXPECT_TRUE(byMnemonic || !command->shortcut().isEmpty() || isPlaceholder) << command->text().toStdString();
    }
}

TEST_F(Access, NoTwoCommandsShareAKey)
{
    std::map<QString, const QAction*> keys;
    for (const QAction* command : Commands(Find<QMenuBar>("menuBar"), Find<QToolBar>("toolBar")))
        for (const QKeySequence& key : command->shortcuts()) {
            const auto [there, isNew] = keys.insert({key.toString(), command});
            EXPECT_TRUE(isNew || there->second == command) << key.toString().toStdString();
        }
}

TEST_F(Access, CtrlBOpensTheBitBrowser)
{
    Open();
    ClickCell(1, 2);
    Look(
        "Bit Browser[Word]", [&] { QTest::keyClick(&Grid(), Qt::Key_B, Qt::ControlModifier); }, [](QWidget&) {});
}

TEST_F(Access, CtrlQEndsTheProgram)
{
    QTest::keyClick(frame.get(), Qt::Key_Q, Qt::ControlModifier);
    EXPECT_FALSE(frame->isVisible());
}

TEST_F(Access, CtrlShiftSSavesUnderAnotherName)
{
    Open();
    const CModalAnswer answer({CancelDialog()});
    QTest::keyClick(frame.get(), Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(answer.titles, std::vector<QString>{"Save as"});
}

/// Their commands are those of the menu key; in the menu the arrow keys and Enter work.
TEST_F(Access, TheMenusOfTheListAndOfTheGridNameTheirCommands)
{
    for (const char* name : {"menuItems", "menuBitBrowse"}) {
        auto& menu = Find<QMenu>(name);
        menu.popup(frame->pos());
        ExpectNamesAndRoles(menu);
        menu.close();
    }
}

} // namespace
