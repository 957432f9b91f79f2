#include "library/FormatLibrary.h"
#include "tests/files/OrdinaryUser.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <limits>
#include <ostream>
#include <string>

namespace fs = std::filesystem;

namespace {

/// The bytes of a library file, put together by hand.
class CPicture {
public:
    CPicture& Word(std::uint16_t value)
    {
        m_bytes.push_back(static_cast<std::byte>(value & 0xFF));
        m_bytes.push_back(static_cast<std::byte>(value >> 8));
        return *this;
    }
    CPicture& Int(std::int32_t value)
    {
        const auto bits = static_cast<std::uint32_t>(value);
        return Word(static_cast<std::uint16_t>(bits & 0xFFFF)).Word(static_cast<std::uint16_t>(bits >> 16));
    }
    CPicture& Long(std::int64_t value)
    {
        const auto bits = static_cast<std::uint64_t>(value);
        return Int(static_cast<std::int32_t>(bits & 0xFFFFFFFF)).Int(static_cast<std::int32_t>(bits >> 32));
    }
    /// `text` in a field of `units` units, filled with `rest`.
    CPicture& Text(std::u16string_view text, std::size_t units, char16_t rest = u'\0')
    {
        for (std::size_t i = 0; i < units; ++i)
            Word(i < text.size() ? text[i] : i == text.size() ? u'\0' : rest);
        return *this;
    }
    CPicture& Settings() { return Int(-8).Int(25).Text(u"*.erp", 16); }
    CPicture& Header(std::u16string_view marker) { return Text(marker, 16).Settings(); }

    /// The 312 bytes that all versions hold.
    CPicture& OldItem(std::u16string_view description, char16_t rest = u'\0')
    {
        Int(11).Int(2).Int(3).Int(7).Int(1).Int(6).Text(description, 128, rest).Int(1).Int(-13).Int(-14).Int(5);
        return Long(-1'000'000'000'000).Long(2'000'000'000'000);
    }
    CPicture& Item(std::u16string_view description) { return OldItem(description).Int(1).Int(0x5A5A5A5A); }
    CPicture& FormatHead(std::u16string_view name, std::int32_t itemCount)
    {
        return Int(100).Text(name, 128).Int(itemCount);
    }
    CPicture& End() { return Int(200); }

    /// Cut to `size`.
    CPicture& Cut(std::size_t size)
    {
        m_bytes.resize(size);
        return *this;
    }

    const Bytes& Image() const { return m_bytes; }
    std::int64_t Size() const { return static_cast<std::int64_t>(m_bytes.size()); }

private:
    Bytes m_bytes;
};

DataItem PicturedItem(std::u16string_view description)
{
    DataItem item;
    item.reserved0 = 11;
    item.dataLength = 2;
    item.dataType = DataType::Unsigned32;
    item.integerDigits = 7;
    item.decimalDigits = 1;
    item.codeType = static_cast<CodeType>(6);
    SetText(item.description, description);
    item.isArray = 1;
    item.reserved1 = -13;
    item.reserved2 = -14;
    item.arrayLength = 5;
    item.minValue = -1'000'000'000'000;
    item.maxValue = 2'000'000'000'000;
    item.unicode = 1;
    return item;
}

class FormatLibraryLoad : public testing::Test {
protected:
    std::int64_t Load(const CPicture& picture)
    {
        WriteAll(File(), picture.Image());
        return library.load(File());
    }
    fs::path File() const { return folder / "RecipeFile.Dat"; }

