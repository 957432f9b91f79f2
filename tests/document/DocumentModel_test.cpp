#include "document/RecipeDocument.h"
#include "tests/support/Formats.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <random>

// Random commands on a document, compared after each with a plain model of it: every text, the words on the disk, the
// flag, the edited cells and the library. The model keeps whole copies of what it knows; it has no steps to exchange.

namespace {

constexpr std::size_t kFileWords = 40;

using Words = std::vector<std::uint16_t>;

/// A cell by itself: nothing for the words it was read from.
using ModelState = std::optional<std::u16string>;

struct ModelLayout {
    int columns = 0; ///< of signed 16-bit values
    int start = 0;
    int rows = 0;

    friend bool operator==(const ModelLayout&, const ModelLayout&) = default;
};

/// What one reading showed, and what of it was saved since.
struct ModelReading {
    ModelLayout layout; ///< the settings that it was read by; no rows of it where it was cleared
    bool hasRows = true;
    Words words;
    std::map<std::size_t, ModelState> saved;
    int saves = 0; ///< of the document that it knows of
};

using ModelFormat = std::pair<std::u16string, int>; ///< name, and the number of its items

struct ModelView {
    std::shared_ptr<ModelReading> reading;
    std::map<std::size_t, ModelState> states; ///< of the cells that have a text
};

/// What a command did, and how everything was before and after it.
struct ModelEdit {
    ModelView before;
    ModelView after;
    bool changesCells = false;
    bool isReading = false;
    bool otherFlag = false; ///< of the rows that are not shown
    bool changesFormat = false;
    std::size_t format = 0;
    std::optional<ModelFormat> formatBefore;
    std::optional<ModelFormat> formatAfter;
    std::uint64_t stateBefore = 0;
    std::uint64_t stateAfter = 0;

    bool ChangesRows() const { return changesCells || isReading; }
};

DataFormat FormatOf(const ModelFormat& format)
{
    return MakeFormat(format.first, std::vector<DataItem>(static_cast<std::size_t>(format.second), DefaultItem()));
}

std::shared_ptr<const DataFormat> Stored(const std::optional<ModelFormat>& format)
{
    return format ? std::make_shared<DataFormat>(FormatOf(*format)) : nullptr;
}

class CModelTest {
public:
    /// `othersWrite`: another program changes the file now and then.
    CModelTest(unsigned seed, std::size_t mostHistoryBytes, bool othersWrite)
        : m_random(seed),
          m_othersWrite(othersWrite),
          m_document(mostHistoryBytes)
    {
        for (std::size_t i = 0; i < kFileWords; ++i)
            m_disk.push_back(static_cast<std::uint16_t>(Below(100)));
        StoreDisk();
        m_document.UseFormatsOf(m_store);
        for (const char16_t* name : {u"A", u"B"})
            AddToBoth({name, 2});
        m_store.RemoveFormat(0); // the built-in one
        Open();
    }

    void Run(int steps)
    {
        for (int step = 0; step < steps && !testing::Test::HasFailure(); ++step) {
            const int what = Step();
            Compare();
            if (testing::Test::HasFailure())
                ADD_FAILURE() << "after step " << step << ", a command of the kind " << what;
        }
    }

    int undone = 0; ///< how many edits were undone, so that a test can see that it tested something

private:
    int Below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(m_random); }

    void StoreDisk()
    {
        Bytes bytes;
        for (const std::uint16_t word : m_disk) {
            bytes.push_back(static_cast<std::byte>(word & 0xFF));
            bytes.push_back(static_cast<std::byte>(word >> 8));
        }
        WriteAll(m_path, bytes);
    }

    void AddToBoth(const ModelFormat& format)
    {
        m_store.AppendFormat(FormatOf(format));
        m_formats.push_back(format);
    }

