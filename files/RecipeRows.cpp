#include "files/RecipeRows.h"

#include "files/SameBytes.h"
#include "model/LittleEndian.h"
#include "model/ValueLimits.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <new>
#include <utility>

void CRecipeRows::LayOut(std::vector<ColumnCoding> columns, std::int32_t startAddress, std::int32_t rowCount)
{
    m_columns = std::move(columns);
    m_startAddress = startAddress;
    m_rowCount = std::max(rowCount, 0);
    m_wordsPerRow = 0;
    m_wordOffsets.clear();
    m_wordOffsets.reserve(m_columns.size());
    for (const ColumnCoding& column : m_columns) {
        m_wordOffsets.push_back(m_wordsPerRow);
        m_wordsPerRow += column.dataLength;
    }
    ShowNothing();
}

void CRecipeRows::TakeNotesOf(std::span<const ColumnCoding> columns)
{
    for (std::size_t i = 0; i < m_columns.size(); ++i)
        m_columns[i].notes = columns[i].notes;
}

void CRecipeRows::Clear()
{
    LayOut({}, 0, 0);
}

std::uint64_t CRecipeRows::StretchBytes() const
{
    return 2 * static_cast<std::uint64_t>(m_wordsPerRow) * static_cast<std::uint64_t>(m_rowCount);
}

std::uint64_t CRecipeRows::BytesWithin(std::uint64_t fileSize) const
{
    const ByteOffset fileEnd(fileSize);
    return fileEnd <= FirstByte() ? 0 : std::min(fileEnd - FirstByte(), StretchBytes());
}

WordAddress CRecipeRows::RowAddress(std::int32_t row) const
{
    return WordAddress(m_startAddress) + static_cast<std::int64_t>(m_wordsPerRow) * row;
}

ByteOffset CRecipeRows::FirstByte() const
{
    return FirstByteOf(RowAddress(0));
}

void CRecipeRows::ShowNothing()
{
    Show(Source::Nothing);
}

void CRecipeRows::ShowNewDocument()
{
    Show(Source::NewDocument);
}

void CRecipeRows::ShowWords(CByteBuffer image, RecipeKind kind)
{
    Show(Source::Words);
    m_image = std::make_shared<const CByteBuffer>(std::move(image));
    m_kind = kind;
}

void CRecipeRows::ShowSourceOf(const CRecipeRows& other, RecipeKind kind)
{
    Show(other.m_source);
    m_kind = kind;
    m_image = other.m_image;
    m_fields = other.m_fields;
}

void CRecipeRows::ShowEverywhere(CByteBuffer words, RecipeKind kind)
{
    Show(Source::SameWords);
    m_image = std::make_shared<const CByteBuffer>(std::move(words));
    m_kind = kind;
}

void CRecipeRows::ShowFields(CFieldTable fields)
{
    Show(Source::Fields);
    m_fields = std::make_shared<const CFieldTable>(std::move(fields));
}

std::u16string CRecipeRows::Text(std::int32_t row, std::size_t column) const
{
    std::u16string text;
    AppendText(row, column, text);
    return text;
}

void CRecipeRows::AppendText(std::int32_t row, std::size_t column, std::u16string& text) const
{
    if (Holds(row, column))
        AppendState(State({row, static_cast<std::uint32_t>(column)}), row, column, text);
}

bool CRecipeRows::SetText(std::int32_t row, std::size_t column, std::u16string_view text)
{
    if (!Holds(row, column))
        return false;
    CellEdit edit{{row, static_cast<std::uint32_t>(column)}, CCellState::OfText(std::u16string(text))};
    Exchange({&edit, 1});
    return true;
}

CRecipeRows::TouchedCells::const_iterator CRecipeRows::Find(std::int32_t row, std::size_t column) const
{
    return Holds(row, column) ? m_touchedCells.find(CellKey(row, column)) : m_touchedCells.end();
}

const CCellState& CRecipeRows::State(CellPlace place) const
{
    static const CCellState untouched;
    const auto cell = Find(place.row, place.column);
    return cell == m_touchedCells.end() ? untouched : cell->second.state;
}

bool CRecipeRows::IsEdited(std::int32_t row, std::size_t column) const
{
    const auto cell = Find(row, column);
    return cell != m_touchedCells.end() && IsEdited(cell->second);
}

