#include "changes/TableComparison.h"

#include "files/SameBytes.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::size_t kPieceBytes = std::size_t{64} << 10;
constexpr std::int32_t kTextRows = 256; // that are compared at once by their texts

WordRun RunOf(std::span<const std::byte> words)
{
    return {words.begin(), words.end()};
}

} // namespace

CTableComparison::CTableComparison(const CRecipeRows& rows, const CStoredCells& stored, ComparedWith other)
    : m_rows(rows),
      m_stored(stored),
      m_other(std::move(other))
{
}

void CTableComparison::Begin(ChangeSubject subject, FileType type)
{
    m_subject = std::move(subject);
    m_type = type;
    m_takesStored = m_isBegun && m_other.isSelf; // at first it is as it was read: another program may have changed it
    m_isBegun = true;
    m_ours.reset();
    m_theirs.reset();
    m_nextRow = 0;
    m_places.clear();
    m_outside.reset();
    m_isOutsideBegun = false;
    m_isOutsideUnknown = false;
    ++m_edition;
}

void CTableComparison::End()
{
    m_hasEnded = true;
    m_ours.reset();
    m_theirs.reset();
    m_places.clear();
    m_outside.reset();
    ++m_edition;
}

bool CTableComparison::IsByText() const
{
    return m_type == FileType::Csv || m_type != m_other.cells.Type();
}

CCellsNow& CTableComparison::Ours()
{
    if (!m_ours)
        m_ours.emplace(m_rows, m_stored, m_type);
    return *m_ours;
}

/// A file that is compared with its own table is what it was saved as.
CCellsNow& CTableComparison::Theirs()
{
    if (!m_theirs) {
        if (m_takesStored && m_stored.IsKnown() && m_stored.Type() == m_other.cells.Type())
            m_other.cells = m_stored;
        m_theirs.emplace(m_other.cells);
    }
    return *m_theirs;
}

bool CTableComparison::Differs(CellPlace place)
{
    if (m_hasEnded || !m_rows.HasCell(place))
        return false;
    if (IsByText())
        return Ours().Text(place) != Theirs().Text(place);
    return !AreEqual(Ours().Words(place), Theirs().Words(place));
}

ChangeRecord CTableComparison::RecordOf(CellPlace place)
{
    ChangeRecord record = PlaceRecord(m_rows, m_type, place);
    record.oldText = Ours().Text(place);
    record.newText = Theirs().Text(place);
    if (IsByText())
        return record;
    record.oldWords = RunOf(Ours().Words(place));
    record.newWords = RunOf(Theirs().Words(place));
    return record;
}

bool CTableComparison::Continue(std::chrono::steady_clock::time_point end)
{
    while (!IsFinished()) {
        Step();
        if (std::chrono::steady_clock::now() >= end)
            break;
    }
    return IsFinished();
}

Outcome CTableComparison::Finish(CProgress& progress)
{
    while (!IsFinished()) {
        Step();
        const auto done = static_cast<std::uint64_t>(m_nextRow);
        if (!progress.Advance(done, static_cast<std::uint64_t>(RowCount()) + 1))
            return Outcome::GivenUp;
    }
    return Outcome::Done;
}

/// In the order of the addresses, so that what is found comes after what was found before.
void CTableComparison::Step()
{
    if (!m_isOutsideBegun)
        BeginOutside();
    else if (m_nextRow < RowCount() && !(m_outside && m_outside->IsBeforeStretch()))
        CompareNextRows();
    else
        m_outside->CompareNext();
}

void CTableComparison::CompareNextRows()
{
    const std::int32_t most = IsByText() ? kTextRows : RowsWithin(kPieceBytes, m_rows);
    const std::int32_t count = std::min(most, RowCount() - m_nextRow);
    if (!AreSame(m_nextRow, count))
        for (std::int32_t row = m_nextRow; row < m_nextRow + count; ++row)
            if (count == 1 || !AreSame(row, 1))
                CompareRow(row);
    m_nextRow += count;
}

