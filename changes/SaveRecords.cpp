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

/// What a save changes at a cell.
ChangeRecord RecordOf(const CRecipeRows& rows, const CStoredCells& stored, const PlannedChange& change,
                      CCellComparison& cells)
{
    ChangeRecord record = PlaceRecord(rows, stored.Type(), change.place);
    record.why = change.why;
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

std::int64_t Signed(std::uint64_t bytes)
{
    return static_cast<std::int64_t>(bytes);
}

std::vector<PlannedChange> UneditedOf(const SavedChanges& saved)
{
    std::vector<PlannedChange> changes;
    std::copy_if(saved.changes.begin(), saved.changes.end(), std::back_inserter(changes),
                 [](const PlannedChange& change) { return change.why != ChangeReason::Edited; });
    return changes;
}

std::vector<CellPlace> PlacesOf(const std::vector<PlannedChange>& changes)
{
    std::vector<CellPlace> places;
    std::transform(changes.begin(), changes.end(), std::back_inserter(places),
                   [](const PlannedChange& change) { return change.place; });
    return places;
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

CEditedChanges::CEditedChanges(const CRecipeRows& rows, const CStoredCells& stored, ChangeSubject subject)
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

CStoredAsShown::CStoredAsShown(const SavedChanges& saved, ChangeSubject subject)
    : m_changes(UneditedOf(saved)),
      m_differences(saved.before, saved.after, PlacesOf(m_changes), std::move(subject))
{
}

ChangeRecord CStoredAsShown::At(std::size_t index) const
{
    ChangeRecord record = m_differences.At(index);
    record.why = m_changes[index].why;
    return record;
}
