#include "library/FormatStore.h"
#include "library/NotesFile.h"
#include "recovery/LibraryRestore.h"
#include "tests/recovery/VersionTest.h"
#include "tests/support/Formats.h"
#include "tests/support/RecordingReporter.h"

namespace {

/// A library of the items X and Y, each with a unit, and a version of it.
struct LibraryRestore : VersionTest {
    LibraryRestore()
    {
        {
            FormatLibrary file;
            file.formats.push_back(std::make_unique<DataFormat>(
                MakeFormat(u"A", {MakeItem(u"X", DataType::Float, 2, 4), MakeItem(u"Y", DataType::Float, 2, 4)})));
            EXPECT_EQ(file.save(library), 0);
        }
        window.emplace(library);
        window->SetBeforeFormatsChange([this](const std::filesystem::path& path) { store.Keep(path, u"Formats"); });
        SetUnit(0, u"x");
        SetUnit(1, u"y");
        EXPECT_TRUE(window->Save());
    }

    void SetUnit(std::size_t item, std::u16string_view unit)
    {
        ItemNotes notes;
        notes.unit = unit;
        window->SetNotes(0, item, notes);
    }

    VersionRestored Restore()
    {
        const std::string stamp = store.List(library).back().stamp;
        const VersionRestored restored = RestoreLibrary(store, library, stamp, reporter);
        window->TakeOthers();
        return restored;
    }

    std::u16string Units() const
    {
        std::u16string units;
        for (const auto& format : window->Library().formats)
            for (const auto& item : format->items)
                units += std::u16string(TextOf(item->description)) + u"=" + item->notes->unit + u" ";
        return units;
    }

    std::filesystem::path library = folder / "RecipeFile.Dat";
    std::filesystem::path notesPath = folder / "RecipeFile.Notes.json";
    std::optional<CFormatStore> window;
    CRecordingReporter reporter;
};

} // namespace

TEST_F(LibraryRestore, GivesItemsThatComeBackTheirNotesAndLeavesTheOthers)
{
    window->RemoveItem(0, 0);
    ASSERT_TRUE(window->Save());
    SetUnit(0, u"now");
    ASSERT_TRUE(window->Save());
    ASSERT_EQ(Units(), u"Y=now ");
    EXPECT_TRUE(Restore());
    EXPECT_EQ(Units(), u"X=x Y=now ");
    EXPECT_EQ(store.List(notesPath).front().command, u"Restore");
    ASSERT_TRUE(window->Save());
    EXPECT_EQ(ReadNotes(notesPath).notes.size(), 2U);
}

TEST_F(LibraryRestore, GivesARenamedFormatItsNotesUnderTheOldName)
{
    window->RenameFormat(0, u"B");
    ASSERT_TRUE(window->Save());
    EXPECT_TRUE(Restore());
    EXPECT_EQ(TextOf(window->Library().formats.front()->name), u"A");
    EXPECT_EQ(Units(), u"X=x Y=y ");
}

TEST_F(LibraryRestore, LeavesNotesThatCannotBeRead)
{
    window->RemoveItem(0, 0);
    ASSERT_TRUE(window->Save());
    const Bytes damaged = BytesOf({'?'});
    WriteAll(notesPath, damaged);
    EXPECT_TRUE(Restore());
    EXPECT_EQ(ReadAll(notesPath), damaged);
    EXPECT_EQ(Units(), u"X= Y=y ") << "those in the window stay";
}

TEST_F(LibraryRestore, WritesNoNotesWhereNoneComeBack)
{
    window->InsertItem(0, 2, MakeItem(u"Z", DataType::Float, 2, 4));
    ASSERT_TRUE(window->Save());
    const auto kept = store.List(notesPath).size();
    const Bytes notes = ReadAll(notesPath);
    EXPECT_TRUE(Restore());
    EXPECT_EQ(Units(), u"X=x Y=y ");
    EXPECT_EQ(ReadAll(notesPath), notes);
    EXPECT_EQ(store.List(notesPath).size(), kept);
}
