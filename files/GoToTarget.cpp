#include "files/GoToTarget.h"

#include "files/TableTitles.h"
#include "text/LowerCase.h"
#include "text/MessageText.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace {

constexpr std::u16string_view kBlanks = u" \t\u00A0\u3000";
constexpr std::size_t kMostDigits = 18; // that surely fit 64 bits
constexpr std::size_t kMostNamed = 3;   // items in a message

std::u16string_view Trimmed(std::u16string_view text)
{
    const std::size_t begin = std::min(text.find_first_not_of(kBlanks), text.size());
    text.remove_prefix(begin);
    return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

std::size_t CountOfDigits(std::u16string_view text)
{
    return std::min(text.find_first_not_of(u"0123456789"), text.size());
}

/// Of digits alone; the largest number there is for one that is too long.
std::int64_t NumberOf(std::u16string_view digits)
{
    digits.remove_prefix(std::min(digits.find_first_not_of(u'0'), digits.size()));
    return digits.size() > kMostDigits ? INT64_MAX : ReadInteger64(digits);
}

GoToTarget Cell(CellPlace place)
{
    return {GoToTarget::Kind::Cell, place, {}};
}

GoToTarget Nowhere(std::u16string message)
{
    return {GoToTarget::Kind::Nowhere, {}, std::move(message)};
}

GoToTarget RowTarget(std::u16string_view digits, const CRecipeRows& rows, std::uint32_t column)
{
    const std::int64_t row = NumberOf(digits) - kTitleRows;
    if (row >= 0 && row < rows.RowCount())
        return Cell({static_cast<std::int32_t>(row), column});
    return Nowhere(FillMessage(rows.RowCount() == 1 ? u"There is no row %s: the table has 1 row."
                                                    : u"There is no row %s: the table has %d rows.",
                               {digits, std::int64_t{rows.RowCount()}}));
}

/// The first value or the last one, whichever lies nearer.
GoToTarget NearestTarget(const CRecipeRows& rows, WordAddress word)
{
    const bool isBefore = word < rows.RowAddress(0);
    const auto lastColumn = static_cast<std::uint32_t>(rows.Columns().size()) - 1;
    const CellPlace place = isBefore ? CellPlace{0, 0} : CellPlace{rows.RowCount() - 1, lastColumn};
    const WordAddress address = rows.RowAddress(place.row) + rows.WordOffset(place.column);
    return {GoToTarget::Kind::Nearest, place,
            FillMessage(u"RW%s lies in no row. The nearest value is RW%s, row %s, %s.",
                        {DecimalText(word.number), DecimalText(address.number), IdText(place.row),
                         Trimmed(rows.Columns()[place.column].title)})};
}

GoToTarget WordTarget(std::u16string_view digits, const CRecipeRows& rows, RowAddresses addresses)
{
    if (addresses == RowAddresses::None)
        return Nowhere(u"A table of texts has no addresses. Type a row or an item.");
    const WordAddress word(NumberOf(digits));
    if (const auto place = ValueAt(rows, word))
        return Cell(*place);
    return NearestTarget(rows, word);
}

/// The digits of "RW4711"; nothing for any other text.
std::optional<std::u16string_view> WordDigits(std::u16string_view lower)
{
    if (!lower.starts_with(u"rw"))
        return std::nullopt;
    const std::u16string_view digits = Trimmed(lower.substr(2));
    return digits.empty() || CountOfDigits(digits) < digits.size() ? std::nullopt : std::optional(digits);
}

/// The columns whose title is `lower`, or begins so.
std::vector<std::uint32_t> ColumnsTitled(const CRecipeRows& rows, std::u16string_view lower, bool isBeginning)
{
    std::vector<std::uint32_t> columns;
    for (std::uint32_t column = 0; column < rows.Columns().size(); ++column) {
        const std::u16string title = LowerCase(Trimmed(rows.Columns()[column].title));
        if (isBeginning ? title.starts_with(lower) : title == lower)
            columns.push_back(column);
    }
    return columns;
}

std::optional<GoToTarget> TitleTarget(std::u16string_view lower, const CRecipeRows& rows, CellPlace from)
{
    const std::vector<std::uint32_t> columns = ColumnsTitled(rows, lower, false);
    if (columns.empty())
        return std::nullopt;
    const auto next = std::upper_bound(columns.begin(), columns.end(), from.column);
    return Cell({from.row, next == columns.end() ? columns.front() : *next});
}

GoToTarget BeginningTarget(std::u16string_view text, std::u16string_view lower, const CRecipeRows& rows, CellPlace from)
{
    const std::vector<std::uint32_t> columns = ColumnsTitled(rows, lower, true);
    if (columns.size() == 1)
        return Cell({from.row, columns.front()});
    if (columns.empty())
        return Nowhere(FillMessage(u"%s is no row, no address and no item.", {text}));
    std::u16string names;
    for (std::size_t i = 0; i < std::min(columns.size(), kMostNamed); ++i)
        names.append(i == 0 ? u"" : u", ").append(Trimmed(rows.Columns()[columns[i]].title));
    if (columns.size() > kMostNamed)
        names += u", …";
    return Nowhere(FillMessage(u"Several items begin with %s: %s.", {text, names}));
}

/// "812 Belt m/min"; nothing where no blank follows digits.
std::optional<GoToTarget> RowAndTitleTarget(std::u16string_view text, std::u16string_view lower,
                                            const CRecipeRows& rows, CellPlace from)
{
    const std::size_t digits = CountOfDigits(lower);
    if (digits == 0 || digits == lower.size() || kBlanks.find(lower[digits]) == kBlanks.npos)
        return std::nullopt;
    GoToTarget row = RowTarget(lower.substr(0, digits), rows, from.column);
    if (row.kind != GoToTarget::Kind::Cell)
        return row;
    const std::u16string_view title = Trimmed(lower.substr(digits));
    if (auto target = TitleTarget(title, rows, row.place))
        return target;
    return BeginningTarget(Trimmed(text.substr(digits)), title, rows, row.place);
}

} // namespace

