#include "library/FormatStore.h"
#include "library/LibraryLock.h"
#include "tests/files/OrdinaryUser.h"
#include "tests/library/FormatTexts.h"
#include "tests/support/TestFiles.h"
#include "tests/support/Variable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <set>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace fs = std::filesystem;

namespace {

struct LibraryLock : testing::Test {
    /// Whether another program gets the lock.
    bool IsFree() const
    {
        const pid_t pid = fork();
        if (pid == 0) {
            const bool isFree = CLibraryLock(library).IsHeld();
            _exit(isFree ? 0 : 1);
        }
        int status = -1;
        waitpid(pid, &status, 0);
        return WIFEXITED(status) && WEXITSTATUS(status) == 0;
    }

    const CTempFolder folder;
    const fs::path library = folder / "RecipeFile.Dat";
    const fs::path file = folder / "RecipeFile.Dat.lock";
};

constexpr int kKept = 3; ///< formats of each program at the end

std::u16string NameOf(char16_t program, int number)
{
    return {program, static_cast<char16_t>(0x4E00 + number)};
}

std::set<std::u16string> NamesIn(const FormatLibrary& library)
{
    std::set<std::u16string> names;
    for (const auto& format : library.formats)
        names.emplace(TextOf(format->name));
    return names;
}

/// Has temporary folders lie in memory, where the system has a place for that: a disk may take longer for one save than
/// a program waits for another's.
class CFoldersInMemory {
public:
    CFoldersInMemory()
    {
        if (access(kMemory, W_OK) == 0)
            m_variable.emplace("TMPDIR", kMemory);
    }

private:
    static constexpr const char* kMemory = "/dev/shm";
    std::optional<CVariable> m_variable;
};

/// A program that adds a format of its own at each save and removes an old one. Ends with 0 when all saves went and
/// each kept what the others before it had left.
void AddFormats(const fs::path& library, char16_t program, int saves)
{
    CFormatStore store(library);
    std::set<std::u16string> own;
    for (int number = 0; number < saves; ++number) {
        own.insert(NameOf(program, number));
        store.AppendFormat(NumberedFormat(NameOf(program, number), 1));
        if (number >= kKept) {
            own.erase(NameOf(program, number - kKept));
            const auto& formats = store.Library().formats;
            const auto old = std::find_if(formats.begin(), formats.end(), [&](const auto& format) {
                return TextOf(format->name) == NameOf(program, number - kKept);
            });
            store.RemoveFormat(static_cast<std::size_t>(old - formats.begin()));
        }
        const bool isSaved = store.Save();
        const std::set<std::u16string> all = NamesIn(store.Library());
        if (!isSaved || !std::includes(all.begin(), all.end(), own.begin(), own.end()))
            _exit(1);
    }
    _exit(0);
}

} // namespace

TEST_F(LibraryLock, IsHeldByOneAtATimeAndLeavesNothing)
{
    {
        const CLibraryLock lock(library);
        EXPECT_TRUE(lock.IsHeld());
        EXPECT_TRUE(fs::is_empty(file));
        EXPECT_FALSE(IsFree());
        EXPECT_FALSE(CLibraryLock(library).IsHeld());
        EXPECT_TRUE(fs::exists(file)) << "whoever did not get it leaves it alone";
    }
    EXPECT_FALSE(fs::exists(file));
    EXPECT_TRUE(IsFree());
}

TEST_F(LibraryLock, ThatAKilledProgramLeftIsTakenOver)
{
    WriteAll(file, {});
    EXPECT_TRUE(IsFree());
    EXPECT_FALSE(fs::exists(file));
}

TEST_F(LibraryLock, MayBeTakenByWhoeverMayUseTheLibrary)
{
    const mode_t mask = umask(0077);
    WriteAll(library, {});
    fs::permissions(library, fs::perms(0664));
    {
        const CLibraryLock lock(library);
        EXPECT_EQ(fs::status(file).permissions(), fs::perms(0664));
    }
    umask(mask);
}

TEST_F(LibraryLock, OfAnotherUserIsTakenByWhoMayReadIt)
{
    WriteAll(file, {});
    fs::permissions(file, fs::perms(0444));
    fs::permissions(folder.Path(), fs::perms(0555));
    {
        const COrdinaryUser user;
        EXPECT_TRUE(CLibraryLock(library).IsHeld());
    }
    EXPECT_TRUE(fs::exists(file)) << "it could not be removed";
    fs::permissions(folder.Path(), fs::perms::all);
}

TEST_F(LibraryLock, IsNoOtherKindOfFile)
{
    ASSERT_EQ(mkfifo(file.c_str(), 0666), 0);
    EXPECT_FALSE(CLibraryLock(library).IsHeld());
    fs::remove(file);
    fs::create_symlink("nowhere", file);
    EXPECT_FALSE(CLibraryLock(library).IsHeld());
    EXPECT_TRUE(fs::is_symlink(file));
    EXPECT_FALSE(fs::exists(folder / "nowhere"));
}

TEST_F(LibraryLock, IsNotMadeWithoutAFolder)
{
    EXPECT_FALSE(CLibraryLock(folder / "none" / "RecipeFile.Dat").IsHeld());
    EXPECT_FALSE(fs::exists(folder / "none"));
}

/// Two programs that save again and again, with nothing between: none loses a format, none writes into the other's.
TEST(LibraryLockInMemory, KeepsTwoProgramsFromLosingFormats)
{
    const CFoldersInMemory inMemory;
    const CTempFolder folder;
    const fs::path library = folder / "RecipeFile.Dat";
    constexpr int kSaves = 1000; // of each
    constexpr std::u16string_view kPrograms = u"AB";
    std::vector<pid_t> programs;
    for (const char16_t name : kPrograms) {
        const pid_t pid = fork();
        if (pid == 0)
            AddFormats(library, name, kSaves);
        programs.push_back(pid);
    }
    for (const pid_t pid : programs) {
        int status = -1;
        ASSERT_EQ(waitpid(pid, &status, 0), pid);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }
    FormatLibrary stored;
    ASSERT_GT(stored.loadReadOnly(library), 0);
    std::set<std::u16string> expected{u"TestDataFormat"};
    for (const char16_t name : kPrograms)
        for (int number = kSaves - kKept; number < kSaves; ++number)
            expected.insert(NameOf(name, number));
    EXPECT_EQ(NamesIn(stored), expected);
    EXPECT_EQ(stored.formats.size(), expected.size());
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path()), fs::directory_iterator()), 1)
        << "and leaves nothing";
}
