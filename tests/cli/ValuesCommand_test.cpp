#include "tests/cli/CliTest.h"
#include "tests/support/Formats.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <memory>
#include <sstream>

namespace fs = std::filesystem;

namespace {

using Json = nlohmann::json;

struct ValuesCommand : CliTest {
    ProcessResult Values(std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.begin(), "values");
        return Run(std::move(arguments));
    }

    /// The first line for one column of this type, read from these words, without what stands before its texts.
    std::string CellOf(const DataItem& item, std::initializer_list<std::uint16_t> words)
    {
        library.formats.clear();
        library.formats.push_back(std::make_unique<DataFormat>(MakeFormat(u"One", {item})));
        library.startAddress = 0;
        library.rowCount = 1;
        SaveLibrary();
        WriteAll(recipe, WordBytes(words));
        const std::string out = Values({recipe.string()}).out;
        const std::string begin = ",\"cells\":[{\"item\":\"X\",";
        return out.substr(out.find(begin) + begin.size());
    }
};

TEST_F(ValuesCommand, PrintsALineARow)
{
    const ProcessResult result = Values({recipe.string()});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.error, "");
    const std::string file = "{\"file\":\"" + recipe.string() + "\",\"table\":0,";
    EXPECT_EQ(result.out,
              file +
                  "\"row\":1,\"address\":1,\"cells\":["
                  "{\"item\":\"Level\",\"text\":\"5\",\"number\":5,\"words\":\"0005\",\"marks\":[]},"
                  "{\"item\":\"Temp(0)\",\"text\":\"12.3\",\"number\":12.3,\"words\":\"007B\",\"marks\":[]},"
                  "{\"item\":\"Temp(1)\",\"text\":\"100.0\",\"number\":100,\"words\":\"03E8\",\"marks\":[]},"
                  "{\"item\":\"\xE5\x90\x8D\xE7\xA7\xB0\",\"text\":\"A\",\"number\":null,\"words\":\"0041 0000\","
                  "\"marks\":[]}]}\n" +
                  file +
                  "\"row\":2,\"address\":6,\"cells\":["
                  "{\"item\":\"Level\",\"text\":\"600\",\"number\":600,\"words\":\"0258\",\"marks\":[]},"
                  "{\"item\":\"Temp(0)\",\"text\":\"4.5\",\"number\":4.5,\"words\":\"002D\",\"marks\":[]},"
                  "{\"item\":\"Temp(1)\",\"text\":\"0.0\",\"number\":0,\"words\":\"0000\",\"marks\":[]},"
                  "{\"item\":\"\xE5\x90\x8D\xE7\xA7\xB0\",\"text\":\"\xE5\xAE\x8B\xE4\xBD\x93\",\"number\":null,"
                  "\"words\":\"5B8B 4F53\",\"marks\":[]}]}\n");
}

TEST_F(ValuesCommand, NumberIsTheStoredOneInFull)
{
    EXPECT_EQ(CellOf(MakeItem(u"X", DataType::Unsigned16, 1, 2, 2), {105}),
              "\"text\":\"1.50\",\"number\":1.05,\"words\":\"0069\",\"marks\":[\"rewritten\"]}]}\n");
    EXPECT_EQ(CellOf(MakeItem(u"X", DataType::Unsigned32, 2, 10), {0xFFFF, 0xFFFF}),
              "\"text\":\"-1\",\"number\":4294967295,\"words\":\"FFFF FFFF\",\"marks\":[]}]}\n");
    EXPECT_EQ(CellOf(MakeItem(u"X", DataType::Hex16, 1, 4), {0x1F}),
              "\"text\":\"1F\",\"number\":31,\"words\":\"001F\",\"marks\":[]}]}\n");
    EXPECT_EQ(CellOf(MakeItem(u"X", DataType::Float, 2, 3, 1), {0x51EC, 0x41C8}), // 25.04
              "\"text\":\"25.0\",\"number\":25.04,\"words\":\"51EC 41C8\",\"marks\":[\"rewritten\"]}]}\n");
    const std::string small = CellOf(MakeItem(u"X", DataType::Double, 4, 3, 1), {1, 0, 0, 0}); // the smallest double
    EXPECT_NE(small.find("\"number\":5e-324,"), std::string::npos) << small;
    const std::string large = CellOf(MakeItem(u"X", DataType::Double, 4, 3, 1), {0xFFFF, 0xFFFF, 0xFFFF, 0x7FEF});
    EXPECT_NE(large.find("\"number\":1.7976931348623157e+308,"), std::string::npos) << large;
    EXPECT_NE(large.find("\"marks\":[\"outside\",\"rewritten\"]"), std::string::npos) << large;
}

