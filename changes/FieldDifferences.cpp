#include "changes/FieldDifferences.h"

#include "files/CsvShape.h"
#include "files/TableTitles.h"
#include "text/MessageText.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace fs = std::filesystem;

namespace {

constexpr std::u16string_view kOtherLine = u"line %d would not have the same bytes";

/// The text of a field; nothing where the line has none there.
std::optional<std::u16string> TextOf(const CCsvLineReader& side, bool isThere, std::size_t column)
{
    if (!isThere || column >= side.Line().FieldCount())
        return std::nullopt;
    return std::u16string(side.Line().Shown(column, side.Cutter().Form()));
}

std::optional<std::u16string> TextOf(const CCsvLineReader& side, bool isThere)
{
    return isThere ? std::optional(side.Line().text) : std::nullopt;
}

/// Checks the form of a table while its lines are read.
class CFormTaker final : public CCsvRawTaker {
public:
    void Take(const CsvRawField& field) override { check.Take(field); }

    CCsvFormCheck check;
};

} // namespace

CFieldDifferences::CFieldDifferences(const fs::path& before, const fs::path& after, const CRecipeRows& layout)
    : m_layout(layout),
      m_beforeFile(before, CFile::Mode::Read),
      m_afterFile(after, CFile::Mode::Read)
{
}

ZoneEnd CFieldDifferences::HandTo(CChangeTaker& taker, CProgress& progress)
{
    if (!m_beforeFile.IsOpen())
        return ZoneEnd::NoBefore;
    if (!m_afterFile.IsOpen())
        return ZoneEnd::NoAfter;
    CFormTaker formBefore;
    CFormTaker formAfter;
    m_before.emplace(m_beforeFile);
    m_after.emplace(m_afterFile);
    m_before->ShowFieldsTo(formBefore);
    m_after->ShowFieldsTo(formAfter);
    m_line = 0;
    for (; Next(); ++m_line)
        if (!CompareLines(taker) || !GoesOn(progress))
            return ZoneEnd::Enough;
    if (m_before->HasFailed())
        return ZoneEnd::NoBefore;
    if (m_after->HasFailed())
        return ZoneEnd::NoAfter;
    FinishForetelling();
    formBefore.check.Finish(m_before->Cutter());
    formAfter.check.Finish(m_after->Cutter());
    if (!formBefore.check.Fault().empty())
        m_whyNot = formBefore.check.Fault();
    else if (!formAfter.check.Fault().empty())
        m_whyNot = formAfter.check.Fault();
    return ZoneEnd::Done;
}

/// Goes to the next line of both; false when neither has one.
bool CFieldDifferences::Next()
{
    m_hasBefore = m_before->Next();
    m_hasAfter = m_after->Next();
    return (m_hasBefore || m_hasAfter) && !m_before->HasFailed() && !m_after->HasFailed();
}

bool CFieldDifferences::GoesOn(CProgress& progress) const
{
    constexpr std::uint64_t kLinesAtOnce = 256;
    const CCsvFileCutter& before = m_before->Cutter();
    const CCsvFileCutter& after = m_after->Cutter();
    return m_line % kLinesAtOnce != 0 ||
           progress.Advance(before.Position() + after.Position(), before.Size() + after.Size());
}

bool CFieldDifferences::CompareLines(CChangeTaker& taker)
{
    if (m_isEmptied && m_hasAfter)
        m_isEmptied = false;
    const bool isRow = m_line < static_cast<std::uint64_t>(m_layout.RowCount());
    return isRow ? CompareFields(taker) : CompareWhole(taker);
}

bool CFieldDifferences::CompareFields(CChangeTaker& taker)
{
    m_changes.clear();
    const bool areAlike = m_hasBefore && m_hasAfter && m_before->Line().text == m_after->Line().text &&
                          m_before->Cutter().Form().isUtf16 == m_after->Cutter().Form().isUtf16;
    if (areAlike)
        return true;
    const std::size_t fields = std::max(Fields(*m_before, m_hasBefore), Fields(*m_after, m_hasAfter));
    for (std::size_t column = 0; column < fields; ++column) {
        auto old = TextOf(*m_before, m_hasBefore, column);
        auto fresh = TextOf(*m_after, m_hasAfter, column);
        if (old == fresh)
            continue;
        ChangeRecord record = FieldRecord(column);
        record.oldText = old;
        record.newText = fresh;
        m_changes.push_back({m_line, column, std::move(old), std::move(fresh)});
        if (!taker.Take(record))
            return false;
    }
    if (m_whyNot.empty())
        Foretell();
    return true;
}

bool CFieldDifferences::CompareWhole(CChangeTaker& taker)
{
    auto old = TextOf(*m_before, m_hasBefore);
    auto fresh = TextOf(*m_after, m_hasAfter);
    if (old == fresh)
        return true;
    ChangeRecord record;
    record.line = static_cast<std::int64_t>(m_line) + 1;
    record.oldText = std::move(old);
    record.newText = std::move(fresh);
    return taker.Take(record);
}

std::size_t CFieldDifferences::Fields(const CCsvLineReader& side, bool isThere) const
{
    return isThere ? side.Line().FieldCount() : 0;
}

ChangeRecord CFieldDifferences::FieldRecord(std::size_t column) const
{
    ChangeRecord record;
    record.row = static_cast<std::int32_t>(m_line) + kTitleRows;
    constexpr std::size_t kMost = std::numeric_limits<std::int32_t>::max() - kTitleColumns;
    record.column = static_cast<std::int32_t>(std::min(column, kMost)) + kTitleColumns;
    if (column < m_layout.Columns().size())
        record.item = m_layout.Columns()[column].title;
    return record;
}

/// Whether the line of the first table becomes that of the second.
void CFieldDifferences::Foretell()
{
    if (!m_hasAfter) {
        m_isEmptied = m_isEmptied || m_changes.empty();
        if (m_changes.empty())
            Deny(kOtherLine); // one without fields stays
        return;
    }
    if (m_changes.empty()) {
        const bool isSame = m_hasBefore && m_before->Line().text == m_after->Line().text;
        if (!isSame)
            Deny(kOtherLine);
        return;
    }
    const CsvExtent extent{static_cast<std::size_t>(m_layout.RowCount()), m_layout.Columns().size()};
    std::u16string refusal;
    const CsvLine* const line = m_hasBefore ? &m_before->Line() : nullptr;
    const auto text = PatchedLine(kUtf16Csv, line, m_changes, extent, refusal);
    if (!text)
        m_whyNot = refusal;
    else if (*text != m_after->Line().text)
        Deny(kOtherLine);
    m_isEmptied = text && text->empty();
}

/// A last line without fields that had some would go instead.
void CFieldDifferences::FinishForetelling()
{
    if (m_isEmptied && m_whyNot.empty())
        m_whyNot = u"its last line would go";
}

void CFieldDifferences::Deny(std::u16string_view pattern)
{
    if (m_whyNot.empty())
        m_whyNot = FillMessage(pattern, {static_cast<std::int64_t>(m_line) + 1});
}
