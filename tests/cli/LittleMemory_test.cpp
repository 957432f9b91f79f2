#include "tests/cli/CliTest.h"

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

TEST_F(LittleMemory, IsReportedWhenRowsAreRead)
{
    const std::string message = "Open file " + large.string() + " error!";
    ExpectMessage({"show", large.string(), "--rows", kMostRows}, message);
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