    CTempFolder folder;
    FormatLibrary library;
};

TEST(FormatLibrary, BeginsEmpty)
{
    const FormatLibrary library;
    EXPECT_TRUE(library.formats.empty());
    EXPECT_TRUE(library.path.empty());
    EXPECT_EQ(library.startAddress, 0);
    EXPECT_EQ(library.rowCount, 10);
    EXPECT_EQ(TextOf(library.filePattern), u"*.rcp");
    EXPECT_EQ(library.fileVersion, 0);
    EXPECT_EQ(library.programVersion, 0);
    EXPECT_FALSE(library.versionsKnown);
}

TEST(FormatLibrary, WritesTheVersionInItsMarker)
{
    EXPECT_EQ(FormatLibrary::ProgramVersion(), 20);
}

TEST_F(FormatLibraryLoad, TakesEveryField)
{
    const CPicture picture = CPicture()
                                 .Header(u"RecipeFile2.0")
                                 .FormatHead(u"First", 2)
                                 .Item(u"One")
                                 .Item(u"Two")
                                 .End()
                                 .FormatHead(u"Second", 0)
                                 .End();
    EXPECT_EQ(Load(picture), picture.Size());
    EXPECT_EQ(library.path, File());
    EXPECT_EQ(library.fileVersion, 20);
    EXPECT_EQ(library.programVersion, 20);
    EXPECT_TRUE(library.versionsKnown);
    EXPECT_EQ(library.startAddress, -8);
    EXPECT_EQ(library.rowCount, 25);
    EXPECT_EQ(TextOf(library.filePattern), u"*.erp");
    ASSERT_EQ(library.formats.size(), 2U);
    EXPECT_EQ(TextOf(library.formats[0]->name), u"First");
    EXPECT_EQ(library.formats[0]->itemCount, 2);
    ASSERT_EQ(library.formats[0]->items.size(), 2U);
    EXPECT_EQ(*library.formats[0]->items[0], PicturedItem(u"One"));
    EXPECT_EQ(*library.formats[0]->items[1], PicturedItem(u"Two"));
    EXPECT_EQ(TextOf(library.formats[1]->name), u"Second");
    EXPECT_TRUE(library.formats[1]->items.empty());
}

TEST_F(FormatLibraryLoad, LeavesTheFileAsItIs)
{
    const CPicture picture = CPicture().Header(u"RecipeFile2.0").FormatHead(u"A", 1).Item(u"One").End();
    Load(picture);
    EXPECT_EQ(ReadAll(File()), picture.Image());
}

TEST_F(FormatLibraryLoad, ConvertsAnOlderFile)
{
    const CPicture picture = CPicture().Settings().FormatHead(u"Old", 1).OldItem(u"One", u'x').End();
    ASSERT_EQ(picture.Size(), 620);
    EXPECT_EQ(Load(picture), 620);
    EXPECT_EQ(library.fileVersion, 0);
    EXPECT_EQ(library.programVersion, 20);
    EXPECT_TRUE(library.versionsKnown);
    EXPECT_EQ(library.startAddress, -8);
    EXPECT_EQ(library.rowCount, 25);
    EXPECT_EQ(TextOf(library.filePattern), u"*.erp");
    ASSERT_EQ(library.formats.size(), 1U);
    ASSERT_EQ(library.formats[0]->items.size(), 1U);
    DataItem expected = PicturedItem(u"One"); // nothing after the description's end is taken
    expected.arrayLength = 6;                 // kept: the old code type
    expected.unicode = 0;
    EXPECT_EQ(*library.formats[0]->items[0], expected);
}

TEST_F(FormatLibraryLoad, SavesAnOlderFileInTheNewForm)
{
    Load(CPicture().Settings().FormatHead(u"Old", 1).OldItem(u"One").End());
    ASSERT_EQ(library.save(File()), 0);
    EXPECT_EQ(ReadAll(File()).size(), 660U);
    FormatLibrary again;
    EXPECT_EQ(again.load(File()), 660);
    EXPECT_EQ(again.fileVersion, 20);
    ASSERT_EQ(again.formats.size(), 1U);
    EXPECT_EQ(*again.formats[0]->items[0], *library.formats[0]->items[0]);
}

TEST_F(FormatLibraryLoad, RefusesARecordThatEndsBeforeItsItems)
{
    EXPECT_EQ(Load(CPicture().Header(u"RecipeFile2.0").FormatHead(u"A", 5).End()), -1);
    EXPECT_TRUE(library.formats.empty());
}

TEST_F(FormatLibraryLoad, TakesNoItemsFromALaterFile)
{
    const CPicture picture = CPicture()
                                 .Header(u"RecipeFile2.5")
                                 .FormatHead(u"First", 2)
                                 .Item(u"One")
                                 .Item(u"Two")
                                 .End()
                                 .FormatHead(u"Second", 1)
                                 .Item(u"Three")
                                 .End();
    EXPECT_EQ(Load(picture), picture.Size());
    EXPECT_EQ(library.fileVersion, 25);
    EXPECT_EQ(library.programVersion, 20);
    EXPECT_EQ(library.startAddress, -8);
    ASSERT_EQ(library.formats.size(), 2U);
    EXPECT_EQ(TextOf(library.formats[0]->name), u"First");
    EXPECT_EQ(library.formats[0]->itemCount, 2);
    EXPECT_TRUE(library.formats[0]->items.empty());
    EXPECT_EQ(library.formats[1]->itemCount, 1);
    EXPECT_TRUE(library.formats[1]->items.empty());
}

TEST_F(FormatLibraryLoad, ALaterFormatCutShortIsDropped)
{
    const CPicture picture = CPicture().Header(u"RecipeFile2.5").FormatHead(u"A", 1).Item(u"One").End();
    EXPECT_EQ(Load(CPicture(picture).Cut(72 + 264 + 319)), -1);
    EXPECT_TRUE(library.formats.empty());
}

struct MarkerCase {
    const char* name;
    std::u16string_view marker;
    std::int32_t version;
    friend void PrintTo(const MarkerCase& c, std::ostream* out) { *out << c.name; }
};

struct LibraryMarker : testing::TestWithParam<MarkerCase> {};

TEST_P(LibraryMarker, TellsTheVersion)
{
    const CTempFolder folder;
    WriteAll(folder / "a", CPicture().Header(GetParam().marker).Image());
    FormatLibrary library;
    EXPECT_EQ(library.load(folder / "a"), GetParam().version != 0 ? 72 : -1);
    EXPECT_EQ(library.fileVersion, GetParam().version);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, LibraryMarker, testing::Values(
    MarkerCase{"Current",       u"RecipeFile2.0",    20},
    MarkerCase{"LaterMinor",    u"RecipeFile2.5",    25},
    MarkerCase{"LastMinor",     u"RecipeFile2.9",    29},
    MarkerCase{"NoFraction",    u"RecipeFile2xy",    20},
    MarkerCase{"HugeExponent",  u"RecipeFile2e9",    -1474836480},
    MarkerCase{"OtherMajor",    u"RecipeFile3.0",    0},
    MarkerCase{"OneMore",       u"RecipeFile2.00",   0},
    MarkerCase{"OneFewer",      u"RecipeFile2.",     0},
    MarkerCase{"OtherCase",     u"recipefile2.0",    0},
    MarkerCase{"OneCharacter",  u"R",                0},
    MarkerCase{"NoTerminator",  u"RecipeFile2.0xyz", 0}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(FormatLibraryLoad, CutsALongNameToSixtyFour)
{
    Load(CPicture().Header(u"RecipeFile2.0").FormatHead(std::u16string(100, u'n'), 0).End());
    ASSERT_EQ(library.formats.size(), 1U);
    EXPECT_EQ(TextOf(library.formats[0]->name), std::u16string(64, u'n')); // kept
}

TEST_F(FormatLibraryLoad, CutsALongNameBeforeACharacterOfTwoUnits)
{
    const std::u16string name = std::u16string(63, u'n') + u"\U0001F600";
    Load(CPicture().Header(u"RecipeFile2.0").FormatHead(name, 0).End());
    ASSERT_EQ(library.formats.size(), 1U);
    EXPECT_EQ(TextOf(library.formats[0]->name), std::u16string(63, u'n'));
}

TEST_F(FormatLibraryLoad, TakesANameUpToItsFirstZero)
{
    Load(CPicture().Header(u"RecipeFile2.0").Int(100).Text(u"Name", 128, u'x').Int(0).End());
    ASSERT_EQ(library.formats.size(), 1U);
    FixedText<128> name{};
    SetText(name, u"Name");
    EXPECT_EQ(library.formats[0]->name, name);
}

TEST_F(FormatLibraryLoad, CreatesAMissingFileEmpty)
{
    EXPECT_EQ(library.load(File()), 0);
    EXPECT_TRUE(fs::is_empty(File()));
    EXPECT_TRUE(library.formats.empty());
    EXPECT_TRUE(library.versionsKnown);
    EXPECT_EQ(library.fileVersion, 0);
    EXPECT_EQ(library.programVersion, 20);
    EXPECT_EQ(library.rowCount, 10);
    EXPECT_EQ(TextOf(library.filePattern), u"*.rcp");
}

TEST_F(FormatLibraryLoad, TakesAnEmptyFileAsAnEmptyLibrary)
{
    EXPECT_EQ(Load(CPicture()), 0);
    EXPECT_TRUE(library.formats.empty());
}

TEST_F(FormatLibraryLoad, ForgetsTheFormatsOfTheFileBefore)
{
    Load(CPicture().Header(u"RecipeFile2.0").FormatHead(u"A", 0).End());
    ASSERT_EQ(library.formats.size(), 1U);
    EXPECT_EQ(library.load(folder / "missing" / "file"), -1);
    EXPECT_TRUE(library.formats.empty());
    EXPECT_FALSE(library.versionsKnown);
    EXPECT_EQ(library.path, folder / "missing" / "file");
}

TEST_F(FormatLibraryLoad, ReadOnlyForgetsTheFormatsOfTheFileBefore)
{
    const CPicture picture = CPicture().Header(u"RecipeFile2.0").FormatHead(u"A", 0).End();
    Load(picture);
    EXPECT_EQ(library.loadReadOnly(File()), picture.Size());
    EXPECT_EQ(library.formats.size(), 1U);
    EXPECT_EQ(library.loadReadOnly(folder / "missing"), -1);
    EXPECT_TRUE(library.formats.empty());
    EXPECT_FALSE(library.versionsKnown);
}

TEST_F(FormatLibraryLoad, RefusesWhatIsNoRegularFile)
{
    fs::create_directory(File());
    EXPECT_EQ(library.load(File()), -1);
    EXPECT_EQ(library.loadReadOnly(File()), -1);
    EXPECT_EQ(library.load("/dev/zero"), -1);
    EXPECT_EQ(library.load(""), -1);
    EXPECT_FALSE(library.versionsKnown);
}

TEST_F(FormatLibraryLoad, RefusesAFileThatMayNotBeRead)
{
    WriteAll(File(), CPicture().Header(u"RecipeFile2.0").Image());
    fs::permissions(folder.Path(), fs::perms::all);
    fs::permissions(File(), fs::perms::none);
    const COrdinaryUser user;
    EXPECT_EQ(library.load(File()), -1);
    EXPECT_EQ(library.loadReadOnly(File()), -1);
    EXPECT_FALSE(library.versionsKnown);
}

TEST_F(FormatLibraryLoad, TakesAFileThatTheDiskFailsToReadForOneThatCannotBeOpened)
{
    fs::create_symlink("/proc/self/mem", File()); // a regular file whose first bytes are an input/output error
    library.formats.push_back(std::make_unique<DataFormat>(DefaultFormat()));
    EXPECT_EQ(library.load(File()), -1);
    EXPECT_FALSE(library.versionsKnown);
    EXPECT_EQ(library.loadReadOnly(File()), -1);
    EXPECT_FALSE(library.versionsKnown);
    EXPECT_TRUE(library.formats.empty());
    EXPECT_EQ(library.rowCount, 10);
}

TEST_F(FormatLibraryLoad, ReadOnlyCreatesNothing)
{
    EXPECT_EQ(library.loadReadOnly(File()), -1);
    EXPECT_FALSE(fs::exists(File()));
    const CPicture picture = CPicture().Header(u"RecipeFile2.0").FormatHead(u"A", 1).Item(u"One").End();
    WriteAll(File(), picture.Image());
    EXPECT_EQ(library.loadReadOnly(File()), picture.Size());
    ASSERT_EQ(library.formats.size(), 1U);
    EXPECT_EQ(ReadAll(File()), picture.Image());
}

TEST_F(FormatLibraryLoad, ReadsThroughASymbolicLink)
{
    WriteAll(folder / "real", CPicture().Header(u"RecipeFile2.0").Image());
    fs::create_symlink("real", File());
    EXPECT_EQ(library.load(File()), 72);
}

TEST_F(FormatLibraryLoad, WhatAShortHeaderLacksStaysAsItWas)
{
    library.startAddress = 3;
    library.rowCount = 0x01020304;
    EXPECT_EQ(Load(CPicture().Int(-8).Word(0x1111)), -1);
    EXPECT_EQ(library.startAddress, -8);
    EXPECT_EQ(library.rowCount, 0x01021111);
    EXPECT_EQ(TextOf(library.filePattern), u"*.rcp");
}

TEST_F(FormatLibraryLoad, ABareMarkerIsABadFile)
{
    EXPECT_EQ(Load(CPicture().Text(u"RecipeFile2.0", 16)), -1);
    EXPECT_EQ(library.fileVersion, 20);
    EXPECT_EQ(library.rowCount, 10);
}

TEST_F(FormatLibraryLoad, AMissingEndMarkLosesOnlyThatFormat)
{
    const CPicture good = CPicture().Header(u"RecipeFile2.0").FormatHead(u"Good", 1).Item(u"One").End();
    for (const CPicture& bad :
         {CPicture(good).FormatHead(u"Bad", 1).Item(u"Two"), CPicture(good).FormatHead(u"Bad", 1).Item(u"Two").Int(201),
          CPicture(good).FormatHead(u"Bad", 1).Item(u"Two").Word(200)}) {
        EXPECT_EQ(Load(bad), -1);
        ASSERT_EQ(library.formats.size(), 1U);
        EXPECT_EQ(TextOf(library.formats[0]->name), u"Good");
        EXPECT_EQ(library.formats[0]->items.size(), 1U);
    }
}

TEST_F(FormatLibraryLoad, ABadStartMarkEndsTheLoad)
{
    const CPicture good = CPicture().Header(u"RecipeFile2.0").FormatHead(u"Good", 0).End();
    EXPECT_EQ(Load(CPicture(good).Int(101).Text(u"Bad", 128).Int(0).End()), -1);
    EXPECT_EQ(library.formats.size(), 1U);
    EXPECT_EQ(Load(CPicture(good).Word(100)), -1);
    EXPECT_EQ(library.formats.size(), 1U);
}

TEST_F(FormatLibraryLoad, AFileCutAnywhereKeepsTheWholeFormats)
{
    const CPicture whole =
        CPicture().Header(u"RecipeFile2.0").FormatHead(u"A", 1).Item(u"One").End().FormatHead(u"B", 0).End();
    const std::size_t firstEnd = 72 + 264 + 320 + 4;
    for (std::size_t size = 1; size < whole.Image().size(); ++size) {
        const std::int64_t result = Load(CPicture(whole).Cut(size));
        const bool isAtAnEnd = size == 72 || size == firstEnd;
        ASSERT_EQ(result, isAtAnEnd ? static_cast<std::int64_t>(size) : -1) << size;
        ASSERT_EQ(library.formats.size(), size >= firstEnd ? 1U : 0U) << size;
    }
}

TEST_F(FormatLibraryLoad, ACountBeyondTheFileDropsTheFormat)
{
    for (const std::u16string_view marker : {u"RecipeFile2.0", u"RecipeFile2.5"}) {
        for (const std::int32_t count : {2, 1'000'000, std::numeric_limits<std::int32_t>::max()}) {
            EXPECT_EQ(Load(CPicture().Header(marker).FormatHead(u"A", count).Item(u"One").End()), -1);
            EXPECT_TRUE(library.formats.empty());
        }
    }
}

TEST_F(FormatLibraryLoad, ANegativeCountMeansNoItems)
{
    for (const std::int32_t count : {-1, std::numeric_limits<std::int32_t>::min()}) {
        const CPicture picture = CPicture().Header(u"RecipeFile2.0").FormatHead(u"A", count).End();
        EXPECT_EQ(Load(picture), picture.Size());
        ASSERT_EQ(library.formats.size(), 1U);
        EXPECT_EQ(library.formats[0]->itemCount, count);
        EXPECT_TRUE(library.formats[0]->items.empty());
    }
}

TEST_F(FormatLibraryLoad, AnyNumberInAnItemIsTakenAsItIs)
{
    CPicture picture = CPicture().Header(u"RecipeFile2.0").FormatHead(u"A", 1);
    for (int i = 0; i < 160; ++i)
        picture.Word(0xFFFF);
    picture.End();
    EXPECT_EQ(Load(picture), picture.Size());
    ASSERT_EQ(library.formats.size(), 1U);
    const DataItem& item = *library.formats[0]->items.at(0);
    EXPECT_EQ(item.dataType, DataType::NotChosen);
    EXPECT_EQ(item.maxValue, -1);
    EXPECT_EQ(TextOf(item.description), std::u16string(128, 0xFFFF));
}

TEST(LibraryPath, LiesBesideTheExecutable)
{
    CRecordingReporter reporter;
    const fs::path folder = fs::temp_directory_path() / "bin.d";
    EXPECT_EQ(LibraryPathBeside(folder / "Vantor", reporter), folder / "RecipeFile.Dat");
    EXPECT_EQ(LibraryPathBeside(fs::path("/Vantor").make_preferred(), reporter),
              fs::path("/RecipeFile.Dat").make_preferred());
    EXPECT_TRUE(reporter.shown.empty());
}

TEST(LibraryPath, OfANameWithoutAFolderIsReportedAndTurnedRound)
{
    CRecordingReporter reporter;
    EXPECT_EQ(LibraryPathBeside("Vantor.exe", reporter), "exe.rotnaV"); // kept: names no file in practice
    EXPECT_EQ(reporter.shown, std::vector<std::u16string>{u"Open Recipe FormatData file Error!"});
}

} // namespace
