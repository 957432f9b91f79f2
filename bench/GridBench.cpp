// What the window adds to the core's work: laying out a huge recipe, scrolling through it, changing it and undoing
// that.

#include "tests/views/RecordingFrame.h"
#include "views/RecipeDataShowView.h"
#include "views/TextCrossing.h"

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
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

/// With four digits two values of three lie outside the limits, which marks their cells; with five none does.
void SetUpFrame(CRecordingFrame& frame, const QString& path, int digits)
{
    DataItem item = DefaultItem();
    item.isArray = 1;
    item.arrayLength = kColumns;
    item.integerDigits = digits;
    deriveBounds(item);
    DataFormat format;
    format.insertItem(0, std::make_unique<DataItem>(item));
    format.itemCount = 1;
    frame.document.StartOpen(NativePath(path), FileType::Rcp);
    frame.document.TakeSettings({format, 0, kRows});
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

/// Changes one value of every eighth row, so that each page shows some of their marks.
void ChangeSomeValues(CGridCtrl& grid)
{
    constexpr std::int32_t kEvery = 8;
    for (std::int32_t row = 1; row <= kRows; row += kEvery)
        grid.SetItemText(row, 2 + row / kEvery % kColumns, QStringLiteral("7"));
}

/// From the command to the painted window; the memory is what the shown rows add to an empty pane. The argument is the
/// number of digits.
void ShowAMillionRows(benchmark::State& state)
{
    const CBigRecipe recipe;
    const auto digits = static_cast<int>(state.range(0));
    CRecordingFrame frame;
    SetUpFrame(frame, recipe.Path(), digits);
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
        SetUpFrame(frame, recipe.Path(), digits); // no edits that keep rows
        state.ResumeTiming();
    }
    state.counters["addedMiB"] = added;
}
BENCHMARK(ShowAMillionRows)->ArgName("digits")->Arg(5)->Arg(4)->Unit(benchmark::kMillisecond);

/// The same rows read once more, as "RefreshData" does; those from before can come back then.
void ReadAMillionRowsAgain(benchmark::State& state)
{
    const CBigRecipe recipe;
    CRecordingFrame frame;
    SetUpFrame(frame, recipe.Path(), 5);
    CRecipeDataShowView view(frame);
    Expose(view);
    const double before = ResidentMiB();
    for (auto _ : state) {
        view.ShowData(FileType::Rcp);
        QCoreApplication::processEvents(); // lays out and paints
    }
    state.counters["addedMiB"] = ResidentMiB() - before;
}
BENCHMARK(ReadAMillionRowsAgain)->Unit(benchmark::kMillisecond);

