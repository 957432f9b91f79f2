// Notes of items, in stores that work on one library file.

#include "library/FormatStore.h"
#include "library/LibraryFile.h"
#include "library/NotesFile.h"
#include "library/NotesMerge.h"
#include "tests/support/Formats.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <random>

namespace fs = std::filesystem;

namespace {

ItemNotes WithUnit(std::u16string_view unit)
{
    ItemNotes notes;
    notes.unit = unit;
    return notes;
}

struct SharedNotes : testing::Test {
    SharedNotes()
    {
        FormatLibrary library;
        library.formats.push_back(std::make_unique<DataFormat>(
            MakeFormat(u"A", {MakeItem(u"X", DataType::Unsigned16, 1, 4), MakeItem(u"Y", DataType::Float, 2, 4)})));
        library.formats.push_back(
            std::make_unique<DataFormat>(MakeFormat(u"B", {MakeItem(u"X", DataType::Hex16, 1, 4)})));
        EXPECT_EQ(library.save(path), 0);
    }

    /// "A.X=°C" of each item with a unit, in the order of the library.
    static std::u16string Units(const FormatLibrary& library)
    {
        std::u16string text;
        for (const auto& format : library.formats)
            for (const auto& item : format->items)
                if (!item->notes->unit.empty())
                    text += (text.empty() ? u"" : u" ") + std::u16string(TextOf(format->name)) + u"." +
                            std::u16string(TextOf(item->description)) + u"=" + item->notes->unit;
        return text;
    }

    std::u16string Stored()
    {
        FormatLibrary library;
        EXPECT_TRUE(LoadLibrary(path, library, reporter));
        return Units(library);
    }

    void Damage() const { std::ofstream(notesPath) << "{\"vantor\""; }

    const CTempFolder folder;
    const fs::path path = folder / "RecipeFile.Dat";
    const fs::path notesPath = folder / "RecipeFile.Notes.json";
    CRecordingReporter reporter;
};

} // namespace

TEST_F(SharedNotes, AreSavedBesideTheLibraryWhoseBytesStay)
{
    std::ifstream before(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(before), {}};
    CFormatStore store(path);
    ASSERT_TRUE(store.Save());
    EXPECT_FALSE(fs::exists(notesPath));
    store.SetNotes(0, 1, WithUnit(u" m "));
    ASSERT_TRUE(store.Save());
    EXPECT_EQ(Stored(), u"A.Y=m");
    std::ifstream after(path, std::ios::binary);
    EXPECT_EQ((std::string{std::istreambuf_iterator<char>(after), {}}), bytes);
    EXPECT_EQ(Units(CFormatStore(path).Library()), u"A.Y=m");
}

TEST_F(SharedNotes, GoWithItemsAndFormatsAndComeBackByUndo)
{
    CFormatStore store(path);
    const FormatChange set = store.SetNotes(0, 0, WithUnit(u"1"));
    store.SetNotes(0, 1, WithUnit(u"2"));
    store.MoveItem(0, 0, 1);
    EXPECT_EQ(Units(store.Library()), u"A.Y=2 A.X=1");
    store.DuplicateFormat(0);
    EXPECT_EQ(Units(store.Library()), u"A.Y=2 A.X=1 A (2).Y=2 A (2).X=1");
    const FormatChange renamed = store.RenameFormat(0, u"C");
    DataItem item = *store.Library().formats[0]->items[1];
    SetText(item.description, u"Z");
    store.ReplaceItem(0, 1, item);
    const FormatChange removed = store.RemoveFormat(2);
    ASSERT_TRUE(store.Save());
    EXPECT_EQ(Stored(), u"C.Y=2 C.Z=1");
    store.TakeBack(removed);
    ASSERT_TRUE(store.Save());
    EXPECT_EQ(Stored(), u"C.Y=2 C.Z=1 A (2).Y=2 A (2).X=1");
    EXPECT_FALSE(Holds(store.Library(), renamed, ChangeSide::After)); // another item stands in it
    EXPECT_FALSE(Holds(store.Library(), set, ChangeSide::After));
}

