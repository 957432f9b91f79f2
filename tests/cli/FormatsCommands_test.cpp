#include "tests/cli/CliTest.h"

#include <algorithm>
#include <memory>

namespace fs = std::filesystem;

namespace {

const char* const kEmptyLibrary =
    "{\"startAddress\": 0, \"rowCount\": 10, \"filePattern\": \"*.rcp\", \"formats\": []}\n";

struct FormatsList : CliTest {};
struct FormatsExport : CliTest {
    FormatsExport()
    {
        library.formats.erase(library.formats.begin());
        SaveLibrary();
    }

    /// What the library with its one format is in JSON.
    const std::string json =
        "{\"startAddress\": 1, \"rowCount\": 2, \"filePattern\": \"*.rcp\", \"formats\": [\n"
        "  {\"name\": \"W\xC3\xB6rter\", \"items\": [\n"
        "    {\"dataLength\": 1, \"dataType\": 0, \"integerDigits\": 5, \"decimalDigits\": 0, \"codeType\": 0, "
        "\"description\": \"Word\", \"isArray\": 0, \"arrayLength\": -1, \"minValue\": -32768, \"maxValue\": 32767, "
        "\"unicode\": 0, \"reserved0\": 0, \"reserved1\": -1, \"reserved2\": 0}]}\n"
        "]}\n";

