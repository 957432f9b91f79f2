#include "changes/SaveRecords.h"
#include "tests/document/RandomRecipe.h"

#include <chrono>
#include <set>

// That the plan of a save is the save, for random formats, files and edits of each type.

namespace {

using Places = std::set<CellPlace>;

constexpr FileType kWordTypes[] = {FileType::Rcp, FileType::Erp, FileType::Frp};

void FinishPlan(CRecipeDocument& document)
{
    EXPECT_TRUE(document.ContinuePlan(std::chrono::steady_clock::time_point::max()));
    EXPECT_TRUE(document.Plan().IsFinished());
}

ChangeSubject SubjectOf(const CRecipeDocument& document)
{
    return {document.Path(), std::u16string(TextOf(document.Format().name))};
}

std::vector<ChangeRecord> RecordsOf(const CChangeList& list)
{
    std::vector<ChangeRecord> records;
    for (std::size_t i = 0; i < list.Count(); ++i)
        records.push_back(list.At(i));
    return records;
}

std::size_t FirstByte(const ChangeRecord& record)
{
    return 2 * static_cast<std::size_t>(record.address->number);
}

/// What a file that held `bytes` holds once the changes are made; each must find its old words.
Bytes Applied(Bytes bytes, const std::vector<ChangeRecord>& records, std::int64_t newBytes)
{
    const std::size_t before = bytes.size();
    bytes.resize(static_cast<std::size_t>(newBytes));
    for (const ChangeRecord& record : records) {
        const std::size_t first = FirstByte(record);
        if (record.zeros > 0) {
            EXPECT_GE(first, before);
            EXPECT_LE(first + 2 * static_cast<std::size_t>(record.zeros), bytes.size());
            continue;
        }
        const std::size_t end = std::min(before, first + record.newWords.size());
        const WordRun old(bytes.begin() + static_cast<std::ptrdiff_t>(std::min(first, end)),
                          bytes.begin() + static_cast<std::ptrdiff_t>(end));
        EXPECT_EQ(record.oldWords, old) << "at word " << record.address->number;
        EXPECT_NE(record.oldWords, record.newWords);
        std::copy(record.newWords.begin(), record.newWords.end(), bytes.begin() + static_cast<std::ptrdiff_t>(first));
    }
    return bytes;
}

class SavePlanOf : public testing::TestWithParam<FileType> {
protected:
    static constexpr unsigned kSeeds = 400;

    static bool Save(CRandomRecipe& recipe)
    {
        CRecipeDocument& document = recipe.document;
        return document.Write(document.Type(), document.Path(), recipe.reporter, recipe.progress).isSaved;
    }

    static bool SaveEdited(CRandomRecipe& recipe)
    {
        return recipe.document.WriteEdited(recipe.reporter, recipe.progress).isSaved;
    }

    static bool PutBack(CRandomRecipe& recipe)
    {
        std::size_t count = 0;
        return recipe.document.PutBackStored(recipe.reporter, recipe.progress, count).isSaved;
    }

