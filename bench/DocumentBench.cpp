#include "bench/BenchRows.h"
#include "disk/File.h"
#include "document/RecipeDocument.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <fstream>
#include <malloc.h>

// A million cells changed as by a paste, that undone and made again, and one cell changed as by typing: what the room
// does with texts that passed their check.

namespace {

constexpr std::int32_t kTextRows = 62'500; // of kBenchColumns cells

DataFormat BenchFormat()
{
    DataItem item = DefaultItem();
    item.isArray = 1;
    item.arrayLength = kBenchColumns;
    item.integerDigits = 5;
    deriveBounds(item);
    DataFormat format;
    format.insertItem(0, std::make_unique<DataItem>(item));
    format.itemCount = 1;
    return format;
}

void WriteBenchFile(const CBenchFile& bench)
{
    const CByteBuffer image = BenchImage(kBenchRows);
    std::ofstream file(bench.Path(), std::ios::binary);
    file.write(reinterpret_cast<const char*>(image.Bytes().data()), static_cast<std::streamsize>(image.Bytes().size()));
}

void CountPlan(CRecipeDocument& document)
{
    document.ContinuePlan(std::chrono::steady_clock::time_point::max());
}

/// The file's rows, all of them untouched and without edits that could be undone.
void Open(CRecipeDocument& document, const CBenchFile& bench)
{
    CSilentReporter reporter;
    CNoProgress progress;
    document.StartOpen(bench.Path(), FileType::Rcp);
    document.TakeSettings({BenchFormat(), 0, kBenchRows});
    document.Read(FileType::Rcp, reporter, progress);
}

std::vector<TextForCell> AMillionTexts()
{
    std::vector<TextForCell> texts;
    for (std::int32_t row = 0; row < kTextRows; ++row)
        for (std::uint32_t column = 0; column < kBenchColumns; ++column)
            texts.push_back({{row, column}, u"4" + std::u16string(4, static_cast<char16_t>(u'0' + row % 10))});
    return texts;
}

enum class Extra { None, Planned, Kept };

/// The user's data of one benchmark.
struct BenchData {
    ~BenchData() { std::filesystem::remove_all(path); }

