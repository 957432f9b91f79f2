#include "recovery/VersionRestore.h"
#include "tests/document/DocumentFixture.h"

// The earlier versions that writes keep.

namespace fs = std::filesystem;

namespace {

using Result = VersionKept::Result;

class KeptVersions : public RecipeDocument {
protected:
    KeptVersions() { document.KeepVersionsIn(versions); }

    void Edit() { Type({0, 1}, u"5"); }

    std::vector<Version> List() const { return versions.List(path); }

    Bytes Newest(const fs::path& file) const { return ReadAll(versions.PathOf(file, versions.List(file).at(0))); }

    CVersionStore versions{folder / "data"};
};

} // namespace

TEST_F(KeptVersions, HoldWhatASaveOverwrote)
{
    Edit();
    ASSERT_TRUE(Save());
    ASSERT_EQ(List().size(), 1u);
    EXPECT_EQ(List()[0].command, u"Save");
    EXPECT_EQ(Newest(path), words);
    EXPECT_EQ(document.LastSave().version->result, Result::Kept);
}

TEST_F(KeptVersions, NameTheWriteThatTheyWereKeptFor)
{
    Edit();
    ASSERT_TRUE(document.WriteEdited(reporter, progress));
    EXPECT_EQ(List()[0].command, u"Save edited only");
    Type({1, 0}, u"3.5");
    ASSERT_TRUE(Save());
    std::size_t count = 0;
    ASSERT_TRUE(document.PutBackStored(reporter, progress, count));
    EXPECT_EQ(List()[0].command, u"Put back");
    document.KeepVersionsIn(versions, u"set");
    Edit();
    ASSERT_TRUE(Save());
    EXPECT_EQ(List()[0].command, u"set");
}

TEST_F(KeptVersions, HoldTheTargetOfASaveAsBeforeItIsMadeReady)
{
    const fs::path target = folder / "target.rcp";
    const Bytes old = BytesOf({1, 2, 3});
    WriteAll(target, old);
    document.TakeSettings({TwoColumns(), 2, 3}); // with a start address the target is emptied first
    Read();
    ASSERT_TRUE(document.SaveAs(FileType::Rcp, target, reporter, progress));
    EXPECT_EQ(Newest(target), old);
    EXPECT_EQ(versions.List(target)[0].command, u"Save as");
}

TEST_F(KeptVersions, HoldTheTargetOfACopyAndOfAConversion)
{
    for (const auto& name : {"copy.rcp", "converted.csv"})
        WriteAll(folder / name, BytesOf({1, 2, 3}));
    ASSERT_TRUE(document.WriteCopy(FileType::Rcp, folder / "copy.rcp", reporter, progress));
    EXPECT_EQ(Newest(folder / "copy.rcp"), BytesOf({1, 2, 3}));
    ASSERT_TRUE(document.Replace(FileType::Csv, folder / "converted.csv", reporter));
    EXPECT_EQ(Newest(folder / "converted.csv"), BytesOf({1, 2, 3}));
}

TEST_F(KeptVersions, HoldWhatAnotherProgramWroteAndASaveOverwrote)
{
    Edit();
    Bytes other = words;
    other[4] = std::byte{70};
    WriteAll(path, other);
    ASSERT_TRUE(document.Write(FileType::Rcp, path, reporter, progress));
    EXPECT_EQ(Newest(path), other);
}

TEST_F(KeptVersions, AreNoneOfASaveThatIsHeldBack)
{
    Edit();
    words[4] = std::byte{70};
    WriteAll(path, words);
    ASSERT_TRUE(document.Write(FileType::Rcp, path, reporter, progress, ForeignRule::HoldBack).isHeldBack);
    EXPECT_TRUE(List().empty());
}

TEST_F(KeptVersions, ThatCannotBeKeptLeaveTheSaveAsItIs)
{
    WriteAll(folder / "data", {});
    Edit();
    EXPECT_TRUE(Save());
    EXPECT_EQ(document.LastSave().version->result, Result::Failed);
    EXPECT_NE(NotKeptText(*document.LastSave().version, path), u"");
    EXPECT_TRUE(reporter.shown.empty());
}

/// A file that is too large to be copied: the words that change are kept, and bring it back.
class LargeFile : public KeptVersions {
protected:
    LargeFile()
    {
        CFile file(path, CFile::Mode::ReadWrite);
        EXPECT_TRUE(file.WriteAt(kMostCopiedBytes, BytesOf({7})));
    }
};

TEST_F(LargeFile, IsBroughtBackByTheWordsThatChanged)
{
    const Bytes old = ReadAll(path);
    Open();
    Edit();
    ASSERT_TRUE(Save());
    EXPECT_EQ(document.LastSave().version->result, Result::Kept);
    ASSERT_EQ(List().size(), 1u);
    EXPECT_TRUE(List()[0].isRecords);
    Type({1, 0}, u"3.5");
    ASSERT_TRUE(document.WriteEdited(reporter, progress));
    ASSERT_EQ(List().size(), 2u);
    ASSERT_TRUE(RestoreVersion(versions, path, List()[1].stamp, reporter));
    EXPECT_TRUE(ReadAll(path) == old);
}

TEST_F(LargeFile, IsBroughtBackWhereASaveAsOrACopyTookItsPlace)
{
    for (const std::int32_t start : {0, 2}) {
        const fs::path target = folder / ("target" + std::to_string(start) + ".rcp");
        fs::copy_file(path, target);
        const Bytes old = ReadAll(target);
        Open();
        document.TakeSettings({TwoColumns(), start, 3});
        Read();
        Type({0, 1}, u"5");
        ASSERT_TRUE(document.WriteCopy(FileType::Rcp, target, reporter, progress));
        ASSERT_EQ(document.LastSave().version->result, Result::Kept) << start;
        ASSERT_TRUE(document.SaveAs(FileType::Rcp, target, reporter, progress));
        ASSERT_NE(ReadAll(target), old);
        const auto kept = versions.List(target);
        ASSERT_TRUE(RestoreVersion(versions, target, kept.back().stamp, reporter)) << start;
        EXPECT_TRUE(ReadAll(target) == old) << start;
        WriteAll(path, words);
        fs::resize_file(path, kMostCopiedBytes + 1);
    }
    for (const auto& entry : fs::directory_iterator(folder.Path()))
        EXPECT_TRUE(entry.path().extension() == ".rcp" || entry.is_directory() || entry.path().extension() == ".Dat")
            << entry.path();
}

TEST_F(LargeFile, IsBroughtBackFromBeforeASaveThatWasPutBackInPart)
{
    const Bytes old = ReadAll(path);
    Open();
    document.SetTexts(EditKind::Typing, {{{0, 1}, u"5"}});
    ASSERT_TRUE(Save()); // rewrites a float, too
    ASSERT_TRUE(document.StoredAsShown());
    std::size_t count = 0;
    ASSERT_TRUE(document.PutBackStored(reporter, progress, count));
    EXPECT_EQ(document.LastSave().version->result, Result::Kept);
    const auto kept = List();
    ASSERT_TRUE(RestoreVersion(versions, path, kept.back().stamp, reporter));
    EXPECT_TRUE(ReadAll(path) == old);
}
