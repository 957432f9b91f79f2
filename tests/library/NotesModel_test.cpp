// Notes of items through random work of two windows in turn, against a plain list of what each item is to have.

#include "library/FormatStore.h"
#include "library/LibraryFile.h"
#include "model/ItemNotes.h"
#include "tests/support/Formats.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace fs = std::filesystem;

namespace {

struct ModelItem {
    std::u16string name;
    std::u16string unit;

    friend bool operator==(const ModelItem&, const ModelItem&) = default;
};

struct ModelFormat {
    std::u16string name;
    std::vector<ModelItem> items;

    friend bool operator==(const ModelFormat&, const ModelFormat&) = default;
};

using Model = std::vector<ModelFormat>;

Model ModelOf(const FormatLibrary& library)
{
    Model model;
    for (const auto& format : library.formats) {
        model.push_back({std::u16string(TextOf(format->name)), {}});
        for (const auto& item : format->items)
            model.back().items.push_back({std::u16string(TextOf(item->description)), item->notes->unit});
    }
    return model;
}

std::ostream& operator<<(std::ostream& out, const ModelFormat& format)
{
    const auto put = [&out](const std::u16string& text) { out << std::string(text.begin(), text.end()); };
    put(format.name);
    for (const ModelItem& item : format.items) {
        out << ' ';
        put(item.name);
        out << '=';
        put(item.unit);
    }
    return out << '\n';
}

template <class List>
auto At(List& list, std::size_t place)
{
    return std::next(list.begin(), static_cast<std::ptrdiff_t>(place));
}

/// Items of three names, so that several of a format bear one.
class CRandomWork {
public:
    explicit CRandomWork(const fs::path& path) : m_path(path), m_model(ModelOf(m_stores[0].Library())) {}

    void Step()
    {
        if (Below(20) == 0)
            HandOver();
        const std::size_t format = Below(m_model.size());
        const std::size_t item = Below(m_model[format].items.size());
        switch (Below(9)) {
        case 0:
            return Duplicate(format);
        case 1:
            return RemoveFormat(format);
        case 2:
            return RenameFormat(format);
        case 3:
            return InsertItem(format, Below(m_model[format].items.size() + 1));
        case 4:
            return RemoveItem(format, item);
        case 5:
            return MoveItem(format, item, Below(m_model[format].items.size()));
        case 6:
            return RenameItem(format, item);
        case 7:
            return TakeBack();
        default:
            return Note(format, item);
        }
    }

    /// What the window at work shows, and what it is to show.
    Model Shown() const { return ModelOf(m_stores[m_window].Library()); }
    const Model& Expected() const { return m_model; }

    bool AreAllAlike()
    {
        HandOver();
        CRecordingReporter reporter;
        FormatLibrary stored;
        return m_areSaved && LoadLibrary(m_path, stored, reporter) && ModelOf(stored) == m_model && Shown() == m_model;
    }

private:
    struct Done {
        FormatChange change;
        Model before;
    };

    std::size_t Below(std::size_t count) { return m_random() % std::max<std::size_t>(count, 1); }
    CFormatStore& Store() { return m_stores[m_window]; }
    std::u16string AnyName() { return std::u16string(1, static_cast<char16_t>(u'a' + Below(3))); }

    /// Saves, and goes on in the other window, whose undo begins anew.
    void HandOver()
    {
        m_areSaved = Store().Save() && m_areSaved;
        m_window = 1 - m_window;
        Store().TakeOthers();
        m_done.clear();
    }

    template <class Edit>
    void Do(FormatChange change, Edit edit)
    {
        m_done.push_back({std::move(change), m_model});
        edit(m_model);
    }

    void Duplicate(std::size_t format)
    {
        if (m_model.size() >= 6)
            return;
        Do(Store().DuplicateFormat(format), [format](Model& model) { model.push_back(ModelFormat(model[format])); });
        m_model.back().name = TextOf(Store().Library().formats.back()->name);
    }

    void RemoveFormat(std::size_t format)
    {
        if (m_model.size() > 1)
            Do(Store().RemoveFormat(format), [format](Model& model) { model.erase(At(model, format)); });
    }

    void RenameFormat(std::size_t format)
    {
        const std::u16string name = AnyName() + AnyName() + AnyName() + AnyName();
        Do(Store().RenameFormat(format, name), [&](Model& model) { model[format].name = name; });
    }

    void InsertItem(std::size_t format, std::size_t position)
    {
        if (m_model[format].items.size() >= 6)
            return;
        const ModelItem fresh{AnyName(), {}};
        Do(Store().InsertItem(format, position, MakeItem(fresh.name, DataType::Unsigned16, 1, 4)),
           [&](Model& model) { model[format].items.insert(At(model[format].items, position), fresh); });
    }

    void RemoveItem(std::size_t format, std::size_t item)
    {
        if (m_model[format].items.size() > 1)
            Do(Store().RemoveItem(format, item),
               [&](Model& model) { model[format].items.erase(At(model[format].items, item)); });
    }

    void MoveItem(std::size_t format, std::size_t from, std::size_t to)
    {
        Do(Store().MoveItem(format, from, to), [&](Model& model) {
            auto& items = model[format].items;
            if (from < to)
                std::rotate(At(items, from), At(items, from + 1), At(items, to + 1));
            else
                std::rotate(At(items, to), At(items, from), At(items, from + 1));
        });
    }

    void RenameItem(std::size_t format, std::size_t item)
    {
        DataItem renamed = *Store().Library().formats[format]->items[item];
        const std::u16string name = AnyName();
        SetText(renamed.description, name);
        Do(Store().ReplaceItem(format, item, renamed), [&](Model& model) { model[format].items[item].name = name; });
    }

    void Note(std::size_t format, std::size_t item)
    {
        ItemNotes notes;
        if (Below(4) != 0)
            notes.unit = u"u" + AnyName() + AnyName() + AnyName();
        const std::u16string unit = notes.unit;
        Do(Store().SetNotes(format, item, std::move(notes)),
           [&](Model& model) { model[format].items[item].unit = unit; });
    }

    void TakeBack()
    {
        if (m_done.empty())
            return;
        Store().TakeBack(m_done.back().change);
        m_model = std::move(m_done.back().before);
        m_done.pop_back();
    }

    const fs::path m_path;
    std::array<CFormatStore, 2> m_stores{CFormatStore(m_path), CFormatStore(m_path)};
    std::size_t m_window = 0;
    Model m_model;
    std::vector<Done> m_done;
    std::mt19937 m_random{2020};
    bool m_areSaved = true;
};

} // namespace

TEST(NotesModel, EachItemHasItsNotesThroughRandomWorkOfTwoWindowsInTurn)
{
    const CTempFolder folder;
    const fs::path path = folder / "RecipeFile.Dat";
    FormatLibrary library;
    library.formats.push_back(
        std::make_unique<DataFormat>(MakeFormat(u"F", {MakeItem(u"a", DataType::Unsigned16, 1, 4)})));
    ASSERT_EQ(library.save(path), 0);
    CRandomWork work(path);
    for (int step = 0; step < 10000; ++step) {
        work.Step();
        ASSERT_EQ(work.Shown(), work.Expected()) << "step " << step;
    }
    EXPECT_TRUE(work.AreAllAlike());
}
