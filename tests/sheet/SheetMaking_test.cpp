#include "model/ItemNotes.h"
#include "sheet/SheetMaking.h"
#include "tests/document/DocumentFixture.h"

#include <algorithm>

namespace {

std::u16string FactOf(const RecipeSheet& sheet, std::u16string_view label)
{
    for (const SheetFact& fact : sheet.facts)
        if (fact.label == label)
            return fact.text;
    return u"no such fact";
}

/// Ends after some steps.
class CEnding final : public CProgress {
public:
    bool Advance(std::uint64_t, std::uint64_t) override { return --m_left > 0; }

private:
    int m_left = 2;
};

/// Sheets of a file with three rows of a float "Temp" and an integer "No.": 235.04 and 7, 1.0 and 8, 0.0 and 9.
class SheetMaking : public RecipeDocument {
protected:
    Outcome Make(CProgress& watching)
    {
        const SheetSubject subject{document.Rows(), document.Stored(), document.Path(), u"Two", content, isOtherNow};
        return CSheetMaker(subject, wishes).Make(sheet, records, watching);
    }

    void Make() { ASSERT_EQ(Make(progress), Outcome::Done); }

    /// Opens the file anew with notes of the column "No.".
    void NoteNumbers(const ItemNotes& notes)
    {
        store.SetNotes(0, 1, notes);
        document.StartOpen(path, FileType::Rcp);
        document.TakeSettings({TwoColumns(), 0, 3});
        ASSERT_EQ(Read(), CRecipeDocument::Reading::Done);
    }

    FileContent content{.sha256 = std::string(64, 'a'), .bytes = 18};
    bool isOtherNow = false;
    SheetWishes wishes{.title = {}, .rows = {}, .user = u"mia", .time = {}};
    RecipeSheet sheet;
    std::string records;
};

} // namespace

TEST_F(SheetMaking, ShowsWhatTheTableShows)
{
    Make();
    ASSERT_EQ(sheet.items.size(), 2u);
    EXPECT_EQ(sheet.items[0].title, u"Temp");
    EXPECT_EQ(sheet.items[1].title, u"No.");
    ASSERT_EQ(sheet.blocks.size(), 3u);
    EXPECT_EQ(sheet.blocks[0].title, u"Row 1 (RW0)");
    EXPECT_EQ(sheet.blocks[2].title, u"Row 3 (RW6)");
    for (std::int32_t row = 0; row < 3; ++row)
        for (std::uint32_t column = 0; column < 2; ++column)
            EXPECT_EQ(sheet.blocks[static_cast<std::size_t>(row)].values[column].text, Text({row, column}));
    EXPECT_FALSE(ColumnsOf(sheet).hasUnits);
    EXPECT_FALSE(ColumnsOf(sheet).hasRanges);
    EXPECT_FALSE(ColumnsOf(sheet).hasRemarks);
}

TEST_F(SheetMaking, SaysOfWhichFileItIs)
{
    Make();
    EXPECT_EQ(sheet.title, u"Recipe sheet of " + path.filename().u16string());
    EXPECT_EQ(FactOf(sheet, u"File"), path.filename().u16string());
    EXPECT_EQ(FactOf(sheet, u"SHA-256"), std::u16string(64, u'a'));
    EXPECT_EQ(sheet.shortSha, std::u16string(12, u'a'));
    EXPECT_EQ(FactOf(sheet, u"Size"), u"18 bytes");
    EXPECT_EQ(FactOf(sheet, u"Table format"), u"Two");
    EXPECT_EQ(FactOf(sheet, u"Start address"), u"RW0");
    EXPECT_EQ(FactOf(sheet, u"Rows"), u"all 3");
    EXPECT_EQ(FactOf(sheet, u"User"), u"mia");
    wishes.title = u"Tuesday\u202E\n";
    wishes.user.clear();
    Make();
    EXPECT_EQ(sheet.title, u"Tuesday\\u202e\\n");
    EXPECT_EQ(FactOf(sheet, u"User"), u"not known");
}

TEST_F(SheetMaking, HasTheChosenRowsAlone)
{
    wishes.rows = {0, 2};
    Make();
    ASSERT_EQ(sheet.blocks.size(), 2u);
    EXPECT_EQ(sheet.blocks[1].title, u"Row 3 (RW6)");
    EXPECT_EQ(FactOf(sheet, u"Rows"), u"1, 3 of 3");
    EXPECT_EQ(std::count(records.begin(), records.end(), '\n'), 2);
    EXPECT_NE(records.find("\"row\":3,\"address\":6,"), std::string::npos) << records;
    wishes.rows = {0, 1, 2};
    Make();
    EXPECT_EQ(FactOf(sheet, u"Rows"), u"1-3 of 3");
}

TEST_F(SheetMaking, TellsOfEditsThatAreNotSaved)
{
    Type({1, 1}, u"5");
    Make();
    EXPECT_EQ(sheet.blocks[1].values[1].text, u"5");
    EXPECT_EQ(RemarkOn(sheet.blocks[1].values[1]), u"not saved");
    EXPECT_EQ(FactOf(sheet, u"SHA-256"), std::u16string(64, u'a') + u", with 1 edit that is not saved");
    EXPECT_NE(records.find("\"text\":\"5\",\"number\":5,\"words\":\"0005\",\"marks\":[]"), std::string::npos)
        << records;
    Type({2, 1}, u"6");
    isOtherNow = true;
    Make();
    EXPECT_EQ(FactOf(sheet, u"SHA-256"),
              std::u16string(64, u'a') +
                  u", with 2 edits that are not saved, changed by another program since these values were read");
}

