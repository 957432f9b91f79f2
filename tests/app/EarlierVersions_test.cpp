// Earlier versions of the open file and of the data formats, as a user lists them, takes values over and goes back.

#include "disk/File.h"
#include "disk/FileLock.h"
#include "library/FormatLibrary.h"
#include "tests/app/SaveFixture.h"
#include "tests/files/FileSizeLimit.h"
#include "tests/support/Variable.h"
#include "views/ChangesPanel.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

namespace fs = std::filesystem;

namespace {

const QString kTitle = "Earlier versions";

QTableWidget& TableIn(const QWidget& dialog)
{
    return FindIn<QTableWidget>(dialog, "tableVersions");
}

/// Command and count of each version, when all are counted.
QStringList ListedIn(const QWidget& dialog)
{
    const auto& timer = FindIn<QTimer>(dialog, "timerVersions");
    EXPECT_TRUE(WaitFor([&] { return !timer.isActive(); }));
    const QTableWidget& table = TableIn(dialog);
    QStringList rows;
    for (int row = 0; row < table.rowCount(); ++row)
        rows << QStringLiteral("%1 %2").arg(table.item(row, 1)->text(), table.item(row, 2)->text());
    return rows;
}

void ChooseRow(const QWidget& dialog, int row)
{
    QTableWidget& table = TableIn(dialog);
    QTest::mouseClick(table.viewport(), Qt::LeftButton, {}, table.visualItemRect(table.item(row, 0)).center());
}

CModalAnswer::Action PressInRow(int row, const char* button)
{
    return [row, button](QWidget& dialog) {
        ChooseRow(dialog, row);
        ClickOn(dialog, button);
    };
}

/// The dialog goes on to the versions of the data formats.
void GoToFormats(const QWidget& dialog)
{
    auto& files = FindIn<QComboBox>(dialog, "comboFile");
    files.setFocus();
    QTest::keyClick(&files, Qt::Key_Down);
    ASSERT_EQ(files.currentText(), "Data formats");
}

/// The window over "oven.rcp", with versions in a folder of their own.
struct EarlierVersions : SaveFixture {
    void SetUp() override
    {
        SaveFixture::SetUp();
        frame->KeepIn(store.DataFolder());
        Activate();
    }
    void TearDown() override { frame.reset(); } // it keeps versions until then

    /// Types into the row's belt and saves nothing else: the file then has this word there.
    void Change(int row, const QString& text)
    {
        TypeIntoCell(row, kBelt, text);
        SaveEditedOnly();
        ASSERT_FALSE(IsModified());
    }

    /// Two versions: rows 1 and 3 have other belts since the older one, row 3 since the newer one.
    void ChangeTwice()
    {
        Change(1, "1.70");
        Change(3, "2.10");
        ASSERT_EQ(Oven(), changedTwice);
    }

    /// Opens the dialog and does all that with it.
    void InDialog(std::vector<CModalAnswer::Action> actions)
    {
        const CModalAnswer answer(std::move(actions));
        Trigger(*frame, "actionEarlierVersions");
        ASSERT_FALSE(answer.titles.empty());
        EXPECT_EQ(answer.titles.front(), kTitle);
        Activate();
    }

    void Restore(int row) { InDialog({PressInRow(row, "buttonRestore")}); }

    std::vector<Version> Versions(const char* name = "oven.rcp") const { return store.List(folder / name); }

    bool IsEnabled() { return Action("actionEarlierVersions").isEnabled(); }

