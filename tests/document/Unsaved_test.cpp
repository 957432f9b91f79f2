#include "recovery/UnsavedStore.h"
#include "tests/document/DocumentFixture.h"
#include "tests/document/RandomRecipe.h"

// The edits that a document keeps until they are saved.

namespace fs = std::filesystem;

namespace {

constexpr CellPlace kTemp{1, 0};
constexpr CellPlace kNumber{0, 1};

class UnsavedEdits : public RecipeDocument {
protected:
    UnsavedEdits() { document.KeepUnsavedIn(data); }

    std::vector<UnsavedEntry> Journals() const { return CUnsavedStore(data).List(); }

    /// The work in the one journal of that state.
    UnsavedWork Work(UnsavedState state = UnsavedState::Open) const
    {
        for (const UnsavedEntry& entry : Journals())
            if (entry.state == state)
                return CUnsavedStore(data).Read(entry.id).value();
        ADD_FAILURE() << "no such journal";
        return {};
    }

    std::size_t CountOf(UnsavedState state) const
    {
        const auto journals = Journals();
        return static_cast<std::size_t>(std::count_if(
            journals.begin(), journals.end(), [state](const UnsavedEntry& entry) { return entry.state == state; }));
    }

    /// What another document puts back of the journal that this one leaves.
    std::vector<UnsavedCell> PutBackInto(CRecipeDocument& other)
    {
        EditOutcome outcome = EditOutcome::Nothing;
        return other.PutBackUnsaved(Work(), outcome);
    }

    fs::path data = folder / "data";
};

} // namespace

TEST_F(UnsavedEdits, AreInAJournalFromTheFirstOneOn)
{
    EXPECT_TRUE(Journals().empty());
    Type(kTemp, u"3.5");
    const UnsavedWork work = Work();
    EXPECT_EQ(work.header.file, path);
    EXPECT_EQ(work.header.rowCount, 3);
    ASSERT_EQ(work.cells.size(), 1u);
    EXPECT_EQ(work.cells[0].place, kTemp);
    EXPECT_EQ(work.cells[0].state, CCellState::OfText(u"3.5"));
    EXPECT_EQ(work.cells[0].oldWords, WordBytes({0, 0x3F80}));
    Type(kNumber, u"5");
    EXPECT_EQ(Work().cells.size(), 2u);
    EXPECT_EQ(Journals().size(), 1u);
}

TEST_F(UnsavedEdits, AreInNoJournalOnceSaved)
{
    Type(kTemp, u"3.5");
    ASSERT_TRUE(Save());
    EXPECT_TRUE(Journals().empty());
    Type(kTemp, u"4.5");
    EXPECT_EQ(Work().cells[0].oldWords, WordBytes({0, 0x4060})) << "what the file holds now";
    ASSERT_TRUE(document.WriteEdited(reporter, progress));
    EXPECT_TRUE(Journals().empty());
}

TEST_F(UnsavedEdits, StayInItWhenASaveFails)
{
    Type(kTemp, u"3.5");
    fs::remove(path);
    fs::create_directory(path);
    EXPECT_FALSE(Save());
    EXPECT_EQ(Work().cells.size(), 1u);
}

TEST_F(UnsavedEdits, AreNoneOnceTheyAreUndone)
{
    Type(kTemp, u"3.5");
    document.Undo();
    EXPECT_TRUE(Work().cells.empty());
    document.Redo();
    EXPECT_EQ(Work().cells.size(), 1u);
}

TEST_F(UnsavedEdits, BeyondASaveAreTheTextsShown)
{
    Type(kTemp, u"3.5");
    ASSERT_TRUE(Save());
    document.Undo(); // the cell is untouched, and edited
    const UnsavedWork work = Work();
    ASSERT_EQ(work.cells.size(), 1u);
    EXPECT_EQ(work.cells[0].state, CCellState::OfText(u"1.0"));
}

TEST_F(UnsavedEdits, ThatAReadingDropsAreKeptAndComeBack)
{
    Type(kTemp, u"3.5");
    Read();
    EXPECT_EQ(CountOf(UnsavedState::Open), 0u);
    EXPECT_EQ(Work(UnsavedState::Dropped).cells.size(), 1u);
    document.Undo();
    EXPECT_EQ(Work().cells.size(), 1u);
}

TEST_F(UnsavedEdits, ThatNewOrOpenDropsAreKept)
{
    Type(kTemp, u"3.5");
    Open();
    EXPECT_EQ(CountOf(UnsavedState::Dropped), 1u);
    Type(kTemp, u"4.5");
    document.StartNew();
    EXPECT_EQ(CountOf(UnsavedState::Dropped), 2u);
}

