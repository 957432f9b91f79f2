// The disk breaks where earlier versions and unsaved edits are kept: no save fails for that, no edit is lost that
// counted as kept, and what is missing is told.

#include "library/FormatLibrary.h"
#include "recovery/UnsavedStore.h"
#include "recovery/VersionStore.h"
#include "tests/faults/FaultRun.h"
#include "tests/faults/SavePath.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <sstream>

namespace fs = std::filesystem;

namespace {

using Words = std::vector<std::string>;

/// The faults of a disk that is written to, of one that is read, and of locks that cannot be had.
const std::vector<Fault>& FaultsOfAllKinds()
{
    static const std::vector<Fault> faults = [] {
        std::vector<Fault> all = AllFaults();
        all.push_back({"unreadable once", "read", EIO});
        all.push_back({"unreadable", "read", EIO, 0});
        all.push_back({"no lock", "lock", ENOLCK, 0});
        return all;
    }();
    return faults;
}

/// A place with a home, in which the user's data are.
struct KeptPlace : SavePlace {
    KeptPlace() { fs::create_directory(home); }

    Words Environment() const { return {"VANTOR_VERSIONS=", "XDG_DATA_HOME=" + home.string()}; }
    CVersionStore Versions() const { return CVersionStore(data); }

    /// Of `name` on the disk, the newest first.
    std::vector<Bytes> VersionsOf(const char* name) const
    {
        std::vector<Bytes> contents;
        for (const Version& version : Versions().List(Disk(name)))
            contents.push_back(ReadAll(Versions().PathOf(Disk(name), version)));
        return contents;
    }

    /// Files in the folders of versions that belong to none.
    std::ptrdiff_t LeftOvers(const char* name) const
    {
        std::ptrdiff_t files = 0;
        std::error_code ignored;
        for (const auto& entry : fs::recursive_directory_iterator(data / "versions", ignored))
            files += entry.is_regular_file() ? 1 : 0;
        return files - 2 * static_cast<std::ptrdiff_t>(VersionsOf(name).size());
    }

    fs::path home = folder / "home";
    fs::path data = home / "vantor";
};

/// Prepares and runs a program in a place, with a fault in one of its folders.
struct KeptRun {
    fs::path program;
    std::function<void(const KeptPlace&)> prepare;
    std::function<Words(const KeptPlace&)> arguments;
    const char* broken; ///< the folder; "" for all

    FaultRun Do(const KeptPlace& place, const Fault& fault, int at) const
    {
        const fs::path folder = *broken == '\0' ? place.folder.Path() : place.folder / broken;
        return RunWithFault(program, arguments(place), folder, fault, at, place.Environment());
    }

    using Judge = std::function<void(const KeptPlace&, const Fault&, const FaultRun&)>;

