#include "library/LibraryOpening.h"
#include "tests/files/OrdinaryUser.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

struct OpenedLibrary : testing::Test {
    OpenedLibrary()
    {
        FormatLibrary stored;
        stored.rowCount = 7;
        stored.formats.push_back(std::make_unique<DataFormat>(DefaultFormat()));
        EXPECT_EQ(stored.save(path), 0);
        fs::permissions(folder.Path(), fs::perms::all);
    }
    ~OpenedLibrary() override { fs::permissions(folder.Path(), fs::perms::all); }

    CTempFolder folder;
    const fs::path path = folder / "RecipeFile.Dat";
    FormatLibrary library;
};

TEST_F(OpenedLibrary, MayBeWritten)
{
    const LibraryOpening opening = OpenLibrary(library, path);
    EXPECT_EQ(opening.loaded, 660);
    EXPECT_TRUE(opening.mayBeWritten);
    EXPECT_FALSE(IsDamaged(library, opening));
}

TEST_F(OpenedLibrary, IsReadWhereItMayOnlyBeRead)
{
    MakeReadOnly(path);
    const COrdinaryUser user;
    EXPECT_EQ(FormatLibrary().load(path), -1);
    const LibraryOpening opening = OpenLibrary(library, path);
    EXPECT_EQ(opening.loaded, 660);
    EXPECT_FALSE(opening.mayBeWritten);
    EXPECT_FALSE(MayBeWritten(path));
    EXPECT_TRUE(library.versionsKnown);
    EXPECT_EQ(library.formats.size(), 1U);
    EXPECT_EQ(library.rowCount, 7);
}

TEST_F(OpenedLibrary, IsMadeWhereItIsMissing)
{
    fs::remove(path);
    const LibraryOpening opening = OpenLibrary(library, path);
    EXPECT_EQ(opening.loaded, 0);
    EXPECT_TRUE(opening.mayBeWritten);
    EXPECT_FALSE(IsDamaged(library, opening));
    EXPECT_TRUE(fs::is_empty(path));
}

TEST_F(OpenedLibrary, HasNothingWhereItCannotBeMade)
{
    fs::remove(path);
    MakeReadOnly(folder.Path());
    const COrdinaryUser user;
    const LibraryOpening opening = OpenLibrary(library, path);
    EXPECT_EQ(opening.loaded, -1);
    EXPECT_FALSE(opening.mayBeWritten);
    EXPECT_FALSE(IsDamaged(library, opening)) << "there is no file";
}

TEST_F(OpenedLibrary, IsDamagedWhereItEndsEarly)
{
    fs::resize_file(path, 659);
    const LibraryOpening opening = OpenLibrary(library, path);
    EXPECT_TRUE(IsDamaged(library, opening));
    EXPECT_TRUE(opening.mayBeWritten);
}

TEST_F(OpenedLibrary, HasNoLeftOversBesideIt)
{
    WriteAll(folder / "vantor-1.new", BytesOf({1}));
    fs::create_directory(folder / "other");
    fs::create_symlink(path, folder / "other" / "link");
    OpenLibrary(library, folder / "other" / "link"); // a save grows where the link leads
    EXPECT_FALSE(fs::exists(folder / "vantor-1.new"));
}

TEST_F(OpenedLibrary, LeavesAFolderAloneThatIsOnlyRead)
{
    WriteAll(folder / "vantor-1.new", BytesOf({1}));
    FormatLibrary().loadReadOnly(path);
    EXPECT_TRUE(fs::exists(folder / "vantor-1.new"));
}

} // namespace
