#include "changes/RecordPlaces.h"

#include "files/CellComparison.h"
#include "files/TableTitles.h"
#include "text/MessageText.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace {

using Place = std::variant<TableCell, NoCell, ChangeFault>;

ChangeFault Fault(std::u16string_view key, std::u16string text)
{
    return {0, std::u16string(key), std::move(text)};
}

bool HasWords(const ChangeRecord& record)
{
    return !record.oldWords.empty() || !record.newWords.empty();
}

/// The data column whose value begins so many words after a row's first; nothing when none does.
std::optional<std::uint32_t> ColumnAt(const CRecipeRows& layout, std::int64_t words)
{
    for (std::uint32_t column = 0; column < layout.Columns().size(); ++column)
        if (layout.WordOffset(column) == words && BytesOfCell(layout, {0, column}) > 0)
            return column;
    return std::nullopt;
}

/// The cell of the table that begins at that address; nothing when none does.
std::optional<CellPlace> CellAt(const CRecipeRows& layout, WordAddress address)
{
    const std::int64_t words = address.number - layout.StartAddress();
    if (words < 0 || layout.WordsPerRow() <= 0 || words / layout.WordsPerRow() >= layout.RowCount())
        return std::nullopt;
    const auto column = ColumnAt(layout, words % layout.WordsPerRow());
    if (!column)
        return std::nullopt;
    return CellPlace{static_cast<std::int32_t>(words / layout.WordsPerRow()), *column};
}

/// What a record of a value says, held against a table.
class CPlaceInTable {
public:
    CPlaceInTable(const ChangeRecord& record, const RecordFile& file) : m_record(record), m_file(file) {}

    Place Find()
    {
        const auto table = static_cast<std::size_t>(m_record.table);
        if (table >= m_file.tables.size())
            return Fault(u"table", FillMessage(u"the file has no table %d", {std::int64_t{m_record.table}}));
        if (Layout().Columns().empty())
            return FindInUnknown();
        const std::int32_t row = *m_record.row - kTitleRows;
        if (row >= Layout().RowCount())
            return Fault(u"row", FillMessage(u"the last row of the table is %d",
                                             {static_cast<std::int64_t>(Layout().RowCount())}));
        if (IsFurtherField())
            return NoCell();
        const auto column = m_record.column || m_record.item ? Column() : ColumnOfAddress(row);
        if (const auto* fault = std::get_if<ChangeFault>(&column))
            return *fault;
        return Checked({table, {row, std::get<std::uint32_t>(column)}});
    }

    /// The cell is the one at the record's address.
    Place Checked(TableCell cell) const
    {
        const CRecipeRows& layout = m_file.tables[cell.table].layout;
        const ColumnCoding& column = layout.Columns()[cell.place.column];
        if (m_record.item && *m_record.item != column.title)
            return Fault(u"item", FillMessage(u"the title of that column is %s", {column.title}));
        if (m_file.type == FileType::Csv)
            return cell;
        const WordAddress address = AddressOfCell(layout, cell.place);
        if (m_record.address && *m_record.address != address)
            return Fault(u"address", FillMessage(u"the value stands at RW%d", {address.number}));
        const std::size_t whole = BytesOfCell(layout, cell.place);
        const std::size_t length = std::max(m_record.oldWords.size(), m_record.newWords.size());
        if (HasWords(m_record) && !CanBe(length, address, whole))
            return Fault(!m_record.newWords.empty() ? u"newWords" : u"oldWords",
                         FillMessage(whole == 2 ? u"the value has %d word" : u"the value has %d words",
                                     {static_cast<std::int64_t>(whole / 2)}));
        return cell;
    }

private:
    const FileTable& Table() const { return m_file.tables[static_cast<std::size_t>(m_record.table)]; }
    const CRecipeRows& Layout() const { return Table().layout; }

    /// The format is not known: what the record says is all there is.
    Place FindInUnknown() const
    {
        const bool saysWhere =
            m_file.type == FileType::Csv ? m_record.column.has_value() : m_record.address && HasWords(m_record);
        if (saysWhere)
            return NoCell();
        return Fault(u"table", FillMessage(u"there is no format %s, which is needed", {Table().format}));
    }

    /// A field after the last column of a table of texts.
    bool IsFurtherField() const
    {
        const std::int64_t columns = static_cast<std::int64_t>(Layout().Columns().size());
        return m_file.type == FileType::Csv && !m_record.item && m_record.column &&
               *m_record.column - kTitleColumns >= columns;
    }