    /// Has each fault meet every call in turn; how often one did.
    int MeetAll(const std::vector<Fault>& faults, const Judge& judge) const
    {
        int met = 0;
        for (const Fault& fault : faults)
            for (int at = 1; !testing::Test::HasFailure(); ++at) {
                const KeptPlace place;
                prepare(place);
                const FaultRun run = Do(place, fault, at);
                SCOPED_TRACE(std::string(fault.name) + " at call " + std::to_string(at) +
                             (run.failed.empty() ? "" : ", " + run.failed.front()) + "\n" + run.result.out +
                             run.result.error);
                const bool isKilled = fault.Kills() && !run.failed.empty();
                EXPECT_EQ(run.result.exitCode == -1, isKilled);
                judge(place, fault, run);
                met += run.failed.empty() ? 0 : 1;
                if (static_cast<int>(run.calls.size()) < at)
                    break;
            }
        std::printf("%d faults\n", met);
        return met;
    }
};

bool Contains(const std::vector<Bytes>& contents, const std::optional<Bytes>& content)
{
    return content && std::find(contents.begin(), contents.end(), *content) != contents.end();
}

/// A library that could not be read was copied, and not merged.
std::optional<Bytes> CopyOfLibrary(const KeptPlace& place)
{
    return BytesIn(place.Disk("RecipeFile.Dat.bak"));
}

bool TellsOfVersion(const FaultRun& run)
{
    return run.result.error.find("No earlier version of file ") != std::string::npos;
}

/// A save of vantor-cli, while the home breaks.
struct VersionFaults : testing::TestWithParam<const char*> {
    const SavePath& path = CommandLineSavePath(GetParam());
    KeptRun save{path.Program(), path.prepare, path.arguments, "home"};
};

TEST_P(VersionFaults, FailNoSaveAndAreTold)
{
    const KeptPlace whole;
    path.prepare(whole);
    const auto old = BytesIn(whole.Disk(path.target));
    const FaultRun sound = save.Do(whole, AllFaults().front(), 0);
    ASSERT_EQ(sound.result.exitCode, 0) << sound.result.error;
    const auto fresh = BytesIn(whole.Disk(path.target));
    ASSERT_EQ(whole.VersionsOf(path.target), std::vector<Bytes>(1, old.value()));
    ASSERT_GT(sound.calls.size(), 5u) << "the shim is not there";
    const int met =
        save.MeetAll(FaultsOfAllKinds(), [&](const KeptPlace& place, const Fault& fault, const FaultRun& run) {
            const auto file = BytesIn(place.Disk(path.target));
            const auto versions = place.VersionsOf(path.target);
            EXPECT_TRUE(file == fresh || (run.result.exitCode == -1 && file == old));
            for (const Bytes& version : versions)
                EXPECT_EQ(version, old) << "torn";
            EXPECT_TRUE(file != fresh || !versions.empty() || TellsOfVersion(run)) << "neither kept nor told";
            EXPECT_TRUE(versions.empty() || !TellsOfVersion(run) || run.HasFailed("fsync") || run.HasFailed("unlink") ||
                        run.HasFailed("remove"))
                << "kept, and told otherwise";
            if (!fault.Kills())
                return;
            save.Do(place, fault, 0);
            EXPECT_LE(place.LeftOvers(path.target), 0) << "the next save clears up";
        });
    EXPECT_GT(met, 3 * static_cast<int>(sound.calls.size()));
}

INSTANTIATE_TEST_SUITE_P(CommandLine, VersionFaults,
                         testing::Values("RecipeInside", "RecipeReplaced", "Utf16Table", "PagedAcrossPages", "Library"),
                         [](const auto& path) { return std::string(path.param); });

/// The recipe cannot be read, or not be locked, while its version is made and others are looked for.
struct LookFaults : VersionFaults {};

TEST_P(LookFaults, SpoilNoSave)
{
    const KeptPlace whole;
    path.prepare(whole);
    const auto old = BytesIn(whole.Disk(path.target));
    save.broken = "disk";
    ASSERT_EQ(save.Do(whole, AllFaults().front(), 0).result.exitCode, 0);
    const auto fresh = BytesIn(whole.Disk(path.target));
    const std::vector<Fault> faults = {
        {"unreadable once", "read", EIO}, {"unreadable", "read", EIO, 0}, {"no lock", "lock", ENOLCK, 0}};
    save.MeetAll(faults, [&](const KeptPlace& place, const Fault& fault, const FaultRun& run) {
        const auto file = BytesIn(place.Disk(path.target));
        const auto versions = place.VersionsOf(path.target);
        const bool isLock = std::string_view(fault.kind) == "lock";
        EXPECT_TRUE(run.result.exitCode == 0 || !isLock);
        EXPECT_TRUE(file == (run.result.exitCode == 0 ? fresh : old));
        EXPECT_TRUE(run.result.exitCode == 0 || !run.result.error.empty());
        for (const Bytes& version : versions)
            EXPECT_EQ(version, old) << "torn";
        const bool isKept = !versions.empty() || CopyOfLibrary(place) == old;
        EXPECT_TRUE(file != fresh || isKept || TellsOfVersion(run)) << "neither kept nor told";
    });
}

INSTANTIATE_TEST_SUITE_P(CommandLine, LookFaults,
                         testing::Values("RecipeInside", "RecipeReplaced", "Utf16Table", "Library"),
                         [](const auto& path) { return std::string(path.param); });

/// Going back to a version, while all breaks.
TEST(RestoreFaults, LeaveTheFileOrTheVersionAndAreTold)
{
    const Bytes old(48, std::byte{0x31});
    const Bytes present(60, std::byte{0x32});
    const KeptRun restore{VANTOR_CLI_PROGRAM,
                          [&](const KeptPlace& place) {
                              WriteAll(place.Disk("a.rcp"), old);
                              ASSERT_TRUE(place.Versions().Keep(place.Disk("a.rcp"), u"Save").IsSafe());
                              WriteAll(place.Disk("a.rcp"), present);
                          },
                          [](const KeptPlace& place) {
                              return Words{"versions", "restore", place.Disk("a.rcp"), "2"};
                          },
                          ""};
    const int met =
        restore.MeetAll(FaultsOfAllKinds(), [&](const KeptPlace& place, const Fault& fault, const FaultRun& run) {
            const auto file = BytesIn(place.Disk("a.rcp"));
            const auto versions = place.VersionsOf("a.rcp");
            const bool isDone = run.result.exitCode == 0;
            EXPECT_TRUE(file == old || (!isDone && file == present));
            EXPECT_TRUE(isDone || fault.Kills() || !run.result.error.empty());
            EXPECT_TRUE(Contains(versions, old)) << "the version is gone";
            EXPECT_TRUE(file != old || Contains(versions, present) || TellsOfVersion(run)) << "neither kept nor told";
            for (const Bytes& version : versions)
                EXPECT_TRUE(version == old || version == present) << "torn";
        });
    EXPECT_GT(met, 50);
}

/// The document's edits, while the home breaks.
struct UnsavedFaults : testing::Test {
    static constexpr std::size_t kEdits = 4;