    /// Mostly an edit, seldom a save.
    void RandomStep(CRandomRecipe& recipe) const
    {
        CRecipeDocument& document = recipe.document;
        const int step = recipe.Below(240);
        if (step == 0)
            EXPECT_TRUE(Save(recipe));
        else if (step == 1)
            EXPECT_TRUE(SaveEdited(recipe));
        else if (step == 2) {
            const bool isOffered = document.StoredAsShown() != nullptr;
            EXPECT_EQ(PutBack(recipe), isOffered);
        } else if (step == 3)
            EXPECT_EQ(document.Read(GetParam(), recipe.reporter, recipe.progress), CRecipeDocument::Reading::Done);
        else if (step < 30)
            document.KeepStored(std::array{recipe.RandomPlace()});
        else if (step < 60)
            document.Undo();
        else if (step < 80)
            document.Redo();
        else
            recipe.Edit();
    }
};

INSTANTIATE_TEST_SUITE_P(WordTypes, SavePlanOf, testing::ValuesIn(kWordTypes));

TEST_P(SavePlanOf, AFileOfWordsIsTheDifferenceOfItsBytes)
{
    for (unsigned seed = 0; seed < kSeeds; ++seed) {
        SCOPED_TRACE(seed);
        CRandomRecipe recipe(seed, GetParam());
        for (int i = recipe.Below(4); i > 0; --i)
            recipe.Edit();
        FinishPlan(recipe.document);
        const CPlannedChanges plan(recipe.document.Plan(), SubjectOf(recipe.document));
        const auto records = RecordsOf(plan);
        const ChangeHeader header = plan.Header();
        const Bytes before = recipe.Content();
        EXPECT_EQ(header.bytes, std::ssize(before));
        const std::size_t unedited = recipe.document.Plan().CountOfUneditedValues();
        ASSERT_TRUE(Save(recipe));
        const auto& changed = recipe.document.StoredAsShown();
        EXPECT_EQ(changed ? changed->UneditedCount() : 0, unedited);
        EXPECT_EQ(header.newBytes, std::ssize(recipe.Content()));
        EXPECT_EQ(Applied(before, records, header.newBytes.value_or(0)), recipe.Content());
    }
}

TEST_P(SavePlanOf, AFileOfWordsForetellsHowItReadsAgain)
{
    for (unsigned seed = 0; seed < kSeeds; ++seed) {
        SCOPED_TRACE(seed);
        CRandomRecipe recipe(seed, GetParam());
        recipe.Edit();
        FinishPlan(recipe.document);
        const auto records = RecordsOf(CPlannedChanges(recipe.document.Plan(), SubjectOf(recipe.document)));
        ASSERT_TRUE(Save(recipe));
        const CStoredCells stored = ReadStoredCells(recipe.document.Rows(), GetParam(), recipe.Path());
        for (const ChangeRecord& record : records)
            if (record.row) {
                EXPECT_EQ(record.reads.value_or(*record.newText),
                          stored.Cells().Text(*record.row - 1, static_cast<std::size_t>(*record.column - 2)));
            }
    }
}

TEST_P(SavePlanOf, TheEditedCellsAloneChangesNoOtherByte)
{
    for (unsigned seed = 0; seed < kSeeds; ++seed) {
        SCOPED_TRACE(seed);
        CRandomRecipe recipe(seed, GetParam());
        for (int i = recipe.Below(4); i > 0; --i)
            recipe.Edit();
        const CEditedChanges plan(recipe.document.Rows(), recipe.document.Stored(), SubjectOf(recipe.document));
        const auto records = RecordsOf(plan);
        const std::int64_t newBytes = plan.Header().newBytes.value_or(0);
        const Bytes before = recipe.Content();
        ASSERT_TRUE(SaveEdited(recipe));
        EXPECT_EQ(Applied(before, records, newBytes), recipe.Content());
        for (const ChangeRecord& record : records)
            EXPECT_EQ(record.why, record.row ? ChangeReason::Edited : ChangeReason::End);
        EXPECT_EQ(recipe.document.Rows().EditedCount(), 0u);
    }
}

TEST_P(SavePlanOf, WhatWasPutBackIsAsBeforeButForTheEditedCells)
{
    for (unsigned seed = 0; seed < kSeeds; ++seed) {
        SCOPED_TRACE(seed);
        CRandomRecipe recipe(seed, GetParam());
        CRandomRecipe twin(seed, GetParam());
        for (int i = recipe.Below(4); i > 0; --i)
            recipe.Edit();
        for (int i = twin.Below(4); i > 0; --i)
            twin.Edit();
        ASSERT_TRUE(Save(recipe));
        if (!recipe.document.StoredAsShown())
            continue;
        ASSERT_TRUE(PutBack(recipe));
        ASSERT_TRUE(SaveEdited(twin));
        Bytes alone = twin.Content();
        if (IsPaged(GetParam())) // pages that came to be stay
            alone.resize(recipe.Content().size());
        EXPECT_EQ(recipe.Content(), alone);
        EXPECT_EQ(recipe.document.StoredAsShown(), nullptr);
    }
}

TEST_P(SavePlanOf, APlanIsAsOneMadeAnewAfterEachStep)
{
    CRandomRecipe recipe(77, GetParam());
    CRecipeDocument& document = recipe.document;
    for (int step = 0; step < 10'000; ++step) {
        RandomStep(recipe);
        FinishPlan(document);
        CSavePlan fresh;
        const CStoredCells stored = ReadStoredCells(document.Rows(), GetParam(), recipe.Path());
        fresh.Begin(document.Rows(), stored, recipe.Path(), false);
        ASSERT_EQ(fresh.Finish(recipe.progress), Outcome::Done);
        ASSERT_EQ(document.Plan().Changes(), fresh.Changes()) << "step " << step;
        ASSERT_EQ(document.Plan().CountOfUnedited(), fresh.CountOfUnedited());
        ASSERT_EQ(document.Plan().CountOf(ChangeReason::Edited), fresh.CountOf(ChangeReason::Edited));
    }
}

class SavePlanOfTable : public SavePlanOf {};

INSTANTIATE_TEST_SUITE_P(Table, SavePlanOfTable, testing::Values(FileType::Csv));

TEST_P(SavePlanOfTable, IsTheDifferenceOfWhatReadingShows)
{
    for (unsigned seed = 0; seed < kSeeds; ++seed) {
        SCOPED_TRACE(seed);
        CRandomRecipe recipe(seed, FileType::Csv);
        for (int i = recipe.Below(4); i > 0; --i)
            recipe.Edit();
        FinishPlan(recipe.document);
        const CPlannedChanges plan(recipe.document.Plan(), SubjectOf(recipe.document));
        const auto records = RecordsOf(plan);
        const ChangeHeader header = plan.Header();
        const Bytes bytes = recipe.Content();
        const CStoredCells before = ReadStoredCells(recipe.document.Rows(), FileType::Csv, recipe.Path());
        ASSERT_TRUE(Save(recipe));
        EXPECT_EQ(header.bytes, std::ssize(bytes));
        EXPECT_EQ(header.newBytes, std::ssize(recipe.Content()));
        EXPECT_EQ(records.empty(), recipe.Content() == bytes);
        const CStoredCells after = ReadStoredCells(recipe.document.Rows(), FileType::Csv, recipe.Path());
        Places foretold;
        for (const ChangeRecord& record : records) {
            if (!record.row || record.why == ChangeReason::Rows)
                continue;
            const CellPlace place{*record.row - 1, static_cast<std::uint32_t>(*record.column - 2)};
            foretold.insert(place);
            EXPECT_EQ(record.reads.value_or(*record.newText), after.Cells().Text(place.row, place.column));
            EXPECT_EQ(record.oldText.has_value(), before.HasField(place));
        }
        for (std::int32_t row = 0; row < before.Cells().RowCount(); ++row)
            for (std::uint32_t column = 0; column < before.Cells().Columns().size(); ++column) {
                const bool differs = !before.HasField({row, column}) ||
                                     before.Cells().Text(row, column) != after.Cells().Text(row, column);
                EXPECT_EQ(foretold.contains({row, column}), differs) << row << ' ' << column;
            }
    }
}

TEST_P(SavePlanOfTable, PutsBackTheBytesOfBefore)
{
    int count = 0;
    for (unsigned seed = 0; seed < kSeeds; ++seed) {
        SCOPED_TRACE(seed);
        CRandomRecipe recipe(seed, FileType::Csv);
        const Bytes before = recipe.Content();
        ASSERT_TRUE(Save(recipe));
        if (!recipe.document.StoredAsShown())
            continue;
        ASSERT_TRUE(PutBack(recipe));
        EXPECT_EQ(recipe.Content(), before);
        ++count;
    }
    EXPECT_GT(count, 100);
}

} // namespace

TEST_P(SavePlanOfTable, FollowsTextsWithATabInThem)
{
    for (unsigned seed = 0; seed < kSeeds; ++seed) {
        SCOPED_TRACE(seed);
        CRandomRecipe recipe(seed, FileType::Csv);
        CRecipeDocument& document = recipe.document;
        for (int step = 0; step < 8; ++step) {
            FinishPlan(document);
            const TextForCell text{recipe.RandomPlace(), step % 3 == 2 ? u"5" : u"A\tB"};
            ASSERT_EQ(document.SetTexts(EditKind::Typing, {text}), EditOutcome::Made);
            FinishPlan(document);
            CSavePlan fresh;
            const CStoredCells stored = ReadStoredCells(document.Rows(), FileType::Csv, recipe.Path());
            fresh.Begin(document.Rows(), stored, recipe.Path(), false);
            ASSERT_EQ(fresh.Finish(recipe.progress), Outcome::Done);
            ASSERT_EQ(document.Plan().Changes(), fresh.Changes()) << "step " << step;
        }
    }
}
