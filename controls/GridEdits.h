#pragma once

#include "controls/GridTextSource.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

class CGridModel;

/// The texts that one command of the user gives cells, collected before the first cell is changed: until they are
/// taken the command can be given up.
class CGridEdits {
public:
    /// Whether `text` may become the text of a cell in grid column `column`.
    using Check = std::function<bool(int column, const QString& text)>;
    /// What becomes of a text.
    enum class Change { Same, Done, Refused, ReadOnly };
    using Cell = std::pair<int, int>; ///< grid row and column

    /// Without a check every text is accepted. Both outlive the edits.
    CGridEdits(const CGridModel& model, const Check& check) : m_model(model), m_check(check) {}

    void MakeRoom(std::int64_t texts); ///< for about so many
    /// Keeps a text that differs from the cell's own and passes the check.
    Change Add(int row, int column, QString text);

    std::vector<GridCellText> TakeTexts() { return std::move(m_texts); } ///< in the order in which they were added
    std::optional<Cell> FirstRefusal() const { return m_firstRefusal; }
    std::int64_t Refused() const { return m_nRefused; } ///< texts that did not pass the check
    std::int64_t Offered() const { return m_nOffered; } ///< texts for cells that can be edited

private:
    const CGridModel& m_model;
    const Check& m_check;
    std::vector<GridCellText> m_texts;
    std::optional<Cell> m_firstRefusal;
    std::int64_t m_nRefused = 0;
    std::int64_t m_nOffered = 0;
};
