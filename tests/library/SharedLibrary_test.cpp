// Several stores on one library file.

#include "disk/File.h"
#include "library/FormatStore.h"
#include "tests/files/OrdinaryUser.h"
#include "tests/library/FormatTexts.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <functional>

namespace fs = std::filesystem;

namespace {

using Step = std::function<void(CFormatStore& store)>;

struct SharedCase {
    const char* name;
    const char16_t* stored; ///< before
    Step first;             ///< saved
    Step second;            ///< saved after that
    const char16_t* merged;
    friend void PrintTo(const SharedCase& c, std::ostream* out) { *out << c.name; }
};

struct SharedLibrary : testing::Test {
    SharedLibrary() { Store(u"A=1, B=2"); }
    ~SharedLibrary() override { fs::permissions(folder.Path(), fs::perms::all); }

    void Store(std::u16string_view formats)
    {
        FormatLibrary library;
        library.formats = FormatsIn(formats);
        ASSERT_EQ(library.save(path), 0);
    }

    std::u16string Stored() const
    {
        FormatLibrary library;
        library.loadReadOnly(path);
        return TextOf(library.formats);
    }

    static std::u16string Shown(const CFormatStore& store) { return TextOf(store.Library().formats); }

    const CTempFolder folder;
    const fs::path path = folder / "RecipeFile.Dat";
    const fs::path lockPath = folder / "RecipeFile.Dat.lock";
};

struct SharedChanges : SharedLibrary, testing::WithParamInterface<SharedCase> {};

void Append(CFormatStore& store, std::u16string_view name, int number)
{
    store.AppendFormat(NumberedFormat(name, number));
}

void Change(CFormatStore& store, std::size_t format, int number)
{
    DataItem item = DefaultItem();
    item.dataLength = number;
    store.ReplaceItem(format, 0, item);
}

} // namespace

