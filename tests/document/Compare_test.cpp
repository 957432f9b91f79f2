// That a comparison of the open recipe with another file tells just what differs, whatever is edited, undone, saved and
// read again: against bytes and texts that are compared one by one.

#include "changes/ChangeLines.h"
#include "changes/SaveRecords.h"
#include "tests/document/RandomRecipe.h"

#include <chrono>
#include <map>
#include <set>

namespace fs = std::filesystem;

namespace {

constexpr FileType kTypes[] = {FileType::Rcp, FileType::Csv, FileType::Erp, FileType::Frp};
constexpr auto kNever = std::chrono::steady_clock::time_point::max();

/// Bytes of a file of words from one on to another, those that it does not have left out.
Bytes Part(const Bytes& bytes, std::uint64_t begin, std::uint64_t end, bool isPaged)
{
    Bytes part;
    for (std::uint64_t i = begin; i < end; ++i)
        if (i < bytes.size())
            part.push_back(bytes[static_cast<std::size_t>(i)]);
        else if (isPaged)
            part.push_back(std::byte{0});
    return part;
}

class CompareOf : public testing::TestWithParam<FileType> {
protected:
    /// A file of type ".erp" has a mebibyte to look at.
    static unsigned Seeds() { return GetParam() == FileType::Erp ? 8 : 60; }
    static constexpr int kSteps = 25;

    bool IsTable() const { return GetParam() == FileType::Csv; }

    /// The recipe's own file, or what it was before some saves, or another one of the same type.
    fs::path MakeOther(CRandomRecipe& recipe, unsigned seed) const
    {
        const fs::path other = recipe.Path().parent_path() / ("other" + recipe.Path().extension().string());
        if (recipe.Below(3) == 0) {
            const CRandomRecipe another(seed + 1000, GetParam());
            fs::copy_file(another.Path(), other);
        } else {
            fs::copy_file(recipe.Path(), other);
            recipe.Edit();
            EXPECT_TRUE(recipe.document.Write(GetParam(), recipe.Path(), recipe.reporter, recipe.progress).isSaved);
        }
        return other;
    }

    /// What the cell stands for in the window, as bytes, found the long way.
    Bytes WordsNow(CRandomRecipe& recipe, const Bytes& file, CellPlace place) const
    {
        const CRecipeRows& rows = recipe.document.Rows();
        if (rows.IsEdited(place.row, place.column)) {
            CCellComparison cells(rows, recipe.document.Stored(), false);
            const auto words = cells.NewWords(place);
            return {words.begin(), words.end()};
        }
        const std::uint64_t begin = rows.FirstByte().number + rows.BytesBefore(place);
        return Part(file, begin, begin + BytesOfCell(rows, place), IsPaged(GetParam()));
    }

    std::optional<std::u16string> TextNow(const CRecipeDocument& document, CellPlace place) const
    {
        const CRecipeRows& rows = document.Rows();
        if (!rows.IsEdited(place.row, place.column) && !document.Stored().HasField(place))
            return std::nullopt;
        return rows.IsEdited(place.row, place.column) ? rows.Text(place.row, place.column)
                                                      : document.Stored().Cells().Text(place.row, place.column);
    }

    void ExpectTrue(CRandomRecipe& recipe, const fs::path& other)
    {
        CRecipeDocument& document = recipe.document;
        ASSERT_NE(document.Comparison(), nullptr);
        EXPECT_TRUE(document.ContinueComparison(kNever));
        const CComparedChanges changes(document.Comparison());
        const CRecipeRows& rows = document.Rows();
        const Bytes ours = IsTable() ? Bytes() : recipe.Content();
        const Bytes theirs = IsTable() ? Bytes() : ContentOf(GetParam(), other);
        CRecipeRows table = rows;
        CNoProgress progress;
        CRecordingReporter reporter;
        EXPECT_EQ(ReadRecipeOnly(GetParam(), table, other, reporter, progress), Outcome::Done);

        std::set<CellPlace> expected;
        for (CellPlace place{0, 0}; place.row < rows.RowCount(); ++place.row)
            for (place.column = 0; place.column < rows.Columns().size(); ++place.column) {
                const std::uint64_t begin = rows.FirstByte().number + rows.BytesBefore(place);
                const bool differs =
                    IsTable() ? TextNow(document, place) != (table.HasField(place)
                                                                 ? std::optional(table.Text(place.row, place.column))
                                                                 : std::nullopt)
                              : WordsNow(recipe, ours, place) !=
                                    Part(theirs, begin, begin + BytesOfCell(rows, place), IsPaged(GetParam()));
                EXPECT_EQ(document.Comparison()->Differs(place), differs);
                if (differs)
                    expected.insert(place);
            }
        std::set<CellPlace> listed;
        std::map<std::int64_t, int> outside; // word, and how often it is told
        for (std::size_t i = 0; i < changes.Count(); ++i) {
            const ChangeRecord record = changes.At(i);
            if (const auto place = changes.PlaceOf(i))
                listed.insert(*place);
            else
                for (std::int64_t word = 0; word < WordsIn(record); ++word)
                    ++outside[record.address->number + word];
        }
        EXPECT_EQ(listed, expected);
        if (!IsTable())
            ExpectOutside(rows, ours, theirs, outside);
    }

