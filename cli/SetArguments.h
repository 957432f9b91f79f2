#pragma once

#include "cli/SetCommand.h"

#include <CLI/CLI.hpp>

#include <optional>
#include <string>
#include <vector>

/// The options that say what `set` does to which cells. Each may stand any number of times, and they are carried out in
/// the order in which they stand on the command line, whatever their names. Lives until the command line is parsed.
class CSetArguments {
public:
    CSetArguments() = default;
    CSetArguments(const CSetArguments&) = delete;
    CSetArguments& operator=(const CSetArguments&) = delete;

    void AddTo(CLI::App& command);

    /// Hands over what was parsed. Throws CLI's own errors for options that do not go together.
    void MoveTo(SetOptions& options);

private:
    /// An option and what its arguments say, in their order.
    struct OrderOption {
        CLI::Option* pOption = nullptr;
        std::vector<CellOrder> orders;
    };

    /// The order that an option's three arguments are; nothing when they are none.
    using ReadOrder = std::optional<CellOrder> (*)(const std::vector<std::string>& arguments);

    void AddOrder(OrderOption& order, const std::string& name, const std::string& arguments,
                  const std::string& description, ReadOrder read);
    std::vector<CellOrder> TakeInTheirOrder();
    OrderOption* OrderOf(const CLI::Option* option);

    CLI::App* m_pCommand = nullptr;
    OrderOption m_cells;
    OrderOption m_texts;
    OrderOption m_changes;
    std::vector<CellCondition> m_conditions;
};
