#include "controls/FocusComboBox.h"
#include "tests/support/GuiTest.h"

#include <QLineEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>
#include <gtest/gtest.h>

namespace {

/// A combo box below a field, both on a sheet that is larger than its window.
struct FocusComboBox : testing::Test {
    void SetUp() override
    {
        auto* sheet = new QWidget;
        auto* layout = new QVBoxLayout(sheet);
        sheet->setMinimumHeight(2000);
        layout->addWidget(field);
        layout->addWidget(box);
        box->addItems({"one", "two", "three", "four"});
        area.setWidget(sheet);
        area.resize(300, 1500);
        ASSERT_TRUE(ShowActive(area));
        field->setFocus();
    }

    QScrollArea area;
    QLineEdit* field = new QLineEdit;
    CFocusComboBox* box = new CFocusComboBox;
};

TEST_F(FocusComboBox, TheWheelScrollsWhatIsAroundItWithoutTheFocus)
{
    TurnWheel(*box, 1);
    EXPECT_EQ(box->currentText(), QString("one"));
    EXPECT_EQ(area.focusWidget(), field);
    EXPECT_GT(area.verticalScrollBar()->value(), 0);
    TurnWheel(*box, -1);
    EXPECT_EQ(area.verticalScrollBar()->value(), 0);
}

TEST_F(FocusComboBox, TheWheelChoosesWithTheFocus)
{
    box->setFocus();
    TurnWheel(*box, 1);
    EXPECT_EQ(box->currentText(), QString("two"));
    EXPECT_EQ(area.verticalScrollBar()->value(), 0);
}

TEST_F(FocusComboBox, AClickAndTabGiveItTheFocusAndTheWheelDoesNot)
{
    EXPECT_EQ(box->focusPolicy(), Qt::StrongFocus);
}

} // namespace
