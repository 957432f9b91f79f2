#include "tests/faults/SavePath.h"
#include "tests/files/OrdinaryUser.h"
#include "tests/support/ProcessRun.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

constexpr const char* kRowsBeyondAll = "60000"; // of three words: more than the small disk holds

/// Saves of more words than there is room for: in place, as a whole, paged, merged.
std::vector<std::string> SaveTo(const SavePlace& place, const std::string& target)
{
    return {"convert", place.Aside("a.rcp"), target, "--library", place.Aside("RecipeFile.Dat"), "--start", "0",
            "--rows",  kRowsBeyondAll};
}

/// A disk of 128 KiB for this process and its children, and its own folder tree from then on.
class CSmallDisk {
public:
    explicit CSmallDisk(const fs::path& folder) : m_folder(folder)
    {
        m_isThere = unshare(CLONE_NEWNS) == 0 && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                    mount("tmpfs", folder.c_str(), "tmpfs", 0, "size=128k") == 0;
    }
    ~CSmallDisk()
    {
        if (m_isThere)
            umount2(m_folder.c_str(), MNT_DETACH);
    }
    CSmallDisk(const CSmallDisk&) = delete;
    CSmallDisk& operator=(const CSmallDisk&) = delete;

    bool IsThere() const { return m_isThere; }

    /// Leaves room for `pages` pages of 4 KiB.
    void FillUpTo(int pages) const
    {
        const Bytes page(4096, std::byte{1});
        const int file = open((m_folder / "filler").c_str(), O_WRONLY | O_CREAT, 0600);
        while (write(file, page.data(), page.size()) == 4096) {
        }
        EXPECT_EQ(ftruncate(file, lseek(file, 0, SEEK_END) - pages * 4096), 0);
        close(file);
    }

private:
    fs::path m_folder;
    bool m_isThere;
};

struct FullDisk : testing::TestWithParam<int> {
    SavePlace place;
};

TEST_P(FullDisk, LeavesEveryFileAsItWas)
{
    const CSmallDisk disk(place.folder / "disk");
    if (!disk.IsThere()) {
        std::printf("NOT RUN: this user or this machine may not mount a disk of 128 KiB\n");
        RecordProperty("notRun", "no mount");
        return;
    }
    const std::vector<std::string> names = {"a.rcp", "a.csv", "a.frp"};
    for (const std::string& name : names)
        WriteAll(place.Disk(name.c_str()), Bytes(10, std::byte{0x31}));
    disk.FillUpTo(GetParam());
    for (const std::string& name : names) {
        const ProcessResult result = RunProcess(VANTOR_CLI_PROGRAM, SaveTo(place, place.Disk(name.c_str())));
        EXPECT_EQ(result.exitCode, 1) << name;
        EXPECT_NE(result.error, "") << name;
        EXPECT_EQ(ReadAll(place.Disk(name.c_str())), Bytes(10, std::byte{0x31})) << name;
    }
    for (const char* name : {"n.rcp", "n.csv"}) {
        EXPECT_EQ(RunProcess(VANTOR_CLI_PROGRAM, SaveTo(place, place.Disk(name))).exitCode, 1) << name;
        EXPECT_FALSE(fs::exists(place.Disk(name))) << name;
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(place.folder / "disk"), fs::directory_iterator()), 4);
}

INSTANTIATE_TEST_SUITE_P(RoomInPages, FullDisk, testing::Values(0, 1, 5), testing::PrintToStringParamName());

/// The shell's limit, without which nobody tells the program that the signal is to be ignored.
TEST(FileSizeLimit, FailsTheSaveAndLeavesEveryFileAsItWas)
{
    const SavePlace place;
    for (const char* name : {"a.rcp", "a.csv", "a.frp"}) {
        WriteAll(place.Disk(name), Bytes(10, std::byte{0x31}));
        std::vector<std::string> arguments = SaveTo(place, place.Disk(name));
        arguments.insert(arguments.begin(), {"-c", "ulimit -f 16; exec \"$0\" \"$@\"", VANTOR_CLI_PROGRAM});
        const ProcessResult result = RunProcess("/bin/bash", arguments);
        EXPECT_EQ(result.exitCode, 1) << name;
        EXPECT_NE(result.error.find(name), std::string::npos) << result.error;
        EXPECT_EQ(ReadAll(place.Disk(name)), Bytes(10, std::byte{0x31})) << name;
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(place.folder / "disk"), fs::directory_iterator()), 3);
}

/// Every command that writes, for someone who may not.
struct ReadOnly : testing::TestWithParam<SavePath> {
    ReadOnly()
    {
        GetParam().prepare(place);
        const fs::perms toRead = static_cast<fs::perms>(0555);
        for (const auto& entry : fs::recursive_directory_iterator(place.folder.Path()))
            fs::permissions(entry, toRead);
        fs::permissions(place.folder.Path(), static_cast<fs::perms>(0755));
    }
    ~ReadOnly() override
    {
        for (const char* name : {"aside", "disk"}) // else they could not be emptied
            fs::permissions(place.folder / name, fs::perms::owner_all);
    }

    ProcessResult RunAsOrdinaryUser() const
    {
        const COrdinaryUser user;
        return RunProcess(VANTOR_CLI_PROGRAM, GetParam().arguments(place));
    }

    SavePlace place;
};

TEST_P(ReadOnly, FileIsRefusedAndToldOf)
{
    const fs::path target = place.Disk(GetParam().target);
    const auto old = BytesIn(target);
    const ProcessResult result = RunAsOrdinaryUser();
    EXPECT_EQ(result.exitCode, GetParam().failure);
    EXPECT_NE(result.error.find(GetParam().message), std::string::npos) << result.error;
    EXPECT_EQ(BytesIn(target), old);
}

TEST_P(ReadOnly, FolderTakesNoNewFileButTheOldOneMayBeWritten)
{
    const fs::path target = place.Disk(GetParam().target);
    const auto old = BytesIn(target);
    if (old)
        fs::permissions(target, fs::perms::all);
    const ProcessResult result = RunAsOrdinaryUser();
    const bool isWritten = old && !GetParam().makesCopy;
    EXPECT_EQ(result.exitCode, isWritten ? 0 : GetParam().failure) << result.error;
    EXPECT_EQ(BytesIn(target) == old, !isWritten);
    EXPECT_EQ(std::distance(fs::directory_iterator(place.folder / "disk"), fs::directory_iterator()), old ? 1 : 0);
}

INSTANTIATE_TEST_SUITE_P(CommandLine, ReadOnly, testing::ValuesIn(CommandLineSavePaths()),
                         [](const auto& path) { return std::string(path.param.name); });

} // namespace
