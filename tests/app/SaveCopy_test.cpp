// "Save a copy": a file as a save would leave it, while what is open stays.

#include "tests/app/SaveFixture.h"

#include <QComboBox>
#include <QLineEdit>
#include <QTest>

namespace fs = std::filesystem;

namespace {

struct SaveCopy : SaveFixture {
    void SetUp() override
    {
        SaveFixture::SetUp();
        TypeIntoCell(2, kBelt, "0.80");
    }

    /// Answers the dialog, and what comes after it, so. What came up is in `shown`.
    void Copy(std::vector<CModalAnswer::Action> answers)
    {
        const CModalAnswer answer(std::move(answers));
        Trigger(*frame, "actionSaveCopy");
        shown = answer.texts;
        Activate();
    }

    void ExpectNothingChanged()
    {
        EXPECT_EQ(Oven(), oven);
        EXPECT_EQ(Title(), TitleWith("oven.rcp"));
        EXPECT_TRUE(IsModified());
        EXPECT_EQ(frame->Document().Path(), folder / "oven.rcp");
        EXPECT_EQ(NextUndo(), "Typing");
        EXPECT_EQ(Field(), "1 edited, 3 others change");
        EXPECT_EQ(Strip(), "");
    }

    std::vector<QString> shown;
};

} // namespace

TEST_F(SaveCopy, IsWhatASaveWouldLeave)
{
    Copy({ChoosePath(Path("copy.rcp"))});
    EXPECT_EQ(shown, std::vector<QString>{"Save a copy"});
    EXPECT_EQ(Told(), "A copy was saved: " + Path("copy.rcp"));
    ExpectNothingChanged();
    Grid().setFocus();
    Save();
    EXPECT_EQ(ReadAll(folder / "copy.rcp"), Oven());
}

TEST_F(SaveCopy, IsProposedBesideTheFileAndOfItsType)
{
    WriteAll(folder / "t.frp", Bytes(65536));
    OpenByDialog("t.frp");
    std::string proposed;
    Copy({[&](QWidget& dialog) {
        proposed = TextIn(dialog, "fileNameEdit");
        EXPECT_EQ(FindIn<QComboBox>(dialog, "fileTypeCombo").currentText(), "(*.frp)");
        QTest::keyClick(&FindIn<QLineEdit>(dialog, "fileNameEdit"), Qt::Key_Return);
    }});
    EXPECT_EQ(proposed, "t copy");
    EXPECT_EQ(ReadAll(folder / "t copy.frp"), ReadAll(folder / "t.frp"));
}

TEST_F(SaveCopy, OfANameWithADotIsProposedWithItsEnding)
{
    WriteOven("line 1.5.rcp");
    OpenByDialog("line 1.5.rcp");
    Copy({[](QWidget& dialog) { QTest::keyClick(&FindIn<QLineEdit>(dialog, "fileNameEdit"), Qt::Key_Return); }});
    EXPECT_TRUE(fs::exists(folder / "line 1.5 copy.rcp"));
}

TEST_F(SaveCopy, OfAnotherTypeHoldsTheRows)
{
    Copy({ChoosePath(Path("copy.csv"))});
    ExpectNothingChanged();
    OpenByDialog("copy.csv");
    EXPECT_EQ(Grid().GetItemText(2, kBelt), "0.80");
}

TEST_F(SaveCopy, TakesThePlaceOfAnotherFile)
{
    WriteAll(folder / "copy.rcp", Bytes(3));
    Copy({ChoosePath(Path("copy.rcp")), CModalAnswer::Press(QMessageBox::Yes)});
    ExpectNothingChanged();
    EXPECT_EQ(fs::file_size(folder / "copy.rcp"), oven.size());
}

TEST_F(SaveCopy, OntoItselfIsRefused)
{
    Copy({ChoosePath(Path("oven.rcp")), CModalAnswer::Press(QMessageBox::Yes), CModalAnswer::Press(QMessageBox::Ok)});
    ASSERT_EQ(shown.size(), 3u);
    EXPECT_EQ(shown.back(), Path("oven.rcp") + " is the open file. A copy needs another name!");
    ExpectNothingChanged();
}

TEST_F(SaveCopy, OntoItselfByALinkIsRefused)
{
    fs::create_symlink(folder / "oven.rcp", folder / "link.rcp");
    Copy({ChoosePath(Path("link.rcp")), CModalAnswer::Press(QMessageBox::Yes), CModalAnswer::Press(QMessageBox::Ok)});
    EXPECT_EQ(shown.back(), Path("link.rcp") + " is the open file. A copy needs another name!");
    ExpectNothingChanged();
}

TEST_F(SaveCopy, WithAnUnknownEndingIsRefused)
{
    Copy({ChoosePath(Path("copy.txt")), CModalAnswer::Press(QMessageBox::Ok)});
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_TRUE(shown.back().contains("copy.txt"));
    EXPECT_FALSE(fs::exists(folder / "copy.txt"));
    ExpectNothingChanged();
}

TEST_F(SaveCopy, CancelledDoesNothing)
{
    Copy({CancelDialog()});
    EXPECT_EQ(shown.size(), 1u);
    EXPECT_FALSE(Told().contains("copy"));
    ExpectNothingChanged();
}

TEST_F(SaveCopy, IntoAFolderThatIsNotThereFailsAndIsReported)
{
    Copy({ChoosePath(Path("gone/copy.rcp")), CModalAnswer::Press(QMessageBox::Ok)});
    EXPECT_GE(shown.size(), 2u);
    EXPECT_FALSE(Told().contains("copy"));
    ExpectNothingChanged();
}

TEST_F(SaveCopy, OfANewDocumentLeavesItNew)
{
    Save();
    Key(Qt::Key_N, Qt::ControlModifier);
    TypeIntoCell(1, kBelt, "1.50");
    Copy({ChoosePath(Path("copy.rcp"))});
    EXPECT_EQ(ReadAll(folder / "copy.rcp").at(0), std::byte{150});
    EXPECT_TRUE(frame->Document().IsNew());
    EXPECT_TRUE(IsModified());
}

TEST_F(SaveCopy, EndsAnOpenEditFirst)
{
    ClickCell(3, kBelt);
    Key(Qt::Key_F2);
    QTest::keyClick(frame->focusWidget(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(frame->focusWidget(), "123.45");
    Copy({CModalAnswer::Press(QMessageBox::Ok)});
    EXPECT_EQ(shown, std::vector<QString>{"Col 3,Row 2 data error !"}) << "a refused text stops the command";
}