CellPlace CRecipeRows::PlaceOf(std::uint64_t cellKey) const
{
    return {static_cast<std::int32_t>(cellKey / m_columns.size()),
            static_cast<std::uint32_t>(cellKey % m_columns.size())};
}

std::vector<CellPlace> CRecipeRows::EditedPlaces() const
{
    std::vector<CellPlace> places;
    places.reserve(m_editedCount);
    for (const auto& [key, cell] : m_touchedCells)
        if (IsEdited(cell))
            places.push_back(PlaceOf(key));
    return places;
}

std::optional<CellPlace> CRecipeRows::NextEdited(CellPlace place) const
{
    auto cell = place.row < 0 ? m_touchedCells.begin() : m_touchedCells.upper_bound(CellKey(place.row, place.column));
    while (cell != m_touchedCells.end() && !IsEdited(cell->second))
        ++cell;
    return cell == m_touchedCells.end() ? std::nullopt : std::optional(PlaceOf(cell->first));
}

std::optional<CellPlace> CRecipeRows::PreviousEdited(CellPlace place) const
{
    auto next = place.row < 0 ? m_touchedCells.begin() : m_touchedCells.lower_bound(CellKey(place.row, place.column));
    while (next != m_touchedCells.begin())
        if (--next; IsEdited(next->second))
            return PlaceOf(next->first);
    return std::nullopt;
}

std::uint64_t CRecipeRows::BytesBefore(CellPlace place) const
{
    const std::int32_t words = place.column == 0 ? 0 : m_wordOffsets[place.column];
    return 2 * (static_cast<std::uint64_t>(m_wordsPerRow) * static_cast<std::uint64_t>(place.row) +
                static_cast<std::uint64_t>(words));
}

void CRecipeRows::LoadWords(CellPlace place, std::span<std::byte> words) const
{
    const CCellState& state = State(place);
    std::size_t loaded = 0;
    if (state.IsExact()) {
        const auto given = state.Words().substr(0, words.size() / sizeof(char16_t));
        StoreEach(words, given);
        loaded = given.size() * sizeof(char16_t);
    } else if (state.IsUntouched() && m_source == Source::Words) {
        const auto read = Image().subspan(std::min(PositionInImage(place.row, place.column), Image().size()));
        loaded = std::min(read.size(), words.size());
        std::copy_n(read.begin(), loaded, words.begin());
    }
    std::fill(words.begin() + static_cast<std::ptrdiff_t>(loaded), words.end(), std::byte{0});
}

std::optional<std::span<const std::byte>> CRecipeRows::UntouchedRows(std::int32_t first, std::int32_t count) const
{
    const auto begin = static_cast<std::size_t>(BytesBefore({first, 0}));
    const auto end = static_cast<std::size_t>(BytesBefore({first + count, 0}));
    const auto touched = m_touchedCells.lower_bound(CellKey(first, 0));
    const bool isTouched = touched != m_touchedCells.end() && touched->first < CellKey(first + count, 0);
    if (m_source != Source::Words || isTouched || end > Image().size())
        return std::nullopt;
    return Image().subspan(begin, end - begin);
}

bool CRecipeRows::HasField(CellPlace place) const
{
    if (State(place).IsText())
        return true;
    return m_source == Source::Fields && m_fields->HasField(static_cast<std::size_t>(place.row), place.column);
}

void CRecipeRows::MarkSaved()
{
    ++m_saves;
    m_editedCount = 0;
    m_savedStates.clear();
}

void CRecipeRows::Exchange(std::span<CellEdit> edits)
{
    auto next = m_touchedCells.begin();
    try {
        next = MakeRoomFor(edits);
    } catch (const std::bad_alloc&) {
        ForgetRoomFor(edits);
        throw;
    }
    for (CellEdit& edit : edits)
        next = Exchange(Seek(next, CellKey(edit.place.row, edit.place.column)), edit.other);
}

/// All that takes memory, so that the exchange itself cannot fail half-way. The first of the cells.
CRecipeRows::TouchedCells::iterator CRecipeRows::MakeRoomFor(std::span<const CellEdit> edits)
{
    auto first = m_touchedCells.end();
    auto next = m_touchedCells.begin();
    for (const CellEdit& edit : edits) {
        const std::uint64_t key = CellKey(edit.place.row, edit.place.column);
        next = m_touchedCells.try_emplace(Seek(next, key), key);
        if (first == m_touchedCells.end())
            first = next;
        const TouchedCell& cell = next->second;
        if (!IsEdited(cell) && !cell.state.IsUntouched())
            m_savedStates.try_emplace(key, cell.state);
        ++next;
    }
    return first;
}