    int Step()
    {
        const int what = Below(100);
        if (what < 25)
            SetTexts(EditKind::Typing, 1);
        else if (what < 35)
            SetTexts(EditKind::Paste, 1 + Below(6));
        else if (what < 65)
            Undo();
        else if (what < 82)
            Redo();
        else if (what < 86)
            ReadAgain();
        else if (what < 87)
            Clear();
        else if (what < 91)
            ChangeFormat(false);
        else if (what < 94)
            ChangeFormat(true);
        else if (what < 95)
            ChangeFormatUnseen();
        else if (what < 97)
            WriteByOthers();
        else if (what < 99 || Below(4) != 0)
            Save();
        else
            Open();
        return what;
    }

    // Each command, on the document and on the model.

    void SetTexts(EditKind kind, int count)
    {
        std::vector<TextForCell> texts;
        for (int i = 0; i < count; ++i) {
            const CellPlace place{Below(6), static_cast<std::uint32_t>(Below(4))};
            texts.push_back({place, Number(Below(50))});
        }
        ModelEdit edit = NewEdit();
        for (const TextForCell& text : texts)
            if (const auto cell = CellAt(text.place))
                edit.after.states[*cell] = text.text;
        edit.changesCells = edit.after.states != edit.before.states || HoldsAny(texts);
        m_document.SetTexts(kind, texts);
        if (edit.changesCells) {
            Take(edit);
            m_modified = true;
        }
    }

    void ReadAgain()
    {
        ModelEdit edit = NewEdit();
        AddReading(edit);
        Take(edit);
    }

    void Clear()
    {
        m_document.ClearRows();
        if (!m_view.reading->hasRows)
            return; // there is nothing to come back to
        ModelEdit edit = NewEdit();
        edit.isReading = true;
        edit.otherFlag = m_modified;
        edit.after = EmptyView(m_settings);
        Take(edit);
    }

    void ChangeFormat(bool isUsed)
    {
        ModelEdit edit = NewEdit();
        edit.changesFormat = true;
        const int way = Below(3);
        edit.format = static_cast<std::size_t>(Below(static_cast<int>(m_formats.size()) + (way == 0 ? 1 : 0)));
        if (way != 0)
            edit.formatBefore = m_formats[edit.format];
        if (way != 1 || m_formats.size() == 1)
            edit.formatAfter = ModelFormat{Number(Below(1000)), 1 + Below(3)};
        const FormatChange change{edit.format, Stored(edit.formatBefore), Stored(edit.formatAfter)};
        const CRecipeDocument::CGroup group(m_document, EditKind::ModifyItem);
        m_store.Apply(change);
        Put(edit.format, edit.formatBefore, edit.formatAfter);
        m_document.NoteFormatChange(EditKind::ModifyItem, change);
        if (isUsed)
            AddReading(edit);
        Take(edit);
    }

    /// Past the history: what an earlier command made of that format is no longer there.
    void ChangeFormatUnseen()
    {
        const auto index = static_cast<std::size_t>(Below(static_cast<int>(m_formats.size())));
        const ModelFormat before = m_formats[index];
        m_formats[index].first += u"x";
        m_store.Apply({index, Stored(before), Stored(m_formats[index])});
    }

    void WriteByOthers()
    {
        if (!m_othersWrite)
            return;
        m_disk[static_cast<std::size_t>(Below(static_cast<int>(kFileWords)))] = static_cast<std::uint16_t>(Below(100));
        StoreDisk();
    }

    void Save()
    {
        if (!m_document.HasRowsOfFile()) {
            EXPECT_FALSE(m_view.reading->hasRows);
            return;
        }
        ASSERT_TRUE(m_document.Write(FileType::Rcp, m_path, m_reporter, m_progress).isSaved);
        m_document.MarkSaved();
        const ModelReading& reading = *m_view.reading;
        for (std::size_t cell = 0; cell < CellCount(); ++cell)
            m_disk[static_cast<std::size_t>(reading.layout.start) + cell] = ShownWord(cell);
        m_view.reading->saved = m_view.states;
        m_view.reading->saves = ++m_saves;
        m_modified = false;
        m_savedState = m_state;
    }

    void Open()
    {
        m_document.StartOpen(m_path, FileType::Rcp);
        m_made.clear();
        m_undone.clear();
        m_state = ++m_lastState;
        m_savedState = m_modified ? 0 : m_state;
        Settle();
        ASSERT_EQ(m_document.Read(FileType::Rcp, m_reporter, m_progress), CRecipeDocument::Reading::Done);
        m_view = ReadView();
    }