    void ExpectSameAfterImport()
    {
        SaveLibrary();
        const Bytes before = ReadAll(libraryPath);
        const std::string file = folder / "formats.json";
        ExpectDone({"formats", "export", "-o", file});
        fs::remove(libraryPath);
        ExpectDone({"formats", "import", file});
        EXPECT_EQ(ReadAll(libraryPath), before);
    }
};

TEST_F(FormatsList, PrintsALineAFormat)
{
    library.formats.push_back(std::make_unique<DataFormat>(u"Empty"));
    SaveLibrary();
    const ProcessResult result = Run({"formats", "list"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "Oven\t3\t5\nW\xC3\xB6rter\t1\t1\nEmpty\t0\t0\n");
    EXPECT_EQ(result.error, "");
}

TEST_F(FormatsList, NameThatIsNoTextOrBreaksTheLineShowsReplacements)
{
    SetText(library.formats[0]->name, u"a\xD800"
                                      u"b\tc\n");
    SaveLibrary();
    EXPECT_EQ(Run({"formats", "list"}).out, "a\xEF\xBF\xBD"
                                            "b\xEF\xBF\xBD"
                                            "c\xEF\xBF\xBD\t3\t5\nW\xC3\xB6rter\t1\t1\n");
}

TEST_F(FormatsList, FormatsOfALaterVersionHaveTheirStoredCount)
{
    Bytes bytes = ReadAll(libraryPath);
    bytes[24] = std::byte{'5'}; // "RecipeFile2.5"
    WriteAll(libraryPath, bytes);
    EXPECT_EQ(Run({"formats", "list"}).out, "Oven\t3\t0\nW\xC3\xB6rter\t1\t0\n");
}

TEST_F(FormatsList, MissingOrEmptyLibraryHasNoFormats)
{
    fs::remove(libraryPath);
    ExpectDone({"formats", "list"});
    EXPECT_FALSE(fs::exists(libraryPath));
    WriteAll(libraryPath, {});
    ExpectDone({"formats", "list"});
    EXPECT_TRUE(ReadAll(libraryPath).empty());
}

TEST_F(FormatsList, DamagedLibraryHasTheFormatsBeforeTheDamage)
{
    Bytes bytes = ReadAll(libraryPath);
    bytes.pop_back();
    WriteAll(libraryPath, bytes);
    const ProcessResult result = Run({"formats", "list"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "Oven\t3\t5\n");
    EXPECT_EQ(result.error, "The format library " + libraryPath.string() +
                                " is damaged! What stands behind the damage is left out!\n");
}

TEST_F(FormatsList, LibraryThatCannotBeOpenedIsReported)
{
    fs::remove(libraryPath);
    fs::create_directory(libraryPath);
    ExpectRefused({"formats", "list"}, "Open file " + libraryPath.string() + " error!");
    ExpectRefused({"formats", "export"}, "Open file " + libraryPath.string() + " error!");
}

TEST_F(FormatsList, FullOutputIsReported)
{
    for (const char* command : {"list", "export"}) {
        const ProcessResult result =
            RunProcess(VANTOR_CLI_PROGRAM, {"formats", command, "--library", libraryPath.string()}, "/dev/full");
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.error, "Can't write the output!\n");
    }
}

TEST_F(FormatsExport, PrintsTheLibrary)
{
    const ProcessResult result = Run({"formats", "export"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, json);
    EXPECT_EQ(result.error, "");
}

TEST_F(FormatsExport, WritesAFile)
{
    const fs::path file = folder / "formats.json";
    WriteAll(file, Bytes(10000, std::byte{'x'}));
    ExpectDone({"formats", "export", "-o", file.string()});
    EXPECT_EQ(ReadAll(file), TextBytes(json));
}

TEST_F(FormatsExport, MissingOrEmptyLibraryHasNoFormats)
{
    fs::remove(libraryPath);
    EXPECT_EQ(Run({"formats", "export"}).out, kEmptyLibrary);
    EXPECT_FALSE(fs::exists(libraryPath));
    WriteAll(libraryPath, {});
    EXPECT_EQ(Run({"formats", "export"}).out, kEmptyLibrary);
}

TEST_F(FormatsExport, WhatIsNoTextIsAListOfTextsAndUnits)
{
    library.filePattern.fill(u'p'); // without a zero at its end
    SetText(library.formats[0]->name, u"\xD800"
                                      u"a\U0001F600\xDC00");
    library.formats[0]->items[0]->description = {u'"', 0, 0, u'x', u'y'};
    SaveLibrary();
    const std::string out = Run({"formats", "export"}).out;
    for (const char* field :
         {"\"filePattern\": [\"pppppppppppppppp\"],", "\"name\": [55296, \"a\xF0\x9F\x98\x80\", 56320],",
          "\"description\": [\"\\\"\", 0, 0, \"xy\"],"})
        EXPECT_NE(out.find(field), std::string::npos) << field << " in " << out;
}

TEST_F(FormatsExport, FileThatCannotBeWrittenIsReported)
{
    const std::string file = folder / "missing/formats.json";
    ExpectRefused({"formats", "export", "-o", file}, "Can't save file " + file + ",please check file or your disk!");
}

TEST_F(FormatsExport, NeverGoesOverTheLibraryItself)
{
    const Bytes before = ReadAll(libraryPath);
    const fs::path link = folder / "link";
    fs::create_symlink(libraryPath, link);
    for (const fs::path& file : {libraryPath, link})
        ExpectRefused({"formats", "export", "-o", file.string()},
                      "Can't save file " + file.string() + ",please check file or your disk!");
    EXPECT_EQ(ReadAll(libraryPath), before);
}

TEST_F(FormatsExport, ImportGivesTheSameLibrary)
{
    library.filePattern = {u'*', u'.', u'f', u'r', u'p'};
    DataItem& item = *library.formats[0]->items[0];
    item = DataItem{.reserved0 = -1,
                    .dataLength = -2147483648,
                    .dataType = static_cast<DataType>(77),
                    .integerDigits = 2147483647,
                    .decimalDigits = 6,
                    .codeType = CodeType::Bcd,
                    .description = {},
                    .isArray = 8,
                    .reserved1 = 9,
                    .reserved2 = 10,
                    .arrayLength = 11,
                    .minValue = std::numeric_limits<std::int64_t>::min(),
                    .maxValue = std::numeric_limits<std::int64_t>::max(),
                    .unicode = 12};
    SetText(item.description, u"\"\\\n\u5B8B \U0001F600");
    ExpectSameAfterImport();
}

TEST_F(FormatsExport, ImportGivesTheSameUnitsOfFullFields)
{
    library.filePattern.fill(u'\u5B8B');
    library.formats[0]->items[0]->description.fill(u'd');
    ExpectSameAfterImport();
    library.filePattern.back() = u'\xD83D';
    library.formats[0]->items[0]->description.back() = u'\xD83D';
    SetText(library.formats[0]->name, std::u16string(63, u'n') + u'\xDE00');
    ExpectSameAfterImport();
    library.filePattern = {0, u'*', 0, 7};
    library.formats[0]->items[0]->description = {u'a', 0, u'\xDE00', u'\xD83D', 0, 127};
    ExpectSameAfterImport();
}

} // namespace
