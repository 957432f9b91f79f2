#include "disk/Replacement.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <sys/xattr.h>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr const char* kAccessList = "system.posix_acl_access";

/// An entry of an access control list: who it is for, by the system's number, what they may do, and which user it is.
struct Access {
    std::uint16_t who;
    std::uint16_t rights;
    std::uint32_t user = 0xFFFFFFFF;
};

/// As the system takes it: the version 2, then the entries, all with the low byte first.
std::string AccessList(const std::vector<Access>& entries)
{
    std::string list{2, 0, 0, 0};
    const auto put = [&list](std::uint32_t number, int bytes) {
        for (int i = 0; i < bytes; ++i)
            list += static_cast<char>(number >> (8 * i));
    };
    for (const Access& entry : entries) {
        put(entry.who, 2);
        put(entry.rights, 2);
        put(entry.user, 4);
    }
    return list;
}

/// Empty where the file has no such attribute.
std::string AttributeOf(const fs::path& path, const char* name)
{
    std::string value(1000, '\0');
    const ssize_t length = getxattr(path.c_str(), name, value.data(), value.size());
    value.resize(static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
    return value;
}

struct ExtendedAttributes : testing::Test {
    ExtendedAttributes() { WriteAll(path, BytesOf({1, 2, 3})); }

    void Replace() const
    {
        CReplacement file(path);
        EXPECT_TRUE(file.Append(BytesOf({4})));
        EXPECT_TRUE(file.Finish());
        EXPECT_EQ(ReadAll(path), BytesOf({4}));
    }

    CTempFolder folder;
    fs::path path = folder / "a";
};

TEST_F(ExtendedAttributes, StayWithAReplacedFile)
{
    ASSERT_EQ(setxattr(path.c_str(), "user.origin", "line 3", 6, 0), 0);
    Replace();
    EXPECT_EQ(AttributeOf(path, "user.origin"), "line 3");
}

/// User 7 may write, the group may not. With the permission bits alone it would be the other way round.
TEST_F(ExtendedAttributes, KeepTheFurtherUsersOfAReplacedFile)
{
    const std::string list = AccessList({{1, 6}, {2, 6, 7}, {4, 4}, {16, 6}, {32, 0}});
    ASSERT_EQ(setxattr(path.c_str(), kAccessList, list.data(), list.size(), 0), 0);
    Replace();
    EXPECT_EQ(AttributeOf(path, kAccessList), list);
}

TEST_F(ExtendedAttributes, OfTheFolderGiveAReplacedFileNoFurtherUsers)
{
    const std::string list = AccessList({{1, 7}, {2, 7, 7}, {4, 5}, {16, 7}, {32, 5}});
    ASSERT_EQ(setxattr(folder.Path().c_str(), "system.posix_acl_default", list.data(), list.size(), 0), 0);
    Replace();
    EXPECT_EQ(AttributeOf(path, kAccessList), "");
}

TEST_F(ExtendedAttributes, OfTheFolderStayWithAReplacedFileThatHasThemToo)
{
    const std::string list = AccessList({{1, 7}, {2, 7, 7}, {4, 5}, {16, 7}, {32, 5}});
    ASSERT_EQ(setxattr(folder.Path().c_str(), "system.posix_acl_default", list.data(), list.size(), 0), 0);
    path = folder / "b";
    WriteAll(path, BytesOf({1}));
    const std::string before = AttributeOf(path, kAccessList);
    ASSERT_NE(before, "");
    Replace();
    EXPECT_EQ(AttributeOf(path, kAccessList), before);
}

TEST_F(ExtendedAttributes, OfTheFolderDoNotTakeThePlaceOfAReplacedFilesOwn)
{
    const std::string own = AccessList({{1, 6}, {2, 6, 7}, {4, 4}, {16, 6}, {32, 0}});
    const std::string others = AccessList({{1, 7}, {2, 7, 8}, {4, 5}, {16, 7}, {32, 5}});
    ASSERT_EQ(setxattr(path.c_str(), kAccessList, own.data(), own.size(), 0), 0);
    ASSERT_EQ(setxattr(folder.Path().c_str(), "system.posix_acl_default", others.data(), others.size(), 0), 0);
    Replace();
    EXPECT_EQ(AttributeOf(path, kAccessList), own);
}

} // namespace