    CBenchFile name;
    std::filesystem::path path = std::filesystem::path(name.Path()).replace_extension(".data");
};

void SetTexts(benchmark::State& state, Extra extra)
{
    const CBenchFile bench;
    const BenchData data;
    WriteBenchFile(bench);
    CRecipeDocument document;
    if (extra == Extra::Kept)
        document.KeepUnsavedIn(data.path);
    for (auto _ : state) {
        state.PauseTiming();
        Open(document, bench);
        if (extra == Extra::Planned)
            CountPlan(document);
        auto texts = AMillionTexts();
        state.ResumeTiming();
        if (document.SetTexts(EditKind::Paste, std::move(texts)) != EditOutcome::Made)
            state.SkipWithError("cannot set the texts");
    }
}

void BM_Document_SetTexts(benchmark::State& state)
{
    SetTexts(state, Extra::None);
}

/// The plan of the save is counted.
void BM_Document_SetTexts_Planned(benchmark::State& state)
{
    SetTexts(state, Extra::Planned);
}

/// With a journal of what is not saved.
void BM_Document_SetTexts_Kept(benchmark::State& state)
{
    SetTexts(state, Extra::Kept);
}

void BM_Document_Undo(benchmark::State& state)
{
    const CBenchFile bench;
    WriteBenchFile(bench);
    CRecipeDocument document;
    for (auto _ : state) {
        state.PauseTiming();
        Open(document, bench);
        document.SetTexts(EditKind::Paste, AMillionTexts());
        state.ResumeTiming();
        if (document.Undo().outcome != EditOutcome::Made)
            state.SkipWithError("cannot undo");
    }
}

void BM_Document_Redo(benchmark::State& state)
{
    const CBenchFile bench;
    WriteBenchFile(bench);
    CRecipeDocument document;
    Open(document, bench);
    document.SetTexts(EditKind::Paste, AMillionTexts());
    for (auto _ : state) {
        state.PauseTiming();
        document.Undo();
        state.ResumeTiming();
        if (document.Redo().outcome != EditOutcome::Made)
            state.SkipWithError("cannot redo");
    }
}

/// 4,096 cells all over the rows take turns.
void OneText(benchmark::State& state, Extra extra)
{
    constexpr std::int32_t kCells = 4096;
    const CBenchFile bench;
    const BenchData data;
    WriteBenchFile(bench);
    CRecipeDocument document;
    Open(document, bench);
    if (extra == Extra::Kept)
        document.KeepUnsavedIn(data.path);
    if (extra == Extra::Planned)
        CountPlan(document);
    std::int32_t cell = 0;
    for (auto _ : state) {
        const CellPlace place{cell * (kBenchRows / kCells), static_cast<std::uint32_t>(cell % kBenchColumns)};
        std::vector<TextForCell> texts;
        texts.push_back({place, u"7"});
        if (document.SetTexts(EditKind::Typing, std::move(texts)) != EditOutcome::Made)
            state.SkipWithError("cannot set the text");
        cell = (cell + 1) % kCells;
    }
    state.counters["changes"] = static_cast<double>(document.Plan().Changes().size());
}

void BM_Document_OneText(benchmark::State& state)
{
    OneText(state, Extra::None);
}

/// The plan of the save is counted, and kept true.
void BM_Document_OneText_Planned(benchmark::State& state)
{
    OneText(state, Extra::Planned);
}

void BM_Document_OneText_Kept(benchmark::State& state)
{
    OneText(state, Extra::Kept);
}

// What another program may have written is looked for, against a read of the same stretch.

void BM_Document_Look(benchmark::State& state)
{
    const CBenchFile bench;
    WriteBenchFile(bench);
    CRecipeDocument document;
    Open(document, bench);
    for (auto _ : state)
        if (document.Look().state != FileLook::State::AsKnown)
            state.SkipWithError("the file changed");
}

void BM_Document_Look_BareRead(benchmark::State& state)
{
    const CBenchFile bench;
    WriteBenchFile(bench);
    for (auto _ : state) {
        const CFile file(bench.Path(), CFile::Mode::Read);
        CByteBuffer bytes(static_cast<std::size_t>(file.Size().value_or(0)));
        if (file.ReadAt(0, bytes.Bytes()) != bytes.Bytes().size())
            state.SkipWithError("cannot read");
        benchmark::DoNotOptimize(bytes.Bytes().data());
    }
}

// A file of so many rows is saved, one cell of which was edited, with its version and without. With the disk's name in
// TMPDIR the disk is measured.

void SaveRows(benchmark::State& state, bool isKept)
{
    const CBenchFile bench;
    const BenchData data;
    const CVersionStore versions(data.path);
    const auto rows = static_cast<std::int32_t>(state.range(0));
    const CByteBuffer image = BenchImage(rows);
    CSilentReporter reporter;
    CNoProgress progress;
    std::ofstream(bench.Path(), std::ios::binary)
        .write(reinterpret_cast<const char*>(image.Bytes().data()), static_cast<std::streamsize>(image.Bytes().size()));
    CRecipeDocument document;
    document.StartOpen(bench.Path(), FileType::Rcp);
    document.TakeSettings({BenchFormat(), 0, rows});
    document.Read(FileType::Rcp, reporter, progress);
    if (isKept)
        document.KeepVersionsIn(versions);
    for (int i = 0; auto _ : state) {
        document.SetTexts(EditKind::Typing, {{{7, 3}, i++ % 2 == 0 ? u"7" : u"8"}});
        if (!document.Write(FileType::Rcp, bench.Path(), reporter, progress))
            state.SkipWithError("cannot save");
        if (isKept && !document.LastSave().version->IsSafe())
            state.SkipWithError("cannot keep a version");
    }
}

void BM_Document_SaveRows(benchmark::State& state)
{
    SaveRows(state, false);
}

void BM_Document_SaveRows_Kept(benchmark::State& state)
{
    SaveRows(state, true);
}

/// What is allocated: a freed block stays resident now and then.
double UsedMiB()
{
    const auto heap = mallinfo2();
    return static_cast<double>(heap.uordblks + heap.hblkhd) / (1 << 20);
}

/// One cell was edited, and the plan is counted: the save, and the memory that what it left takes beside the rows.
void BM_Document_Write(benchmark::State& state)
{
    const CBenchFile bench;
    CSilentReporter reporter;
    CNoProgress progress;
    double added = 0;
    for (auto _ : state) {
        state.PauseTiming();
        WriteBenchFile(bench);
        CRecipeDocument document;
        Open(document, bench);
        document.SetTexts(EditKind::Typing, {{{7, 3}, u"7"}});
        CountPlan(document);
        const double before = UsedMiB();
        state.ResumeTiming();
        if (!document.Write(FileType::Rcp, bench.Path(), reporter, progress))
            state.SkipWithError("cannot save");
        state.PauseTiming();
        added = UsedMiB() - before;
        state.ResumeTiming();
    }
    state.counters["addedMiB"] = added;
}

BENCHMARK(BM_Document_SetTexts)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Document_SetTexts_Planned)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Document_Undo)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Document_Redo)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Document_Write)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Document_OneText);
BENCHMARK(BM_Document_OneText_Planned);
BENCHMARK(BM_Document_SetTexts_Kept)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Document_OneText_Kept);
BENCHMARK(BM_Document_Look)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Document_Look_BareRead)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Document_SaveRows)->Arg(32)->Arg(32768)->Arg(1048576)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(BM_Document_SaveRows_Kept)->Arg(32)->Arg(32768)->Arg(1048576)->Unit(benchmark::kMicrosecond)->UseRealTime();

} // namespace