    CVariable variable{"VANTOR_VERSIONS", nullptr};
    CVersionStore store{folder / "data"};
    const Bytes changedOnce = OvenWith({{0, 170}});
    const Bytes changedTwice = OvenWith({{0, 170}, {10, 210}});
};

TEST_F(EarlierVersions, AreOfTheOpenFile)
{
    EXPECT_TRUE(IsEnabled());
    fs::remove(folder / "oven.rcp");
    EXPECT_TRUE(WaitFor([this] { return !Strip().isEmpty(); }));
    EXPECT_TRUE(IsEnabled());
    Trigger(*frame, "actionNew");
    EXPECT_FALSE(IsEnabled());
}

TEST_F(EarlierVersions, NeedAPlace)
{
    CMainFrame other(folder / "vantor");
    other.OpenPath(Path("oven.rcp"));
    EXPECT_FALSE(other.findChild<QAction*>("actionEarlierVersions")->isEnabled());
}

TEST_F(EarlierVersions, AreListedWithTheNewestFirst)
{
    ChangeTwice();
    QStringList listed;
    InDialog({[&](QWidget& dialog) {
        listed = ListedIn(dialog);
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Escape);
    }});
    EXPECT_EQ(listed, (QStringList{"Save edited only 1", "Save edited only 2"}));
    EXPECT_EQ(Oven(), changedTwice);
}

TEST_F(EarlierVersions, AreReachedByKeys)
{
    Change(1, "1.70");
    const CModalAnswer answer({CModalAnswer::Key(Qt::Key_Escape)});
    Key(Qt::Key_F, Qt::AltModifier);
    auto& menu = Find<QMenu>("menuFile");
    ASSERT_TRUE(WaitFor([&] { return menu.isVisible(); }));
    QTest::keyClick(&menu, Qt::Key_V);
    EXPECT_EQ(answer.titles, std::vector<QString>{kTitle});
}

TEST_F(EarlierVersions, WaitForTheEditOfACell)
{
    Change(1, "1.70");
    ClickCell(3, kBelt);
    QTest::keyClick(&Grid(), Qt::Key_F2);
    QTest::keyClicks(frame->focusWidget(), "999999");
    const CModalAnswer answer(QMessageBox::Ok);
    Trigger(*frame, "actionEarlierVersions");
    ASSERT_EQ(answer.texts.size(), 1U);
    EXPECT_NE(answer.titles.front(), kTitle) << "the text was refused";
}

TEST_F(EarlierVersions, HaveTheirDifferencesListedByEnter)
{
    ChangeTwice();
    InDialog({CModalAnswer::Key(Qt::Key_Return)});
    ASSERT_TRUE(Panel().isVisible());
    EXPECT_EQ(Listed(), QStringList{"3 Belt 2.10>2.00 "});
    EXPECT_EQ(PanelSummary(), "1 value differs");
    EXPECT_TRUE(Panel().windowTitle().startsWith("Changes back to the version of "));
    ChooseLine(0);
    QTest::mouseClick(&Find<QPushButton>("buttonTakeOver"), Qt::LeftButton);
    EXPECT_EQ(Grid().GetItemText(3, kBelt), "2.00");
    Grid().setFocus();
    SaveEditedOnly();
    EXPECT_EQ(Oven(), changedOnce);
}

TEST_F(EarlierVersions, HaveTheirDifferencesListedByADoubleClick)
{
    ChangeTwice();
    InDialog({[](QWidget& dialog) {
        QTableWidget& table = TableIn(dialog);
        ChooseRow(dialog, 1);
        QTest::mouseDClick(table.viewport(), Qt::LeftButton, {}, table.visualItemRect(table.item(1, 0)).center());
    }});
    EXPECT_EQ(Listed(), (QStringList{"1 Belt 1.70>1.50 ", "3 Belt 2.10>2.00 "}));
}

/// The words of a value are taken over, not what is shown of it: 1.05 is shown as 1.50.
TEST_F(EarlierVersions, HaveTheirWordsTakenOver)
{
    Change(1, "1.70");
    InDialog({CModalAnswer::Key(Qt::Key_Return)});
    ChooseLine(0);
    QTest::mouseClick(&Find<QPushButton>("buttonTakeOver"), Qt::LeftButton);
    Grid().setFocus();
    SaveEditedOnly();
    EXPECT_EQ(Oven(), oven);
}

