#include "changes/SaveRecords.h"

#include "disk/File.h"
#include "files/TableTitles.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

namespace {

ChangeRecord RecordOf(const ZeroWords& zeros, const std::filesystem::path& path)
{
    ChangeRecord record;
    record.address = zeros.first;
    record.why = ChangeReason::End;
    record.zeros = zeros.count;
    if (zeros.count > 0)
        return record;
    record.oldWords.resize(1);
    CFile(path, CFile::Mode::Read).ReadAt(FirstByteOf(zeros.first).number, record.oldWords);
    record.newWords = {record.oldWords[0], std::byte{0}};
    return record;
}

/// Where the cell stands, and why it changes.
ChangeRecord PlaceRecord(const CRecipeRows& rows, FileType type, const PlannedChange& change)
{
    ChangeRecord record;
    if (type != FileType::Csv)
        record.address = AddressOfCell(rows, change.place);
    record.row = change.place.row + kTitleRows;
    record.column = static_cast<std::int32_t>(change.place.column) + kTitleColumns;
    record.item = rows.Columns()[change.place.column].title;
    record.why = change.why;
    return record;
}

/// What a save changes at a cell.
ChangeRecord RecordOf(const CRecipeRows& rows, const CStoredCells& stored, const PlannedChange& change,
                      CCellComparison& cells)
{
    ChangeRecord record = PlaceRecord(rows, stored.Type(), change);
    record.oldText = cells.OldText(change.place);
    record.newText = rows.Text(change.place.row, change.place.column);
    std::u16string reads = cells.ReadAgain(change.place);
    if (reads != *record.newText)
        record.reads = std::move(reads);
    if (stored.Type() == FileType::Csv)
        return record;
    const auto old = cells.OldWords(change.place);
    record.oldWords.assign(old.begin(), old.end());
    const auto fresh = cells.NewWords(change.place);
    record.newWords.assign(fresh.begin(), fresh.end());
    return record;
}

ChangeHeader HeaderOf(const SaveSubject& subject, const CRecipeRows& rows, FileType type)
{
    ChangeHeader header;
    header.file = subject.path.filename().u16string();
    header.type = type;
    header.tables.push_back({subject.format, rows.RowAddress(0), rows.RowCount()});
    return header;
}

std::int64_t Signed(std::uint64_t bytes)
{
    return static_cast<std::int64_t>(bytes);
}

} // namespace

CPlannedChanges::Part CPlannedChanges::PartOf(std::size_t& index) const
{
    const auto zeros = m_plan.ZeroWordsOutside();
    const auto before = static_cast<std::size_t>(std::count_if(
        zeros.begin(), zeros.end(), [this](const ZeroWords& run) { return run.first < m_plan.Rows().RowAddress(0); }));
    const std::array<std::pair<Part, std::size_t>, 4> parts{{{Part::ZerosBefore, before},
                                                             {Part::Cells, m_plan.Changes().size()},
                                                             {Part::ZerosAfter, zeros.size() - before},
                                                             {Part::Dropped, m_plan.Dropped().size()}}};
    for (const auto& [part, count] : parts) {
        if (index < count) {
            index += part == Part::ZerosAfter ? before : 0;
            return part;
        }
        index -= count;
    }
    return Part::Form;
}

std::size_t CPlannedChanges::Count() const
{
    if (!m_plan.IsBegun())
        return 0;
    return m_plan.ZeroWordsOutside().size() + m_plan.Changes().size() + m_plan.Dropped().size() +
           (m_plan.ChangesForm() ? 1 : 0);
}

ChangeRecord CPlannedChanges::At(std::size_t index) const
{
    switch (PartOf(index)) {
    case Part::Cells:
        return RecordOf(m_plan.Rows(), m_plan.Stored(), m_plan.Changes()[index], m_plan.Comparison());
    case Part::ZerosBefore:
    case Part::ZerosAfter:
        return RecordOf(m_plan.ZeroWordsOutside()[index], m_subject.path);
    case Part::Dropped:
        return DroppedRecord(index);
    case Part::Form:
        break;
    }
    ChangeRecord form;
    form.why = ChangeReason::Form;
    return form;
}

std::optional<CellPlace> CPlannedChanges::PlaceOf(std::size_t index) const
{
    return PartOf(index) == Part::Cells ? std::optional(m_plan.Changes()[index].place) : std::nullopt;
}

