// "Save edited only": the words, or fields, of edited cells and no other byte, and a save in every other respect.

#include "tests/app/SaveFixture.h"
#include "tests/files/OrdinaryUser.h"
#include "views/TextCrossing.h"

#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTest>

namespace fs = std::filesystem;

namespace {

struct EditedOnly : SaveFixture {
    QString Entry() { return Action("actionSaveEdited").text(); }
    bool IsOn() { return Action("actionSaveEdited").isEnabled(); }
    QString SaveError() const { return "Can't save file " + Path("oven.rcp") + ",please check file or your disk!"; }
};

/// As Save writes it; the lines after the fourth are not shown.
constexpr std::u16string_view kOwnForm =
    u"\"1.50\"\t\"2.5\"\tAB\r\n\"0.75\"\t\"25.04\"\tCD\r\n\"2.00\"\t\"1.5\"\tEF\r\n"
    u"\"0.50\"\t\"3.0\"\tGH\r\n\"not\"\t\"shown\"\r\nat all\r\n";

struct OfWords : EditedOnly, testing::WithParamInterface<const char*> {
    /// A file of that type with the oven's words at its beginning.
    Bytes Content() const
    {
        Bytes bytes = oven;
        const std::string type = GetParam();
        if (type != "b.rcp")
            bytes.resize(type == "t.frp" ? 65536 : 131072);
        return bytes;
    }
};

INSTANTIATE_TEST_SUITE_P(Types, OfWords, testing::Values("b.rcp", "t.erp", "t.frp"),
                         [](const auto& c) { return std::string(c.param).substr(2); });

} // namespace

TEST_P(OfWords, ChangesTheirWordsAndNoOtherByte)
{
    const Bytes before = Content();
    WriteAll(folder / GetParam(), before);
    OpenByDialog(GetParam());
    TypeIntoCell(2, kBelt, "0.80");
    TypeIntoCell(3, kName, "XY");
    SaveEditedOnly();
    Bytes expected = before;
    expected[2 * 5] = std::byte{80};
    for (std::size_t i = 0; i < 4; ++i)
        expected[2 * 13 + i] = i < 2 ? std::byte(i == 0 ? 'X' : 'Y') : std::byte{0};
    EXPECT_EQ(ReadAll(folder / GetParam()), expected);
    EXPECT_FALSE(IsModified());
    EXPECT_FALSE(Marks(2, kBelt).changed);
    EXPECT_EQ(Field(), "0 edited, 3 others change");
    SaveEditedOnly(); // there is nothing more
    EXPECT_EQ(ReadAll(folder / GetParam()), expected);
}

TEST_F(EditedOnly, OfATableChangesTheirFieldsAndNoOtherByte)
{
    WriteAll(folder / "t.csv", Utf16File(kOwnForm));
    OpenByDialog("t.csv");
    WaitForPlan();
    EXPECT_EQ(Entry(), "Save edited only");
    TypeIntoCell(2, kBelt, "0.80");
    TypeIntoCell(3, kName, "XY");
    SaveEditedOnly();
    std::u16string expected(kOwnForm);
    expected.replace(expected.find(u"0.75"), 4, u"0.80");
    expected.replace(expected.find(u"EF"), 2, u"XY");
    EXPECT_EQ(ReadAll(folder / "t.csv"), Utf16File(expected));
    EXPECT_FALSE(IsModified());
}

TEST_F(EditedOnly, OfATableInAnotherFormIsOffAndSaysWhy)
{
    const Bytes before = BytesOf({'1', ',', '2', ',', 'x', '\r', '\n', '3', '\r', '\n'});
    WriteAll(folder / "t.csv", before);
    OpenByDialog("t.csv");
    WaitForPlan();
    EXPECT_FALSE(IsOn());
    EXPECT_EQ(Entry(), "Save edited only (not this file: it is not UTF-16 text)");
    TypeIntoCell(1, kBelt, "9");
    Find<QPushButton>("buttonRefreshData").setFocus();
    SaveEditedOnly();
    EXPECT_EQ(ReadAll(folder / "t.csv"), before);
    EXPECT_TRUE(IsModified());
    OpenByDialog("oven.rcp"); // the table is saved, silently and in full
    EXPECT_TRUE(IsOn());
    EXPECT_EQ(Entry(), "Save edited only");
}

/// Before the file was looked at the command is on; it says why it cannot.
TEST_F(EditedOnly, OfATableInAnotherFormIsRefusedBeforeThatIsKnown)
{
    std::string table;
    for (int i = 0; i < 200'000; ++i)
        table += "1,2,x\r\n";
    WriteAll(folder / "t.csv", std::as_bytes(std::span(table)));
    Open("t.csv");
    TypeIntoCell(1, kBelt, "9");
    ASSERT_TRUE(IsOn());
    QString told;
    const CModalAnswer answer({[&told](QWidget& dialog) { // how far it is may be shown before
        const auto* box = qobject_cast<QMessageBox*>(&dialog);
        if (box == nullptr)
            return;
        told = box->text();
        CModalAnswer::Press(QMessageBox::Ok)(dialog);
    }});
    SaveEditedOnly();
    EXPECT_TRUE(told.contains("it is not UTF-16 text")) << told.toStdString();
    EXPECT_EQ(fs::file_size(folder / "t.csv"), table.size());
    EXPECT_TRUE(IsModified());
}

TEST_F(EditedOnly, IsOffForANewDocumentAndWithNothingOpen)
{
    Key(Qt::Key_N, Qt::ControlModifier);
    EXPECT_FALSE(IsOn());
    frame.reset();
    Start();
    EXPECT_FALSE(IsOn());
}

TEST_F(EditedOnly, StandsInTheFileMenu)
{
    TypeIntoCell(2, kBelt, "0.80");
    auto& bar = Find<QMenuBar>("menuBar");
    auto& menu = Find<QMenu>("menuFile");
    QTest::mouseClick(&bar, Qt::LeftButton, {}, bar.actionGeometry(menu.menuAction()).center());
    EXPECT_TRUE(WaitFor([&menu] { return menu.isVisible(); }));
    QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(&Action("actionSaveEdited")).center());
    EXPECT_EQ(Oven(), OvenWith({{5, 80}}));
}

