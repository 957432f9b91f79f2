#include "document/RecipeDocument.h"
#include "tests/files/AllocationLimit.h"
#include "tests/files/FileSizeLimit.h"
#include "tests/support/Formats.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <memory>

// The open recipe: what is open, what is saved, and the edits that can be undone.

namespace {

DataFormat TwoColumns()
{
    return MakeFormat(u"Two",
                      {MakeItem(u"Temp", DataType::Float, 2, 4, 1), MakeItem(u"No.", DataType::Signed16, 1, 4)});
}

/// A document of a file with three rows: 235.04 and 7, 1.0 and 8, 0.0 and 9.
class RecipeDocument : public testing::Test {
protected:
    RecipeDocument()
    {
        store.AppendFormat(TwoColumns());
        store.RemoveFormat(0); // the built-in one
        document.UseFormatsOf(store);
        WriteAll(path, words);
        Open();
    }

    void Open()
    {
        document.StartOpen(path, FileType::Rcp);
        document.TakeSettings({TwoColumns(), 0, 3});
        EXPECT_EQ(Read(), CRecipeDocument::Reading::Done);
    }

    CRecipeDocument::Reading Read() { return document.Read(FileType::Rcp, reporter, progress); }

    bool Save()
    {
        if (!document.Write(document.Type(), document.Path(), reporter, progress).isSaved)
            return false;
        document.MarkSaved();
        return true;
    }

    void Type(CellPlace place, const char16_t* text)
    {
        EXPECT_EQ(document.SetTexts(EditKind::Typing, {{place, text}}), EditOutcome::Made);
    }

    std::u16string Text(CellPlace place) const { return document.Rows().Text(place.row, place.column); }

    FormatChange RenameTo(std::u16string_view name)
    {
        const DataFormat& before = *store.Library().formats[0];
        DataFormat after = before;
        SetText(after.name, name);
        const FormatChange change{0, std::make_shared<DataFormat>(before), std::make_shared<DataFormat>(after)};
        store.Apply(change);
        return change;
    }

    std::u16string FormatName() const { return std::u16string(TextOf(store.Library().formats[0]->name)); }

