#include "tests/support/ProcessRun.h"

#include "tests/support/RedirectedRun.h"
#include "tests/support/TestFiles.h"

namespace fs = std::filesystem;

namespace {

std::string TextIn(const fs::path& file)
{
    std::string text;
    for (const std::byte b : ReadAll(file))
        text += static_cast<char>(b);
    return text;
}

} // namespace

ProcessResult RunProcess(const fs::path& program, const std::vector<std::string>& arguments)
{
    return RunProcessIn({}, program, arguments);
}

ProcessResult RunProcessIn(const std::vector<std::string>& environment, const fs::path& program,
                           const std::vector<std::string>& arguments)
{
    const CTempFolder folder;
    ProcessResult result;
    result.exitCode = RunRedirected(program, arguments, {folder / "out", folder / "error"}, environment);
    result.out = TextIn(folder / "out");
    result.error = TextIn(folder / "error");
    return result;
}

ProcessResult RunProcess(const fs::path& program, const std::vector<std::string>& arguments, const fs::path& outputFile)
{
    const CTempFolder folder;
    ProcessResult result;
    result.exitCode = RunRedirected(program, arguments, {outputFile, folder / "error"}, {});
    result.error = TextIn(folder / "error");
    return result;
}