/// The first touched cell from `from` on that does not stand before `cellKey`. That is mostly `from` itself: edits come
/// in the order of the cells.
CRecipeRows::TouchedCells::iterator CRecipeRows::Seek(TouchedCells::iterator from, std::uint64_t cellKey)
{
    return from != m_touchedCells.end() && from->first < cellKey ? m_touchedCells.lower_bound(cellKey) : from;
}

/// Takes the room back that was not used: cells that are neither touched nor edited.
void CRecipeRows::ForgetRoomFor(std::span<const CellEdit> edits)
{
    for (const CellEdit& edit : edits) {
        const auto cell = m_touchedCells.find(CellKey(edit.place.row, edit.place.column));
        if (cell == m_touchedCells.end() || IsEdited(cell->second))
            continue;
        m_savedStates.erase(cell->first);
        if (cell->second.state.IsUntouched())
            m_touchedCells.erase(cell);
    }
}

/// The touched cell that comes next.
CRecipeRows::TouchedCells::iterator CRecipeRows::Exchange(TouchedCells::iterator cell, CCellState& other)
{
    std::swap(cell->second.state, other);
    const auto saved = m_savedStates.find(cell->first);
    const bool isAsSaved =
        saved == m_savedStates.end() ? cell->second.state.IsUntouched() : cell->second.state == saved->second;
    if (IsEdited(cell->second))
        --m_editedCount;
    if (!isAsSaved)
        ++m_editedCount;
    cell->second.editedAfter = isAsSaved ? 0 : m_saves;
    if (isAsSaved && saved != m_savedStates.end())
        m_savedStates.erase(saved);
    return isAsSaved && cell->second.state.IsUntouched() ? m_touchedCells.erase(cell) : std::next(cell);
}

std::optional<std::u16string> CRecipeRows::OutsideLimits(std::int32_t row, std::size_t column) const
{
    if (!Holds(row, column))
        return std::nullopt;
    const ColumnCoding& coding = m_columns[column];
    const CCellState& state = State({row, static_cast<std::uint32_t>(column)});
    if (state.IsText())
        return ValueOutsideLimits(coding, state.Text());
    if (state.IsExact())
        return ValueOutsideLimits(coding, BytesOfWords(state.Words()), 0);
    switch (m_source) {
    case Source::Nothing:
        break;
    case Source::NewDocument:
        return ValueOutsideLimits(coding, u"0");
    case Source::Fields:
        return ValueOutsideLimits(coding, m_fields->Field(static_cast<std::size_t>(row), column));
    case Source::Words:
    case Source::SameWords:
        return ValueOutsideLimits(coding, Image(), PositionInImage(row, column));
    }
    return std::nullopt;
}

void CRecipeRows::Show(Source source)
{
    m_source = source;
    m_image.reset();
    m_fields.reset();
    m_touchedCells.clear();
    MarkSaved();
}

bool CRecipeRows::IsLaidOutLike(const CRecipeRows& other) const
{
    return m_rowCount == other.m_rowCount && m_startAddress == other.m_startAddress && m_columns == other.m_columns;
}

/// What the cell was at the last save, or reading.
CCellState CRecipeRows::SavedState(std::uint64_t cellKey) const
{
    const auto cell = m_touchedCells.find(cellKey);
    if (cell == m_touchedCells.end())
        return {};
    if (!IsEdited(cell->second))
        return cell->second.state;
    const auto saved = m_savedStates.find(cellKey);
    return saved == m_savedStates.end() ? CCellState() : saved->second;
}

/// Whether the cell was read from the same words as in `other`, as far as that is quickly seen.
bool CRecipeRows::IsReadLike(CellPlace place, const CRecipeRows& other) const
{
    if (m_source != Source::Words || other.m_source != Source::Words || m_kind != other.m_kind)
        return false;
    const std::size_t begin = PositionInImage(place.row, place.column);
    const std::size_t size = 2 * static_cast<std::size_t>(m_columns[place.column].dataLength);
    if (begin + size > std::min(Image().size(), other.Image().size()))
        return false;
    return AreEqual(Image().subspan(begin, size), other.Image().subspan(begin, size));
}