std::optional<CellPlace> ValueAt(const CRecipeRows& rows, WordAddress word)
{
    const std::int64_t words = word.number - rows.RowAddress(0).number;
    if (word < rows.RowAddress(0) || rows.WordsPerRow() <= 0 || words / rows.WordsPerRow() >= rows.RowCount())
        return std::nullopt;
    const auto within = static_cast<std::int32_t>(words % rows.WordsPerRow());
    std::uint32_t column = 0;
    while (rows.WordOffset(column) + rows.Columns()[column].dataLength <= within)
        ++column;
    return CellPlace{static_cast<std::int32_t>(words / rows.WordsPerRow()), column};
}

GoToTarget FindTarget(std::u16string_view text, const CRecipeRows& rows, RowAddresses addresses, CellPlace from)
{
    text = Trimmed(text);
    if (text.empty())
        return Nowhere(u"Type a row (812), an address (RW4711) or the name of an item.");
    if (rows.RowCount() == 0 || rows.Columns().empty())
        return Nowhere(u"The table is empty.");
    from.row = std::clamp(from.row, 0, rows.RowCount() - 1);
    const std::u16string lower = LowerCase(text);
    const auto title = TitleTarget(lower, rows, from);
    const auto orTitle = [&title](const GoToTarget& target) {
        return target.kind != GoToTarget::Kind::Cell && title ? *title : target;
    };
    if (CountOfDigits(lower) == lower.size())
        return orTitle(RowTarget(lower, rows, from.column));
    if (const auto digits = WordDigits(lower))
        return orTitle(WordTarget(*digits, rows, addresses));
    if (title)
        return *title;
    const auto target = RowAndTitleTarget(text, lower, rows, from);
    if (target && (target->kind == GoToTarget::Kind::Cell || ColumnsTitled(rows, lower, true).empty()))
        return *target;
    return BeginningTarget(text, lower, rows, from);
}
