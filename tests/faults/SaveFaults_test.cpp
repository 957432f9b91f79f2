#include "tests/faults/SaveVerdict.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <tuple>

namespace fs = std::filesystem;

namespace {

/// Whether no file is left that was only on its way to the target.
bool HasNoTemporaryFile(const SavePlace& place)
{
    const fs::directory_iterator files(place.folder / "disk");
    return std::none_of(begin(files), end(files), [](const auto& entry) { return entry.path().extension() == ".new"; });
}

struct SaveFaults : testing::TestWithParam<SavePath> {
    static FaultRun Run(const SavePlace& place, const Fault& fault, int at)
    {
        return RunWithFault(GetParam().Program(), GetParam().arguments(place), place.folder / "disk", fault, at);
    }

    /// Has `fault` meet every call in turn, until the save has no further one; how often it did.
    static int MeetEveryCall(const Fault& fault, const CSaveVerdict& verdict)
    {
        int met = 0;
        for (int at = 1;; ++at) {
            const SavePlace place;
            GetParam().prepare(place);
            const FaultRun run = Run(place, fault, at);
            const std::string where = std::string(fault.name) + " at call " + std::to_string(at) +
                                      (run.failed.empty() ? "" : ", " + run.failed.front());
            EXPECT_EQ(verdict.ComplaintOf(place, fault, run), "") << where;
            met += run.failed.empty() ? 0 : 1;
            const bool mayFail = !run.failed.empty() && !fault.IsPassing();
            EXPECT_TRUE(run.result.exitCode == 0 || mayFail) << where << ": " << run.result.error;
            if (fault.Kills()) {
                Run(place, fault, 0);
                EXPECT_TRUE(HasNoTemporaryFile(place)) << where << ": the next save clears up";
            }
            if (static_cast<int>(run.calls.size()) < at)
                return met;
        }
    }
};

TEST_P(SaveFaults, LeaveTheOldOrTheNewAndAreTold)
{
    const SavePlace place;
    GetParam().prepare(place);
    const auto old = BytesIn(place.Disk(GetParam().target));
    const FaultRun whole = Run(place, AllFaults().front(), 0);
    ASSERT_EQ(whole.result.exitCode, 0) << whole.result.error;
    ASSERT_FALSE(whole.calls.empty()) << "the shim is not there";
    const auto fresh = BytesIn(place.Disk(GetParam().target));
    ASSERT_TRUE(fresh);
    ASSERT_NE(old, fresh);

    const CSaveVerdict verdict(GetParam(), old, *fresh);
    int met = 0;
    for (const Fault& fault : AllFaults())
        met += MeetEveryCall(fault, verdict);
    EXPECT_GT(met, 3 * static_cast<int>(whole.calls.size()));
    RecordProperty("calls", static_cast<int>(whole.calls.size()));
    RecordProperty("faults", met);
    std::printf("%s: %zu calls, %d faults\n", GetParam().name, whole.calls.size(), met);
}

/// A save that makes a paged file longer.
struct PagedSave : testing::TestWithParam<int> {
    PagedSave()
    {
        path.prepare(place);
        old = BytesIn(place.Disk(path.target));
    }

    /// The first call that asks for room; 0 when there is none.
    int FirstRequest() const
    {
        const SavePlace trial;
        path.prepare(trial);
        const auto calls = Run(trial, AllFaults().front(), 0).calls;
        const auto found = std::find(calls.begin(), calls.end(), "posix_fallocate");
        return found == calls.end() ? 0 : static_cast<int>(found - calls.begin()) + 1;
    }

    FaultRun Run(const SavePlace& where, const Fault& fault, int at) const
    {
        return RunWithFault(path.Program(), path.arguments(where), where.folder / "disk", fault, at);
    }

