#include "recovery/Journal.h"
#include "recovery/JournalPlace.h"
#include "recovery/UnsavedChanges.h"
#include "recovery/UnsavedStore.h"
#include "tests/files/FileSizeLimit.h"
#include "tests/files/OrdinaryUser.h"
#include "tests/recovery/UnsavedSample.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <memory>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

struct PosixJournal : testing::Test {
    CJournal Begin() const
    {
        std::error_code fault;
        auto journal = CJournal::Begin(folder.Path(), SampleHeader(), fault);
        EXPECT_TRUE(journal) << fault.message();
        return *std::move(journal);
    }

    void Leave() const { EXPECT_TRUE(Begin().Append(std::vector{TextCell({0, 0}, u"1")})); }

    fs::path Unsaved() const { return UnsavedFolder(folder.Path()); }

    CTempFolder folder;
    CUnsavedStore store{folder.Path()};
};

/// Runs `work` in a process of its own, which says its answer and goes on until it is told to end.
class CProcess {
public:
    using Say = std::function<void(char)>;
    using Wait = std::function<void()>;

    explicit CProcess(const std::function<void(const Say&, const Wait&)>& work)
    {
        EXPECT_EQ(pipe(m_answer), 0);
        EXPECT_EQ(pipe(m_input), 0);
        m_id = fork();
        if (m_id != 0)
            return;
        work(
            [this](char answer) {
                if (write(m_answer[1], &answer, 1) != 1)
                    _exit(2);
            },
            [this] {
                char end = 0;
                if (read(m_input[0], &end, 1) < 0)
                    _exit(3);
            });
        _exit(0);
    }
    ~CProcess() { End(); }
    CProcess(const CProcess&) = delete;
    CProcess& operator=(const CProcess&) = delete;

    char Answer() const
    {
        char answer = 0;
        EXPECT_EQ(read(m_answer[0], &answer, 1), 1);
        return answer;
    }

    void End()
    {
        if (m_id <= 0)
            return;
        EXPECT_EQ(write(m_input[1], "e", 1), 1); // other processes may have that end, too
        for (const int end : {m_input[0], m_input[1], m_answer[0], m_answer[1]})
            close(end);
        int status = 0;
        EXPECT_EQ(waitpid(m_id, &status, 0), m_id);
        EXPECT_EQ(status, 0);
        m_id = 0;
    }

private:
    int m_answer[2] = {};
    int m_input[2] = {};
    pid_t m_id = 0;
};

} // namespace

TEST_F(PosixJournal, OfAProgramThatRunsIsNotClaimed)
{
    CProcess window([this](const CProcess::Say& say, const CProcess::Wait& wait) {
        CJournal journal = Begin();
        say(journal.Append(std::vector{TextCell({0, 0}, u"1")}) ? 'y' : 'n');
        wait();
    });
    ASSERT_EQ(window.Answer(), 'y');
    EXPECT_EQ(store.List().at(0).state, UnsavedState::Open);
    EXPECT_FALSE(store.ClaimOldest());
    window.End();
    EXPECT_EQ(store.List().at(0).state, UnsavedState::Left);
    EXPECT_TRUE(store.ClaimOldest());
}

/// However many ask at once, each gets another one, and none is left over.
TEST_F(PosixJournal, IsClaimedByOneProgramOnly)
{
    constexpr int kPrograms = 8;
    for (int i = 0; i < kPrograms; ++i)
        Leave();
    std::vector<std::unique_ptr<CProcess>> programs;
    for (int i = 0; i < kPrograms; ++i)
        programs.push_back(std::make_unique<CProcess>([this](const CProcess::Say& say, const CProcess::Wait& wait) {
            const auto claimed = store.ClaimOldest();
            say(claimed ? 'y' : 'n');
            wait();
        }));
    for (const auto& program : programs)
        EXPECT_EQ(program->Answer(), 'y');
    EXPECT_FALSE(store.ClaimOldest());
}

/// What cannot be written waits, and is written with what comes next.
TEST_F(PosixJournal, OfAFullDiskLosesNothingOnceThereIsRoom)
{
    CJournal journal = Begin();
    const fs::path path = OnlyJournal(Unsaved());
    EXPECT_TRUE(journal.Append(std::vector{TextCell({0, 0}, u"1")}));
    EXPECT_TRUE(journal.Flush());
    const auto size = fs::file_size(path);
    {
        const CFileSizeLimit full(size + 20);
        EXPECT_FALSE(journal.Append(std::vector{TextCell({0, 0}, u"2"), TextCell({0, 3}, u"a")}));
        EXPECT_EQ(journal.LastError(), std::errc::file_too_large);
        EXPECT_FALSE(journal.Append(std::vector{TextCell({1, 0}, u"3")}));
        EXPECT_FALSE(journal.IsFlushed());
        EXPECT_FALSE(journal.Flush());
        EXPECT_EQ(fs::file_size(path), size);
    }
    EXPECT_TRUE(journal.Append(std::vector{TextCell({0, 3}, u"b")}));
    const std::string id = JournalAt(path)->id;
    EXPECT_EQ(Told(store.Read(id)->cells),
              Told(std::vector{TextCell({0, 0}, u"2"), TextCell({0, 3}, u"b"), TextCell({1, 0}, u"3")}));
    {
        const CFileSizeLimit full(fs::file_size(path) + 20);
        EXPECT_FALSE(journal.Append(std::vector{TextCell({2, 0}, u"4")}));
    }
    EXPECT_TRUE(journal.Flush());
    EXPECT_EQ(store.Read(id)->cells.size(), 4u);
    EXPECT_FALSE(store.List().at(0).isDamaged);
}