TEST_F(SheetMaking, NewDocumentHasNoFile)
{
    document.StartNew();
    document.TakeSettings({TwoColumns(), 0, 2});
    ASSERT_EQ(Read(), CRecipeDocument::Reading::Done);
    content = {};
    Make();
    EXPECT_EQ(sheet.title, u"Recipe sheet");
    EXPECT_EQ(FactOf(sheet, u"File"), u"not saved yet");
    EXPECT_EQ(FactOf(sheet, u"SHA-256"), u"none");
    EXPECT_EQ(FactOf(sheet, u"Size"), u"no such fact");
    EXPECT_EQ(sheet.blocks[0].values[1].text, u"0");
    EXPECT_EQ(RemarkOn(sheet.blocks[0].values[1]), u"");
}

TEST_F(SheetMaking, ValuesThatTheFileDoesNotHoldAreTold)
{
    document.TakeSettings({TwoColumns(), 0, 4});
    ASSERT_EQ(Read(), CRecipeDocument::Reading::Done);
    Make();
    EXPECT_EQ(sheet.blocks[3].values[1].text, u"0");
    EXPECT_EQ(RemarkOn(sheet.blocks[3].values[1]), u"! not in the file");
    EXPECT_EQ(RemarkOn(sheet.blocks[2].values[1]), u"");
}

TEST_F(SheetMaking, NotesGiveUnitRangeAndNames)
{
    ItemNotes notes;
    notes.unit = u"°C";
    notes.lowest = CDecimal(8);
    notes.texts = {{u"8", u"eight"}, {u"9", u"nine"}};
    notes.bits = {u"Fan", u"", u"Door"};
    NoteNumbers(notes);
    Make();
    EXPECT_EQ(sheet.items[1].unit, u"°C");
    EXPECT_EQ(sheet.items[1].range, u"8 or more");
    EXPECT_EQ(sheet.items[0].unit, u"");
    EXPECT_TRUE(ColumnsOf(sheet).hasUnits);
    EXPECT_TRUE(ColumnsOf(sheet).hasRanges);
    EXPECT_EQ(RemarkOn(sheet.blocks[0].values[1]), u"Fan, Door; ! lies below 8 °C");
    EXPECT_EQ(RemarkOn(sheet.blocks[1].values[1]), u"eight"); // its bit has no name
    EXPECT_EQ(RemarkOn(sheet.blocks[2].values[1]), u"nine, Fan");
    Type({2, 1}, u"1");
    Make();
    EXPECT_EQ(RemarkOn(sheet.blocks[2].values[1]), u"Fan; ! lies below 8 °C; not saved");
}

TEST_F(SheetMaking, ANameStandsAloneWithoutNamedBits)
{
    ItemNotes notes;
    notes.texts = {{u"7", u"seven"}, {u"8", u"eight"}};
    notes.bits = {u"Fan"};
    NoteNumbers(notes);
    Make();
    EXPECT_EQ(RemarkOn(sheet.blocks[0].values[1]), u"seven, Fan");
    EXPECT_EQ(RemarkOn(sheet.blocks[1].values[1]), u"eight");
}

TEST_F(SheetMaking, ValuesOutsideTheirLimitsAreTold)
{
    WriteAll(path, WordBytes({0, 0, 0xD8F0, 0, 0, 0, 0, 0, 0})); // -10000
    Open();
    Make();
    EXPECT_EQ(sheet.blocks[0].values[1].text, u"0"); // kept
    EXPECT_EQ(RemarkOn(sheet.blocks[0].values[1]), u"! holds -10000; lies outside its limits -999 to 9999");
    EXPECT_EQ(RemarkOn(sheet.blocks[1].values[1]), u"");
}

TEST_F(SheetMaking, NumbersThatAreShownAsOthersAreTold)
{
    DataFormat format = MakeFormat(u"Speed", {MakeItem(u"Belt", DataType::Unsigned16, 1, 3)});
    format.items[0]->decimalDigits = 2;
    WriteAll(path, WordBytes({105, 150}));
    document.StartOpen(path, FileType::Rcp);
    document.TakeSettings({format, 0, 2});
    ASSERT_EQ(Read(), CRecipeDocument::Reading::Done);
    Make();
    EXPECT_EQ(sheet.blocks[0].values[0].text, u"1.50"); // kept
    EXPECT_EQ(RemarkOn(sheet.blocks[0].values[0]), u"! holds 1.05");
    EXPECT_EQ(sheet.blocks[1].values[0].text, u"1.50");
    EXPECT_EQ(RemarkOn(sheet.blocks[1].values[0]), u"");
}

TEST_F(SheetMaking, EmptyTableHasNoBlocks)
{
    document.TakeSettings({TwoColumns(), 0, 0});
    ASSERT_NE(Read(), CRecipeDocument::Reading::Failed);
    Make();
    EXPECT_TRUE(sheet.blocks.empty());
    EXPECT_EQ(records, "");
}

TEST_F(SheetMaking, CanBeGivenUp)
{
    CEnding ending;
    EXPECT_EQ(Make(ending), Outcome::GivenUp);
    EXPECT_EQ(sheet.blocks.size(), 2u);
}

TEST_F(SheetMaking, ContentOfAFile)
{
    FileContent found;
    WriteAll(path, BytesOf({'a', 'b', 'c'}));
    EXPECT_EQ(ReadFileContent(path, found, progress), Outcome::Done);
    EXPECT_EQ(found.sha256, "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(found.bytes, 3u);
    WriteAll(path, Bytes(std::size_t{600} << 10));
    CEnding ending;
    EXPECT_EQ(ReadFileContent(path, found, ending), Outcome::GivenUp);
    EXPECT_EQ(ReadFileContent(path.parent_path() / "gone.rcp", found, progress), Outcome::Failed);
    EXPECT_EQ(found, FileContent());
}