TEST_F(EarlierVersions, AreRestored)
{
    ChangeTwice();
    TypeIntoCell(4, kBelt, "3.00");
    Restore(1);
    EXPECT_EQ(Oven(), oven);
    EXPECT_EQ(Grid().GetItemText(1, kBelt), "1.50");
    EXPECT_EQ(Grid().GetItemText(4, kBelt), "0.50") << "edits are dropped";
    EXPECT_FALSE(IsModified());
    EXPECT_TRUE(Told().startsWith("oven.rcp is as it was ")) << Told().toStdString();
    EXPECT_EQ(Strip(), "");
    EXPECT_EQ(Field(), "0 edited, 3 others change");
    const auto versions = Versions();
    ASSERT_EQ(versions.size(), 3U);
    EXPECT_EQ(versions.front().command, u"Restore");
    EXPECT_EQ(ReadAll(store.PathOf(folder / "oven.rcp", versions.front())), changedTwice);
}

TEST_F(EarlierVersions, AreUndoneWhenTheyWereRestored)
{
    ChangeTwice();
    TypeIntoCell(4, kBelt, "3.00");
    Restore(1);
    Grid().setFocus();
    Undo();
    EXPECT_EQ(Grid().GetItemText(1, kBelt), "1.70");
    EXPECT_EQ(Grid().GetItemText(3, kBelt), "2.10");
    EXPECT_EQ(Grid().GetItemText(4, kBelt), "3.00") << "the edit comes back";
    EXPECT_TRUE(IsModified());
    EXPECT_EQ(Field(), "3 edited, 1 other changes");
    EXPECT_EQ(Oven(), oven);
    SaveEditedOnly();
    EXPECT_EQ(Oven(), OvenWith({{0, 170}, {10, 210}, {15, 300}}));
}

TEST_F(EarlierVersions, AreRestoredAgainByRedoInTheTableAlone)
{
    Change(1, "1.70");
    Restore(0);
    Grid().setFocus();
    Undo();
    Redo();
    EXPECT_EQ(Grid().GetItemText(1, kBelt), "1.50");
    EXPECT_FALSE(IsModified());
    EXPECT_EQ(Field(), "0 edited, 3 others change");
}

TEST_F(EarlierVersions, AreMadeUndoneByRestoringTheNewest)
{
    ChangeTwice();
    Restore(1);
    Restore(0);
    EXPECT_EQ(Oven(), changedTwice);
}

TEST_F(EarlierVersions, BringBackAFileThatIsGone)
{
    Change(1, "1.70");
    fs::remove(folder / "oven.rcp");
    ASSERT_TRUE(WaitFor([this] { return !Strip().isEmpty(); }));
    QStringList listed;
    InDialog({[&](QWidget& dialog) {
        listed = ListedIn(dialog);
        EXPECT_FALSE(FindIn<QPushButton>(dialog, "buttonShow").isEnabled());
        ClickOn(dialog, "buttonRestore");
    }});
    EXPECT_EQ(listed, QStringList{"Save edited only –"});
    EXPECT_EQ(Oven(), oven);
    EXPECT_EQ(Strip(), "");
    EXPECT_EQ(Grid().GetItemText(1, kBelt), "1.50");
}

/// While the words of the table are those of another layout.
TEST_F(EarlierVersions, AreCountedByTheTableShown)
{
    Change(1, "1.70");
    Find<QComboBox>("comboFormats").setFocus();
    Key(Qt::Key_Down);
    QTest::mouseClick(&Find<QPushButton>("buttonUseFormat"), Qt::LeftButton);
    ASSERT_EQ(Grid().ColumnCount(), 3);
    InDialog({[](QWidget& dialog) {
        EXPECT_EQ(ListedIn(dialog), QStringList{"Save edited only 1"});
        QTest::keyClick(&dialog, Qt::Key_Escape);
    }});
    Change(2, "77");
    InDialog({CModalAnswer::Key(Qt::Key_Return)});
    EXPECT_EQ(Listed(), QStringList{"2 Word 77>0 "});
}

