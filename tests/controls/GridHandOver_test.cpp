// What the commands on cells hand over: one call a command, all of it or nothing.

#include "controls/GridModel.h"
#include "tests/controls/GridTestBed.h"
#include "tests/support/GuiTest.h"
#include "tests/support/ModalAnswer.h"

#include <QApplication>
#include <QClipboard>
#include <QPushButton>

#include <algorithm>
#include <map>
#include <new>
#include <thread>

namespace {

constexpr auto kNoMemory = "reported There is not enough memory for this command. Nothing was changed.";

std::string NameOf(GridChange change)
{
    switch (change) {
    case GridChange::Typing:
        return "Typing";
    case GridChange::Paste:
        return "Paste";
    case GridChange::Cut:
        return "Cut";
    case GridChange::Clear:
        return "Clear";
    case GridChange::Fill:
        return "Fill";
    }
    return "?";
}

std::string LineOf(int row, int column, const QString& text)
{
    return std::to_string(row) + "," + std::to_string(column) + "=" + text.toStdString();
}

/// Every cell's text is "row,column" until it is set. Writes each call that sets texts into the test's log.
class CLoggingSource final : public CGridTextSource {
public:
    explicit CLoggingSource(std::vector<std::string>& log) : m_log(log) {}

    QString CellText(int row, int column) const override
    {
        if (textsUntilFull-- == 0)
            throw std::bad_alloc();
        const auto text = texts.find({row, column});
        return text != texts.end() ? text->second : QStringLiteral("%1,%2").arg(row).arg(column);
    }

    bool SetCellText(int row, int column, const QString& text) override
    {
        m_log.push_back("Program " + LineOf(row, column, text));
        texts[{row, column}] = text;
        return true;
    }

    bool SetCellTexts(GridChange change, std::vector<GridCellText> cells) override
    {
        if (full)
            throw std::bad_alloc();
        std::string line = NameOf(change);
        for (const GridCellText& cell : cells) {
            line += " " + LineOf(cell.row, cell.column, cell.text);
            texts[{cell.row, cell.column}] = cell.text;
        }
        m_log.push_back(line);
        return true;
    }

    std::map<std::pair<int, int>, QString> texts;
    mutable int textsUntilFull = -1; ///< texts that are made before the memory is full
    bool full = false;               ///< it is when texts are set

private:
    std::vector<std::string>& m_log;
};

struct GridHandOver : CGridTestBed {
    void SetUp() override
    {
        CGridTestBed::SetUp();
        grid->SetTextSource(&source);
        ShowRows(6);
    }
    void TearDown() override { grid->SetTextSource(nullptr); }

    void ShowRows(int rows)
    {
        grid->SetRowCount(rows);
        grid->SetColumnCount(6);
        grid->SetFixedRowCount(1);
        grid->SetFixedColumnCount(2);
        grid->setFocus();
    }

    /// Chooses the cells from one corner to the other and forgets what was told of it.
    void Choose(int row, int column, int toRow, int toColumn)
    {
        Click(row, column);
        Click(toRow, toColumn, Qt::ShiftModifier);
        QCoreApplication::processEvents(); // paints
        log.clear();
    }

    void Paste(const QString& text)
    {
        QApplication::clipboard()->setText(text);
        Press(Qt::Key_V, Qt::ControlModifier);
    }

