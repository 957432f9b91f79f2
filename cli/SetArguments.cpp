#include "cli/SetArguments.h"

#include "text/Utf8Text.h"

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <map>
#include <system_error>
#include <utility>

namespace {

constexpr std::size_t kOrderArguments = 3;
constexpr std::size_t kConditionArguments = 2;

/// The number that all of `text` is.
std::optional<std::int64_t> ReadNumber(const std::string& text)
{
    std::int64_t number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, fault] = std::from_chars(text.data(), end, number);
    if (fault != std::errc() || stop != end)
        return std::nullopt;
    return number;
}

std::optional<CellOrder> ReadCell(const std::vector<std::string>& arguments)
{
    const auto row = ReadNumber(arguments[0]);
    const auto column = ReadNumber(arguments[1]);
    if (!row || !column)
        return std::nullopt;
    return TypedCell{*row, *column, arguments[2]};
}

std::optional<CellOrder> ReadText(const std::vector<std::string>& arguments)
{
    auto rows = ReadRowChoice(arguments[0]);
    if (!rows)
        return std::nullopt;
    return ItemText{std::move(*rows), arguments[1], arguments[2]};
}

std::optional<CellOrder> ReadChange(const std::vector<std::string>& arguments)
{
    auto rows = ReadRowChoice(arguments[0]);
    auto change = ReadNumberChange(FromUtf8(arguments[2]));
    if (!rows || !change)
        return std::nullopt;
    return ItemChange{std::move(*rows), arguments[1], std::move(*change)};
}

/// An option that takes `count` arguments, whatever they begin with, and may stand any number of times.
CLI::Option* AddRepeatable(CLI::App& command, const std::string& name, const CLI::callback_t& take, std::size_t count,
                           const std::string& arguments, const std::string& description)
{
    return command.add_option(name, take, description)
        ->type_name(arguments)
        ->type_size(static_cast<int>(count))
        ->expected(1, CLI::detail::expected_max_vector_size)
        ->allow_extra_args(false);
}

} // namespace

void CSetArguments::AddTo(CLI::App& command)
{
    m_pCommand = &command;
    AddOrder(m_cells, "--cell", "ROW COLUMN TEXT",
             "Text for a cell, as often as wanted; row 1 and column 2 are the first with data", ReadCell);
    AddOrder(m_texts, "--value", "ROWS ITEM TEXT",
             "Text for the cells of an item, by its column's title; rows as 4, 5-20, 1,3,7-9 or *", ReadText);
    AddOrder(m_changes, "--change", "ROWS ITEM CHANGE",
             "Change of the numbers that these cells store: +N, -N, *N or /N", ReadChange);
    const auto take = [this](const CLI::results_t& texts) {
        for (std::size_t i = 0; i + kConditionArguments <= texts.size(); i += kConditionArguments)
            m_conditions.push_back({texts[i], texts[i + 1]});
        return true;
    };
    AddRepeatable(command, "--where", take, kConditionArguments, "ITEM TEXT",
                  "Narrows --value and --change to rows in which the item shows the text");
}

void CSetArguments::MoveTo(SetOptions& options)
{
    if (!m_conditions.empty() && m_texts.orders.empty() && m_changes.orders.empty())
        throw CLI::RequiresError("--where", "--value or --change");
    options.orders = TakeInTheirOrder();
    if (options.orders.empty())
        throw CLI::RequiredError("--cell, --value or --change");
    options.conditions = std::move(m_conditions);
}

void CSetArguments::AddOrder(OrderOption& order, const std::string& name, const std::string& arguments,
                             const std::string& description, ReadOrder read)
{
    const auto take = [&order, read](const CLI::results_t& texts) {
        for (std::size_t i = 0; i + kOrderArguments <= texts.size(); i += kOrderArguments) {
            auto one = read({texts[i], texts[i + 1], texts[i + 2]});
            if (!one)
                return false;
            order.orders.push_back(std::move(*one));
        }
        return true;
    };
    order.pOption = AddRepeatable(*m_pCommand, name, take, kOrderArguments, arguments, description);
}

/// The library tells of each argument which option it belonged to.
std::vector<CellOrder> CSetArguments::TakeInTheirOrder()
{
    std::vector<CellOrder> orders;
    std::map<const OrderOption*, std::size_t> argumentsSeen;
    for (const CLI::Option* option : m_pCommand->parse_order()) {
        OrderOption* const order = OrderOf(option);
        if (!order)
            continue;
        const std::size_t argument = argumentsSeen[order]++;
        if (argument % kOrderArguments == 0)
            orders.push_back(std::move(order->orders.at(argument / kOrderArguments)));
    }
    return orders;
}

CSetArguments::OrderOption* CSetArguments::OrderOf(const CLI::Option* option)
{
    for (OrderOption* order : {&m_cells, &m_texts, &m_changes})
        if (order->pOption == option)
            return order;
    return nullptr;
}