    void Undo()
    {
        if (!m_document.UndoName())
            m_made.clear(); // forgotten for lack of memory
        const EditReport report = m_document.Undo();
        ASSERT_EQ(report.outcome == EditOutcome::Nothing, m_made.empty());
        if (m_made.empty())
            return;
        ++undone;
        ModelEdit edit = m_made.back();
        m_made.pop_back();
        ASSERT_EQ(report.isFormatLeftAlone, !Restore(edit, edit.formatAfter, edit.formatBefore));
        const bool isDropped = !edit.ChangesRows() && !edit.changesFormat;
        ASSERT_EQ(report.outcome == EditOutcome::Dropped, isDropped);
        if (isDropped)
            return;
        Show(edit, edit.before, edit.stateBefore);
        m_undone.push_back(edit);
    }

    void Redo()
    {
        const EditReport report = m_document.Redo();
        ASSERT_EQ(report.outcome == EditOutcome::Nothing, m_undone.empty());
        if (m_undone.empty())
            return;
        ModelEdit edit = m_undone.back();
        m_undone.pop_back();
        ASSERT_EQ(report.isFormatLeftAlone, !Restore(edit, edit.formatBefore, edit.formatAfter));
        const bool isDropped = !edit.ChangesRows() && !edit.changesFormat;
        ASSERT_EQ(report.outcome == EditOutcome::Dropped, isDropped);
        if (isDropped)
            return;
        Show(edit, edit.after, edit.stateAfter);
        m_made.push_back(edit);
    }

    // The model's own part.

    static std::u16string Number(int number)
    {
        const std::string digits = std::to_string(number);
        return {digits.begin(), digits.end()};
    }

    std::size_t CellCount() const
    {
        const ModelReading& reading = *m_view.reading;
        return reading.hasRows ? static_cast<std::size_t>(reading.layout.rows * reading.layout.columns) : 0;
    }

    std::optional<std::size_t> CellAt(CellPlace place) const
    {
        const ModelLayout& layout = m_view.reading->layout;
        const auto column = static_cast<int>(place.column);
        if (!m_view.reading->hasRows || place.row >= layout.rows || column >= layout.columns)
            return std::nullopt;
        return static_cast<std::size_t>(place.row * layout.columns + column);
    }

    bool HoldsAny(const std::vector<TextForCell>& texts) const
    {
        return std::any_of(texts.begin(), texts.end(), [this](const TextForCell& text) { return CellAt(text.place); });
    }

    std::u16string ShownText(std::size_t cell) const
    {
        return TextOf(StateIn(m_view.states, cell), *m_view.reading, cell);
    }

    std::uint16_t ShownWord(std::size_t cell) const
    {
        const std::u16string text = ShownText(cell);
        return static_cast<std::uint16_t>(std::stoi(std::string(text.begin(), text.end())));
    }

    ModelEdit NewEdit() const
    {
        ModelEdit edit;
        edit.before = m_view;
        edit.after = m_view;
        return edit;
    }

    void Settle()
    {
        const auto format = static_cast<std::size_t>(Below(static_cast<int>(m_formats.size())));
        m_settings = {m_formats[format].second, Below(5), 1 + Below(5)};
        m_document.TakeSettings({*m_store.Library().formats[format], m_settings.start, m_settings.rows});
    }

    ModelView EmptyView(const ModelLayout& settings) const
    {
        auto reading = std::make_shared<ModelReading>();
        reading->layout = settings;
        reading->hasRows = false;
        reading->saves = m_saves;
        return {reading, {}};
    }

    ModelView ReadView() const
    {
        ModelView view = EmptyView(m_settings);
        view.reading->hasRows = true;
        const auto first = m_disk.begin() + m_settings.start;
        view.reading->words.assign(first, first + m_settings.rows * m_settings.columns);
        return view;
    }

