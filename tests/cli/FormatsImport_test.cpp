#include "cli/FormatsImportCommand.h"
#include "library/LibraryLock.h"
#include "recovery/DataFolder.h"
#include "recovery/VersionStore.h"
#include "tests/cli/CliTest.h"
#include "tests/support/RecordingReporter.h"

namespace fs = std::filesystem;

namespace {

struct FormatsImport : CliTest {
    /// The library after an import of `json`.
    FormatLibrary Imported(const std::string& json) const
    {
        WriteAll(file, TextBytes(json));
        ExpectDone({"formats", "import", file.string()});
        FormatLibrary imported;
        EXPECT_GE(imported.loadReadOnly(libraryPath), 0);
        return imported;
    }

    DataItem ImportedItem(const std::string& fields) const
    {
        const FormatLibrary imported = Imported("{\"formats\": [{\"items\": [{" + fields + "}]}]}");
        return *imported.formats.at(0)->items.at(0);
    }

    fs::path Copy() const { return fs::path(libraryPath) += ".bak"; }

    fs::path file = folder / "formats.json";
};

TEST_F(FormatsImport, ReplacesTheLibrary)
{
    const FormatLibrary imported = Imported(
        "{\"startAddress\": -5, \"rowCount\": 7, \"filePattern\": \"*.erp\", \"formats\": ["
        "{\"name\": \"A\"}, {\"items\": [{\"description\": \"X\"}, {}], \"name\": \"B\\u5b8b\\ud83d\\ude00\"}]}");
    EXPECT_EQ(imported.startAddress, -5);
    EXPECT_EQ(imported.rowCount, 7);
    EXPECT_EQ(TextOf(imported.filePattern), u"*.erp");
    ASSERT_EQ(imported.formats.size(), 2u);
    EXPECT_EQ(TextOf(imported.formats[0]->name), u"A");
    EXPECT_EQ(imported.formats[0]->itemCount, 0);
    EXPECT_EQ(TextOf(imported.formats[1]->name), u"B\u5B8B\U0001F600");
    ASSERT_EQ(imported.formats[1]->itemCount, 2);
    EXPECT_EQ(TextOf(imported.formats[1]->items[0]->description), u"X");
    EXPECT_EQ(TextOf(imported.formats[1]->items[1]->description), u"Desc1");
}

TEST_F(FormatsImport, WhatIsLeftOutIsAsInANewLibrary)
{
    const FormatLibrary imported = Imported("{}");
    EXPECT_EQ(imported.startAddress, 0);
    EXPECT_EQ(imported.rowCount, 10);
    EXPECT_EQ(TextOf(imported.filePattern), u"*.rcp");
    EXPECT_TRUE(imported.formats.empty());
}

TEST_F(FormatsImport, ItemFieldsLeftOutAreTheDefaultItems)
{
    EXPECT_EQ(ImportedItem(""), DefaultItem());
}

TEST_F(FormatsImport, BoundsLeftOutComeFromTypeAndDigits)
{
    const DataItem item = ImportedItem("\"dataType\": 3, \"integerDigits\": 9, \"dataLength\": 2");
    EXPECT_EQ(item.minValue, 0);
    EXPECT_EQ(item.maxValue, 999999999);
}

TEST_F(FormatsImport, OneBoundLeftOutIsTheDefaultItems)
{
    EXPECT_EQ(ImportedItem("\"dataType\": 3, \"minValue\": 4").minValue, 4);
    EXPECT_EQ(ImportedItem("\"dataType\": 3, \"minValue\": 4").maxValue, 9999);
    EXPECT_EQ(ImportedItem("\"dataType\": 3, \"maxValue\": 4").minValue, -999);
}

TEST_F(FormatsImport, LongestTextsAreWrittenWhole)
{
    const std::string name(127, 'n');
    const std::string description(127, 'd');
    const FormatLibrary imported = Imported("{\"filePattern\": \"123456789012345\", \"formats\": [{\"name\": \"" +
                                            name + "\", \"items\": [{\"description\": \"" + description + "\"}]}]}");
    EXPECT_EQ(TextOf(imported.filePattern), u"123456789012345");
    EXPECT_EQ(TextOf(imported.formats[0]->items[0]->description), std::u16string(127, u'd'));
    // The header takes 72 bytes, the start mark 4: then comes the name.
    const Bytes stored = ReadAll(libraryPath);
    EXPECT_EQ(stored[76 + 2 * 126], std::byte{'n'});
    EXPECT_EQ(stored[76 + 2 * 127], std::byte{0});
}

TEST_F(FormatsImport, MakesAMissingLibrary)
{
    fs::remove(libraryPath);
    EXPECT_EQ(Imported("{\"rowCount\": 3}").rowCount, 3);
}

TEST_F(FormatsImport, KeepsACopyOfADamagedLibrary)
{
    Bytes damaged = ReadAll(libraryPath);
    damaged.resize(damaged.size() - 10);
    WriteAll(libraryPath, damaged);
    EXPECT_EQ(Imported("{\"rowCount\": 3}").rowCount, 3);
    EXPECT_EQ(ReadAll(Copy()), damaged);
}

TEST_F(FormatsImport, KeepsACopyOfALaterLibrary)
{
    Bytes later = ReadAll(libraryPath);
    later[24] = std::byte{'5'}; // "RecipeFile2.5"
    WriteAll(libraryPath, later);
    Imported("{}");
    EXPECT_EQ(ReadAll(Copy()), later);
}

TEST_F(FormatsImport, KeepsNoCopyOfALibraryThatIsUnderstood)
{
    Imported("{}");
    EXPECT_FALSE(fs::exists(Copy()));
}

TEST_F(FormatsImport, LibraryThatCannotBeCopiedStaysAsItIs)
{
    Bytes damaged = ReadAll(libraryPath);
    damaged.resize(damaged.size() + 10'000); // the copy is what does not fit on the disk
    WriteAll(libraryPath, damaged);
    WriteAll(file, TextBytes("{}"));
    const ProcessResult result = RunScript("ulimit -f 4; \"$cli\" formats import \"$1\" --library \"$2\" 2>&1",
                                           {file.string(), libraryPath.string()});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "Can't save file " + libraryPath.string() + ",please check file or your disk!\n");
    EXPECT_EQ(ReadAll(libraryPath), damaged);
    EXPECT_FALSE(fs::exists(Copy()));
}

TEST_F(FormatsImport, ByteOrderMarkIsNoFault)
{
    EXPECT_EQ(Imported("\xEF\xBB\xBF{\"rowCount\": 3}").rowCount, 3);
}

TEST_F(FormatsImport, AListOfTextsAndUnitsFillsTheFieldAsItStands)
{
    const FormatLibrary imported =
        Imported("{\"filePattern\": [\"*.\", 0, \"12345678901\", 55357, 0], \"formats\": [{\"name\": [], \"items\": ["
                 "{\"description\": [\"" +
                 std::string(100, 'a') + "\", 65535, \"" + std::string(27, 'b') + "\"]}]}]}");
    EXPECT_EQ(imported.filePattern, (FixedText<16>{u'*', u'.', 0, u'1', u'2', u'3', u'4', u'5', u'6', u'7', u'8', u'9',
                                                   u'0', u'1', u'\xD83D', 0}));
    EXPECT_EQ(TextOf(imported.formats[0]->name), u"");
    EXPECT_EQ(TextOf(imported.formats[0]->items[0]->description),
              std::u16string(100, u'a') + u'\xFFFF' + std::u16string(27, u'b'));
}

struct RefusedJson {
    const char* name;
    std::string json;
    const char* fault; ///< place and text
    friend void PrintTo(const RefusedJson& c, std::ostream* out) { *out << c.name; }
};

struct FormatsImportRefused : FormatsImport, testing::WithParamInterface<RefusedJson> {};

TEST_P(FormatsImportRefused, NamesThePlaceAndKeepsTheLibrary)
{
    const Bytes before = ReadAll(libraryPath);
    WriteAll(file, TextBytes(GetParam().json));
    ExpectRefused({"formats", "import", file.string()},
                  "Import error! File " + file.string() + ", at " + GetParam().fault + "!");
    EXPECT_EQ(ReadAll(libraryPath), before);
}

std::string WithItem(const std::string& fields)
{
    return "{\"formats\": [{}, {\"items\": [{}, {}, {" + fields + "}]}]}";
}

const std::string k128(128, 'a');

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, FormatsImportRefused, testing::Values(
    RefusedJson{"Empty", "", "/: line 1, column 1 is no valid JSON"},
    RefusedJson{"NoJson", "{\n  \"rowCount\": 1,\n  oops}", "/rowCount: line 3, column 3 is no valid JSON"},
    RefusedJson{"CutOff", "{\"formats\": [{", "/formats/0: line 1, column 15 is no valid JSON"},
    RefusedJson{"SomethingAfter", "{} x", "/: line 1, column 4 is no valid JSON"},
    RefusedJson{"NoUtf8", "{\"formats\": [\n{\"name\": \"a\xFF\"}]}",
                "/formats/0/name: line 2, column 12 is no valid JSON"},
    RefusedJson{"LoneSurrogate", "{\"filePattern\": \"\\ud800\"}", "/filePattern: line 1, column 24 is no valid JSON"},
    RefusedJson{"Comment", "{} // formats", "/: line 1, column 4 is no valid JSON"},
    RefusedJson{"RootIsArray", "[]", "/: an object is expected"},
    RefusedJson{"RootIsNumber", "7", "/: an object is expected"},
    RefusedJson{"WrongName", "{\"startAdress\": 1}", "/startAdress: there is no field of this name"},
    RefusedJson{"WrongNameInFormat", "{\"formats\": [{\"itemCount\": 1}]}",
                "/formats/0/itemCount: there is no field of this name"},
    RefusedJson{"WrongNameInItem", WithItem("\"a/b~c\": 1"), "/formats/1/items/2/a~1b~0c: there is no field of this name"},
    RefusedJson{"Twice", WithItem("\"dataType\": 1, \"dataType\": 2"), "/formats/1/items/2/dataType: the field stands twice"},
    RefusedJson{"FormatsIsObject", "{\"formats\": {}}", "/formats: an array is expected"},
    RefusedJson{"FormatIsText", "{\"formats\": [{}, \"a\"]}", "/formats/1: an object is expected"},
    RefusedJson{"FormatIsArray", "{\"formats\": [[]]}", "/formats/0: an object is expected"},
    RefusedJson{"ItemsIsNull", "{\"formats\": [{\"items\": null}]}", "/formats/0/items: an array is expected"},
    RefusedJson{"ItemIsNumber", "{\"formats\": [{\"items\": [{}, 1]}]}", "/formats/0/items/1: an object is expected"},
    RefusedJson{"TextForInteger", "{\"rowCount\": \"1\"}", "/rowCount: an integer is expected"},
    RefusedJson{"RealForInteger", "{\"rowCount\": 1.0}", "/rowCount: an integer is expected"},
    RefusedJson{"ExponentForInteger", "{\"rowCount\": 1e1}", "/rowCount: an integer is expected"},
    RefusedJson{"FlagForInteger", WithItem("\"isArray\": true"), "/formats/1/items/2/isArray: an integer is expected"},
    RefusedJson{"ObjectForInteger", WithItem("\"isArray\": {}"), "/formats/1/items/2/isArray: an integer is expected"},
    RefusedJson{"IntegerForText", "{\"formats\": [{\"name\": 1}]}", "/formats/0/name: a text is expected"},
    RefusedJson{"HugeForText", "{\"filePattern\": 1e999}", "/filePattern: a text is expected"},
    RefusedJson{"TooLarge", "{\"rowCount\": 2147483648}",
                "/rowCount: the number is not between -2147483648 and 2147483647"},
    RefusedJson{"TooSmall", "{\"startAddress\": -2147483649}",
                "/startAddress: the number is not between -2147483648 and 2147483647"},
    RefusedJson{"TooLargeInItem", WithItem("\"dataLength\": 2147483648"),
                "/formats/1/items/2/dataLength: the number is not between -2147483648 and 2147483647"},
    RefusedJson{"TooLargeForTypeCode", WithItem("\"dataType\": 2147483648"),
                "/formats/1/items/2/dataType: the number is not between -2147483648 and 2147483647"},
    RefusedJson{"BoundTooLarge", WithItem("\"maxValue\": 9223372036854775808"),
                "/formats/1/items/2/maxValue: the number is not between -9223372036854775808 and 9223372036854775807"},
    RefusedJson{"BoundFarTooLarge", WithItem("\"minValue\": -99999999999999999999999"),
                "/formats/1/items/2/minValue: the number is not between -9223372036854775808 and 9223372036854775807"},
    RefusedJson{"MoreThanAReal", "{\"rowCount\": 1" + std::string(400, '0') + "}",
                "/rowCount: the number is not between -2147483648 and 2147483647"},
    RefusedJson{"PatternTooLong", "{\"filePattern\": \"1234567890123456\"}",
                "/filePattern: the text is longer than 15 characters"},
    RefusedJson{"NameTooLong", "{\"formats\": [{\"name\": \"" + k128 + "\"}]}",
                "/formats/0/name: the text is longer than 127 characters"},
    RefusedJson{"DescriptionTooLong", WithItem("\"description\": \"" + k128 + "\""),
                "/formats/1/items/2/description: the text is longer than 127 characters"},
    RefusedJson{"UnitTooLarge", "{\"filePattern\": [\"a\", 65536]}",
                "/filePattern/1: the number is not between 0 and 65535"},
    RefusedJson{"UnitTooSmall", "{\"filePattern\": [-1]}", "/filePattern/0: the number is not between 0 and 65535"},
    RefusedJson{"UnitIsReal", "{\"filePattern\": [1.5]}", "/filePattern/0: a text or an integer is expected"},
    RefusedJson{"UnitIsList", WithItem("\"description\": [7, []]"),
                "/formats/1/items/2/description/1: a text or an integer is expected"},
    RefusedJson{"ListTooLong", "{\"filePattern\": [\"123456789012345\", 6, 7]}",
                "/filePattern/2: the text is longer than 16 characters"},
    RefusedJson{"ZeroCharacterInList", "{\"filePattern\": [0, \"a\\u0000b\"]}",
                "/filePattern/1: the text holds a zero character"},
    RefusedJson{"ListForInteger", "{\"rowCount\": []}", "/rowCount: an integer is expected"},
    RefusedJson{"ZeroCharacter", "{\"filePattern\": \"a\\u0000b\"}", "/filePattern: the text holds a zero character"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(FormatsImport, MissingFileIsReported)
{
    ExpectRefused({"formats", "import", file.string()}, "Open error! " + file.string() + " doesn't exit!");
}

TEST_F(FormatsImport, FolderInPlaceOfAFileIsReported)
{
    fs::create_directory(file);
    ExpectRefused({"formats", "import", file.string()}, "Open file " + file.string() + " error!");
}

TEST_F(FormatsImport, LibraryThatCannotBeWrittenIsReported)
{
    WriteAll(file, TextBytes("{}"));
    const std::string missing = folder / "missing/Any.Dat";
    const ProcessResult result = RunCli({"formats", "import", file.string(), "--library", missing});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.error, "Can't save file " + missing + ",please check file or your disk!\n");
}

TEST_F(FormatsImport, FullDiskLeavesTheLibraryAsItIs)
{
    const Bytes before = ReadAll(libraryPath);
    std::string json = "{\"formats\": [{}";
    for (int i = 0; i < 20; ++i)
        json += ", {}";
    WriteAll(file, TextBytes(json + "]}"));
    const ProcessResult result = RunScript("ulimit -f 1; \"$cli\" formats import \"$1\" --library \"$2\" 2>&1",
                                           {file.string(), libraryPath.string()});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "Can't save file " + libraryPath.string() + ",please check file or your disk!\n");
    EXPECT_EQ(ReadAll(libraryPath), before);
}

TEST_F(FormatsImport, DeepNestingIsRefusedAtOnce)
{
    const Bytes before = ReadAll(libraryPath);
    WriteAll(file, TextBytes("{\"formats\": " + std::string(100000, '[')));
    ExpectRefused({"formats", "import", file.string()},
                  "Import error! File " + file.string() + ", at /formats/0: an object is expected!");
    EXPECT_EQ(ReadAll(libraryPath), before);
}

TEST_F(FormatsImport, GoesOnWithoutALockThatAnotherProgramKeeps)
{
    const CLibraryLock lock(libraryPath);
    ASSERT_TRUE(lock.IsHeld());
    EXPECT_EQ(Imported("{\"formats\": [{\"name\": \"A\"}]}").formats.size(), 1u);
    EXPECT_TRUE(fs::exists(fs::path(libraryPath) += ".lock")) << "it is the other's";
}

TEST_F(FormatsImport, LeavesNoLock)
{
    Imported("{}");
    EXPECT_FALSE(fs::exists(fs::path(libraryPath) += ".lock"));
}

TEST_F(FormatsImport, KeepsAVersionBeforeOtherFormatsTakeThePlaceOfThoseThere)
{
    const CVersionStore versions(OwnDataFolder());
    const Bytes before = ReadAll(libraryPath);
    Imported("{\"formats\": [{\"name\": \"A\"}]}");
    const auto kept = versions.List(libraryPath);
    ASSERT_EQ(kept.size(), 1u);
    EXPECT_EQ(kept[0].command, u"formats import");
    EXPECT_EQ(ReadAll(versions.PathOf(libraryPath, kept[0])), before);
    Imported("{\"rowCount\": 3, \"formats\": [{\"name\": \"A\"}]}");
    EXPECT_EQ(versions.List(libraryPath).size(), 1u) << "of settings alone";
    fs::remove(libraryPath);
    Imported("{\"formats\": [{\"name\": \"B\"}]}");
    EXPECT_EQ(versions.List(libraryPath).size(), 1u) << "there is nothing to keep";
}

} // namespace
