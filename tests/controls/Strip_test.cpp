#include "controls/Strip.h"
#include "tests/support/GuiTest.h"

#include <QAccessible>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>
#include <gtest/gtest.h>

namespace {

constexpr int kLight = 1;
constexpr int kHeavy = 2;

/// A strip over a field, as it stands in a window.
struct Strip : testing::Test {
    Strip()
    {
        auto* layout = new QVBoxLayout(&window);
        layout->addWidget(strip);
        layout->addWidget(field);
        EXPECT_TRUE(ShowActive(window));
        field->setFocus();
    }

    QString Text() const
    {
        return strip->isVisible() ? strip->findChild<QLabel*>(QStringLiteral("labelStrip"))->text() : QString();
    }
    QPushButton* Button(const QString& text) const
    {
        for (auto* button : strip->findChildren<QPushButton*>())
            if (button->text() == text && button->isVisible())
                return button;
        throw std::runtime_error("no button " + text.toStdString());
    }

    /// Asks something in a dialog over the window, which is answered at once.
    void AskInADialog()
    {
        QDialog dialog(&window);
        QLineEdit answer(&dialog);
        QTimer::singleShot(0, &dialog, [&dialog] {
            EXPECT_TRUE(ShowActive(dialog));
            dialog.accept();
        });
        dialog.exec();
    }

