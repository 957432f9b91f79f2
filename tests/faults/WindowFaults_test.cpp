#include "library/FormatLibrary.h"
#include "tests/faults/FaultRun.h"
#include "tests/faults/SaveVerdict.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <sstream>

namespace fs = std::filesystem;

namespace {

std::vector<std::string> LinesOf(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

std::ptrdiff_t CountOf(const std::string& beginning, const std::vector<std::string>& lines)
{
    return std::count_if(lines.begin(), lines.end(),
                         [&beginning](const std::string& line) { return line.starts_with(beginning); });
}

/// A file that the window changes in place or replaces.
struct WindowCase {
    const char* name;
    Leaves leaves;
    const char* target;
    std::size_t bytes; ///< of the old file
    friend void PrintTo(const WindowCase& c, std::ostream* out) { *out << c.name; }
};

struct WindowFaults : testing::TestWithParam<WindowCase> {
    WindowFaults() : path{GetParam().name, GetParam().leaves, GetParam().target, "", {}, {}} {}

    void Prepare(const SavePlace& place) const
    {
        WriteAll(place.Disk(path.target), Bytes(GetParam().bytes, std::byte{0x31}));
    }

    /// The library lies aside, so only the recipe's disk breaks.
    FaultRun Run(const SavePlace& place, const Fault& fault, int at) const
    {
        return RunWithFault(VANTOR_WINDOW_SAVE_PROGRAM,
                            {(place.folder / "aside").string(), place.Disk(path.target), "291"}, place.folder / "disk",
                            fault, at);
    }

    /// Judged by what the first and the second save printed.
    void ExpectHonest(const FaultRun& run) const
    {
        const auto lines = LinesOf(run.result.out);
        ASSERT_FALSE(lines.empty()) << run.result.error;
        const std::string warning = " may hold old and new words: its save failed part-way. Save again.";
        const std::string told = "failed: " + std::string(path.target) + warning;
        const bool isSaved = lines.front().starts_with("saved: ");
        const bool isWarned = lines.front().find(warning) != std::string::npos;
        EXPECT_TRUE(!isWarned || lines.front().starts_with(told)) << lines.front();
        EXPECT_EQ(CountOf("Can't save file", lines) + CountOf("Save file", lines), CountOf("failed: ", lines))
            << "a message each: " << run.result.out;
        if (isSaved || run.result.exitCode != 0)
            return;
        EXPECT_TRUE(lines.at(1).starts_with("saved: ")) << "the second save: " << lines.at(1);
        EXPECT_EQ(lines.at(1).find(warning), std::string::npos) << lines.at(1);
        EXPECT_EQ(lines.size(), 3u) << "one message";
    }

    int MeetEveryCall(const Fault& fault, const CSaveVerdict& verdict) const
    {
        int met = 0;
        for (int at = 1;; ++at) {
            const SavePlace place;
            Prepare(place);
            const FaultRun run = Run(place, fault, at);
            SCOPED_TRACE(std::string(fault.name) + " at call " + std::to_string(at));
            if (run.failed.empty()) {
                EXPECT_EQ(run.result.exitCode, 0) << run.result.out << run.result.error;
                return met;
            }
            EXPECT_EQ(verdict.ComplaintOf(place, fault, run), "");
            if (!fault.Kills())
                ExpectHonest(run);
            ++met;
        }
    }

    SavePath path;
};

/// A disk that breaks once, one that stays full, the end of the program, and a disk that cannot be read for a moment.
const std::vector<Fault> kWindowFaults = {
    {"input/output error once", "error", EIO},
    {"no space", "error", ENOSPC, 0},
    {"killed", "kill"},
    {"unreadable once", "read", EIO},
};

TEST_P(WindowFaults, LeaveTheOldOrTheNewAndAreTold)
{
    const SavePlace place;
    Prepare(place);
    const Bytes old = ReadAll(place.Disk(path.target));
    const FaultRun whole = Run(place, kWindowFaults.front(), 0);
    ASSERT_EQ(whole.result.exitCode, 0) << whole.result.out << whole.result.error;
    ASSERT_FALSE(whole.calls.empty()) << "the shim is not there";
    const Bytes fresh = ReadAll(place.Disk(path.target));
    ASSERT_NE(old, fresh);
    const CSaveVerdict verdict(path, old, fresh);
    int met = 0;
    for (const Fault& fault : kWindowFaults)
        met += MeetEveryCall(fault, verdict);
    EXPECT_GE(met, 3 * static_cast<int>(whole.calls.size()));
    RecordProperty("faults", met);
    std::printf("%s: %zu calls, %d faults\n", GetParam().name, whole.calls.size(), met);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Window, WindowFaults, testing::Values(
    //         name           leaves            target   bytes
    WindowCase{"RecipeGrows", Leaves::InPlace,  "a.rcp", 14},
    WindowCase{"Table",       Leaves::OldOrNew, "a.csv", 40},
    WindowCase{"Paged",       Leaves::Paged,    "a.frp", 14}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

/// Until a save succeeds.
TEST(WindowStatus, SaysThatASaveFailedPartWay)
{
    const SavePlace place;
    WriteAll(place.Disk("a.rcp"), Bytes(24));
    const Fault torn = {"", "break", EIO};
    const std::vector<std::string> arguments = {(place.folder / "aside").string(), place.Disk("a.rcp"), "291"};
    const FaultRun run = RunWithFault(VANTOR_WINDOW_SAVE_PROGRAM, arguments, place.folder / "disk", torn, 3);
    ASSERT_EQ(run.failed.front(), "pwrite");
    const auto lines = LinesOf(run.result.out);
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0], "failed: a.rcp may hold old and new words: its save failed part-way. Save again.");
    EXPECT_EQ(lines[1], lines[0]) << "a second failure takes nothing back";
    EXPECT_EQ(lines[2], "Can't save file " + place.Disk("a.rcp") + ",please check file or your disk!");
}

/// A save elsewhere does not mend it.
TEST(WindowStatus, SaysThatASaveAsFailedPartWayUntilThatFileIsSavedOrGone)
{
    const SavePlace place;
    WriteAll(place.Aside("b.rcp"), Bytes(24));
    WriteAll(place.Disk("a.rcp"), Bytes(24));
    const Fault torn = {"", "break", EIO};
    const std::vector<std::string> arguments = {(place.folder / "aside").string(), place.Aside("b.rcp"), "291",
                                                place.Disk("a.rcp")};
    const FaultRun run = RunWithFault(VANTOR_WINDOW_SAVE_PROGRAM, arguments, place.folder / "disk", torn, 3);
    ASSERT_FALSE(run.failed.empty()) << run.result.out << run.result.error;
    ASSERT_EQ(run.failed.front(), "pwrite");
    const auto lines = LinesOf(run.result.out);
    ASSERT_GE(lines.size(), 2u);
    const std::string notice = "a.rcp may hold old and new words: its save failed part-way. Save again.";
    EXPECT_EQ(lines[0], "failed: " + notice);
    EXPECT_EQ(lines[1], "saved: " + notice);
    EXPECT_EQ(run.result.exitCode, 0);
    EXPECT_NE(BytesIn(place.Aside("b.rcp")), Bytes(24));
}

struct WindowLibraryFaults : testing::TestWithParam<Fault> {};

/// A damaged library: it is copied before it is written over, so what it held is always somewhere.
TEST_P(WindowLibraryFaults, NeverLoseWhatALibraryHeld)
{
    int met = 0;
    for (int at = 1;; ++at) {
        const SavePlace place;
        fs::copy_file(place.Aside("RecipeFile.Dat"), place.Disk("RecipeFile.Dat"));
        Bytes damaged = ReadAll(place.Disk("RecipeFile.Dat"));
        damaged.insert(damaged.end(), 50, std::byte{7});
        WriteAll(place.Disk("RecipeFile.Dat"), damaged);
        WriteAll(place.Aside("b.rcp"), Bytes(24));
        const FaultRun run =
            RunWithFault(VANTOR_WINDOW_SAVE_PROGRAM, {(place.folder / "disk").string(), place.Aside("b.rcp"), "291"},
                         place.folder / "disk", GetParam(), at);
        SCOPED_TRACE("call " + std::to_string(at));
        const auto library = BytesIn(place.Disk("RecipeFile.Dat"));
        ASSERT_TRUE(library);
        if (library != damaged) {
            EXPECT_EQ(BytesIn(place.Disk("RecipeFile.Dat.bak")), damaged);
            EXPECT_EQ(FormatLibrary().loadReadOnly(place.Disk("RecipeFile.Dat")), static_cast<int>(library->size()));
        }
        if (run.failed.empty()) {
            EXPECT_NE(library, damaged) << "no fault, and not saved";
            break;
        }
        ++met;
    }
    EXPECT_GT(met, 10);
    std::printf("library, %s: %d faults\n", GetParam().name, met);
}

INSTANTIATE_TEST_SUITE_P(Window, WindowLibraryFaults,
                         testing::Values(Fault{"no space", "error", ENOSPC, 0}, Fault{"killed", "kill"}),
                         [](const auto& c) { return std::string(c.param.Kills() ? "Killed" : "NoSpace"); });

} // namespace
