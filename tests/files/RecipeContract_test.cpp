#include "files/RecipeFile.h"
#include "tests/files/FileSizeLimit.h"
#include "tests/files/OneType.h"
#include "tests/files/OrdinaryUser.h"

#include <gtest/gtest.h>

namespace fs = std::filesystem;

// What holds for a file of each of the four types: what is in it is shown, what is edited comes back, all else stays,
// and work that fails loses nothing and says so in the words of the type.

namespace {

using Texts = std::vector<std::u16string>;

struct RecipeContract : OneType, testing::TestWithParam<RecipeType> {
    RecipeContract() : OneType(GetParam()) {}

    /// The cells of a paged file that cannot be opened. kept: nothing is said.
    static Texts TextsOfNoFile()
    {
        const Texts row = {u"48", u"30", u"48", u"0.0", u"0", u"48"};
        Texts texts;
        for (std::int32_t i = 0; i < kRows; ++i)
            texts.insert(texts.end(), row.begin(), row.end());
        return texts;
    }

    /// That the file cannot be opened to be read.
    void ExpectNotOpened()
    {
        reporter.shown.clear();
        rows.SetText(0, 0, u"7");
        if (IsPaged(type.type)) {
            EXPECT_EQ(Read(rows), Outcome::Done);
            EXPECT_EQ(TextsOf(rows), TextsOfNoFile());
            EXPECT_TRUE(rows.ShowsTheSameEverywhere());
            EXPECT_EQ(reporter.shown, Texts());
        } else {
            EXPECT_EQ(Read(rows), Outcome::Failed);
            EXPECT_EQ(TextsOf(rows), Texts(kRows * kColumns));
            EXPECT_EQ(reporter.shown, Texts{OpenError()});
        }
        EXPECT_EQ(rows.EditedCount(), 0u);
        ExpectNotOpenedReadOnly();
    }

    void ExpectNotOpenedReadOnly()
    {
        reporter.shown.clear();
        EXPECT_EQ(ReadRecipeOnly(type.type, rows, path, reporter, progress), Outcome::Failed);
        EXPECT_EQ(TextsOf(rows), Texts(kRows * kColumns));
        EXPECT_EQ(reporter.shown, Texts{OpenError()});
    }

    std::ptrdiff_t FilesInFolder() const
    {
        return std::distance(fs::directory_iterator(folder.Path()), fs::directory_iterator());
    }

    /// That a save fails, and is told, and that the edits are there to be saved elsewhere.
    void ExpectNotSaved()
    {
        const Texts before = TextsOf(rows);
        const std::size_t edited = rows.EditedCount();
        const auto files = FilesInFolder();
        const SaveResult result = Save();
        EXPECT_FALSE(result.isSaved || result.mayHoldOldAndNew || result.isGivenUp || result.isLeftOut);
        EXPECT_EQ(reporter.shown, Texts{SaveError()});
        EXPECT_EQ(TextsOf(rows), before);
        EXPECT_EQ(rows.EditedCount(), edited);
        EXPECT_EQ(FilesInFolder(), files) << "no left-over";
    }