TEST_F(EarlierVersions, AreNotWaitedForWhenTheUserGivesUp)
{
    Change(1, "1.70");
    CFileLock others;
    ASSERT_EQ(others.Take(folder / "oven.rcp", {}), CFileLock::State::Held);
    InDialog({PressInRow(0, "buttonRestore"), CModalAnswer::Key(Qt::Key_Escape)});
    EXPECT_EQ(Oven(), changedOnce);
    EXPECT_EQ(Versions().size(), 1U);
}

TEST_F(EarlierVersions, AreToldOfWhenTheyCannotBeHad)
{
    Change(1, "1.70");
    std::vector<QString> told;
    InDialog({[this](QWidget& dialog) {
                  fs::remove(store.PathOf(folder / "oven.rcp", Versions().front()));
                  ClickOn(dialog, "buttonRestore");
              },
              [&](QWidget& box) {
                  told.push_back(static_cast<QMessageBox&>(box).text());
                  CModalAnswer::Press(QMessageBox::Ok)(box);
              }});
    ASSERT_EQ(told.size(), 1U);
    EXPECT_TRUE(told[0].endsWith("there is no such version!")) << told[0].toStdString();
    EXPECT_EQ(Oven(), changedOnce);
}

TEST_F(EarlierVersions, AreRestoredThoughNoneCanBeKept)
{
    Change(1, "1.70");
    fs::resize_file(folder / "oven.rcp", 100000);
    const CFileSizeLimit disk(50000);
    Restore(0);
    EXPECT_EQ(Oven(), oven);
    EXPECT_TRUE(Told().startsWith("No earlier version of file " + Path("oven.rcp") + " was kept: "))
        << Told().toStdString();
}

TEST_F(EarlierVersions, AreForgottenAfterAQuestion)
{
    ChangeTwice();
    InDialog({[&](QWidget& dialog) {
        ClickOn(dialog, "buttonForget");
        EXPECT_EQ(FindIn<QLabel>(dialog, "labelQuestion").text(),
                  "Remove all 2 earlier versions of oven.rcp for good?");
        EXPECT_EQ(dialog.focusWidget()->objectName(), "buttonKeepThem");
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
        EXPECT_EQ(Versions().size(), 2U);
        ClickOn(dialog, "buttonForget");
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Escape);
        EXPECT_TRUE(dialog.isVisible()) << "only the question is taken back";
        EXPECT_EQ(Versions().size(), 2U);
        ClickOn(dialog, "buttonForget");
        ClickOn(dialog, "buttonForgetThem");
        EXPECT_EQ(Versions().size(), 0U);
        EXPECT_EQ(FindIn<QLabel>(dialog, "labelEmpty").text(),
                  "There are no earlier versions of oven.rcp yet. One is kept before each change.");
        EXPECT_FALSE(TableIn(dialog).isVisible());
        for (const char* name : {"buttonShow", "buttonRestore", "buttonForget"})
            EXPECT_FALSE(FindIn<QPushButton>(dialog, name).isEnabled()) << name;
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Escape);
    }});
    EXPECT_EQ(Oven(), changedTwice);
}

TEST_F(EarlierVersions, AreNotKeptWhenTheyAreSwitchedOff)
{
    InDialog({[](QWidget& dialog) {
        auto& keep = FindIn<QCheckBox>(dialog, "checkKeep");
        EXPECT_TRUE(keep.isChecked());
        QTest::mouseClick(&keep, Qt::LeftButton, {}, QPoint(8, keep.height() / 2));
        EXPECT_EQ(FindIn<QLabel>(dialog, "labelEmpty").text(),
                  "There are no earlier versions of oven.rcp, and none are kept.");
        QTest::keyClick(&dialog, Qt::Key_Escape);
    }});
    Change(1, "1.70");
    EXPECT_EQ(Versions().size(), 0U);
    InDialog({[](QWidget& dialog) {
        auto& keep = FindIn<QCheckBox>(dialog, "checkKeep");
        EXPECT_FALSE(keep.isChecked());
        keep.setFocus();
        QTest::keyClick(&keep, Qt::Key_Space);
        QTest::keyClick(&dialog, Qt::Key_Escape);
    }});
    Change(1, "1.80");
    EXPECT_EQ(Versions().size(), 1U);
}

