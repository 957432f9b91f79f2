#include "disk/File.h"
#include "library/FormatLibrary.h"
#include "library/LibraryPlace.h"
#include "library/NotesFile.h"
#include "tests/support/Formats.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

/// A user's data folder that does not exist yet, and a package's sample library of one format.
struct FirstUse : testing::Test {
    CTempFolder folder;
    fs::path dataFolder = folder / "home" / ".local" / "share";
    fs::path library = dataFolder / "vantor" / "RecipeFile.Dat";
    fs::path sample = folder / "sample.dat";

    FirstUse()
    {
        FormatLibrary formats;
        formats.formats.push_back(std::make_unique<DataFormat>(DefaultFormat()));
        formats.rowCount = 12;
        EXPECT_EQ(formats.save(sample), 0);
    }
};

TEST_F(FirstUse, MakesTheUsersLibraryFromTheSample)
{
    EXPECT_EQ(UserLibraryPath(dataFolder, sample), library);
    EXPECT_EQ(ReadAll(library), ReadAll(sample));
}

TEST_F(FirstUse, TakesTheNotesOfTheSampleAlong)
{
    ASSERT_TRUE(WriteNotes({{{.format = u"A", .item = u"X"}, {.unit = u"m"}}}, NotesPathOf(sample)));
    UserLibraryPath(dataFolder, sample);
    EXPECT_EQ(ReadAll(NotesPathOf(library)), ReadAll(NotesPathOf(sample)));
}

TEST_F(FirstUse, LeavesTheUsersNotesAlone)
{
    const NotesKey ofSample{.format = u"A", .item = u"X"};
    const NotesKey ofUser{.format = u"Mine", .item = u"Y"};
    ASSERT_TRUE(WriteNotes({{ofSample, {.unit = u"m"}}}, NotesPathOf(sample)));
    fs::create_directories(library.parent_path());
    ASSERT_TRUE(WriteNotes({{ofUser, {.unit = u"bar"}}}, NotesPathOf(library)));
    UserLibraryPath(dataFolder, sample);
    EXPECT_EQ(ReadNotes(NotesPathOf(library)).notes,
              (LibraryNotes{{ofSample, {.unit = u"m"}}, {ofUser, {.unit = u"bar"}}}));
    fs::remove(library);
    WriteAll(NotesPathOf(library), {}); // damaged
    UserLibraryPath(dataFolder, sample);
    EXPECT_EQ(fs::file_size(NotesPathOf(library)), 0u);
}

TEST_F(FirstUse, LeavesTheUsersLibraryAlone)
{
    fs::create_directories(library.parent_path());
    WriteAll(library, {}); // even an empty one: its formats were deleted
    EXPECT_EQ(UserLibraryPath(dataFolder, sample), library);
    EXPECT_EQ(fs::file_size(library), 0u);
}

TEST_F(FirstUse, GoesOnWithoutASample)
{
    EXPECT_EQ(UserLibraryPath(dataFolder, folder / "gone.dat"), library);
    EXPECT_FALSE(fs::exists(dataFolder));
}

TEST_F(FirstUse, GoesOnWhereNothingCanBeMade)
{
    WriteAll(folder / "home", {}); // a file where the folder should be
    EXPECT_EQ(UserLibraryPath(dataFolder, sample), library);
    EXPECT_FALSE(fs::exists(library));
}

TEST_F(FirstUse, ReadsTheSampleAndMakesNothing)
{
    EXPECT_EQ(UserLibraryToRead(dataFolder, sample), sample);
    EXPECT_FALSE(fs::exists(folder / "home"));
}

TEST_F(FirstUse, ReadsTheUsersLibraryWhereThereIsOneOrNoSample)
{
    EXPECT_EQ(UserLibraryToRead(dataFolder, folder / "gone.dat"), library);
    fs::create_directories(library.parent_path());
    WriteAll(library, {});
    EXPECT_EQ(UserLibraryToRead(dataFolder, sample), library);
}

TEST(ProgramLibraryPath, IsBesideTheProgram)
{
    CRecordingReporter reporter;
    const CTempFolder folder;
    EXPECT_EQ(ProgramLibraryPath(folder / "vantor", reporter), folder / "RecipeFile.Dat");
    EXPECT_EQ(ProgramLibraryToRead(folder / "vantor", reporter), folder / "RecipeFile.Dat");
    EXPECT_FALSE(fs::exists(folder / "RecipeFile.Dat"));
    EXPECT_TRUE(reporter.shown.empty());
}

} // namespace
