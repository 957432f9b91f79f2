#include "bench/BenchRows.h"
#include "disk/File.h"
#include "files/PagedRecipeFile.h"

#include <benchmark/benchmark.h>

// Nearly all of these rows lie after the flat part, in pages. To be compared with BM_Save_Mixed_Untouched and
// BM_Load_Read: the same rows in a flat file.

namespace {

constexpr std::int64_t kCells = std::int64_t{kBenchRows} * kBenchColumns;

bool MakeEmpty(const std::filesystem::path& path)
{
    return CFile(path, CFile::Mode::Truncate).IsOpen();
}

/// Into an empty file, where all tables and pages are to be made.
void BM_Paged_SaveAnew(benchmark::State& state)
{
    const CBenchFile bench;
    const CRecipeRows rows = BenchRows(kBenchRows);
    CSilentReporter reporter;
    CNoProgress progress;
    for (auto _ : state)
        if (!MakeEmpty(bench.Path()) || !SavePaged(rows, bench.Path(), FileType::Frp, reporter, progress))
            state.SkipWithError("cannot write the file");
    state.SetItemsProcessed(state.iterations() * kCells);
}

void BM_Paged_SaveOver(benchmark::State& state)
{
    const CBenchFile bench;
    const CRecipeRows rows = BenchRows(kBenchRows);
    CSilentReporter reporter;
    CNoProgress progress;
    if (!MakeEmpty(bench.Path()))
        state.SkipWithError("cannot make the file");
    for (auto _ : state)
        if (!SavePaged(rows, bench.Path(), FileType::Frp, reporter, progress))
            state.SkipWithError("cannot write the file");
    state.SetItemsProcessed(state.iterations() * kCells);
}

void BM_Paged_Read(benchmark::State& state)
{
    const CBenchFile bench;
    CRecipeRows rows = BenchRows(kBenchRows);
    CSilentReporter reporter;
    CNoProgress progress;
    if (!MakeEmpty(bench.Path()) || !SavePaged(rows, bench.Path(), FileType::Frp, reporter, progress))
        state.SkipWithError("cannot write the file");
    for (auto _ : state)
        if (ReadPaged(rows, bench.Path(), FileType::Frp, reporter, progress) != Outcome::Done)
            state.SkipWithError("cannot read the file");
    state.SetItemsProcessed(state.iterations() * kCells);
}

BENCHMARK(BM_Paged_SaveAnew)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_Paged_SaveOver)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_Paged_Read)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
