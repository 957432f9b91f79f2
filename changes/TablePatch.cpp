#include "changes/Patch.h"
#include "changes/RecordPlaces.h"
#include "files/CsvEdits.h"
#include "files/TableTitles.h"
#include "text/FileMessages.h"
#include "text/PathText.h"

#include <algorithm>
#include <utility>

namespace {

/// The records of a patch as changes of fields and lines.
class CTablePatch final : public CFilePatch {
public:
    CTablePatch(const Patch& patch, const PatchedFile& file) : m_patch(patch), m_file(file) {}

    std::optional<PatchRefusal> Look() override
    {
        if (m_patch.header.type && *m_patch.header.type != m_file.type)
            return PatchRefusal{u"it is made for a file of another type", {}};
        std::u16string reason = MakeChanges();
        if (reason.empty())
            reason = SortChanges();
        if (!reason.empty())
            return PatchRefusal{std::move(reason), {}};
        if (m_changes.empty())
            return IsReadable() ? std::nullopt : std::optional(PatchRefusal());
        CNoProgress progress;
        m_look = LookAtCsvPatch(m_changes, Extent(), m_file.path, progress);
        if (!m_look.others.empty())
            return PatchRefusal{{}, Others()};
        if (!m_look.refusal.empty() || m_look.outcome != Outcome::Done)
            return PatchRefusal{m_look.refusal, {}};
        return std::nullopt;
    }

    bool ChangesNothing() override
    {
        return std::all_of(m_changes.begin(), m_changes.end(),
                           [](const CsvChange& change) { return change.looksAtFrom && change.from == change.to; });
    }

    ChangeHeader Header() override
    {
        ChangeHeader header;
        header.file = PathText(m_file.path.filename());
        header.type = m_file.type;
        if (const auto size = CFile(m_file.path, CFile::Mode::Read).Size()) {
            header.bytes = static_cast<std::int64_t>(*size);
            header.newBytes = m_changes.empty() ? *header.bytes : static_cast<std::int64_t>(m_look.newBytes);
        }
        header.tables = NamesOf(m_file.tables);
        return header;
    }

    void HandTo(CChangeTaker& taker) override
    {
        for (const CsvChange& change : m_changes) {
            ChangeRecord record = PlaceOfChange(change);
            record.oldText = change.from;
            record.newText = change.to;
            if (!taker.Take(record))
                return;
        }
    }

    const CWordDifferences* Words() override { return nullptr; }

    SaveResult Write(const WriteTarget& target, CReporter& reporter) override
    {
        CNoProgress progress;
        const CsvPatchEnd end = SaveCsvPatch(m_changes, Extent(), target.path, progress);
        if (end.outcome != Outcome::Done)
            ShowFileError(reporter, kSaveTableError, target.path);
        return ResultOf(end.outcome);
    }

private:
    bool IsReadable() const { return CFile(m_file.path, CFile::Mode::Read).Size().has_value(); }

    const CRecipeRows* Layout() const { return m_file.tables.empty() ? nullptr : &m_file.tables.front().layout; }

    CsvExtent Extent() const
    {
        if (Layout() == nullptr)
            return {};
        return {static_cast<std::size_t>(Layout()->RowCount()), Layout()->Columns().size()};
    }

    std::u16string MakeChanges()
    {
        const RecordFile file{m_file.type, m_file.tables, {}};
        for (std::size_t i = 0; i < m_patch.entries.size(); ++i) {
            if (auto fault = MakeChange(m_patch.entries[i].record, file)) {
                fault->line = m_patch.entries[i].line;
                return FaultText(*fault);
            }
            m_lines.push_back(m_patch.entries[i].line);
        }
        return {};
    }