/// All but those that are untouched in both and were read from the same words.
std::vector<std::uint64_t> CRecipeRows::CellsThatMayDifferFrom(const CRecipeRows& other) const
{
    std::vector<std::uint64_t> cells;
    for (const TouchedCells* touched : {&m_touchedCells, &other.m_touchedCells})
        for (const auto& cell : *touched)
            cells.push_back(cell.first);
    const std::uint64_t count = SourceId() == other.SourceId() ? 0 : CellKey(m_rowCount, 0);
    for (std::uint64_t key = 0; key < count; ++key)
        if (!IsReadLike(PlaceOf(key), other))
            cells.push_back(key);
    std::sort(cells.begin(), cells.end());
    cells.erase(std::unique(cells.begin(), cells.end()), cells.end());
    return cells;
}

void CRecipeRows::TakeSavedFrom(const CRecipeRows& other)
{
    if (!IsLaidOutLike(other))
        return;
    const std::vector<std::uint64_t> cells = CellsThatMayDifferFrom(other);
    MarkSaved();
    for (const std::uint64_t cell : cells)
        CompareWithSaved(cell, other);
}

void CRecipeRows::CompareWithSaved(std::uint64_t cellKey, const CRecipeRows& other)
{
    const CellPlace place = PlaceOf(cellKey);
    const CCellState& state = State(place);
    const CCellState saved = other.SavedState(cellKey);
    std::u16string savedText;
    other.AppendState(saved, place.row, place.column, savedText);
    const bool isExact = state.IsExact() || saved.IsExact();
    if (isExact ? state == saved : Text(place.row, place.column) == savedText)
        return;
    m_savedStates.try_emplace(cellKey, saved.IsExact() ? saved : CCellState::OfText(savedText));
    m_touchedCells[cellKey].editedAfter = m_saves;
    ++m_editedCount;
}

void CRecipeRows::ShareSourceOf(const CRecipeRows& other)
{
    if (m_image && other.m_image && AreEqual(Image(), other.Image()))
        m_image = other.m_image;
    if (m_fields && other.m_fields && *m_fields == *other.m_fields)
        m_fields = other.m_fields;
}

const void* CRecipeRows::SourceId() const
{
    return m_image ? static_cast<const void*>(m_image.get()) : m_fields.get();
}

std::size_t CRecipeRows::SourceBytes() const
{
    return m_fields ? m_fields->FurtherBytes() : Image().size();
}

std::size_t CRecipeRows::FurtherBytes() const
{
    constexpr std::size_t kNode = 4 * sizeof(void*); // what a map adds to an entry
    std::size_t bytes = m_columns.size() * (sizeof(ColumnCoding) + sizeof(std::int32_t));
    for (const auto& [key, cell] : m_touchedCells)
        bytes += kNode + sizeof(TouchedCells::value_type) + cell.state.FurtherBytes();
    for (const auto& saved : m_savedStates)
        bytes += kNode + sizeof(saved) + saved.second.FurtherBytes();
    return bytes;
}

bool CRecipeRows::Holds(std::int32_t row, std::size_t column) const
{
    return row >= 0 && row < m_rowCount && column < m_columns.size();
}

void CRecipeRows::AppendState(const CCellState& state, std::int32_t row, std::size_t column, std::u16string& text) const
{
    if (state.IsText()) {
        text += state.Text();
    } else if (state.IsExact()) {
        std::size_t pos = 0;
        AppendValue(m_columns[column], BytesOfWords(state.Words()), pos, m_kind, text);
    } else {
        AppendUntouched(row, column, text);
    }
}

void CRecipeRows::AppendUntouched(std::int32_t row, std::size_t column, std::u16string& text) const
{
    const ColumnCoding& coding = m_columns[column];
    switch (m_source) {
    case Source::Nothing:
        return;
    case Source::NewDocument:
        if (coding.dataType != DataType::String)
            text += u'0';
        return;
    case Source::Fields:
        text += m_fields->Field(static_cast<std::size_t>(row), column);
        return;
    case Source::Words:
    case Source::SameWords:
        std::size_t pos = PositionInImage(row, column);
        AppendValue(coding, Image(), pos, m_kind, text);
        return;
    }
}