struct LibraryVersions : EarlierVersions {
    void SetUp() override
    {
        EarlierVersions::SetUp();
        EXPECT_EQ(store.Keep(library, u"Save").result, VersionKept::Result::Kept);
        DeleteFirstItem();
    }

    void DeleteFirstItem()
    {
        auto& list = Find<QTreeWidget>("listItems");
        list.setFocus();
        list.setCurrentItem(list.topLevelItem(0));
        QTest::keyClick(&list, Qt::Key_Delete);
    }

    QStringList Items()
    {
        QStringList items;
        const auto& list = Find<QTreeWidget>("listItems");
        for (int row = 0; row < list.topLevelItemCount(); ++row)
            items << list.topLevelItem(row)->text(3);
        return items;
    }

    std::size_t ItemsInFile() const
    {
        FormatLibrary file;
        file.loadReadOnly(library);
        return file.formats.empty() ? 0 : file.formats.front()->items.size();
    }

    void RestoreFormats()
    {
        InDialog({[](QWidget& dialog) {
            GoToFormats(dialog);
            EXPECT_TRUE(TableIn(dialog).isColumnHidden(2));
            EXPECT_FALSE(FindIn<QPushButton>(dialog, "buttonShow").isEnabled());
            EXPECT_EQ(TableIn(dialog).rowCount(), 1);
            ClickOn(dialog, "buttonRestore");
        }});
    }

    const fs::path library = folder / "RecipeFile.Dat";
};

TEST_F(LibraryVersions, AreRestoredAndShown)
{
    ASSERT_EQ(Items(), (QStringList{"Steam", "Name"}));
    ASSERT_EQ(ItemsInFile(), 2U);
    RestoreFormats();
    EXPECT_EQ(ItemsInFile(), 3U);
    EXPECT_EQ(Items(), (QStringList{"Belt", "Steam", "Name"}));
    EXPECT_TRUE(Told().startsWith("The data formats are as they were ")) << Told().toStdString();
    EXPECT_EQ(store.List(library).front().command, u"Restore");
}

TEST_F(LibraryVersions, AreNotWrittenOverByTheNextSave)
{
    RestoreFormats();
    Find<QLineEdit>("editStartAddress").setFocus();
    TypeInto(*frame, "editStartAddress", "5");
    QTest::mouseClick(&Find<QPushButton>("buttonUseFormat"), Qt::LeftButton);
    EXPECT_EQ(ItemsInFile(), 3U);
    EXPECT_EQ(Find<QComboBox>("comboFormats").count(), 2) << "no format stands twice";
    DeleteFirstItem();
    EXPECT_EQ(ItemsInFile(), 2U);
}

/// What this window had not saved is in the version that is kept.
TEST_F(LibraryVersions, HaveWhatWasNotSavedYet)
{
    auto& autoUse = Find<QCheckBox>("checkAutoUse");
    QTest::mouseClick(&autoUse, Qt::LeftButton, {}, QPoint(8, autoUse.height() / 2));
    DeleteFirstItem();
    ASSERT_EQ(Items(), QStringList{"Name"});
    ASSERT_EQ(ItemsInFile(), 2U);
    RestoreFormats();
    EXPECT_EQ(Items(), (QStringList{"Belt", "Steam", "Name"}));
    FormatLibrary kept;
    kept.loadReadOnly(store.PathOf(library, store.List(library).front()));
    ASSERT_EQ(kept.formats.size(), 2U);
    EXPECT_EQ(kept.formats.front()->items.size(), 1U);
}

struct TypeCase {
    const char* file;
    FileType type;
    friend void PrintTo(const TypeCase& c, std::ostream* out) { *out << c.file; }
};

struct VersionsOfType : EarlierVersions, testing::WithParamInterface<TypeCase> {};