TEST_F(UnsavedEdits, OfANewDocumentAreKept)
{
    document.StartNew();
    Read();
    Type(kNumber, u"5");
    const UnsavedWork work = Work();
    EXPECT_TRUE(work.header.file.empty());
    EXPECT_EQ(work.cells[0].oldText, u"0");
    CRecipeDocument other;
    other.StartNew();
    other.TakeSettings({work.header.format, work.header.startAddress, work.header.rowCount});
    other.Read(FileType::Rcp, reporter, progress);
    EXPECT_TRUE(PutBackInto(other).empty());
    EXPECT_EQ(other.Rows().Text(kNumber.row, kNumber.column), u"5");
}

TEST_F(UnsavedEdits, ArePutBackAsOneEdit)
{
    Type(kTemp, u"3.5");
    Type(kNumber, u"5");
    document.SetStates(EditKind::KeepStored, {{{2, 1}, CCellState::OfWords(u"\u1234")}});
    CRecipeDocument other;
    other.StartOpen(path, FileType::Rcp);
    other.TakeSettings({TwoColumns(), 0, 3});
    other.Read(FileType::Rcp, reporter, progress);
    EXPECT_TRUE(PutBackInto(other).empty());
    EXPECT_EQ(other.Rows().EditedCount(), 3u);
    EXPECT_EQ(other.Rows().State({2, 1}), CCellState::OfWords(u"\u1234"));
    EXPECT_EQ(other.UndoName(), u"Put back (3 cells)");
    EXPECT_TRUE(other.IsModified());
    other.Undo();
    EXPECT_EQ(other.Rows().EditedCount(), 0u);
}

TEST_F(UnsavedEdits, AreNotPutBackWhereTheFileHoldsOtherWords)
{
    Type(kTemp, u"3.5");
    Type(kNumber, u"5");
    words[4] = std::byte{70};
    WriteAll(path, words);
    CRecipeDocument other;
    other.StartOpen(path, FileType::Rcp);
    other.TakeSettings({TwoColumns(), 0, 3});
    other.Read(FileType::Rcp, reporter, progress);
    const auto others = PutBackInto(other);
    ASSERT_EQ(others.size(), 1u);
    EXPECT_EQ(others[0].place, kNumber);
    EXPECT_EQ(other.Rows().Text(kNumber.row, kNumber.column), u"70");
    EXPECT_EQ(other.Rows().Text(kTemp.row, kTemp.column), u"3.5");
}

TEST_F(UnsavedEdits, AreNotPutBackIntoAnotherLayout)
{
    Type(kTemp, u"3.5");
    CRecipeDocument other;
    other.StartOpen(path, FileType::Rcp);
    other.TakeSettings({TwoColumns(), 0, 2});
    other.Read(FileType::Rcp, reporter, progress);
    EXPECT_EQ(PutBackInto(other).size(), 1u);
    EXPECT_EQ(other.Rows().EditedCount(), 0u);
}

TEST_F(UnsavedEdits, AreComparedWithWhatTheFileHoldsOnceTheUserKeepsThemOverIt)
{
    Type(kNumber, u"5");
    words[4] = std::byte{70};
    WriteAll(path, words);
    document.KeepShown(*document.Look().changes);
    EXPECT_EQ(Work().cells[0].oldWords, WordBytes({70}));
    EXPECT_EQ(Journals().size(), 1u);
}

TEST_F(UnsavedEdits, AreMadeWhereNothingCanBeKept)
{
    WriteAll(data, {});
    Type(kTemp, u"3.5");
    EXPECT_EQ(Text(kTemp), u"3.5");
    EXPECT_TRUE(document.Unsaved().LastFault());
    fs::remove(data);
    Type(kNumber, u"5");
    EXPECT_FALSE(document.Unsaved().LastFault());
    EXPECT_EQ(Work().cells.size(), 2u) << "those before, too";
}

TEST_F(UnsavedEdits, StayBehindWhenTheDocumentGoes)
{
    {
        CRecipeDocument other;
        other.KeepUnsavedIn(data);
        other.StartOpen(path, FileType::Rcp);
        other.TakeSettings({TwoColumns(), 0, 3});
        other.Read(FileType::Rcp, reporter, progress);
        other.SetTexts(EditKind::Typing, {{kTemp, u"3.5"}});
    }
    EXPECT_EQ(CountOf(UnsavedState::Left), 1u);
}

