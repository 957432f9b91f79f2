#include "bench/BenchRows.h"
#include "files/EditedSave.h"
#include "files/RecipeFile.h"
#include "files/SavePlan.h"
#include "files/StretchCoding.h"

#include <benchmark/benchmark.h>

#include <fstream>

// What is to be read off: BM_Plan_* stands to BM_Plan_*_Coding as the plan of a save to the coding of the same save,
// and BM_SaveEdited_* to BM_SaveAll_* as a save of a thousand cells alone to one of all cells.

namespace {

constexpr std::int32_t kEditedCells = 1000;
constexpr std::int32_t kTableRows = kBenchRows / 16;

/// How often a word is one that a save stores otherwise.
enum class Rewritten { Seldom, Always };

/// With two decimals, words whose last two digits are below ten are shown as another number.
CByteBuffer PlausibleImage(std::int32_t rowCount, Rewritten rewritten)
{
    CByteBuffer image(std::size_t{2} * kBenchColumns * static_cast<std::size_t>(rowCount));
    std::uint32_t state = 1;
    const auto bytes = image.Bytes();
    for (std::size_t at = 0; at < bytes.size(); at += 2) {
        state = state * 1664525 + 1013904223;
        const std::uint32_t random = state >> 8;
        const bool isRewritten = rewritten == Rewritten::Always || random % 20000 == 0;
        const bool isString = rewritten == Rewritten::Seldom && at / 2 % 4 == 3; // as BenchColumns has them
        const std::uint32_t number = 100 * (1 + random % 200) + (isRewritten ? 1 + random % 9 : 10 + random % 90);
        const std::uint32_t word = isString ? 0x4141 + random % 26 : number;
        bytes[at] = static_cast<std::byte>(word);
        bytes[at + 1] = static_cast<std::byte>(word >> 8);
    }
    return image;
}

std::vector<ColumnCoding> Columns(Rewritten rewritten)
{
    if (rewritten == Rewritten::Seldom)
        return BenchColumns();
    ColumnCoding column = BenchColumn(DataType::Unsigned16);
    return std::vector<ColumnCoding>(kBenchColumns, column);
}

/// Rows that were read from a file, and the file.
struct PlanSubject {
    PlanSubject(FileType type, std::int32_t rowCount, Rewritten rewritten = Rewritten::Seldom)
        : m_type(type),
          path(file.Path())
    {
        rows.LayOut(Columns(rewritten), 0, rowCount);
        rows.ShowWords(PlausibleImage(rowCount, rewritten), IsPaged(type) ? RecipeKind::Paged : RecipeKind::Flat);
        std::ofstream(path, std::ios::binary).flush();
    }

    /// The file becomes that of the rows, which are read from it.
    bool SaveAndRead()
    {
        if (!SaveRecipe(m_type, rows, path, reporter, progress))
            return false;
        const bool isRead = ReadRecipe(m_type, rows, path, false, reporter, progress) == Outcome::Done;
        stored = CStoredCells(rows, m_type, LogicalBytes(m_type, path).value_or(0));
        return isRead;
    }

