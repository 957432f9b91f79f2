#include "tests/document/DocumentFixture.h"
#include "tests/files/AllocationLimit.h"

// The open recipe and its files, and what happens to both without memory.

TEST_F(RecipeDocument, WithoutMemoryAnEditLeavesTheDocumentAsItWas)
{
    Type({0, 1}, u"12");
    std::vector<TextForCell> texts;
    for (std::int32_t row = 0; row < 3; ++row)
        texts.push_back({{row, 1}, u"1"});
    texts.push_back({{0, 0}, std::u16string(100, u'1')});
    {
        const CAllocationLimit limit(64, 64);
        EXPECT_EQ(document.SetTexts(EditKind::Paste, std::move(texts)), EditOutcome::OutOfMemory);
    }
    EXPECT_EQ(document.UndoName(), u"Typing");
    EXPECT_EQ(Text({0, 1}), u"12");
    EXPECT_EQ(Text({1, 1}), u"8");
    EXPECT_EQ(document.Rows().EditedCount(), 1u);
}

TEST_F(RecipeDocument, WithoutMemoryAnUndoLeavesTheDocumentAsItWas)
{
    document.SetTexts(EditKind::Paste, {{{0, 1}, u"1"}, {{1, 1}, u"2"}, {{2, 1}, u"3"}});
    {
        const CAllocationLimit limit(8, 8);
        EXPECT_EQ(document.Undo().outcome, EditOutcome::OutOfMemory);
    }
    EXPECT_EQ(document.UndoName(), u"Paste (3 cells)");
    EXPECT_EQ(Text({0, 1}), u"1");
    EXPECT_EQ(document.Undo().outcome, EditOutcome::Made);
    EXPECT_EQ(Text({0, 1}), u"7");
}

