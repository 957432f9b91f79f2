#include "bench/BenchRows.h"

#include <benchmark/benchmark.h>

namespace {

constexpr std::int32_t kVisibleRows = 40;

void AppendPage(const CRecipeRows& rows, std::int32_t firstRow, std::u16string& text)
{
    for (std::int32_t row = firstRow; row < firstRow + kVisibleRows; ++row)
        for (std::size_t column = 0; column < rows.Columns().size(); ++column)
            rows.AppendText(row, column, text);
}

void BM_Rows_LayOut(benchmark::State& state)
{
    const auto columns = BenchColumns();
    CRecipeRows rows;
    for (auto _ : state) {
        rows.LayOut(columns, 0, kBenchRows);
        benchmark::DoNotOptimize(rows);
    }
}

/// The texts of a visible page in the middle of a million rows.
void BM_Rows_VisiblePage(benchmark::State& state)
{
    const CRecipeRows rows = BenchRows(kBenchRows);
    std::u16string text;
    for (auto _ : state) {
        text.clear();
        AppendPage(rows, kBenchRows / 2, text);
        benchmark::DoNotOptimize(text.data());
    }
    state.SetItemsProcessed(state.iterations() * kVisibleRows * kBenchColumns);
}

/// The same page with a changed cell in each of its rows.
void BM_Rows_VisiblePageChanged(benchmark::State& state)
{
    CRecipeRows rows = BenchRows(kBenchRows);
    for (std::int32_t row = 0; row < kVisibleRows; ++row)
        rows.SetText(kBenchRows / 2 + row, 3, u"7");
    std::u16string text;
    for (auto _ : state) {
        text.clear();
        AppendPage(rows, kBenchRows / 2, text);
        benchmark::DoNotOptimize(text.data());
    }
    state.SetItemsProcessed(state.iterations() * kVisibleRows * kBenchColumns);
}

BENCHMARK(BM_Rows_LayOut);
BENCHMARK(BM_Rows_VisiblePage);
BENCHMARK(BM_Rows_VisiblePageChanged);

} // namespace
