#include "bench/BenchRows.h"
#include "recovery/Journal.h"
#include "recovery/UnsavedStore.h"

#include <benchmark/benchmark.h>

#include <string>
#include <utility>
#include <vector>

// What is to be read off: BM_Journal_Edit is what the journal adds to a typed edit, BM_Journal_Paste what it adds to a
// paste of a million cells.

namespace fs = std::filesystem;

namespace {

constexpr std::int32_t kPastedCells = 1000000;

WorkHeader Header()
{
    WorkHeader header;
    header.file = "/recipes/oven.rcp";
    header.format = DefaultFormat();
    header.rowCount = kPastedCells;
    header.begun = UtcNow();
    return header;
}

std::vector<UnsavedCell> Cells(std::int32_t count)
{
    std::vector<UnsavedCell> cells;
    for (std::int32_t row = 0; row < count; ++row) {
        const std::string digits = std::to_string(row % 10000);
        cells.push_back({{row, 0},
                         CCellState::OfText({digits.begin(), digits.end()}),
                         {static_cast<std::byte>(row), static_cast<std::byte>(row >> 8)},
                         std::nullopt});
    }
    return cells;
}

/// A data folder of one benchmark's own.
struct BenchFolder {
    BenchFolder() { fs::create_directory(path); }
    ~BenchFolder() { fs::remove_all(path); }
    BenchFolder(const BenchFolder&) = delete;
    BenchFolder& operator=(const BenchFolder&) = delete;

    CBenchFile name;
    fs::path path = fs::path(name.Path()).replace_extension(".data");
};

void BM_Journal_Edit(benchmark::State& state)
{
    const BenchFolder folder;
    std::error_code fault;
    auto journal = CJournal::Begin(folder.path, Header(), fault);
    const auto cells = Cells(1);
    for (auto _ : state)
        if (!journal || !journal->Append(cells))
            state.SkipWithError("cannot write");
}
BENCHMARK(BM_Journal_Edit)->Unit(benchmark::kMicrosecond);

void BM_Journal_Paste(benchmark::State& state)
{
    const BenchFolder folder;
    const auto cells = Cells(kPastedCells);
    for (auto _ : state) {
        state.PauseTiming();
        std::error_code fault;
        auto journal = CJournal::Begin(folder.path, Header(), fault);
        state.ResumeTiming();
        if (!journal || !journal->Append(cells))
            state.SkipWithError("cannot write");
        state.PauseTiming();
        if (journal)
            journal->End();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_Journal_Paste)->Unit(benchmark::kMillisecond);

void BM_Journal_Claim(benchmark::State& state)
{
    const BenchFolder folder;
    std::error_code fault;
    if (auto journal = CJournal::Begin(folder.path, Header(), fault))
        journal->Append(Cells(kPastedCells));
    for (auto _ : state)
        if (!CUnsavedStore(folder.path).ClaimOldest())
            state.SkipWithError("cannot claim");
}
BENCHMARK(BM_Journal_Claim)->Unit(benchmark::kMillisecond);

} // namespace
