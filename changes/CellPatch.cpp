#include "changes/CellPatch.h"

#include "changes/CellDifferences.h"
#include "changes/ChangeLines.h"
#include "changes/RecordPlaces.h"
#include "files/CellComparison.h"
#include "files/SameBytes.h"
#include "model/CellCheck.h"

#include <algorithm>
#include <optional>
#include <span>
#include <utility>
#include <variant>

namespace {

constexpr std::size_t kLinesAtOnce = 4096; // between two looks at the progress

ChangeFault Fault(std::u16string_view key, std::u16string_view text)
{
    return {0, std::u16string(key), std::u16string(text)};
}

bool HasWords(const ChangeRecord& record)
{
    return !record.oldWords.empty() || !record.newWords.empty();
}

/// Reads the records of a patch one after the other, and holds each against the table.
class CPatchReading {
public:
    CPatchReading(std::istream& input, const FileTable& table, FileType type, bool hasWords)
        : m_reader(input),
          m_table(table),
          m_type(type),
          m_hasWords(hasWords)
    {
    }

    ReadCellPatch Read(CProgress& progress)
    {
        if (auto fault = ReadHeader(); !fault.empty())
            return {{}, std::move(fault), false};
        for (;;) {
            if (m_lines.size() % kLinesAtOnce == 0 && !progress.Advance(0, 1))
                return {{}, {}, true};
            auto next = m_reader.Next();
            if (const auto* fault = std::get_if<ChangeFault>(&next))
                return {{}, FaultText(*fault), false};
            if (std::holds_alternative<EndOfChanges>(next))
                break;
            if (auto fault = Take(std::get<ChangeRecord>(std::move(next)))) {
                fault->line = m_reader.Line();
                return {{}, FaultText(*fault), false};
            }
        }
        if (const auto fault = Sort())
            return {{}, FaultText(*fault), false};
        return {std::move(m_patch), {}, false};
    }

private:
    std::u16string ReadHeader()
    {
        auto header = m_reader.ReadHeader();
        if (const auto* fault = std::get_if<ChangeFault>(&header))
            return FaultText(*fault);
        m_patch.header = std::get<ChangeHeader>(std::move(header));
        if (m_patch.header.type && *m_patch.header.type != m_type)
            return u"it is made for a file of another type";
        FindTable();
        const auto& [bytes, newBytes] = std::pair(m_patch.header.bytes, m_patch.header.newBytes);
        m_file = {m_type, {&m_table, 1}, {}};
        for (const auto& size : {bytes, newBytes})
            if (size && *size >= 0)
                m_file.ends.push_back(static_cast<std::uint64_t>(*size));
        return {};
    }

    /// Of several tables it is the one with the name and place of that which is shown.
    void FindTable()
    {
        const auto& tables = m_patch.header.tables;
        const ChangedTable shown = NamesOf({&m_table, 1}).front();
        const auto found = std::find(tables.begin(), tables.end(), shown);
        m_index = tables.size() > 1 && found != tables.end() ? static_cast<std::int32_t>(found - tables.begin()) : 0;
    }

    std::optional<ChangeFault> Take(ChangeRecord record)
    {
        if (record.row && record.table != m_index)
            return Fault(u"table", u"that table is not the one that is shown");
        record.table = 0;
        const auto place = PlaceOf(record, m_file);
        if (const auto* fault = std::get_if<ChangeFault>(&place))
            return *fault;
        const auto* cell = std::get_if<TableCell>(&place);
        if (cell == nullptr)
            return Fault({}, u"it stands for no value of the table that is shown");
        if (auto fault = FaultOfValue(record, cell->place))
            return fault;
        m_lines.push_back({m_reader.Line(), m_patch.entries.size()});
        m_patch.entries.push_back({std::move(record), cell->place});
        return std::nullopt;
    }

    std::optional<ChangeFault> FaultOfValue(const ChangeRecord& record, CellPlace place) const
    {
        const CRecipeRows& layout = m_table.layout;
        if (HasWords(record)) {
            if (!m_hasWords)
                return Fault(u"newWords", u"the rows shown take no words");
            if (!record.newWords.empty() && record.newWords.size() != BytesOfCell(layout, place))
                return Fault(u"newWords", u"the value would end early");
        }
        if (record.newWords.empty() && !record.newText)
            return Fault(m_type == FileType::Csv ? u"new" : u"newWords", u"the value would be taken away");
        const bool isChecked = record.newWords.empty() && m_type != FileType::Csv;
        if (isChecked && !ValidateCellValue(layout.Columns()[place.column], *record.newText))
            return Fault(u"new", u"the cell does not take that text");
        return std::nullopt;
    }