    static KeptRun Doing(const char* command, bool isLeft = false)
    {
        const auto arguments = [](const char* order, const KeptPlace& place) {
            return Words{order, place.Disk("a.rcp"), place.data.string()};
        };
        const auto prepare = [=](const KeptPlace& place) {
            WriteAll(place.Disk("a.rcp"), Bytes(48, std::byte{0}));
            if (isLeft)
                RunProcess(VANTOR_KEPT_WORK_PROGRAM, arguments("edit", place));
        };
        return {VANTOR_KEPT_WORK_PROGRAM, prepare, [=](const KeptPlace& place) { return arguments(command, place); },
                "home"};
    }

    /// How many of the edits, from the first on, the journals hold at most; each holds the right texts.
    static std::size_t EditsIn(const KeptPlace& place)
    {
        std::size_t most = 0;
        for (const UnsavedEntry& entry : CUnsavedStore(place.data).List()) {
            const auto work = CUnsavedStore(place.data).Read(entry.id);
            const auto cells = work ? work->cells : std::vector<UnsavedCell>();
            for (std::size_t i = 0; i < cells.size(); ++i) {
                EXPECT_EQ(cells[i].place.row, static_cast<std::int32_t>(i));
                EXPECT_EQ(cells[i].state.Text(), std::u16string(3, static_cast<char16_t>(u'1' + i)));
            }
            most = std::max(most, cells.size());
        }
        return most;
    }