    CTempFolder folder;
    std::filesystem::path path = folder / "oven.rcp";
    Bytes words = WordBytes({0x0A3D, 0x436B, 7, 0x0000, 0x3F80, 8, 0, 0, 9});
    CRecordingReporter reporter;
    CNoProgress progress;
    CFormatStore store{folder / "RecipeFile.Dat"};
    CRecipeDocument document;
};

TEST_F(RecipeDocument, AnUndoneTypingGivesTheCellItsTextBackAndClearsModified)
{
    Type({0, 1}, u"12");
    EXPECT_TRUE(document.IsModified());
    EXPECT_EQ(document.UndoName(), u"Typing");
    const EditReport report = document.Undo();
    EXPECT_EQ(report.outcome, EditOutcome::Made);
    EXPECT_EQ(report.name, u"Typing");
    EXPECT_EQ(report.cells, (std::vector<CellPlace>{{0, 1}}));
    EXPECT_EQ(Text({0, 1}), u"7");
    EXPECT_FALSE(document.IsModified());
    EXPECT_EQ(document.Rows().EditedCount(), 0u);
}

TEST_F(RecipeDocument, AnUndoneFloatHasItsOldWordsAgainWhole)
{
    ASSERT_EQ(Text({0, 0}), u"235.0");
    Type({0, 0}, u"1.5");
    document.Undo();
    EXPECT_TRUE(document.Rows().State({0, 0}).IsUntouched());
    std::vector<CellEdit> exact{{{1, 0}, CCellState::OfWords({u"\x0A3D\x436B", 2})}};
    document.SetStates(EditKind::Typing, exact);
    ASSERT_TRUE(Save());
    const Bytes saved = ReadAll(path);
    EXPECT_EQ(Bytes(saved.begin() + 6, saved.begin() + 10), WordBytes({0x0A3D, 0x436B}));
}

TEST_F(RecipeDocument, ARedoneEditIsThereAgain)
{
    Type({0, 1}, u"12");
    document.Undo();
    EXPECT_EQ(document.RedoName(), u"Typing");
    EXPECT_EQ(document.Redo().cells, (std::vector<CellPlace>{{0, 1}}));
    EXPECT_EQ(Text({0, 1}), u"12");
    EXPECT_TRUE(document.IsModified());
    EXPECT_EQ(document.RedoName(), std::nullopt);
}

TEST_F(RecipeDocument, ANewEditEndsWhatCouldBeMadeAgain)
{
    Type({0, 1}, u"12");
    document.Undo();
    Type({1, 1}, u"13");
    EXPECT_EQ(document.RedoName(), std::nullopt);
    EXPECT_EQ(document.Redo().outcome, EditOutcome::Nothing);
}

TEST_F(RecipeDocument, ManyCellsAreOneEditNamedWithTheirNumber)
{
    document.SetTexts(EditKind::Paste, {{{0, 1}, u"1"}, {{1, 1}, u"2"}, {{2, 1}, u"3"}});
    EXPECT_EQ(document.UndoName(), u"Paste (3 cells)");
    document.Undo();
    EXPECT_EQ(Text({2, 1}), u"9");
    EXPECT_EQ(document.UndoName(), std::nullopt);
}

TEST_F(RecipeDocument, EachKindOfEditHasItsName)
{
    const std::pair<EditKind, const char16_t*> kinds[] = {
        {EditKind::Typing, u"Typing"},
        {EditKind::Paste, u"Paste"},
        {EditKind::Cut, u"Cut"},
        {EditKind::Clear, u"Clear"},
        {EditKind::BitBrowser, u"BitBrowse"},
        {EditKind::Reading, u"Reading again"},
        {EditKind::AddItem, u"Add DataItem"},
        {EditKind::ModifyItem, u"Modify DataItem"},
        {EditKind::DeleteItem, u"Del DataItem"},
        {EditKind::DeleteAllItems, u"Del All DataItem"},
        {EditKind::KeepAllItems, u"Keep all"},
        {EditKind::AddFormat, u"Add Dataformat"},
        {EditKind::DeleteFormat, u"Delete cur Dataformat"},
    };
    for (const auto& [kind, name] : kinds)
        EXPECT_EQ(NameOf({kind, {}}), name);
}

TEST_F(RecipeDocument, ACellThatStandsTwiceGetsTheLastText)
{
    document.SetTexts(EditKind::Paste, {{{1, 1}, u"1"}, {{0, 1}, u"2"}, {{1, 1}, u"3"}});
    EXPECT_EQ(Text({1, 1}), u"3");
    document.Undo();
    EXPECT_EQ(Text({1, 1}), u"8");
}

TEST_F(RecipeDocument, CellsOutsideTheRowsAreLeftOut)
{
    EXPECT_EQ(document.SetTexts(EditKind::Paste, {{{3, 0}, u"1"}, {{0, 2}, u"1"}, {{-1, 0}, u"1"}}),
              EditOutcome::Nothing);
    EXPECT_FALSE(document.IsModified());
    EXPECT_EQ(document.UndoName(), std::nullopt);
}

TEST_F(RecipeDocument, OneCanUndoPastASaveAndTheCellIsEditedThen)
{
    Type({0, 1}, u"12");
    ASSERT_TRUE(Save());
    EXPECT_FALSE(document.IsModified());
    document.Undo();
    EXPECT_EQ(Text({0, 1}), u"7");
    EXPECT_TRUE(document.IsModified());
    EXPECT_TRUE(document.Rows().IsEdited(0, 1));
    document.Redo();
    EXPECT_FALSE(document.IsModified());
    EXPECT_EQ(document.Rows().EditedCount(), 0u);
}

TEST_F(RecipeDocument, TheSavedStateCannotBeReachedAfterAnotherEdit)
{
    Type({0, 1}, u"12");
    ASSERT_TRUE(Save());
    document.Undo();
    Type({0, 1}, u"13");
    document.Undo();
    EXPECT_TRUE(document.IsModified()); // the file holds 12
    EXPECT_EQ(Text({0, 1}), u"7");
}

TEST_F(RecipeDocument, WhatAReadingDropsComesBackWithItsEdits)
{
    Type({0, 1}, u"12");
    EXPECT_EQ(Read(), CRecipeDocument::Reading::Done);
    EXPECT_EQ(Text({0, 1}), u"7");
    EXPECT_TRUE(document.IsModified()); // kept: reading does not clear it
    EXPECT_EQ(document.UndoName(), u"Reading again");
    const EditReport report = document.Undo();
    EXPECT_TRUE(report.hasOtherRows);
    EXPECT_EQ(report.cells, (std::vector<CellPlace>{{0, 1}}));
    EXPECT_EQ(Text({0, 1}), u"12");
    EXPECT_TRUE(document.Rows().IsEdited(0, 1));
    document.Undo();
    EXPECT_FALSE(document.IsModified());
}

TEST_F(RecipeDocument, RowsThatWereAwayDuringASaveAreEditedWhereTheyDifferFromIt)
{
    Type({1, 1}, u"5");
    Read();
    Type({0, 1}, u"12");
    ASSERT_TRUE(Save());
    document.Undo(); // the typing
    EXPECT_EQ(document.Rows().EditedPlaces(), (std::vector<CellPlace>{{0, 1}}));
    const EditReport report = document.Undo(); // the reading
    EXPECT_EQ(report.cells, (std::vector<CellPlace>{{0, 1}, {1, 1}}));
    EXPECT_EQ(Text({0, 1}), u"7");
    EXPECT_EQ(Text({1, 1}), u"5");
    EXPECT_TRUE(document.IsModified());
    document.Redo();
    document.Redo();
    EXPECT_EQ(document.Rows().EditedCount(), 0u);
    EXPECT_FALSE(document.IsModified());
}

TEST_F(RecipeDocument, RowsOfAnotherLayoutAreEditedWhereTheyDifferFromTheFile)
{
    document.TakeSettings({MakeFormat(u"Words", {MakeItem(u"W", DataType::Signed16, 1, 4)}), 2, 1});
    Read();
    Type({0, 0}, u"77"); // the first number of the other layout
    ASSERT_TRUE(Save());
    document.Undo();
    document.Undo();
    EXPECT_EQ(document.Rows().EditedPlaces(), (std::vector<CellPlace>{{0, 1}}));
    EXPECT_TRUE(document.IsModified());
}

TEST_F(RecipeDocument, ASavedReadingThatIsUndoneLeavesNothingToSave)
{
    Read();
    ASSERT_TRUE(Save());
    document.Undo();
    EXPECT_EQ(document.Rows().EditedCount(), 0u);
    EXPECT_FALSE(document.IsModified());
}

TEST_F(RecipeDocument, AReadingThatIsMadeAgainAfterASaveIsModifiedWhereItDiffers)
{
    Type({0, 1}, u"12");
    Read(); // shows 7 again
    ASSERT_TRUE(Save());
    document.Undo();
    ASSERT_TRUE(Save()); // 12
    document.Redo();
    EXPECT_EQ(Text({0, 1}), u"7");
    EXPECT_TRUE(document.IsModified());
}

TEST_F(RecipeDocument, NothingIsAsSavedAfterASaveThatBrokeOff)
{
    Type({0, 1}, u"12");
    {
        const CFileSizeLimit limit(8);
        const SaveResult result = document.Write(FileType::Rcp, path, reporter, progress);
        ASSERT_TRUE(result.mayHoldOldAndNew);
    }
    document.Undo();
    EXPECT_TRUE(document.IsModified());
    ASSERT_TRUE(Save());
    EXPECT_FALSE(document.IsModified());
    EXPECT_EQ(ReadAll(path).size(), words.size());
}

TEST_F(RecipeDocument, WithoutRowsBeforeAndAfterThereIsNothingToUndo)
{
    document.ClearRows();
    document.ClearRows();
    document.Undo();
    EXPECT_EQ(document.Rows().RowCount(), 3);
    EXPECT_EQ(document.UndoName(), std::nullopt);
}

TEST_F(RecipeDocument, AReadingThroughAnotherLayoutComesBackWithItsSettings)
{
    const DataFormat other = MakeFormat(u"Words", {MakeItem(u"W", DataType::Signed16, 1, 4)});
    document.TakeSettings({other, 2, 5});
    Read();
    EXPECT_EQ(document.Rows().Columns().size(), 1u);
    document.Undo();
    EXPECT_EQ(document.Rows().Columns().size(), 2u);
    EXPECT_EQ(TextOf(document.Settings().format.name), u"Two");
    EXPECT_EQ(document.Settings().startAddress, 0);
    EXPECT_EQ(document.Settings().rowCount, 3);
    document.Redo();
    EXPECT_EQ(document.Settings().startAddress, 2);
    EXPECT_EQ(TextOf(document.Format().name), u"Words");
}

TEST_F(RecipeDocument, AReadingOfTheSameBytesSharesThem)
{
    const void* source = document.Rows().SourceId();
    Read();
    EXPECT_EQ(document.Rows().SourceId(), source);
    words[0] = std::byte{1};
    WriteAll(path, words);
    Read();
    EXPECT_NE(document.Rows().SourceId(), source);
}

TEST_F(RecipeDocument, ClearedRowsComeBack)
{
    Type({0, 1}, u"12");
    document.ClearRows();
    EXPECT_EQ(document.Rows().RowCount(), 0);
    EXPECT_FALSE(document.HasRowsOfFile());
    document.Undo();
    EXPECT_EQ(Text({0, 1}), u"12");
    EXPECT_TRUE(document.HasRowsOfFile());
}

TEST_F(RecipeDocument, AReadingThatFailedComesBackToo)
{
    Type({0, 1}, u"12");
    std::filesystem::remove(path);
    EXPECT_EQ(Read(), CRecipeDocument::Reading::Failed);
    EXPECT_EQ(reporter.shown.size(), 1u);
    EXPECT_FALSE(document.HasRowsOfFile());
    document.Undo();
    EXPECT_EQ(Text({0, 1}), u"12");
    EXPECT_TRUE(document.HasRowsOfFile());
}

TEST_F(RecipeDocument, AReadingWithoutEditsDoesNotMakeTheDocumentModified)
{
    Read();
    EXPECT_FALSE(document.IsModified());
    document.Undo();
    EXPECT_FALSE(document.IsModified());
    document.Redo();
    EXPECT_FALSE(document.IsModified());
}

TEST_F(RecipeDocument, DroppedChangesComeBackAsUnsaved)
{
    Type({0, 1}, u"12");
    Read();
    document.MarkUnmodified();
    EXPECT_FALSE(document.IsUnsaved());
    document.Undo();
    EXPECT_TRUE(document.IsUnsaved());
    EXPECT_EQ(Text({0, 1}), u"12");
}

TEST_F(RecipeDocument, OpenAndNewEndTheHistory)
{
    Type({0, 1}, u"12");
    Open();
    EXPECT_EQ(document.UndoName(), std::nullopt);
    EXPECT_TRUE(document.IsModified()); // kept: opening clears no flag
    Type({0, 1}, u"13");
    document.Undo();
    EXPECT_TRUE(document.IsModified()); // no state of this history was saved
    document.StartNew();
    EXPECT_EQ(document.UndoName(), std::nullopt);
    EXPECT_EQ(document.RedoName(), std::nullopt);
    EXPECT_TRUE(document.IsNew());
    EXPECT_TRUE(document.Path().empty());
}

TEST_F(RecipeDocument, AFormatCommandAndItsReadingAreOneEdit)
{
    {
        CRecipeDocument::CGroup group(document, EditKind::ModifyItem);
        document.NoteFormatChange(EditKind::ModifyItem, RenameTo(u"Renamed"));
        document.TakeSettings({*store.Library().formats[0], 0, 2});
        Read();
    }
    EXPECT_EQ(document.UndoName(), u"Modify DataItem");
    const EditReport report = document.Undo();
    EXPECT_TRUE(report.hasOtherRows);
    EXPECT_EQ(report.format, 0u);
    EXPECT_EQ(FormatName(), u"Two");
    EXPECT_EQ(document.Rows().RowCount(), 3);
    EXPECT_EQ(document.UndoName(), std::nullopt);
    document.Redo();
    EXPECT_EQ(FormatName(), u"Renamed");
    EXPECT_EQ(document.Rows().RowCount(), 2);
}

TEST_F(RecipeDocument, AGroupWithoutAnEditIsNone)
{
    {
        CRecipeDocument::CGroup group(document, EditKind::ModifyItem);
    }
    EXPECT_EQ(document.UndoName(), std::nullopt);
}

TEST_F(RecipeDocument, AFormatThatIsAnotherByNowIsLeftAloneAndTold)
{
    {
        CRecipeDocument::CGroup group(document, EditKind::ModifyItem);
        document.NoteFormatChange(EditKind::ModifyItem, RenameTo(u"Renamed"));
        document.TakeSettings({*store.Library().formats[0], 0, 2});
        Read();
    }
    RenameTo(u"By others");
    const EditReport report = document.Undo();
    EXPECT_TRUE(report.isFormatLeftAlone);
    EXPECT_EQ(report.format, std::nullopt);
    EXPECT_EQ(FormatName(), u"By others");
    EXPECT_EQ(document.Rows().RowCount(), 3); // the reading came back all the same
    EXPECT_FALSE(document.Redo().isFormatLeftAlone);
    EXPECT_EQ(FormatName(), u"By others");
}

TEST_F(RecipeDocument, AnEditOfWhichNothingIsLeftIsForgotten)
{
    Type({0, 1}, u"12");
    document.NoteFormatChange(EditKind::ModifyItem, RenameTo(u"Renamed"));
    RenameTo(u"By others");
    const EditReport report = document.Undo();
    EXPECT_EQ(report.outcome, EditOutcome::Dropped);
    EXPECT_TRUE(report.isFormatLeftAlone);
    EXPECT_EQ(report.name, u"Modify DataItem");
    EXPECT_EQ(document.UndoName(), u"Typing");
    EXPECT_EQ(document.RedoName(), std::nullopt);
    EXPECT_EQ(FormatName(), u"By others");
}

TEST_F(RecipeDocument, ARedoOfWhichNothingIsLeftIsForgotten)
{
    document.NoteFormatChange(EditKind::ModifyItem, RenameTo(u"Renamed"));
    document.Undo();
    RenameTo(u"By others");
    EXPECT_EQ(document.Redo().outcome, EditOutcome::Dropped);
    EXPECT_EQ(document.RedoName(), std::nullopt);
    EXPECT_EQ(document.UndoName(), std::nullopt);
}

TEST_F(RecipeDocument, AFormatThatCameGoesAndComesAgain)
{
    document.NoteFormatChange(EditKind::AddFormat, store.AppendFormat(MakeFormat(u"More", {DefaultItem()})));
    document.Undo();
    EXPECT_EQ(store.Library().formats.size(), 1u);
    document.Redo();
    ASSERT_EQ(store.Library().formats.size(), 2u);
    EXPECT_EQ(TextOf(store.Library().formats[1]->name), u"More");
}

TEST_F(RecipeDocument, AFormatThatWentComesBackToItsPlace)
{
    document.NoteFormatChange(EditKind::DeleteFormat, store.RemoveFormat(0));
    EXPECT_TRUE(store.Library().formats.empty());
    document.Undo();
    ASSERT_EQ(store.Library().formats.size(), 1u);
    EXPECT_EQ(FormatName(), u"Two");
}

TEST_F(RecipeDocument, ACommandOnFormatsLeavesModifiedAsItIs)
{
    document.NoteFormatChange(EditKind::ModifyItem, RenameTo(u"Renamed"));
    EXPECT_FALSE(document.IsModified());
    ASSERT_TRUE(Save());
    document.Undo();
    EXPECT_FALSE(document.IsModified());
}

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

} // namespace
