#include "library/FormatLibrary.h"
#include "tests/files/OrdinaryUser.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <chrono>
#include <iterator>

namespace fs = std::filesystem;

namespace {

std::size_t FilesIn(const fs::path& folder)
{
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

char16_t UnitAt(const Bytes& bytes, std::size_t offset)
{
    return static_cast<char16_t>(std::to_integer<unsigned>(bytes[offset]) | std::to_integer<unsigned>(bytes[offset + 1])
                                                                                << 8);
}

class FormatLibrarySave : public testing::Test {
protected:
    FormatLibrarySave() { library.formats.push_back(std::make_unique<DataFormat>(DefaultFormat())); }
    fs::path File() const { return folder / "RecipeFile.Dat"; }

    CTempFolder folder;
    FormatLibrary library;
};

TEST_F(FormatLibrarySave, WritesTheDefaultFormatIn660Bytes)
{
    library.startAddress = -2;
    library.rowCount = 0x01020304;
    SetText(library.filePattern, u"*.csv");
    ASSERT_EQ(library.save(File()), 0);
    const Bytes bytes = ReadAll(File());
    ASSERT_EQ(bytes.size(), 660U);
    for (std::size_t i = 0; i < 13; ++i)
        EXPECT_EQ(UnitAt(bytes, 2 * i), u"RecipeFile2.0"[i]);
    for (std::size_t i = 26; i < 32; ++i)
        EXPECT_EQ(bytes[i], std::byte{0});
    EXPECT_EQ(LoadLE32(bytes, 32), -2);
    EXPECT_EQ(LoadLE32(bytes, 36), 0x01020304);
    EXPECT_EQ(UnitAt(bytes, 40), u'*');
    EXPECT_EQ(UnitAt(bytes, 44), u'c');
    EXPECT_EQ(LoadLE32(bytes, 72), 100);
    EXPECT_EQ(UnitAt(bytes, 76), u'T');
    EXPECT_EQ(LoadLE32(bytes, 332), 1);
    EXPECT_EQ(LoadLE32(bytes, 336 + 0), 0);   // reserved0
    EXPECT_EQ(LoadLE32(bytes, 336 + 4), 1);   // dataLength
    EXPECT_EQ(LoadLE32(bytes, 336 + 8), 0);   // dataType
    EXPECT_EQ(LoadLE32(bytes, 336 + 12), 4);  // integerDigits
    EXPECT_EQ(LoadLE32(bytes, 336 + 16), 0);  // decimalDigits
    EXPECT_EQ(LoadLE32(bytes, 336 + 20), 0);  // codeType
    EXPECT_EQ(UnitAt(bytes, 336 + 24), u'D'); // description
    EXPECT_EQ(UnitAt(bytes, 336 + 32), u'1');
    EXPECT_EQ(UnitAt(bytes, 336 + 34), u'\0');
    EXPECT_EQ(LoadLE32(bytes, 336 + 280), 0);    // isArray
    EXPECT_EQ(LoadLE32(bytes, 336 + 284), -1);   // reserved1
    EXPECT_EQ(LoadLE32(bytes, 336 + 288), 0);    // reserved2
    EXPECT_EQ(LoadLE32(bytes, 336 + 292), -1);   // arrayLength
    EXPECT_EQ(LoadLE32(bytes, 336 + 296), -999); // minValue
    EXPECT_EQ(LoadLE32(bytes, 336 + 300), -1);
    EXPECT_EQ(LoadLE32(bytes, 336 + 304), 9999); // maxValue
    EXPECT_EQ(LoadLE32(bytes, 336 + 308), 0);
    EXPECT_EQ(LoadLE32(bytes, 336 + 312), 0); // unicode
    EXPECT_EQ(LoadLE32(bytes, 336 + 316), 0); // padding
    EXPECT_EQ(LoadLE32(bytes, 656), 200);
}

TEST_F(FormatLibrarySave, ComesBackEqual)
{
    library.formats.push_back(std::make_unique<DataFormat>(u"Second"));
    library.formats.back()->insertItem(0, std::make_unique<DataItem>(DefaultItem()));
    library.formats.back()->items[0]->unicode = 1;
    library.formats.back()->items[0]->maxValue = INT64_MAX;
    library.formats.back()->itemCount = 1;
    ASSERT_EQ(library.save(File()), 0);
    const Bytes first = ReadAll(File());
    FormatLibrary again;
    ASSERT_EQ(again.load(File()), static_cast<std::int64_t>(first.size()));
    ASSERT_EQ(again.formats.size(), 2U);
    EXPECT_EQ(*again.formats[1]->items.at(0), *library.formats[1]->items[0]);
    ASSERT_EQ(again.save(File()), 0);
    EXPECT_EQ(ReadAll(File()), first);
}

TEST_F(FormatLibrarySave, ALongOneComesBackToItsLastByte) // read in more than one piece
{
    for (std::int32_t i = 0; i < 1'000; ++i) {
        auto item = std::make_unique<DataItem>(DefaultItem());
        item->reserved2 = i;
        library.formats[0]->items.push_back(std::move(item));
    }
    library.formats[0]->itemCount = 1'001;
    library.formats.push_back(std::make_unique<DataFormat>(DefaultFormat()));
    ASSERT_EQ(library.save(File()), 0);
    FormatLibrary loaded;
    EXPECT_EQ(loaded.load(File()), 72 + 2 * 268 + 1'002 * 320);
    ASSERT_EQ(loaded.formats.size(), 2U);
    ASSERT_EQ(loaded.formats[0]->items.size(), 1'001U);
    for (std::size_t i = 0; i < 1'001; ++i)
        ASSERT_EQ(*loaded.formats[0]->items[i], *library.formats[0]->items[i]) << i;
    EXPECT_EQ(*loaded.formats[1]->items[0], DefaultItem());
}

TEST_F(FormatLibrarySave, AnEmptyLibraryIsItsHeader)
{
    library.formats.clear();
    ASSERT_EQ(library.save(File()), 0);
    EXPECT_EQ(ReadAll(File()).size(), 72U);
}

TEST_F(FormatLibrarySave, WritesNoMoreItemsThanThereAre)
{
    library.formats[0]->itemCount = 5;
    ASSERT_EQ(library.save(File()), 0);
    EXPECT_EQ(ReadAll(File()).size(), 660U);
    EXPECT_EQ(LoadLE32(ReadAll(File()), 332), 1);
}

TEST_F(FormatLibrarySave, WritesNoMoreItemsThanAreCounted)
{
    for (const std::int32_t count : {0, -1}) {
        library.formats[0]->itemCount = count;
        ASSERT_EQ(library.save(File()), 0);
        EXPECT_EQ(ReadAll(File()).size(), 340U);
        EXPECT_EQ(LoadLE32(ReadAll(File()), 332), 0);
        EXPECT_EQ(LoadLE32(ReadAll(File()), 336), 200);
    }
}

TEST_F(FormatLibrarySave, ReplacesALongerFileAndLeavesNothingBeside)
{
    WriteAll(File(), Bytes(5000, std::byte{7}));
    ASSERT_EQ(library.save(File()), 0);
    EXPECT_EQ(ReadAll(File()).size(), 660U);
    EXPECT_EQ(FilesIn(folder.Path()), 1U);
}

TEST_F(FormatLibrarySave, RewritesAFileWithFurtherNamesInPlace)
{
    const fs::path file = folder / std::string(250, 'r');
    WriteAll(file, Bytes(5000, std::byte{7}));
    fs::create_hard_link(file, folder / "same"); // a file that was replaced would leave this one behind
    ASSERT_EQ(library.save(file), 0);
    EXPECT_EQ(ReadAll(file).size(), 660U);
    EXPECT_EQ(ReadAll(folder / "same"), ReadAll(file));
    EXPECT_EQ(FormatLibrary().load(file), 660);
    EXPECT_EQ(FilesIn(folder.Path()), 2U);
}

TEST_F(FormatLibrarySave, TakesTheLongestName)
{
    const fs::path file = folder / std::string(255, 'r');
    EXPECT_EQ(library.save(file), 0);
    library.rowCount = 11;
    EXPECT_EQ(library.save(file), 0);
    EXPECT_EQ(LoadLE32(ReadAll(file), 36), 11);
    EXPECT_EQ(FilesIn(folder.Path()), 1U);
}

/// The library is saved at every read of a recipe, mostly as it is.
TEST_F(FormatLibrarySave, LeavesAFileAloneThatHoldsTheSameBytes)
{
    ASSERT_EQ(library.save(File()), 0);
    const auto past = fs::file_time_type::clock::now() - std::chrono::hours(1);
    fs::last_write_time(File(), past);
    const auto before = fs::last_write_time(File());
    ASSERT_EQ(library.save(File()), 0);
    EXPECT_EQ(fs::last_write_time(File()), before);
    library.rowCount = 11;
    ASSERT_EQ(library.save(File()), 0);
    EXPECT_NE(fs::last_write_time(File()), before);
    EXPECT_EQ(LoadLE32(ReadAll(File()), 36), 11);
}

/// Not even a new file beside it that goes again, which would change the folder.
TEST_F(FormatLibrarySave, LeavesTheFolderAloneWhereTheFileHoldsTheSameBytes)
{
    ASSERT_EQ(library.save(File()), 0);
    const auto past = fs::file_time_type::clock::now() - std::chrono::hours(1);
    fs::last_write_time(folder.Path(), past);
    const auto before = fs::last_write_time(folder.Path());
    ASSERT_EQ(library.save(File()), 0);
    EXPECT_EQ(fs::last_write_time(folder.Path()), before);
}

TEST_F(FormatLibrarySave, NeedsNoRightToWriteWhereNothingChanged)
{
    ASSERT_EQ(library.save(File()), 0);
    const Bytes before = ReadAll(File());
    fs::permissions(File(), fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    fs::permissions(folder.Path(),
                    fs::perms::owner_read | fs::perms::owner_exec | fs::perms::group_exec | fs::perms::others_exec);
    {
        const COrdinaryUser user;
        EXPECT_EQ(library.save(File()), 0);
        library.rowCount = 11;
        EXPECT_EQ(library.save(File()), -1);
    }
    fs::permissions(folder.Path(), fs::perms::owner_all);
    EXPECT_EQ(ReadAll(File()), before);
}

TEST_F(FormatLibrarySave, KeepsThePermissions)
{
    WriteAll(File(), {});
    const auto permissions = fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_write;
    fs::permissions(File(), permissions);
    ASSERT_EQ(library.save(File()), 0);
    EXPECT_EQ(fs::status(File()).permissions(), permissions);
}

TEST_F(FormatLibrarySave, WritesThroughASymbolicLink)
{
    fs::create_directory(folder / "other");
    fs::create_symlink("real", folder / "other" / "second");
    fs::create_symlink(fs::path("other") / "second", File());
    ASSERT_EQ(library.save(File()), 0);
    EXPECT_TRUE(fs::is_symlink(File()));
    EXPECT_TRUE(fs::is_symlink(folder / "other" / "second"));
    EXPECT_EQ(ReadAll(folder / "other" / "real").size(), 660U);
    ASSERT_EQ(library.save(File()), 0); // and once more over the file that is there now
    EXPECT_TRUE(fs::is_symlink(File()));
    EXPECT_EQ(FilesIn(folder / "other"), 2U);
}

TEST_F(FormatLibrarySave, FailsWithACircleOfLinks)
{
    fs::create_symlink("RecipeFile.Dat", File());
    EXPECT_EQ(library.save(File()), -1);
    EXPECT_EQ(FilesIn(folder.Path()), 1U);
}

TEST_F(FormatLibrarySave, FailsInAMissingFolder)
{
    EXPECT_EQ(library.save(folder / "missing" / "RecipeFile.Dat"), -1);
    EXPECT_EQ(FilesIn(folder.Path()), 0U);
}

TEST_F(FormatLibrarySave, FailsOverAFolder)
{
    fs::create_directory(File());
    EXPECT_EQ(library.save(File()), -1);
    EXPECT_TRUE(fs::is_directory(File()));
    EXPECT_EQ(FilesIn(folder.Path()), 1U);
}

TEST_F(FormatLibrarySave, RefusesADevice)
{
    EXPECT_EQ(library.save("/dev/full"), -1);
    EXPECT_EQ(library.save("/dev/null"), -1);
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST_F(FormatLibrarySave, RefusesAnEmptyName)
{
    EXPECT_EQ(library.save(fs::path()), -1);
}

/// Where no file can be created: the folder of the process's own entries, and a file in it that can be written.
TEST_F(FormatLibrarySave, FailsWhereNeitherFolderNorFileTakesIt)
{
    EXPECT_EQ(library.save("/proc/self/RecipeFile.Dat"), -1);
}

} // namespace