    QWidget window;
    CStrip* strip = new CStrip;
    QLineEdit* field = new QLineEdit;
};

TEST_F(Strip, IsHiddenWhileThereIsNothingToSay)
{
    EXPECT_FALSE(strip->isVisible());
    strip->ShowMessage(kLight, {QStringLiteral("told"), {}});
    EXPECT_EQ(Text(), QStringLiteral("told"));
    strip->Withdraw(kLight);
    EXPECT_FALSE(strip->isVisible());
}

TEST_F(Strip, ShowsTheHeaviestMessageAndThenTheLighterOne)
{
    strip->ShowMessage(kHeavy, {QStringLiteral("heavy"), {}});
    strip->ShowMessage(kLight, {QStringLiteral("light"), {}});
    EXPECT_EQ(Text(), QStringLiteral("heavy"));
    strip->Withdraw(kHeavy);
    EXPECT_EQ(Text(), QStringLiteral("light"));
}

TEST_F(Strip, AHeavierMessageTakesThePlaceOfALighterOne)
{
    strip->ShowMessage(kLight, {QStringLiteral("light"), {}});
    strip->ShowMessage(kHeavy, {QStringLiteral("heavy"), {}});
    EXPECT_EQ(Text(), QStringLiteral("heavy"));
}

TEST_F(Strip, ANewMessageOfTheSameWeightReplacesTheOld)
{
    strip->ShowMessage(kLight, {QStringLiteral("old"), {{QStringLiteral("Old"), [] {}}}});
    strip->ShowMessage(kLight, {QStringLiteral("new"), {{QStringLiteral("New"), [] {}}}});
    EXPECT_EQ(Text(), QStringLiteral("new"));
    EXPECT_THROW(Button(QStringLiteral("Old")), std::runtime_error);
    strip->Withdraw(kLight);
    EXPECT_FALSE(strip->isVisible());
}

TEST_F(Strip, ItsTextIsPlain)
{
    strip->ShowMessage(kLight, {QStringLiteral("<b>a.rcp</b> &x"), {}});
    EXPECT_EQ(strip->findChild<QLabel*>(QStringLiteral("labelStrip"))->textFormat(), Qt::PlainText);
    EXPECT_EQ(strip->accessibleName(), QStringLiteral("<b>a.rcp</b> &x"));
}

TEST_F(Strip, ALongTextMakesNoWideWindow)
{
    const int width = window.minimumSizeHint().width();
    strip->ShowMessage(kLight, {QString(4000, u'x'), {}});
    EXPECT_LE(window.minimumSizeHint().width(), width + strip->minimumSizeHint().width());
    EXPECT_LT(strip->minimumSizeHint().width(), 200);
}

TEST_F(Strip, AClickRunsTheButton)
{
    int runs = 0;
    strip->ShowMessage(kLight, {QStringLiteral("told"), {{QStringLiteral("Do"), [&runs] { ++runs; }}}});
    QTest::mouseClick(Button(QStringLiteral("Do")), Qt::LeftButton);
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(Text(), QStringLiteral("told"));
}

TEST_F(Strip, AButtonMayTakeItsOwnMessageBack)
{
    const auto replace = [this] { strip->ShowMessage(kLight, {QStringLiteral("done"), {}}); };
    strip->ShowMessage(kLight, {QStringLiteral("told"), {{QStringLiteral("Do"), replace}}});
    QTest::mouseClick(Button(QStringLiteral("Do")), Qt::LeftButton);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(Text(), QStringLiteral("done"));
}

TEST_F(Strip, IsWorkedByTheKeyboardAlone)
{
    int runs = 0;
    strip->ShowMessage(kLight, {QStringLiteral("told"),
                                {{QStringLiteral("First"), [] {}}, {QStringLiteral("Second"), [&runs] { ++runs; }}}});
    strip->setFocus();
    EXPECT_EQ(window.focusWidget(), Button(QStringLiteral("First")));
    QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
    ASSERT_EQ(window.focusWidget(), Button(QStringLiteral("Second")));
    QTest::keyClick(window.focusWidget(), Qt::Key_Space);
    QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(window.focusWidget(), strip->findChild<QToolButton*>());
    EXPECT_EQ(runs, 1);
}

TEST_F(Strip, EscapeDismissesAndGivesTheFocusBack)
{
    std::vector<int> dismissed;
    QObject::connect(strip, &CStrip::Dismissed, [&dismissed](int weight) { dismissed.push_back(weight); });
    strip->ShowMessage(kLight, {QStringLiteral("told"), {{QStringLiteral("Do"), [] {}}}});
    strip->setFocus();
    QTest::keyClick(window.focusWidget(), Qt::Key_Escape);
    EXPECT_FALSE(strip->isVisible());
    EXPECT_EQ(dismissed, std::vector<int>{kLight});
    EXPECT_EQ(window.focusWidget(), field);
}

TEST_F(Strip, GivesTheFocusBackBeforeTheWindowIsActiveAgain)
{
    const auto ask = [this] {
        AskInADialog();
        strip->Withdraw(kLight);
    };
    strip->ShowMessage(kLight, {QStringLiteral("told"), {{QStringLiteral("Ask"), ask}}});
    strip->setFocus();
    QTest::keyClick(window.focusWidget(), Qt::Key_Space);
    EXPECT_FALSE(strip->isVisible());
    EXPECT_EQ(window.focusWidget(), field);
}

TEST_F(Strip, RemembersTheFocusOverADialog)
{
    strip->ShowMessage(kLight, {QStringLiteral("told"), {{QStringLiteral("Ask"), [this] { AskInADialog(); }}}});
    strip->setFocus();
    QTest::keyClick(window.focusWidget(), Qt::Key_Space);
    ASSERT_TRUE(ShowActive(window));
    ASSERT_EQ(window.focusWidget(), Button(QStringLiteral("Ask")));
    QTest::keyClick(window.focusWidget(), Qt::Key_Escape);
    EXPECT_FALSE(strip->isVisible());
    EXPECT_EQ(window.focusWidget(), field);
}

TEST_F(Strip, EnterPressesItsLastButtonAsItDoesTheOthers)
{
    strip->ShowMessage(kLight, {QStringLiteral("told"), {}});
    strip->setFocus();
    QTest::keyClick(window.focusWidget(), Qt::Key_Return);
    EXPECT_FALSE(strip->isVisible());
}

TEST_F(Strip, ItsLastButtonDismisses)
{
    strip->ShowMessage(kLight, {QStringLiteral("light"), {}});
    strip->ShowMessage(kHeavy, {QStringLiteral("heavy"), {}});
    QTest::mouseClick(strip->findChild<QToolButton*>(), Qt::LeftButton);
    EXPECT_EQ(Text(), QStringLiteral("light"));
    EXPECT_FALSE(strip->HasMessage(kHeavy));
}

TEST_F(Strip, IsNamedForScreenReadersByWhatIsSeen)
{
    strip->ShowMessage(kHeavy, {QStringLiteral("heavy"), {}});
    strip->ShowMessage(kLight, {QStringLiteral("light"), {}});
    const QAccessibleInterface* access = QAccessible::queryAccessibleInterface(strip);
    EXPECT_EQ(access->text(QAccessible::Name), QStringLiteral("heavy"));
    strip->Withdraw(kHeavy);
    EXPECT_EQ(access->text(QAccessible::Name), QStringLiteral("light"));
}

TEST_F(Strip, WithdrawingWhatItDoesNotSayChangesNothing)
{
    strip->ShowMessage(kLight, {QStringLiteral("light"), {}});
    strip->Withdraw(kHeavy);
    EXPECT_EQ(Text(), QStringLiteral("light"));
}

} // namespace