    FileType m_type;
    CBenchFile file;
    std::filesystem::path path;
    CSilentReporter reporter;
    CNoProgress progress;
    CRecipeRows rows;
    CStoredCells stored;
};

void Code(benchmark::State& state, Rewritten rewritten)
{
    PlanSubject subject(FileType::Rcp, kBenchRows, rewritten);
    for (auto _ : state) {
        CByteBuffer image(static_cast<std::size_t>(subject.rows.StretchBytes()));
        if (CodeStretch(subject.rows, RecipeKind::Flat, image.Bytes(), subject.progress) != Outcome::Done)
            state.SkipWithError("cannot code the rows");
    }
}

void Plan(benchmark::State& state, Rewritten rewritten)
{
    PlanSubject subject(FileType::Rcp, kBenchRows, rewritten);
    const CStoredCells stored(subject.rows, FileType::Rcp, subject.rows.StretchBytes());
    CSavePlan plan;
    for (auto _ : state) {
        plan.Begin(subject.rows, stored, subject.path, false);
        if (plan.Finish(subject.progress) != Outcome::Done)
            state.SkipWithError("cannot plan");
    }
    state.counters["changes"] = static_cast<double>(plan.Changes().size());
}

void BM_Plan_Plausible_Coding(benchmark::State& state)
{
    Code(state, Rewritten::Seldom);
}

void BM_Plan_Plausible(benchmark::State& state)
{
    Plan(state, Rewritten::Seldom);
}

void BM_Plan_AllRewritten_Coding(benchmark::State& state)
{
    Code(state, Rewritten::Always);
}

void BM_Plan_AllRewritten(benchmark::State& state)
{
    Plan(state, Rewritten::Always);
}

void BM_Plan_Table(benchmark::State& state)
{
    PlanSubject subject(FileType::Csv, kTableRows);
    if (!subject.SaveAndRead())
        state.SkipWithError("cannot make the file");
    CSavePlan plan;
    for (auto _ : state) {
        plan.Begin(subject.rows, subject.stored, subject.path, false);
        if (plan.Finish(subject.progress) != Outcome::Done)
            state.SkipWithError("cannot plan");
    }
    state.counters["changes"] = static_cast<double>(plan.Changes().size());
}

/// As a save in the window does: what it left is handed out.
void SaveAll(benchmark::State& state, FileType type, std::int32_t rowCount)
{
    PlanSubject subject(type, rowCount);
    if (!subject.SaveAndRead())
        state.SkipWithError("cannot make the file");
    for (auto _ : state) {
        SavedContent saved;
        if (!SaveRecipe(type, subject.rows, subject.path, subject.reporter, subject.progress, &saved))
            state.SkipWithError("cannot save");
        benchmark::DoNotOptimize(saved);
    }
}

/// A thousand cells all over the rows.
void SaveEditedCells(benchmark::State& state, FileType type, std::int32_t rowCount)
{
    PlanSubject subject(type, rowCount);
    if (!subject.SaveAndRead())
        state.SkipWithError("cannot make the file");
    int round = 0;
    for (auto _ : state) {
        state.PauseTiming();
        const std::u16string text = u"4" + std::u16string(1, static_cast<char16_t>(u'0' + round++ % 10));
        for (std::int32_t cell = 0; cell < kEditedCells; ++cell)
            subject.rows.SetText(cell * (rowCount / kEditedCells), static_cast<std::size_t>(cell % kBenchColumns),
                                 text);
        state.ResumeTiming();
        if (!SaveEdited(subject.rows, subject.stored, subject.path, subject.reporter, subject.progress))
            state.SkipWithError("cannot save");
        state.PauseTiming();
        subject.rows.MarkSaved();
        state.ResumeTiming();
    }
}

void BM_SaveAll_Recipe(benchmark::State& state)
{
    SaveAll(state, FileType::Rcp, kBenchRows);
}

void BM_SaveEdited_Recipe(benchmark::State& state)
{
    SaveEditedCells(state, FileType::Rcp, kBenchRows);
}

void BM_SaveAll_Paged(benchmark::State& state)
{
    SaveAll(state, FileType::Frp, kBenchRows);
}

void BM_SaveEdited_Paged(benchmark::State& state)
{
    SaveEditedCells(state, FileType::Frp, kBenchRows);
}

void BM_SaveAll_Table(benchmark::State& state)
{
    SaveAll(state, FileType::Csv, kTableRows);
}

void BM_SaveEdited_Table(benchmark::State& state)
{
    SaveEditedCells(state, FileType::Csv, kTableRows);
}

BENCHMARK(BM_Plan_Plausible_Coding)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Plan_Plausible)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Plan_AllRewritten_Coding)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Plan_AllRewritten)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Plan_Table)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SaveAll_Recipe)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SaveEdited_Recipe)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SaveAll_Paged)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SaveEdited_Paged)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SaveAll_Table)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SaveEdited_Table)->Unit(benchmark::kMillisecond);

} // namespace