TEST_P(VersionsOfType, AreListedAndRestored)
{
    ASSERT_TRUE(frame->SaveRecipeDataAs(GetParam().type, Path(GetParam().file)));
    Open(GetParam().file);
    WaitForPlan();
    const fs::path file = folder / GetParam().file;
    const Bytes before = ReadAll(file);
    Change(3, "2.10");
    ASSERT_NE(ReadAll(file), before);
    ASSERT_EQ(Versions(GetParam().file).size(), 1U);
    InDialog({CModalAnswer::Key(Qt::Key_Return)});
    EXPECT_EQ(Listed(), QStringList{"3 Belt 2.10>2.00 "});
    Restore(0);
    EXPECT_EQ(ReadAll(file), before);
    EXPECT_EQ(Grid().GetItemText(3, kBelt), "2.00");
    Grid().setFocus();
    Undo();
    EXPECT_EQ(Grid().GetItemText(3, kBelt), "2.10");
    EXPECT_TRUE(IsModified());
}

INSTANTIATE_TEST_SUITE_P(Table, VersionsOfType,
                         testing::Values(TypeCase{"copy.rcp", FileType::Rcp}, TypeCase{"copy.csv", FileType::Csv},
                                         TypeCase{"copy.erp", FileType::Erp}, TypeCase{"copy.frp", FileType::Frp}));

/// It takes the seconds for which another program is waited for.
struct RestoreOfABusyFile : FrameFixture {};

TEST_F(RestoreOfABusyFile, IsRefused)
{
    const CVariable variable("VANTOR_VERSIONS", nullptr);
    const CVersionStore store(folder / "data");
    const fs::path file = folder / "a.rcp";
    MakeFile("a.rcp");
    store.Keep(file, u"Save");
    const Bytes now = WordBytes({1, 2, 3});
    WriteAll(file, now);
    Start();
    frame->KeepIn(store.DataFolder());
    frame->OpenPath(Path("a.rcp"));
    CFileLock others;
    ASSERT_EQ(others.Take(file, {}), CFileLock::State::Held);
    const CModalAnswer answer({PressInRow(0, "buttonRestore"), [](QWidget& dialog) {
                                   if (qobject_cast<QMessageBox*>(&dialog) != nullptr)
                                       CModalAnswer::Press(QMessageBox::Ok)(dialog);
                               }});
    Trigger(*frame, "actionEarlierVersions");
    EXPECT_EQ(answer.texts.back(), "File " + Path("a.rcp") + " is being written by another program!");
    EXPECT_EQ(ReadAll(file), now);
    EXPECT_EQ(store.List(file).size(), 1U);
    frame.reset();
}

/// Of a file too large to be copied only what changes is kept.
TEST_F(EarlierVersions, OfALargeFileAreRecords)
{
    const fs::path file = folder / "oven.rcp";
    const auto firstWords = [&] {
        Bytes bytes(oven.size());
        EXPECT_TRUE(CFile(file, CFile::Mode::Read).ReadAt(0, bytes));
        return bytes;
    };
    fs::resize_file(file, kMostCopiedBytes + 2);
    Open("oven.rcp");
    WaitForPlan();
    Change(1, "1.70");
    Change(3, "2.10");
    ASSERT_EQ(firstWords(), changedTwice);
    ASSERT_TRUE(Versions().front().isRecords);
    InDialog({[](QWidget& dialog) {
        EXPECT_EQ(ListedIn(dialog), (QStringList{"Save edited only 1", "Save edited only 2"}));
        ChooseRow(dialog, 1);
        ClickOn(dialog, "buttonShow");
    }});
    EXPECT_EQ(Listed(), (QStringList{"1 Belt 1.70>1.50 ", "3 Belt 2.10>2.00 "}));
    Restore(1);
    EXPECT_EQ(firstWords(), oven);
    EXPECT_EQ(fs::file_size(file), kMostCopiedBytes + 2);
    Grid().setFocus();
    Undo();
    EXPECT_EQ(Field(), "2 edited, 2 others change");
}

} // namespace