TEST_F(ValuesCommand, NumberIsNullWhereThereIsNone)
{
    EXPECT_NE(CellOf(MakeItem(u"X", DataType::Float, 2, 3, 1), {0, 0x7FC0}).find("\"number\":null,"),
              std::string::npos);
    EXPECT_NE(CellOf(MakeItem(u"X", DataType::Float, 2, 3, 1), {0, 0x7F80}).find("\"number\":null,"),
              std::string::npos);
    EXPECT_EQ(CellOf(MakeItem(u"X", DataType::Unsigned32, 2, 3), {7}), // the file ends within it
              "\"text\":\"0\",\"number\":null,\"words\":\"0007\",\"marks\":[\"rewritten\"]}]}\n");
    EXPECT_EQ(CellOf(MakeItem(u"X", DataType::Unsigned16, 1, 3), {}),
              "\"text\":\"0\",\"number\":null,\"marks\":[\"rewritten\"]}]}\n");
}

TEST_F(ValuesCommand, MarksStandInTheirOrder)
{
    EXPECT_EQ(CellOf(MakeItem(u"X", DataType::Signed16, 1, 3), {0xFC00}), // -1024 is shown as 0
              "\"text\":\"0\",\"number\":-1024,\"words\":\"FC00\",\"marks\":[\"outside\",\"rewritten\"]}]}\n");
}

TEST_F(ValuesCommand, TableOfTextsHasNeitherAddressNorWords)
{
    const std::string table = folder / "b.csv";
    WriteAll(table, Utf16File(u"5\t\"1.05\"\t\"x\"\tA\r\n"));
    const ProcessResult result = Values({table, "--rows", "2"});
    std::istringstream lines(result.out);
    std::string line;
    std::getline(lines, line);
    EXPECT_EQ(line, "{\"file\":\"" + table +
                        "\",\"table\":0,\"row\":1,\"cells\":["
                        "{\"item\":\"Level\",\"text\":\"5\",\"number\":5,\"marks\":[]},"
                        "{\"item\":\"Temp(0)\",\"text\":\"1.05\",\"number\":1.05,\"marks\":[]},"
                        "{\"item\":\"Temp(1)\",\"text\":\"x\",\"number\":null,\"marks\":[]},"
                        "{\"item\":\"\xE5\x90\x8D\xE7\xA7\xB0\",\"text\":\"A\",\"number\":null,"
                        "\"marks\":[\"rewritten\"]}]}");
    std::getline(lines, line);
    EXPECT_EQ(Json::parse(line).at("cells").at(0).dump(),
              R"({"item":"Level","marks":["rewritten"],"number":null,"text":"0"})");
}

TEST_F(ValuesCommand, PagedFilesAreReadAlike)
{
    const std::string flat = Values({recipe.string()}).out;
    for (const char* name : {"b.erp", "b.frp"}) {
        const std::string paged = folder / name;
        ASSERT_EQ(Run({"convert", recipe.string(), paged}).exitCode, 0);
        const std::string out = Values({paged}).out;
        EXPECT_EQ(out.substr(out.find("\"row\"")).substr(0, 200), flat.substr(flat.find("\"row\"")).substr(0, 200));
    }
}

TEST_F(ValuesCommand, BadFileKeepsNoOtherFromBeingPrinted)
{
    const std::string none = folder / "none.rcp";
    const std::string text = folder / "a.txt";
    WriteAll(text, {});
    fs::create_directory(folder / "folder.erp");
    const ProcessResult result =
        Values({none, recipe.string(), text, (folder / "folder.erp").string(), recipe.string()});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 4);
    EXPECT_EQ(result.error, "Open error! " + none + " doesn't exit!\nThe type of file " + text +
                                " is unknown! It must be .rcp, .csv, .erp or .frp!\nOpen file " +
                                (folder / "folder.erp").string() + " error!\n");
    EXPECT_EQ(Values({none}).exitCode, 2);
    EXPECT_EQ(Values({}).exitCode, 2);
}

TEST_F(ValuesCommand, EveryLineIsJsonWhateverTheFileHolds)
{
    WriteAll(recipe, WordBytes({0, 1, 2, 3, 0xD800, u'\n', 5, 6, 7, u'"', u'\\'}));
    const ProcessResult result = Values({recipe.string()});
    std::istringstream lines(result.out);
    std::string line;
    std::getline(lines, line);
    EXPECT_EQ(Json::parse(line).at("cells").at(3).at("text"), "\xEF\xBF\xBD\n");
    std::getline(lines, line);
    EXPECT_EQ(Json::parse(line).at("cells").at(3).at("text"), "\"\\");
}

TEST_F(ValuesCommand, AThousandFilesNeedOneLibrary) // which is damaged, and that is told once
{
    Bytes bytes = ReadAll(libraryPath);
    bytes.pop_back();
    WriteAll(libraryPath, bytes);
    WriteAll(folder / ".vantor.json", TextBytes(R"({"tables":[{"files":"*","format":"Oven","rows":1}]})"));
    const ProcessResult result = Values(std::vector<std::string>(1000, recipe.string()));
    EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 1000);
    EXPECT_EQ(std::count(result.error.begin(), result.error.end(), '\n'), 1);
}

} // namespace
