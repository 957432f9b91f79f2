// Random commands on many cells of files of every type, saved in every way: what was listed is what the file holds.

#include "document/OfferedEdits.h"
#include "files/RecipeFile.h"
#include "model/LittleEndian.h"
#include "model/StoredNumber.h"
#include "model/TypedValue.h"
#include "tests/document/RandomRecipe.h"

#include <map>
#include <memory>
#include <optional>
#include <set>

namespace {

struct CommandCase {
    FileType type;
    unsigned seeds;
    friend void PrintTo(const CommandCase& c, std::ostream* out) { *out << static_cast<int>(c.type); }
};

const std::array<const char16_t*, 8> kChanges{u"+1", u"-0.1", u"*2", u"/3", u"+0", u"*1", u"+0.05", u"*-1"};
const std::array<const char16_t*, 8> kTexts{u"1.15", u"0.05", u"7", u"-5", u"", u"AB", u"1e1", u"0.5"};

struct CommandsModel : testing::TestWithParam<CommandCase> {
    const CRecipeRows& Rows() const { return recipe->document.Rows(); }
    RecipeKind Kind() const { return IsPaged(recipe->document.Type()) ? RecipeKind::Paged : RecipeKind::Flat; }
    const ColumnCoding& Coding(CellPlace p) const { return Rows().Columns()[p.column]; }

    Bytes Content() const { return ContentOf(recipe->document.Type(), recipe->document.Path()); }

    Bytes WordsAt(const Bytes& content, CellPlace p, bool isCut = false) const
    {
        const std::size_t size = 2 * static_cast<std::size_t>(std::max(Coding(p).dataLength, 0));
        const auto begin = 2 * static_cast<std::size_t>(Rows().StartAddress()) + Rows().BytesBefore(p);
        Bytes words;
        for (std::size_t i = 0; i < size && (!isCut || begin + i < content.size()); ++i)
            words.push_back(begin + i < content.size() ? content[begin + i] : std::byte{0});
        return words;
    }

    CChosenCells RandomCells()
    {
        std::vector<CellRange> ranges;
        for (int i = recipe->Below(3); i >= 0; --i) {
            const CellPlace a = recipe->RandomPlace();
            const CellPlace b = recipe->RandomPlace();
            ranges.push_back({std::min(a.row, b.row), std::max(a.row, b.row), std::min(a.column, b.column),
                              std::max(a.column, b.column)});
        }
        return CChosenCells(ranges);
    }

    void SaveSomehow()
    {
        CRecipeDocument& d = recipe->document;
        CRecordingReporter silent;
        if (recipe->Below(4) == 0 && mine.empty() && d.MayWriteEdited(silent, recipe->progress))
            EXPECT_TRUE(d.WriteEdited(recipe->reporter, recipe->progress).isSaved);
        else
            EXPECT_TRUE(d.Write(d.Type(), d.Path(), recipe->reporter, recipe->progress).isSaved);
        d.MarkSaved();
    }

    void Anything()
    {
        CRecipeDocument& d = recipe->document;
        switch (recipe->Below(10)) {
        case 0:
        case 1:
        case 2:
            return recipe->Edit();
        case 3:
        case 4:
            return SaveSomehow();
        case 5:
            d.Undo();
            return;
        case 6:
            d.Redo();
            return;
        case 7:
            return OtherWrites();
        case 8:
            EXPECT_EQ(d.Read(d.Type(), recipe->reporter, recipe->progress), CRecipeDocument::Reading::Done);
            return;
        default:
            return SaveOtherwise();
        }
    }

    void OtherWrites()
    {
        CRecipeDocument& d = recipe->document;
        if (d.Type() != FileType::Rcp)
            return;
        Bytes bytes = ReadAll(d.Path());
        if (bytes.empty())
            return;
        for (int i = 0; i < 20; ++i)
            bytes[static_cast<std::size_t>(recipe->Below(static_cast<int>(bytes.size())))] =
                static_cast<std::byte>(recipe->Below(256));
        WriteAll(d.Path(), bytes);
        const FileLook look = d.Look();
        if (look.changes) {
            d.KeepShown(*look.changes);
            mine.insert(look.changes->places.begin(), look.changes->places.end());
        }
    }

    void SaveOtherwise()
    {
        static const std::array<const char*, 4> names{"o.rcp", "o.csv", "o.erp", "o.frp"};
        const int type = recipe->Below(4);
        CRecipeDocument& d = recipe->document;
        const auto path = d.Path().parent_path() / (std::to_string(copies++) + names[static_cast<std::size_t>(type)]);
        if (!d.SaveAs(static_cast<FileType>(type), path, recipe->reporter, recipe->progress).isSaved)
            ADD_FAILURE() << "not saved as";
    }

