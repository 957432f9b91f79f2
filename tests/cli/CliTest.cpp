#include "tests/cli/CliTest.h"

#include "tests/support/Formats.h"

#include <algorithm>
#include <memory>

CliTest::CliTest()
{
    DataItem name = MakeItem(u"\u540D\u79F0", DataType::String, 2, 4);
    name.unicode = 1;
    const DataFormat oven = MakeFormat(u"Oven", {MakeItem(u"Level", DataType::Signed16, 1, 4),
                                                 ArrayOf(MakeItem(u"Temp", DataType::Signed16, 1, 4, 1), 2), name});
    const DataFormat words = MakeFormat(u"W\u00F6rter", {MakeItem(u"Word", DataType::Signed16, 1, 5)});

    library.startAddress = 1;
    library.rowCount = 2;
    library.formats.push_back(std::make_unique<DataFormat>(oven));
    library.formats.push_back(std::make_unique<DataFormat>(words));
    SaveLibrary();
    WriteAll(recipe, WordBytes({99, 5, 123, 1000, u'A', 0, 600, 45, 0, 0x5B8B, 0x4F53, 99}));
}

ProcessResult CliTest::Run(std::vector<std::string> arguments) const
{
    arguments.insert(arguments.end(), {"--library", libraryPath.string()});
    return RunCli(arguments);
}

void CliTest::ExpectDone(const std::vector<std::string>& arguments) const
{
    ExpectDone(arguments, "");
}

void CliTest::ExpectDone(const std::vector<std::string>& arguments, const std::string& told) const
{
    const ProcessResult result = Run(arguments);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.error, told);
}

void CliTest::ExpectRefused(const std::vector<std::string>& arguments, const std::string& message) const
{
    const ProcessResult result = Run(arguments);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.error, message + "\n");
}

ProcessResult RunScript(const std::string& script, std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), {"-c", "cli=$0; " + script, VANTOR_CLI_PROGRAM});
    return RunProcess("/bin/bash", arguments);
}

std::string StoredAsShown(const std::filesystem::path& file, int values)
{
    if (values == 0)
        return "";
    if (values == 1)
        return file.string() +
               ": 1 value that was not set was stored as shown. With --only-edited it stays as it is.\n";
    return file.string() + ": " + std::to_string(values) +
           " values that were not set were stored as shown. With --only-edited they stay as they are.\n";
}

Bytes TextBytes(const std::string& text)
{
    Bytes bytes(text.size());
    std::transform(text.begin(), text.end(), bytes.begin(), [](char c) { return static_cast<std::byte>(c); });
    return bytes;
}