    /// Of a record that says no more than its address and its row.
    std::variant<std::uint32_t, ChangeFault> ColumnOfAddress(std::int32_t row) const
    {
        for (std::uint32_t column = 0; column < Layout().Columns().size(); ++column)
            if (BytesOfCell(Layout(), {row, column}) > 0 && AddressOfCell(Layout(), {row, column}) == m_record.address)
                return column;
        return Fault(u"address", u"no value of that row begins there");
    }

    /// By its number, else by its title.
    std::variant<std::uint32_t, ChangeFault> Column() const
    {
        const std::vector<ColumnCoding>& columns = Layout().Columns();
        if (m_record.column) {
            const std::int64_t column = std::int64_t{*m_record.column} - kTitleColumns;
            if (column < static_cast<std::int64_t>(columns.size()))
                return static_cast<std::uint32_t>(column);
            return Fault(u"column", FillMessage(u"the last column of the table is %d",
                                                {static_cast<std::int64_t>(columns.size()) + kTitleColumns - 1}));
        }
        const auto hasTitle = [this](const ColumnCoding& column) { return column.title == *m_record.item; };
        const auto found = std::find_if(columns.begin(), columns.end(), hasTitle);
        if (found == columns.end())
            return Fault(u"item", u"no column has that title");
        if (std::find_if(found + 1, columns.end(), hasTitle) != columns.end())
            return Fault(u"item", u"several columns have that title");
        return static_cast<std::uint32_t>(found - columns.begin());
    }

    /// Whether a value that takes `whole` bytes at `address` may have `length` of them.
    bool CanBe(std::size_t length, WordAddress address, std::size_t whole) const
    {
        const std::uint64_t end = FirstByteOf(address).number + length;
        return length == whole ||
               (length < whole && std::find(m_file.ends.begin(), m_file.ends.end(), end) != m_file.ends.end());
    }

    const ChangeRecord& m_record;
    const RecordFile& m_file;
};

/// The cell at the record's address, in the table that it names, or the only one that has one there.
Place FindByAddress(const ChangeRecord& record, const RecordFile& file)
{
    std::vector<TableCell> cells;
    for (std::size_t i = static_cast<std::size_t>(record.table); i < file.tables.size(); ++i) {
        if (const auto place = CellAt(file.tables[i].layout, *record.address))
            cells.push_back({i, *place});
        if (record.table != 0)
            break;
    }
    const bool needsCell = record.item || !HasWords(record);
    if (cells.size() == 1) {
        auto place = CPlaceInTable(record, file).Checked(cells.front());
        return needsCell || std::holds_alternative<TableCell>(place) ? place : NoCell();
    }
    if (!needsCell)
        return NoCell();
    return Fault(u"address",
                 cells.empty() ? u"no value of the table begins there" : u"several tables have a value there");
}

/// What the type of the file has no room for.
std::optional<ChangeFault> FaultOfKind(const ChangeRecord& record, FileType type)
{
    if (type != FileType::Csv && record.line)
        return Fault(u"line", u"only a .csv file has lines");
    if (type != FileType::Csv)
        return std::nullopt;
    if (record.address)
        return Fault(u"address", u"a .csv file has no words");
    if (HasWords(record))
        return Fault(record.oldWords.empty() ? u"newWords" : u"oldWords", u"a .csv file has no words");
    if (record.zeros != 0)
        return Fault(u"zeros", u"a .csv file has no words");
    return std::nullopt;
}

std::optional<ChangeFault> FaultOfLine(const ChangeRecord& record, std::span<const FileTable> tables)
{
    const std::int64_t rows = tables.empty() ? 0 : tables.front().layout.RowCount();
    if (*record.line > rows)
        return std::nullopt;
    return Fault(u"line", FillMessage(u"the last row of the table is %d, and that line is one of its rows", {rows}));
}

} // namespace

std::variant<TableCell, NoCell, ChangeFault> PlaceOf(const ChangeRecord& record, const RecordFile& file)
{
    if (const auto fault = FaultOfKind(record, file.type))
        return *fault;
    if (record.line) {
        const auto fault = FaultOfLine(record, file.tables);
        return fault ? Place(*fault) : NoCell();
    }
    if (record.row)
        return CPlaceInTable(record, file).Find();
    if (record.zeros != 0 || !record.address)
        return NoCell();
    return FindByAddress(record, file);
}
