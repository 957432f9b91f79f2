// The format pane with a library that is larger than any that is in use.

#include "library/FormatLibrary.h"
#include "tests/views/RecordingFrame.h"
#include "views/RecipeFormatEditView.h"

#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QScrollBar>
#include <QTreeWidget>
#include <QWindow>
#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>

namespace fs = std::filesystem;

namespace {

constexpr QSize kPaneSize{355, 852};

DataFormat FormatOf(const std::u16string& name, int items)
{
    DataFormat format(name);
    for (int i = 0; i < items; ++i) {
        DataItem item = DefaultItem();
        SetText(item.description, u"Oven zone " + std::u16string(static_cast<std::size_t>(i % 20), u'x'));
        format.insertItem(format.items.size(), std::make_unique<DataItem>(item));
    }
    format.itemCount = items;
    return format;
}

/// The pane on the (offscreen) screen, over a library of its own with `formats` formats of `items` items.
class CShownPane {
public:
    CShownPane(int formats, int items) : m_folder(fs::temp_directory_path() / "vantor-pane-bench")
    {
        fs::create_directory(m_folder);
        FormatLibrary library;
        for (int i = 0; i < formats; ++i) {
            const std::string number = std::to_string(i);
            library.formats.push_back(std::make_unique<DataFormat>(
                FormatOf(u"Format " + std::u16string(number.begin(), number.end()), items)));
        }
        library.save(m_folder / FormatLibrary::kFileName);
        Open();
    }
    ~CShownPane()
    {
        Close();
        fs::remove_all(m_folder);
    }
    CShownPane(const CShownPane&) = delete;
    CShownPane& operator=(const CShownPane&) = delete;

    void Open()
    {
        m_pView = std::make_unique<CRecipeFormatEditView>(m_frame, m_folder / "vantor");
        m_pView->resize(kPaneSize);
        m_pView->show();
        while (!m_pView->windowHandle()->isExposed())
            QCoreApplication::processEvents();
        QCoreApplication::processEvents(); // paints
    }
    void Close() { m_pView.reset(); }

    QComboBox& Formats() const { return *m_pView->findChild<QComboBox*>("comboFormats"); }
    QTreeWidget& Items() const { return *m_pView->findChild<QTreeWidget*>("listItems"); }

private:
    fs::path m_folder;
    CRecordingFrame m_frame;
    std::unique_ptr<CRecipeFormatEditView> m_pView;
};

void PressKey(QWidget& target, Qt::Key key)
{
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
    QCoreApplication::sendEvent(&target, &press);
}

/// Another format chosen by a key, its items listed and painted.
void RefillItemList(benchmark::State& state)
{
    const CShownPane pane(2, static_cast<int>(state.range(0)));
    QComboBox& formats = pane.Formats();
    for (auto _ : state) {
        PressKey(formats, formats.currentIndex() == 0 ? Qt::Key_Down : Qt::Key_Up);
        QCoreApplication::processEvents(); // paints
    }
}
BENCHMARK(RefillItemList)->ArgName("items")->Arg(100)->Arg(10'000)->Unit(benchmark::kMillisecond);

/// One page of the list and its paint.
void ScrollItemList(benchmark::State& state)
{
    const CShownPane pane(1, static_cast<int>(state.range(0)));
    QScrollBar& bar = *pane.Items().verticalScrollBar();
    for (auto _ : state) {
        bar.setValue((bar.value() + bar.pageStep()) % bar.maximum());
        QCoreApplication::processEvents(); // paints
    }
}
BENCHMARK(ScrollItemList)->ArgName("items")->Arg(10'000)->Unit(benchmark::kMillisecond);

/// An item deleted by its key; the changed format goes into the library file and to the frame at once.
void DeleteItem(benchmark::State& state)
{
    const CShownPane pane(1, static_cast<int>(state.range(0)));
    pane.Items().setCurrentItem(pane.Items().topLevelItem(0));
    for (auto _ : state) {
        PressKey(pane.Items(), Qt::Key_Delete);
        QCoreApplication::processEvents(); // paints
    }
}
BENCHMARK(DeleteItem)->ArgName("items")->Arg(10'000)->Iterations(200)->Unit(benchmark::kMillisecond);

/// The pane made and painted, with its library read and every format in the box.
void ShowPane(benchmark::State& state)
{
    CShownPane pane(static_cast<int>(state.range(0)), 10);
    for (auto _ : state) {
        state.PauseTiming();
        pane.Close();
        state.ResumeTiming();
        pane.Open();
    }
}
BENCHMARK(ShowPane)->ArgName("formats")->Arg(1)->Arg(1'000)->Unit(benchmark::kMillisecond);

/// The box of formats opened and painted.
void OpenFormatBox(benchmark::State& state)
{
    const CShownPane pane(static_cast<int>(state.range(0)), 10);
    for (auto _ : state) {
        pane.Formats().showPopup();
        QCoreApplication::processEvents(); // paints
        state.PauseTiming();
        pane.Formats().hidePopup();
        QCoreApplication::processEvents();
        state.ResumeTiming();
    }
}
BENCHMARK(OpenFormatBox)->ArgName("formats")->Arg(1)->Arg(1'000)->Unit(benchmark::kMillisecond);

} // namespace
