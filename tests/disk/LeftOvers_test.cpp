#include "disk/Replacement.h"
#include "disk/TemporaryFile.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <set>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace fs = std::filesystem;

namespace {

/// A program of its own that begins to replace a file and stays in the middle of it until it is ended.
class CWritingProgram {
public:
    explicit CWritingProgram(const fs::path& path)
    {
        int ready[2];
        EXPECT_EQ(pipe(ready), 0);
        m_pid = fork();
        if (m_pid == 0) {
            CReplacement file(path);
            const bool isWritten = file.Append(BytesOf({7, 7, 7}));
            const char answer = isWritten ? 'y' : 'n';
            while (write(ready[1], &answer, 1) != 1) {
            }
            for (;;)
                pause();
        }
        char answer = 'n';
        EXPECT_EQ(read(ready[0], &answer, 1), 1);
        EXPECT_EQ(answer, 'y');
        close(ready[0]);
        close(ready[1]);
    }
    ~CWritingProgram() { Kill(); }
    CWritingProgram(const CWritingProgram&) = delete;
    CWritingProgram& operator=(const CWritingProgram&) = delete;

    /// As a power failure would, or the user: it has no chance to clean up.
    void Kill()
    {
        if (m_pid <= 0)
            return;
        kill(m_pid, SIGKILL);
        waitpid(m_pid, nullptr, 0);
        m_pid = 0;
    }

private:
    pid_t m_pid = 0;
};

struct LeftOvers : testing::Test {
    LeftOvers() { WriteAll(path, old); }

    std::set<std::string> Names() const
    {
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder.Path()))
            names.insert(entry.path().filename().string());
        return names;
    }

    std::size_t TemporaryFiles() const
    {
        const auto names = Names();
        return static_cast<std::size_t>(
            std::count_if(names.begin(), names.end(), [](const auto& name) { return name.ends_with(".new"); }));
    }

    void MakeLeftOver() const { CWritingProgram(path).Kill(); }

    CTempFolder folder;
    fs::path path = folder / "a";
    const Bytes old = BytesOf({1, 2, 3});
    using Set = std::set<std::string>;
};

} // namespace

TEST_F(LeftOvers, OfAProgramThatWasKilledAreRemoved)
{
    MakeLeftOver();
    MakeLeftOver();
    EXPECT_GT(TemporaryFiles(), 0u);
    RemoveLeftOvers(folder.Path());
    EXPECT_EQ(Names(), Set{"a"});
    EXPECT_EQ(ReadAll(path), old);
}

TEST_F(LeftOvers, AreRemovedByTheNextReplacementInTheFolder)
{
    MakeLeftOver();
    ASSERT_EQ(TemporaryFiles(), 1u);
    {
        CReplacement file(folder / "b");
        EXPECT_EQ(TemporaryFiles(), 1u) << "its own";
    }
    EXPECT_EQ(Names(), Set{"a"});
}

TEST_F(LeftOvers, AreNotThoseThatAreBeingWritten)
{
    CWritingProgram other(path);
    CReplacement file(folder / "b");
    EXPECT_TRUE(file.Append(BytesOf({4})));
    RemoveLeftOvers(folder.Path());
    EXPECT_EQ(TemporaryFiles(), 2u);
    EXPECT_TRUE(file.Finish());
    EXPECT_EQ(ReadAll(folder / "b"), BytesOf({4}));
    EXPECT_EQ(TemporaryFiles(), 1u);
    other.Kill();
    RemoveLeftOvers(folder.Path());
    EXPECT_EQ(TemporaryFiles(), 0u);
}

TEST_F(LeftOvers, AreOnlyFilesOfTheirName)
{
    const Set names{"vantor-.new",   "vantor-1a.new", "vantor-12.kept", "vantor--1.new", "vantor-12.new.bak",
                    "Vantor-12.new", "antor-12.new",  "vantor-12new",   "vantor-12",     "1.new"};
    for (const auto& name : names)
        WriteAll(folder / name, old);
    WriteAll(folder / "vantor-12.new", old);
    RemoveLeftOvers(folder.Path());
    Set left = names;
    left.insert("a");
    EXPECT_EQ(Names(), left);
}

TEST_F(LeftOvers, AreNoFoldersLinksOrPipes)
{
    fs::create_directory(folder / "vantor-1.new");
    fs::create_symlink("a", folder / "vantor-2.new");
    fs::create_symlink("missing", folder / "vantor-3.new");
    ASSERT_EQ(mkfifo((folder / "vantor-4.new").c_str(), 0600), 0);
    RemoveLeftOvers(folder.Path());
    EXPECT_EQ(Names(), (Set{"a", "vantor-1.new", "vantor-2.new", "vantor-3.new", "vantor-4.new"}));
    EXPECT_EQ(ReadAll(path), old);
}

TEST_F(LeftOvers, AreNotThoseOfAnotherUser)
{
    constexpr uid_t kOther = 65534;
    if (geteuid() != 0) {
        std::printf("NOT RUN: this user may give no file away\n");
        RecordProperty("notRun", "not the administrator");
        return;
    }
    MakeLeftOver();
    for (const auto& name : Names())
        ASSERT_EQ(chown((folder / name).c_str(), kOther, kOther), 0);
    RemoveLeftOvers(folder.Path());
    EXPECT_EQ(TemporaryFiles(), 1u);
}

TEST_F(LeftOvers, OfAFolderThatIsNotThereAreNone)
{
    RemoveLeftOvers(folder / "missing");
    RemoveLeftOvers(path);
    RemoveLeftOvers({});
    EXPECT_EQ(Names(), Set{"a"});
}

/// Many programs that save into one folder, each cleaning up first: none loses what it writes.
TEST_F(LeftOvers, OfManyProgramsAtOnceAreToldFromWhatTheyWrite)
{
    constexpr int kPrograms = 4;
    constexpr int kSaves = 100;
    std::vector<pid_t> programs;
    for (int i = 0; i < kPrograms; ++i) {
        const pid_t pid = fork();
        if (pid == 0) {
            int failures = 0;
            for (int save = 0; save < kSaves; ++save) {
                CReplacement file(folder / std::to_string(i));
                failures += file.Append(BytesOf({save})) && file.Finish() ? 0 : 1;
            }
            _exit(failures == 0 ? 0 : 1);
        }
        programs.push_back(pid);
    }
    for (const pid_t pid : programs) {
        int status = -1;
        ASSERT_EQ(waitpid(pid, &status, 0), pid);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }
    EXPECT_EQ(Names(), (Set{"0", "1", "2", "3", "a"}));
}

TEST_F(LeftOvers, AreNoWholeFilesThatWereKept)
{
    EXPECT_EQ(KeptName("folder/vantor-12.new"), "folder/vantor-12.kept");
    const fs::path kept = KeptName(folder / TemporaryName());
    WriteAll(kept, old);
    RemoveLeftOvers(folder.Path());
    EXPECT_TRUE(fs::exists(kept));
}