TEST_F(RecipeDocument, WithoutMemoryAReadingLeavesTheRowsAndTellsOfTheFile)
{
    Type({0, 1}, u"12");
    document.TakeSettings({MakeFormat(u"Wide", {ArrayOf(DefaultItem(), 5'000)}), 0, 3});
    {
        const CAllocationLimit limit(16'384, 16'384);
        EXPECT_EQ(Read(), CRecipeDocument::Reading::Failed);
    }
    ASSERT_EQ(reporter.shown.size(), 1u);
    EXPECT_EQ(reporter.shown[0], u"Open file " + path.u16string() + u" error!");
    EXPECT_EQ(Text({0, 1}), u"12");
    EXPECT_EQ(document.UndoName(), u"Typing");
}

TEST_F(RecipeDocument, WithoutMemoryForItsSecondStepAnUndoTakesTheFirstBack)
{
    const DataFormat wide = MakeFormat(u"Wide", std::vector<DataItem>(1000, DefaultItem()));
    const std::size_t index = store.Library().formats.size();
    {
        CRecipeDocument::CGroup group(document, EditKind::DeleteFormat);
        store.AppendFormat(wide);
        document.NoteFormatChange(EditKind::DeleteFormat, store.RemoveFormat(index));
        document.TakeSettings({TwoColumns(), 3, 2});
        Read();
    }
    {
        const CAllocationLimit limit(CAllocationLimit::kNone, 4'096);
        EXPECT_EQ(document.Undo().outcome, EditOutcome::OutOfMemory);
    }
    EXPECT_EQ(store.Library().formats.size(), index);
    EXPECT_EQ(document.Rows().RowCount(), 2);
    EXPECT_EQ(document.Settings().startAddress, 3);
    EXPECT_EQ(document.Undo().outcome, EditOutcome::Made);
    EXPECT_EQ(store.Library().formats.size(), index + 1);
    EXPECT_EQ(document.Rows().RowCount(), 3);
}

TEST_F(RecipeDocument, WithoutMemoryAnEditLeavesItsGroupAsItWas)
{
    {
        CRecipeDocument::CGroup group(document, EditKind::Paste);
        Type({0, 1}, u"12");
        std::vector<TextForCell> texts;
        for (std::int32_t row = 0; row < 3; ++row)
            texts.push_back({{row, 0}, u"1"});
        const CAllocationLimit limit(100, 100);
        EXPECT_EQ(document.SetTexts(EditKind::Paste, std::move(texts)), EditOutcome::OutOfMemory);
    }
    EXPECT_EQ(document.UndoName(), u"Paste");
    document.Undo();
    EXPECT_EQ(Text({0, 1}), u"7");
}

TEST_F(RecipeDocument, RowsOfNoFileAreSavedNowhere)
{
    std::filesystem::remove(path);
    Read();
    reporter.shown.clear();
    EXPECT_FALSE(document.Write(FileType::Rcp, path, reporter, progress).isSaved);
    EXPECT_FALSE(document.SaveAs(FileType::Csv, folder / "a.csv", reporter, progress).isSaved);
    EXPECT_FALSE(document.Replace(FileType::Csv, folder / "a.csv", reporter).isSaved);
    EXPECT_EQ(reporter.shown.size(), 3u);
    EXPECT_FALSE(std::filesystem::exists(folder / "a.csv"));
    EXPECT_EQ(document.Path(), path);
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(RecipeDocument, ASaveUnderANewNameTakesNameAndType)
{
    Type({0, 1}, u"12");
    ASSERT_TRUE(document.SaveAs(FileType::Erp, folder / "b.erp", reporter, progress).isSaved);
    EXPECT_EQ(document.Path(), folder / "b.erp");
    EXPECT_EQ(document.Type(), FileType::Erp);
    EXPECT_EQ(ReadAll(path), words); // the old file is as it was
    EXPECT_EQ(document.Rows().EditedCount(), 0u);
}

TEST_F(RecipeDocument, OtherRowsOfTheFormerFileAreNotSavedUnderTheNewName)
{
    document.TakeSettings({TwoColumns(), 3, 1});
    Read();
    ASSERT_TRUE(document.SaveAs(FileType::Csv, folder / "b.csv", reporter, progress).isSaved);
    document.Undo();
    EXPECT_EQ(document.Rows().RowCount(), 3);
    EXPECT_FALSE(document.HasRowsOfFile());
    EXPECT_FALSE(Save());
    document.Redo();
    EXPECT_TRUE(document.HasRowsOfFile());
}

TEST_F(RecipeDocument, TheSameRowsOfTheFormerFileMayBeSavedUnderTheNewName)
{
    Type({0, 1}, u"12");
    Read();
    ASSERT_TRUE(document.SaveAs(FileType::Rcp, folder / "b.rcp", reporter, progress).isSaved);
    document.Undo();
    EXPECT_EQ(Text({0, 1}), u"12");
    EXPECT_TRUE(document.HasRowsOfFile());
    EXPECT_TRUE(Save());
    EXPECT_EQ(LoadLE32(ReadAll(folder / "b.rcp"), 4) & 0xFFFF, 12);
    EXPECT_EQ(ReadAll(path), words);
}

TEST_F(RecipeDocument, ASaveUnderANewNameThatFailsLeavesNameAndType)
{
    EXPECT_FALSE(document.SaveAs(FileType::Csv, folder / "none" / "b.csv", reporter, progress).isSaved);
    EXPECT_EQ(document.Path(), path);
    EXPECT_EQ(document.Type(), FileType::Rcp);
    EXPECT_EQ(reporter.shown.size(), 1u);
}

TEST_F(RecipeDocument, AFileOfAnUnknownTypeIsOnlyLookedAt)
{
    const auto other = folder / "oven.bin";
    WriteAll(other, words);
    document.StartOpen(other, std::nullopt);
    EXPECT_EQ(Read(), CRecipeDocument::Reading::Done);
    EXPECT_EQ(Text({0, 1}), u"7");
    EXPECT_FALSE(document.HasRowsOfFile());
}

TEST_F(RecipeDocument, AFormatWithoutWordsShowsNoRows)
{
    document.TakeSettings({DataFormat(u"Empty"), 0, 3});
    EXPECT_EQ(Read(), CRecipeDocument::Reading::NotShown);
    EXPECT_EQ(document.Rows().RowCount(), 0);
    EXPECT_TRUE(reporter.shown.empty());
    document.Undo();
    EXPECT_EQ(document.Rows().RowCount(), 3);
}

TEST_F(RecipeDocument, AnItemWithoutWordsShowsNoRows)
{
    document.TakeSettings({MakeFormat(u"None", {MakeItem(u"No words", DataType::String, 0, 0)}), 0, 3});
    EXPECT_EQ(Read(), CRecipeDocument::Reading::NotShown);
}

TEST_F(RecipeDocument, AFormatThatBreaksALimitIsReportedAndShowsNoRows)
{
    document.TakeSettings({MakeFormat(u"Wide", {ArrayOf(DefaultItem(), 40'000)}), 0, 3});
    EXPECT_EQ(Read(), CRecipeDocument::Reading::NotShown);
    EXPECT_EQ(reporter.shown.size(), 1u);
    EXPECT_EQ(document.Rows().RowCount(), 0);
}

TEST_F(RecipeDocument, AReadingThatWasGivenUpShowsNoRowsAndComesBack)
{
    struct CNoPatience final : CProgress {
        bool Advance(std::uint64_t, std::uint64_t) override { return false; }
    } noPatience;
    WriteAll(path, Bytes(8 << 20));
    document.TakeSettings({TwoColumns(), 0, 1'000'000});
    EXPECT_EQ(document.Read(FileType::Rcp, reporter, noPatience), CRecipeDocument::Reading::GivenUp);
    EXPECT_EQ(document.Rows().RowCount(), 0);
    EXPECT_FALSE(document.HasRowsOfFile());
    document.Undo();
    EXPECT_EQ(Text({0, 1}), u"7");
}

TEST_F(RecipeDocument, AFileThatIsOpenedHasItsTypeAndNoRowsYet)
{
    document.StartOpen(folder / "b.csv", FileType::Csv);
    EXPECT_EQ(document.Type(), FileType::Csv);
    EXPECT_EQ(document.Rows().RowCount(), 0);
    document.StartOpen(folder / "b.bin", std::nullopt);
    EXPECT_EQ(document.Type(), FileType::Csv); // the former one's
}

TEST_F(RecipeDocument, AWalkHandsOverEveryCellAndKeepsNoRows)
{
    struct CTexts final : CCellTaker {
        void TakeCell(std::int32_t, std::size_t, std::u16string_view text) override { texts.emplace_back(text); }
        std::vector<std::u16string> texts;
    } taker;
    document.StartOpen(path, FileType::Rcp);
    EXPECT_TRUE(document.Walk(taker, reporter));
    EXPECT_EQ(taker.texts, (std::vector<std::u16string>{u"235.0", u"7", u"1.0", u"8", u"0.0", u"9"}));
    EXPECT_EQ(document.Rows().RowCount(), 0);
    document.StartOpen(folder / "none.rcp", FileType::Rcp);
    EXPECT_FALSE(document.Walk(taker, reporter));
    document.TakeSettings({DataFormat(u"Empty"), 0, 3});
    EXPECT_TRUE(document.Walk(taker, reporter));
}

TEST_F(RecipeDocument, ASavedNewDocumentIsNoLongerNew)
{
    document.StartNew();
    Read();
    ASSERT_TRUE(document.SaveAs(FileType::Rcp, folder / "new.rcp", reporter, progress).isSaved);
    document.MarkSaved();
    EXPECT_FALSE(document.IsNew());
    EXPECT_FALSE(document.IsUnsaved());
}

TEST_F(RecipeDocument, ANewDocumentShowsZerosAndIsUnsaved)
{
    document.StartNew();
    EXPECT_EQ(Read(), CRecipeDocument::Reading::Done);
    EXPECT_EQ(Text({0, 1}), u"0");
    EXPECT_TRUE(document.IsUnsaved());
    EXPECT_TRUE(document.HasRowsOfFile());
}

TEST_F(RecipeDocument, AReadingThatOnlyReadsMakesNothing)
{
    const auto missing = folder / "none.erp";
    document.StartOpen(missing, FileType::Erp);
    EXPECT_EQ(document.ReadOnly(reporter, progress), CRecipeDocument::Reading::Failed);
    EXPECT_FALSE(std::filesystem::exists(missing));
}

TEST_F(RecipeDocument, EditedCellsAreSavedOnceTheFileIsThereAgain)
{
    Type({0, 1}, u"12");
    const std::filesystem::path aside = folder / "aside";
    std::filesystem::rename(path, aside);
    EXPECT_FALSE(document.WriteEdited(reporter, progress).isSaved);
    std::filesystem::rename(aside, path);
    EXPECT_TRUE(document.WriteEdited(reporter, progress).isSaved);
    words[4] = std::byte{12};
    EXPECT_EQ(ReadAll(path), words);
}