    std::shared_ptr<const CCellsCommand> RandomCommand()
    {
        CRecipeDocument& d = recipe->document;
        const char16_t* text = kTexts[static_cast<std::size_t>(recipe->Below(8))];
        change.reset();
        entered.reset();
        cells = RandomCells();
        switch (recipe->Below(5)) {
        case 0:
        case 1:
            change = ReadNumberChange(kChanges[static_cast<std::size_t>(recipe->Below(8))]);
            return std::make_shared<CCalculate>(*cells, *change);
        case 2:
            entered = text;
            return std::make_shared<CFillWithText>(*cells, text, CFillWithText::As::Entered);
        case 3:
            return std::make_shared<CFillWithText>(*cells, text, CFillWithText::As::Typed);
        default: {
            const std::int32_t last = Rows().RowCount() - 1;
            if (last == 0)
                return std::make_shared<CFillWithText>(*cells, text, CFillWithText::As::Typed);
            const auto lastColumn = static_cast<std::uint32_t>(Rows().Columns().size() - 1);
            return std::make_shared<CFillDown>(std::vector<FillDownBlock>{{0, {{1, last, 0, lastColumn}}}},
                                               CCellJudge(d.Rows(), d.Stored(), d.Type()));
        }
        }
    }

    /// Whether the cell goes on showing what another program wrote over.
    bool IsMine(const Bytes& content, CellPlace p) const
    {
        if (!mine.contains(p) || Rows().IsEdited(p.row, p.column))
            return false;
        if (Rows().State(p).IsExact())
            return BytesOfWords(Rows().State(p).Words()) != WordsAt(content, p);
        const std::u16string shown = Rows().Text(p.row, p.column);
        std::size_t pos = 0;
        return FormatValue(Coding(p), WordsAt(content, p, Kind() == RecipeKind::Flat), pos, Kind()) != shown &&
               BytesOfWords(JudgeTyped(Coding(p), Kind(), shown).words) != WordsAt(content, p);
    }

    /// The number that the cell has, by the file alone where it is not edited.
    std::optional<CDecimal> NumberNow(const Bytes& content, CellPlace p) const
    {
        const CCellState& state = Rows().State(p);
        if (!Rows().IsEdited(p.row, p.column) && !IsMine(content, p))
            return StoredNumber(Coding(p), WordsAt(content, p, Kind() == RecipeKind::Flat));
        if (state.IsExact())
            return StoredNumber(Coding(p), BytesOfWords(state.Words()));
        if (state.IsText())
            return NumberOfText(Coding(p), state.Text());
        return StoredNumber(
            Coding(p),
            BytesOfWords(
                JudgeTyped(Coding(p), Kind(), Rows().Text(p.row, p.column)).words)); // as a save stores what it shows
    }

    static std::map<CellPlace, ChangeRecord> RecordsOf(const COfferedEdits& offered)
    {
        std::map<CellPlace, ChangeRecord> records;
        for (std::size_t i = 0; i < offered.Count(); ++i)
            records[*offered.PlaceOf(i)] = offered.At(i);
        return records;
    }

    void Command()
    {
        CRecipeDocument& d = recipe->document;
        if (d.Type() == FileType::Csv || !d.HasExactWords())
            return TableCommand();
        const Bytes before = Content();
        const auto command = RandomCommand();
        COfferedEdits offered(d.Rows(), d.Stored(), d.Type(), command);
        ASSERT_EQ(offered.WorkOut(recipe->progress), Outcome::Done);
        const auto records = RecordsOf(offered);
        std::map<CellPlace, CDecimal> wanted;
        command->Cells().ForEach([&](CellPlace p) {
            if (!change)
                return true;
            const auto number = NumberNow(before, p);
            const auto record = records.find(p);
            const bool isRefused = record != records.end() && !record->second.newText;
            const auto changed = number ? std::optional(Changed(Coding(p), *number, *change)) : std::nullopt;
            if (changed && changed->fault == ChangeFault::None)
                wanted[p] = changed->number;
            EXPECT_EQ(isRefused, !wanted.contains(p)) << where << ' ' << p.row << ',' << p.column;
            return true;
        });
        for (const auto& [p, r] : records)
            if (r.oldWords.size() && !Rows().IsEdited(p.row, p.column) && !IsMine(before, p)) {
                EXPECT_EQ(Bytes(r.oldWords.begin(), r.oldWords.end()), WordsAt(before, p))
                    << where << " old " << p.row << ',' << p.column;
            }

        std::vector<CellEdit> edits;
        ASSERT_EQ(offered.TakeEdits(recipe->progress, edits), Outcome::Done);
        d.SetStates(EditKind::Calculate, std::move(edits));
        SaveSomehow();
        const Bytes after = Content();
        command->Cells().ForEach([&](CellPlace p) {
            Check(p, records, wanted, after);
            return true;
        });
    }