    std::optional<ChangeFault> MakeChange(const ChangeRecord& record, const RecordFile& file)
    {
        if (record.why == ChangeReason::Form && !record.row && !record.line)
            return ChangeFault{0, u"why", u"the form of a file is nothing that a patch can change"};
        const auto place = PlaceOf(record, file);
        if (const auto* fault = std::get_if<ChangeFault>(&place))
            return *fault;
        CsvChange change;
        if (record.line) {
            change.line = static_cast<std::uint64_t>(*record.line) - 1;
        } else if (const auto* cell = std::get_if<TableCell>(&place)) {
            change.line = static_cast<std::uint64_t>(cell->place.row);
            change.column = cell->place.column;
        } else {
            change.line = static_cast<std::uint64_t>(*record.row - kTitleRows);
            change.column = static_cast<std::size_t>(*record.column - kTitleColumns);
        }
        change.from = record.oldText;
        change.to = record.newText;
        const bool isDropped = record.why == ChangeReason::Rows && record.newText == u"";
        if (isDropped)
            change.to.reset(); // what a save would leave out
        change.looksAtFrom = change.from || IsComplete();
        m_changes.push_back(std::move(change));
        return std::nullopt;
    }

    /// Whether the patch says all there is, as one that was written by a program: what is missing is not there.
    bool IsComplete() const { return m_patch.header.bytes && m_patch.header.newBytes; }

    std::u16string SortChanges()
    {
        std::vector<std::size_t> order(m_changes.size());
        for (std::size_t i = 0; i < order.size(); ++i)
            order[i] = i;
        std::stable_sort(order.begin(), order.end(), [this](std::size_t a, std::size_t b) {
            const CsvChange& one = m_changes[a];
            const CsvChange& other = m_changes[b];
            return one.line != other.line ? one.line < other.line : one.column < other.column;
        });
        std::vector<CsvChange> sorted;
        for (const std::size_t i : order) {
            CsvChange& change = m_changes[i];
            const bool isSameLine = !sorted.empty() && sorted.back().line == change.line;
            const bool isSame = isSameLine && sorted.back().column == change.column;
            const bool areMixed = isSameLine && !sorted.back().column && change.column;
            if (areMixed || (isSame && !Agree(sorted.back(), change)))
                return FaultText({m_lines[i], change.column ? u"row" : u"line",
                                  u"another record says something else of the same place"});
            if (!isSame)
                sorted.push_back(std::move(change));
            else if (change.looksAtFrom)
                sorted.back() = std::move(change);
        }
        m_changes = std::move(sorted);
        return {};
    }

    static bool Agree(const CsvChange& one, const CsvChange& other)
    {
        return one.to == other.to && (!one.looksAtFrom || !other.looksAtFrom || one.from == other.from);
    }

    std::vector<PatchRefusal::Other> Others() const
    {
        std::vector<PatchRefusal::Other> others;
        for (const CCsvPatcher::Other& other : m_look.others) {
            ChangeRecord expected = PlaceOfChange(m_changes[other.change]);
            expected.oldText = m_changes[other.change].from;
            others.push_back({std::move(expected), other.found, {}});
        }
        return others;
    }

    ChangeRecord PlaceOfChange(const CsvChange& change) const
    {
        ChangeRecord record;
        if (!change.column) {
            record.line = static_cast<std::int64_t>(change.line) + 1;
            return record;
        }
        record.row = static_cast<std::int32_t>(change.line) + kTitleRows;
        record.column = static_cast<std::int32_t>(*change.column) + kTitleColumns;
        if (Layout() != nullptr && *change.column < Layout()->Columns().size())
            record.item = Layout()->Columns()[*change.column].title;
        return record;
    }

    const Patch& m_patch;
    const PatchedFile& m_file;
    std::vector<CsvChange> m_changes;
    std::vector<std::uint64_t> m_lines; ///< of the patch, for each record
    CsvPatchEnd m_look;
};

} // namespace

std::unique_ptr<CFilePatch> MakeTablePatch(const Patch& patch, const PatchedFile& file)
{
    return std::make_unique<CTablePatch>(patch, file);
}
