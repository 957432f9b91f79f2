#include "disk/FileLock.h"
#include "tests/document/DocumentFixture.h"

#include <thread>

// Other programs that write the open file.

namespace fs = std::filesystem;

using State = FileLook::State;

namespace {

constexpr CellPlace kTemp{1, 0};
constexpr CellPlace kNumber{0, 1};

/// Another program writes the file in place.
class OthersFile : public RecipeDocument {
protected:
    void WriteOther(std::size_t word, std::uint16_t value)
    {
        other[2 * word] = static_cast<std::byte>(value & 0xFF);
        other[2 * word + 1] = static_cast<std::byte>(value >> 8);
        CFile file(path, CFile::Mode::ReadWrite);
        EXPECT_TRUE(file.WriteAt(0, other));
    }

    SaveResult Write(ForeignRule rule) { return document.Write(FileType::Rcp, path, reporter, progress, rule); }

    Bytes other = words;
};

} // namespace

TEST_F(OthersFile, IsAsKnownWhileNobodyWritesTheCells)
{
    EXPECT_EQ(document.Look().state, State::AsKnown);
    other.resize(other.size() + 4, std::byte{1});
    WriteAll(path, other);
    EXPECT_EQ(document.Look().state, State::AsKnown) << "words outside the rows";
    Type(kNumber, u"5");
    EXPECT_TRUE(Save());
    EXPECT_EQ(document.Look().state, State::AsKnown) << "our own save";
    Type(kNumber, u"6");
    EXPECT_TRUE(document.WriteEdited(reporter, progress));
    EXPECT_EQ(document.Look().state, State::AsKnown) << "our own save of edited cells";
}

/// A file of the same size and time.
TEST_F(OthersFile, IsChangedWhereItHoldsOtherWords)
{
    const auto time = fs::last_write_time(path);
    WriteOther(2, 70);
    fs::last_write_time(path, time);
    const FileLook look = document.Look();
    ASSERT_EQ(look.state, State::Changed);
    EXPECT_EQ(look.changes->places, std::vector<CellPlace>{kNumber});
    EXPECT_EQ(look.changes->path, path);
}

TEST_F(OthersFile, IsChangedWhenItIsReplacedOrCut)
{
    WriteAll(folder / "new", WordBytes({0, 0, 1}));
    fs::rename(folder / "new", path);
    const FileLook look = document.Look();
    ASSERT_EQ(look.state, State::Changed);
    EXPECT_EQ(look.changes->places.size(), 6u);
}

TEST_F(OthersFile, IsGoneOrNoFileAnyMore)
{
    fs::remove(path);
    EXPECT_EQ(document.Look().state, State::Gone);
    fs::create_directory(path);
    EXPECT_EQ(document.Look().state, State::NoFile);
    fs::remove(path);
    WriteAll(path, words);
    EXPECT_EQ(document.Look().state, State::AsKnown) << "made again as it was";
}

TEST_F(OthersFile, IsNotLookedAtWhereThereAreNoRowsOfIt)
{
    document.StartNew();
    Read();
    EXPECT_EQ(document.Look().state, State::AsKnown);
    document.StartOpen(folder / "missing.erp", FileType::Erp);
    document.Read(FileType::Erp, reporter, progress);
    EXPECT_EQ(document.Look().state, State::AsKnown);
}

TEST_F(OthersFile, IsNotWrittenOverByASaveThatHoldsBack)
{
    Type(kTemp, u"3.5");
    WriteOther(2, 70);
    const SaveResult result = Write(ForeignRule::HoldBack);
    EXPECT_TRUE(result.isHeldBack);
    EXPECT_FALSE(result.isSaved);
    EXPECT_EQ(ReadAll(path), other);
    EXPECT_TRUE(document.Rows().IsEdited(kTemp.row, kTemp.column));
    EXPECT_TRUE(reporter.shown.empty());
    EXPECT_TRUE(Write(ForeignRule::HoldBack).isHeldBack) << "it stays so";
}

TEST_F(OthersFile, IsWrittenOverByASaveThatDoesNot)
{
    Type(kTemp, u"3.5");
    WriteOther(2, 70);
    EXPECT_TRUE(Write(ForeignRule::Overwrite));
    ASSERT_TRUE(document.LastSave().overwritten);
    EXPECT_EQ(document.LastSave().overwritten->places, std::vector<CellPlace>{kNumber});
    EXPECT_EQ(ReadAll(path)[4], std::byte{7});
    EXPECT_EQ(document.Look().state, State::AsKnown);
    EXPECT_TRUE(Write(ForeignRule::HoldBack)) << "nothing new";
    EXPECT_FALSE(document.LastSave().overwritten);
}

/// They are what the save stored as shown: the other's value can be had back.
TEST_F(OthersFile, HasItsWordsPutBackAfterASaveOverThem)
{
    Type(kTemp, u"3.5");
    WriteOther(2, 70);
    ASSERT_TRUE(Write(ForeignRule::Overwrite));
    ASSERT_TRUE(document.StoredAsShown());
    std::size_t count = 0;
    EXPECT_TRUE(document.PutBackStored(reporter, progress, count));
    EXPECT_GE(count, 1u);
    EXPECT_EQ(ReadAll(path)[4], std::byte{70});
}

TEST_F(OthersFile, KeepsItsWordsWhenOnlyOtherCellsAreSaved)
{
    Type(kTemp, u"3.5");
    WriteOther(2, 70);
    EXPECT_TRUE(document.WriteEdited(reporter, progress, ForeignRule::HoldBack));
    EXPECT_FALSE(document.LastSave().overwritten);
    EXPECT_EQ(ReadAll(path)[4], std::byte{70});
}

