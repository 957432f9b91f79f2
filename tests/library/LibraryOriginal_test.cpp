#include "library/LibraryOriginal.h"
#include "tests/files/FileSizeLimit.h"
#include "tests/files/OrdinaryUser.h"
#include "tests/support/Formats.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace fs = std::filesystem;

namespace {

struct LibraryOriginal : testing::Test {
    fs::path File() const { return folder / "RecipeFile.Dat"; }
    fs::path Copy(const char* ending = ".bak") const { return folder / (std::string("RecipeFile.Dat") + ending); }

    std::vector<std::string> Names() const
    {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder.Path()))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

    CTempFolder folder;
    const Bytes original = BytesOf({1, 2, 3, 0, 255});
    const Bytes other = BytesOf({1, 2, 3, 0, 254});
};

using Names = std::vector<std::string>;

Bytes StoredLibrary(const fs::path& file)
{
    FormatLibrary library;
    for (const char16_t* name : {u"First", u"Second"})
        library.formats.push_back(std::make_unique<DataFormat>(MakeFormat(name, {DefaultItem()})));
    library.save(file);
    return ReadAll(file);
}

struct RiskCase {
    const char* name;
    Bytes (*bytes)(const fs::path& scratch);
    bool isAtRisk;
    friend void PrintTo(const RiskCase& c, std::ostream* out) { *out << c.name; }
};

struct OriginalAtRisk : LibraryOriginal, testing::WithParamInterface<RiskCase> {};

Bytes Cut(Bytes bytes, std::size_t size)
{
    bytes.resize(size);
    return bytes;
}

Bytes WithByte(Bytes bytes, std::size_t offset, char value)
{
    bytes.at(offset) = static_cast<std::byte>(value);
    return bytes;
}

constexpr std::size_t kVersionDigit = 24; // of the 2.0 in the marker: the "0"

} // namespace

TEST_F(LibraryOriginal, IsKeptBesideTheFile)
{
    WriteAll(File(), original);
    EXPECT_TRUE(KeepOriginal(File()));
    EXPECT_EQ(ReadAll(Copy()), original);
    EXPECT_EQ(ReadAll(File()), original);
    EXPECT_EQ(Names(), (::Names{"RecipeFile.Dat", "RecipeFile.Dat.bak"}));
}

TEST_F(LibraryOriginal, ACopyThatIsThereAlreadyServes)
{
    WriteAll(File(), original);
    ASSERT_TRUE(KeepOriginal(File()));
    EXPECT_TRUE(KeepOriginal(File()));
    EXPECT_EQ(Names(), (::Names{"RecipeFile.Dat", "RecipeFile.Dat.bak"}));
}

TEST_F(LibraryOriginal, CopiesWithOtherBytesStayAndTheNewOneIsNumbered)
{
    WriteAll(File(), original);
    WriteAll(Copy(), other);
    WriteAll(Copy(".bak2"), BytesOf({9}));
    EXPECT_TRUE(KeepOriginal(File()));
    EXPECT_EQ(ReadAll(Copy()), other);
    EXPECT_EQ(ReadAll(Copy(".bak2")), BytesOf({9}));
    EXPECT_EQ(ReadAll(Copy(".bak3")), original);
}

TEST_F(LibraryOriginal, AFolderOrALinkThatLeadsNowhereTakesTheName)
{
    WriteAll(File(), original);
    fs::create_directory(Copy());
    fs::create_symlink(folder / "gone", Copy(".bak2"));
    EXPECT_TRUE(KeepOriginal(File()));
    EXPECT_EQ(ReadAll(Copy(".bak3")), original);
    EXPECT_FALSE(fs::exists(folder / "gone"));
}

