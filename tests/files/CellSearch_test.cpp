#include "files/CellSearch.h"
#include "tests/files/TestColumns.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

namespace {

using Clock = std::chrono::steady_clock;
using Way = CCellSearch::Way;
using Kind = CellQuery::Kind;

ColumnCoding TextColumn()
{
    return {.title = u"Text", .dataType = DataType::String, .dataLength = 1, .unicode = 1};
}

/// Rows of small numbers and one-letter texts, so that hits are neither rare nor common.
CRecipeRows RandomRows(std::mt19937& random, std::int32_t rowCount)
{
    CRecipeRows rows;
    std::vector columns{Signed16Column(), Hex16Column(), TextColumn(), Signed16Column()};
    columns.resize(1 + random() % columns.size());
    rows.LayOut(columns, 0, rowCount);
    CByteBuffer image(static_cast<std::size_t>(rows.StretchBytes()) / 2 * 2);
    for (std::size_t at = 0; at + 1 < image.Bytes().size(); at += 2)
        image.Bytes()[at] = static_cast<std::byte>(u'A' + random() % 30);
    rows.ShowWords(std::move(image), RecipeKind::Flat);
    return rows;
}

void TypeSome(std::mt19937& random, CRecipeRows& rows)
{
    for (int i = 0; i < 20; ++i)
        rows.SetText(static_cast<std::int32_t>(random() % static_cast<unsigned>(rows.RowCount())),
                     random() % rows.Columns().size(), i % 2 == 0 ? u"7" : u"F");
}

bool IsIn(const std::vector<CellRange>& scope, CellPlace place)
{
    return scope.empty() || std::any_of(scope.begin(), scope.end(), [&](const CellRange& range) {
               return place.row >= range.firstRow && place.row <= range.lastRow && place.column >= range.firstColumn &&
                      place.column <= range.lastColumn;
           });
}

/// What the search has to find, one cell after the other.
std::vector<CellPlace> HitsByHand(const CRecipeRows& rows, const CellQuery& query, const std::vector<CellRange>& scope,
                                  const CCellSearch::RowFilter& isShown)
{
    const CCellMatcher matcher(query, rows.Columns());
    std::vector<CellPlace> hits;
    for (std::int32_t row = 0; row < rows.RowCount(); ++row)
        for (std::uint32_t column = 0; column < rows.Columns().size(); ++column)
            if (isShown(row) && IsIn(scope, {row, column}) && matcher.IsFor(column) &&
                matcher.Matches(column, rows.Text(row, column)))
                hits.push_back({row, column});
    return hits;
}

/// The hit that a seek has to end with.
std::optional<CCellSearch::Hit> NextByHand(std::vector<CellPlace> hits, CellPlace from, bool isIncluded, Way way)
{
    if (hits.empty())
        return std::nullopt;
    if (way == Way::Backward)
        std::reverse(hits.begin(), hits.end());
    const auto ahead = std::find_if(hits.begin(), hits.end(), [&](CellPlace place) {
        return (isIncluded && place == from) || (way == Way::Forward ? from < place : place < from);
    });
    return ahead == hits.end() ? CCellSearch::Hit{hits.front(), true} : CCellSearch::Hit{*ahead, false};
}

CellQuery RandomQuery(std::mt19937& random)
{
    const char16_t* const texts[]{u"7", u"F", u"f", u"70", u"4", u"A", u"x"};
    return {texts[random() % std::size(texts)], random() % 2 == 0 ? Kind::Text : Kind::Number, random() % 2 == 0,
            random() % 2 == 0};
}

std::vector<CellRange> RandomScope(std::mt19937& random, std::int32_t rows)
{
    std::vector<CellRange> scope;
    std::int32_t row = 0;
    while (random() % 3 != 0 && row + 1 < rows) {
        const auto last = std::min(rows - 1, row + static_cast<std::int32_t>(random() % 400));
        const auto column = static_cast<std::uint32_t>(random() % 3);
        scope.push_back({row, last, column, column + static_cast<std::uint32_t>(random() % 3)});
        row = last + 1;
    }
    std::shuffle(scope.begin(), scope.end(), random);
    return scope;
}

TEST(CellSearch, FindsWhatALookAtEachCellFinds)
{
    for (unsigned seed = 0; seed < 300; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        CRecipeRows rows = RandomRows(random, 1 + static_cast<std::int32_t>(random() % 1500));
        const CellQuery query = RandomQuery(random);
        const auto scope = RandomScope(random, rows.RowCount());
        const unsigned hidden = random() % 4;
        const auto isShown = [&](std::int32_t row) { return hidden == 0 || static_cast<unsigned>(row) % 4 != hidden; };
        CCellSearch search(rows);
        search.Begin(query, scope, isShown);
        for (int round = 0; round < 4; ++round) {
            const auto hits = HitsByHand(rows, query, scope, isShown);
            const CellPlace from{static_cast<std::int32_t>(random() % static_cast<unsigned>(rows.RowCount() + 1)) - 1,
                                 static_cast<std::uint32_t>(random() % rows.Columns().size())};
            const bool isIncluded = random() % 2 == 0;
            const Way way = random() % 2 == 0 ? Way::Forward : Way::Backward;
            search.Seek(from, isIncluded, way);
            while (search.IsSeeking())
                search.Continue(Clock::now());
            const auto next = NextByHand(hits, from, isIncluded, way);
            ASSERT_EQ(search.Sought().has_value(), next.has_value());
            if (next) {
                ASSERT_EQ(search.Sought()->place, next->place);
                ASSERT_EQ(search.Sought()->hasWrapped, next->hasWrapped);
            }
            if (round % 2 == 0)
                while (!search.Continue(Clock::now())) {
                    ASSERT_LE(search.ListedCount(), search.Count());
                }
            if (search.IsCounted()) {
                ASSERT_EQ(search.Count(), hits.size());
                ASSERT_EQ(search.ListedCount(), hits.size());
                for (int look = 0; look < 20 && !hits.empty(); ++look) {
                    const std::size_t index = look == 0 ? hits.size() - 1 : random() % hits.size();
                    ASSERT_EQ(search.PlaceOf(index), hits[index]);
                    ASSERT_EQ(search.NumberOf(hits[index]), index + 1);
                    ASSERT_TRUE(search.IsHit(hits[index]));
                }
                ASSERT_EQ(search.PlaceOf(hits.size()), std::nullopt);
            }
            TypeSome(random, rows);
            search.Restart();
        }
    }
}

TEST(CellSearch, KnowsOfRowsThatAreNotShown)
{
    std::mt19937 random(1);
    const CRecipeRows rows = RandomRows(random, 10);
    CCellSearch search(rows);
    search.Begin({u"7"}, {}, [](std::int32_t) { return true; });
    while (!search.Continue(Clock::now())) {
    }
    EXPECT_FALSE(search.HasLeftOutRows());
    search.Begin({u"7"}, {}, [](std::int32_t row) { return row != 3; });
    while (!search.Continue(Clock::now())) {
    }
    EXPECT_TRUE(search.HasLeftOutRows());
}

TEST(CellSearch, SurvivesRowsOfAnotherLayoutUntilItIsTold)
{
    std::mt19937 random(2);
    CRecipeRows rows = RandomRows(random, 3000);
    CCellSearch search(rows);
    search.Begin({u"7"}, {}, {});
    while (!search.Continue(Clock::now())) {
    }
    rows.LayOut({FloatColumn()}, 0, 1);
    EXPECT_EQ(search.PlaceOf(0), std::nullopt);
    EXPECT_FALSE(search.IsHit({2999, 0}));
    search.Seek({2999, 0}, false, Way::Forward);
    while (!search.Continue(Clock::now())) {
    }
    EXPECT_EQ(search.Sought(), std::nullopt);
    rows.Clear();
    search.Restart();
    search.Seek({0, 0}, false, Way::Forward);
    EXPECT_TRUE(search.Continue(Clock::now()));
    EXPECT_EQ(search.Count(), 0u);
}

TEST(CellSearch, HandsOutEachHitWithItsTextUntilItIsGivenUp)
{
    CRecipeRows rows;
    rows.LayOut({Signed16Column(), TextColumn()}, 0, 3);
    rows.ShowNewDocument();
    rows.SetText(1, 0, u"17");
    rows.SetText(2, 1, u"7");
    CCellSearch search(rows);
    search.Begin({u"7"}, {}, {});
    std::vector<std::u16string> texts;
    CNoProgress progress;
    EXPECT_TRUE(search.ForEach(progress, [&](CellPlace, std::u16string_view text) { texts.emplace_back(text); }));
    EXPECT_EQ(texts, (std::vector<std::u16string>{u"17", u"7"}));
    struct : CProgress {
        bool Advance(std::uint64_t, std::uint64_t) override { return false; }
    } ended;
    EXPECT_FALSE(search.ForEach(ended, [](CellPlace, std::u16string_view) { ADD_FAILURE(); }));
}

} // namespace
