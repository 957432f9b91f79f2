// The window that shows a text that is cut off where it stands.

#include "controls/TitleTip.h"
#include "tests/controls/GridTestBed.h"
#include "tests/support/GuiTest.h"

#include <QApplication>
#include <QMouseEvent>
#include <QScrollBar>

namespace {

/// Counts the mouse moves that reach a widget.
class CMoveCounter final : public QObject {
public:
    explicit CMoveCounter(QWidget& widget) { widget.installEventFilter(this); }

    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::MouseMove) {
            ++count;
            last = static_cast<QMouseEvent*>(event)->position().toPoint();
        }
        return false;
    }

    int count = 0;
    QPoint last;
};

struct GridTitleTip : CGridTestBed {
    void SetUp() override
    {
        CGridTestBed::SetUp();
        Fill(200, 30);
        place = QRect(grid->viewport()->mapToGlobal(Center(2, 3)), QSize(40, 20));
    }

    CTitleTip& Tip() const { return grid->TitleTip(); }
    bool Show() { return Tip().Show(place, "a text that is wider than its cell"); }

    void MoveOverTip(const QPoint& globalPoint)
    {
        QMouseEvent move(QEvent::MouseMove, Tip().mapFromGlobal(globalPoint), globalPoint, Qt::NoButton, {}, {});
        QApplication::sendEvent(&Tip(), &move);
    }

    QRect place;
};

TEST_F(GridTitleTip, IsMadeWithTheGridAndHidden)
{
    EXPECT_FALSE(Tip().isVisible());
    EXPECT_TRUE(Tip().isWindow());
    EXPECT_EQ(Tip().windowType(), Qt::ToolTip);
    EXPECT_TRUE(Tip().windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_EQ(Tip().cursor().shape(), Qt::ArrowCursor);
    EXPECT_EQ(Tip().DoubleClickTime(), QApplication::doubleClickInterval());
}

TEST_F(GridTitleTip, ShowsATextThatIsWiderThanItsPlace)
{
    EXPECT_TRUE(Show());
    EXPECT_TRUE(Tip().isVisible());
    EXPECT_EQ(Tip().text(), QString("a text that is wider than its cell"));
    EXPECT_EQ(Tip().geometry().topLeft(), place.topLeft());
    EXPECT_GT(Tip().width(), place.width());
    EXPECT_FALSE(Tip().isActiveWindow());
    EXPECT_EQ(window.focusWidget(), grid);
}

TEST_F(GridTitleTip, DoesNotShowATextThatFits)
{
    EXPECT_FALSE(Tip().Show(place.adjusted(0, 0, 500, 0), "short"));
    EXPECT_FALSE(Tip().isVisible());
}

TEST_F(GridTitleTip, NoMouseMoveOverTheGridShowsIt)
{
    grid->SetItemText(2, 3, QString(300, u'8'));
    QMouseEvent move(QEvent::MouseMove, Center(2, 3), grid->viewport()->mapToGlobal(Center(2, 3)), Qt::NoButton, {},
                     {});
    QApplication::sendEvent(grid->viewport(), &move);
    EXPECT_FALSE(Tip().isVisible());
}

struct HidingCase {
    const char* name;
    void (*act)(CGridCtrl& grid);
    friend void PrintTo(const HidingCase& c, std::ostream* out) { *out << c.name; }
};

struct GridTitleTipHiding : GridTitleTip, testing::WithParamInterface<HidingCase> {};

TEST_P(GridTitleTipHiding, HidesAndFreesTheMouse)
{
    ASSERT_TRUE(Show());
    Tip().grabMouse();
    ASSERT_EQ(QWidget::mouseGrabber(), &Tip());
    GetParam().act(*grid);
    EXPECT_FALSE(Tip().isVisible());
    EXPECT_EQ(QWidget::mouseGrabber(), nullptr);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, GridTitleTipHiding, testing::Values(
    HidingCase{"VerticalScroll",   [](CGridCtrl& grid) { grid.verticalScrollBar()->setValue(5); }   },
    HidingCase{"HorizontalScroll", [](CGridCtrl& grid) { grid.horizontalScrollBar()->setValue(50); }},
    HidingCase{"NoMoreCells",      [](CGridCtrl& grid) { grid.DeleteAllItems(); }                   },
    HidingCase{"AnEdit",           [](CGridCtrl& grid) {
        grid.SetFocusCell(2, 3);
        grid.StartEdit(); }                                                                         },
    HidingCase{"Hide",             [](CGridCtrl& grid) { grid.TitleTip().Hide(); }                  }),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(GridTitleTip, StaysWhileTheMouseMovesWithinItsPlace)
{
    ASSERT_TRUE(Show());
    MoveOverTip(place.center());
    EXPECT_TRUE(Tip().isVisible());
}

TEST_F(GridTitleTip, OutsideItsPlaceItHidesAndPassesTheMoveOn)
{
    ASSERT_TRUE(Show());
    CMoveCounter moves(*field);
    const QPoint point = field->mapToGlobal(QPoint(7, 5));
    MoveOverTip(point);
    EXPECT_FALSE(Tip().isVisible());
    EXPECT_EQ(moves.count, 1);
    EXPECT_EQ(moves.last, QPoint(7, 5));
}

TEST_F(GridTitleTip, AMoveWhereNoWindowIsJustHidesIt)
{
    ASSERT_TRUE(Show());
    MoveOverTip(QPoint(-5000, -5000));
    EXPECT_FALSE(Tip().isVisible());
}

} // namespace
