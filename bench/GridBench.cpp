// What the window adds to the core's work: laying out a huge recipe, and scrolling through it.

#include "tests/views/RecordingFrame.h"
#include "views/RecipeDataShowView.h"

#include <QApplication>
#include <QScrollBar>
#include <QWindow>
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>

namespace {

constexpr std::int32_t kRows = 1 << 20;
constexpr std::int32_t kColumns = 16;
constexpr QSize kWindowSize{1280, 800};

/// A recipe file of kRows rows of kColumns words, removed at the end.
class CBigRecipe {
public:
    CBigRecipe() : m_path(std::filesystem::temp_directory_path() / "vantor-bench.rcp")
    {
        std::ofstream file(m_path, std::ios::binary);
        std::string row(2 * kColumns, '\0');
        for (std::int32_t i = 0; i < kRows; ++i) {
            for (std::size_t at = 0; at < row.size(); ++at)
                row[at] = static_cast<char>((static_cast<std::size_t>(i) * 7 + at * 13) & 0x7F);
            file.write(row.data(), static_cast<std::streamsize>(row.size()));
        }
    }
    ~CBigRecipe() { std::filesystem::remove(m_path); }
    CBigRecipe(const CBigRecipe&) = delete;
    CBigRecipe& operator=(const CBigRecipe&) = delete;

    QString Path() const { return QString::fromStdString(m_path.string()); }

private:
    std::filesystem::path m_path;
};

void SetUpFrame(CRecordingFrame& frame, const QString& path)
{
    DataItem item = DefaultItem();
    item.isArray = 1;
    item.arrayLength = kColumns;
    item.integerDigits = 5;
    deriveBounds(item);
    frame.m_pDataFormat->insertItem(0, std::make_unique<DataItem>(item));
    frame.m_pDataFormat->itemCount = 1;
    frame.m_strFilePath = path;
    frame.m_nReadCount = kRows;
    frame.m_nFormatWords = kColumns;
    frame.m_nGridCols = kColumns + 2;
    frame.m_nGridRows = kRows + 1;
}

double ResidentMiB()
{
    std::ifstream statm("/proc/self/statm");
    double total = 0;
    double resident = 0;
    statm >> total >> resident;
    return resident * 4096 / (1 << 20);
}

/// Shows the pane and waits until it is really on the (offscreen) screen: before that nothing is painted.
void Expose(QWidget& view)
{
    view.resize(kWindowSize);
    view.show();
    while (!view.windowHandle()->isExposed())
        QCoreApplication::processEvents();
    QCoreApplication::processEvents();
}

/// From the command to the painted window; the memory is what the shown rows add to an empty pane.
void ShowAMillionRows(benchmark::State& state)
{
    const CBigRecipe recipe;
    CRecordingFrame frame;
    SetUpFrame(frame, recipe.Path());
    CRecipeDataShowView view(frame);
    Expose(view);
    const double before = ResidentMiB();
    double added = 0;
    for (auto _ : state) {
        view.ShowData(FileType::Rcp);
        QCoreApplication::processEvents(); // lays out and paints
        state.PauseTiming();
        added = ResidentMiB() - before;
        view.ClearGrid();
        state.ResumeTiming();
    }
    state.counters["addedMiB"] = added;
}
BENCHMARK(ShowAMillionRows)->Unit(benchmark::kMillisecond);

/// One scroll step and its paint; the rows moved by each are the argument (0: a jump to anywhere).
void ScrollStep(benchmark::State& state)
{
    const CBigRecipe recipe;
    CRecordingFrame frame;
    SetUpFrame(frame, recipe.Path());
    CRecipeDataShowView view(frame);
    Expose(view);
    view.ShowData(FileType::Rcp);
    QCoreApplication::processEvents();
    QScrollBar& bar = *view.Grid().verticalScrollBar();
    const auto step = static_cast<int>(state.range(0));
    unsigned random = 1;
    for (auto _ : state) {
        random = random * 1103515245U + 12345U;
        const int jump = static_cast<int>(random >> 8) % bar.maximum();
        bar.setValue(step == 0 ? jump : (bar.value() + step) % bar.maximum());
        QCoreApplication::processEvents(); // paints
    }
}
BENCHMARK(ScrollStep)->ArgName("rows")->Arg(3)->Arg(30)->Arg(0)->Unit(benchmark::kMillisecond);

} // namespace
