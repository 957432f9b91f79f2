#include "files/CsvEdits.h"
#include "tests/files/CsvTables.h"
#include "tests/support/RecordingReporter.h"

namespace fs = std::filesystem;

namespace {

/// The offsets of the bytes that edits may change, found by a plain look at the table: those of the fields of edited
/// cells, and all from the last field of a line on that has to become longer.
class CMayChange {
public:
    CMayChange(std::u16string_view table, const std::vector<CsvEdit>& edits)
    {
        CellPlace place;
        std::size_t begin = 0;
        for (std::size_t pos = 0; pos < table.size(); ++pos) {
            if (table[pos] != u'\t' && table[pos] != u'\n')
                continue;
            const bool isLast = table[pos] == u'\n';
            const auto changes = [&](const CsvEdit& edit) {
                return edit.place == place ||
                       (isLast && edit.place.row == place.row && edit.place.column > place.column);
            };
            if (std::any_of(edits.begin(), edits.end(), changes))
                m_ranges.emplace_back(begin, isLast ? pos - 1 : pos);
            begin = pos + 1;
            place = isLast ? CellPlace{place.row + 1, 0} : CellPlace{place.row, place.column + 1};
        }
        m_ranges.emplace_back(table.size(), table.size()); // lines may be added
    }

    /// Whether `fresh` is the table with other units in these ranges only.
    bool IsKept(std::u16string_view table, std::u16string_view fresh) const
    {
        std::size_t pos = m_ranges.front().first;
        std::size_t at = pos; // in `fresh`
        if (fresh.substr(0, at) != table.substr(0, pos))
            return false;
        for (const auto& [begin, end] : m_ranges) {
            const auto stays = table.substr(pos, begin - pos);
            at = fresh.find(stays, at);
            if (at == std::u16string_view::npos)
                return false;
            at += stays.size();
            pos = end;
        }
        return true;
    }

private:
    std::vector<std::pair<std::size_t, std::size_t>> m_ranges;
};

std::u16string UnitsOf(const Bytes& bytes)
{
    std::u16string text;
    for (std::size_t i = 2; i + 1 < bytes.size(); i += 2)
        text += static_cast<char16_t>(std::to_integer<int>(bytes[i]) | std::to_integer<int>(bytes[i + 1]) << 8);
    return text;
}

struct RandomCsvEdits : testing::TestWithParam<unsigned> {
    static constexpr std::size_t kRows = 6;
    static constexpr std::size_t kColumns = 4;

    CTempFolder folder;
    fs::path path = folder / "a.csv";
    CRecordingReporter reporter;
    CNoProgress progress;
    CCsvMaker maker{GetParam()};
};

TEST_P(RandomCsvEdits, ShowTheirTextsAndNothingElseChanges)
{
    int saved = 0;
    int refused = 0;
    for (int i = 0; i < 250 && !HasFailure(); ++i) {
        const std::u16string table = maker.TableAsSaved(kRows + 2, kColumns + 1);
        const Bytes old = Utf16File(table);
        WriteAll(path, old);
        Cells wanted = CellsIn(path, kRows, kColumns);
        const auto edits = maker.Edits(kRows, kColumns, u"aaaa000\"\r\t\n");
        reporter.shown.clear();
        const bool isSaved(SaveCsvEdits(edits, path, reporter, progress));
        EXPECT_EQ(reporter.shown.size(), isSaved ? 0u : 1u);
        for (const CsvEdit& edit : edits)
            if (isSaved)
                CellAt(wanted, edit.place) = edit.text;
        const Bytes fresh = ReadAll(path);
        EXPECT_TRUE(CellsIn(path, kRows, kColumns) == wanted);
        EXPECT_TRUE(isSaved ? CMayChange(table, edits).IsKept(table, UnitsOf(fresh)) : fresh == old);
        reporter.shown.clear();
        EXPECT_TRUE(SaveCsvEdits({}, path, reporter, progress)) << "still in the form";
        (isSaved ? saved : refused) += 1;
    }
    EXPECT_GT(saved, 70);
    EXPECT_GT(refused, 20);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomCsvEdits, testing::Range(1u, 9u));

} // namespace
