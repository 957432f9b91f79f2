#include "tests/faults/FaultRun.h"
#include "tests/faults/SavePath.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <string>
#include <sys/xattr.h>

namespace fs = std::filesystem;

namespace {

/// A table with an attribute, in a folder that gives its new files another one.
struct MarkedTable : testing::Test {
    static constexpr const char* kOwn = "user.origin";

    static void Prepare(const SavePlace& place)
    {
        WriteAll(place.Disk("a.csv"), BytesOf({'7'}));
        ASSERT_EQ(setxattr(place.Disk("a.csv").c_str(), kOwn, "line 3", 6, 0), 0);
        const Bytes furtherUser = BytesOf({2,  0, 0, 0,                                                      // version
                                           1,  0, 7, 0, 255, 255, 255, 255, 2,  0, 7, 0, 7,   0,   0,   0,   // users
                                           4,  0, 5, 0, 255, 255, 255, 255, 16, 0, 7, 0, 255, 255, 255, 255, // groups
                                           32, 0, 5, 0, 255, 255, 255, 255});                                // others
        ASSERT_EQ(setxattr((place.folder / "disk").c_str(), "system.posix_acl_default", furtherUser.data(),
                           furtherUser.size(), 0),
                  0);
    }

    static FaultRun Run(const SavePlace& place, const Fault& fault, int at)
    {
        return RunWithFault(VANTOR_CLI_PROGRAM,
                            {"convert", place.Aside("a.rcp"), place.Disk("a.csv"), "--library",
                             place.Aside("RecipeFile.Dat"), "--start", "0", "--rows", "4"},
                            place.folder / "disk", fault, at);
    }

    static std::string OwnAttribute(const SavePlace& place)
    {
        std::string value(100, '\0');
        const ssize_t length = getxattr(place.Disk("a.csv").c_str(), kOwn, value.data(), value.size());
        value.resize(static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
        return value;
    }

    static std::ptrdiff_t FileCount(const SavePlace& place)
    {
        return std::distance(fs::directory_iterator(place.folder / "disk"), fs::directory_iterator());
    }
};

/// It is copied into the old file then, which keeps what it has.
TEST_F(MarkedTable, IsSavedAndKeepsItsAttributeWhereThatCannotBeGivenToAnother)
{
    const Fault fault{"attribute", "attribute", EIO};
    std::optional<Bytes> fresh;
    for (int at = 0;; ++at) { // 0: none fails
        const SavePlace place;
        Prepare(place);
        const FaultRun run = Run(place, fault, at);
        SCOPED_TRACE("call " + std::to_string(at) + (run.failed.empty() ? "" : ", " + run.failed.front()));
        EXPECT_EQ(run.result.exitCode, 0) << run.result.error;
        EXPECT_EQ(OwnAttribute(place), "line 3");
        EXPECT_EQ(FileCount(place), 1);
        if (at == 0) {
            fresh = BytesIn(place.Disk("a.csv"));
            for (const char* call : {"listxattr", "getxattr", "flistxattr", "fgetxattr", "fsetxattr", "fremovexattr"})
                EXPECT_NE(std::find(run.calls.begin(), run.calls.end(), call), run.calls.end()) << call;
        }
        EXPECT_EQ(BytesIn(place.Disk("a.csv")), fresh);
        if (static_cast<int>(run.calls.size()) < at)
            return;
    }
}

TEST_F(MarkedTable, IsReplacedWhereTheFileSystemKnowsNoAttributes)
{
    const SavePlace place;
    Prepare(place);
    const FaultRun run = Run(place, {"no attributes", "attribute", ENOTSUP, 0}, 1);
    EXPECT_EQ(run.failed, (std::vector<std::string>{"listxattr", "flistxattr"}));
    EXPECT_EQ(run.result.exitCode, 0) << run.result.error;
    EXPECT_EQ(FileCount(place), 1);
    EXPECT_NE(ReadAll(place.Disk("a.csv")), BytesOf({'7'}));
}

/// A file system that knows no such call has nothing to refuse.
TEST(Flush, ThatIsNotThereFailsNoSave)
{
    const SavePath& path = CommandLineSavePath("Table");
    const auto run = [&](const SavePlace& place, const Fault& fault, int at) {
        path.prepare(place);
        return RunWithFault(VANTOR_CLI_PROGRAM, path.arguments(place), place.folder / "disk", fault, at);
    };
    const SavePlace whole;
    const FaultRun calls = run(whole, {"none", "error"}, 0);
    const Bytes fresh = ReadAll(whole.Disk(path.target));
    int flushes = 0;
    for (const int error : {EINVAL, ENOSYS, EIO})
        for (std::size_t i = 0; i < calls.calls.size(); ++i) {
            if (!calls.calls[i].ends_with("sync"))
                continue;
            const SavePlace place;
            const FaultRun failed = run(place, {"no flush", "error", error}, static_cast<int>(i) + 1);
            EXPECT_EQ(failed.result.exitCode, error == EIO ? 1 : 0) << calls.calls[i] << failed.result.error;
            if (error != EIO) {
                EXPECT_EQ(ReadAll(place.Disk(path.target)), fresh);
            }
            ++flushes;
        }
    EXPECT_EQ(flushes, 6) << "of the file and of its folder, three errors each";
}

} // namespace
