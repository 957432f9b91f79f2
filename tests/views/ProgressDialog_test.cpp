#include "tests/support/GuiTest.h"
#include "tests/support/ModalAnswer.h"
#include "views/ProgressDialog.h"

#include <QApplication>
#include <QProgressDialog>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

using namespace std::chrono_literals;

TEST(ProgressDialog, StaysAwayFromShortWork)
{
    QWidget window;
    ASSERT_TRUE(ShowActive(window));
    CProgressDialog progress(window, "Reading", 1h);
    EXPECT_TRUE(progress.Advance(0, 100));
    EXPECT_TRUE(progress.Advance(100, 100));
    EXPECT_EQ(window.findChild<QProgressDialog*>(), nullptr);
}

TEST(ProgressDialog, ShowsHowFarLongWorkIs)
{
    QWidget window;
    ASSERT_TRUE(ShowActive(window));
    CProgressDialog progress(window, "Reading", 0ms);
    QTest::qSleep(2); // so that the delay of no time has passed
    EXPECT_TRUE(progress.Advance(std::uint64_t{1} << 33, std::uint64_t{1} << 34)); // beyond 32 bits
    auto* dialog = window.findChild<QProgressDialog*>();
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(dialog->labelText(), "Reading");
    EXPECT_EQ(dialog->value(), dialog->maximum() / 2);
}

TEST(ProgressDialog, CancelEndsTheWork)
{
    QWidget window;
    ASSERT_TRUE(ShowActive(window));
    CProgressDialog progress(window, "Reading", 0ms);
    const CModalAnswer cancel(
        {[](QWidget& dialog) { QTest::mouseClick(dialog.findChild<QPushButton*>(), Qt::LeftButton); }});
    std::uint64_t done = 0;
    EXPECT_TRUE(WaitFor([&] { return !progress.Advance(++done, 1'000'000'000); }));
    EXPECT_FALSE(progress.Advance(++done, 1'000'000'000));
}