TEST_F(SharedNotes, AreMergedItemByItem)
{
    CFormatStore first(path);
    CFormatStore second(path);
    first.SetNotes(0, 0, WithUnit(u"1"));
    second.SetNotes(0, 1, WithUnit(u"2"));
    ASSERT_TRUE(first.Save());
    ASSERT_TRUE(second.Save());
    EXPECT_EQ(Stored(), u"A.X=1 A.Y=2");
    first.TakeOthers();
    const auto moves = first.TakeMoves();
    ASSERT_TRUE(moves);
    EXPECT_EQ(*moves, (std::vector<FormatMove>{{.to = 0, .hasOtherItems = true}, {.to = 1, .hasOtherItems = false}}));
    EXPECT_EQ(Units(first.Library()), u"A.X=1 A.Y=2");
}

TEST_F(SharedNotes, StayWithAFormatThatWasRenamedWhileTheOtherChangedIt)
{
    CFormatStore first(path);
    first.SetNotes(0, 0, WithUnit(u"1"));
    ASSERT_TRUE(first.Save());
    CFormatStore second(path);
    first.InsertItem(0, 0, MakeItem(u"New", DataType::Float, 2, 4));
    second.RemoveItem(0, 1);
    second.SetNotes(0, 0, WithUnit(u"2"));
    ASSERT_TRUE(first.Save());
    ASSERT_TRUE(second.Save());
    EXPECT_EQ(Stored(), u"A.X=2 A (2).X=2");
}

TEST_F(SharedNotes, OfWhatTheOtherDeletedGoAndOfWhatTheOtherChangedStay)
{
    CFormatStore first(path);
    first.SetNotes(0, 0, WithUnit(u"1"));
    first.SetNotes(1, 0, WithUnit(u"3"));
    ASSERT_TRUE(first.Save());
    CFormatStore second(path);
    first.RemoveFormat(0);
    second.InsertItem(0, 2, MakeItem(u"New", DataType::Float, 2, 4)); // changed beats deleted
    second.RemoveFormat(1);
    ASSERT_TRUE(first.Save());
    ASSERT_TRUE(second.Save());
    EXPECT_EQ(Stored(), u"A.X=1");
}

TEST_F(SharedNotes, OfAFormatThatTheOtherRenamedStay)
{
    for (const bool isRenamedFirst : {true, false}) {
        const fs::path library = folder / (isRenamedFirst ? "First.Dat" : "Second.Dat");
        fs::copy_file(path, library);
        CFormatStore renaming(library);
        CFormatStore noting(library);
        renaming.RenameFormat(0, u"C");
        noting.SetNotes(0, 0, WithUnit(u"1"));
        ASSERT_TRUE((isRenamedFirst ? renaming : noting).Save());
        ASSERT_TRUE((isRenamedFirst ? noting : renaming).Save());
        FormatLibrary stored;
        ASSERT_TRUE(LoadLibrary(library, stored, reporter));
        EXPECT_EQ(Units(stored), u"A.X=1") << isRenamedFirst; // changed beats deleted
        EXPECT_EQ(stored.formats.size(), 3U);
    }
}

TEST_F(SharedNotes, OfAnItemThatTheOtherRenamedGoWithIt)
{
    for (const bool isRenamedFirst : {true, false}) {
        const fs::path library = folder / (isRenamedFirst ? "First.Dat" : "Second.Dat");
        fs::copy_file(path, library);
        CFormatStore renaming(library);
        renaming.SetNotes(0, 0, WithUnit(u"0"));
        ASSERT_TRUE(renaming.Save());
        CFormatStore noting(library);
        DataItem item = *renaming.Library().formats[0]->items[0];
        SetText(item.description, u"Z");
        renaming.ReplaceItem(0, 0, item);
        noting.SetNotes(0, 0, WithUnit(u"1"));
        ASSERT_TRUE((isRenamedFirst ? renaming : noting).Save());
        ASSERT_TRUE((isRenamedFirst ? noting : renaming).Save());
        FormatLibrary stored;
        ASSERT_TRUE(LoadLibrary(library, stored, reporter));
        EXPECT_EQ(Units(stored), u"A.Z=1") << isRenamedFirst;
        EXPECT_EQ(ReadNotes(NotesPathOf(library)).notes.size(), 1U) << isRenamedFirst;
    }
}

TEST_F(SharedNotes, OfAnotherItemDoNotGoToOneThatTookItsPlace)
{
    CFormatStore first(path);
    first.SetNotes(0, 0, WithUnit(u"x"));
    ASSERT_TRUE(first.Save());
    CFormatStore second(path);
    first.RemoveItem(0, 0);
    first.InsertItem(0, 0, MakeItem(u"Q", DataType::Unsigned16, 1, 4)); // alike but for its name
    second.SetNotes(0, 0, WithUnit(u"y"));
    ASSERT_TRUE(first.Save());
    ASSERT_TRUE(second.Save());
    EXPECT_EQ(Stored(), u"");
}

