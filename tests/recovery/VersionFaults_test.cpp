#include "recovery/VersionRestore.h"
#include "tests/files/FileSizeLimit.h"
#include "tests/files/OrdinaryUser.h"
#include "tests/recovery/VersionTest.h"
#include "tests/support/RecordingReporter.h"

#include <algorithm>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

using VersionFaults = VersionTest;

constexpr auto kAllMayWrite = fs::perms::all;

TEST_F(VersionFaults, NothingIsKeptInAReadOnlyHome)
{
    fs::create_directory(data);
    MakeReadOnly(data);
    fs::permissions(folder.Path(), fs::perms::others_exec | fs::perms::others_read, fs::perm_options::add);
    const COrdinaryUser user;
    const VersionKept kept = store.Keep(recipe, u"Save");
    EXPECT_EQ(kept.result, Result::Failed);
    EXPECT_EQ(kept.reason, u"Permission denied");
    EXPECT_TRUE(NamesIn(data).empty());
}

TEST_F(VersionFaults, NothingIsKeptInAnothersFolder)
{
    fs::permissions(folder.Path(), kAllMayWrite);
    fs::create_directories(Versions());
    fs::permissions(data, kAllMayWrite);
    fs::permissions(Versions(), kAllMayWrite);
    const COrdinaryUser user;
    const VersionKept kept = store.Keep(recipe, u"Save");
    EXPECT_EQ(kept.result, Result::Failed);
    const std::u16string reason = u"The folder " + Versions().u16string() + u" is another user's";
    EXPECT_EQ(kept.reason, reason);
    EXPECT_TRUE(NamesIn(Versions()).empty());
}

/// Another user may have put it there.
TEST_F(VersionFaults, AnothersCopyIsNotRestored)
{
    const std::string stamp = KeepAndWrite(recipe, WordBytes({4}));
    fs::permissions(folder.Path(), kAllMayWrite);
    for (const fs::path& path : {data, Versions(), OnlyFolder()})
        fs::permissions(path, kAllMayWrite);
    const fs::path copy = store.PathOf(recipe, store.List(recipe).at(0));
    fs::permissions(copy, kAllMayWrite);
    fs::permissions(recipe, kAllMayWrite);
    const COrdinaryUser user;
    CRecordingReporter reporter;
    EXPECT_FALSE(RestoreVersion(store, recipe, stamp, reporter));
    EXPECT_EQ(reporter.shown.size(), 1U);
    EXPECT_EQ(ReadAll(recipe), WordBytes({4}));
}

TEST_F(VersionFaults, ACopyThatIsALinkIsNoVersion)
{
    const std::string stamp = KeepAndWrite(recipe, WordBytes({4}));
    const fs::path copy = store.PathOf(recipe, store.List(recipe).at(0));
    fs::remove(copy);
    WriteAll(folder / "secret", WordBytes({7}));
    fs::create_symlink(folder / "secret", copy);
    EXPECT_TRUE(store.List(recipe).empty());
    CRecordingReporter reporter;
    EXPECT_FALSE(RestoreVersion(store, recipe, stamp, reporter));
}

TEST_F(VersionFaults, AFullDiskLeavesNothingHalf)
{
    EXPECT_EQ(Keep(recipe), Result::Kept);
    const auto before = NamesIn(OnlyFolder());
    WriteAll(recipe, Bytes(100000));
    {
        const CFileSizeLimit limit(50000);
        const VersionKept kept = store.Keep(recipe, u"Save");
        EXPECT_EQ(kept.result, Result::Failed);
        EXPECT_EQ(kept.reason, u"File too large");
    }
    EXPECT_EQ(NamesIn(OnlyFolder()), before);
}

/// Not even room for the note.
TEST_F(VersionFaults, AFullDiskTakesNoNoteEither)
{
    {
        const CFileSizeLimit limit(0);
        EXPECT_EQ(Keep(recipe), Result::Failed);
    }
    EXPECT_TRUE(NamesIn(OnlyFolder()).empty());
}

TEST_F(VersionFaults, AFileThatMayNotBeReadIsToldOf)
{
    MakeReadOnly(recipe);
    fs::permissions(recipe, fs::perms::none);
    fs::permissions(folder.Path(), kAllMayWrite);
    const COrdinaryUser user;
    const VersionKept kept = store.Keep(recipe, u"Save");
    EXPECT_EQ(kept.result, Result::Failed);
    EXPECT_EQ(kept.reason, u"Permission denied");
}

/// Each of some programs keeps versions of one file as often as it can; `content` is the first word of a program.
void KeepAllAtOnce(const CVersionStore& store, const fs::path& file, const fs::path& folder, int programs, int times)
{
    std::vector<pid_t> children;
    for (int program = 0; program < programs; ++program) {
        const pid_t child = fork();
        if (child == 0) {
            bool isDone = true;
            const fs::path own = folder / ("own" + std::to_string(program));
            for (int i = 0; i < times; ++i) {
                WriteAll(own, WordBytes({static_cast<std::uint16_t>(program), static_cast<std::uint16_t>(i)}));
                fs::rename(own, file); // so that each version is whole
                const auto result = store.Keep(file, u"Save").result;
                isDone = isDone && (result == VersionKept::Result::Kept || result == VersionKept::Result::Same);
            }
            _exit(isDone ? 0 : 1);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = 1;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
}

TEST_F(VersionFaults, ProgramsThatKeepVersionsAtOnceLoseNone)
{
    KeepAllAtOnce(store, recipe, folder.Path(), 2, 20);
    const auto versions = store.List(recipe);
    EXPECT_GE(versions.size(), 20U); // where both found the bytes of one of them, there is one copy of it or two
    EXPECT_LE(versions.size(), 40U);
    for (const Version& version : versions) {
        EXPECT_EQ(Content(recipe, version).size(), 4U);
        EXPECT_EQ(version.command, u"Save");
    }
    EXPECT_EQ(Content(recipe, versions.front()), ReadAll(recipe));
    EXPECT_EQ(NamesIn(OnlyFolder()).size(), 2 * versions.size()); // and nothing half
}

/// More than stay: what one removes, the other may have been about to.
TEST_F(VersionFaults, ProgramsThatRemoveVersionsAtOnceDoNoHarm)
{
    KeepAllAtOnce(store, recipe, folder.Path(), 3, 50);
    const auto versions = store.List(recipe);
    EXPECT_GE(versions.size(), 50U);
    EXPECT_EQ(NamesIn(OnlyFolder()).size(), 2 * versions.size());
}

} // namespace