TEST_F(EditedOnly, CountsAsASave)
{
    TypeIntoCell(2, kBelt, "0.80");
    SaveEditedOnly();
    EXPECT_EQ(Oven(), OvenWith({{5, 80}}));
    EXPECT_EQ(Title(), TitleWith("oven.rcp"));
    EXPECT_EQ(Strip(), "");
    OpenByDialog("a.rcp");
    EXPECT_EQ(Oven(), OvenWith({{5, 80}})) << "Open does not save again";
    OpenByDialog("oven.rcp");
    TypeIntoCell(2, kBelt, "0.90");
    SaveEditedOnly();
    Key(Qt::Key_N, Qt::ControlModifier);
    EXPECT_EQ(Oven(), OvenWith({{5, 90}})) << "neither does New";
}

TEST_F(EditedOnly, LeavesNothingToAskForAtClosing)
{
    TypeIntoCell(2, kBelt, "0.80");
    SaveEditedOnly();
    EXPECT_FALSE(ClosingAsks());
    EXPECT_EQ(Oven(), OvenWith({{5, 80}}));
}

TEST_F(EditedOnly, IsUndonePastIt)
{
    TypeIntoCell(2, kBelt, "0.80");
    SaveEditedOnly();
    Undo();
    EXPECT_TRUE(IsModified());
    EXPECT_EQ(Field(), "1 edited, 3 others change");
    SaveEditedOnly();
    EXPECT_EQ(Oven(), oven);
}

TEST_F(EditedOnly, TakesTheTextOfAnOpenEditorOrStopsWithIt)
{
    const auto typeIntoEditor = [this](int row, const QString& text) {
        ClickCell(row, kBelt);
        Key(Qt::Key_F2);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(QApplication::focusWidget(), text);
    };
    typeIntoEditor(2, "0.80");
    SaveEditedOnly();
    EXPECT_EQ(Oven(), OvenWith({{5, 80}}));
    Grid().setFocus();
    typeIntoEditor(3, "123.45");
    const CModalAnswer answer(QMessageBox::Ok);
    SaveEditedOnly();
    EXPECT_EQ(answer.texts, std::vector<QString>{"Col 3,Row 2 data error !"});
    EXPECT_EQ(Oven(), OvenWith({{5, 80}}));
}

TEST_F(EditedOnly, ZerosUpToAnEditedCellPastTheEndAndPlansIt)
{
    WriteAll(folder / "short.rcp", WordBytes({150, 0x0000, 0x4020, 0x4241, 0x4443}));
    OpenByDialog("short.rcp");
    EXPECT_EQ(Field(), "0 edited, 9 others change") << "what lies past the end";
    TypeIntoCell(3, kBelt, "0.80");
    SaveEditedOnly();
    EXPECT_EQ(ReadAll(folder / "short.rcp"), WordBytes({150, 0x0000, 0x4020, 0x4241, 0x4443, 0, 0, 0, 0, 0, 80}));
    EXPECT_EQ(Field(), "0 edited, 5 others change");
}

TEST_F(EditedOnly, OfAMissingFileMakesNone)
{
    TypeIntoCell(2, kBelt, "0.80");
    fs::remove(folder / "oven.rcp");
    {
        const CModalAnswer answer(QMessageBox::Ok);
        SaveEditedOnly();
        EXPECT_EQ(answer.texts, std::vector<QString>{SaveError()});
    }
    EXPECT_FALSE(fs::exists(folder / "oven.rcp"));
    EXPECT_TRUE(IsModified());
    EXPECT_TRUE(Marks(2, kBelt).changed);
}

TEST_F(EditedOnly, OfAProtectedFileFailsAndKeepsTheEdits)
{
    TypeIntoCell(2, kBelt, "0.80");
    MakeReadOnly(folder / "oven.rcp");
    const COrdinaryUser user;
    {
        const CModalAnswer answer(QMessageBox::Ok);
        SaveEditedOnly();
        EXPECT_EQ(answer.texts, std::vector<QString>{SaveError()});
    }
    EXPECT_EQ(Oven(), oven);
    EXPECT_TRUE(IsModified());
    EXPECT_EQ(Field(), "1 edited, 3 others change");
}

TEST_F(EditedOnly, OfAMissingPagedFileIsLeftOutAndSaysSo)
{
    WriteAll(folder / "t.frp", Bytes(65536));
    OpenByDialog("t.frp");
    TypeIntoCell(2, kBelt, "0.80");
    fs::remove(folder / "t.frp");
    SaveEditedOnly();
    EXPECT_EQ(Strip(), "t.frp is gone: your changes are not saved.");
    EXPECT_TRUE(IsModified());
    EXPECT_FALSE(fs::exists(folder / "t.frp"));
}
