#include "files/PagedFile.h"
#include "files/RecipeFile.h"
#include "files/RecipeReplacement.h"
#include "tests/files/AllocationLimit.h"
#include "tests/files/FileSizeLimit.h"
#include "tests/files/TestColumns.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/TestFiles.h"
#include "text/PathText.h"

#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

using Texts = std::vector<std::u16string>;

struct RecipeReplacement : testing::Test {
    void SetRows(std::int32_t startAddress, std::int32_t rowCount)
    {
        rows.LayOut({Signed16Column(), AnsiColumn(2)}, startAddress, rowCount);
        for (std::int32_t row = 0; row < rowCount; ++row)
            rows.SetText(row, 0, u"291");
    }

    bool Replace(const fs::path& path)
    {
        CNoProgress progress;
        return ReplaceRecipe(FileTypeOf(path).value(), rows, path, rows.StartAddress(), reporter, progress).isSaved;
    }

    /// In two steps, as the window does.
    bool SaveAs(const fs::path& path)
    {
        CNoProgress progress;
        const FileType type = FileTypeOf(path).value();
        return PrepareSaveAs(type, path, rows.StartAddress(), reporter) &&
               SaveRecipe(type, rows, path, reporter, progress).isSaved;
    }

    CTempFolder folder;
    CRecipeRows rows;
    CRecordingReporter reporter;
};

struct SameAsSaveAs : RecipeReplacement, testing::WithParamInterface<const char*> {};

TEST_P(SameAsSaveAs, ToTheByteOverAnyFileOrNone)
{
    fs::create_directory(folder / "one");
    fs::create_directory(folder / "other");
    const fs::path one = folder / "one" / GetParam();
    const fs::path other = folder / "other" / GetParam();
    Bytes paged(65536, std::byte{7});
    WriteAll(one, paged);
    ASSERT_TRUE(PagedWrite(one, WordAddress(40000), 2, WordBytes({1, 2}), kFrp));
    paged = ReadAll(one);
    for (const Bytes& old : {Bytes(), Bytes(5, std::byte{8}), Bytes(400'000, std::byte{9}), paged})
        for (const std::int32_t start : {0, 3, 32764, 40001}) {
            SetRows(start, 4);
            WriteAll(one, old);
            WriteAll(other, old);
            const bool isSaved = SaveAs(one);
            EXPECT_EQ(Replace(other), isSaved);
            EXPECT_TRUE(ReadAll(other) == ReadAll(one)) << old.size() << ' ' << start;
            fs::remove(one);
            fs::remove(other);
            EXPECT_TRUE(SaveAs(one) && Replace(other));
            EXPECT_TRUE(ReadAll(other) == ReadAll(one)) << start;
        }
}

INSTANTIATE_TEST_SUITE_P(Types, SameAsSaveAs, testing::Values("a.rcp", "a.csv", "a.erp", "a.frp"),
                         [](const auto& c) { return std::string(c.param).substr(2); });

TEST_F(RecipeReplacement, FailsWhereTheNewFileDoesNotFitAndLeavesTheOldOne)
{
    const Bytes old(10'000, std::byte{5});
    for (const char* name : {"a.rcp", "a.csv", "a.erp", "a.frp"})
        for (const std::int32_t start : {0, 4'000, 25'000}) {
            const fs::path path = folder / name;
            WriteAll(path, old);
            SetRows(start, 10'000);
            reporter.shown.clear();
            {
                const CFileSizeLimit limit(20'000);
                EXPECT_FALSE(Replace(path)) << path << start;
            }
            EXPECT_EQ(ReadAll(path), old) << path << start;
            EXPECT_EQ(reporter.shown.size(), 1u);
            fs::remove(path);
            EXPECT_TRUE(fs::is_empty(folder.Path())) << path;
        }
}

TEST_F(RecipeReplacement, SpeaksInTheWordsOfSaveAs)
{
    SetRows(30'000, 1);
    const fs::path recipe = folder / "a.rcp";
    {
        const CFileSizeLimit limit(20'000);
        EXPECT_FALSE(Replace(recipe));
    }
    fs::create_directory(folder / "b.rcp");
    fs::create_directory(folder / "b.frp");
    EXPECT_FALSE(Replace(folder / "b.rcp"));
    EXPECT_FALSE(Replace(folder / "b.frp"));
    SetRows(0, 1);
    EXPECT_FALSE(Replace(folder / "b.rcp"));
    EXPECT_EQ(reporter.shown,
              (Texts{u"Open " + PathText(recipe) + u" failed ,It can't save!",
                     u"Open " + PathText(folder / "b.rcp") + u" failed ,It can't save!",
                     u"Can't open the file that need save!",
                     u"Can't save file " + PathText(folder / "b.rcp") + u",please check file or your disk!"}));
}

TEST_F(RecipeReplacement, WithoutMemoryForTheWordsTheOldFileStays)
{
    for (const char* name : {"a.rcp", "a.frp"}) {
        WriteAll(folder / name, BytesOf({1, 2}));
        SetRows(0, 100'000);
        const CAllocationLimit limit(400'000);
        EXPECT_FALSE(Replace(folder / name));
        EXPECT_EQ(ReadAll(folder / name), BytesOf({1, 2}));
    }
    EXPECT_EQ(reporter.shown.size(), 2u);
}

} // namespace