    /// Records that say the same are one.
    std::optional<ChangeFault> Sort()
    {
        auto& entries = m_patch.entries;
        const auto isBefore = [&](const Line& a, const Line& b) {
            return entries[a.entry].place < entries[b.entry].place;
        };
        std::stable_sort(m_lines.begin(), m_lines.end(), isBefore);
        std::vector<CellPatch::Entry> sorted;
        sorted.reserve(entries.size());
        for (const Line& line : m_lines) {
            CellPatch::Entry& entry = entries[line.entry];
            if (sorted.empty() || sorted.back().place < entry.place)
                sorted.push_back(std::move(entry));
            else if (sorted.back().record != entry.record)
                return ChangeFault{line.number, u"row", u"another record says something else of the same place"};
        }
        entries = std::move(sorted);
        return std::nullopt;
    }

    struct Line {
        std::uint64_t number;
        std::size_t entry;
    };

    CChangeReader m_reader;
    const FileTable& m_table;
    FileType m_type;
    bool m_hasWords;
    RecordFile m_file;
    std::int32_t m_index = 0; ///< of the table that is shown, among those of the header
    CellPatch m_patch;
    std::vector<Line> m_lines;
};

/// Whether the patch says all there is, as one that was written by a program: what is missing is not there.
bool IsComplete(const ChangeHeader& header)
{
    return header.bytes && header.newBytes;
}

/// A typed text that is read again as another one is shown as it was typed.
bool ShowsText(const std::u16string& text, CellPlace place, CCellsNow& now)
{
    return now.Text(place) == text || now.Rows().Text(place.row, place.column) == text;
}

bool FindsItsOldValue(const CellPatch& patch, const CellPatch::Entry& entry, CCellsNow& now)
{
    const ChangeRecord& record = entry.record;
    if (record.oldWords.empty() && record.oldText)
        return ShowsText(*record.oldText, entry.place, now);
    if (now.Type() == FileType::Csv)
        return !IsComplete(patch.header) || !now.Text(entry.place);
    return !HasWords(record) || AreEqual(now.Words(entry.place), record.oldWords);
}

} // namespace

ReadCellPatch ReadPatchFor(std::istream& input, const FileTable& table, FileType type, bool hasWords,
                           CProgress& progress)
{
    return CPatchReading(input, table, type, hasWords).Read(progress);
}

std::vector<std::size_t> OthersThan(const CellPatch& patch, CCellsNow& now)
{
    std::vector<std::size_t> others;
    for (std::size_t i = 0; i < patch.entries.size(); ++i)
        if (!FindsItsOldValue(patch, patch.entries[i], now))
            others.push_back(i);
    return others;
}

std::vector<CellEdit> EditsOf(const CellPatch& patch)
{
    std::vector<CellEdit> edits;
    edits.reserve(patch.entries.size());
    for (const auto& [record, place] : patch.entries)
        edits.push_back({place, record.newWords.empty() ? CCellState::OfText(*record.newText)
                                                        : CCellState::OfWords(WordsOf(record.newWords))});
    return edits;
}

CKnownChanges ChangesOf(const CellPatch& patch, CCellsNow& now)
{
    std::vector<CellPatch::Entry> entries = patch.entries;
    for (auto& [record, place] : entries) {
        ChangeRecord whole = PlaceRecord(now.Rows(), now.Type(), place);
        whole.oldText = now.Text(place);
        whole.newText = std::move(record.newText);
        whole.reads = std::move(record.reads);
        whole.newWords = std::move(record.newWords);
        whole.why = record.why;
        if (!whole.newWords.empty()) {
            const auto words = now.Words(place);
            whole.oldWords.assign(words.begin(), words.end());
        }
        record = std::move(whole);
    }
    ChangeHeader header = patch.header;
    header.type = now.Type();
    return {std::move(header), std::move(entries)};
}

CKnownChanges ExpectedAndFound(const CellPatch& patch, const std::vector<std::size_t>& others, CCellsNow& now)
{
    std::vector<CellPatch::Entry> entries;
    for (const std::size_t i : others) {
        const auto& [record, place] = patch.entries[i];
        ChangeRecord told = PlaceRecord(now.Rows(), now.Type(), place);
        told.oldText = record.oldText;
        told.oldWords = record.oldWords;
        told.newText = now.Text(place);
        if (now.Type() != FileType::Csv) {
            const auto words = now.Words(place);
            told.newWords.assign(words.begin(), words.end());
        }
        entries.push_back({std::move(told), place});
    }
    ChangeHeader header = patch.header;
    header.type = now.Type();
    return {std::move(header), std::move(entries)};
}
