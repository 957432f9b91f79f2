#include "disk/Crc32.h"
#include "tests/cli/CliTest.h"

#include <algorithm>
#include <cstdio>

namespace fs = std::filesystem;

namespace {

struct TextconvCommand : CliTest {
    std::string TextOf(const fs::path& file, std::vector<std::string> options = {}) const
    {
        options.insert(options.begin(), {"textconv", file.string()});
        const ProcessResult result = Run(options);
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.error, "");
        return result.out;
    }

    /// Makes a file like `recipe` of another type.
    fs::path Converted(const std::string& name) const
    {
        const fs::path file = folder / name;
        EXPECT_EQ(Run({"convert", recipe.string(), file.string()}).exitCode, 0);
        return file;
    }

    static std::string FormOf(const fs::path& file)
    {
        char line[32];
        std::snprintf(line, sizeof line, "form = %08X\n", static_cast<unsigned>(Crc32(ReadAll(file))));
        return line;
    }

    static std::size_t CountLines(const std::string& text)
    {
        return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
    }
};

TEST_F(TextconvCommand, PrintsALineAValueAndTheWordsOutside)
{
    EXPECT_EQ(TextOf(recipe), "RW0: 0063\n"
                              "RW1 1 Level = 5 [0005]\n"
                              "RW2 1 Temp(0) = 12.3 [007B]\n"
                              "RW3 1 Temp(1) = 100.0 [03E8]\n"
                              "RW4 1 \xE5\x90\x8D\xE7\xA7\xB0 = A [0041 0000]\n"
                              "RW6 2 Level = 600 [0258]\n"
                              "RW7 2 Temp(0) = 4.5 [002D]\n"
                              "RW8 2 Temp(1) = 0.0 [0000]\n"
                              "RW9 2 \xE5\x90\x8D\xE7\xA7\xB0 = \xE5\xAE\x8B\xE4\xBD\x93 [5B8B 4F53]\n"
                              "RW11: 0063\n");
}

TEST_F(TextconvCommand, OfEqualLinesPrintsTheFirstAndTheLast)
{
    Bytes bytes(16 * 10);
    WriteAll(recipe, bytes);
    EXPECT_EQ(TextOf(recipe, {"--start", "1000"}), "RW0: 0000 0000 0000 0000 0000 0000 0000 0000\n"
                                                   "*\n"
                                                   "RW72: 0000 0000 0000 0000 0000 0000 0000 0000\n");
    bytes[16] = std::byte{1};
    WriteAll(recipe, bytes);
    EXPECT_EQ(TextOf(recipe, {"--start", "1000"}), "RW0: 0000 0000 0000 0000 0000 0000 0000 0000\n"
                                                   "RW8: 0001 0000 0000 0000 0000 0000 0000 0000\n"
                                                   "RW16: 0000 0000 0000 0000 0000 0000 0000 0000\n"
                                                   "*\n"
                                                   "RW72: 0000 0000 0000 0000 0000 0000 0000 0000\n");
}

TEST_F(TextconvCommand, TwoEqualLinesStandBoth)
{
    WriteAll(recipe, Bytes(32));
    EXPECT_EQ(TextOf(recipe, {"--start", "1000"}), "RW0: 0000 0000 0000 0000 0000 0000 0000 0000\n"
                                                   "RW8: 0000 0000 0000 0000 0000 0000 0000 0000\n");
}

TEST_F(TextconvCommand, PrintsWhatTheFileHoldsOfAValueThatItsEndCuts)
{
    WriteAll(recipe, TextBytes("aabbccdde"));
    EXPECT_EQ(TextOf(recipe), "RW0: 6161\n"
                              "RW1 1 Level = 0 [6262]\n"
                              "RW2 1 Temp(0) = 2544.3 [6363]\n"
                              "RW3 1 Temp(1) = 2570.0 [6464]\n"
                              "RW4 1 \xE5\x90\x8D\xE7\xA7\xB0 = e [65]\n");
}

TEST_F(TextconvCommand, ALastOddByteHasTwoDigits)
{
    WriteAll(recipe, TextBytes("aab"));
    EXPECT_EQ(TextOf(recipe, {"--start", "1000"}), "RW0: 6161 62\n");
}

TEST_F(TextconvCommand, AnEmptyFileHasNoLine)
{
    WriteAll(recipe, Bytes());
    EXPECT_EQ(TextOf(recipe), "");
}

