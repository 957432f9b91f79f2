#include "files/SavePlan.h"

#include "files/CsvRecipeFile.h"
#include "files/PagedRecipeFile.h"

#include <algorithm>
#include <limits>
#include <new>
#include <numeric>
#include <utility>

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kComparedBytes = std::size_t{16} << 10; // of words that are compared at once
constexpr std::int32_t kTableRowsAtOnce = 16;

bool IsBefore(const PlannedChange& change, CellPlace place)
{
    return change.place < place;
}

} // namespace

void AppendZeroWords(std::uint64_t begin, std::uint64_t end, std::vector<ZeroWords>& zeros)
{
    const std::uint64_t first = (begin + 1) / 2;
    if (begin % 2 != 0 && begin < end)
        zeros.push_back({WordAddress(static_cast<std::int64_t>(begin / 2)), 0});
    if (first < end / 2)
        zeros.push_back({WordAddress(static_cast<std::int64_t>(first)), static_cast<std::int64_t>(end / 2 - first)});
}

std::uint64_t FileBytesAfter(FileType type, std::uint64_t fileBytes, std::uint64_t end)
{
    const bool isInPages = IsPaged(type) && end > FlatBytes(KindOf(type));
    return std::max(fileBytes, isInPages ? NextPage(ByteOffset(end - 1)).number : end);
}

void CSavePlan::Begin(const CRecipeRows& rows, const CStoredCells& stored, const fs::path& path, bool isOfOtherType)
{
    Stop();
    m_path = path;
    m_pRows = &rows;
    m_pStored = &stored;
    m_comparison.emplace(rows, stored, isOfOtherType);
}

void CSavePlan::Stop()
{
    m_comparison.reset();
    m_scan.reset();
    m_readLine.reset();
    m_dropped = {};
    m_nextRow = 0;
    m_isFinished = false;
    m_changes = {};
    m_counts = {};
    m_changesForm.reset();
    ++m_edition;
}

bool CSavePlan::Continue(std::chrono::steady_clock::time_point end)
try {
    while (!m_isFinished && IsBegun()) {
        if (m_nextRow < m_pRows->RowCount())
            CompareNextRows();
        else
            ScanOn();
        if (std::chrono::steady_clock::now() >= end)
            break;
    }
    return m_isFinished || !IsBegun();
} catch (const std::bad_alloc&) {
    Stop();
    return true;
}

Outcome CSavePlan::Finish(CProgress& progress)
{
    constexpr std::chrono::milliseconds kBetweenReports{50};
    while (!Continue(std::chrono::steady_clock::now() + kBetweenReports))
        if (!progress.Advance(static_cast<std::uint64_t>(m_nextRow), static_cast<std::uint64_t>(m_pRows->RowCount())))
            return Outcome::GivenUp;
    return m_isFinished ? Outcome::Done : Outcome::Failed;
}

void CSavePlan::CompareNextRows()
{
    const bool isTable = m_pStored->Type() == FileType::Csv;
    const std::int32_t rows = isTable ? kTableRowsAtOnce : RowsWithin(kComparedBytes, *m_pRows);
    const std::int32_t count = std::min(rows, m_pRows->RowCount() - m_nextRow);
    const std::size_t known = m_changes.size();
    m_comparison->Compare(m_nextRow, count, m_changes);
    Count(std::span(m_changes).subspan(known), true);
    m_nextRow += count;
}

/// A table of texts has more than its rows.
void CSavePlan::ScanOn()
{
    if (m_pStored->Type() != FileType::Csv) {
        m_isFinished = true;
        return;
    }
    if (!m_scan) {
        m_scan =
            std::make_unique<CCsvShapeScan>(static_cast<std::size_t>(m_pRows->RowCount()), m_pRows->Columns().size());
        m_scan->Open(m_path);
    }
    if (m_scan->Continue())
        return;
    if (m_scan->IsDone())
        TakeShape();
    m_isFinished = true;
}

/// The texts stay in the file until somebody looks at them: there may be as many as lines.
void CSavePlan::TakeShape()
{
    const auto& dropped = m_scan->Shape().dropped;
    for (std::size_t part = 0; part < dropped.size(); ++part)
        for (std::uint32_t nth = 0; nth < dropped[part].fields; ++nth)
            m_dropped.push_back({part, nth});
    m_counts[static_cast<std::size_t>(ChangeReason::Rows)] += m_dropped.size();
}

CSavePlan::DroppedField CSavePlan::FieldOf(const DroppedText& dropped) const
{
    const CsvShape& shape = m_scan->Shape();
    const CsvShape::Dropped& part = shape.dropped[dropped.part];
    DroppedField field{part.line, part.column, {}};
    if (!m_readLine || m_readLine->part != dropped.part)
        if (auto texts = DroppedTexts(m_path, shape, part))
            m_readLine = {dropped.part, std::move(*texts)};
    if (!m_readLine || m_readLine->part != dropped.part || dropped.nth >= m_readLine->texts.size())
        return field;
    const CsvDroppedText& text = m_readLine->texts[dropped.nth];
    if (part.column)
        field.column = text.column;
    field.text = text.text;
    return field;
}

