#include "tests/support/GuiTest.h"
#include "tests/support/ModalAnswer.h"
#include "views/MessageBoxReporter.h"
#include "views/TextCrossing.h"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QTest>
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

QString WithoutBreaks(QString text)
{
    return text.remove(QChar(0x200B));
}

TEST_F(MessageBoxReporter, ShowsATextAsItStands)
{
    const QString text("Can't open <b>file</b> /home/a folder/with/a/long/path/of/many/short/names/in/it/a&b.rcp");
    Show(text, [&](const QMessageBox& box) { EXPECT_EQ(box.text(), text); });
}

TEST_F(MessageBoxReporter, ALongNameIsNotCutOff)
{
    Show(kLongName, [](const QMessageBox& box) {
        EXPECT_EQ(WithoutBreaks(box.text()), kLongName);
        const auto* label = box.findChild<QLabel*>("qt_msgbox_label");
        ASSERT_NE(label, nullptr);
        const QRect room = label->contentsRect();
        const QRect needed = label->fontMetrics().boundingRect(room, Qt::TextWordWrap, label->text());
        EXPECT_LE(needed.width(), room.width());
        EXPECT_LE(needed.height(), room.height());
        EXPECT_LE(box.width(), box.screen()->availableSize().width());
    });
}

TEST_F(MessageBoxReporter, ALongNameIsBrokenBetweenCharactersOnly)
{
    QString name;
    for (int i = 0; i < 100; ++i)
        name += QString::fromUtf8("e\xCC\x81\xF0\x9D\x94\xB8"); // a letter with an accent of its own, one of two units
    Show(name, [&](const QMessageBox& box) {
        const QString text = box.text();
        EXPECT_EQ(WithoutBreaks(text), name);
        ASSERT_TRUE(text.contains(QChar(0x200B)));
        for (qsizetype i = 1; i < text.size(); ++i)
            if (text[i - 1] == QChar(0x200B)) {
                EXPECT_FALSE(text[i].isLowSurrogate() || text[i] == QChar(0x301));
            }
    });
}

TEST_F(MessageBoxReporter, CopiesItsTextAsItWasGiven)
{
    Show(kLongName, [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_C, Qt::ControlModifier); });
    EXPECT_EQ(QApplication::clipboard()->text(), kLongName);
}

TEST_F(MessageBoxReporter, EscapeAnswersNo)
{
    const CModalAnswer answer({CModalAnswer::Key(Qt::Key_Escape)});
    EXPECT_FALSE(reporter.AskYesNo(u"Overwrite?"));
}

} // namespace
