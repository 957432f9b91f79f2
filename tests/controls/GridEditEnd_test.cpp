// In-place editing: each way to end an edit, and what becomes of an accepted, an unchanged and a refused text.

#include "controls/GridModel.h"
#include "tests/controls/GridTestBed.h"
#include "tests/support/GuiTest.h"
#include "tests/support/ModalAnswer.h"

#include <QPushButton>
#include <QTest>

#include <algorithm>

namespace {

struct GridEditEnd : CGridTestBed {};

struct EndingCase {
    const char* name;
    Qt::Key key;
    const char* focus; ///< afterwards, when the edit was at 12,4 of a grid of 40 rows and 8 columns
    bool edits;        ///< goes on editing there
    friend void PrintTo(const EndingCase& c, std::ostream* out) { *out << c.name; }
};

constexpr const char* kAPageAway = "a page away"; // how far that is depends on what fits into the window

struct GridEditEndingKey : CGridTestBed, testing::WithParamInterface<EndingCase> {
    void SetUp() override
    {
        CGridTestBed::SetUp();
        Fill(40, 8);
        focusAfter = GetParam().focus == std::string(kAPageAway) ? FocusWithoutEdit() : GetParam().focus;
    }

    std::string FocusWithoutEdit()
    {
        grid->SetFocusCell(12, 4);
        Press(GetParam().key);
        EXPECT_NE(Focus(), "12,4");
        return Focus();
    }

    void ExpectEnd(const Lines& start)
    {
        Lines expected = start;
        expected.push_back("-176 of 8 at 12,4");
        if (GetParam().edits)
            expected.push_back("-100 of 102800 at " + focusAfter);
        EXPECT_EQ(log, expected);
        EXPECT_EQ(Focus(), focusAfter);
        ASSERT_EQ(Editor() != nullptr, GetParam().edits);
        EXPECT_EQ(Editor() != nullptr ? Editor()->text().toStdString() : focusAfter, focusAfter);
        EXPECT_EQ(window.focusWidget(), GetParam().edits ? static_cast<QWidget*>(Editor()) : grid);
    }

