#include "tests/support/DialogSteps.h"
#include "tests/support/GuiTest.h"
#include "tests/support/ModalAnswer.h"
#include "views/MessageBoxReporter.h"
#include "views/MessageLabel.h"
#include "views/TextCrossing.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <gtest/gtest.h>

#include <functional>

namespace {

const QString kLongName = "Can't open file /home/" + QString(250, 'W') + "/a.rcp,please check it!";

struct MessageBoxReporter : testing::Test {
    void SetUp() override { ASSERT_TRUE(ShowActive(window)); }

    /// Shows `text` and looks at its box before it is answered.
    void Show(const QString& text, const std::function<void(QMessageBox&)>& look)
    {
        const CModalAnswer answer({[&](QWidget& dialog) {
            look(static_cast<QMessageBox&>(dialog));
            CModalAnswer::Press(QMessageBox::Ok)(dialog);
        }});
        reporter.ShowError(ViewOf(text));
        EXPECT_EQ(answer.titles, std::vector<QString>{QApplication::applicationName()});
    }

    QWidget window;
    CMessageBoxReporter reporter{window};
};

CMessageLabel& LabelOf(const QMessageBox& box)
{
    return FindIn<CMessageLabel>(box, "labelMessage");
}

void PressKeys(QWidget& widget, std::initializer_list<Qt::Key> keys)
{
    for (const Qt::Key key : keys)
        QTest::keyClick(&widget, key, Qt::ControlModifier);
}

/// The places where the label's lines begin.
std::vector<int> LineStarts(const CMessageLabel& label)
{
    std::vector<int> starts;
    for (QTextBlock block = label.document()->begin(); block.isValid(); block = block.next())
        for (int line = 0; line < block.layout()->lineCount(); ++line)
            starts.push_back(block.position() + block.layout()->lineAt(line).textStart());
    return starts;
}

TEST_F(MessageBoxReporter, SaysWhatElseThereIsToSayBelowTheText)
{
    const CModalAnswer answer({[&](QWidget& dialog) {
        auto& box = static_cast<QMessageBox&>(dialog);
        EXPECT_EQ(box.text(), "Col 5,Row 3 data error !");
        EXPECT_EQ(box.informativeText(), "3 of 40 values were refused.");
        EXPECT_EQ(LabelOf(box).toPlainText(), "Col 5,Row 3 data error !");
        auto& further = FindIn<QLabel>(box, "qt_msgbox_informativelabel");
        EXPECT_TRUE(further.isVisible());
        EXPECT_EQ(further.text(), "3 of 40 values were refused.");
        EXPECT_GT(further.y(), LabelOf(box).y());
        PressKeys(box, {Qt::Key_C});
        EXPECT_EQ(QApplication::clipboard()->text(), "Col 5,Row 3 data error !\n3 of 40 values were refused.");
        CModalAnswer::Press(QMessageBox::Ok)(dialog);
    }});
    reporter.ShowErrorWith(u"Col 5,Row 3 data error !", u"3 of 40 values were refused.");
    EXPECT_EQ(answer.texts.size(), 1u);
}

TEST_F(MessageBoxReporter, ShowsATextAsItStands)
{
    const QString text("Can't open <b>file</b> /home/a folder/with/a/long/path/of/many/short/names/in/it/a&b.rcp");
    Show(text, [&](const QMessageBox& box) {
        EXPECT_EQ(box.text(), text);
        EXPECT_EQ(LabelOf(box).toPlainText(), text);
        EXPECT_TRUE(LabelOf(box).isVisible());
        for (const auto* label : box.findChildren<QLabel*>())
            EXPECT_FALSE(label->isVisible() && label->text() == text); // not twice
    });
}

TEST_F(MessageBoxReporter, AShortTextTakesOneLine)
{
    Show("No room!", [](const QMessageBox& box) {
        EXPECT_EQ(LineStarts(LabelOf(box)).size(), 1u);
        EXPECT_LE(LabelOf(box).height(), 2 * box.fontMetrics().lineSpacing());
    });
}

struct LengthCase {
    const char* name;
    QString text;
    bool scrolls;
    friend void PrintTo(const LengthCase& c, std::ostream* out) { *out << c.name; }
};
struct LongMessage : MessageBoxReporter, testing::WithParamInterface<LengthCase> {};

TEST_P(LongMessage, IsNotCutOffAndStaysOnTheScreen)
{
    Show(GetParam().text, [](const QMessageBox& box) {
        EXPECT_EQ(box.text(), GetParam().text);
        const CMessageLabel& label = LabelOf(box);
        for (QTextBlock block = label.document()->begin(); block.isValid(); block = block.next())
            for (int line = 0; line < block.layout()->lineCount(); ++line)
                EXPECT_LE(block.layout()->lineAt(line).naturalTextWidth(), label.viewport()->width());
        EXPECT_EQ(label.verticalScrollBar()->maximum() > 0, GetParam().scrolls);
        EXPECT_TRUE(box.rect().contains(QRect(label.mapTo(&box, QPoint()), label.size())));
        const QSize screen = box.screen()->availableSize();
        EXPECT_LE(box.width(), screen.width());
        EXPECT_LE(box.height(), screen.height());
        for (const auto* button : box.findChildren<QPushButton*>())
            EXPECT_TRUE(box.rect().contains(button->geometry()));
    });
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Lengths, LongMessage, testing::Values(
    LengthCase{"Name",       kLongName,                                               false},
    LengthCase{"Path",       "Can't open /" + QString(4000, 'x') + ".rcp!",           true },
    LengthCase{"WidePath",   "Can't open /" + QString(4000, 'W') + ".rcp!",           true },
    LengthCase{"Words",      QString("short words ").repeated(400),                   true },
    LengthCase{"Lines",      QString("a line\n").repeated(200),                       true }),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(MessageBoxReporter, ALongNameIsBrokenBetweenCharactersOnly)
{
    QString name;
    for (int i = 0; i < 100; ++i)
        name += QString::fromUtf8("e\xCC\x81\xF0\x9D\x94\xB8"); // a letter with an accent of its own, one of two units
    Show(name, [&](const QMessageBox& box) {
        const std::vector<int> starts = LineStarts(LabelOf(box));
        ASSERT_GT(starts.size(), 1u);
        for (const int start : starts)
            EXPECT_FALSE(name[start].isLowSurrogate() || name[start] == QChar(0x301)) << start;
    });
}

TEST_F(MessageBoxReporter, CopiesItsTextAsItWasGiven)
{
    Show(kLongName, [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_C, Qt::ControlModifier); });
    EXPECT_EQ(QApplication::clipboard()->text(), kLongName);
}

TEST_F(MessageBoxReporter, ASelectedPathIsCopiedExactly)
{
    const QString path =
        "/home/" + QString::fromUtf8("a\u00A0b\u2028c\u2029d\r\ne\tf\uFDD0 ") + QString(4000, 'x') + ".rcp";
    Show("Can't open file " + path, [&](const QMessageBox& box) {
        CMessageLabel& label = LabelOf(box);
        QTest::mouseClick(label.viewport(), Qt::LeftButton, {}, QPoint(5, 5));
        PressKeys(label, {Qt::Key_A, Qt::Key_C});
    });
    EXPECT_EQ(QApplication::clipboard()->text(), "Can't open file " + path);

    Show(path + " failed", [&](const QMessageBox& box) {
        CMessageLabel& label = LabelOf(box);
        QTest::mouseClick(label.viewport(), Qt::LeftButton, {}, QPoint(5, 5));
        QTextCursor cursor = label.textCursor();
        cursor.setPosition(0);
        cursor.setPosition(static_cast<int>(path.size()), QTextCursor::KeepAnchor);
        label.setTextCursor(cursor);
        PressKeys(label, {Qt::Key_C});
    });
    EXPECT_EQ(QApplication::clipboard()->text(), path);
}

TEST_F(MessageBoxReporter, AWordIsSelectedWithTheMouse)
{
    Show("Refused!", [](const QMessageBox& box) {
        CMessageLabel& label = LabelOf(box);
        QTest::mouseDClick(label.viewport(), Qt::LeftButton, {}, QPoint(8, label.height() / 2));
        PressKeys(label, {Qt::Key_C});
    });
    EXPECT_EQ(QApplication::clipboard()->text(), "Refused");
}

TEST_F(MessageBoxReporter, NothingSelectedCopiesAllFromWithinTheText)
{
    Show(kLongName, [](const QMessageBox& box) {
        CMessageLabel& label = LabelOf(box);
        QTest::mouseClick(label.viewport(), Qt::LeftButton, {}, QPoint(5, 5));
        PressKeys(label, {Qt::Key_C});
    });
    EXPECT_EQ(QApplication::clipboard()->text(), kLongName);
}

TEST_F(MessageBoxReporter, EnterAnswersAlsoFromWithinTheText)
{
    const CModalAnswer answer({[](QWidget& dialog) {
        CMessageLabel& label = LabelOf(static_cast<QMessageBox&>(dialog));
        EXPECT_NE(dialog.focusWidget(), &label); // the button has it at first
        QTest::mouseClick(label.viewport(), Qt::LeftButton, {}, QPoint(5, 5));
        EXPECT_EQ(dialog.focusWidget(), &label);
        QTest::keyClick(&label, Qt::Key_Return);
    }});
    reporter.ShowError(u"Refused!");
    EXPECT_EQ(answer.texts.size(), 1u);
}

TEST_F(MessageBoxReporter, ScreenReadersReadItAsALabel)
{
    Show(kLongName, [](const QMessageBox& box) {
        const QAccessibleInterface* label = QAccessible::queryAccessibleInterface(&LabelOf(box));
        ASSERT_NE(label, nullptr);
        EXPECT_EQ(label->role(), QAccessible::StaticText);
        EXPECT_EQ(label->text(QAccessible::Name), kLongName);
    });
}

TEST_F(MessageBoxReporter, EscapeAnswersNo)
{
    const CModalAnswer answer({CModalAnswer::Key(Qt::Key_Escape)});
    EXPECT_FALSE(reporter.AskYesNo(u"Overwrite?"));
}

} // namespace
