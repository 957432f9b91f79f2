// The table written for other programs.

#include "recovery/VersionStore.h"
#include "tests/app/SaveFixture.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QTest>

namespace fs = std::filesystem;

namespace {

struct ExportTable : SaveFixture {
    void Export(std::vector<CModalAnswer::Action> actions)
    {
        const CModalAnswer answer(std::move(actions));
        Trigger(*frame, "actionExportTable");
        Activate();
        titles = answer.titles;
        texts = answer.texts;
    }

    /// By keys.
    static void ChooseIn(const QWidget& dialog, const QString& name, int index)
    {
        auto& combo = FindIn<QComboBox>(dialog, name);
        QTest::keyClick(&combo, Qt::Key_Home);
        for (int i = 0; i < index; ++i)
            QTest::keyClick(&combo, Qt::Key_Down);
        EXPECT_EQ(combo.currentIndex(), index);
    }

    static CModalAnswer::Action Choose(int rows, int separator, int numbers, int units)
    {
        return [=](QWidget& dialog) {
            ChooseIn(dialog, "comboRows", rows);
            ChooseIn(dialog, "comboSeparator", separator);
            ChooseIn(dialog, "comboNumbers", numbers);
            ChooseIn(dialog, "comboUnits", units);
            QTest::keyClick(&dialog, Qt::Key_Return);
        };
    }

    std::string Written(const std::string& name) const
    {
        const Bytes bytes = ReadAll(folder / name);
        return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
    }

    std::vector<QString> titles; ///< of what came up
    std::vector<QString> texts;
};

} // namespace

TEST_F(ExportTable, WritesWhatIsShownInTheChosenForm)
{
    TypeIntoCell(1, kName, "a;");
    Export({Choose(0, 0, 1, 1), ChoosePath(Path("t.csv"))});
    EXPECT_EQ(titles, (std::vector<QString>{"Export table", "Export table"}));
    EXPECT_EQ(Written("t.csv"), "\xEF\xBB\xBF"
                                "Belt;Steam;Name\r\n"
                                "1,50;2,5;\"a;\"\r\n0,75;25,0;EFGH\r\n2,00;1,5;IJKL\r\n0,50;3,0;MNOP\r\n");
    EXPECT_EQ(Told(), "4 rows were written: " + QDir::toNativeSeparators(Path("t.csv")));
    EXPECT_TRUE(IsModified()) << "it is no save";
    EXPECT_EQ(Oven(), oven);
}

TEST_F(ExportTable, ShowsHowTheFileBegins)
{
    Export({[](QWidget& dialog) {
        ChooseIn(dialog, "comboSeparator", 2);
        ChooseIn(dialog, "comboNumbers", 0);
        ClickOn(dialog, "checkPlaces");
        EXPECT_EQ(FindIn<QLabel>(dialog, "labelLines").text().trimmed(),
                  "ID→RW_Addr→Belt→Steam→Name\n1→RW0→1.50→2.5→ABCD\n2→RW5→0.75→25.0→EFGH");
        QTest::keyClick(&dialog, Qt::Key_Escape);
    }});
    EXPECT_EQ(titles.size(), 1U);
}

TEST_F(ExportTable, OffersTheRowsThatAreChosen)
{
    ClickCell(2, kBelt);
    Export({[](QWidget& dialog) {
                const auto& rows = FindIn<QComboBox>(dialog, "comboRows");
                EXPECT_EQ(rows.itemText(0), "All 4 rows");
                EXPECT_EQ(rows.itemText(1), "The 1 row with chosen cells");
                Choose(1, 1, 0, 0)(dialog);
            },
            ChoosePath(Path("t"))});
    EXPECT_EQ(Written("t.csv"), "\xEF\xBB\xBF"
                                "Belt,Steam,Name\r\n0.75,25.0,EFGH\r\n");
    EXPECT_EQ(Told(), "1 row was written: " + QDir::toNativeSeparators(Path("t.csv")));
}

TEST_F(ExportTable, OffersTheRowsThatAreShownFirst)
{
    TypeIntoCell(3, kSteam, "9.5");
    {
        const CModalAnswer answer({[](QWidget& dialog) {
            ChooseIn(dialog, "comboCondition", 6);
            EXPECT_EQ(FindIn<QComboBox>(dialog, "comboCondition").currentText(), "is edited");
            QTest::keyClick(&dialog, Qt::Key_Return);
        }});
        Trigger(*frame, "actionShowRows");
    }
    Activate();
    Export({[](QWidget& dialog) {
                const auto& rows = FindIn<QComboBox>(dialog, "comboRows");
                EXPECT_EQ(rows.itemText(0), "The 1 row shown");
                EXPECT_EQ(rows.itemText(1), "All 4 rows");
                Choose(0, 1, 0, 0)(dialog);
            },
            ChoosePath(Path("t.csv"))});
    EXPECT_TRUE(Written("t.csv").ends_with("2.00,9.5,IJKL\r\n")) << Written("t.csv");
}

TEST_F(ExportTable, IsOffWithoutATable)
{
    EXPECT_TRUE(Action("actionExportTable").isEnabled());
    fs::copy_file(folder / "oven.rcp", folder / "oven.xyz");
    frame->OpenPath(Path("oven.xyz")); // shows nothing
    EXPECT_FALSE(Action("actionExportTable").isEnabled());
}

TEST_F(ExportTable, RefusesTheOpenFile)
{
    Export({Choose(0, 0, 0, 0), ChoosePath(Path("oven.rcp")), CModalAnswer::Press(QMessageBox::Yes),
            CModalAnswer::Press(QMessageBox::Ok)});
    EXPECT_EQ(texts.back(), Path("oven.rcp") + " is the open file. A table for other programs needs another name!");
    EXPECT_EQ(Oven(), oven);
}

TEST_F(ExportTable, KeepsWhatItWritesOver)
{
    const CVersionStore store(folder / "data");
    frame->KeepIn(store.DataFolder());
    WriteAll(folder / "t.csv", Bytes(5));
    Export({Choose(0, 0, 0, 0), ChoosePath(Path("t.csv")), CModalAnswer::Press(QMessageBox::Yes)});
    EXPECT_GT(Written("t.csv").size(), 5U);
    EXPECT_EQ(store.List(folder / "t.csv").size(), 1U);
}