    /// How many the program said were kept, the last time that it said anything; 0 when that was a loss.
    static std::size_t ToldIn(const FaultRun& run)
    {
        std::size_t told = 0;
        std::istringstream lines(run.result.out);
        for (std::string line; std::getline(lines, line);)
            if (line.starts_with("kept "))
                told = std::stoul(line.substr(5));
            else if (line.starts_with("lost "))
                told = 0;
        return told;
    }
};

TEST_F(UnsavedFaults, LoseNoEditThatCountsAsKept)
{
    const int met =
        Doing("edit").MeetAll(FaultsOfAllKinds(), [](const KeptPlace& place, const Fault&, const FaultRun& run) {
            EXPECT_LE(run.result.exitCode, 0);
            EXPECT_GE(EditsIn(place), ToldIn(run));
            if (run.failed.empty()) {
                EXPECT_EQ(EditsIn(place), kEdits);
            }
        });
    EXPECT_GT(met, 50);
}

TEST_F(UnsavedFaults, LoseNoEditThatIsDropped)
{
    Doing("drop").MeetAll(FaultsOfAllKinds(), [](const KeptPlace& place, const Fault&, const FaultRun& run) {
        EXPECT_LE(run.result.exitCode, 0);
        EXPECT_GE(EditsIn(place), ToldIn(run));
    });
}

TEST_F(UnsavedFaults, FailNoSave)
{
    const Bytes old(48, std::byte{0});
    Bytes fresh = old;
    const Bytes typed = WordBytes({111, 222, 333, 444});
    std::copy(typed.begin(), typed.end(), fresh.begin());
    Doing("save").MeetAll(FaultsOfAllKinds(), [&](const KeptPlace& place, const Fault& fault, const FaultRun& run) {
        EXPECT_LE(run.result.exitCode, 0);
        const auto file = BytesIn(place.Disk("a.rcp"));
        EXPECT_TRUE(file == fresh || (fault.Kills() && file == old));
        EXPECT_TRUE(file != old || EditsIn(place) >= ToldIn(run));
        const auto versions = place.VersionsOf("a.rcp");
        EXPECT_TRUE(file == old || Contains(versions, old) || TellsOfVersion(run));
        for (const Bytes& version : versions)
            EXPECT_EQ(version, old) << "torn";
    });
}

TEST_F(UnsavedFaults, LoseNoEditThatIsPutBack)
{
    const int met =
        Doing("claim", true).MeetAll(FaultsOfAllKinds(), [](const KeptPlace& place, const Fault&, const FaultRun& run) {
            EXPECT_LE(run.result.exitCode, 0);
            EXPECT_EQ(EditsIn(place), kEdits);
        });
    EXPECT_GT(met, 20);
}

/// Two programs that change one library, of which the disk breaks for the second.
TEST(MergeFaults, LoseNoFormatThatWasSaved)
{
    const KeptRun merge{
        VANTOR_KEPT_WORK_PROGRAM,
        [](const KeptPlace& place) { fs::copy_file(place.Aside("RecipeFile.Dat"), place.Disk("RecipeFile.Dat")); },
        [](const KeptPlace& place) {
            return Words{"merge", place.Disk("RecipeFile.Dat"), place.data.string()};
        },
        "disk"};
    const auto namesIn = [](const fs::path& path) {
        FormatLibrary library;
        EXPECT_EQ(library.loadReadOnly(path), static_cast<int>(fs::file_size(path))) << "not whole";
        std::vector<std::u16string> names;
        for (const auto& format : library.formats)
            names.emplace_back(TextOf(format->name));
        return names;
    };
    using Names = std::vector<std::u16string>;
    const Names theirs = {u"Row", u"Theirs"};
    const Names both = {u"Row", u"Theirs", u"Ours"};
    const int met =
        merge.MeetAll(FaultsOfAllKinds(), [&](const KeptPlace& place, const Fault& fault, const FaultRun& run) {
            const Names names = namesIn(place.Disk("RecipeFile.Dat"));
            if (CopyOfLibrary(place) && names == Names{u"Row", u"Ours"}) {
                EXPECT_EQ(namesIn(place.Disk("RecipeFile.Dat.bak")), theirs);
                EXPECT_STREQ(fault.kind, "read");
                return;
            }
            EXPECT_TRUE(names == both || (run.result.exitCode != 0 && names == theirs));
        });
    EXPECT_GT(met, 30);
}

} // namespace