    CLoggingSource source{log};
};

TEST_F(GridHandOver, ATypedTextIsTyping)
{
    Edit(2, 3, "77");
    Press(Qt::Key_Return);
    EXPECT_EQ(log, (Lines{"edited 2,3", "Typing 2,3=77", "-176 of 8 at 2,3"}));
}

TEST_F(GridHandOver, ATextSetByAScreenReaderIsTyping)
{
    EXPECT_TRUE(grid->Model().setData(grid->Model().BodyIndex(2, 3), "77"));
    EXPECT_EQ(log, (Lines{"edited 2,3", "Typing 2,3=77"}));
}

TEST_F(GridHandOver, TheProgramsTextsAreNoCommand)
{
    grid->SetItemText(2, 3, "77");
    grid->SetItem({.row = 2, .column = 4, .mask = GridItem::Text, .text = "78"});
    EXPECT_EQ(log, (Lines{"Program 2,3=77", "Program 2,4=78"}));
}

TEST_F(GridHandOver, APastedBlockIsOneCallOfTheAcceptedTexts)
{
    Choose(2, 3, 2, 3);
    Paste("a\t2,4\tbad\nc\td\te\n");
    EXPECT_EQ(log, (Lines{"edited 2,3", "edited 3,3", "edited 3,4", "edited 3,5", "Paste 2,3=a 3,3=c 3,4=d 3,5=e",
                          "reported Col 2,Row 5 data error !"}));
}

TEST_F(GridHandOver, APastedValueIsOneCall)
{
    Choose(2, 3, 3, 4);
    Paste("7");
    EXPECT_EQ(log.back(), "Paste 2,3=7 2,4=7 3,3=7 3,4=7");
    EXPECT_EQ(log.size(), 5u);
}

TEST_F(GridHandOver, DeleteIsOneCall)
{
    Choose(2, 3, 2, 4);
    Press(Qt::Key_Delete);
    EXPECT_EQ(log, (Lines{"edited 2,3", "edited 2,4", "Clear 2,3= 2,4="}));
}

TEST_F(GridHandOver, CutIsOneCall)
{
    Choose(2, 3, 2, 4);
    Press(Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(log, (Lines{"edited 2,3", "edited 2,4", "Cut 2,3= 2,4="}));
}

TEST_F(GridHandOver, WithoutAnAcceptedTextThereIsNoCall)
{
    Choose(2, 3, 2, 4);
    Paste("2,3\tbad\n");
    EXPECT_EQ(log, Lines{"reported Col 2,Row 4 data error !"});
}

TEST_F(GridHandOver, AResetByWhoeverIsToldOfAnEditLeavesTheNewCells)
{
    QObject::connect(grid, &CGridCtrl::CellEdited, grid, [this] {
        if (grid->RowCount() != 3)
            ShowRows(3);
    });
    Choose(2, 3, 2, 3);
    Paste("a\nb\n");
    EXPECT_EQ(log, (Lines{"edited 2,3", "edited 3,3", "Paste 2,3=a"}));
}

struct CommandCase {
    const char* name;
    Qt::Key key; ///< with Ctrl, but for Delete
    friend void PrintTo(const CommandCase& c, std::ostream* out) { *out << c.name; }
};

struct GridHandOverStopped : GridHandOver, testing::WithParamInterface<CommandCase> {
    void PressCommand()
    {
        Press(GetParam().key, GetParam().key == Qt::Key_Delete ? Qt::NoModifier : Qt::ControlModifier);
    }
};

TEST_P(GridHandOverStopped, ChangesAndTellsNothingWhenItIsCancelled)
{
    ShowRows(5000);
    QApplication::clipboard()->setText(QString("bad\t1\n").repeated(5000));
    Press(Qt::Key_A, Qt::ControlModifier);
    log.clear();
    int asked = 0;
    grid->SetCellCheck([&asked](int, const QString& text) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        return ++asked > 1 && text != "bad";
    });
    CModalAnswer answer(std::vector<CModalAnswer::Action>{[](QWidget& dialog) {
        auto* cancel = dialog.findChild<QPushButton*>();
        ASSERT_NE(cancel, nullptr);
        cancel->click();
    }});
    PressCommand();
    EXPECT_EQ(answer.texts.size(), 1u);
    EXPECT_GT(asked, 1);
    EXPECT_LT(asked, 5000);
    EXPECT_EQ(log, Lines{});
    EXPECT_TRUE(source.texts.empty());
}

TEST_P(GridHandOverStopped, LeavesTheNewCellsWhenTheGridIsResetMeanwhile)
{
    ShowRows(5000);
    QApplication::clipboard()->setText(QString("1\t2\n").repeated(5000));
    Press(Qt::Key_A, Qt::ControlModifier);
    grid->SetCellCheck([](int, const QString&) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        return true;
    });
    CModalAnswer answer(std::vector<CModalAnswer::Action>{[this](QWidget&) {
        grid->DeleteAllItems();
        grid->SetTextSource(&source);
        ShowRows(5000);
        log.clear();
    }});
    PressCommand();
    EXPECT_EQ(log, Lines{});
    EXPECT_TRUE(source.texts.empty());
}

TEST_P(GridHandOverStopped, ChangesNothingAndSaysSoWhenTheMemoryIsFull)
{
    QApplication::clipboard()->setText("a\tb\nc\td\n");
    Choose(2, 3, 3, 4);
    source.textsUntilFull = GetParam().key == Qt::Key_X ? 7 : 3; // a cut copies first
    PressCommand();
    EXPECT_EQ(source.textsUntilFull, -1);
    EXPECT_EQ(log, Lines{kNoMemory});
    EXPECT_TRUE(source.texts.empty());
}

TEST_P(GridHandOverStopped, SaysSoWhenTheSourceHasNoMemory)
{
    QApplication::clipboard()->setText("a\tb\nc\td\n");
    Choose(2, 3, 3, 4);
    source.full = true;
    PressCommand();
    EXPECT_EQ(log.back(), kNoMemory);
    EXPECT_EQ(std::count(log.begin(), log.end(), kNoMemory), 1);
}

TEST_P(GridHandOverStopped, LeavesKeptCellsWhenTheMemoryIsFull)
{
    grid->SetTextSource(nullptr);
    Fill(6, 6);
    QApplication::clipboard()->setText("a\tb\nc\td\n");
    Choose(2, 3, 3, 4);
    grid->SetCellCheck([asked = 0](int, const QString&) mutable -> bool {
        if (++asked == 4)
            throw std::bad_alloc();
        return true;
    });
    PressCommand();
    EXPECT_EQ(log, Lines{kNoMemory});
    EXPECT_EQ(TextAt(2, 3) + TextAt(2, 4) + TextAt(3, 3) + TextAt(3, 4), "2,32,43,33,4");
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, GridHandOverStopped, testing::Values(
    CommandCase{"Paste",  Qt::Key_V     },
    CommandCase{"Cut",    Qt::Key_X     },
    CommandCase{"Delete", Qt::Key_Delete}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(GridHandOver, ACopyThatTheMemoryHasNoRoomForLeavesTheClipboard)
{
    QApplication::clipboard()->setText("before");
    Choose(2, 3, 3, 4);
    source.textsUntilFull = 3;
    Press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(log, Lines{kNoMemory});
    EXPECT_EQ(QApplication::clipboard()->text(), QString("before"));
}

} // namespace
