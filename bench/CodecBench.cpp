#include "bench/BenchRows.h"

#include <benchmark/benchmark.h>

namespace {

constexpr std::size_t kValues = 4096;

/// As many values of the type in the state's range as fit the bytes of a bench image.
CByteBuffer ValuesOf(const ColumnCoding& column)
{
    const std::size_t bytes = 2 * static_cast<std::size_t>(column.dataLength) * kValues;
    return BenchImage(static_cast<std::int32_t>(bytes / (2 * kBenchColumns)));
}

void BM_Codec_Format(benchmark::State& state)
{
    const ColumnCoding column = BenchColumn(static_cast<DataType>(state.range(0)));
    const CByteBuffer image = ValuesOf(column);
    std::u16string text;
    for (auto _ : state) {
        std::size_t pos = 0;
        while (pos < image.Bytes().size()) {
            text.clear();
            AppendValue(column, image.Bytes(), pos, RecipeKind::Flat, text);
            benchmark::DoNotOptimize(text.data());
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kValues));
}

void BM_Codec_Code(benchmark::State& state)
{
    const ColumnCoding column = BenchColumn(static_cast<DataType>(state.range(0)));
    CByteBuffer image = ValuesOf(column);
    std::vector<std::u16string> texts;
    for (std::size_t pos = 0; pos < image.Bytes().size();)
        texts.push_back(FormatValue(column, image.Bytes(), pos));
    for (auto _ : state) {
        std::size_t pos = 0;
        for (const std::u16string& text : texts)
            CodeValue(column, text, image.Bytes(), pos);
        benchmark::DoNotOptimize(image.Bytes().data());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kValues));
}

BENCHMARK(BM_Codec_Format)->ArgName("type")->DenseRange(0, 8);
BENCHMARK(BM_Codec_Code)->ArgName("type")->DenseRange(0, 8);

} // namespace
