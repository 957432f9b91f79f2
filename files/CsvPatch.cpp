#include "files/CsvPatch.h"

#include "files/CsvFieldForm.h"
#include "files/CsvShape.h"
#include "text/MessageText.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::u16string_view kLineEnd = u"\r\n";

std::int64_t Number(std::uint64_t line)
{
    return static_cast<std::int64_t>(line) + 1;
}

/// The fields of a line while it is patched.
class CFieldsOfLine {
public:
    CFieldsOfLine(const CsvTextForm& form, const CsvLine* line, std::span<const CsvChange> changes,
                  const CsvExtent& extent)
        : m_form(form),
          m_line(line),
          m_changes(changes),
          m_extent(extent),
          m_oldCount(line == nullptr ? 0 : line->FieldCount())
    {
    }

    /// Empty when the changes leave a line without gaps.
    std::u16string Count()
    {
        m_count = m_oldCount;
        std::optional<std::size_t> firstGone;
        std::size_t gone = 0;
        for (const CsvChange& change : m_changes) {
            if (!change.to) {
                firstGone = firstGone.value_or(*change.column);
                ++gone;
            } else if (firstGone) {
                return Fault(u"row %d, column %d is not the last field of its line", *firstGone);
            }
            if (change.to && *change.column >= m_count) {
                if (*change.column > m_count && *change.column > m_extent.columns)
                    return Fault(u"row %d, column %d does not follow the last field of its line", *change.column);
                m_count = *change.column + 1;
            }
        }
        if (!firstGone)
            return {};
        if (*firstGone + gone != m_count)
            return Fault(u"row %d, column %d is not the last field of its line", *firstGone);
        m_count = *firstGone;
        return {};
    }

    /// Nothing, and `refusal` says why, when a text cannot stand in its field.
    std::optional<std::u16string> Text(std::u16string& refusal)
    {
        std::u16string text;
        for (std::size_t column = 0; column < m_count; ++column) {
            const auto field = Field(column);
            if (!field) {
                refusal = m_isChanged ? RefusedCsvText(LineNumber(), column) : RefusedLongerLine(LineNumber());
                return std::nullopt;
            }
            text += *field;
            if (column + 1 < m_count || KeepsSeparator(column))
                text += m_form.separator;
        }
        return text;
    }

private:
    std::uint64_t LineNumber() const { return m_changes.front().line; }

    std::u16string Fault(std::u16string_view pattern, std::size_t column) const
    {
        return FillMessage(pattern, {Number(LineNumber()), static_cast<std::int64_t>(column) + 2});
    }

    /// Whether a line that keeps its length ends with a separator.
    bool KeepsSeparator(std::size_t column) const { return m_count == m_oldCount && m_line->IsSeparated(column); }

    std::optional<std::u16string> Field(std::size_t column)
    {
        while (!m_changes.empty() && *m_changes.front().column < column && m_changes.size() > 1)
            m_changes = m_changes.subspan(1);
        m_isChanged = !m_changes.empty() && *m_changes.front().column == column;
        const bool isThere = column < m_oldCount;
        const bool isSeparated = column + 1 < m_count || KeepsSeparator(column);
        const bool wasSeparated = isThere && m_line->IsSeparated(column);
        const std::u16string_view shown = isThere ? m_line->Shown(column, m_form) : kMissingField;
        const std::u16string_view text = m_isChanged ? std::u16string_view(*m_changes.front().to) : shown;
        if (isThere && text == shown && isSeparated == wasSeparated)
            return std::u16string(m_line->Raw(column));
        if (!isSeparated)
            return LastCsvField(m_form, text);
        return SeparatedCsvField(m_form, text, !wasSeparated || m_line->Raw(column).starts_with(u'"'));
    }

    const CsvTextForm& m_form;
    const CsvLine* m_line;
    std::span<const CsvChange> m_changes;
    const CsvExtent& m_extent;
    std::size_t m_oldCount;
    std::size_t m_count = 0;
    bool m_isChanged = false;
};

} // namespace

std::optional<std::u16string> PatchedLine(const CsvTextForm& form, const CsvLine* line,
                                          std::span<const CsvChange> changes, const CsvExtent& extent,
                                          std::u16string& refusal)
{
    CFieldsOfLine fields(form, line, changes, extent);
    refusal = fields.Count();
    return refusal.empty() ? fields.Text(refusal) : std::nullopt;
}

bool IsLineAsSaved(std::u16string_view text)
{
    const auto isInQuotes = [](std::u16string_view raw) {
        return raw.size() >= 2 && raw.front() == u'"' && raw.back() == u'"';
    };
    if (text.find(u'\n') != std::u16string_view::npos || text.ends_with(u'\r'))
        return false;
    for (auto tab = text.find(u'\t'); tab != std::u16string_view::npos; tab = text.find(u'\t')) {
        if (!isInQuotes(text.substr(0, tab)))
            return false;
        text.remove_prefix(tab + 1);
    }
    return true;
}

