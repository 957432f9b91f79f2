#include "app/MySplitter.h"
#include "controls/GridCtrl.h"
#include "tests/app/FrameFixture.h"

#include <QAccessible>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSplitterHandle>
#include <QTest>

namespace {

struct Splitter : FrameFixture {
    void SetUp() override
    {
        Start();
        frame->move(0, 40); // so that the bar begins well below the top of the screen
        splitter = frame->findChild<CMySplitter*>();
        ASSERT_NE(splitter, nullptr);
    }

    int LeftWidth() const { return splitter->sizes().at(0); }
    QWidget& Bar() { return *splitter->handle(1); }
    void Click() { QTest::mouseClick(&Bar(), Qt::LeftButton, {}, Bar().rect().center()); }

    /// Where a release does not toggle, so that the bar stays where it was dragged to.
    void DragInTopBand(int pixels)
    {
        const QPoint inTopBand = Bar().rect().topLeft() + QPoint(2, 1);
        QTest::mousePress(&Bar(), Qt::LeftButton, {}, inTopBand);
        QTest::mouseMove(&Bar(), inTopBand + QPoint(pixels, 0));
        QTest::mouseRelease(&Bar(), Qt::LeftButton, {}, inTopBand + QPoint(pixels, 0));
    }

    CMySplitter* splitter = nullptr;
};

} // namespace

TEST_F(Splitter, TheLeftPaneStartsAtItsWidth)
{
    EXPECT_EQ(LeftWidth(), 355);
    EXPECT_TRUE(splitter->IsExpanded());
}

TEST_F(Splitter, TheRightPaneIsThereOnAnyScreen)
{
    frame->hide();
    frame->resize(300, 300); // as on a small screen: narrower than the left pane
    frame->show();
    frame->resize(1000, 600);
    EXPECT_GT(splitter->sizes().at(1), 300);
    EXPECT_GE(LeftWidth(), 250);
}

struct WidthCase {
    const char* name;
    int width;
    friend void PrintTo(const WidthCase& c, std::ostream* out) { *out << c.name; }
};

/// The window with a table, so wide.
struct NarrowWindow : Splitter, testing::WithParamInterface<WidthCase> {
    void SetUp() override
    {
        Splitter::SetUp();
        MakeFile("a.rcp");
        OpenThroughDialog("a.rcp");
        Resize(GetParam().width);
    }

    void Resize(int width)
    {
        frame->resize(width, 600);
        ASSERT_TRUE(WaitFor([&] { return frame->width() == width; }));
    }

    /// Whether the first data column is in sight in full.
    bool ShowsAColumn()
    {
        const QRect cell = Grid().visualRect(Grid().model()->index(0, 0));
        return Grid().isVisible() && Grid().viewport()->rect().contains(cell) &&
               frame->rect().contains(QRect(Grid().viewport()->mapTo(frame.get(), cell.topLeft()), cell.size()));
    }
};

TEST_P(NarrowWindow, KeepsADataColumnInSightAndSomeOfTheLeftPane)
{
    EXPECT_TRUE(ShowsAColumn());
    EXPECT_GT(LeftWidth(), 100);
    EXPECT_LE(LeftWidth(), 355);
    auto& pane = Find<QScrollArea>("formatPane");
    if (pane.viewport()->width() < pane.widget()->width()) { // what does not fit is reached sideways
        EXPECT_TRUE(WaitFor([&] { return pane.horizontalScrollBar()->isVisible(); }));
        EXPECT_EQ(pane.horizontalScrollBar()->maximum(), pane.widget()->width() - pane.viewport()->width());
    }
}

TEST_P(NarrowWindow, TheLeftPaneHasItsWidthAgainWhereThereIsRoom)
{
    Resize(1200);
    EXPECT_EQ(LeftWidth(), 355);
    EXPECT_TRUE(ShowsAColumn());
}

TEST_P(NarrowWindow, TwoClicksCollapseAndRestore)
{
    const int before = LeftWidth();
    Click();
    EXPECT_EQ(LeftWidth(), 0);
    EXPECT_TRUE(ShowsAColumn());
    Click();
    EXPECT_GE(LeftWidth(), before);
    EXPECT_LE(LeftWidth(), 360);
    EXPECT_TRUE(ShowsAColumn());
    Resize(1200);
    EXPECT_EQ(LeftWidth(), 360);
}

TEST_P(NarrowWindow, ACollapsedPaneStaysSo)
{
    Click();
    Resize(1200);
    EXPECT_EQ(LeftWidth(), 0);
    Resize(GetParam().width);
    EXPECT_EQ(LeftWidth(), 0);
}

