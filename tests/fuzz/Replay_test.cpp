#include "tests/fuzz/Scratch.h"
#include "tests/fuzz/Targets.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

struct ReplayedTarget {
    const char* name; ///< of the folder, too
    void (*run)(FuzzBytes bytes);

    friend void PrintTo(const ReplayedTarget& target, std::ostream* out) { *out << target.name; }
};

std::vector<fs::path> KeptInputs(const std::string& target)
{
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(fs::path(VANTOR_FUZZ_CORPUS) / target))
        files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

struct FuzzReplay : testing::TestWithParam<ReplayedTarget> {};

TEST_P(FuzzReplay, KeptInputsShowNoFault)
{
    const std::vector<fs::path> inputs = KeptInputs(GetParam().name);
    EXPECT_FALSE(inputs.empty());
    for (const fs::path& input : inputs)
        EXPECT_NO_THROW(GetParam().run(FileContent(input))) << input;
}

TEST_P(FuzzReplay, NoBytesAtAllAreAnInput)
{
    EXPECT_NO_THROW(GetParam().run({}));
}

INSTANTIATE_TEST_SUITE_P(Targets, FuzzReplay,
                         testing::Values(ReplayedTarget{"library", FuzzLibrary}, ReplayedTarget{"json", FuzzJsonImport},
                                         ReplayedTarget{"paged", FuzzPaged}, ReplayedTarget{"table", FuzzTable},
                                         ReplayedTarget{"cellcheck", FuzzCellCheck}, ReplayedTarget{"codec", FuzzCodec},
                                         ReplayedTarget{"merge", FuzzMerge}, ReplayedTarget{"changes", FuzzChanges},
                                         ReplayedTarget{"patch", FuzzPatch}, ReplayedTarget{"journal", FuzzJournal},
                                         ReplayedTarget{"layout", FuzzLayout}, ReplayedTarget{"notes", FuzzNotes},
                                         ReplayedTarget{"commandline", FuzzCommandLine}),
                         [](const auto& target) { return std::string(target.param.name); });

} // namespace