TEST_F(OthersFile, IsHeldBackFromASaveOfTheVeryCellsItChanged)
{
    Type(kNumber, u"5");
    WriteOther(2, 70);
    EXPECT_TRUE(document.WriteEdited(reporter, progress, ForeignRule::HoldBack).isHeldBack);
    EXPECT_EQ(ReadAll(path), other);
    EXPECT_TRUE(document.WriteEdited(reporter, progress, ForeignRule::Overwrite));
    EXPECT_EQ(ReadAll(path)[4], std::byte{5});
}

TEST_F(OthersFile, IsPlannedWithOnceWhatIsShownIsKept)
{
    WriteOther(2, 70);
    document.KeepShown(*document.Look().changes);
    EXPECT_EQ(document.Look().state, State::AsKnown);
    EXPECT_TRUE(document.WhyChanged(kNumber));
    EXPECT_EQ(document.OutlookOf(kNumber)->holds, u"70");
    EXPECT_TRUE(Write(ForeignRule::HoldBack)) << "the user knows of it";
    EXPECT_EQ(ReadAll(path)[4], std::byte{7});
}

TEST_F(OthersFile, IsWrittenAsStatedWhenItHasGone)
{
    fs::remove(path);
    EXPECT_TRUE(Write(ForeignRule::HoldBack));
    EXPECT_TRUE(fs::exists(path));
}

TEST_F(OthersFile, IsWaitedForWhileAnotherWritesIt)
{
    auto lock = std::make_unique<CFileLock>();
    ASSERT_EQ(lock->Take(path, std::chrono::seconds(0)), CFileLock::State::Held);
    std::jthread ending([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        WriteOther(2, 70);
        lock.reset();
    });
    EXPECT_TRUE(Write(ForeignRule::HoldBack).isHeldBack) << "what it wrote is seen";
}

TEST_F(OthersFile, IsHeldWhileItIsWritten)
{
    struct CWatch final : CProgress {
        explicit CWatch(const fs::path& file) : path(file) {}
        bool Advance(std::uint64_t, std::uint64_t) override
        {
            wasHeld = wasHeld && CFileLock().Take(path, std::chrono::seconds(0)) == CFileLock::State::Busy;
            ++calls;
            return true;
        }
        const fs::path& path;
        bool wasHeld = true;
        int calls = 0;
    } watch(path);
    EXPECT_TRUE(document.Write(FileType::Rcp, path, reporter, watch));
    EXPECT_GT(watch.calls, 0);
    EXPECT_TRUE(watch.wasHeld);
    EXPECT_EQ(CFileLock().Take(path, std::chrono::seconds(0)), CFileLock::State::Held) << "not any more";
}

TEST_F(OthersFile, IsHeldFromTheReadingOnWhenAskedFor)
{
    EXPECT_EQ(document.Hold(path), CFileLock::State::Held);
    EXPECT_EQ(CFileLock().Take(path, std::chrono::seconds(0)), CFileLock::State::Busy);
    EXPECT_EQ(Read(), CRecipeDocument::Reading::Done);
    EXPECT_TRUE(Write(ForeignRule::HoldBack));
    EXPECT_EQ(CFileLock().Take(path, std::chrono::seconds(0)), CFileLock::State::Held);
}

TEST_F(OthersFile, IsNotWaitedForAnyLongerWhenTheUserHasEnough)
{
    struct CEnough final : CProgress {
        bool Advance(std::uint64_t, std::uint64_t) override { return false; }
    } enough;
    CFileLock lock;
    ASSERT_EQ(lock.Take(path, std::chrono::seconds(0)), CFileLock::State::Held);
    EXPECT_TRUE(document.Write(FileType::Rcp, path, reporter, enough).isGivenUp);
    EXPECT_EQ(ReadAll(path), words);
}

/// "Save edited only" leaves the other's values, which the table still does not show: a plain save would write over
/// them.
TEST_F(OthersFile, IsStillHeldBackAfterASaveOfOtherCellsOnly)
{
    Type(kTemp, u"3.5");
    WriteOther(2, 70);
    ASSERT_TRUE(Write(ForeignRule::HoldBack).isHeldBack);
    ASSERT_TRUE(document.WriteEdited(reporter, progress, ForeignRule::Overwrite));
    EXPECT_TRUE(Write(ForeignRule::HoldBack).isHeldBack) << "nobody was asked about that value";
    EXPECT_EQ(ReadAll(path)[4], std::byte{70});
}

/// A save that wrote nothing leaves the other's values as unknown to the user as they were.
TEST_F(OthersFile, IsStillHeldBackAfterASaveThatWasGivenUp)
{
    struct CEnough final : CProgress {
        bool Advance(std::uint64_t, std::uint64_t) override { return false; }
    } enough;
    Type(kTemp, u"3.5");
    WriteOther(2, 70);
    ASSERT_FALSE(document.Write(FileType::Rcp, path, reporter, enough, ForeignRule::Overwrite));
    ASSERT_EQ(ReadAll(path), other);
    EXPECT_EQ(document.Look().state, State::Changed);
    EXPECT_TRUE(Write(ForeignRule::HoldBack).isHeldBack);
}

/// As on a share that goes and comes back: a failed save must not blind the window to what others write.
TEST_F(OthersFile, IsStillLookedAtAfterASaveThatFailedWhileItCouldNotBeRead)
{
    Type(kTemp, u"3.5");
    fs::remove(path);
    fs::create_directory(path);
    ASSERT_FALSE(Write(ForeignRule::HoldBack));
    fs::remove(path);
    other[4] = std::byte{70};
    WriteAll(path, other);
    EXPECT_EQ(document.Look().state, State::Changed);
    EXPECT_TRUE(Write(ForeignRule::HoldBack).isHeldBack);
    EXPECT_EQ(ReadAll(path)[4], std::byte{70});
}
