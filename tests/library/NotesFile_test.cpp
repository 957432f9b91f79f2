#include "library/LibraryFromJson.h"
#include "library/LibraryToJson.h"
#include "library/NotesFile.h"
#include "tests/support/Formats.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

ItemNotes FullNotes()
{
    ItemNotes notes;
    notes.unit = u"°C";
    notes.lowest = CDecimal::Parse(u"-12.5");
    notes.highest = CDecimal::Parse(u"1e30");
    notes.comment = u"Of the belt\n\"as measured\" \\ 測定";
    notes.bits = {u"Fan", u"", u"Steam"};
    notes.texts = {{u"0", u"off"}, {u"1F", u"all on"}};
    return notes;
}

ItemNotes WithUnit(std::u16string_view unit)
{
    ItemNotes notes;
    notes.unit = unit;
    return notes;
}

LibraryNotes SomeNotes()
{
    return {{{.format = u"Oven \"a\"", .item = u"Zone °C"}, FullNotes()},
            {{.format = u"Oven \"a\"", .item = u"Zone °C", .itemNumber = 2}, WithUnit(u"K")},
            {{.format = u"Oven \"a\"", .formatNumber = 2, .item = u""}, WithUnit(u"%")}};
}

DataItem Noted(std::u16string_view name, std::u16string_view unit)
{
    DataItem item = MakeItem(name, DataType::Unsigned16, 1, 4);
    item.notes = CSharedNotes(WithUnit(unit));
    return item;
}

std::u16string UnitOf(const DataItem& item)
{
    return item.notes->unit;
}

} // namespace

TEST(NotesFile, GivesBackWhatWasWritten)
{
    LibraryNotes read;
    EXPECT_FALSE(NotesFromJson(NotesToJson(SomeNotes()), read));
    EXPECT_EQ(read, SomeNotes());
    LibraryNotes none;
    EXPECT_FALSE(NotesFromJson(NotesToJson({}), none));
    EXPECT_EQ(none, LibraryNotes{});
}

TEST(NotesFile, HasALineAnItem)
{
    EXPECT_EQ(NotesToJson({{{.format = u"Oven", .item = u"Zone", .itemNumber = 2}, WithUnit(u"°C")}}),
              "{\"vantor\": \"notes\", \"version\": 1, \"formats\": [\n"
              "  {\"format\": \"Oven\", \"items\": [\n"
              "    {\"item\": \"Zone\", \"number\": 2, \"unit\": \"°C\"}]}]}\n");
}

TEST(NotesFile, StandsBesideTheLibrary)
{
    EXPECT_EQ(NotesPathOf(fs::path("folder") / "RecipeFile.Dat"), fs::path("folder") / "RecipeFile.Notes.json");
    EXPECT_EQ(NotesPathOf("a.b.Dat"), fs::path("a.b.Notes.json"));
}

struct FaultCase {
    const char* json;
    const char16_t* place;
    const char16_t* text;
};

struct NotesFault : testing::TestWithParam<FaultCase> {};

TEST_P(NotesFault, IsToldWithItsPlace)
{
    LibraryNotes notes;
    const auto fault = NotesFromJson(GetParam().json, notes);
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->place, GetParam().place);
    EXPECT_EQ(fault->text, GetParam().text);
}

#define ITEM(fields) R"({"vantor":"notes","version":1,"formats":[{"format":"F","items":[{"item":"I",)" fields "}]}]}"

INSTANTIATE_TEST_SUITE_P(
    All, NotesFault,
    testing::Values(
        FaultCase{"", u"/", u"line 1, column 1 is no valid JSON"}, FaultCase{"[]", u"/", u"an object is expected"},
        FaultCase{"{}", u"/vantor", u"\"notes\" is expected"},
        FaultCase{R"({"vantor":"notes","version":2,"formats":[]})", u"/version", u"1 is expected"},
        FaultCase{R"({"vantor":"notes","version":1})", u"/formats", u"an array is expected"},
        FaultCase{R"({"vantor":"notes","version":1,"formats":[],"x/y":1})", u"/x~1y",
                  u"there is no field of this name"},
        FaultCase{R"({"vantor":"notes","version":1,"formats":[1]})", u"/formats/0", u"an object is expected"},
        FaultCase{R"({"vantor":"notes","version":1,"formats":[{"items":[]}]})", u"/formats/0/format",
                  u"a text is expected"},
        FaultCase{R"({"vantor":"notes","version":1,"formats":[{"format":"F","number":0,"items":[]}]})",
                  u"/formats/0/number", u"an integer from 1 on is expected"},
        FaultCase{ITEM(R"("unit":1)"), u"/formats/0/items/0/unit", u"a text is expected"},
        FaultCase{ITEM(R"("unit":"a\tb")"), u"/formats/0/items/0/unit", u"the text holds a control character"},
        FaultCase{ITEM(R"("unit":"012345678901234567890123456789012")"), u"/formats/0/items/0/unit",
                  u"the text is longer than 32 characters"},
        FaultCase{ITEM(R"("lowest":"warm")"), u"/formats/0/items/0/lowest", u"a number is expected"},
        FaultCase{ITEM(R"("lowest":2,"highest":"1.5")"), u"/formats/0/items/0/highest",
                  u"the highest value lies below the lowest one"},
        FaultCase{ITEM(R"("bits":["a",0])"), u"/formats/0/items/0/bits/1", u"a text is expected"},
        FaultCase{ITEM(R"("texts":[{"value":"0"}])"), u"/formats/0/items/0/texts/0",
                  u"an object with \"value\" and \"text\" is expected"},
        FaultCase{ITEM(R"("colour":"red")"), u"/formats/0/items/0/colour", u"there is no field of this name"}));