    /// The same of a file that cannot be opened. kept: a paged one is left out without a word.
    void ExpectNotSavedOrLeftOut()
    {
        if (!IsPaged(type.type))
            return ExpectNotSaved();
        const Texts before = TextsOf(rows);
        const SaveResult result = Save();
        EXPECT_TRUE(result.isLeftOut);
        EXPECT_FALSE(result.isSaved || result.mayHoldOldAndNew || result.isGivenUp);
        EXPECT_EQ(reporter.shown, Texts());
        EXPECT_EQ(TextsOf(rows), before);
    }
};

TEST_P(RecipeContract, ReadingShowsEveryCellAndLeavesTheFile)
{
    MakeFile();
    const Bytes before = ReadAll(path);
    EXPECT_EQ(Read(rows), Outcome::Done);
    EXPECT_EQ(TextsOf(rows), kTexts);
    EXPECT_EQ(rows.EditedCount(), 0u);
    CRecipeRows readOnly;
    LayOut(readOnly);
    EXPECT_EQ(ReadRecipeOnly(type.type, readOnly, path, reporter, progress), Outcome::Done);
    EXPECT_EQ(TextsOf(readOnly), kTexts);
    EXPECT_EQ(reporter.shown, Texts());
    EXPECT_TRUE(ReadAll(path) == before);
}

TEST_P(RecipeContract, EditedTextsComeBackAndAllElseStays)
{
    MakeAndRead();
    const Texts shown = Edit();
    EXPECT_TRUE(Save().isSaved);
    EXPECT_EQ(reporter.shown, Texts());
    EXPECT_EQ(TextsInFile(), ReadBack(type, shown));
    if (type.IsTable()) {
        EXPECT_EQ(BytesInFile(), TableFile(shown, true));
        return;
    }
    auto words = kWords;
    words[0] = {0x8000, 0xBEEF, 99, 0, 0, 0x3FC0, 0x4241, 0, 0, 0};
    words[1] = {0xFFFF, 0xAB01, 0x86A1, 1, 0, 0xC108, 0x6261, 0x6463, 0x6665, 10};
    words[2].back() = 77;
    words[3] = {0x7FFF, 0x00FF, 0xFFFF, 0, 0, 0xC090, 0, 0, 0, 30};
    EXPECT_EQ(BytesInFile(), Joined({kAround, RowBytes(words), kAround}));
}

TEST_P(RecipeContract, ExactWordsComeBackUnlessTheFileIsATable)
{
    MakeAndRead();
    if (type.IsTable())
        return; // a table has no words
    std::vector<CellEdit> edits = {{{0, 1}, CCellState::OfWords(u"\u0102")},
                                   {{1, 3}, CCellState::OfWords(u"\u0001\u4010")},
                                   {{3, 4}, CCellState::OfWords({u"\u4241\0\u4443", 3})}};
    rows.Exchange(edits);
    EXPECT_TRUE(Save().isSaved);
    auto words = kWords;
    words[0][1] = 0x0102;
    words[1][4] = 0x0001;
    words[1][5] = 0x4010;
    words[3][6] = 0x4241;
    words[3][7] = 0;
    words[3][8] = 0x4443; // no text of the cell is coded so
    EXPECT_EQ(BytesInFile(), Joined({kAround, RowBytes(words), kAround}));
    Texts shown = kTexts;
    shown[1] = u"102";
    shown[kColumns + 3] = u"2.3"; // 2.25 and a little
    shown[3 * kColumns + 4] = u"AB";
    EXPECT_EQ(TextsInFile(), shown);
}

TEST_P(RecipeContract, EditsThatAreTakenBackLeaveTheWordsAsTheyWere)
{
    MakeAndRead();
    std::vector<CellEdit> edits = {{{0, 0}, CCellState::OfText(u"5")}, {{3, 4}, CCellState::OfText(u"other")}};
    rows.Exchange(edits);
    rows.Exchange(edits);
    EXPECT_EQ(rows.EditedCount(), 0u);
    const Bytes before = BytesInFile();
    EXPECT_TRUE(Save().isSaved);
    EXPECT_EQ(BytesInFile(), type.IsTable() ? TableFile(kTexts, true) : before);
}

TEST_P(RecipeContract, SecondSaveStoresWhatWasEditedSinceTheFirst)
{
    MakeAndRead();
    Texts shown = Edit();
    EXPECT_TRUE(Save().isSaved);
    rows.MarkSaved();
    rows.SetText(2, 2, u"123");
    shown[2 * kColumns + 2] = u"123";
    EXPECT_EQ(rows.EditedCount(), 1u);
    EXPECT_TRUE(Save().isSaved);
    EXPECT_EQ(TextsInFile(), ReadBack(type, shown));
}

// What is not there

TEST_P(RecipeContract, MissingFileIsNotOpened)
{
    ExpectNotOpened();
    EXPECT_FALSE(fs::exists(path));
}

TEST_P(RecipeContract, FileInAMissingFolderIsNotOpened)
{
    path = folder / "missing" / "a";
    ExpectNotOpened();
}

TEST_P(RecipeContract, FolderIsNotOpened)
{
    fs::create_directory(path);
    ExpectNotOpened();
}

TEST_P(RecipeContract, UnreadableFileIsNotOpened)
{
    MakeFile();
    fs::permissions(path, fs::perms::none);
    const COrdinaryUser user;
    ExpectNotOpened();
}

TEST_P(RecipeContract, RowsOfNoFileAreNotSavedOverAPagedOne)
{
    if (!IsPaged(type.type))
        return;
    EXPECT_EQ(Read(rows), Outcome::Done);
    MakeFile();
    const Bytes before = ReadAll(path);
    rows.SetText(0, 0, u"7");
    ExpectNotSaved();
    EXPECT_TRUE(ReadAll(path) == before);
}

TEST_P(RecipeContract, RowsPastTheEndShowZerosAndAreAddedByASave)
{
    constexpr std::int32_t kMoreRows = kRows + 2;
    MakeFile();
    LayOut(rows, kMoreRows);
    EXPECT_EQ(Read(rows), Outcome::Done);
    Texts shown = kTexts;
    if (type.IsTable()) {
        shown.resize(kMoreRows * kColumns, u"0");
        EXPECT_EQ(TextsOf(rows), shown);
    }
    const Texts all = TextsOf(rows); // the first words after the rows are those around them
    EXPECT_EQ(Texts(all.begin(), all.begin() + kRows * kColumns), kTexts);
    EXPECT_EQ(Texts(all.end() - 2, all.end()), type.IsTable() ? Texts({u"0", u"0"}) : Texts({u"", u"0"}));
    rows.SetText(kMoreRows - 1, 5, u"9");
    EXPECT_TRUE(Save().isSaved);
    Texts expected = all;
    expected.back() = u"9";
    EXPECT_EQ(TextsInFile(), ReadBack(type, expected));
    EXPECT_EQ(reporter.shown, Texts());
}

TEST_P(RecipeContract, NoRowsAndNoColumnsChangeNoWord)
{
    MakeFile();
    const Bytes before = BytesInFile();
    rows.LayOut(Columns(), type.startAddress, 0);
    EXPECT_EQ(Read(rows), Outcome::Done);
    EXPECT_TRUE(Save().isSaved);
    EXPECT_EQ(BytesInFile(), type.IsTable() ? Utf16File(u"") : before);
    rows.LayOut({}, type.startAddress, 2);
    EXPECT_EQ(Read(rows), Outcome::Done);
    EXPECT_TRUE(Save().isSaved);
    EXPECT_EQ(BytesInFile(), type.IsTable() ? Utf16File(u"\r\n\r\n") : before);
    EXPECT_EQ(reporter.shown, Texts());
}

// What cannot be written

TEST_P(RecipeContract, SaveOverAFolderFailsAndLosesNothing)
{
    MakeAndRead();
    Edit();
    fs::remove(path);
    fs::create_directory(path);
    ExpectNotSaved();
    EXPECT_TRUE(fs::is_directory(path) && fs::is_empty(path));
}

TEST_P(RecipeContract, SaveOverAReadOnlyFileFailsAndLosesNothing)
{
    MakeAndRead();
    Edit();
    const Bytes before = ReadAll(path);
    fs::permissions(folder.Path(), fs::perms::all);
    fs::permissions(path, fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    {
        const COrdinaryUser user;
        ExpectNotSavedOrLeftOut();
    }
    EXPECT_TRUE(ReadAll(path) == before);
}

TEST_P(RecipeContract, SaveOfANewFileIntoAReadOnlyFolderFailsAndLosesNothing)
{
    MakeAndRead();
    Edit();
    fs::remove(path);
    fs::permissions(folder.Path(), fs::perms(0555));
    const COrdinaryUser user;
    ExpectNotSavedOrLeftOut();
    EXPECT_FALSE(fs::exists(path));
}

TEST_P(RecipeContract, SaveIntoAFolderThatVanishedFailsAndLosesNothing)
{
    fs::create_directory(folder / "sub");
    path = folder / "sub" / path.filename();
    MakeAndRead();
    Edit();
    fs::remove_all(folder / "sub");
    ExpectNotSavedOrLeftOut();
    EXPECT_FALSE(fs::exists(folder / "sub"));
}

TEST_P(RecipeContract, SaveToAFileThatVanishedMakesItAnewOrLeavesItOut)
{
    MakeAndRead();
    const Texts shown = Edit();
    fs::remove(path);
    if (IsPaged(type.type)) {
        ExpectNotSavedOrLeftOut();
        EXPECT_FALSE(fs::exists(path));
        return;
    }
    EXPECT_TRUE(Save().isSaved);
    EXPECT_EQ(TextsInFile(), ReadBack(type, shown));
}

TEST_P(RecipeContract, SaveToAFullDiskFailsAndLosesNothing)
{
    MakeFile();
    LayOut(rows, 40000); // more than the file holds, and no reading is to make it longer
    ASSERT_EQ(ReadRecipeOnly(type.type, rows, path, reporter, progress), Outcome::Done);
    rows.SetText(0, 0, u"7");
    const Bytes before = ReadAll(path);
    {
        const CFileSizeLimit limit(before.size() + 1000);
        ExpectNotSaved();
    }
    EXPECT_TRUE(ReadAll(path) == before);
}

// What the user gives up

TEST_P(RecipeContract, ReadGivenUpAtAnyStepLeavesEveryCellEmptyAndSaysNothing)
{
    constexpr std::int32_t kManyRows = 120000; // several steps
    MakeFile();
    Outcome outcome = Outcome::GivenUp;
    for (std::size_t step = 0; outcome != Outcome::Done; ++step) {
        ASSERT_LT(step, 100u);
        LayOut(rows, kManyRows);
        CImpatientProgress impatient(step);
        outcome = ReadRecipe(type.type, rows, path, false, reporter, impatient);
        EXPECT_EQ(rows.Text(0, 0), outcome == Outcome::Done ? u"-2" : u"");
        EXPECT_NE(outcome, Outcome::Failed);
        EXPECT_TRUE(step > 0 || outcome == Outcome::GivenUp);
    }
    EXPECT_EQ(reporter.shown, Texts());
}

TEST_P(RecipeContract, SaveGivenUpAtAnyStepWritesNothingAndSaysNothing)
{
    constexpr std::int32_t kManyRows = 30000; // several steps
    MakeFile();
    LayOut(rows, kManyRows);
    ASSERT_EQ(Read(rows), Outcome::Done);
    rows.SetText(kManyRows - 1, 0, u"77");
    const Bytes before = ReadAll(path);
    SaveResult result;
    std::size_t step = 0;
    for (; !result.isSaved; ++step) {
        ASSERT_LT(step, 100u);
        CImpatientProgress impatient(step);
        result = SaveRecipe(type.type, rows, path, reporter, impatient);
        EXPECT_NE(result.isSaved, result.isGivenUp);
        EXPECT_TRUE(result.isSaved || ReadAll(path) == before) << step;
    }
    EXPECT_GT(step, 2u);
    EXPECT_EQ(reporter.shown, Texts());
    EXPECT_EQ(TextsInFile()[(kManyRows - 1) * kColumns], u"77");
}

INSTANTIATE_TEST_SUITE_P(Types, RecipeContract, testing::ValuesIn(kTypes),
                         [](const auto& c) { return std::string(c.param.name); });

} // namespace