TEST_P(NarrowWindow, AWideFirstColumnLeavesTheLeftPaneSome)
{
    ASSERT_TRUE(Grid().SetItemText(1, 2, "1"));
    Grid().SetColumnWidth(0, 300);
    Grid().SetColumnWidth(2, 900);
    Trigger(*frame, "actionNew"); // lays the table out afresh
    EXPECT_GT(LeftWidth(), 100);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Widths, NarrowWindow, testing::Values(
    WidthCase{"Is800", 800}, WidthCase{"Is640", 640}, WidthCase{"Is480", 480}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(Splitter, TheLeftPaneKeepsItsWidthWhenTheWindowShrinksAndGrows)
{
    for (const int width : {700, 1000, 500, 900}) {
        frame->resize(width, 600);
        EXPECT_EQ(LeftWidth(), 355) << width;
    }
}

TEST_F(Splitter, TwoClicksCollapseAndRestoreThePaneToItsFirstWidthPlusFive)
{
    Click();
    EXPECT_EQ(LeftWidth(), 0);
    Click();
    EXPECT_EQ(LeftWidth(), 360);
}

TEST_F(Splitter, ADragEndsInTheSameToggle)
{
    const QPoint middle = Bar().rect().center();
    QTest::mousePress(&Bar(), Qt::LeftButton, {}, middle);
    QTest::mouseMove(&Bar(), middle + QPoint(120, 0));
    QTest::mouseRelease(&Bar(), Qt::LeftButton, {}, middle + QPoint(120, 0));
    EXPECT_EQ(LeftWidth(), 0);
}

TEST_F(Splitter, AReleaseInTheTopBandDoesNothing) // kept: as tall as the splitter lies below the screen's top
{
    const int top = splitter->mapToGlobal(QPoint(0, 0)).y();
    ASSERT_GT(top, 2);
    QTest::mouseClick(&Bar(), Qt::LeftButton, {}, QPoint(2, top));
    EXPECT_TRUE(splitter->IsExpanded());
    EXPECT_EQ(LeftWidth(), 355);
    QTest::mouseClick(&Bar(), Qt::LeftButton, {}, QPoint(2, top + 1));
    EXPECT_FALSE(splitter->IsExpanded());
    EXPECT_EQ(LeftWidth(), 0);
}

TEST_F(Splitter, AReleaseBesideTheBarTurnsTheStateButMovesNothing) // kept
{
    QTest::mouseRelease(splitter, Qt::LeftButton, {}, QPoint(2, splitter->height() / 2));
    EXPECT_FALSE(splitter->IsExpanded());
    EXPECT_EQ(LeftWidth(), 355);
    Click();
    EXPECT_TRUE(splitter->IsExpanded());
    EXPECT_EQ(LeftWidth(), 360);
}

TEST_F(Splitter, OtherButtonsDoNotToggle)
{
    QTest::mouseClick(&Bar(), Qt::RightButton, {}, Bar().rect().center());
    EXPECT_TRUE(splitter->IsExpanded());
}

TEST_F(Splitter, TheBarTogglesFromTheKeyboard)
{
    Bar().setFocus();
    QTest::keyClick(&Bar(), Qt::Key_Space);
    EXPECT_EQ(LeftWidth(), 0);
    QTest::keyClick(&Bar(), Qt::Key_Return);
    EXPECT_EQ(LeftWidth(), 360);
}

TEST_F(Splitter, TabComesToTheBarBetweenThePanes)
{
    auto& last = Find<QPushButton>("buttonUseFormat");
    last.setFocus();
    QTest::keyClick(&last, Qt::Key_Tab);
    EXPECT_EQ(frame->focusWidget(), &Bar());
    QTest::keyClick(&Bar(), Qt::Key_Tab);
    EXPECT_EQ(frame->focusWidget(), &Grid());
    QTest::keyClick(&Grid(), Qt::Key_Backtab);
    EXPECT_EQ(frame->focusWidget(), &Bar());
}

TEST_F(Splitter, TheBarShowsPlainlyThatItHasTheFocus)
{
    const auto edge = [&] { return Bar().grab().toImage().pixelColor(0, Bar().height() / 2); };
    const QColor frameColor = Bar().palette().color(QPalette::Highlight);
    EXPECT_NE(edge(), frameColor);
    Bar().setFocus();
    EXPECT_EQ(edge(), frameColor);
}

TEST_F(Splitter, ACollapsedPaneDoesNotKeepTheFocus)
{
    Find<QLineEdit>("editStartAddress").setFocus();
    Click();
    EXPECT_EQ(LeftWidth(), 0);
    EXPECT_FALSE(splitter->widget(0)->isAncestorOf(frame->focusWidget()));
}

TEST_F(Splitter, TabPassesByACollapsedPane)
{
    Click();
    Grid().setFocus();
    QTest::keyClick(&Grid(), Qt::Key_Tab);
    EXPECT_EQ(frame->focusWidget(), &Bar());
    QTest::keyClick(&Bar(), Qt::Key_Space);
    EXPECT_EQ(LeftWidth(), 360);
    QTest::keyClick(&Bar(), Qt::Key_Backtab);
    EXPECT_EQ(frame->focusWidget(), &Find<QPushButton>("buttonUseFormat"));
}

TEST_F(Splitter, ACollapsedPaneThatIsDraggedOpenIsInUseAgain)
{
    Click();
    EXPECT_FALSE(splitter->widget(0)->isEnabled());
    DragInTopBand(300);
    EXPECT_GT(LeftWidth(), 0);
    EXPECT_TRUE(splitter->widget(0)->isEnabled());
}

TEST_F(Splitter, F6ComesToAPaneThatWasDraggedOpen)
{
    Click();
    DragInTopBand(300);
    ASSERT_GT(LeftWidth(), 0);
    Grid().setFocus();
    QTest::keyClick(frame.get(), Qt::Key_F6);
    EXPECT_TRUE(splitter->widget(0)->isAncestorOf(frame->focusWidget()));
}

TEST_F(Splitter, F6PassesByAPaneThatWasDraggedShut)
{
    DragInTopBand(-LeftWidth());
    ASSERT_EQ(LeftWidth(), 0);
    Bar().setFocus();
    QTest::keyClick(frame.get(), Qt::Key_F6);
    EXPECT_EQ(frame->focusWidget(), &Grid());
}

TEST_F(Splitter, TheBarHasARoleAndAName)
{
    const QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&Bar());
    ASSERT_NE(accessible, nullptr);
    EXPECT_EQ(accessible->role(), QAccessible::Splitter);
    EXPECT_EQ(accessible->text(QAccessible::Name), "Show or hide the left pane");
}