TEST_F(SharedNotes, OfOneItemAreMergedFieldByField)
{
    ItemNotes base = WithUnit(u"m");
    base.bits = {u"a", u"b"};
    base.lowest = CDecimal(1);
    ItemNotes ours = base;
    ours.unit = u"mm";
    ours.bits = {u"a", u"B"};
    ItemNotes theirs = base;
    theirs.comment = u"theirs";
    theirs.bits = {u"A", u"b", u"c"};
    theirs.highest = CDecimal(5);
    const ItemNotes merged = MergeNotes(base, ours, theirs);
    EXPECT_EQ(merged.unit, u"mm");
    EXPECT_EQ(merged.comment, u"theirs");
    EXPECT_EQ(merged.bits, (std::vector<std::u16string>{u"A", u"B", u"c"}));
    EXPECT_EQ(RangeText(merged), u"1 to 5");
    EXPECT_EQ(MergeNotes(base, {}, theirs), theirs) << "changed beats deleted";
    EXPECT_EQ(MergeNotes(base, ours, {}), ours);
    EXPECT_EQ(MergeNotes(base, {}, base), ItemNotes{});
}

TEST_F(SharedNotes, ThatAreDamagedAreToldAndKeptInACopy)
{
    Damage();
    CFormatStore store(path);
    EXPECT_EQ(store.State().notes, LibraryState::Content::Damaged);
    ASSERT_TRUE(store.Save());
    EXPECT_FALSE(fs::exists(folder / "RecipeFile.Notes.json.bak")) << "nothing took their place";
    EXPECT_EQ(store.State().notes, LibraryState::Content::Damaged);
    CFormatStore other(path);
    store.SetNotes(0, 0, WithUnit(u"1"));
    ASSERT_TRUE(store.Save());
    EXPECT_EQ(Stored(), u"A.X=1");
    EXPECT_EQ(store.State().notes, LibraryState::Content::Whole);
    other.TakeOthers();
    EXPECT_EQ(other.State().notes, LibraryState::Content::Whole);
    EXPECT_EQ(Units(other.Library()), u"A.X=1");
    std::ifstream copy(folder / "RecipeFile.Notes.json.bak", std::ios::binary);
    EXPECT_EQ((std::string{std::istreambuf_iterator<char>(copy), {}}), "{\"vantor\"");
}

TEST_F(SharedNotes, ThatAreDamagedAreReportedByWhatOnlyReads)
{
    Damage();
    FormatLibrary library;
    EXPECT_TRUE(LoadLibrary(path, library, reporter));
    ASSERT_EQ(reporter.shown.size(), 1U);
    EXPECT_EQ(library.formats.size(), 2U);
}

TEST_F(SharedNotes, OfUnknownItemsStayUntilOneHasTheirName)
{
    ASSERT_TRUE(WriteNotes({{{.format = u"A", .item = u"Q"}, WithUnit(u"q")}}, notesPath));
    CFormatStore store(path);
    store.SetNotes(0, 0, WithUnit(u"1"));
    ASSERT_TRUE(store.Save());
    EXPECT_EQ(ReadNotes(notesPath).notes.size(), 2U);
    store.InsertItem(0, 0, MakeItem(u"Q", DataType::Float, 2, 4));
    ASSERT_TRUE(store.Save());
    EXPECT_EQ(Stored(), u"A.X=1");
}

TEST_F(SharedNotes, ThatSomebodyRemovedAreWrittenAgain)
{
    CFormatStore store(path);
    store.SetNotes(0, 0, WithUnit(u"1"));
    ASSERT_TRUE(store.Save());
    fs::remove(notesPath);
    store.RemoveFormat(1);
    ASSERT_TRUE(store.Save());
    EXPECT_EQ(Stored(), u"A.X=1");
}

