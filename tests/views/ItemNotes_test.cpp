// Notes of items, from the list of items and from the dialog of one.

#include "library/NotesFile.h"
#include "model/ItemNotes.h"
#include "tests/views/FormatCommandsFixture.h"
#include "tests/views/ItemDialogFixture.h"

#include <QTableWidget>

#include <span>
#include <string_view>

namespace {

CModalAnswer::Action EnterUnit(const QString& unit)
{
    return [unit](QWidget& dialog) {
        TypeInto(dialog, "editUnit", unit);
        ClickOn(dialog, "buttonOk");
    };
}

Bytes TextBytes(std::string_view text)
{
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

struct ItemNotesInPane : FormatCommands {
    void GoTo(int row) { List().setCurrentItem(List().topLevelItem(row)); }

    /// Of the items of the first format, as the library's files have them.
    QString StoredUnits() const
    {
        QString units;
        for (const auto& [key, notes] : ReadNotes(folder / "RecipeFile.Notes.json").notes)
            units += QString::fromStdU16String(key.item + u"=" + notes.unit + u" ");
        return units;
    }
};

} // namespace

TEST_F(ItemNotesInPane, CtrlEnterAsksForThoseOfTheCurrentItem)
{
    Start();
    GoTo(1);
    const CModalAnswer answer({EnterUnit("mm")});
    PressKey(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(answer.titles, std::vector<QString>{"Notes of B"});
    EXPECT_EQ(StoredUnits(), "B=mm ");
    ExpectStored({kLine});
    EXPECT_EQ(frame.calls, Calls{}) << "nothing is read again";
    EXPECT_EQ(frame.document.UndoName(), u"Notes of B");
    EXPECT_EQ(List().currentIndex().row(), 1);
    const EditReport report = frame.document.Undo();
    ASSERT_TRUE(report.format);
    view->FormatChanged(*report.format);
    EXPECT_TRUE(view->SaveFormats());
    EXPECT_EQ(StoredUnits(), "");
}

TEST_F(ItemNotesInPane, TheMenuAsksForThoseOfTheClickedRow)
{
    Start();
    GoTo(0);
    RightClickBelowTheRows();
    EXPECT_FALSE(Find<QAction>("actionItemNotes").isEnabled());
    ItemMenu().close();
    const CModalAnswer answer({EnterUnit("m")});
    RightClickRow(2);
    ChooseInMenu("actionItemNotes");
    EXPECT_EQ(StoredUnits(), "C=m ");
}

TEST_F(ItemNotesInPane, ThatStayTheSameAreNoCommand)
{
    Start();
    GoTo(0);
    const CModalAnswer answer({EnterUnit(" "), kCancel});
    PressKey(Qt::Key_Enter, Qt::ControlModifier);
    PressKey(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(answer.titles.size(), 2U);
    EXPECT_EQ(frame.document.UndoName(), std::nullopt);
    EXPECT_FALSE(SavesAtTheEnd());
}

TEST_F(ItemNotesInPane, WithoutAnItemThereIsNothingToAskFor)
{
    Start();
    DeleteAllFormats();
    PressKey(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(frame.document.UndoName(), u"Delete cur Dataformat");
}

TEST_F(ItemNotesInPane, OfTheItemDialogComeWithItsOk)
{
    Start();
    GoTo(0);
    const CModalAnswer answer({CModalAnswer::PressNamed("buttonNotes"), EnterUnit("mm"), kCancel,
                               CModalAnswer::PressNamed("buttonNotes"), EnterUnit("m"), kOk});
    PressKey(Qt::Key_Return);
    EXPECT_EQ(StoredUnits(), "") << "the item's dialog was cancelled";
    PressKey(Qt::Key_Return);
    EXPECT_EQ(answer.titles.size(), 6U);
    EXPECT_EQ(StoredUnits(), "A=m ");
    EXPECT_EQ(frame.document.UndoName(), u"Modify DataItem");
}

TEST_F(ItemNotesInPane, OfANewItemComeWithIt)
{
    Start();
    GoTo(0);
    const CModalAnswer answer({CModalAnswer::PressNamed("buttonNotes"), EnterUnit("mm"), Describe("New")});
    PressKey(Qt::Key_Insert);
    EXPECT_EQ(answer.titles[1], "Notes of Desc1");
    EXPECT_EQ(StoredUnits(), "New=mm ");
}

TEST_F(ItemNotesInPane, ThatAreKeptDoNotHideThatTheLibraryIsNot)
{
    const CVersionStore versions(folder / "data");
    const auto libraryVersions = versions.PathOf(LibraryPath(), {}).parent_path();
    std::filesystem::create_directories(libraryVersions.parent_path());
    WriteAll(libraryVersions, {}); // no folder
    Start();
    view->KeepVersionsIn(versions);
    GoTo(0);
    const CModalAnswer answer(
        {EnterUnit("mm"), CModalAnswer::PressNamed("buttonNotes"), EnterUnit("m"), Describe("New")});
    PressKey(Qt::Key_Return, Qt::ControlModifier);
    PressKey(Qt::Key_Return);
    EXPECT_EQ(StoredUnits(), "New=m ");
    EXPECT_EQ(versions.List(folder / "RecipeFile.Notes.json").size(), 1U);
    ASSERT_FALSE(frame.libraryTroubles.empty());
    EXPECT_TRUE(frame.libraryTroubles.back().contains("RecipeFile.Dat was kept"))
        << frame.libraryTroubles.back().toStdString();
}

TEST_F(ItemNotesInPane, DamagedOnesAreToldUntilOthersTakeTheirPlace)
{
    Store({kLine});
    const Bytes damaged = TextBytes("{\"vantor\"");
    WriteAll(folder / "RecipeFile.Notes.json", damaged);
    FormatPane::Start();
    const QString path = QString::fromStdString((folder / "RecipeFile.Notes.json").string());
    EXPECT_EQ(frame.strip[StripSubject::LibraryNotKept].text,
              "The notes of items in " + path + " are damaged: none are shown. The file is copied before it is saved.");
    GoTo(0);
    const CModalAnswer answer({EnterUnit("mm")});
    PressKey(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_FALSE(frame.strip.contains(StripSubject::LibraryNotKept));
    EXPECT_EQ(StoredUnits(), "A=mm ");
    EXPECT_EQ(ReadAll(folder / "RecipeFile.Notes.json.bak"), damaged);
}

TEST_F(ItemNotesInPane, NothingElseIsToldThanBeforeOfADamagedLibrary)
{
    const Bytes library = TextBytes("?");
    WriteAll(LibraryPath(), library);
    WriteAll(folder / "RecipeFile.Notes.json", library);
    FormatPane::Start();
    EXPECT_TRUE(frame.strip[StripSubject::LibraryNotKept].text.endsWith(
        " are damaged: none are shown. The files are copied before they are saved."));
}

TEST_F(ItemDialog, ItsNotesAreAskedForAsTheItemIsEnteredByNow)
{
    Modify(MakeItem(u"Old", DataType::Signed16, 1, 4));
    Type("editDescription", "Heat");
    ChooseType(DataType::Hex32);
    int bits = 0;
    const CModalAnswer answer({[&bits](QWidget& notes) {
        bits = FindIn<QTableWidget>(notes, "tableBits").rowCount();
        TypeInto(notes, "editUnit", "K");
        ClickOn(notes, "buttonOk");
    }});
    ClickOn(*dialog, "buttonNotes");
    EXPECT_EQ(answer.titles, std::vector<QString>{"Notes of Heat"});
    EXPECT_EQ(bits, 32);
    EXPECT_EQ(item.notes->unit, u"");
    PressOk();
    EXPECT_EQ(item.notes->unit, u"K");
}