TEST(NotesFile, IsNotEndedByAZeroByte)
{
    LibraryNotes notes;
    EXPECT_TRUE(NotesFromJson(NotesToJson(SomeNotes()) + std::string(1, '\0') + "x", notes));
}

TEST(NotesFile, TakesNumbersForTheRange)
{
    LibraryNotes notes;
    EXPECT_FALSE(NotesFromJson(ITEM(R"("lowest":150,"highest":280.5)"), notes));
    EXPECT_EQ(RangeText(notes.begin()->second), u"150 to 280.5");
}

TEST(NotesFile, IsNotWrittenWhereNothingChanges)
{
    const CTempFolder folder;
    const fs::path path = folder / "RecipeFile.Notes.json";
    EXPECT_TRUE(WriteNotes({}, path));
    EXPECT_FALSE(fs::exists(path));
    EXPECT_TRUE(WriteNotes(SomeNotes(), path));
    const auto time = fs::last_write_time(path) - std::chrono::hours(1);
    fs::last_write_time(path, time);
    EXPECT_TRUE(WriteNotes(SomeNotes(), path));
    EXPECT_EQ(fs::last_write_time(path), time);
    EXPECT_EQ(ReadNotes(path).notes, SomeNotes());
    EXPECT_TRUE(WriteNotes({}, path));
    EXPECT_EQ(ReadNotes(path).content, NotesFile::Content::Whole);
}

TEST(NotesOfALibrary, GoWithNamesAndTheirNumbers)
{
    Formats formats;
    formats.push_back(
        std::make_unique<DataFormat>(MakeFormat(u"A", {Noted(u"X", u"1"), Noted(u"Y", u""), Noted(u"X", u"2")})));
    formats.push_back(std::make_unique<DataFormat>(MakeFormat(u"A", {Noted(u"X", u"3")})));
    const LibraryNotes notes = NotesOf(formats);
    EXPECT_EQ(notes.size(), 3U);
    Formats others;
    others.push_back(std::make_unique<DataFormat>(MakeFormat(u"A", {Noted(u"Y", u"kept"), Noted(u"X", u"")})));
    SetNotes(others, notes);
    EXPECT_EQ(UnitOf(*others[0]->items[0]), u"kept");
    EXPECT_EQ(UnitOf(*others[0]->items[1]), u"1");
    EXPECT_EQ(NotesOfOthers(notes, others).size(), 2U);
}

TEST(NotesOfALibrary, AreCarriedByItsJson)
{
    FormatLibrary library;
    library.formats.push_back(std::make_unique<DataFormat>(MakeFormat(u"A", {Noted(u"X", u"°C"), Noted(u"Y", u"")})));
    DataItem& item = *library.formats[0]->items[1];
    item.notes = CSharedNotes(FullNotes());
    FormatLibrary read;
    EXPECT_FALSE(LibraryFromJson(LibraryToJson(library), read));
    EXPECT_EQ(NotesOf(read.formats), NotesOf(library.formats));
    EXPECT_EQ(*read.formats[0]->items[1], item);
}

struct LibraryFault : testing::TestWithParam<FaultCase> {};

TEST_P(LibraryFault, InNotesIsToldWithItsPlace)
{
    FormatLibrary library;
    const auto fault = LibraryFromJson(GetParam().json, library);
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->place, GetParam().place);
    EXPECT_EQ(fault->text, GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(All, LibraryFault,
                         testing::Values(FaultCase{R"({"formats":[{"items":[{"notes":[]}]}]})",
                                                   u"/formats/0/items/0/notes", u"an object is expected"},
                                         FaultCase{R"({"formats":[{"items":[{"notes":{"unit":"a","unit":"b"}}]}]})",
                                                   u"/formats/0/items/0/notes", u"a field stands twice"},
                                         FaultCase{R"({"formats":[{"items":[{"notes":{"bits":[["x"]]}}]}]})",
                                                   u"/formats/0/items/0/notes/bits/0", u"a text is expected"},
                                         FaultCase{R"({"formats":[{"items":[{"notes":{"lowest":true}}]}]})",
                                                   u"/formats/0/items/0/notes/lowest", u"a number is expected"}));