    std::string focusAfter;
};

TEST_P(GridEditEndingKey, TakesAnAcceptedText)
{
    Edit(12, 4, "77");
    Press(GetParam().key);
    ExpectEnd({"edited 12,4"});
    EXPECT_EQ(TextAt(12, 4), "77");
}

TEST_P(GridEditEndingKey, TakesAnUnchangedTextWithoutAnEdit)
{
    Edit(12, 4, "12,4");
    Press(GetParam().key);
    ExpectEnd({});
    EXPECT_EQ(TextAt(12, 4), "12,4");
}

TEST_P(GridEditEndingKey, RefusesWithOneMessageAndKeepsTheText)
{
    Edit(12, 4, "bad");
    Press(GetParam().key);
    ExpectEnd({"reported Col 12,Row 4 data error !"}); // kept: the row comes first
    EXPECT_EQ(TextAt(12, 4), "12,4");
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, GridEditEndingKey, testing::Values(
    //         name        key                focus       edits
    EndingCase{"Return",   Qt::Key_Return,    "12,4",     false},
    EndingCase{"Enter",    Qt::Key_Enter,     "12,4",     false},
    EndingCase{"Tab",      Qt::Key_Tab,       "12,5",     true },
    EndingCase{"Backtab",  Qt::Key_Backtab,   "12,3",     true },
    EndingCase{"PageUp",   Qt::Key_PageUp,    kAPageAway, true },
    EndingCase{"PageDown", Qt::Key_PageDown,  kAPageAway, true },
    EndingCase{"End",      Qt::Key_End,       "12,7",     true },
    EndingCase{"Home",     Qt::Key_Home,      "12,2",     true },
    EndingCase{"Left",     Qt::Key_Left,      "12,3",     true },
    EndingCase{"Up",       Qt::Key_Up,        "11,4",     true },
    EndingCase{"Right",    Qt::Key_Right,     "12,5",     true },
    EndingCase{"Down",     Qt::Key_Down,      "13,4",     true }),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

struct GestureCase {
    const char* name;
    void (*end)(QWidget& window, CGridCtrl& grid);
    const char* after; ///< what is told after the end of the edit at 2,3; empty when nothing is
    friend void PrintTo(const GestureCase& c, std::ostream* out) { *out << c.name; }
};

/// Ends that come from somewhere other than the editor's keys: the focus cell stays where it is, unless another is
/// chosen.
struct GridEditEndingGesture : CGridTestBed, testing::WithParamInterface<GestureCase> {
    void EditAndEnd(const char* text)
    {
        Fill(6, 6);
        Edit(2, 3, text);
        GetParam().end(window, *grid);
        EXPECT_EQ(Editor(), nullptr);
    }

    Lines Told(Lines lines) const
    {
        lines.push_back("-176 of 8 at 2,3");
        if (GetParam().after[0] != '\0')
            lines.push_back(GetParam().after);
        return lines;
    }
};

TEST_P(GridEditEndingGesture, TakesAnAcceptedText)
{
    EditAndEnd("77");
    EXPECT_EQ(log, Told({"edited 2,3"}));
    EXPECT_EQ(TextAt(2, 3), "77");
}

TEST_P(GridEditEndingGesture, TakesAnUnchangedTextWithoutAnEdit)
{
    EditAndEnd("2,3");
    EXPECT_EQ(log, Told({}));
    EXPECT_EQ(TextAt(2, 3), "2,3");
}

TEST_P(GridEditEndingGesture, RefusesWithOneMessageAndKeepsTheText)
{
    EditAndEnd("bad");
    const Lines refused{"reported Col 2,Row 3 data error !", "-176 of 8 at 2,3"};
    EXPECT_EQ(Lines(log.begin(), log.begin() + std::min<std::ptrdiff_t>(2, std::ssize(log))), refused);
    EXPECT_EQ(std::count(log.begin(), log.end(), refused.front()), 1);
    EXPECT_EQ(TextAt(2, 3), "2,3");
}

QPoint CellPoint(const CGridCtrl& grid, int row, int column)
{
    return grid.visualRect(grid.Model().BodyIndex(row, column)).center();
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, GridEditEndingGesture, testing::Values(
    GestureCase{"ClickOnACell", [](QWidget&, CGridCtrl& grid) {
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, CellPoint(grid, 4, 4)); }, "-100 of 102800 at 4,4"},
    GestureCase{"ClickBesideTheCells", [](QWidget&, CGridCtrl& grid) {
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, grid.viewport()->rect().bottomRight()); }, ""},
    GestureCase{"RightClickOnACell", [](QWidget&, CGridCtrl& grid) {
        QTest::mouseClick(grid.viewport(), Qt::RightButton, {}, CellPoint(grid, 4, 4)); }, "-5 of 102800 at 4,4"},
    GestureCase{"ClickOnAField", [](QWidget& window, CGridCtrl&) {
        QTest::mouseClick(window.findChild<QLineEdit*>("field"), Qt::LeftButton); }, ""},
    GestureCase{"FocusOnAField", [](QWidget& window, CGridCtrl&) {
        window.findChild<QLineEdit*>("field")->setFocus(); }, ""},
    GestureCase{"FocusOnTheGrid", [](QWidget&, CGridCtrl& grid) { grid.setFocus(); }, ""},
    GestureCase{"AnotherWindow", [](QWidget&, CGridCtrl&) {
        QWidget other;
        EXPECT_TRUE(ShowActive(other)); }, ""},
    GestureCase{"EndOfTheWindow", [](QWidget& window, CGridCtrl&) { window.hide(); }, ""},
    GestureCase{"EndEdit", [](QWidget&, CGridCtrl& grid) { grid.EndEdit(); }, ""}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(GridEditEnd, EscapeRestoresTheTextWithoutACheck)
{
    Fill(6, 6);
    Edit(2, 3, "bad");
    Press(Qt::Key_Escape);
    EXPECT_EQ(log, Lines{"-176 of 8 at 2,3"});
    EXPECT_EQ(TextAt(2, 3), "2,3");
    EXPECT_EQ(Focus(), "2,3");
    EXPECT_EQ(Editor(), nullptr);
    EXPECT_EQ(window.focusWidget(), grid);
}

TEST_F(GridEditEnd, LossOfTheFocusMovesNothing)
{
    Fill(6, 6);
    Edit(2, 3, "77");
    QTest::mouseClick(field, Qt::LeftButton);
    EXPECT_EQ(Focus(), "2,3");
    EXPECT_EQ(window.focusWidget(), field);
}

TEST_F(GridEditEnd, AClickOnAnotherCellEndsTheEditAndThenChoosesTheCell)
{
    Fill(6, 6);
    Edit(2, 3, "77");
    Click(4, 4);
    EXPECT_EQ(log, (Lines{"edited 2,3", "-176 of 8 at 2,3", "-100 of 102800 at 4,4"}));
    EXPECT_EQ(Focus(), "4,4");
    EXPECT_EQ(window.focusWidget(), grid);
}

TEST_F(GridEditEnd, ARefusedTextSwallowsTheClickThatEndedTheEdit)
{
    Fill(6, 6);
    int pressed = 0;
    QObject::connect(button, &QPushButton::pressed, [&pressed] { ++pressed; });
    Edit(2, 3, "bad");
    QTest::mousePress(button, Qt::LeftButton);
    EXPECT_EQ(log, (Lines{"reported Col 2,Row 3 data error !", "-176 of 8 at 2,3"}));
    EXPECT_EQ(pressed, 0);
    EXPECT_FALSE(button->isDown());
    QTest::mouseRelease(button, Qt::LeftButton);
    QTest::mouseClick(button, Qt::LeftButton); // the next one acts
    EXPECT_EQ(pressed, 1);
}

TEST_F(GridEditEnd, AnAcceptedTextLetsTheClickThatEndedTheEditAct)
{
    Fill(6, 6);
    int clicked = 0;
    QObject::connect(button, &QPushButton::clicked, [&clicked] { ++clicked; });
    Edit(2, 3, "77");
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(clicked, 1);
    EXPECT_EQ(TextAt(2, 3), "77");
}

TEST_F(GridEditEnd, ARefusedTextShowsOneMessageBox)
{
    for (const auto delay : {std::chrono::milliseconds(0), std::chrono::milliseconds(60)}) {
        SCOPED_TRACE(delay.count());
        Fill(8, 6);
        grid->SetReporter({});
        CModalAnswer answer(QMessageBox::Ok, delay);
        Edit(5, 3, "bad");
        Press(Qt::Key_Return);
        EXPECT_EQ(answer.texts, std::vector<QString>{"Col 5,Row 3 data error !"}); // kept: the row comes first
        EXPECT_EQ(log, Lines{"-176 of 8 at 5,3"});
        EXPECT_EQ(TextAt(5, 3), "5,3");
        EXPECT_EQ(Editor(), nullptr);
        EXPECT_EQ(window.focusWidget(), grid);
    }
}

TEST_F(GridEditEnd, ARefusedTextShowsOneMessageBoxWhenTheFocusIsLost)
{
    Fill(8, 6);
    grid->SetReporter({});
    CModalAnswer answer(QMessageBox::Ok, std::chrono::milliseconds(60));
    Edit(5, 3, "bad");
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(answer.texts.size(), 1u);
    EXPECT_EQ(log, Lines{"-176 of 8 at 5,3"});
    EXPECT_FALSE(button->isDown());
    EXPECT_EQ(window.focusWidget(), button);
}

TEST_F(GridEditEnd, TheMessageBoxHasOneButton)
{
    Fill(8, 6);
    grid->SetReporter({});
    int buttons = 0;
    CModalAnswer answer({[&buttons](QWidget& dialog) {
        buttons = static_cast<int>(static_cast<QMessageBox&>(dialog).buttons().size());
        CModalAnswer::Press(QMessageBox::Ok)(dialog);
    }});
    grid->ReportRefusal(1, 2);
    EXPECT_EQ(buttons, 1);
}

TEST_F(GridEditEnd, AnEndWhileAnEndRunsReturnsAtOnce)
{
    Fill(6, 6);
    int reports = 0;
    grid->SetReporter([&](const QString&, const QString&) {
        ++reports;
        EXPECT_FALSE(grid->EndEdit());
        field->setFocus(); // takes the focus away, as a message box does
    });
    Edit(2, 3, "bad");
    Press(Qt::Key_Return);
    EXPECT_EQ(reports, 1);
    EXPECT_EQ(log, Lines{"-176 of 8 at 2,3"});
}

TEST_F(GridEditEnd, ARefusedArrowGoesOnEditingInTheNextCellAfterTheBox)
{
    Fill(8, 6);
    grid->SetReporter({});
    CModalAnswer answer(QMessageBox::Ok, std::chrono::milliseconds(60));
    Edit(5, 3, "bad");
    Press(Qt::Key_Down);
    ASSERT_NE(Editor(), nullptr);
    EXPECT_EQ(Editor()->Row(), 6);
    EXPECT_EQ(window.focusWidget(), Editor());
    EXPECT_EQ(answer.texts.size(), 1u);
}

TEST_F(GridEditEnd, EndEditTellsWhetherTheTextWasTaken)
{
    Fill(6, 6);
    EXPECT_TRUE(grid->EndEdit()); // nothing to end
    Edit(2, 3, "77");
    EXPECT_TRUE(grid->EndEdit());
    EXPECT_EQ(TextAt(2, 3), "77");
    Edit(2, 3, "bad");
    EXPECT_FALSE(grid->EndEdit());
    EXPECT_EQ(TextAt(2, 3), "77");
    EXPECT_FALSE(grid->IsEditing());
}

TEST_F(GridEditEnd, TheCheckIsAskedWithTheGridColumnAndTheText)
{
    Fill(6, 6);
    Lines asked;
    grid->SetCellCheck([&asked](int column, const QString& text) {
        asked.push_back(std::to_string(column) + ":" + text.toStdString());
        return true;
    });
    Edit(2, 3, "77");
    Press(Qt::Key_Return);
    EXPECT_EQ(asked, Lines{"3:77"});
}

struct EdgeCase {
    const char* name;
    int row;
    int column;
    Qt::Key key;
    friend void PrintTo(const EdgeCase& c, std::ostream* out) { *out << c.name; }
};

struct GridEditAtTheEdge : CGridTestBed, testing::WithParamInterface<EdgeCase> {};

TEST_P(GridEditAtTheEdge, EndsWithoutAnotherEdit)
{
    Fill(4, 5);
    Edit(GetParam().row, GetParam().column, "77");
    Press(GetParam().key);
    EXPECT_EQ(Focus(), std::to_string(GetParam().row) + "," + std::to_string(GetParam().column));
    EXPECT_EQ(Editor(), nullptr);
    EXPECT_EQ(TextAt(GetParam().row, GetParam().column), "77");
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, GridEditAtTheEdge, testing::Values(
    EdgeCase{"UpInTheFirstRow",       1, 3, Qt::Key_Up     },
    EdgeCase{"PageUpInTheFirstRow",   1, 3, Qt::Key_PageUp },
    EdgeCase{"DownInTheLastRow",      3, 3, Qt::Key_Down   },
    EdgeCase{"LeftInTheFirstColumn",  2, 2, Qt::Key_Left   },
    EdgeCase{"HomeInTheFirstColumn",  2, 2, Qt::Key_Home   },
    EdgeCase{"RightInTheLastColumn",  2, 4, Qt::Key_Right  },
    EdgeCase{"TabInTheLastCell",      3, 4, Qt::Key_Tab    },
    EdgeCase{"BacktabInTheFirstCell", 1, 2, Qt::Key_Backtab}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(GridEditEnd, TabAtTheEndOfARowGoesOnInTheNextRow)
{
    Fill(4, 5);
    Edit(1, 4, "77");
    Press(Qt::Key_Tab);
    ASSERT_NE(Editor(), nullptr);
    EXPECT_EQ(Focus(), "2,2");
}

TEST_F(GridEditEnd, DownOpensTheEditorBelowAndEnterDoesNot)
{
    Fill(6, 6);
    Edit(2, 3, "77");
    Press(Qt::Key_Down);
    ASSERT_NE(Editor(), nullptr);
    EXPECT_EQ(Editor()->Row(), 3);
    EXPECT_EQ(Editor()->Column(), 3);
    EXPECT_EQ(Editor()->selectedText(), QString("3,3")); // so that typing replaces it
    Press(Qt::Key_Enter);
    EXPECT_EQ(Editor(), nullptr);
    EXPECT_EQ(Focus(), "3,3");
}

TEST_F(GridEditEnd, AValueAnArrowAndTypingGoesOnInTheNextCell)
{
    Fill(6, 6);
    Click(2, 3);
    Type("11");
    Press(Qt::Key_Down);
    Type("22");
    Press(Qt::Key_Right);
    Type("33");
    Press(Qt::Key_Return);
    EXPECT_EQ(TextAt(2, 3), "11");
    EXPECT_EQ(TextAt(3, 3), "22");
    EXPECT_EQ(TextAt(3, 4), "33");
}

TEST_F(GridEditEnd, AnArrowOntoAReadOnlyCellMovesWithoutAnEdit)
{
    Fill(6, 6);
    grid->SetItem({.row = 3, .column = 3, .mask = GridItem::State, .state = CGridCellBase::ReadOnly});
    Edit(2, 3, "77");
    Press(Qt::Key_Down);
    EXPECT_EQ(Focus(), "3,3");
    EXPECT_EQ(Editor(), nullptr);
}

} // namespace