    const SavePath& path = CommandLineSavePath("PagedNewTable");
    const SavePlace place;
    std::optional<Bytes> old;
};

struct PagedSaveToABusyDisk : PagedSave {}; ///< which refuses the room so many times

TEST_P(PagedSaveToABusyDisk, SucceedsWithinEightTries)
{
    const int at = FirstRequest();
    ASSERT_GT(at, 0);
    const auto begin = std::chrono::steady_clock::now();
    const FaultRun run = Run(place, {"busy", "error", ENOSPC, GetParam()}, at);
    const auto pauses = std::min(GetParam(), 7);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, pauses * std::chrono::milliseconds(10));
    EXPECT_EQ(run.failed.size(), static_cast<std::size_t>(GetParam()));
    EXPECT_EQ(run.result.exitCode, GetParam() < 8 ? 0 : 1);
    EXPECT_EQ(BytesIn(place.Disk(path.target)) == old, GetParam() == 8);
}

INSTANTIATE_TEST_SUITE_P(Refusals, PagedSaveToABusyDisk, testing::Values(1, 7, 8));

struct PagedSaveToABrokenDisk : PagedSave {}; ///< whose call so many calls after the first request for room fails

TEST_P(PagedSaveToABrokenDisk, LeavesTheFileAsItWasUntilThereIsRoom)
{
    const int at = FirstRequest();
    ASSERT_GT(at, 0);
    const FaultRun run = Run(place, {"broken once", "error", EIO}, at + GetParam());
    EXPECT_EQ(run.result.exitCode, 1) << run.failed.front();
    EXPECT_TRUE(BytesIn(place.Disk(path.target)) == old) << run.failed.front();
}

// The table past the end, the flush and the entry that leads to the table.
INSTANTIATE_TEST_SUITE_P(Calls, PagedSaveToABrokenDisk, testing::Values(1, 2, 3));

/// The copy that it needs first does not count before the disk has it.
TEST(DiskThatDoesNotTakeACopy, LeavesTheLibraryThatIsNotUnderstood)
{
    const SavePath& path = CommandLineSavePath("LibraryNotUnderstood");
    int refusals = 0;
    for (int at = 1;; ++at) {
        const SavePlace place;
        path.prepare(place);
        const auto old = BytesIn(place.Disk(path.target));
        const FaultRun run = RunWithFault(path.Program(), path.arguments(place), place.folder / "disk",
                                          {"input/output error", "error", EIO}, at);
        if (run.failed.empty())
            break;
        if (run.failed.front() != "fsync" && run.failed.front() != "fdatasync")
            continue;
        EXPECT_EQ(run.result.exitCode, 1) << at << ' ' << run.failed.front();
        refusals += BytesIn(place.Disk(path.target)) == old ? 1 : 0;
    }
    EXPECT_GE(refusals, 3) << "the copy, its folder and the library beside it";
}

/// Nothing notices that but reading it back, which is done where the only whole library would be replaced.
TEST(DiskThatLosesWrites, LeavesALibraryThatIsNotUnderstoodOrAWholeCopyOfIt)
{
    const SavePath& path = CommandLineSavePath("LibraryNotUnderstood");
    int lost = 0;
    for (int at = 1;; ++at) {
        const SavePlace place;
        path.prepare(place);
        const auto old = BytesIn(place.Disk(path.target));
        const FaultRun run =
            RunWithFault(path.Program(), path.arguments(place), place.folder / "disk", {"lost", "lose"}, at);
        const std::string copy = std::string(path.target) + ".bak";
        EXPECT_TRUE(BytesIn(place.Disk(path.target)) == old || BytesIn(place.Disk(copy.c_str())) == old) << at;
        lost += run.failed.empty() ? 0 : 1;
        if (static_cast<int>(run.calls.size()) < at)
            break;
    }
    EXPECT_GE(lost, 2) << "the copy's bytes and the library's";
}

/// What a disk that fails to read gives is neither a short file nor no file.
struct ReadFaults : testing::TestWithParam<std::tuple<SavePath, int>> {
    const SavePath& Path() const { return std::get<0>(GetParam()); }

    FaultRun Run(const SavePlace& place, int at) const
    {
        const Fault fault{"unreadable", "read", EIO, std::get<1>(GetParam())};
        return RunWithFault(Path().Program(), Path().arguments(place), place.folder.Path(), fault, at);
    }

