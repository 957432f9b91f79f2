#include "cli/CellChoice.h"

#include "files/TableTitles.h"
#include "text/MessageText.h"
#include "text/Utf8Text.h"

#include <algorithm>
#include <charconv>
#include <system_error>
#include <utility>

namespace {

constexpr std::string_view kAllRows = "*";

/// The row number that all of `text` is.
std::optional<std::int64_t> ReadRow(std::string_view text)
{
    const bool isDigits = !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
    std::int64_t row = 0;
    if (!isDigits || std::from_chars(text.data(), text.data() + text.size(), row).ec != std::errc())
        return std::nullopt;
    return row;
}

std::optional<RowRange> ReadRange(std::string_view text)
{
    const std::size_t dash = std::min(text.find('-'), text.size());
    const auto first = ReadRow(text.substr(0, dash));
    const auto last = dash == text.size() ? first : ReadRow(text.substr(dash + 1));
    if (!first || !last || *last < *first)
        return std::nullopt;
    return RowRange{*first, *last};
}

/// Sorts them and makes one of those that share rows, so that no row is chosen twice.
void Merge(std::vector<RowRange>& ranges)
{
    std::sort(ranges.begin(), ranges.end(), [](const RowRange& a, const RowRange& b) { return a.first < b.first; });
    std::vector<RowRange> merged;
    for (const RowRange& range : ranges) {
        if (!merged.empty() && range.first <= merged.back().last)
            merged.back().last = std::max(merged.back().last, range.last);
        else
            merged.push_back(range);
    }
    ranges = std::move(merged);
}

/// A flat file's doubles are padded on the left; that is no part of the value.
std::u16string_view WithoutPadding(std::u16string_view text)
{
    return text.substr(std::min(text.find_first_not_of(u' '), text.size()));
}

bool Shows(const CRecipeRows& rows, std::int32_t row, std::size_t column, std::u16string_view text)
{
    const std::u16string shown = rows.Text(row, column);
    if (rows.Columns()[column].dataType == DataType::Double)
        return WithoutPadding(shown) == WithoutPadding(text);
    return shown == text;
}

/// The first row of `choice` that is not in the table.
std::optional<std::int64_t> RowOutside(const RowChoice& choice, std::int64_t rowCount)
{
    if (choice.ranges.empty())
        return std::nullopt;
    if (choice.ranges.front().first < 1)
        return choice.ranges.front().first;
    const RowRange& last = choice.ranges.back();
    return last.last > rowCount ? std::optional(std::max(last.first, rowCount + 1)) : std::nullopt;
}

} // namespace

std::optional<RowChoice> ReadRowChoice(std::string_view text)
{
    RowChoice choice;
    choice.isAll = text == kAllRows;
    for (std::size_t begin = 0; !choice.isAll && begin <= text.size();) {
        const std::size_t end = std::min(text.find(',', begin), text.size());
        const auto range = ReadRange(text.substr(begin, end - begin));
        if (!range)
            return std::nullopt;
        choice.ranges.push_back(*range);
        begin = end + 1;
    }
    Merge(choice.ranges);
    return choice;
}

std::optional<std::size_t> ColumnOfItem(const CRecipeRows& rows, const std::string& item, CReporter& reporter)
{
    const auto isItem = [&item](const ColumnCoding& column) { return ToUtf8(column.title) == item; };
    const std::vector<ColumnCoding>& columns = rows.Columns();
    const auto found = std::find_if(columns.begin(), columns.end(), isItem);
    if (found == columns.end()) {
        reporter.ShowError(FillMessage(u"The item %s doesn't exist!", {FromUtf8(item)}));
        return std::nullopt;
    }
    if (std::any_of(found + 1, columns.end(), isItem)) {
        reporter.ShowError(FillMessage(u"More than one item is called %s!", {FromUtf8(item)}));
        return std::nullopt;
    }
    return static_cast<std::size_t>(found - columns.begin());
}

CNarrowedRows::CNarrowedRows(const CRecipeRows& rows, std::vector<Condition> conditions)
    : m_pRows(&rows),
      m_conditions(std::move(conditions))
{
}

std::optional<CNarrowedRows> CNarrowedRows::Make(const CRecipeRows& rows, const std::vector<CellCondition>& conditions,
                                                 CReporter& reporter)
{
    std::vector<Condition> found;
    for (const CellCondition& condition : conditions) {
        const auto column = ColumnOfItem(rows, condition.item, reporter);
        if (!column)
            return std::nullopt;
        found.push_back({*column, FromUtf8(condition.text)});
    }
    return CNarrowedRows(rows, std::move(found));
}

std::optional<std::vector<std::int32_t>> CNarrowedRows::Chosen(const RowChoice& choice, CReporter& reporter) const
{
    const std::int64_t rowCount = m_pRows->RowCount();
    if (const auto outside = RowOutside(choice, rowCount)) {
        reporter.ShowError(FillMessage(u"There is no row %d! The rows are 1 to %d!", {*outside, rowCount}));
        return std::nullopt;
    }
    const std::vector<RowRange> all{{1, rowCount}};
    std::vector<std::int32_t> chosen;
    for (const RowRange& range : choice.isAll ? all : choice.ranges)
        for (std::int64_t row = range.first; row <= range.last; ++row)
            if (const auto dataRow = static_cast<std::int32_t>(row - kTitleRows); Holds(dataRow))
                chosen.push_back(dataRow);
    return chosen;
}

bool CNarrowedRows::Holds(std::int32_t row) const
{
    return std::all_of(m_conditions.begin(), m_conditions.end(), [this, row](const Condition& condition) {
        return Shows(*m_pRows, row, condition.column, condition.text);
    });
}