    static std::int64_t WordsIn(const ChangeRecord& record)
    {
        if (record.zeros != 0)
            return std::abs(record.zeros);
        EXPECT_NE(record.oldWords, record.newWords);
        return static_cast<std::int64_t>((std::max(record.oldWords.size(), record.newWords.size()) + 1) / 2);
    }

    void ExpectOutside(const CRecipeRows& rows, const Bytes& ours, const Bytes& theirs,
                       const std::map<std::int64_t, int>& told) const
    {
        std::map<std::int64_t, int> outside;
        const bool isPaged = IsPaged(GetParam());
        const std::size_t both = std::min(ours.size(), theirs.size()) / 2 * 2;
        const std::size_t end = std::max(ours.size(), theirs.size());
        const std::size_t begin = static_cast<std::size_t>(rows.FirstByte().number);
        const std::size_t behind = begin + static_cast<std::size_t>(rows.StretchBytes());
        for (std::size_t at = 0; at < end; at += 2) {
            const bool isAlike = at < both ? ours[at] == theirs[at] && ours[at + 1] == theirs[at + 1]
                                           : Part(ours, at, at + 2, isPaged) == Part(theirs, at, at + 2, isPaged);
            if (!isAlike && (at < begin || at >= behind))
                outside[static_cast<std::int64_t>(at / 2)] = 1;
        }
        EXPECT_EQ(told, outside);
    }

    void RandomStep(CRandomRecipe& recipe) const
    {
        CRecipeDocument& document = recipe.document;
        switch (recipe.Below(12)) {
        case 0:
            document.Write(GetParam(), document.Path(), recipe.reporter, recipe.progress);
            break;
        case 1:
            document.WriteEdited(recipe.reporter, recipe.progress);
            break;
        case 2:
            EXPECT_EQ(document.Read(GetParam(), recipe.reporter, recipe.progress), CRecipeDocument::Reading::Done);
            break;
        case 3:
        case 4:
            document.Undo();
            break;
        case 5:
            document.Redo();
            break;
        case 6:
            document.ContinueComparison(std::chrono::steady_clock::now());
            break;
        case 7:
            TakeOver(recipe);
            break;
        default:
            recipe.Edit();
        }
    }

