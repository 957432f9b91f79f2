#include "bench/BenchRows.h"
#include "files/CellSearch.h"
#include "files/CellTexts.h"

#include <benchmark/benchmark.h>

// What is to be read off: BM_Find_* stands to BM_Find_Texts as a full count of what is found to making the texts of all
// cells. BM_Find_FirstHit is the time to a hit that lies at the end of the first tenth of the rows.

namespace {

constexpr std::int32_t kTableRows = 1 << 20;

void BM_Find_Texts(benchmark::State& state)
{
    const CRecipeRows rows = BenchRows(kTableRows);
    for (auto _ : state) {
        CCellTexts texts(rows);
        std::size_t units = 0;
        for (std::int32_t row = 0; row < rows.RowCount(); ++row)
            for (std::size_t column = 0; column < rows.Columns().size(); ++column) {
                texts.MoveTo(row, column);
                units += texts.Text().size();
            }
        benchmark::DoNotOptimize(units);
    }
}

void Count(benchmark::State& state, const CellQuery& query)
{
    const CRecipeRows rows = BenchRows(kTableRows);
    CCellSearch search(rows);
    for (auto _ : state) {
        search.Begin(query, {}, [](std::int32_t) { return true; });
        while (!search.Continue(std::chrono::steady_clock::now() + std::chrono::milliseconds(8))) {
        }
    }
    state.counters["hits"] = static_cast<double>(search.Count());
}

void BM_Find_Digits(benchmark::State& state)
{
    Count(state, {u"123"});
}

void BM_Find_Letters(benchmark::State& state)
{
    Count(state, {u"ab"});
}

void BM_Find_Number(benchmark::State& state)
{
    Count(state, {u"7.5", CellQuery::Kind::Number});
}

void BM_Find_FirstHit(benchmark::State& state)
{
    CRecipeRows rows = BenchRows(kTableRows);
    rows.SetText(kTableRows / 10, 0, u"1234567");
    CCellSearch search(rows);
    for (auto _ : state) {
        search.Begin({u"1234567"}, {}, [](std::int32_t) { return true; });
        search.Seek({0, 0}, true, CCellSearch::Way::Forward);
        while (search.IsSeeking())
            search.Continue(std::chrono::steady_clock::now() + std::chrono::milliseconds(8));
        if (!search.Sought() || search.Sought()->place.row != kTableRows / 10)
            state.SkipWithError("another cell was found");
    }
}

BENCHMARK(BM_Find_Texts)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Find_Digits)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Find_Letters)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Find_Number)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Find_FirstHit)->Unit(benchmark::kMillisecond);

} // namespace
