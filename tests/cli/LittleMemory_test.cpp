#include "tests/cli/CliTest.h"
#include "tests/support/Formats.h"

#include <fstream>
#include <memory>

namespace fs = std::filesystem;

namespace {

constexpr const char* kMostRows = "16777216";

/// A recipe of 32 MiB and a program that gets 24 MiB in all, which is enough for one that is small.
struct LittleMemory : CliTest {
    LittleMemory()
    {
        library.formats.erase(library.formats.begin());
        SaveLibrary();
        WriteAll(large, {});
        fs::resize_file(large, std::uintmax_t{32} << 20); // zeros
    }

    ProcessResult RunSmall(std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.end(), {"--library", libraryPath.string()});
        return RunScript("ulimit -v 24576; exec \"$cli\" \"$@\" 2>&1", std::move(arguments));
    }

    void ExpectMessage(const std::vector<std::string>& arguments, const std::string& message) const
    {
        const ProcessResult result = RunSmall(arguments);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.out, message + "\n");
    }

    std::size_t FileCount() const
    {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder.Path()), fs::directory_iterator()));
    }

    fs::path large = folder / "large.rcp";
};

TEST_F(LittleMemory, IsEnoughForASmallRecipe)
{
    const ProcessResult result = RunSmall({"show", recipe.string()});
    EXPECT_EQ(result.exitCode, 0) << result.out;
}

/// A table of half a megabyte a row: more rows than the memory holds, and more than the files do.
TEST_F(LittleMemory, IsEnoughToShowAnyNumberOfRows)
{
    library.formats.insert(library.formats.begin(), std::make_unique<DataFormat>(MakeFormat(
                                                        u"Long", {MakeItem(u"Text", DataType::String, 262144, 0)})));
    SaveLibrary();
    WriteAll(folder / "b.frp", Bytes(69632)); // with a directory, but no pages
    WriteAll(folder / "b.csv", BytesOf({0xFF, 0xFE}));
    std::ofstream table(folder / "b.csv", std::ios::binary | std::ios::app);
    for (int line = 0; line < 10000; ++line)
        table << std::string(2001, '\1').replace(2000, 1, "\n") << '\0'; // a thousand characters U+0101
    table.close();
    const std::string name = folder / "b.";
    fs::rename(large, name + "rcp");
    for (const char* ending : {"rcp", "frp", "csv"})
        for (const char* form : {"--format=Long", "--json"}) {
            const ProcessResult result = RunSmall({"show", name + ending, form, "--start", "0", "--rows", "8191"});
            EXPECT_EQ(result.exitCode, 0) << ending << form << result.out.substr(0, 200);
            EXPECT_NE(result.out.find("RW2146959360"), std::string::npos) << ending << form;
        }
    EXPECT_EQ(fs::file_size(name + "frp"), 69632u);
}

TEST_F(LittleMemory, IsEnoughToCheckAndPrintAnyNumberOfRows)
{
    const ProcessResult check = RunSmall({"check", large.string(), "--start", "0", "--rows", "4000000"});
    EXPECT_EQ(check.exitCode, 0) << check.out.substr(0, 200);
    library.formats.insert(library.formats.begin(), std::make_unique<DataFormat>(MakeFormat(
                                                        u"Long", {MakeItem(u"Text", DataType::String, 262144, 0)})));
    SaveLibrary();
    const ProcessResult behind = RunSmall({"check", large.string(), "--start", "0", "--rows", "8191"});
    EXPECT_EQ(behind.out, large.string() + ": RW16777216 row 65: the file ends before this row [past-end]\n");
    const ProcessResult values = RunSmall({"values", large.string(), "--start", "0", "--rows", "40"});
    EXPECT_EQ(values.exitCode, 0) << values.out.substr(0, 200);
    EXPECT_NE(values.out.find("\"row\":40,"), std::string::npos);
}