TEST_F(TextconvCommand, PagedFilesEndWithTheirChecksum)
{
    for (const char* name : {"a.erp", "a.frp"}) {
        const fs::path file = Converted(name);
        const std::string text = TextOf(file);
        EXPECT_NE(text.find("RW7 2 Temp(0) = 4.5 [002D]\n"), std::string::npos);
        EXPECT_TRUE(text.ends_with(FormOf(file))) << text;
    }
}

TEST_F(TextconvCommand, TablesOfTextsHaveALineAFieldAndTheirChecksum)
{
    const fs::path file = folder / "a.csv";
    WriteAll(file, TextBytes("5,12.3,\"q\",A,behind\n,7\nthird line,x\n"));
    EXPECT_EQ(TextOf(file), "1 Level = 5\n"
                            "1 Temp(0) = 12.3\n"
                            "1 Temp(1) = \"q\"\n"
                            "1 \xE5\x90\x8D\xE7\xA7\xB0 = A\n"
                            "1 column 6 = behind\n"
                            "2 Level = \n"
                            "2 Temp(0) = 7\n"
                            "3 column 2 = third line\n"
                            "3 column 3 = x\n" +
                                FormOf(file));
}

TEST_F(TextconvCommand, AnyChangedByteGivesAnotherText)
{
    for (const fs::path& file : {recipe, Converted("b.erp"), Converted("b.csv")}) {
        const Bytes bytes = ReadAll(file);
        const std::string text = TextOf(file);
        for (std::size_t i = 0; i < bytes.size(); i += bytes.size() < 200 ? 1 : bytes.size() / 50) {
            Bytes changed = bytes;
            changed[i] ^= std::byte{1};
            WriteAll(file, changed);
            EXPECT_NE(TextOf(file), text) << file << " byte " << i;
        }
        Bytes longer = bytes;
        longer.push_back(std::byte{0});
        WriteAll(file, longer);
        EXPECT_NE(TextOf(file), text) << file;
    }
}

TEST_F(TextconvCommand, ControlCharactersDoNotBreakALine)
{
    const fs::path file = folder / "a.csv";
    WriteAll(file, TextBytes("a\tb\x1B,\n"));
    EXPECT_EQ(TextOf(file), "1 Level = a\\tb\\u001b\n" + FormOf(file));
}

TEST_F(TextconvCommand, WhatFailsIsTheOnlyLineAndTheStatusStaysZero)
{
    EXPECT_EQ(TextOf(folder / "none.rcp"), "Open error! " + (folder / "none.rcp").string() + " doesn't exit!\n");

    const fs::path unknown = folder / "a.txt";
    WriteAll(unknown, TextBytes("text"));
    EXPECT_EQ(TextOf(unknown), "The type of file " + unknown.string() +
                                   " is unknown! It must be .rcp, .csv, .erp or .frp! " + FormOf(unknown));

    EXPECT_EQ(TextOf(recipe, {"--format", "Nix"}), "The format Nix doesn't exist! " + FormOf(recipe));
}

TEST_F(TextconvCommand, TwoDamagedFilesDoNotPrintTheSame)
{
    const fs::path file = folder / "a.frp";
    Bytes bytes(65536 + 4096, std::byte{0x77}); // the directory leads out of the file
    WriteAll(file, bytes);
    const std::string one = TextOf(file);
    EXPECT_EQ(one, "Open file a.frp error! " + FormOf(file));
    bytes.front() = std::byte{0x78};
    WriteAll(file, bytes);
    EXPECT_NE(TextOf(file), one);
}

TEST_F(TextconvCommand, ADamagedLibraryIsToldBesideTheText)
{
    Bytes bytes = ReadAll(libraryPath);
    bytes.resize(bytes.size() - 10);
    WriteAll(libraryPath, bytes);
    const ProcessResult result = Run({"textconv", recipe.string(), "--format", "Oven"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_NE(result.error, "");
    EXPECT_TRUE(result.out.starts_with("RW0: 0063\nRW1 1 Level")) << result.out;
}

TEST_F(TextconvCommand, ReadsAFileThatItMayOnlyRead)
{
    const fs::path file = Converted("a.erp");
    const Bytes bytes = ReadAll(file);
    MakeReadOnly(file);
    const auto time = fs::last_write_time(file);
    EXPECT_EQ(CountLines(TextOf(file, {"--start", "900000"})), 3U); // two of words, and the checksum
    EXPECT_EQ(ReadAll(file), bytes);
    EXPECT_EQ(fs::last_write_time(file), time);
}

} // namespace