CCsvPatcher::CCsvPatcher(const CsvTextForm& form, Changes changes, const CsvExtent& extent)
    : m_form(form),
      m_all(changes),
      m_changes(changes),
      m_extent(extent),
      m_collector(form)
{
}

void CCsvPatcher::Take(const CsvRawField& field)
{
    const bool hasChanges = !m_changes.empty() && m_changes.front().line == field.line;
    if (!hasChanges && field.column == 0 && !m_going.empty())
        Stay();
    if (hasChanges && m_collector.Take(field))
        ChangeLine(m_collector.Line());
}

CCsvPatcher::Changes CCsvPatcher::TakeChangesOf(std::uint64_t line)
{
    const auto end = std::find_if(m_changes.begin(), m_changes.end(),
                                  [line](const CsvChange& change) { return change.line != line; });
    const Changes changes = m_changes.first(static_cast<std::size_t>(end - m_changes.begin()));
    m_changes = m_changes.subspan(changes.size());
    return changes;
}

void CCsvPatcher::ChangeLine(const CsvLine& line)
{
    const Changes changes = TakeChangesOf(line.number);
    LookAt(changes, &line);
    if (!m_others.empty() || !m_refusal.empty())
        return;
    const bool isWhole = !changes.front().column;
    const auto text = NewLine(changes, &line);
    const bool goes = isWhole ? !changes.front().to : text && text->empty() && line.FieldCount() > 0;
    if (!m_refusal.empty())
        return;
    if (goes) {
        m_going.push_back({line.number, line.offset, line.length, isWhole});
        return;
    }
    Stay();
    if (*text != line.text)
        Splice(line.offset, line.length, *text);
}

/// Notes every change that does not find what it expects; `line` is null where the table has none.
void CCsvPatcher::LookAt(Changes changes, const CsvLine* line)
{
    for (const CsvChange& change : changes) {
        auto found = change.looksAtFrom ? Found(change, line) : change.from;
        if (found != change.from)
            m_others.push_back({static_cast<std::size_t>(&change - m_all.data()), std::move(found)});
    }
}

std::optional<std::u16string> CCsvPatcher::Found(const CsvChange& change, const CsvLine* line) const
{
    if (line == nullptr)
        return std::nullopt;
    if (!change.column)
        return line->text;
    if (*change.column >= line->FieldCount())
        return std::nullopt;
    return std::u16string(line->Shown(*change.column, m_form));
}

/// What the line becomes; nothing where it goes, or that is refused.
std::optional<std::u16string> CCsvPatcher::NewLine(Changes changes, const CsvLine* line)
{
    const CsvChange& first = changes.front();
    if (first.column) {
        std::u16string refusal;
        auto text = PatchedLine(m_form, line, changes, m_extent, refusal);
        Refuse(std::move(refusal));
        return text;
    }
    if (first.to && !IsLineAsSaved(*first.to))
        Refuse(FillMessage(u"line %d would not be in the form in which a save leaves one", {Number(first.line)}));
    return first.to;
}

/// A line stays, so those before it stay, too.
void CCsvPatcher::Stay()
{
    for (const Going& line : m_going) {
        if (line.isWhole)
            return Refuse(FillMessage(u"line %d is not the last one", {Number(line.number)}));
        Splice(line.offset, line.length, u"");
    }
    m_going.clear();
}

void CCsvPatcher::Finish(const CCsvCutter& cutter, std::uint64_t size)
{
    if (!m_changes.empty() && !m_going.empty())
        Stay();
    if (!m_going.empty() && m_refusal.empty())
        Splice(m_going.front().offset, size - m_going.front().offset, u"");
    AddLines(cutter);
    if (!m_others.empty())
        Refuse(u"it does not hold what is to be changed");
}

void CCsvPatcher::AddLines(const CCsvCutter& cutter)
{
    std::u16string lines;
    std::uint64_t next = cutter.Lines();
    while (!m_changes.empty()) {
        const std::uint64_t number = m_changes.front().line;
        const Changes changes = TakeChangesOf(number);
        LookAt(changes, nullptr);
        const bool isRow = changes.front().column.has_value();
        if (number > next && (!isRow || number >= m_extent.rows))
            Refuse(FillMessage(u"line %d does not follow the last one", {Number(number)}));
        if (!m_others.empty() || !m_refusal.empty())
            continue;
        for (; next < number; ++next)
            lines += kLineEnd;
        const auto text = NewLine(changes, nullptr);
        if (!text && m_refusal.empty())
            Refuse(FillMessage(u"line %d is not there", {Number(number)}));
        lines += text.value_or(std::u16string());
        lines += kLineEnd;
        next = number + 1;
    }
    if (!lines.empty())
        Splice(cutter.EndOffset(), 0, lines);
}

/// The first reason counts.
void CCsvPatcher::Refuse(std::u16string reason)
{
    if (m_refusal.empty())
        m_refusal = std::move(reason);
}

void CCsvPatcher::Splice(std::uint64_t offset, std::uint64_t length, std::u16string_view text)
{
    if (m_refusal.empty())
        m_splices.push_back({offset, length, CsvTextBytes(m_form, text)});
}
