#include "changes/CellDifferences.h"

#include "files/TableTitles.h"
#include "text/PathText.h"

#include <cstdint>
#include <utility>

ChangeHeader HeaderOf(const ChangeSubject& subject, const CRecipeRows& rows, FileType type)
{
    ChangeHeader header;
    header.file = PathText(subject.path.filename());
    header.type = type;
    header.tables.push_back({subject.format, rows.RowAddress(0), rows.RowCount()});
    return header;
}

ChangeRecord PlaceRecord(const CRecipeRows& rows, FileType type, CellPlace place)
{
    ChangeRecord record;
    SetPlace(rows, type, place, record);
    return record;
}

void SetPlace(const CRecipeRows& rows, FileType type, CellPlace place, ChangeRecord& record)
{
    if (type != FileType::Csv)
        record.address = AddressOfCell(rows, place);
    record.row = place.row + kTitleRows;
    record.column = static_cast<std::int32_t>(place.column) + kTitleColumns;
    record.item = rows.Columns()[place.column].title;
}

CCellDifferences::CCellDifferences(CStoredCells before, CStoredCells after, std::vector<CellPlace> places,
                                   ChangeSubject subject)
    : m_before(std::move(before)),
      m_after(std::move(after)),
      m_places(std::move(places)),
      m_subject(std::move(subject)),
      m_cellsBefore(m_after.Cells(), m_before, false),
      m_cellsAfter(m_after.Cells(), m_after, false)
{
}

ChangeRecord CCellDifferences::At(std::size_t index) const
{
    const CellPlace place = m_places[index];
    ChangeRecord record = PlaceRecord(m_after.Cells(), m_after.Type(), place);
    record.oldText = m_cellsBefore.OldText(place);
    record.newText = m_cellsAfter.OldText(place);
    if (m_after.Type() == FileType::Csv)
        return record;
    const auto old = m_cellsBefore.OldWords(place);
    record.oldWords.assign(old.begin(), old.end());
    const auto fresh = m_cellsAfter.OldWords(place);
    record.newWords.assign(fresh.begin(), fresh.end());
    return record;
}

ChangeHeader CCellDifferences::Header() const
{
    ChangeHeader header = HeaderOf(m_subject, m_after.Cells(), m_after.Type());
    header.bytes = static_cast<std::int64_t>(m_before.FileBytes());
    header.newBytes = static_cast<std::int64_t>(m_after.FileBytes());
    return header;
}
