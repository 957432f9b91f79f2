#include "disk/File.h"
#include "tests/files/FileSizeLimit.h"
#include "tests/files/OrdinaryUser.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <array>
#include <fcntl.h>
#include <limits>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

using Mode = CFile::Mode;

struct OpenCase {
    const char* name;
    Mode mode;
    bool opensMissing;
    bool keepsContent;
    bool writes;
    friend void PrintTo(const OpenCase& c, std::ostream* out) { *out << c.name; }
};

struct OpenMode : testing::TestWithParam<OpenCase> {
    CTempFolder folder;
};

TEST_P(OpenMode, TreatsAMissingFile)
{
    const fs::path path = folder / "missing.rcp";
    CFile file;
    EXPECT_EQ(file.Open(path, GetParam().mode), GetParam().opensMissing);
    EXPECT_EQ(file.IsOpen(), GetParam().opensMissing);
    EXPECT_EQ(fs::exists(path), GetParam().opensMissing);
    EXPECT_EQ(file.Size().has_value(), GetParam().opensMissing);
    EXPECT_EQ(file.Size().value_or(0), 0u);
}

TEST_P(OpenMode, TreatsAnExistingFile)
{
    const fs::path path = folder / "a.rcp";
    WriteAll(path, BytesOf({1, 2, 3}));
    CFile file(path, GetParam().mode);
    ASSERT_TRUE(file.IsOpen());
    EXPECT_EQ(file.Size(), GetParam().keepsContent ? 3u : 0u);
    EXPECT_EQ(file.WriteAt(0, BytesOf({9})), GetParam().writes);
    EXPECT_TRUE(file.Close());
    const Bytes kept = GetParam().writes ? BytesOf({9, 2, 3}) : BytesOf({1, 2, 3});
    EXPECT_EQ(ReadAll(path), GetParam().keepsContent ? kept : BytesOf({9}));
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, OpenMode, testing::Values(
    //        name            mode                opensMissing  keepsContent  writes
    OpenCase{"Read",          Mode::Read,         false,        true,         false},
    OpenCase{"ReadWrite",     Mode::ReadWrite,    false,        true,         true},
    OpenCase{"OpenOrCreate",  Mode::OpenOrCreate, true,         true,         true},
    OpenCase{"Truncate",      Mode::Truncate,     true,         false,        true}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

/// Every mode refuses what is no regular file, at once and without a trace.
struct NoRegularFile : testing::TestWithParam<Mode> {
    void ExpectRefused(const fs::path& path) const
    {
        CFile file;
        EXPECT_FALSE(file.Open(path, GetParam())) << path;
        EXPECT_FALSE(file.IsOpen());
        EXPECT_FALSE(file.Size());
    }
    CTempFolder folder;
};

TEST_P(NoRegularFile, FolderIsRefused)
{
    ExpectRefused(folder.Path());
}

TEST_P(NoRegularFile, FileInAMissingFolderIsRefused)
{
    ExpectRefused(folder / "missing" / "a.rcp");
}

TEST_P(NoRegularFile, FileBelowAFileIsRefused)
{
    WriteAll(folder / "a.rcp", BytesOf({1}));
    ExpectRefused(folder / "a.rcp" / "b.rcp");
}

TEST_P(NoRegularFile, PipeIsRefusedAndDoesNotHang)
{
    const fs::path pipe = folder / "pipe.rcp";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    ExpectRefused(pipe);
}

TEST_P(NoRegularFile, DevicesAreRefused)
{
    for (const char* device : {"/dev/null", "/dev/zero", "/dev/full"})
        ExpectRefused(device);
}

TEST_P(NoRegularFile, EmptyPathIsRefused)
{
    ExpectRefused({});
}

TEST_P(NoRegularFile, NameWithAZeroIsRefusedWhole)
{
    WriteAll(folder / "a.rcp", BytesOf({1, 2}));
    ExpectRefused(folder / std::string("a.rcp\0.txt", 10));
    EXPECT_EQ(ReadAll(folder / "a.rcp"), BytesOf({1, 2}));
}

std::string ModeName(const testing::TestParamInfo<Mode>& mode)
{
    constexpr std::array kNames = {"Read", "ReadWrite", "OpenOrCreate", "Truncate", "CreateNew"};
    return kNames[static_cast<std::size_t>(mode.param)];
}

INSTANTIATE_TEST_SUITE_P(Modes, NoRegularFile,
                         testing::Values(Mode::Read, Mode::ReadWrite, Mode::OpenOrCreate, Mode::Truncate,
                                         Mode::CreateNew),
                         ModeName);

TEST(File, DanglingLinkCannotBeRead)
{
    const CTempFolder folder;
    fs::create_symlink(folder / "missing", folder / "link.rcp");
    EXPECT_FALSE(CFile(folder / "link.rcp", Mode::Read).IsOpen());
}

TEST(File, LongPathOpens)
{
    const CTempFolder folder;
    fs::path path = folder.Path();
    for (int i = 0; i < 8; ++i)
        path /= std::string(200, static_cast<char>('a' + i));
    fs::create_directories(path);
    EXPECT_TRUE(CFile(path / "long.rcp", Mode::OpenOrCreate).IsOpen());
    EXPECT_TRUE(fs::exists(path / "long.rcp"));
}

TEST(File, ReadsFromAnOffsetUpToTheEnd)
{
    const CTempFolder folder;
    WriteAll(folder / "a", BytesOf({1, 2, 3, 4}));
    const CFile file(folder / "a", Mode::Read);
    Bytes bytes(3, std::byte{0xEE});

    EXPECT_EQ(file.ReadAt(1, bytes), 3u);
    EXPECT_EQ(bytes, BytesOf({2, 3, 4}));
    EXPECT_EQ(file.ReadAt(3, bytes), 1u);
    EXPECT_EQ(bytes, BytesOf({4, 3, 4}));
    EXPECT_EQ(file.ReadAt(4, bytes), 0u);
    EXPECT_EQ(file.ReadAt(std::uint64_t{1} << 40, bytes), 0u);
    EXPECT_EQ(bytes, BytesOf({4, 3, 4}));
}

TEST(File, OffsetBeyondEveryFileFails)
{
    constexpr auto kFarthest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    const CTempFolder folder;
    CFile file(folder / "a", Mode::OpenOrCreate);
    Bytes bytes(2);
    EXPECT_FALSE(file.ReadAt(kFarthest + 1, bytes));
    EXPECT_FALSE(file.ReadAt(kFarthest - 1, bytes));
    EXPECT_FALSE(file.WriteAt(std::numeric_limits<std::uint64_t>::max(), bytes));
    EXPECT_FALSE(file.WriteAt(kFarthest - 1, bytes));
    EXPECT_EQ(file.Size(), 0u);
}

TEST(File, GapBeforeAWriteReadsAsZeros)
{
    const CTempFolder folder;
    CFile file(folder / "a", Mode::OpenOrCreate);
    EXPECT_TRUE(file.WriteAt(3, BytesOf({7, 8})));
    EXPECT_TRUE(file.Close());
    EXPECT_EQ(ReadAll(folder / "a"), BytesOf({0, 0, 0, 7, 8}));
}

TEST(File, WritesAndReadsBeyondFourGigabytes)
{
    const CTempFolder folder;
    constexpr std::uint64_t kFar = (std::uint64_t{5} << 30) + 1;
    CFile file(folder / "a", Mode::OpenOrCreate);
    ASSERT_TRUE(file.WriteAt(kFar, BytesOf({7, 8})));
    EXPECT_EQ(file.Size(), kFar + 2);
    Bytes bytes(3);
    EXPECT_EQ(file.ReadAt(kFar - 1, bytes), 3u);
    EXPECT_EQ(bytes, BytesOf({0, 7, 8}));
}

TEST(File, FullDiskFailsTheWrite)
{
    const CTempFolder folder;
    CFile file(folder / "a", Mode::OpenOrCreate);
    const CFileSizeLimit limit(100);
    EXPECT_TRUE(file.WriteAt(0, Bytes(100)));
    EXPECT_FALSE(file.WriteAt(50, Bytes(51))) << "49 bytes went out, the last one not";
    EXPECT_FALSE(file.WriteAt(100, Bytes(1)));
    EXPECT_EQ(file.Size(), 100u);
}

TEST(File, NewFileTakesNoNameThatIsTaken)
{
    const CTempFolder folder;
    WriteAll(folder / "a", BytesOf({1}));
    fs::create_symlink(folder / "missing", folder / "link");
    EXPECT_FALSE(CFile(folder / "a", Mode::CreateNew).IsOpen());
    EXPECT_FALSE(CFile(folder / "link", Mode::CreateNew).IsOpen());
    EXPECT_TRUE(CFile(folder / "b", Mode::CreateNew).WriteAt(0, BytesOf({2})));
    EXPECT_EQ(ReadAll(folder / "a"), BytesOf({1}));
    EXPECT_FALSE(fs::exists(folder / "missing"));
}

TEST(File, IsMadeWhereADanglingLinkLeads)
{
    const CTempFolder folder;
    fs::create_symlink("far", folder / "near");
    fs::create_symlink("near", folder / "link");
    CFile file(folder / "link", Mode::OpenOrCreate);
    EXPECT_TRUE(file.WriteAt(0, BytesOf({2})));
    EXPECT_TRUE(file.Close());
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_EQ(ReadAll(folder / "far"), BytesOf({2}));
}

TEST(File, ReservedRoomReadsAsZerosAndWhatWasThereStays)
{
    const CTempFolder folder;
    WriteAll(folder / "a", BytesOf({1, 2}));
    CFile file(folder / "a", Mode::ReadWrite);
    EXPECT_TRUE(file.Reserve(1, 4));
    EXPECT_TRUE(file.Reserve(0, 1));
    EXPECT_TRUE(file.Reserve(100, 0)) << "nothing needs no room";
    EXPECT_EQ(ReadAll(folder / "a"), BytesOf({1, 2, 0, 0, 0}));
}

TEST(File, RoomThatIsNotThereLeavesTheFileAsItWas)
{
    const CTempFolder folder;
    WriteAll(folder / "a", BytesOf({1, 2}));
    CFile file(folder / "a", Mode::ReadWrite);
    const CFileSizeLimit limit(100000);
    EXPECT_FALSE(file.Reserve(0, 100001));
    EXPECT_EQ(ReadAll(folder / "a"), BytesOf({1, 2}));
    EXPECT_FALSE(file.Reserve(std::numeric_limits<std::uint64_t>::max(), 2));
    EXPECT_FALSE(CFile().Reserve(0, 1));
}

TEST(File, IsCutButNeverMadeLonger)
{
    const CTempFolder folder;
    WriteAll(folder / "a", BytesOf({1, 2, 3}));
    CFile file(folder / "a", Mode::ReadWrite);
    EXPECT_TRUE(file.CutTo(5));
    EXPECT_EQ(file.Size(), 3u);
    EXPECT_TRUE(file.CutTo(2));
    EXPECT_EQ(ReadAll(folder / "a"), BytesOf({1, 2}));
    EXPECT_FALSE(CFile(folder / "a", Mode::Read).CutTo(1));
}

TEST(File, DiscardRemovesWhatThisObjectMadeAndNothingElse)
{
    const CTempFolder folder;
    WriteAll(folder / "old", BytesOf({1}));
    for (const char* name : {"old", "new"}) {
        CFile file(folder / name, Mode::OpenOrCreate);
        file.Discard();
        EXPECT_FALSE(file.IsOpen());
    }
    EXPECT_EQ(ReadAll(folder / "old"), BytesOf({1}));
    EXPECT_FALSE(fs::exists(folder / "new"));
}

/// A program may be started without standard streams; the first file that it opens then gets the number of one.
TEST(File, NeverStandsInForAClosedStandardStream)
{
    const CTempFolder folder;
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        const int kept = dup(stream);
        close(stream);
        const CFile file(folder / "a", Mode::OpenOrCreate);
        const bool isTaken = fcntl(stream, F_GETFD) != -1;
        dup2(kept, stream);
        close(kept);
        EXPECT_TRUE(file.IsOpen());
        EXPECT_FALSE(isTaken) << stream;
    }
}

TEST(File, TakesThePermissionsOfAnother)
{
    const CTempFolder folder;
    WriteAll(folder / "a", {});
    fs::permissions(folder / "a", fs::perms::owner_read | fs::perms::others_exec);
    CFile file(folder / "b", Mode::CreateNew);
    EXPECT_TRUE(file.TakeAttributesOf(folder / "a"));
    EXPECT_EQ(fs::status(folder / "b").permissions(), fs::perms::owner_read | fs::perms::others_exec);
    EXPECT_FALSE(file.TakeAttributesOf(folder / "missing"));
}

TEST(File, ClosedFileDoesNothing)
{
    const CTempFolder folder;
    CFile file(folder / "a", Mode::OpenOrCreate);
    EXPECT_TRUE(file.Close());
    EXPECT_TRUE(file.Close());
    Bytes bytes(1);
    EXPECT_FALSE(file.IsOpen());
    EXPECT_FALSE(file.Size());
    EXPECT_FALSE(file.ReadAt(0, bytes));
    EXPECT_FALSE(file.WriteAt(0, bytes));
    EXPECT_FALSE(file.CutTo(0));
    EXPECT_FALSE(file.TakeAttributesOf(folder / "a"));
    EXPECT_TRUE(file.Flush());
}

struct OpenFaultCase {
    const char* name;
    fs::path (*make)(const CTempFolder& folder); ///< the path to be opened
    std::errc fault;
    bool isMissingOrProtected;
    friend void PrintTo(const OpenFaultCase& c, std::ostream* out) { *out << c.name; }
};

struct OpenFault : testing::TestWithParam<OpenFaultCase> {
    OpenFault() { EXPECT_FALSE(file.Open(GetParam().make(folder), Mode::ReadWrite)); }

    CTempFolder folder;
    CFile file;
};

TEST_P(OpenFault, IsTheSystems)
{
    EXPECT_EQ(file.LastError(), GetParam().fault) << file.LastError().message();
}

TEST_P(OpenFault, TellsAFileThatIsMissingFromWhatIsNone)
{
    EXPECT_EQ(IsMissingOrProtected(file.LastError()), GetParam().isMissingOrProtected) << file.LastError().message();
}

TEST_P(OpenFault, IsForgottenOnceAFileIsOpen)
{
    WriteAll(folder / "good", BytesOf({1}));
    EXPECT_TRUE(file.LastError());
    EXPECT_TRUE(file.Open(folder / "good", Mode::ReadWrite));
    EXPECT_FALSE(file.LastError());
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, OpenFault, testing::Values(
    OpenFaultCase{"Missing",       [](const CTempFolder& folder) { return folder / "a.rcp"; },
                  std::errc::no_such_file_or_directory, true},
    OpenFaultCase{"NoSuchFolder",  [](const CTempFolder& folder) { return folder / "missing" / "a.rcp"; },
                  std::errc::no_such_file_or_directory, true},
    OpenFaultCase{"BelowAFile",    [](const CTempFolder& folder) {
        WriteAll(folder / "b.rcp", BytesOf({1}));
        return folder / "b.rcp" / "a.rcp"; },
                  std::errc::not_a_directory, true},
    OpenFaultCase{"Folder",        [](const CTempFolder& folder) { return folder.Path(); },
                  std::errc::is_a_directory, false},
    OpenFaultCase{"Pipe",          [](const CTempFolder& folder) {
        EXPECT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
        return folder / "pipe"; },
                  std::errc::invalid_argument, false},
    OpenFaultCase{"CircleOfLinks", [](const CTempFolder& folder) {
        fs::create_symlink("circle", folder / "circle");
        return folder / "circle"; },
                  std::errc::too_many_symbolic_link_levels, false},
    OpenFaultCase{"NameWithAZero", [](const CTempFolder& folder) { return folder / std::string("a\0b", 3); },
                  std::errc::invalid_argument, false}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST(File, ProtectedFileIsToldFromOneThatCannotBeOpened)
{
    const CTempFolder folder;
    fs::permissions(folder.Path(), fs::perms::all);
    WriteAll(folder / "a.rcp", BytesOf({1}));
    fs::permissions(folder / "a.rcp", static_cast<fs::perms>(0444));
    const COrdinaryUser user;
    CFile file;
    EXPECT_FALSE(file.Open(folder / "a.rcp", Mode::ReadWrite));
    EXPECT_EQ(file.LastError(), std::errc::permission_denied);
    EXPECT_TRUE(IsMissingOrProtected(file.LastError()));
    EXPECT_FALSE(IsMissingOrProtected({}));
}

TEST(File, FailedOpenLeavesNoFileOpen)
{
    const CTempFolder folder;
    CFile file(folder / "a", Mode::OpenOrCreate);
    EXPECT_FALSE(file.Open(folder / "missing", Mode::Read));
    EXPECT_FALSE(file.IsOpen());
}

TEST(File, MoveHandsTheFileOn)
{
    const CTempFolder folder;
    CFile first(folder / "a", Mode::OpenOrCreate);
    CFile second(std::move(first));
    EXPECT_TRUE(second.WriteAt(0, BytesOf({5})));
    CFile third;
    third = std::move(second);
    EXPECT_TRUE(third.WriteAt(1, BytesOf({6})));
    EXPECT_TRUE(third.Close());
    EXPECT_EQ(ReadAll(folder / "a"), BytesOf({5, 6}));
}

TEST(ExecutablePath, NamesThisProgram)
{
    const fs::path path = ExecutablePath();
    EXPECT_TRUE(path.is_absolute());
    EXPECT_EQ(path.stem(), "vantor_disk_tests");
    EXPECT_TRUE(CFile(path, Mode::Read).IsOpen());
}

struct FileReason : testing::Test {
    CTempFolder folder;
};

TEST_F(FileReason, IsNoneWhileNothingFailed)
{
    CFile file(folder / "a.rcp", Mode::Truncate);
    EXPECT_TRUE(file.WriteAt(0, BytesOf({1})));
    EXPECT_TRUE(file.Close());
    EXPECT_FALSE(file.LastError());
}

TEST_F(FileReason, OfAWriteIsTheFullDisk)
{
    CFile file(folder / "a.rcp", Mode::Truncate);
    {
        const CFileSizeLimit limit(10);
        EXPECT_FALSE(file.WriteAt(0, Bytes(100)));
    }
    EXPECT_EQ(file.LastError(), std::errc::file_too_large);
    EXPECT_EQ(ReasonUtf8(file.LastError()), "File too large");
    EXPECT_TRUE(file.WriteAt(0, Bytes(5)));
    EXPECT_EQ(file.LastError(), std::errc::file_too_large); // the latest there was
}

TEST_F(FileReason, OfAReadIsTheSystems)
{
    CFile memory("/proc/self/mem", Mode::Read); // its first address cannot be read
    std::array<std::byte, 2> bytes{};
    EXPECT_EQ(memory.ReadAt(0, bytes), std::nullopt);
    EXPECT_EQ(memory.LastError(), std::errc::io_error);
    const CFile moved = std::move(memory);
    EXPECT_EQ(moved.LastError(), std::errc::io_error);
}

TEST_F(FileReason, OfWritingAFileOpenForReadingIsThat)
{
    WriteAll(folder / "a.rcp", BytesOf({1}));
    CFile file(folder / "a.rcp", Mode::Read);
    EXPECT_FALSE(file.WriteAt(0, BytesOf({2})));
    EXPECT_EQ(file.LastError(), std::errc::bad_file_descriptor);
}

TEST_F(FileReason, OfAPlaceBeyondAnyFileIsTheArgument)
{
    CFile file(folder / "a.rcp", Mode::Truncate);
    EXPECT_FALSE(file.WriteAt(std::numeric_limits<std::uint64_t>::max(), BytesOf({1})));
    EXPECT_EQ(file.LastError(), std::errc::invalid_argument);
}

TEST(File, IsHeldByOneUntilItIsClosed)
{
    const CTempFolder folder;
    const fs::path path = folder / "a";
    WriteAll(path, BytesOf({1}));
    CFile one(path, CFile::Mode::Read);
    CFile other(path, CFile::Mode::ReadWrite);
    EXPECT_EQ(one.Hold(), Holder::ThisFile);
    EXPECT_EQ(other.Hold(), Holder::AnotherFile);
    EXPECT_TRUE(other.WriteAt(0, BytesOf({2}))) << "a hold keeps nobody from writing";
    {
        const CFile third(path, CFile::Mode::Read); // one that is closed again does not take anybody's hold with it
    }
    EXPECT_EQ(other.Hold(), Holder::AnotherFile);
    one.Close();
    EXPECT_EQ(other.Hold(), Holder::ThisFile);
    EXPECT_EQ(CFile().Hold(), Holder::Unknown);
}

TEST(File, KnowsWhetherANameIsItsOwn)
{
    const CTempFolder folder;
    const fs::path path = folder / "a";
    WriteAll(path, BytesOf({1}));
    WriteAll(folder / "other", BytesOf({1}));
    const CFile file(path, CFile::Mode::Read);
    EXPECT_TRUE(file.IsAt(path));
    EXPECT_FALSE(file.IsAt(folder / "other"));
    EXPECT_FALSE(file.IsAt(folder / "missing"));
    EXPECT_FALSE(CFile().IsAt(path));
}

} // namespace
