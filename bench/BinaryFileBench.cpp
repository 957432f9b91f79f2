#include "bench/BenchRows.h"
#include "disk/File.h"
#include "files/BinaryRecipeFile.h"

#include <benchmark/benchmark.h>

#include <string>

// What is to be read off: BM_Load_Read stands to BM_Load_BareRead as the reader to one read of the same bytes, and
// BM_Save_Mixed_* to BM_Save_Mixed_BareCoding (BM_Save_WholeNumbers_* likewise) as the writer, which makes most of the
// texts first, to the coding alone of the same texts.

namespace {

constexpr std::int64_t kCells = std::int64_t{kBenchRows} * kBenchColumns;

/// A million rows of signed words without decimals, the commonest recipe.
CRecipeRows WholeNumberRows()
{
    ColumnCoding column = BenchColumn(DataType::Signed16);
    column.decimalDigits = 0;
    CRecipeRows rows;
    rows.LayOut(std::vector<ColumnCoding>(kBenchColumns, column), 0, kBenchRows);
    rows.ShowWords(BenchImage(kBenchRows), RecipeKind::Flat);
    return rows;
}

bool WriteBenchFile(const std::filesystem::path& path)
{
    CFile file(path, CFile::Mode::Truncate);
    return file.WriteAt(0, BenchImage(kBenchRows).Bytes()) && file.Close();
}

void BM_Load_BareRead(benchmark::State& state)
{
    const CBenchFile bench;
    if (!WriteBenchFile(bench.Path()))
        state.SkipWithError("cannot write the file");
    for (auto _ : state) {
        const CFile file(bench.Path(), CFile::Mode::Read);
        CByteBuffer bytes(static_cast<std::size_t>(file.Size().value_or(0)));
        if (!file.ReadAt(0, bytes.Bytes()))
            state.SkipWithError("cannot read the file");
        benchmark::DoNotOptimize(bytes.Bytes().data());
    }
}

void BM_Load_Read(benchmark::State& state)
{
    const CBenchFile bench;
    if (!WriteBenchFile(bench.Path()))
        state.SkipWithError("cannot write the file");
    CSilentReporter reporter;
    CNoProgress progress;
    CRecipeRows rows;
    for (auto _ : state) {
        rows.LayOut(BenchColumns(), 0, kBenchRows);
        if (ReadBinaryRecipe(rows, bench.Path(), false, reporter, progress) != Outcome::Done)
            state.SkipWithError("cannot read the file");
    }
}

/// All texts of the rows end to end, and where each ends: the least that a loop over them can touch.
struct CellTexts {
    std::u16string all;
    std::vector<std::size_t> ends;
};

CellTexts TextsOf(const CRecipeRows& rows)
{
    CellTexts texts;
    texts.ends.reserve(static_cast<std::size_t>(kCells));
    for (std::int32_t row = 0; row < rows.RowCount(); ++row)
        for (std::size_t column = 0; column < rows.Columns().size(); ++column) {
            rows.AppendText(row, column, texts.all);
            texts.ends.push_back(texts.all.size());
        }
    return texts;
}

/// Texts that are there already, only coded.
void CodeTexts(benchmark::State& state, const CRecipeRows& rows)
{
    const CellTexts texts = TextsOf(rows);
    const std::u16string_view all = texts.all;
    for (auto _ : state) {
        CByteBuffer image(static_cast<std::size_t>(rows.StretchBytes()));
        std::size_t pos = 0;
        std::size_t begin = 0;
        for (std::size_t cell = 0; cell < texts.ends.size(); ++cell) {
            const std::size_t end = texts.ends[cell];
            CodeValue(rows.Columns()[cell % kBenchColumns], all.substr(begin, end - begin), image.Bytes(), pos);
            begin = end;
        }
        benchmark::DoNotOptimize(image.Bytes().data());
    }
    state.SetItemsProcessed(state.iterations() * kCells);
}

void SaveRows(benchmark::State& state, const CRecipeRows& rows)
{
    const CBenchFile bench;
    CSilentReporter reporter;
    CNoProgress progress;
    for (auto _ : state)
        if (!SaveBinaryRecipe(rows, bench.Path(), reporter, progress))
            state.SkipWithError("cannot write the file");
    state.SetItemsProcessed(state.iterations() * rows.RowCount() * kBenchColumns);
}

void ChangeCells(CRecipeRows& rows, std::int32_t everyRow)
{
    for (std::int32_t row = 0; row < rows.RowCount(); row += everyRow)
        for (std::size_t column = 0; column < rows.Columns().size(); ++column)
            rows.SetText(row, column, rows.Text(row, column));
}

void BM_Save_Mixed_BareCoding(benchmark::State& state)
{
    CodeTexts(state, BenchRows(kBenchRows));
}

void BM_Save_Mixed_Untouched(benchmark::State& state)
{
    SaveRows(state, BenchRows(kBenchRows));
}

/// Every hundredth row is changed.
void BM_Save_Mixed_SomeChanged(benchmark::State& state)
{
    CRecipeRows rows = BenchRows(kBenchRows);
    ChangeCells(rows, 100);
    SaveRows(state, rows);
}

/// Every cell is changed; a tenth of the rows, to be compared by the value.
void BM_Save_Mixed_AllChanged(benchmark::State& state)
{
    CRecipeRows rows = BenchRows(kBenchRows / 10);
    ChangeCells(rows, 1);
    SaveRows(state, rows);
}

void BM_Save_WholeNumbers_BareCoding(benchmark::State& state)
{
    CodeTexts(state, WholeNumberRows());
}

void BM_Save_WholeNumbers_Untouched(benchmark::State& state)
{
    SaveRows(state, WholeNumberRows());
}

BENCHMARK(BM_Load_BareRead)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_Load_Read)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_Save_Mixed_BareCoding)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_Save_Mixed_Untouched)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_Save_Mixed_SomeChanged)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_Save_Mixed_AllChanged)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_Save_WholeNumbers_BareCoding)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_Save_WholeNumbers_Untouched)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