/// A million rows that differ everywhere, and a table of as many lines.
TEST_F(LittleMemory, IsEnoughToCompareAnyNumberOfRows)
{
    const fs::path ones = folder / "ones.rcp";
    std::ofstream words(ones, std::ios::binary);
    const std::string piece(std::size_t{1} << 20, '\1');
    for (int i = 0; i < 6; ++i)
        words << piece;
    words.close();
    const std::vector<std::string> million{"--format=W\u00F6rter", "--start", "0", "--rows", "1000000"};
    const auto compare = [&](const fs::path& one, const fs::path& other) {
        std::vector<std::string> arguments{"diff", one.string(), other.string(), "--json"};
        arguments.insert(arguments.end(), million.begin(), million.end());
        arguments.insert(arguments.end(), {"--library", libraryPath.string()});
        const ProcessResult result =
            RunScript("(ulimit -v 24576; exec \"$cli\" \"$@\") 2>&1 | tail -n 1; exit ${PIPESTATUS[0]}", arguments);
        EXPECT_EQ(result.exitCode, 1) << result.out;
        return result.out;
    };
    EXPECT_EQ(compare(ones, large), "{\"address\":3145728,\"zeros\":13631488}\n");
    for (const char* name : {"a.csv", "b.csv"}) {
        WriteAll(folder / name, BytesOf({0xFF, 0xFE}));
        std::ofstream table(folder / name, std::ios::binary | std::ios::app);
        const std::string line{name[0], '\0', '\r', '\0', '\n', '\0'};
        for (int i = 0; i < 1000001; ++i)
            table << line;
    }
    EXPECT_EQ(compare(folder / "a.csv", folder / "b.csv"), "{\"line\":1000001,\"old\":\"a\",\"new\":\"b\"}\n");
}

TEST_F(LittleMemory, IsReportedWhenRowsAreRead)
{
    const std::string message = "Open file " + large.string() + " error!";
    ExpectMessage({"set", large.string(), "--rows", kMostRows, "--cell", "1", "2", "7"}, message);
    EXPECT_TRUE(ReadAll(large) == Bytes(std::size_t{32} << 20));
}

TEST_F(LittleMemory, LeavesNoConvertedFile)
{
    const std::size_t files = FileCount();
    for (const char* target : {"new.rcp", "new.csv", "new.erp", "new.frp"})
        ExpectMessage({"convert", large.string(), (folder / target).string(), "--rows", kMostRows},
                      "Open file " + large.string() + " error!");
    EXPECT_EQ(FileCount(), files);
}

TEST_F(LittleMemory, LeavesNoFileOfATableThatCannotBeCoded)
{
    // The rows of a short table need little; the words they are coded to do not fit.
    const fs::path table = folder / "short.csv";
    WriteAll(table, TextBytes("1\n"));
    const std::size_t files = FileCount();
    for (const char* name : {"new.rcp", "new.erp", "new.frp"}) {
        const std::string target = (folder / name).string();
        ExpectMessage({"convert", table.string(), target, "--rows", kMostRows},
                      "Can't save file " + target + ",please check file or your disk!");
    }
    EXPECT_EQ(FileCount(), files);
}

TEST_F(LittleMemory, IsReportedForALongTable)
{
    const fs::path table = folder / "long.csv";
    WriteAll(table, BytesOf({0xFF, 0xFE}));
    fs::resize_file(table, std::uintmax_t{100} << 20);
    ExpectMessage({"show", table.string()}, "Can't open file " + table.string() + "!");
}

TEST_F(LittleMemory, IsReportedForALongImportAndTheLibraryStays)
{
    const fs::path json = folder / "long.json";
    WriteAll(json, {});
    fs::resize_file(json, std::uintmax_t{100} << 20);
    const Bytes before = ReadAll(libraryPath);
    ExpectMessage({"formats", "import", json.string()}, "There is not enough memory!");
    EXPECT_EQ(ReadAll(libraryPath), before);
}

} // namespace
