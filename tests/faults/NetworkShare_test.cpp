#include "tests/faults/SavePath.h"
#include "tests/support/ProcessRun.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace fs = std::filesystem;

namespace {

struct NetworkShare : testing::TestWithParam<SavePath> {
    static ProcessResult RunOnShare(const SavePlace& place)
    {
        const char* sanitizer = std::getenv("ASAN_OPTIONS");
        return RunProcessIn(
            {
                std::string("LD_PRELOAD=") + VANTOR_SHARE_SHIM,
                std::string("ASAN_OPTIONS=") + (sanitizer ? sanitizer : "") + ":verify_asan_link_order=0",
            },
            GetParam().Program(), GetParam().arguments(place));
    }

    static std::ptrdiff_t FileCount(const SavePlace& place)
    {
        return std::distance(fs::directory_iterator(place.folder / "disk"), fs::directory_iterator());
    }
};

} // namespace

/// A lock that the program takes there must not keep its own writes out.
TEST_P(NetworkShare, TakesEverySave)
{
    const SavePlace local;
    GetParam().prepare(local);
    ASSERT_EQ(RunProcess(GetParam().Program(), GetParam().arguments(local)).exitCode, 0);

    const SavePlace place;
    GetParam().prepare(place);
    const ProcessResult result = RunOnShare(place);
    EXPECT_EQ(result.exitCode, 0) << result.error;
    EXPECT_EQ(BytesIn(place.Disk(GetParam().target)), BytesIn(local.Disk(GetParam().target)));
    EXPECT_EQ(FileCount(place), FileCount(local));
}

INSTANTIATE_TEST_SUITE_P(Commands, NetworkShare, testing::ValuesIn(CommandLineSavePaths()),
                         [](const auto& c) { return std::string(c.param.name); });
INSTANTIATE_TEST_SUITE_P(Core, NetworkShare, testing::ValuesIn(TableSavePaths()),
                         [](const auto& c) { return std::string(c.param.name); });