    void AddReading(ModelEdit& edit)
    {
        Settle();
        edit.isReading = true;
        edit.otherFlag = m_modified;
        ASSERT_EQ(m_document.Read(FileType::Rcp, m_reporter, m_progress), CRecipeDocument::Reading::Done);
        edit.after = ReadView();
    }

    void Take(ModelEdit edit)
    {
        edit.stateBefore = m_state;
        if (edit.ChangesRows())
            m_state = ++m_lastState;
        edit.stateAfter = m_state;
        m_view = edit.after;
        m_made.push_back(std::move(edit));
        m_undone.clear();
    }

    void Show(ModelEdit& edit, const ModelView& view, std::uint64_t state)
    {
        m_state = state;
        if (!edit.ChangesRows())
            return;
        if (edit.isReading && view.reading->saves != m_saves)
            edit.otherFlag = IsOtherThanSaved(view);
        m_view = view;
        if (edit.isReading) {
            std::swap(m_modified, edit.otherFlag);
            m_settings = view.reading->layout;
        }
        if (m_state == m_savedState)
            m_modified = false;
        else if (edit.changesCells)
            m_modified = true;
    }

    /// A reading that was away during a save takes what was saved for its own: of the reading that is shown, where both
    /// have the same cells, else what is on the disk. Whether it shows anything else.
    bool IsOtherThanSaved(const ModelView& view) const
    {
        ModelReading& reading = *view.reading;
        const ModelReading& shown = *m_view.reading;
        const bool isAlike = shown.hasRows && reading.layout == shown.layout;
        reading.saves = m_saves;
        reading.saved = view.states;
        bool isOther = false;
        for (std::size_t cell = 0; reading.hasRows && cell < reading.words.size(); ++cell) {
            const std::u16string saved = isAlike
                                             ? TextOf(StateIn(shown.saved, cell), shown, cell)
                                             : Number(m_disk[static_cast<std::size_t>(reading.layout.start) + cell]);
            if (saved == TextOf(StateIn(view.states, cell), reading, cell))
                continue;
            reading.saved[cell] = saved;
            isOther = true;
        }
        return isOther;
    }

    static std::u16string TextOf(const ModelState& state, const ModelReading& reading, std::size_t cell)
    {
        return state ? *state : Number(reading.words[cell]);
    }

    void Put(std::size_t index, const std::optional<ModelFormat>& from, const std::optional<ModelFormat>& to)
    {
        const auto place = m_formats.begin() + static_cast<std::ptrdiff_t>(index);
        if (from && to)
            *place = *to;
        else if (to)
            m_formats.insert(place, *to);
        else if (from)
            m_formats.erase(place);
    }

    /// False when the format is another one by now: from then on the command has nothing to do with it.
    bool Restore(ModelEdit& edit, const std::optional<ModelFormat>& from, const std::optional<ModelFormat>& to)
    {
        if (!edit.changesFormat)
            return true;
        const auto place = PlaceOf(edit.format, from);
        if (place)
            Put(*place, from, to);
        else
            edit.changesFormat = false;
        return place.has_value();
    }

    /// Where the format is by now: where it was, unless another of its name is there; else the nearest that is like it.
    std::optional<std::size_t> PlaceOf(std::size_t place, const std::optional<ModelFormat>& format) const
    {
        if (!format)
            return std::min(place, m_formats.size());
        if (place < m_formats.size() && m_formats[place].first == format->first)
            return m_formats[place] == *format ? std::optional(place) : std::nullopt;
        for (std::size_t away = 0; away <= std::max(place, m_formats.size()); ++away)
            for (const std::size_t near : {place - away, place + away}) // a number below 0 is a very large one
                if (near < m_formats.size() && m_formats[near] == *format)
                    return near;
        return std::nullopt;
    }