/// A field, or a line, that the save leaves out.
ChangeRecord CPlannedChanges::DroppedRecord(std::size_t index) const
{
    CSavePlan::DroppedField field = m_plan.FieldOf(m_plan.Dropped()[index]);
    ChangeRecord record;
    if (field.column) {
        record.row = static_cast<std::int32_t>(field.line) + kTitleRows;
        record.column = static_cast<std::int32_t>(*field.column) + kTitleColumns;
    } else {
        record.line = Signed(field.line) + 1;
    }
    record.oldText = std::move(field.text);
    record.newText.emplace();
    record.why = ChangeReason::Rows;
    return record;
}

ChangeHeader CPlannedChanges::Header() const
{
    if (!m_plan.IsBegun())
        return {};
    const CStoredCells& stored = m_plan.Stored();
    ChangeHeader header = HeaderOf(m_subject, m_plan.Rows(), stored.Type());
    header.bytes = Signed(stored.FileBytes());
    header.newBytes = Signed(m_plan.NewFileBytes());
    return header;
}

CEditedChanges::CEditedChanges(const CRecipeRows& rows, const CStoredCells& stored, SaveSubject subject)
    : m_rows(rows),
      m_stored(stored),
      m_subject(std::move(subject)),
      m_cells(rows, stored, false, SaveForm::EditedAlone),
      m_changes(PlanOfEdited(rows, stored)),
      m_zeros(ZeroWordsOfEdited(rows, stored))
{
    std::size_t before = 0;
    for (const ZeroWords& zeros : m_zeros) {
        while (before < m_changes.size() && AddressOfCell(m_rows, m_changes[before].place) < zeros.first)
            ++before;
        m_placesOfZeros.push_back(before + m_placesOfZeros.size());
    }
}

/// `index` becomes that among the zero words, or among the changes.
bool CEditedChanges::IsZeros(std::size_t& index) const
{
    const auto found = std::lower_bound(m_placesOfZeros.begin(), m_placesOfZeros.end(), index);
    const auto zeros = static_cast<std::size_t>(found - m_placesOfZeros.begin());
    const bool isZeros = found != m_placesOfZeros.end() && *found == index;
    index = isZeros ? zeros : index - zeros;
    return isZeros;
}

ChangeRecord CEditedChanges::At(std::size_t index) const
{
    return IsZeros(index) ? RecordOf(m_zeros[index], m_subject.path)
                          : RecordOf(m_rows, m_stored, m_changes[index], m_cells);
}

std::optional<CellPlace> CEditedChanges::PlaceOf(std::size_t index) const
{
    return IsZeros(index) ? std::nullopt : std::optional(m_changes[index].place);
}

ChangeHeader CEditedChanges::Header() const
{
    ChangeHeader header = HeaderOf(m_subject, m_rows, m_stored.Type());
    header.bytes = Signed(m_stored.FileBytes());
    CSilentReporter nobody;
    CNoProgress progress;
    if (const auto bytes = FileBytesAfterEdited(m_rows, m_stored, m_subject.path, nobody, progress))
        header.newBytes = Signed(*bytes);
    return header;
}

CStoredAsShown::CStoredAsShown(std::shared_ptr<const SavedChanges> saved, SaveSubject subject)
    : m_saved(std::move(saved)),
      m_subject(std::move(subject)),
      m_before(m_saved->after.Cells(), m_saved->before, false),
      m_after(m_saved->after.Cells(), m_saved->after, false)
{
    std::copy_if(m_saved->changes.begin(), m_saved->changes.end(), std::back_inserter(m_changes),
                 [](const PlannedChange& change) { return change.why != ChangeReason::Edited; });
}

ChangeRecord CStoredAsShown::At(std::size_t index) const
{
    const PlannedChange& change = m_changes[index];
    const CRecipeRows& cells = m_saved->after.Cells();
    ChangeRecord record = PlaceRecord(cells, m_saved->after.Type(), change);
    record.oldText = m_before.OldText(change.place);
    record.newText = m_after.OldText(change.place);
    if (m_saved->after.Type() == FileType::Csv)
        return record;
    const auto old = m_before.OldWords(change.place);
    record.oldWords.assign(old.begin(), old.end());
    const auto fresh = m_after.OldWords(change.place);
    record.newWords.assign(fresh.begin(), fresh.end());
    return record;
}

ChangeHeader CStoredAsShown::Header() const
{
    ChangeHeader header = HeaderOf(m_subject, m_saved->after.Cells(), m_saved->after.Type());
    header.bytes = Signed(m_saved->before.FileBytes());
    header.newBytes = Signed(m_saved->after.FileBytes());
    return header;
}
