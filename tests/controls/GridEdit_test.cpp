// In-place editing: what opens an editor, and what may happen while it is open.

#include "controls/GridModel.h"
#include "tests/controls/GridTestBed.h"
#include "tests/support/GuiTest.h"

#include <QApplication>
#include <QInputMethodEvent>
#include <QLayout>
#include <QMenu>
#include <QMenuBar>
#include <QScrollBar>
#include <QShortcut>
#include <QTest>

namespace {

struct GridEdit : CGridTestBed {};

struct OpeningCase {
    const char* name;
    void (*open)(QWidget& focus, QWidget& viewport, const QPoint& cell);
    const char* text; ///< in the editor
    friend void PrintTo(const OpeningCase& c, std::ostream* out) { *out << c.name; }
};

struct GridEditOpening : CGridTestBed, testing::WithParamInterface<OpeningCase> {};

TEST_P(GridEditOpening, OpensTheEditorOverTheFocusCell)
{
    Fill(6, 6);
    Click(2, 3);
    GetParam().open(*window.focusWidget(), *grid->viewport(), Center(2, 3));
    ASSERT_NE(Editor(), nullptr);
    EXPECT_EQ(Editor()->text(), QString(GetParam().text));
    EXPECT_EQ(QApplication::focusWidget(), Editor());
    EXPECT_TRUE(Editor()->geometry().contains(Center(2, 3)));
    EXPECT_EQ(Editor()->property("controlId").toInt(), 8);
    EXPECT_EQ(Editor()->accessibleName(), QString("0,3, 2,0 2,1"));
}

void PressKey(QWidget& focus, Qt::Key key)
{
    QTest::keyClick(&focus, key);
}

void PressCharacter(QWidget& focus, char character)
{
    QTest::keyClick(&focus, character);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, GridEditOpening, testing::Values(
    OpeningCase{"F2",         [](QWidget& focus, QWidget&, const QPoint&) { PressKey(focus, Qt::Key_F2); },     "2,3"},
    OpeningCase{"Return",     [](QWidget& focus, QWidget&, const QPoint&) { PressKey(focus, Qt::Key_Return); }, "2,3"},
    OpeningCase{"Enter",      [](QWidget& focus, QWidget&, const QPoint&) { PressKey(focus, Qt::Key_Enter); },  "2,3"},
    OpeningCase{"ACharacter", [](QWidget& focus, QWidget&, const QPoint&) { PressCharacter(focus, '7'); },      "7"  },
    OpeningCase{"Minus",      [](QWidget& focus, QWidget&, const QPoint&) { PressCharacter(focus, '-'); },      "-"  },
    OpeningCase{"Space",      [](QWidget& focus, QWidget&, const QPoint&) { PressCharacter(focus, ' '); },      " "  },
    OpeningCase{"DoubleClick",[](QWidget&, QWidget& viewport, const QPoint& cell) {
        QTest::mouseDClick(&viewport, Qt::LeftButton, {}, cell); },                                             "2,3"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(GridEdit, AnInputMethodsTextStartsAnEdit)
{
    Fill(6, 6);
    Click(2, 3);
    QInputMethodEvent commit;
    commit.setCommitString(QString::fromUtf16(u"配方"));
    QApplication::sendEvent(grid, &commit);
    ASSERT_NE(Editor(), nullptr);
    EXPECT_EQ(Editor()->text(), QString::fromUtf16(u"配方"));
}

TEST_F(GridEdit, DoesNotOpenWhereNothingCanBeEdited)
{
    Fill(6, 6);
    EXPECT_FALSE(grid->StartEdit()); // no focus cell
    Click(2, 3);
    Press(Qt::Key_X, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(Editor(), nullptr);
    grid->SetItem({.row = 2, .column = 3, .mask = GridItem::State, .state = CGridCellBase::ReadOnly});
    Type("7");
    EXPECT_EQ(Editor(), nullptr);
    Click(3, 3);
    grid->SetEditable(false);
    Press(Qt::Key_F2);
    QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {}, Center(3, 3));
    EXPECT_EQ(Editor(), nullptr);
    EXPECT_EQ(TextAt(2, 3), "2,3");
}

TEST_F(GridEdit, ShiftAndCtrlArrowsStayInTheText)
{
    Fill(6, 6);
    Edit(2, 3, "77");
    Press(Qt::Key_Left, Qt::ShiftModifier);
    Press(Qt::Key_Home, Qt::ShiftModifier);
    ASSERT_NE(Editor(), nullptr);
    EXPECT_EQ(Editor()->selectedText(), QString("77"));
    Press(Qt::Key_Left, Qt::ControlModifier);
    EXPECT_NE(Editor(), nullptr);
    EXPECT_EQ(Focus(), "2,3");
}

TEST_F(GridEdit, AcceleratorsWorkWhileEditing)
{
    Fill(6, 6);
    int saved = 0;
    QShortcut save(QKeySequence(Qt::CTRL | Qt::Key_S), &window, [&saved] { ++saved; });
    Edit(2, 3, "77");
    QTest::keyClick(Editor(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(saved, 1);
    EXPECT_NE(Editor(), nullptr);
}

TEST_F(GridEdit, AnEndingKeyGoesBeforeAnAccelerator)
{
    Fill(6, 6);
    int fired = 0;
    QShortcut down(QKeySequence(Qt::Key_Escape), &window, [&fired] { ++fired; });
    Edit(2, 3, "77");
    QTest::keyClick(Editor(), Qt::Key_Escape);
    EXPECT_EQ(fired, 0);
    EXPECT_EQ(Editor(), nullptr);
}

struct HistoryKey {
    const char* name;
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    friend void PrintTo(const HistoryKey& c, std::ostream* out) { *out << c.name; }
};

/// A window whose accelerators take the keys of Undo and Redo.
struct GridEditHistory : CGridTestBed, testing::WithParamInterface<HistoryKey> {
    void SetUp() override
    {
        CGridTestBed::SetUp();
        Fill(6, 6);
        const QKeySequence keys(QKeyCombination(GetParam().modifiers, GetParam().key));
        shortcut = new QShortcut(keys, &window, [this] { ++fired; });
        Edit(2, 3, "77");
    }

    /// The key leads to `text` and, with nothing left to take back or bring again, no farther; nobody else gets it.
    void ExpectAtMost(const QString& text)
    {
        for (int i = 0; i < 2; ++i) {
            QTest::keyClick(Editor(), GetParam().key, GetParam().modifiers);
            ASSERT_NE(Editor(), nullptr);
            EXPECT_EQ(Editor()->text(), text);
        }
        EXPECT_EQ(fired, 0);
        EXPECT_EQ(log, Lines{});
    }

    QShortcut* shortcut = nullptr;
    int fired = 0;
};

struct GridEditUndo : GridEditHistory {};

TEST_P(GridEditUndo, TakesTypingBackAndGoesNoFarther)
{
    ExpectAtMost("2,3");
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, GridEditUndo, testing::Values(
    HistoryKey{"CtrlZ",        Qt::Key_Z,         Qt::ControlModifier},
    HistoryKey{"AltBackspace", Qt::Key_Backspace, Qt::AltModifier    }),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

struct GridEditRedo : GridEditHistory {};

TEST_P(GridEditRedo, BringsTypingAgainAndGoesNoFarther)
{
    Editor()->undo();
    ASSERT_EQ(Editor()->text(), QString("2,3"));
    ExpectAtMost("77");
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, GridEditRedo, testing::Values(
    HistoryKey{"CtrlY",             Qt::Key_Y,         Qt::ControlModifier                    },
    HistoryKey{"CtrlShiftZ",        Qt::Key_Z,         Qt::ControlModifier | Qt::ShiftModifier},
    HistoryKey{"AltShiftBackspace", Qt::Key_Backspace, Qt::AltModifier | Qt::ShiftModifier    }),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(GridEdit, AMenuOpenedByAClickDoesNotEndTheEdit)
{
    Fill(6, 6);
    auto* bar = new QMenuBar(&window);
    window.layout()->setMenuBar(bar);
    QMenu* menu = bar->addMenu("Edit");
    menu->addAction("Undo");
    Edit(2, 3, "77");
    QTest::mouseClick(bar, Qt::LeftButton, {}, bar->actionGeometry(menu->menuAction()).center());
    ASSERT_TRUE(menu->isVisible());
    EXPECT_NE(Editor(), nullptr);
    QTest::keyClick(menu, Qt::Key_Escape);
    EXPECT_FALSE(menu->isVisible());
    ASSERT_NE(Editor(), nullptr);
    EXPECT_EQ(Editor()->text(), QString("77"));
    EXPECT_EQ(window.focusWidget(), Editor());
    EXPECT_EQ(log, Lines{});
}

TEST_F(GridEdit, AMenuOpenedByItsKeyDoesNotEndTheEditUntilTheFocusGoesElsewhere)
{
    Fill(6, 6);
    auto* bar = new QMenuBar(&window);
    window.layout()->setMenuBar(bar);
    QMenu* menu = bar->addMenu("&Edit");
    menu->addAction("Undo");
    bar->show();
    Edit(2, 3, "77");
    Press(Qt::Key_E, Qt::AltModifier);
    ASSERT_TRUE(menu->isVisible());
    ASSERT_NE(Editor(), nullptr);
    QTest::keyClick(menu, Qt::Key_Escape);
    ASSERT_EQ(window.focusWidget(), bar); // as on every desktop
    Press(Qt::Key_Escape);
    EXPECT_EQ(window.focusWidget(), Editor());
    EXPECT_EQ(log, Lines{});
    Press(Qt::Key_E, Qt::AltModifier);
    QTest::keyClick(menu, Qt::Key_Escape);
    QTest::mouseClick(field, Qt::LeftButton);
    EXPECT_EQ(Editor(), nullptr);
    EXPECT_EQ(TextAt(2, 3), "77");
    EXPECT_EQ(window.focusWidget(), field);
    EXPECT_EQ(log, (Lines{"edited 2,3", "-176 of 8 at 2,3"}));
}

TEST_F(GridEdit, APopupDoesNotEndTheEdit)
{
    Fill(6, 6);
    Edit(2, 3, "77");
    QFocusEvent out(QEvent::FocusOut, Qt::PopupFocusReason);
    QApplication::sendEvent(Editor(), &out);
    EXPECT_NE(Editor(), nullptr);
}

TEST_F(GridEdit, ARightClickInTheEditorDoesNothing)
{
    Fill(6, 6);
    Edit(2, 3, "77");
    QTest::mouseClick(Editor(), Qt::RightButton);
    QContextMenuEvent ask(QContextMenuEvent::Mouse, QPoint(3, 3), Editor()->mapToGlobal(QPoint(3, 3)));
    QApplication::sendEvent(Editor(), &ask);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    EXPECT_EQ(log, Lines{});
    EXPECT_NE(Editor(), nullptr);
}

TEST_F(GridEdit, AnyResetDropsAnOpenEdit)
{
    const std::vector<std::function<void()>> resets{
        [this] { grid->DeleteAllItems(); },       [this] { grid->SetRowCount(3); },
        [this] { grid->SetColumnCount(4); },      [this] { grid->SetFixedRowCount(2); },
        [this] { grid->SetFixedColumnCount(1); }, [this] { grid->SetEditable(false); },
    };
    for (const auto& reset : resets) {
        grid->SetEditable(true);
        Fill(6, 6);
        Edit(2, 3, "bad");
        reset();
        EXPECT_EQ(Editor(), nullptr);
        EXPECT_EQ(log, Lines{});
        EXPECT_TRUE(grid->EndEdit());
    }
}

TEST_F(GridEdit, ARefusedCountLeavesAnOpenEdit)
{
    Fill(6, 6);
    Edit(2, 3, "77");
    EXPECT_FALSE(grid->SetRowCount(-1));
    EXPECT_FALSE(grid->SetColumnCount(-1));
    EXPECT_FALSE(grid->SetFixedRowCount(7));
    EXPECT_FALSE(grid->SetFixedColumnCount(-1));
    ASSERT_NE(Editor(), nullptr);
    EXPECT_EQ(Editor()->text(), QString("77"));
}

TEST_F(GridEdit, AResetWhileTheMessageIsShownLeavesTheNewTexts)
{
    Fill(6, 6);
    grid->SetReporter([this](const QString&, const QString&) {
        Fill(6, 6);
        grid->SetItemText(2, 3, "fresh");
    });
    Edit(2, 3, "bad");
    Press(Qt::Key_Down);
    EXPECT_EQ(TextAt(2, 3), "fresh");
    EXPECT_EQ(Editor(), nullptr);
    EXPECT_EQ(log, Lines{});
}

TEST_F(GridEdit, TheEndOfTheGridDropsAnOpenEdit)
{
    Fill(6, 6);
    Edit(2, 3, "bad");
    delete grid;
    EXPECT_EQ(log, Lines{});
}

TEST_F(GridEdit, TheEditorFollowsItsCellWhenTheGridScrolls)
{
    Fill(200, 6);
    Edit(4, 3, "7");
    const int top = Editor()->y();
    grid->verticalScrollBar()->setValue(2);
    EXPECT_EQ(Editor()->y(), top - 2 * 26);
    grid->verticalScrollBar()->setValue(150);
    EXPECT_FALSE(grid->viewport()->rect().intersects(Editor()->geometry()));
    QTest::keyClicks(Editor(), "8"); // typing brings the cell back
    EXPECT_TRUE(grid->viewport()->rect().contains(Editor()->geometry()));
    Press(Qt::Key_Return);
    EXPECT_EQ(TextAt(4, 3), "78");
}

TEST_F(GridEdit, ALongTextIsNotCut)
{
    Fill(4, 4);
    const QString text(100000, u'x');
    grid->SetItemText(1, 2, text);
    grid->SetFocusCell(1, 2);
    Press(Qt::Key_F2);
    Press(Qt::Key_Return);
    EXPECT_EQ(grid->GetItemText(1, 2), text);
    EXPECT_EQ(log.front(), "-100 of 102800 at 1,2");
    EXPECT_EQ(log.back(), "-176 of 8 at 1,2");
    EXPECT_EQ(log.size(), 2u); // and no edit
}

} // namespace
