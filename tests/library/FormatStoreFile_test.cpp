#include "library/FormatStore.h"
#include "tests/files/FileSizeLimit.h"
#include "tests/files/OrdinaryUser.h"
#include "tests/support/Formats.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

using Content = LibraryState::Content;
using Changes = LibraryState::Changes;

/// A library file of two formats, and what a store makes of it.
struct FormatStoreFile : testing::Test {
    FormatStoreFile()
    {
        FormatLibrary library;
        for (const char16_t* name : {u"First", u"Second"})
            library.formats.push_back(std::make_unique<DataFormat>(MakeFormat(name, {DefaultItem()})));
        EXPECT_EQ(library.save(path), 0);
        original = ReadAll(path);
        fs::permissions(folder.Path(), fs::perms::all);
    }
    ~FormatStoreFile() override { fs::permissions(folder.Path(), fs::perms::all); }

    void Damage()
    {
        original.resize(original.size() - 10);
        WriteAll(path, original);
    }

    CTempFolder folder;
    const fs::path path = folder / "RecipeFile.Dat";
    const fs::path copy = folder / "RecipeFile.Dat.bak";
    Bytes original;
};

} // namespace

TEST_F(FormatStoreFile, ThatIsDamagedIsToldAndCopiedBeforeItIsFirstSaved)
{
    Damage();
    CFormatStore store(path);
    EXPECT_EQ(store.State(), (LibraryState{.content = Content::Damaged, .changes = Changes::Kept}));
    EXPECT_EQ(store.Library().formats.size(), 1U);
    EXPECT_FALSE(fs::exists(copy)) << "nothing is lost yet";
    ASSERT_TRUE(store.Save());
    EXPECT_EQ(ReadAll(copy), original);
    store.RemoveFormat(0);
    ASSERT_TRUE(store.Save());
    EXPECT_FALSE(fs::exists(folder / "RecipeFile.Dat.bak2")) << "what is saved now is understood";
    EXPECT_EQ(store.State().content, Content::Damaged) << "what was not shown is not shown now";
}

TEST_F(FormatStoreFile, OfALaterVersionIsCopiedAndNotTold)
{
    original[24] = std::byte{'5'}; // "RecipeFile2.5"
    WriteAll(path, original);
    CFormatStore store(path);
    EXPECT_EQ(store.State(), LibraryState());
    ASSERT_TRUE(store.Save());
    EXPECT_EQ(ReadAll(copy), original);
}

TEST_F(FormatStoreFile, ThatIsUnderstoodIsNotCopied)
{
    CFormatStore store(path);
    store.RemoveFormat(0);
    ASSERT_TRUE(store.Save());
    EXPECT_FALSE(fs::exists(copy));
}

TEST_F(FormatStoreFile, IsLeftAloneWhereItCannotBeCopied)
{
    Damage();
    original.resize(original.size() + 50'000); // the copy is what does not fit on the disk
    WriteAll(path, original);
    CFormatStore store(path);
    {
        const CFileSizeLimit limit(10'000);
        EXPECT_FALSE(store.Save());
    }
    EXPECT_EQ(ReadAll(path), original);
    ASSERT_TRUE(store.Save()) << "with room again";
    EXPECT_EQ(ReadAll(copy), original);
}

TEST_F(FormatStoreFile, ThatCannotBeReadIsToldUntilASaveMakesOne)
{
    fs::remove(path);
    fs::create_directory(path);
    CFormatStore store(path);
    EXPECT_EQ(store.State(), (LibraryState{.content = Content::Unreadable, .changes = Changes::NotWritten}));
    EXPECT_FALSE(store.Save());
    EXPECT_EQ(store.State().content, Content::Unreadable);
    fs::remove(path);
    ASSERT_TRUE(store.Save());
    EXPECT_EQ(store.State(), LibraryState()) << "the file holds what is shown";
}

TEST_F(FormatStoreFile, ThatCannotBeMadeIsTold)
{
    fs::remove(path);
    MakeReadOnly(folder.Path());
    const COrdinaryUser user;
    CFormatStore store(path);
    EXPECT_EQ(store.State(), (LibraryState{.content = Content::Whole, .changes = Changes::NoFile}));
    EXPECT_FALSE(store.Save());
}

TEST_F(FormatStoreFile, ThatMayOnlyBeReadIsToldUntilASaveGoes)
{
    MakeReadOnly(path);
    MakeReadOnly(folder.Path());
    const LibraryState readOnly{.content = Content::Whole, .changes = Changes::NotWritten};
    CFormatStore store = [&] {
        const COrdinaryUser user;
        CFormatStore opened(path);
        EXPECT_EQ(opened.State(), readOnly);
        EXPECT_TRUE(opened.Save()) << "nothing changed";
        EXPECT_EQ(opened.State(), readOnly);
        opened.RemoveFormat(1);
        EXPECT_FALSE(opened.Save());
        return opened;
    }();
    EXPECT_EQ(ReadAll(path), original);
    fs::permissions(path, fs::perms::all);
    fs::permissions(folder.Path(), fs::perms::all);
    EXPECT_TRUE(store.Save());
    EXPECT_EQ(store.State(), LibraryState());
    EXPECT_EQ(CFormatStore(path).Library().formats.size(), 1U);
}

TEST_F(FormatStoreFile, ThatIsDamagedAndMayOnlyBeReadIsBoth)
{
    Damage();
    MakeReadOnly(path);
    MakeReadOnly(folder.Path());
    const COrdinaryUser user;
    const CFormatStore store(path);
    EXPECT_EQ(store.State(), (LibraryState{.content = Content::Damaged, .changes = Changes::NotWritten}));
}