TEST_F(UnsavedEdits, ThatWereUndoneLeaveNothingBehind)
{
    {
        CRecipeDocument other;
        other.KeepUnsavedIn(data);
        other.StartOpen(path, FileType::Rcp);
        other.TakeSettings({TwoColumns(), 0, 3});
        other.Read(FileType::Rcp, reporter, progress);
        other.SetTexts(EditKind::Typing, {{kTemp, u"3.5"}});
        other.Undo();
    }
    EXPECT_TRUE(Journals().empty());
}

TEST_F(UnsavedEdits, AreFlushedWhenAskedTo)
{
    EXPECT_TRUE(document.Unsaved().IsFlushed());
    Type(kTemp, u"3.5");
    EXPECT_FALSE(document.Unsaved().IsFlushed());
    EXPECT_TRUE(document.Unsaved().Flush());
    EXPECT_TRUE(document.Unsaved().IsFlushed());
}

/// As on a share that goes and comes back as it was.
TEST_F(UnsavedEdits, CanBePutBackAfterASaveThatFailedWhileTheFileCouldNotBeRead)
{
    Type(kTemp, u"3.5");
    fs::remove(path);
    fs::create_directory(path);
    ASSERT_FALSE(Save());
    fs::remove(path);
    WriteAll(path, words);
    EXPECT_EQ(Work().cells[0].oldWords, WordBytes({0, 0x3F80})) << "what it was read from";
    CRecipeDocument other;
    other.StartOpen(path, FileType::Rcp);
    other.TakeSettings({TwoColumns(), 0, 3});
    other.Read(FileType::Rcp, reporter, progress);
    EXPECT_TRUE(PutBackInto(other).empty());
}

/// Whatever a user does: what stands in the journal is what is edited, and a document that puts it back saves the same.
class RandomUnsavedEdits : public testing::TestWithParam<FileType> {};

TEST_P(RandomUnsavedEdits, ComeBackWhole)
{
    for (unsigned seed = 0; seed < 40; ++seed) {
        const CTempFolder data;
        CRandomRecipe recipe(seed, GetParam());
        recipe.document.KeepUnsavedIn(data.Path());
        for (int step = 0; step < 30; ++step) {
            const int choice = recipe.Below(10);
            if (choice < 6)
                recipe.Edit();
            else if (choice < 8)
                recipe.document.Undo();
            else if (choice < 9)
                recipe.document.Redo();
            else if (recipe.document.Write(GetParam(), recipe.Path(), recipe.reporter, recipe.progress))
                recipe.document.MarkSaved();
        }
        const auto journals = CUnsavedStore(data.Path()).List();
        const CRecipeRows& rows = recipe.document.Rows();
        const auto places = rows.EditedPlaces();
        if (places.empty()) {
            ASSERT_TRUE(journals.empty() || journals[0].edits == 0);
            continue;
        }
        ASSERT_EQ(journals.size(), 1u);
        const UnsavedWork work = CUnsavedStore(data.Path()).Read(journals[0].id).value();
        ASSERT_EQ(work.cells.size(), places.size());

        CRecipeDocument other;
        other.StartOpen(recipe.Path(), GetParam());
        other.TakeSettings({work.header.format, work.header.startAddress, work.header.rowCount});
        ASSERT_EQ(other.Read(GetParam(), recipe.reporter, recipe.progress), CRecipeDocument::Reading::Done);
        EditOutcome outcome = EditOutcome::Nothing;
        ASSERT_TRUE(other.PutBackUnsaved(work, outcome).empty());
        for (const CellPlace place : places)
            ASSERT_EQ(other.Rows().Text(place.row, place.column), rows.Text(place.row, place.column));

        const Bytes before = ReadAll(recipe.Path());
        const bool isSaved = other.WriteEdited(recipe.reporter, recipe.progress).isSaved; // not each form of a table
        const Bytes byOther = ReadAll(recipe.Path());
        WriteAll(recipe.Path(), before);
        ASSERT_EQ(recipe.document.WriteEdited(recipe.reporter, recipe.progress).isSaved, isSaved);
        ASSERT_EQ(ReadAll(recipe.Path()), byOther) << "seed " << seed;
    }
}

INSTANTIATE_TEST_SUITE_P(Types, RandomUnsavedEdits,
                         testing::Values(FileType::Rcp, FileType::Csv, FileType::Erp, FileType::Frp));