bool CSavePlan::ChangesForm() const
{
    if (!m_scan || !m_scan->IsDone())
        return false;
    if (!m_changesForm)
        m_changesForm = FindFormChange();
    return *m_changesForm;
}

/// A field whose value changes is told with it.
bool CSavePlan::FindFormChange() const
{
    const CsvShape& shape = m_scan->Shape();
    const auto changes = [this](CellPlace place) {
        const auto change = std::lower_bound(m_changes.begin(), m_changes.end(), place, IsBefore);
        return change != m_changes.end() && change->place == place;
    };
    return shape.isReformedElsewhere || !std::all_of(shape.reformed.begin(), shape.reformed.end(), changes);
}

std::u16string CSavePlan::FormFault() const
{
    return m_scan && m_scan->IsDone() ? m_scan->Shape().formFault : std::u16string();
}

std::size_t CSavePlan::CountOf(ChangeReason why) const
{
    if (why == ChangeReason::Form)
        return ChangesForm() ? 1 : 0;
    const std::size_t zeros = why == ChangeReason::End && IsBegun() ? ZeroWordsOutside().size() : 0;
    return m_counts[static_cast<std::size_t>(why)] + zeros;
}

std::size_t CSavePlan::CountOfUnedited() const
{
    std::size_t count = 0;
    for (std::size_t why = 1; why < kChangeReasons; ++why)
        count += CountOf(static_cast<ChangeReason>(why));
    return count;
}

std::size_t CSavePlan::CountOfUneditedValues() const
{
    static_assert(static_cast<std::size_t>(ChangeReason::Edited) == 0);
    return std::accumulate(m_counts.begin() + 1, m_counts.end(), std::size_t{0});
}

void CSavePlan::Count(std::span<const PlannedChange> changes, bool isAdded)
{
    for (const PlannedChange& change : changes)
        m_counts[static_cast<std::size_t>(change.why)] += isAdded ? 1 : std::numeric_limits<std::size_t>::max();
}

/// Rows that were not looked at yet will be, as they are then.
void CSavePlan::Update(std::span<const CellPlace> cells)
try {
    const auto end = std::lower_bound(cells.begin(), cells.end(), CellPlace{m_nextRow, 0});
    cells = cells.first(static_cast<std::size_t>(end - cells.begin()));
    if (!IsBegun() || cells.empty())
        return;
    m_changesForm.reset();
    ++m_edition;
    const bool isTable = m_pStored->Type() == FileType::Csv; // where a text may move those after it
    const auto beginOf = [isTable](CellPlace cell) { return isTable ? CellPlace{cell.row, 0} : cell; };
    const auto endOf = [isTable](CellPlace cell) {
        return isTable ? CellPlace{cell.row + 1, 0} : CellPlace{cell.row, cell.column + 1};
    };
    const auto first = std::lower_bound(m_changes.begin(), m_changes.end(), beginOf(cells.front()), IsBefore);
    auto next = first;
    CellPlace compared{-1, 0}; // all cells before it were
    std::vector<PlannedChange> merged;
    for (const CellPlace cell : cells) {
        if (cell < compared)
            continue;
        compared = endOf(cell);
        for (; next != m_changes.end() && next->place < beginOf(cell); ++next)
            merged.push_back(*next);
        while (next != m_changes.end() && next->place < compared)
            ++next;
        if (isTable)
            m_comparison->Compare(cell.row, 1, merged);
        else if (const auto why = m_comparison->Compare(cell))
            merged.push_back({cell, *why});
    }
    Count({first, next}, false);
    Count(merged, true);
    const auto common = std::min<std::ptrdiff_t>(next - first, std::ssize(merged));
    const auto place = std::copy_n(merged.begin(), common, first);
    if (place == next)
        m_changes.insert(place, merged.begin() + common, merged.end());
    else
        m_changes.erase(place, next);
} catch (const std::bad_alloc&) {
    Stop();
}

std::uint64_t CSavePlan::NewFileBytes() const
{
    if (m_pStored->Type() == FileType::Csv)
        return CsvBytes(*m_pRows);
    if (m_pRows->StretchBytes() == 0)
        return m_pStored->FileBytes();
    const std::uint64_t end = (m_pRows->FirstByte() + m_pRows->StretchBytes()).number;
    return FileBytesAfter(m_pStored->Type(), m_pStored->FileBytes(), end);
}

std::vector<ZeroWords> CSavePlan::ZeroWordsOutside() const
{
    std::vector<ZeroWords> zeros;
    if (m_pStored->Type() == FileType::Csv || m_pRows->StretchBytes() == 0)
        return zeros;
    const std::uint64_t end = (m_pRows->FirstByte() + m_pRows->StretchBytes()).number;
    AppendZeroWords(m_pStored->FileBytes(), std::min(m_pRows->FirstByte().number, NewFileBytes()), zeros);
    AppendZeroWords(std::max(m_pStored->FileBytes(), end), NewFileBytes(), zeros);
    return zeros;
}
