#include "changes/ValueLines.h"

#include "changes/WordsText.h"
#include "library/JsonText.h"
#include "text/Decimal.h"
#include "text/Utf8Text.h"

#include <algorithm>
#include <span>

namespace {

constexpr std::size_t kComparedBytes = std::size_t{256} << 10; // at once

/// In full; where that were too long to read, with an exponent.
void AppendNumber(const std::optional<CDecimal>& number, std::string& line)
{
    constexpr std::size_t kLongest = 40;
    if (!number) {
        line += "null";
        return;
    }
    const std::string digits = ToUtf8(number->Text());
    line += digits.size() <= kLongest ? digits : ToUtf8(number->TextWithExponent());
}

} // namespace

CValueLines::CValueLines(std::u16string_view file, std::size_t table, const ValueRows& values)
    : m_values(values),
      m_begin("{\"file\":"),
      m_now(values.rows, values.stored)
{
    AppendJsonText(file, m_begin);
    m_begin += ",\"table\":" + std::to_string(table);
    if (values.stored.IsKnown())
        m_comparison.emplace(values.rows, values.stored, false);
}

void CValueLines::Append(std::int32_t row, std::string& lines)
{
    lines += m_begin;
    lines += ",\"row\":" + std::to_string(std::int64_t{m_values.first} + row + 1);
    if (!m_now.IsTable())
        lines += ",\"address\":" + std::to_string(m_values.wholeLayout.RowAddress(m_values.first + row).number);
    lines += ",\"cells\":[";
    for (std::uint32_t column = 0; column < m_values.rows.Columns().size(); ++column) {
        lines += column == 0 ? "{" : ",{";
        AppendCell({row, column}, lines);
        lines += '}';
    }
    lines += "]}\n";
}

void CValueLines::AppendCell(CellPlace place, std::string& line)
{
    const auto words = m_now.Words(place);
    const bool isThere = m_now.IsThere(place, words);
    m_text.clear();
    m_values.rows.AppendText(place.row, place.column, m_text);
    line += "\"item\":";
    AppendJsonText(m_values.rows.Columns()[place.column].title, line);
    line += ",\"text\":";
    AppendJsonText(m_text, line);
    line += ",\"number\":";
    AppendNumber(isThere ? m_now.NumberOf(place, words, m_text) : std::nullopt, line);
    if (!words.empty()) {
        line += ",\"words\":\"";
        AppendWordsText(words, line);
        line += '"';
    }
    AppendMarks(place, isThere, line);
}

void CValueLines::AppendMarks(CellPlace place, bool isThere, std::string& line)
{
    const bool isOutside = isThere && m_values.rows.OutsideLimits(place.row, place.column);
    const bool isRewritten = IsRewritten(place);
    line += ",\"marks\":[";
    if (isOutside)
        line += "\"outside\"";
    if (isRewritten)
        line += isOutside ? ",\"rewritten\"" : "\"rewritten\"";
    line += ']';
}

/// Whether a save would store it otherwise, although nobody edited it.
bool CValueLines::IsRewritten(CellPlace place)
{
    if (!m_comparison)
        return false;
    if (place.row >= m_compared) {
        const std::int32_t most = RowsWithin(kComparedBytes, m_values.rows);
        const std::int32_t count = std::min(most, m_values.rows.RowCount() - place.row);
        m_changes.clear();
        m_nextChange = 0;
        m_comparison->Compare(place.row, count, m_changes);
        m_compared = place.row + count;
    }
    while (m_nextChange < m_changes.size() && m_changes[m_nextChange].place < place)
        ++m_nextChange;
    return m_nextChange < m_changes.size() && m_changes[m_nextChange].place == place &&
           m_changes[m_nextChange].why != ChangeReason::Edited;
}