    bool MayBeLeft(const std::optional<Bytes>& bytes, const std::optional<Bytes>& old, bool isBeside,
                   const FaultRun& run) const
    {
        const bool isWrittenInPart = Path().leaves == Leaves::Emptied || Path().leaves == Leaves::Paged;
        const bool mayBeMix = Path().leaves == Leaves::InRuns && (TellsTear(run) || IsOldWithZeros(bytes, old));
        return bytes == old || ((isWrittenInPart || isBeside || mayBeMix) && bytes);
    }

    /// A disk that does not tell a file's length cuts no file that grew.
    static bool IsOldWithZeros(const std::optional<Bytes>& bytes, const std::optional<Bytes>& old)
    {
        Bytes longer = old.value_or(Bytes());
        longer.resize(bytes.value_or(Bytes()).size());
        return bytes == longer;
    }

    /// Whether the new file is whole beside the one that it was to be copied into.
    bool IsBeside(const SavePlace& place, const std::optional<Bytes>& fresh) const
    {
        const fs::directory_iterator files(place.folder / "disk");
        return Path().leaves == Leaves::Copied && std::any_of(begin(files), end(files), [&](const auto& entry) {
                   return entry.path().extension() == ".kept" && BytesIn(entry.path()) == fresh;
               });
    }
};

TEST_P(ReadFaults, SpoilNoSave)
{
    std::optional<Bytes> fresh;
    for (int at = 0;; ++at) { // 0: none fails
        const SavePlace place;
        Path().prepare(place);
        const auto old = BytesIn(place.Disk(Path().target));
        const FaultRun run = Run(place, at);
        const auto bytes = BytesIn(place.Disk(Path().target));
        const std::string where = "at call " + std::to_string(at) + (run.failed.empty() ? "" : ", " + run.failed[0]);
        if (at == 0) {
            ASSERT_EQ(run.result.exitCode, 0) << run.result.error;
            ASSERT_FALSE(run.calls.empty()) << "the shim is not there";
            fresh = bytes;
        } else if (run.result.exitCode == 0) {
            EXPECT_EQ(bytes, fresh) << where;
        } else {
            EXPECT_EQ(run.result.exitCode, Path().failure) << where;
            EXPECT_NE(run.result.error, "") << where;
            EXPECT_TRUE(MayBeLeft(bytes, old, IsBeside(place, fresh), run)) << where;
        }
        EXPECT_TRUE(HasNoTemporaryFile(place)) << where;
        if (static_cast<int>(run.calls.size()) < at)
            return;
    }
}

std::string NameOf(const testing::TestParamInfo<std::tuple<SavePath, int>>& info)
{
    return std::string(std::get<0>(info.param).name) + (std::get<1>(info.param) == 1 ? "Once" : "");
}

INSTANTIATE_TEST_SUITE_P(CommandLine, ReadFaults,
                         testing::Combine(testing::ValuesIn(CommandLineSavePaths()), testing::Values(1, 0)), NameOf);
INSTANTIATE_TEST_SUITE_P(Core, ReadFaults, testing::Combine(testing::ValuesIn(TableSavePaths()), testing::Values(1, 0)),
                         NameOf);
INSTANTIATE_TEST_SUITE_P(Document, ReadFaults,
                         testing::Combine(testing::ValuesIn(DocumentSavePaths()), testing::Values(1, 0)), NameOf);

INSTANTIATE_TEST_SUITE_P(CommandLine, SaveFaults, testing::ValuesIn(CommandLineSavePaths()),
                         [](const auto& path) { return std::string(path.param.name); });
INSTANTIATE_TEST_SUITE_P(Core, SaveFaults, testing::ValuesIn(TableSavePaths()),
                         [](const auto& path) { return std::string(path.param.name); });
INSTANTIATE_TEST_SUITE_P(Document, SaveFaults, testing::ValuesIn(DocumentSavePaths()),
                         [](const auto& path) { return std::string(path.param.name); });

} // namespace
