#include "recovery/UnsavedChanges.h"

#include "files/CellComparison.h"
#include "files/TableTitles.h"
#include "model/WordCodec.h"
#include "text/PathText.h"

#include <utility>

namespace {

RecipeKind KindOf(FileType type)
{
    return IsPaged(type) ? RecipeKind::Paged : RecipeKind::Flat;
}

CRecipeRows RowsOf(const UnsavedWork& work)
{
    CRecipeRows rows;
    rows.LayOut(LayOutColumns(work.header.format), work.header.startAddress, work.header.rowCount);
    rows.ShowWords(CByteBuffer(), KindOf(work.header.readAs));
    std::vector<CellEdit> edits;
    edits.reserve(work.cells.size());
    for (const UnsavedCell& cell : work.cells)
        edits.push_back({cell.place, cell.state});
    rows.Exchange(edits);
    return rows;
}

} // namespace

CUnsavedChanges::CUnsavedChanges(const UnsavedWork& work) : m_work(work), m_rows(RowsOf(work))
{
    m_coder.emplace(m_rows, Kind());
    for (std::size_t i = 0; i < work.cells.size(); ++i)
        if (IsChanged(work.cells[i]))
            m_changed.push_back(i);
}

RecipeKind CUnsavedChanges::Kind() const
{
    return KindOf(m_work.header.type);
}

/// A field that is missing shows "0".
bool CUnsavedChanges::IsChanged(const UnsavedCell& cell) const
{
    if (m_work.header.file.empty())
        return true;
    if (IsTable())
        return m_rows.Text(cell.place.row, cell.place.column) != cell.oldText.value_or(u"0");
    return NewWords(cell.place) != cell.oldWords;
}

WordRun CUnsavedChanges::NewWords(CellPlace place) const
{
    WordRun words(BytesOfCell(m_rows, place));
    m_coder->CodeCell(place, words);
    return words;
}

ChangeRecord CUnsavedChanges::At(std::size_t index) const
{
    const UnsavedCell& cell = CellAt(index);
    ChangeRecord record;
    record.row = cell.place.row + kTitleRows;
    record.column = static_cast<std::int32_t>(cell.place.column) + kTitleColumns;
    record.item = m_rows.Columns()[cell.place.column].title;
    record.newText = m_rows.Text(cell.place.row, cell.place.column);
    record.why = ChangeReason::Edited;
    if (!IsTable())
        AddWords(cell, record);
    else if (!m_work.header.file.empty())
        record.oldText = cell.oldText;
    return record;
}

/// What only files of words have.
void CUnsavedChanges::AddWords(const UnsavedCell& cell, ChangeRecord& record) const
{
    const ColumnCoding& coding = m_rows.Columns()[cell.place.column];
    record.address = AddressOfCell(m_rows, cell.place);
    record.newWords = NewWords(cell.place);
    std::size_t pos = 0;
    std::u16string reads = FormatValue(coding, record.newWords, pos, Kind());
    if (reads != record.newText)
        record.reads = std::move(reads);
    if (m_work.header.file.empty())
        return;
    record.oldWords = cell.oldWords;
    pos = 0;
    if (cell.oldWords.size() == record.newWords.size())
        record.oldText = FormatValue(coding, cell.oldWords, pos, Kind());
}

ChangeHeader CUnsavedChanges::Header() const
{
    const WorkHeader& work = m_work.header;
    ChangeHeader header;
    if (!work.file.empty())
        header.file = PathText(work.file.filename());
    header.type = work.type;
    header.tables.push_back({std::u16string(TextOf(work.format.name)), m_rows.RowAddress(0), m_rows.RowCount()});
    return header;
}

std::optional<CellPlace> CUnsavedChanges::PlaceOf(std::size_t index) const
{
    return CellAt(index).place;
}