bool CTableComparison::AreSame(std::int32_t first, std::int32_t count)
{
    if (IsByText())
        return false;
    const auto ours = Ours().WordsOfRows(first, count);
    const auto theirs = ours ? Theirs().WordsOfRows(first, count) : std::nullopt;
    return theirs && (ours->data() == theirs->data() || AreEqual(*ours, *theirs));
}

void CTableComparison::CompareRow(std::int32_t row)
{
    for (std::uint32_t column = 0; column < m_rows.Columns().size(); ++column)
        if (Differs({row, column}))
            m_places.push_back({row, column});
}

void CTableComparison::BeginOutside()
{
    m_isOutsideBegun = true;
    if (IsByText() || m_other.isSelf || m_subject.path.empty())
        return;
    auto before = std::make_shared<CFileWords>(m_type, m_subject.path);
    auto after = m_other.openWords ? m_other.openWords() : nullptr;
    m_isOutsideUnknown = !before->IsOpen() || !after;
    if (m_isOutsideUnknown)
        return;
    const std::uint64_t begin = m_rows.FirstByte().number;
    m_outside =
        std::make_unique<COutsideWords>(std::move(before), std::move(after),
                                        COutsideWords::Stretch{begin, begin + m_rows.StretchBytes()}, IsPaged(m_type));
}

/// Those that were not looked at yet are when their turn comes.
void CTableComparison::Update(std::span<const CellPlace> cells)
{
    if (m_hasEnded || !m_isBegun || cells.empty())
        return;
    if (m_ours)
        m_ours->EditsChanged();
    const auto end = std::lower_bound(cells.begin(), cells.end(), CellPlace{m_nextRow, 0});
    cells = cells.first(static_cast<std::size_t>(end - cells.begin()));
    if (cells.empty())
        return;
    const auto first = std::lower_bound(m_places.begin(), m_places.end(), cells.front());
    const auto last = std::upper_bound(first, m_places.end(), cells.back());
    std::vector<CellPlace> differing;
    std::copy_if(cells.begin(), cells.end(), std::back_inserter(differing),
                 [this](CellPlace cell) { return Differs(cell); });
    std::vector<CellPlace> others;
    std::set_difference(first, last, cells.begin(), cells.end(), std::back_inserter(others));
    std::vector<CellPlace> merged;
    std::merge(others.begin(), others.end(), differing.begin(), differing.end(), std::back_inserter(merged));
    const auto common = std::min<std::ptrdiff_t>(last - first, std::ssize(merged));
    const auto next = std::copy_n(merged.begin(), common, first);
    if (next == last)
        m_places.insert(next, merged.begin() + common, merged.end());
    else
        m_places.erase(next, last);
    ++m_edition;
}

/// Between files of two types words and sizes mean nothing.
ChangeHeader CTableComparison::Header() const
{
    ChangeHeader header = HeaderOf(m_subject, Layout(), m_type);
    if (m_type != m_other.cells.Type() || !m_stored.IsKnown())
        return header;
    header.bytes = static_cast<std::int64_t>(m_stored.FileBytes());
    header.newBytes = static_cast<std::int64_t>(m_other.cells.FileBytes());
    return header;
}

std::size_t CComparedChanges::CountBefore() const
{
    const COutsideWords* outside = m_comparison->Outside();
    return outside != nullptr ? outside->CountBefore() : 0;
}

std::size_t CComparedChanges::Count() const
{
    const COutsideWords* outside = m_comparison->Outside();
    return m_comparison->Places().size() + (outside != nullptr ? outside->Count() : 0);
}

ChangeRecord CComparedChanges::At(std::size_t index) const
{
    if (const auto place = PlaceOf(index))
        return m_comparison->RecordOf(*place);
    const COutsideWords* const outside = m_comparison->Outside();
    if (outside == nullptr)
        return {};
    return outside->At(index < CountBefore() ? index : index - m_comparison->Places().size());
}

std::optional<CellPlace> CComparedChanges::PlaceOf(std::size_t index) const
{
    const std::size_t before = CountBefore();
    const auto& places = m_comparison->Places();
    if (index < before || index - before >= places.size())
        return std::nullopt;
    return places[index - before];
}
