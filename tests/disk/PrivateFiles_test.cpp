#include "disk/File.h"
#include "tests/files/OrdinaryUser.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

using Mode = CFile::Mode;

namespace {

constexpr auto kUserOnly = fs::perms::owner_read | fs::perms::owner_write;

/// As long as it lives, new files and folders are open to everybody.
class COpenMask {
public:
    COpenMask() : m_before(umask(0)) {}
    ~COpenMask() { umask(m_before); }
    COpenMask(const COpenMask&) = delete;
    COpenMask& operator=(const COpenMask&) = delete;

private:
    mode_t m_before;
};

fs::perms RightsOf(const fs::path& path)
{
    return fs::status(path).permissions();
}

} // namespace

TEST(PrivateFile, IsForTheUserAlone)
{
    const COpenMask mask;
    const CTempFolder folder;
    CFile file(folder / "a", Mode::CreatePrivate);
    EXPECT_TRUE(file.WriteAt(0, BytesOf({1})));
    EXPECT_EQ(RightsOf(folder / "a"), kUserOnly);
    EXPECT_FALSE(CFile(folder / "a", Mode::CreatePrivate).IsOpen());
}

TEST(PrivateFolder, IsMadeWithThoseAboveIt)
{
    const COpenMask mask;
    const CTempFolder folder;
    EXPECT_TRUE(MakePrivateFolder(folder / "a" / "b" / "c"));
    for (const auto& made : {folder / "a", folder / "a" / "b", folder / "a" / "b" / "c"})
        EXPECT_EQ(RightsOf(made), fs::perms::owner_all) << made;
    EXPECT_TRUE(MakePrivateFolder(folder / "a" / "b"));
}

TEST(PrivateFolder, IsClosedToOthersWhereItWasOpen)
{
    const CTempFolder folder;
    fs::create_directory(folder / "a");
    fs::permissions(folder / "a", fs::perms::all);
    EXPECT_TRUE(MakePrivateFolder(folder / "a"));
    EXPECT_EQ(RightsOf(folder / "a"), fs::perms::owner_all);
}

TEST(PrivateFolder, IsRefusedWhereAFileHasTheName)
{
    const CTempFolder folder;
    WriteAll(folder / "a", {});
    EXPECT_FALSE(MakePrivateFolder(folder / "a"));
    EXPECT_FALSE(MakePrivateFolder(folder / "a" / "b"));
    EXPECT_FALSE(MakePrivateFolder({}));
}

/// The rights of others stay as they are.
TEST(PrivateFolder, IsRefusedWhereItIsAnothersOwn)
{
    const CTempFolder folder;
    fs::create_directory(folder / "a");
    for (const auto& path : {folder.Path(), folder / "a"})
        fs::permissions(path, fs::perms::all);
    const bool isOthers = geteuid() == 0;
    const COrdinaryUser user;
    EXPECT_FALSE(MakePrivateFolder(isOthers ? folder / "a" : fs::path("/")));
}

TEST(HoldOfAFile, StaysWhenAnotherHandleOfTheProgramCloses)
{
    const CTempFolder folder;
    CFile first(folder / "a", Mode::OpenOrCreate);
    ASSERT_EQ(first.Hold(), Holder::ThisFile);
    CFile(folder / "a", Mode::ReadWrite).Close();
    CFile other(folder / "a", Mode::ReadWrite);
    EXPECT_EQ(other.Hold(), Holder::AnotherFile);
}