/// One scroll step and its paint. The arguments are the rows moved by each (0: a jump to anywhere) and whether there
/// are changed values and such outside their limits.
void ScrollStep(benchmark::State& state)
{
    const CBigRecipe recipe;
    const bool marked = state.range(1) != 0;
    CRecordingFrame frame;
    SetUpFrame(frame, recipe.Path(), marked ? 4 : 5);
    CRecipeDataShowView view(frame);
    Expose(view);
    view.ShowData(FileType::Rcp);
    if (marked)
        ChangeSomeValues(view.Grid());
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
BENCHMARK(ScrollStep)->ArgNames({"rows", "marks"})->ArgsProduct({{3, 30, 0}, {0, 1}})->Unit(benchmark::kMillisecond);

/// Rows of kColumns values that no cell holds before.
QString BlockOf(std::int64_t cells)
{
    QString block;
    for (std::int64_t cell = 0; cell < cells; ++cell) {
        block += QString::number(40000 + cell % 20000);
        block += (cell + 1) % kColumns == 0 ? u'\n' : u'\t';
    }
    return block;
}

void PasteInto(CRecipeDataShowView& view)
{
    view.Grid().Paste();
    QCoreApplication::processEvents(); // paints
}

void ShowUndone(CRecipeDataShowView& view, const EditReport& report)
{
    view.ShowEdited(report);
    QCoreApplication::processEvents(); // paints
}

/// Shows the recipe anew, without edits that could be undone, and with its first cell chosen.
void OpenToPaste(CRecordingFrame& frame, CRecipeDataShowView& view, const CBigRecipe& recipe)
{
    SetUpFrame(frame, recipe.Path(), 5);
    view.ShowData(FileType::Rcp);
    view.Grid().SetFocusCell(1, 2);
    QCoreApplication::processEvents();
}

/// From the command to the painted window, as are its undo and its redo. The argument is the number of cells.
void PasteBlock(benchmark::State& state, const std::filesystem::path& dataFolder)
{
    const CBigRecipe recipe;
    CRecordingFrame frame;
    frame.document.KeepUnsavedIn(dataFolder);
    CRecipeDataShowView view(frame);
    Expose(view);
    QApplication::clipboard()->setText(BlockOf(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        OpenToPaste(frame, view, recipe);
        state.ResumeTiming();
        PasteInto(view);
    }
}

void PasteCells(benchmark::State& state)
{
    PasteBlock(state, {});
}

/// With a journal of what is not saved.
void PasteCellsKept(benchmark::State& state)
{
    const auto data = std::filesystem::temp_directory_path() / "vantor-bench.data";
    PasteBlock(state, data);
    std::filesystem::remove_all(data);
}

BENCHMARK(PasteCellsKept)->ArgName("cells")->Arg(1'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(PasteCells)->ArgName("cells")->Arg(1'000'000)->Unit(benchmark::kMillisecond);

void UndoPaste(benchmark::State& state)
{
    const CBigRecipe recipe;
    CRecordingFrame frame;
    CRecipeDataShowView view(frame);
    Expose(view);
    QApplication::clipboard()->setText(BlockOf(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        OpenToPaste(frame, view, recipe);
        PasteInto(view);
        state.ResumeTiming();
        ShowUndone(view, frame.document.Undo());
    }
}
BENCHMARK(UndoPaste)->ArgName("cells")->Arg(1'000'000)->Unit(benchmark::kMillisecond);

void RedoPaste(benchmark::State& state)
{
    const CBigRecipe recipe;
    CRecordingFrame frame;
    CRecipeDataShowView view(frame);
    Expose(view);
    QApplication::clipboard()->setText(BlockOf(state.range(0)));
    OpenToPaste(frame, view, recipe);
    PasteInto(view);
    for (auto _ : state) {
        state.PauseTiming();
        ShowUndone(view, frame.document.Undo());
        state.ResumeTiming();
        ShowUndone(view, frame.document.Redo());
    }
}
BENCHMARK(RedoPaste)->ArgName("cells")->Arg(1'000'000)->Unit(benchmark::kMillisecond);

/// One value given to one cell, without its paint; 4,096 cells all over the rows take turns.
void ChangeOneCell(benchmark::State& state)
{
    constexpr std::int32_t kCells = 4096;
    const CBigRecipe recipe;
    CRecordingFrame frame;
    SetUpFrame(frame, recipe.Path(), 5);
    CRecipeDataShowView view(frame);
    Expose(view);
    view.ShowData(FileType::Rcp);
    std::int32_t cell = 0;
    for (auto _ : state) {
        view.Grid().SetItemText(1 + cell * (kRows / kCells), 2 + cell % kColumns, QString::number(cell % 9973));
        cell = (cell + 1) % kCells;
    }
}
BENCHMARK(ChangeOneCell);

/// To what has the focus.
void PressKey(int key, const QString& text)
{
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
    QCoreApplication::sendEvent(QApplication::focusWidget(), &press);
}

/// A value typed into a cell and ended with Enter, with its paints. The cells in sight take turns.
void TypeInto(benchmark::State& state, const std::filesystem::path& dataFolder)
{
    constexpr int kRowsInSight = 16;
    const CBigRecipe recipe;
    CRecordingFrame frame;
    SetUpFrame(frame, recipe.Path(), 5);
    frame.document.KeepUnsavedIn(dataFolder);
    CRecipeDataShowView view(frame);
    Expose(view);
    view.activateWindow();
    view.ShowData(FileType::Rcp);
    view.Grid().setFocus();
    int typed = 0;
    for (auto _ : state) {
        const int row = 1 + typed % kRowsInSight;
        const QString text = QString::number(1 + typed / kRowsInSight % 9);
        view.Grid().SetFocusCell(row, 2);
        PressKey(Qt::Key_0 + text.toInt(), text);
        PressKey(Qt::Key_Return, QStringLiteral("\r"));
        QCoreApplication::processEvents(); // paints
        if (view.Grid().GetItemText(row, 2) != text)
            state.SkipWithError("the cell did not take the value");
        ++typed;
    }
}

void TypeIntoCell(benchmark::State& state)
{
    TypeInto(state, {});
}

/// With a journal of what is not saved.
void TypeIntoCellKept(benchmark::State& state)
{
    const auto data = std::filesystem::temp_directory_path() / "vantor-bench.data";
    TypeInto(state, data);
    std::filesystem::remove_all(data);
}

BENCHMARK(TypeIntoCellKept)->Unit(benchmark::kMicrosecond);
BENCHMARK(TypeIntoCell)->Unit(benchmark::kMicrosecond);

} // namespace