    void Check(CellPlace p, const std::map<CellPlace, ChangeRecord>& records, std::map<CellPlace, CDecimal>& wanted,
               const Bytes& after)
    {
        const Bytes words = WordsAt(after, p);
        const auto number = StoredNumber(Coding(p), words);
        const auto record = records.find(p);
        const bool isRefused = record != records.end() && !record->second.newText;
        const std::string at = where + " at " + std::to_string(p.row) + "," + std::to_string(p.column) + " type " +
                               std::to_string(static_cast<int>(Coding(p).dataType)) +
                               (record == records.end() ? " left" : " listed");
        if (isRefused)
            return;
        if (record != records.end() && !record->second.newWords.empty()) {
            EXPECT_EQ(Bytes(record->second.newWords.begin(), record->second.newWords.end()), words) << at;
        }

        if (record != records.end() && record->second.newWords.empty()) {
            EXPECT_EQ(BytesOfWords(JudgeTyped(Coding(p), Kind(), *record->second.newText).words), words) << at;
        }

        if (wanted.contains(p)) {
            EXPECT_EQ(BytesOfWords(Changed(Coding(p), wanted[p], {}).words), words) << at;
        }

        if (entered && !entered->empty() && Coding(p).dataType != DataType::String) {
            EXPECT_EQ(
                StoredNumber(Coding(p), BytesOfWords(Changed(Coding(p), *NumberOfText(Coding(p), *entered), {}).words)),
                number)
                << at;
        }
    }

    /// kept: a table of texts cuts or strips such ones.
    bool IsMarked(std::int32_t row) const
    {
        for (std::size_t column = 0; column < Rows().Columns().size(); ++column)
            if (Rows().Text(row, column).find_first_of(u"\t\n\r\"") != std::u16string::npos)
                return true;
        return false;
    }

    void TableCommand()
    {
        CRecipeDocument& d = recipe->document;
        const auto command = RandomCommand();
        COfferedEdits offered(d.Rows(), d.Stored(), d.Type(), command);
        ASSERT_EQ(offered.WorkOut(recipe->progress), Outcome::Done);
        const auto records = RecordsOf(offered);
        std::vector<CellEdit> edits;
        ASSERT_EQ(offered.TakeEdits(recipe->progress, edits), Outcome::Done);
        for (const auto& e : edits)
            EXPECT_TRUE(d.Type() != FileType::Csv || e.other.IsText()) << where;
        d.SetStates(EditKind::Calculate, std::move(edits));
        SaveSomehow();
        if (d.Type() != FileType::Csv)
            return;
        CRecipeDocument again;
        again.StartOpen(d.Path(), d.Type());
        again.TakeSettings(d.Settings());
        EXPECT_EQ(again.Read(d.Type(), recipe->reporter, recipe->progress), CRecipeDocument::Reading::Done);
        for (const auto& [p, r] : records)
            if (r.newText && !IsMarked(p.row)) {
                std::u16string text = again.Rows().Text(p.row, p.column);
                if (text.size() >= 2 && text.front() == u'"')
                    text = text.substr(1, text.size() - 2);
                EXPECT_EQ(text, *r.newText) << where << " table " << p.row << ',' << p.column;
            }
    }

    std::unique_ptr<CRandomRecipe> recipe;
    std::optional<NumberChange> change;
    std::optional<std::u16string> entered;
    std::optional<CChosenCells> cells;
    std::string where;
    std::set<CellPlace> mine; ///< of places that another program wrote over
    int copies = 0;
};

} // namespace

TEST_P(CommandsModel, StoresWhatItListed)
{
    for (unsigned seed = 1; seed <= GetParam().seeds && !HasFailure(); ++seed) {
        recipe = std::make_unique<CRandomRecipe>(seed, GetParam().type);
        mine.clear();
        for (int step = 0; step < 12 && !HasFailure(); ++step) {
            where = "seed " + std::to_string(seed) + " step " + std::to_string(step);
            for (int i = recipe->Below(4); i > 0; --i)
                Anything();
            Command();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Types, CommandsModel,
                         testing::Values(CommandCase{FileType::Rcp, 40}, CommandCase{FileType::Csv, 40},
                                         CommandCase{FileType::Erp, 10}, CommandCase{FileType::Frp, 40}));