TEST_F(LibraryOriginal, ALargeFileIsComparedToItsLastByte)
{
    Bytes large(100'001);
    WriteAll(Copy(), large);
    large.back() = std::byte{1};
    WriteAll(File(), large);
    EXPECT_TRUE(KeepOriginal(File()));
    EXPECT_EQ(ReadAll(Copy(".bak2")), large);
}

TEST_F(LibraryOriginal, AFileIsComparedFromItsFirstByte)
{
    WriteAll(File(), BytesOf({1, 2, 3}));
    WriteAll(Copy(), BytesOf({9, 2, 3}));
    EXPECT_TRUE(KeepOriginal(File()));
    EXPECT_EQ(ReadAll(Copy(".bak2")), BytesOf({1, 2, 3}));
}

TEST_F(LibraryOriginal, TheCopyHasTheRightsOfTheFile)
{
    WriteAll(File(), original);
    fs::permissions(File(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_TRUE(KeepOriginal(File()));
    EXPECT_EQ(fs::status(Copy()).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(LibraryOriginal, ThereIsNothingToKeepOfAMissingOrEmptyFile)
{
    EXPECT_TRUE(KeepOriginal(File()));
    WriteAll(File(), Bytes());
    EXPECT_TRUE(KeepOriginal(File()));
    EXPECT_EQ(Names(), ::Names{"RecipeFile.Dat"});
}

TEST_F(LibraryOriginal, WhatCannotBeCopiedIsAFailureAndLeavesNothing)
{
    fs::create_directory(File());
    WriteAll(File() / "inside", original);
    EXPECT_FALSE(KeepOriginal(File()));
    EXPECT_EQ(Names(), ::Names{"RecipeFile.Dat"});
    EXPECT_FALSE(KeepOriginal(folder / std::string(5000, 'n'))); // no name for any file
}

TEST_F(LibraryOriginal, ACopyThatCannotBeReadIsTakenForAnother)
{
    WriteAll(File(), original);
    WriteAll(Copy(), original);
    fs::permissions(Copy(), fs::perms::none);
    fs::permissions(folder.Path(), fs::perms::all);
    {
        const COrdinaryUser user;
        EXPECT_TRUE(KeepOriginal(File()));
    }
    EXPECT_EQ(ReadAll(Copy(".bak2")), original);
}

TEST_F(LibraryOriginal, AFullDiskLeavesNoHalfCopy)
{
    WriteAll(File(), Bytes(100'000));
    const CFileSizeLimit limit(50'000);
    EXPECT_FALSE(KeepOriginal(File()));
    EXPECT_EQ(Names(), ::Names{"RecipeFile.Dat"});
}

TEST_P(OriginalAtRisk, WhenItIsNotUnderstoodInFull)
{
    WriteAll(File(), GetParam().bytes(folder / "scratch"));
    FormatLibrary library;
    const std::int64_t loaded = library.load(File());
    EXPECT_EQ(IsOriginalAtRisk(library, loaded), GetParam().isAtRisk);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, OriginalAtRisk, testing::Values(
    RiskCase{"Whole",          [](const fs::path& s) { return StoredLibrary(s); },                               false},
    RiskCase{"Empty",          [](const fs::path&) { return Bytes(); },                                          false},
    RiskCase{"CutInAFormat",   [](const fs::path& s) { return Cut(StoredLibrary(s), 1000); },                    true},
    RiskCase{"CutInTheHeader", [](const fs::path& s) { return Cut(StoredLibrary(s), 50); },                      true},
    RiskCase{"BadStartMark",   [](const fs::path& s) { return WithByte(StoredLibrary(s), 72, 99); },             true},
    RiskCase{"SomeOtherFile",  [](const fs::path&) { return Bytes(4096, std::byte{'x'}); },                      true},
    RiskCase{"LaterVersion",   [](const fs::path& s) { return WithByte(StoredLibrary(s), kVersionDigit, '5'); }, true}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(LibraryOriginal, AnOlderVersionIsAtRiskForItsArrayLengths)
{
    FormatLibrary library;
    library.fileVersion = 0;
    library.programVersion = 20;
    EXPECT_TRUE(IsOriginalAtRisk(library, 620));
    EXPECT_TRUE(IsOriginalAtRisk(library, 1));
    EXPECT_FALSE(IsOriginalAtRisk(library, 0)); // an empty file has no version
}

TEST_F(LibraryOriginal, AFileThatCannotBeOpenedIsAtRisk)
{
    fs::create_directory(File());
    FormatLibrary library;
    const std::int64_t loaded = library.load(File());
    EXPECT_TRUE(IsOriginalAtRisk(library, loaded));
}