    void Compare()
    {
        const CRecipeRows& rows = m_document.Rows();
        const ModelLayout& layout = m_view.reading->layout;
        ASSERT_EQ(m_document.IsModified(), m_modified);
        ASSERT_TRUE(m_othersWrite || m_modified || ShowsWhatIsOnTheDisk());
        ASSERT_EQ(static_cast<std::size_t>(rows.RowCount()) * rows.Columns().size(), CellCount());
        ASSERT_EQ(m_document.Settings().startAddress, m_settings.start);
        ASSERT_EQ(m_document.Settings().rowCount, m_settings.rows);
        std::size_t edited = 0;
        for (std::size_t cell = 0; cell < CellCount(); ++cell) {
            const auto row = static_cast<std::int32_t>(cell) / layout.columns;
            const auto column = cell % static_cast<std::size_t>(layout.columns);
            ASSERT_EQ(rows.Text(row, column), ShownText(cell));
            const bool isEdited = StateIn(m_view.states, cell) != StateIn(m_view.reading->saved, cell);
            ASSERT_EQ(rows.IsEdited(row, column), isEdited);
            edited += isEdited ? 1 : 0;
        }
        ASSERT_EQ(rows.EditedCount(), edited);
        CompareLibrary();
        CompareDisk();
        ASSERT_EQ(m_document.RedoName().has_value(), !m_undone.empty());
        ASSERT_TRUE(m_reporter.shown.empty());
    }

    bool ShowsWhatIsOnTheDisk() const
    {
        const auto start = static_cast<std::size_t>(m_view.reading->layout.start);
        for (std::size_t cell = 0; cell < CellCount(); ++cell)
            if (ShownWord(cell) != m_disk[start + cell])
                return false;
        return true;
    }

    static ModelState StateIn(const std::map<std::size_t, ModelState>& states, std::size_t cell)
    {
        const auto state = states.find(cell);
        return state == states.end() ? ModelState() : state->second;
    }

    void CompareLibrary() const
    {
        ASSERT_EQ(m_store.Library().formats.size(), m_formats.size());
        for (std::size_t i = 0; i < m_formats.size(); ++i) {
            ASSERT_EQ(::TextOf(m_store.Library().formats[i]->name), m_formats[i].first);
            ASSERT_EQ(m_store.Library().formats[i]->items.size(), static_cast<std::size_t>(m_formats[i].second));
        }
    }

    void CompareDisk() const
    {
        const Bytes bytes = ReadAll(m_path);
        ASSERT_EQ(bytes.size(), 2 * kFileWords);
        for (std::size_t i = 0; i < kFileWords; ++i)
            ASSERT_EQ(std::to_integer<int>(bytes[2 * i]) + 256 * std::to_integer<int>(bytes[2 * i + 1]), m_disk[i]);
    }

    std::mt19937 m_random;
    bool m_othersWrite;
    CTempFolder m_folder;
    std::filesystem::path m_path = m_folder / "oven.rcp";
    CRecordingReporter m_reporter;
    CNoProgress m_progress;
    CFormatStore m_store{m_folder / "RecipeFile.Dat"};
    CRecipeDocument m_document;

    Words m_disk;
    std::vector<ModelFormat> m_formats;
    ModelLayout m_settings;
    ModelView m_view;
    bool m_modified = false;
    int m_saves = 0;
    std::uint64_t m_state = 1;
    std::uint64_t m_lastState = 1;
    std::uint64_t m_savedState = 1;
    std::vector<ModelEdit> m_made;
    std::vector<ModelEdit> m_undone;
};

class DocumentModel : public testing::TestWithParam<unsigned> {};

TEST_P(DocumentModel, RandomCommandsLeaveWhatThePlainModelSays)
{
    CModelTest test(GetParam(), CEditHistory::kMostBytes, true);
    test.Run(25'000);
    EXPECT_GT(test.undone, 5'000);
}

TEST_P(DocumentModel, WhatDiffersFromTheFileIsAlwaysModified)
{
    CModelTest test(GetParam(), CEditHistory::kMostBytes, false);
    test.Run(10'000);
    EXPECT_GT(test.undone, 2'000);
}

TEST_P(DocumentModel, TheSameHoldsWhereTheHistoryHasLittleMemory)
{
    CModelTest test(GetParam(), 3'000, true);
    test.Run(5'000);
    EXPECT_GT(test.undone, 500);
}

INSTANTIATE_TEST_SUITE_P(Seeds, DocumentModel, testing::Values(1u, 2u, 3u, 4u));

} // namespace
