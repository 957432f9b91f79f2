#include "bench/BenchRows.h"
#include "files/CellTexts.h"
#include "files/CsvRecipeFile.h"

#include <benchmark/benchmark.h>

#include <optional>

// What is to be read off: BM_Csv_Save stands to BM_Csv_BareTexts as the writer to the making of the same texts, and
// BM_Csv_Read to BM_Csv_Save as the way back.

namespace {

constexpr std::int32_t kRows = kBenchRows / 16;
constexpr std::int64_t kCells = std::int64_t{kRows} * kBenchColumns;

void BM_Csv_BareTexts(benchmark::State& state)
{
    const CRecipeRows rows = BenchRows(kRows);
    std::u16string text;
    for (auto _ : state) {
        CCellTexts texts(rows);
        for (std::int32_t row = 0; row < kRows; ++row) {
            text.clear();
            for (std::size_t column = 0; column < rows.Columns().size(); ++column) {
                texts.MoveTo(row, column);
                texts.AppendTo(text);
            }
            benchmark::DoNotOptimize(text.data());
        }
    }
    state.SetItemsProcessed(state.iterations() * kCells);
}

void Save(benchmark::State& state, std::optional<CFieldTable>* shown)
{
    const CBenchFile bench;
    const CRecipeRows rows = BenchRows(kRows);
    CSilentReporter reporter;
    CNoProgress progress;
    for (auto _ : state)
        if (!SaveCsv(rows, bench.Path(), reporter, progress, shown))
            state.SkipWithError("cannot write the file");
    state.SetItemsProcessed(state.iterations() * kCells);
}

void BM_Csv_Save(benchmark::State& state)
{
    Save(state, nullptr);
}

/// As in the window, where the fields that the file has then are handed out.
void BM_Csv_SaveShown(benchmark::State& state)
{
    std::optional<CFieldTable> shown;
    Save(state, &shown);
}

void BM_Csv_Read(benchmark::State& state)
{
    const CBenchFile bench;
    CRecipeRows rows = BenchRows(kRows);
    CSilentReporter reporter;
    CNoProgress progress;
    if (!SaveCsv(rows, bench.Path(), reporter, progress))
        state.SkipWithError("cannot write the file");
    for (auto _ : state)
        if (ReadCsv(rows, bench.Path(), reporter, progress) != Outcome::Done)
            state.SkipWithError("cannot read the file");
    state.SetItemsProcessed(state.iterations() * kCells);
}

BENCHMARK(BM_Csv_BareTexts)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_Csv_Save)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_Csv_SaveShown)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_Csv_Read)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
