#include "tests/document/DocumentFixture.h"
#include "tests/files/FileSizeLimit.h"

// The edits of the open recipe: what an undo brings back, and what counts as saved then.

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