TEST_P(SharedChanges, AreBothKept)
{
    Store(GetParam().stored);
    CFormatStore first(path);
    CFormatStore second(path);
    GetParam().first(first);
    ASSERT_TRUE(first.Save());
    GetParam().second(second);
    ASSERT_TRUE(second.Save());
    EXPECT_EQ(Stored(), GetParam().merged);
    EXPECT_EQ(Shown(second), GetParam().merged);
    ASSERT_TRUE(first.Save());
    EXPECT_EQ(Shown(first), GetParam().merged);
    EXPECT_EQ(Stored(), GetParam().merged) << "nothing is merged a second time";
    EXPECT_FALSE(fs::exists(lockPath));
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, SharedChanges, testing::Values(
    SharedCase{"Added", u"A=1", [](CFormatStore& s) { Append(s, u"M", 2); }, [](CFormatStore& s) { Append(s, u"N", 3); },
               u"A=1, M=2, N=3"},
    SharedCase{"Changed", u"A=1, B=2", [](CFormatStore& s) { Change(s, 0, 3); }, [](CFormatStore& s) { Change(s, 1, 4); },
               u"A=3, B=4"},
    SharedCase{"ChangedInOtherWays", u"A=1", [](CFormatStore& s) { Change(s, 0, 3); },
               [](CFormatStore& s) { Change(s, 0, 4); }, u"A=3, A (2)=4"},
    SharedCase{"ChangedAlike", u"A=1", [](CFormatStore& s) { Change(s, 0, 3); }, [](CFormatStore& s) { Change(s, 0, 3); },
               u"A=3"},
    SharedCase{"DeletedAndChanged", u"A=1, B=2", [](CFormatStore& s) { s.RemoveFormat(0); },
               [](CFormatStore& s) { Change(s, 0, 4); }, u"B=2, A=4"},
    SharedCase{"ChangedAndDeleted", u"A=1, B=2", [](CFormatStore& s) { Change(s, 0, 4); },
               [](CFormatStore& s) { s.RemoveFormat(0); }, u"A=4, B=2"},
    SharedCase{"Deleted", u"A=1, B=2, C=3", [](CFormatStore& s) { s.RemoveFormat(0); },
               [](CFormatStore& s) { s.RemoveFormat(2); }, u"B=2"},
    SharedCase{"AllDeletedByOne", u"A=1, B=2", [](CFormatStore& s) { s.RemoveFormat(0); s.RemoveFormat(0); },
               [](CFormatStore& s) { Append(s, u"N", 3); }, u"N=3"},
    SharedCase{"AddedUnderOneName", u"A=1", [](CFormatStore& s) { Append(s, u"N", 2); },
               [](CFormatStore& s) { Append(s, u"N", 3); }, u"A=1, N=2, N (2)=3"},
    SharedCase{"TwiceTheSameName", u"A=1, A=2", [](CFormatStore& s) { Change(s, 0, 3); },
               [](CFormatStore& s) { Change(s, 1, 4); }, u"A=3, A=4"},
    SharedCase{"NothingByTheSecond", u"A=1", [](CFormatStore& s) { Append(s, u"N", 2); }, [](CFormatStore&) {},
               u"A=1, N=2"},
    SharedCase{"NothingByTheFirst", u"A=1", [](CFormatStore&) {}, [](CFormatStore& s) { Append(s, u"N", 2); },
               u"A=1, N=2"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(SharedLibrary, ALongNameIsOneFormatBeforeAndAfterItIsReadAgain)
{
    const std::u16string name(127, u'n');
    CFormatStore first(path);
    Append(first, name, 3);
    ASSERT_TRUE(first.Save());
    CFormatStore second(path);
    Change(second, 2, 4);
    ASSERT_TRUE(second.Save());
    ASSERT_TRUE(first.Save());
    EXPECT_EQ(Stored(), u"A=1, B=2, " + name.substr(0, 64) + u"=4");
}

TEST_F(SharedLibrary, TheReadSettingsAreEachStoresOwn)
{
    CFormatStore first(path);
    CFormatStore second(path);
    first.SetReadSettings(5, 6, u"*.frp");
    Append(first, u"N", 3);
    ASSERT_TRUE(first.Save());
    ASSERT_TRUE(second.Save());
    EXPECT_EQ(second.Library().startAddress, 0);
    const CFormatStore third(path);
    EXPECT_EQ(third.Library().startAddress, 0);
    EXPECT_EQ(third.Library().rowCount, 10);
    EXPECT_EQ(TextOf(third.Library().filePattern), u"*.rcp");
    EXPECT_EQ(Shown(third), u"A=1, B=2, N=3");
}

TEST_F(SharedLibrary, WhatOthersChangedIsNoChangeOfThisOne)
{
    CFormatStore first(path);
    CFormatStore second(path);
    Append(first, u"N", 3);
    ASSERT_TRUE(first.Save());
    const Bytes saved = ReadAll(path);
    second.TakeOthers();
    EXPECT_EQ(Shown(second), u"A=1, B=2, N=3");
    EXPECT_FALSE(second.IsChanged());
    ASSERT_TRUE(second.Save());
    EXPECT_EQ(ReadAll(path), saved);
}

TEST_F(SharedLibrary, TakingWhatOthersChangedWritesNothingAndKeepsWhatWasNotSaved)
{
    CFormatStore first(path);
    CFormatStore second(path);
    Append(second, u"M", 4);
    Change(second, 0, 5);
    Append(first, u"N", 3);
    ASSERT_TRUE(first.Save());
    const Bytes saved = ReadAll(path);
    second.TakeOthers();
    EXPECT_EQ(Shown(second), u"A=5, B=2, N=3, M=4");
    EXPECT_EQ(ReadAll(path), saved);
    EXPECT_FALSE(fs::exists(lockPath));
    ASSERT_TRUE(second.Save());
    EXPECT_EQ(Stored(), u"A=5, B=2, N=3, M=4");
}

TEST_F(SharedLibrary, MovesAreToldOnce)
{
    CFormatStore first(path);
    CFormatStore second(path);
    EXPECT_FALSE(second.TakeMoves());
    first.RemoveFormat(0);
    ASSERT_TRUE(first.Save());
    EXPECT_FALSE(first.TakeMoves()) << "nobody else did anything";
    ASSERT_TRUE(second.Save());
    EXPECT_EQ(second.TakeMoves(), (std::vector<FormatMove>{{.to = std::nullopt, .hasOtherItems = true},
                                                           {.to = 0, .hasOtherItems = false}}));
    EXPECT_FALSE(second.TakeMoves());
}

TEST_F(SharedLibrary, ACommandIsTakenBackWhereOthersMovedItsFormat)
{
    CFormatStore first(path);
    CFormatStore second(path);
    Append(first, u"M", 3);
    ASSERT_TRUE(first.Save());
    const FormatChange added = second.AppendFormat(NumberedFormat(u"N", 4));
    ASSERT_TRUE(second.Save());
    ASSERT_EQ(Shown(second), u"A=1, B=2, M=3, N=4");
    ASSERT_TRUE(Holds(second.Library(), added, ChangeSide::After));
    second.TakeBack(added);
    EXPECT_EQ(Shown(second), u"A=1, B=2, M=3");
    ASSERT_TRUE(second.Save());
    EXPECT_EQ(Stored(), u"A=1, B=2, M=3");
}

TEST_F(SharedLibrary, ADeletedFormatComesBackThoughOthersDeletedMore)
{
    CFormatStore first(path);
    CFormatStore second(path);
    const FormatChange removed = second.RemoveFormat(1);
    ASSERT_TRUE(second.Save());
    first.RemoveFormat(0);
    ASSERT_TRUE(first.Save());
    ASSERT_TRUE(second.Save());
    ASSERT_EQ(Shown(second), u"");
    ASSERT_TRUE(Holds(second.Library(), removed, ChangeSide::After));
    second.TakeBack(removed);
    EXPECT_EQ(Shown(second), u"B=2");
}

TEST_F(SharedLibrary, AFormatThatOthersChangedIsNotTakenBack)
{
    CFormatStore first(path);
    CFormatStore second(path);
    const FormatChange added = second.AppendFormat(NumberedFormat(u"N", 4));
    ASSERT_TRUE(second.Save());
    ASSERT_TRUE(first.Save());
    Change(first, 2, 5);
    ASSERT_TRUE(first.Save());
    ASSERT_TRUE(second.Save());
    EXPECT_FALSE(Holds(second.Library(), added, ChangeSide::After));
}

// The store's own oddities.

TEST_F(SharedLibrary, AnItemThatDoesNotCountIsNoChangeOfThisStore)
{
    FormatLibrary empty;
    empty.formats.push_back(std::make_unique<DataFormat>(MakeFormat(u"E", {})));
    ASSERT_EQ(empty.save(path), 0);
    CFormatStore first(path);
    CFormatStore second(path);
    first.CountAllItems(0);
    ASSERT_TRUE(first.Save());
    Append(second, u"N", 3);
    ASSERT_TRUE(second.Save());
    EXPECT_EQ(Stored(), u"E=1, N=3");
    ASSERT_EQ(second.Library().formats[0]->items.size(), 1U);
    EXPECT_EQ(second.Library().formats[0]->itemCount, 1);
}

TEST_F(SharedLibrary, AnItemThatDoesNotCountStaysShownWhenOthersDidNothingToIt)
{
    FormatLibrary empty;
    empty.formats.push_back(std::make_unique<DataFormat>(MakeFormat(u"E", {})));
    ASSERT_EQ(empty.save(path), 0);
    CFormatStore first(path);
    CFormatStore second(path);
    Append(first, u"N", 3);
    ASSERT_TRUE(first.Save());
    ASSERT_TRUE(second.Save());
    EXPECT_EQ(second.Library().formats[0]->items.size(), 1U);
    EXPECT_EQ(second.Library().formats[0]->itemCount, 0);
    EXPECT_EQ(Stored(), u"E, N=3");
}

TEST_F(SharedLibrary, TheBuiltInFormatIsNoChangeOfAnybody)
{
    fs::remove(path);
    CFormatStore first(path);
    CFormatStore second(path);
    CFormatStore third(path);
    Append(first, u"N", 3);
    first.RemoveFormat(0);
    ASSERT_TRUE(first.Save());
    ASSERT_TRUE(second.Save());
    EXPECT_EQ(Stored(), u"N=3");
    Change(third, 0, 4);
    ASSERT_TRUE(third.Save());
    EXPECT_EQ(Stored(), u"N=3, TestDataFormat=4") << "now it is one";
}

TEST_F(SharedLibrary, TheBuiltInFormatReachesAFileThatHasNone)
{
    fs::remove(path);
    CFormatStore first(path);
    CFormatStore second(path);
    ASSERT_TRUE(first.Save());
    Append(second, u"N", 3);
    ASSERT_TRUE(second.Save());
    EXPECT_EQ(Stored(), u"TestDataFormat=1, N=3");
    FormatLibrary none;
    ASSERT_EQ(none.save(path), 0);
    CFormatStore third(path);
    ASSERT_TRUE(third.Save());
    EXPECT_EQ(Stored(), u"TestDataFormat=1") << "of a file of settings alone, too";
}

// Files that cannot be merged.

TEST_F(SharedLibrary, AMissingOrEmptyFileIsWrittenWhole)
{
    CFormatStore store(path);
    Change(store, 0, 3);
    fs::remove(path);
    ASSERT_TRUE(store.Save());
    EXPECT_EQ(Stored(), u"A=3, B=2");
    WriteAll(path, {});
    ASSERT_TRUE(store.Save());
    EXPECT_EQ(Stored(), u"A=3, B=2");
}

TEST_F(SharedLibrary, ADamagedFileIsCopiedAndNotMerged)
{
    CFormatStore store(path);
    Store(u"M=3, N=4");
    Bytes damaged = ReadAll(path);
    damaged.pop_back();
    WriteAll(path, damaged);
    store.TakeOthers();
    EXPECT_EQ(Shown(store), u"A=1, B=2");
    ASSERT_TRUE(store.Save());
    EXPECT_EQ(Stored(), u"A=1, B=2");
    EXPECT_EQ(ReadAll(folder / "RecipeFile.Dat.bak"), damaged);
}

TEST_F(SharedLibrary, AFileOfAnotherVersionIsCopiedAndNotMerged)
{
    CFormatStore store(path);
    Store(u"M=3, N=4");
    Bytes later = ReadAll(path);
    later[24] = std::byte{'5'}; // "RecipeFile2.5"
    WriteAll(path, later);
    ASSERT_TRUE(store.Save());
    EXPECT_EQ(Stored(), u"A=1, B=2");
    EXPECT_EQ(ReadAll(folder / "RecipeFile.Dat.bak"), later);
}

TEST_F(SharedLibrary, ADamagedFileThatAnotherStoreMendedIsNotCopiedAgain)
{
    Bytes damaged = ReadAll(path);
    damaged.pop_back();
    WriteAll(path, damaged);
    CFormatStore first(path);
    CFormatStore second(path);
    ASSERT_TRUE(first.Save());
    Append(second, u"N", 3);
    ASSERT_TRUE(second.Save());
    EXPECT_EQ(Stored(), u"A=1, N=3");
    EXPECT_FALSE(fs::exists(folder / "RecipeFile.Dat.bak2"));
}

// The lock.

TEST_F(SharedLibrary, AnotherHoldOfTheLockIsWaitedForAndThenMergedAllTheSame)
{
    CFormatStore first(path);
    CFormatStore second(path);
    Append(first, u"M", 3);
    ASSERT_TRUE(first.Save());
    CFile lock(lockPath, CFile::Mode::CreateNew);
    ASSERT_EQ(lock.Hold(), Holder::ThisFile);
    Append(second, u"N", 4);
    ASSERT_TRUE(second.Save());
    EXPECT_EQ(Stored(), u"A=1, B=2, M=3, N=4");
    EXPECT_TRUE(lock.IsAt(lockPath)) << "it is the other's";
}

TEST_F(SharedLibrary, ALockThatCannotBeMadeIsDoneWithout)
{
    CFormatStore first(path);
    CFormatStore second(path);
    Append(first, u"M", 3);
    ASSERT_TRUE(first.Save());
    fs::create_directory(lockPath);
    Append(second, u"N", 4);
    ASSERT_TRUE(second.Save());
    EXPECT_EQ(Stored(), u"A=1, B=2, M=3, N=4");
    EXPECT_TRUE(fs::is_directory(lockPath));
}

TEST_F(SharedLibrary, AFolderThatTakesNoFileIsDoneWithout)
{
    CFormatStore first(path);
    CFormatStore second(path);
    fs::permissions(path, fs::perms::all);
    MakeReadOnly(folder.Path());
    const COrdinaryUser user;
    Append(first, u"M", 3);
    ASSERT_TRUE(first.Save());
    Append(second, u"N", 4);
    ASSERT_TRUE(second.Save());
    EXPECT_EQ(Stored(), u"A=1, B=2, M=3, N=4");
}

TEST_F(SharedLibrary, ALinkIsOneFileWithWhatItLeadsTo)
{
    const fs::path link = folder / "link.dat";
    fs::create_symlink(path.filename(), link);
    CFormatStore first(path);
    CFormatStore second(link);
    Append(first, u"M", 3);
    ASSERT_TRUE(first.Save());
    Append(second, u"N", 4);
    ASSERT_TRUE(second.Save());
    EXPECT_EQ(Stored(), u"A=1, B=2, M=3, N=4");
    EXPECT_TRUE(fs::is_symlink(link));
}

// Before formats change.

TEST_F(SharedLibrary, AChangeOfFormatsIsToldBeforeItIsWrittenAndUnderTheLock)
{
    CFormatStore store(path);
    std::vector<Bytes> told;
    const Bytes before = ReadAll(path);
    store.SetBeforeFormatsChange([&](const fs::path& file) {
        EXPECT_EQ(file, path);
        told.push_back(ReadAll(file));
        EXPECT_EQ(CFile(lockPath, CFile::Mode::Read).Hold(), Holder::AnotherFile);
    });
    ASSERT_TRUE(store.Save());
    store.SetReadSettings(1, 2, u"*.csv");
    ASSERT_TRUE(store.Save());
    EXPECT_EQ(told, std::vector<Bytes>()) << "of settings alone";
    const Bytes settings = ReadAll(path);
    ASSERT_NE(settings, before);
    Change(store, 0, 7);
    ASSERT_TRUE(store.Save());
    EXPECT_EQ(told, std::vector<Bytes>{settings});
    store.RemoveFormat(1);
    ASSERT_TRUE(store.Save());
    EXPECT_EQ(told.size(), 2U);
    ASSERT_TRUE(store.Save());
    EXPECT_EQ(told.size(), 2U);
}

TEST_F(SharedLibrary, WhatOthersChangedAloneIsNotTold)
{
    CFormatStore first(path);
    CFormatStore second(path);
    int told = 0;
    second.SetBeforeFormatsChange([&](const fs::path&) { ++told; });
    Append(first, u"M", 3);
    ASSERT_TRUE(first.Save());
    second.SetReadSettings(1, 2, u"*.csv");
    ASSERT_TRUE(second.Save());
    EXPECT_EQ(told, 0);
    fs::remove(path);
    ASSERT_TRUE(second.Save());
    EXPECT_EQ(told, 0) << "there is nothing to keep";
    Bytes damaged = ReadAll(path);
    damaged.pop_back();
    WriteAll(path, damaged);
    ASSERT_TRUE(second.Save());
    EXPECT_EQ(told, 1);
}