TEST_F(PosixJournal, OfAFullDiskIsNotBegun)
{
    std::error_code fault;
    const CFileSizeLimit full(100);
    EXPECT_FALSE(CJournal::Begin(folder.Path(), SampleHeader(), fault));
    EXPECT_EQ(fault, std::errc::file_too_large);
    EXPECT_TRUE(fs::is_empty(Unsaved()));
}

TEST_F(PosixJournal, InAFolderThatMayOnlyBeReadIsNotBegun)
{
    MakeReadOnly(folder.Path());
    std::error_code fault;
    {
        const COrdinaryUser user;
        EXPECT_FALSE(CJournal::Begin(folder.Path(), SampleHeader(), fault));
    }
    EXPECT_EQ(fault, std::errc::permission_denied);
    EXPECT_TRUE(fs::is_empty(folder.Path()));
}

TEST_F(PosixJournal, OfAnotherUserIsNotOffered)
{
    Leave();
    const fs::path path = OnlyJournal(Unsaved());
    for (const fs::path& open : {folder.Path(), Unsaved(), path})
        fs::permissions(open, fs::perms::all);
    if (geteuid() != 0) {
        std::printf("NOT RUN: this user cannot become another\n");
        RecordProperty("notRun", "not the administrator");
        return;
    }
    const COrdinaryUser user;
    EXPECT_TRUE(store.List().empty());
    EXPECT_FALSE(store.ClaimOldest());
    EXPECT_FALSE(store.Read(JournalAt(path)->id));
    EXPECT_EQ(store.Remove(JournalAt(path)->id), CUnsavedStore::Result::Missing);
    EXPECT_TRUE(fs::exists(path));
}

TEST_F(PosixJournal, IsNoLinkAndNoPipe)
{
    Leave();
    const fs::path path = OnlyJournal(Unsaved());
    const fs::path elsewhere = folder / path.filename();
    fs::rename(path, elsewhere);
    fs::create_symlink(elsewhere, path);
    ASSERT_EQ(mkfifo((Unsaved() / "20261102T000000.000Z-00000001.jsonl").c_str(), 0600), 0);
    EXPECT_TRUE(store.List().empty());
    EXPECT_FALSE(store.ClaimOldest());
    store.RemoveOldDropped(UtcNow());
    EXPECT_TRUE(fs::exists(elsewhere));
    EXPECT_TRUE(fs::is_symlink(path));
}

TEST_F(PosixJournal, ThatCannotBeRemovedHoldsNothingAnyMore)
{
    CJournal journal = Begin();
    EXPECT_TRUE(journal.Append(std::vector{TextCell({0, 0}, u"2")}));
    for (const fs::path& shown : {folder.Path(), Unsaved()})
        fs::permissions(shown, fs::perms(0555));
    {
        const COrdinaryUser user;
        journal.End();
    }
    EXPECT_EQ(store.List().at(0).edits, 0u);
    EXPECT_FALSE(store.List().at(0).isDamaged);
}

TEST_F(PosixJournal, IsForTheUserAlone)
{
    const CJournal journal = Begin();
    EXPECT_EQ(fs::status(Unsaved()).permissions(), fs::perms::owner_all);
    EXPECT_EQ(fs::status(OnlyJournal(Unsaved())).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(PosixJournal, KeepsAnyName)
{
    for (const char* name :
         {"a.rcp", "/r/\xC3\x96\xE2\x82\xAC \"x\"\\\n.rcp", "/r/\xFF\xC3.rcp", "/r/\xED\xA0\x80.rcp"}) {
        WorkHeader header = SampleHeader();
        header.file = name;
        std::error_code fault;
        auto journal = CJournal::Begin(folder.Path(), header, fault);
        const auto entries = store.List();
        ASSERT_EQ(entries.size(), 1u);
        EXPECT_EQ(entries[0].header.value().file.native(), name);
        journal->End();
    }
}

TEST_F(PosixJournal, OfAFileWhoseNameIsNoTextHasAHeader)
{
    UnsavedWork work{SampleHeader(), {}, {}};
    work.header.file = "/r/\xFF.rcp";
    EXPECT_EQ(CUnsavedChanges(work).Header().file, u"\xFFFD.rcp");
}