    static void TakeOver(CRandomRecipe& recipe, bool isAll = false)
    {
        const CComparedChanges changes(recipe.document.Comparison());
        std::vector<CellEdit> edits;
        for (std::size_t i = 0; i < changes.Count(); ++i) {
            const ChangeRecord record = changes.At(i);
            const auto place = changes.PlaceOf(i);
            if (!place || (!isAll && recipe.Below(2) == 0))
                continue;
            if (record.newWords.empty() && record.newText)
                edits.push_back({*place, CCellState::OfText(*record.newText)});
            else if (!record.newWords.empty() && record.newWords.size() % 2 == 0)
                edits.push_back({*place, CCellState::OfWords(WordsOf(record.newWords))});
        }
        recipe.document.TakeOver(std::move(edits));
    }
};

INSTANTIATE_TEST_SUITE_P(Types, CompareOf, testing::ValuesIn(kTypes));

TEST_P(CompareOf, AnotherFileIsTrueAfterEachStep)
{
    for (unsigned seed = 0; seed < Seeds() && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        CRandomRecipe recipe(seed, GetParam());
        const fs::path other = MakeOther(recipe, seed);
        ASSERT_EQ(recipe.document.CompareWith(other, recipe.reporter, recipe.progress), Outcome::Done);
        ExpectTrue(recipe, other);
        for (int step = 0; step < kSteps && !HasFailure(); ++step) {
            SCOPED_TRACE(step);
            RandomStep(recipe);
            if (recipe.Below(3) == 0)
                ExpectTrue(recipe, other);
        }
    }
}

TEST_P(CompareOf, TakingAllOverAndSavingItLeavesNoCellThatCanBeTakenOver)
{
    for (unsigned seed = 0; seed < Seeds() && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        CRandomRecipe recipe(seed, GetParam());
        const fs::path other = MakeOther(recipe, seed);
        ASSERT_EQ(recipe.document.CompareWith(other, recipe.reporter, recipe.progress), Outcome::Done);
        TakeOver(recipe, true);
        ExpectTrue(recipe, other);
        for (const CellPlace place : recipe.document.Comparison()->Places()) {
            const ChangeRecord left = recipe.document.Comparison()->RecordOf(place);
            // kept: what a table shows after a save may read otherwise again, and counts as saved
            const bool isShown = IsTable() && left.newText == recipe.document.Rows().Text(place.row, place.column);
            EXPECT_TRUE(left.newText == std::nullopt || left.newWords.size() % 2 != 0 || isShown);
        }
    }
}

/// Of what a comparison found in cells, those that a cell can have.
std::string PatchLines(const CComparedChanges& changes)
{
    std::string lines;
    AppendLine(changes.Header(), lines);
    for (std::size_t i = 0; i < changes.Count(); ++i) {
        const ChangeRecord record = changes.At(i);
        const bool isWhole = record.newText && record.newWords.size() % 2 == 0;
        if (changes.PlaceOf(i) && isWhole)
            AppendLine(record, lines);
    }
    return lines;
}

TEST_P(CompareOf, WhatItFoundIsAPatchForTheCellsThatIsAppliedWholeOrNotAtAll)
{
    unsigned applied = 0;
    for (unsigned seed = 0; seed < Seeds() && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        CRandomRecipe recipe(seed, GetParam());
        CRecipeDocument& document = recipe.document;
        const fs::path other = MakeOther(recipe, seed);
        recipe.Edit();
        ASSERT_EQ(document.CompareWith(other, recipe.reporter, recipe.progress), Outcome::Done);
        const std::string lines = PatchLines(CComparedChanges(document.Comparison()));
        WriteAll(other.parent_path() / "p.jsonl",
                 Bytes(std::as_bytes(std::span(lines)).begin(), std::as_bytes(std::span(lines)).end()));
        ReadCellPatch read;
        ASSERT_TRUE(document.ReadPatch(other.parent_path() / "p.jsonl", read, recipe.reporter, recipe.progress));
        if (!document.HasExactWords() && !IsTable())
            continue;
        ASSERT_EQ(read.fault, u"");
        if (read.patch.entries.empty())
            continue;
        ++applied;
        const auto entries = read.patch.entries;
        EXPECT_EQ(document.ApplyPatch(read.patch), EditOutcome::Made);
        for (const CellPatch::Entry& entry : entries)
            EXPECT_TRUE(!document.Comparison()->Differs(entry.place) || IsTable());
        EXPECT_EQ(document.ApplyPatch(read.patch), EditOutcome::Nothing); // the old values are gone
        document.Undo();
        const CellPlace last = entries.back().place;
        const bool isText = document.Rows().Columns()[last.column].dataType == DataType::String;
        document.SetTexts(EditKind::Typing, {{last, isText ? u"~" : u"1"}});
        std::shared_ptr<const CChangeList> others;
        if (document.ChangesBy(read.patch, others))
            continue; // it holds the old value again
        EXPECT_EQ(others->Count(), 1U);
        const std::u16string before = *document.UndoName();
        EXPECT_EQ(document.ApplyPatch(read.patch), EditOutcome::Nothing);
        EXPECT_EQ(document.UndoName(), before);
    }
    EXPECT_GT(applied, Seeds() / 4);
}

TEST_P(CompareOf, ItsOwnFileTellsWhatIsNotSaved)
{
    CRandomRecipe recipe(7, GetParam());
    CRecipeDocument& document = recipe.document;
    ASSERT_EQ(document.CompareWith(recipe.Path(), recipe.reporter, recipe.progress), Outcome::Done);
    EXPECT_EQ(document.Comparison()->Places().size(), 0u);
    const CellPlace place{0, 0};
    document.SetTexts(EditKind::Typing, {{place, u"3"}});
    const bool differs = document.Comparison()->Differs(place);
    EXPECT_EQ(document.Comparison()->Places().size(), differs ? 1u : 0u);
    EXPECT_TRUE(document.WriteEdited(recipe.reporter, recipe.progress).isSaved || IsTable());
    if (!IsTable())
        ExpectTrue(recipe, recipe.Path());
}

} // namespace
