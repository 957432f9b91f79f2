#include "controls/ElidedLabel.h"
#include "tests/support/GuiTest.h"

#include <QHelpEvent>
#include <QImage>
#include <QToolTip>
#include <gtest/gtest.h>

namespace {

struct ElidedLabel : testing::Test {
    ElidedLabel()
    {
        label.setIndent(6);
        label.resize(label.sizeHint());
    }
    ~ElidedLabel() override { QToolTip::hideText(); }

    /// What a tool tip says while the mouse rests on the label.
    QString Tip()
    {
        QHelpEvent rest(QEvent::ToolTip, QPoint(1, 1), label.mapToGlobal(QPoint(1, 1)));
        QCoreApplication::sendEvent(&label, &rest);
        return QToolTip::isVisible() ? QToolTip::text() : QString();
    }

    QImage Picture() { return label.grab().toImage(); }

    CElidedLabel label{"What a cell is, and what becomes of it when it is saved <now>"};
};

} // namespace

TEST_F(ElidedLabel, WithRoomIsAPlainLabel)
{
    EXPECT_TRUE(ShowActive(label));
    QLabel plain(label.text());
    plain.setIndent(6);
    plain.resize(label.size());
    EXPECT_FALSE(label.IsCut());
    EXPECT_EQ(Picture(), plain.grab().toImage());
    EXPECT_EQ(Tip(), "");
}

TEST_F(ElidedLabel, WithoutRoomEndsInDotsAndShowsTheWholeInATip)
{
    EXPECT_TRUE(ShowActive(label));
    label.resize(120, label.height());
    EXPECT_TRUE(label.IsCut());
    QLabel expected(label.fontMetrics().elidedText(label.text(), Qt::ElideRight, 114));
    expected.setTextFormat(Qt::PlainText);
    expected.setIndent(6);
    expected.resize(label.size());
    EXPECT_EQ(Picture(), expected.grab().toImage());
    EXPECT_TRUE(expected.text().endsWith(QChar(0x2026)));
    EXPECT_EQ(Tip(), "<p>What a cell is, and what becomes of it when it is saved &lt;now&gt;</p>");
}

TEST_F(ElidedLabel, KeepsATipOfItsOwn)
{
    EXPECT_TRUE(ShowActive(label));
    label.resize(120, label.height());
    label.setToolTip("The whole path");
    EXPECT_EQ(Tip(), "The whole path");
}
