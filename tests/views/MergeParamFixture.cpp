#include "tests/views/MergeParamFixture.h"

#include "tests/support/GuiTest.h"

#include <QTest>

void MergeParam::SetUp()
{
    WriteAll(folder / "first.rcp", firstBytes);
    WriteAll(folder / "second.rcp", secondBytes);
    dialog = std::make_unique<CMergeParamDlg>(folder / "vantor", reporter);
    ASSERT_TRUE(ShowActive(*dialog));
}

std::map<QString, QString> MergeParam::Fields() const
{
    std::map<QString, QString> texts;
    for (const auto* field : dialog->findChildren<QLineEdit*>())
        texts[field->objectName()] = field->text();
    return texts;
}

void MergeParam::Answer(const QString& button, const CModalAnswer::Action& action, const QString& title)
{
    const CModalAnswer answer({action});
    ClickOn(*dialog, button);
    EXPECT_EQ(answer.titles, std::vector<QString>{title});
    EXPECT_TRUE(ShowActive(*dialog)); // the offscreen platform does not do it after a dialog
}

void MergeParam::ChooseMerged(const QString& name)
{
    const auto typeName = [&](QWidget& savePath) {
        TypeInto(savePath, "editName", name);
        QTest::keyClick(savePath.focusWidget(), Qt::Key_Return);
    };
    Answer("buttonMergedPath", typeName, "Save Path Dialog");
}

void MergeParam::ChooseAll()
{
    ChooseFirst("first.rcp");
    ChooseSecond("second.rcp");
    ChooseMerged("merged");
    Type("editFirstReadStart", "2");
    Type("editFirstLength", "3");
    Type("editSecondLength", "1");
    Type("editSecondPlace", "5");
}

void MergeParam::ExpectStaysOpen(const std::u16string& message, const std::map<QString, QString>& fields)
{
    EXPECT_EQ(PathLook(reporter.shown), PathLook(std::vector<std::u16string>{message}));
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(Fields(), fields);
}

void MergeParam::ExpectClosedWithOk() const
{
    EXPECT_TRUE(reporter.shown.empty());
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
}

void MergeParam::ExpectMerged(std::size_t size, Bytes bytes) const
{
    bytes.resize(size);
    EXPECT_EQ(ReadAll(folder / "merged.rcp"), bytes);
}