TEST_F(SharedNotes, AreKeptAsAVersionBeforeTheyChange)
{
    CFormatStore store(path);
    std::vector<fs::path> kept;
    store.SetBeforeFormatsChange([&kept](const fs::path& file) { kept.push_back(file); });
    store.SetNotes(0, 0, WithUnit(u"1"));
    ASSERT_TRUE(store.Save());
    EXPECT_TRUE(kept.empty()) << "there were none";
    store.SetNotes(0, 0, WithUnit(u"2"));
    ASSERT_TRUE(store.Save());
    EXPECT_EQ(kept, std::vector<fs::path>{notesPath});
}

TEST_F(SharedNotes, HaveOldAndNewNamesWhileTheLibraryIsReplaced)
{
    CFormatStore store(path);
    store.SetNotes(0, 0, WithUnit(u"1"));
    ASSERT_TRUE(store.Save());
    LibraryNotes between;
    store.SetBeforeFormatsChange([](const fs::path&) {});
    store.RenameFormat(0, u"C");
    const StandingLibrary standing = ReadStanding(path);
    fs::remove(path);
    fs::create_directory(path); // so that the library cannot be written
    EXPECT_FALSE(ReplaceStanding(standing, store.Library(), NotesOf(store.Library().formats), path, {}));
    between = ReadNotes(notesPath).notes;
    EXPECT_EQ(between.size(), 2U);
    EXPECT_TRUE(between.contains({.format = u"A", .item = u"X"}));
    EXPECT_TRUE(between.contains({.format = u"C", .item = u"X"}));
}

/// Two windows do what they like with formats and items; each item carries its own mark as its unit.
TEST_F(SharedNotes, StayWithTheirItemsThroughRandomWork)
{
    std::mt19937 random(20);
    const auto below = [&random](std::size_t count) { return random() % std::max<std::size_t>(count, 1); };
    CFormatStore stores[] = {CFormatStore(path), CFormatStore(path)};
    std::vector<FormatChange> changes[2];
    int mark = 0;
    const auto isMarked = [](const FormatLibrary& library) {
        for (const auto& format : library.formats)
            for (const auto& item : format->items)
                if (!item->notes.IsEmpty() && item->notes->unit != u"u" + std::u16string(TextOf(item->description)))
                    return false;
        return true;
    };
    for (int step = 0; step < 10000; ++step) {
        const std::size_t window = below(2);
        CFormatStore& store = stores[window];
        auto& done = changes[window];
        const std::size_t format = below(store.Library().formats.size());
        const std::size_t items = store.Library().formats[format]->items.size();
        const std::size_t item = below(items);
        switch (below(10)) {
        case 0:
            if (store.Library().formats.size() < 8)
                done.push_back(store.DuplicateFormat(format));
            break;
        case 1:
            if (store.Library().formats.size() > 1)
                done.push_back(store.RemoveFormat(format));
            break;
        case 2: {
            std::u16string name = u"N";
            name += static_cast<char16_t>(u'a' + below(6));
            done.push_back(store.RenameFormat(format, name));
            break;
        }
        case 3: {
            std::u16string name = u"i";
            for (const char digit : std::to_string(++mark))
                name += static_cast<char16_t>(digit);
            DataItem fresh = MakeItem(name, DataType::Unsigned16, 1, 4);
            fresh.notes = CSharedNotes(WithUnit(u"u" + name));
            if (items < 6)
                done.push_back(store.InsertItem(format, below(items + 1), fresh));
            break;
        }
        case 4:
            if (items > 1)
                done.push_back(store.RemoveItem(format, item));
            break;
        case 5:
            if (items > 1)
                done.push_back(store.MoveItem(format, item, below(items)));
            break;
        case 6:
            if (items > 0)
                done.push_back(store.SetNotes(
                    format, item,
                    WithUnit(below(3) == 0 ? u""
                                           : u"u" + std::u16string(TextOf(
                                                        store.Library().formats[format]->items[item]->description)))));
            break;
        case 7:
            if (!done.empty() && Holds(store.Library(), done.back(), ChangeSide::After))
                store.TakeBack(done.back());
            if (!done.empty())
                done.pop_back();
            break;
        case 8:
            store.TakeOthers();
            break;
        default:
            if (below(8) != 0)
                break;
            ASSERT_TRUE(store.Save());
            ASSERT_EQ(Stored(), Units(store.Library())) << "step " << step;
        }
        if (store.Library().formats.empty())
            done.push_back(store.AppendFormat(MakeFormat(u"Na", {MakeItem(u"X", DataType::Float, 2, 4)})));
        ASSERT_TRUE(isMarked(store.Library())) << "step " << step;
    }
}
