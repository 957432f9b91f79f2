#pragma once

#include "changes/CellNow.h"
#include "files/CellComparison.h"
#include "files/RecipeRows.h"
#include "files/StoredCells.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Rows whose values are printed: those of a table, or a piece of them.
struct ValueRows {
    const CRecipeRows& rows;
    const CStoredCells& stored;     ///< what the file holds of them
    const CRecipeRows& wholeLayout; ///< where the rows of the table lie
    std::int32_t first = 0;         ///< row of the table that the first one is, counted from 0
};

/// The values of rows as JSON, a line a row, which docs/command-line.md describes under "values". An edited cell has
/// the words that a save would write.
class CValueLines {
public:
    /// The file is called `file`, and the rows are those of its table `table`. They outlive the lines.
    CValueLines(std::u16string_view file, std::size_t table, const ValueRows& values);

    /// Appends the line of that row, counted in `values`, with its line feed. To be called in ascending order.
    void Append(std::int32_t row, std::string& lines);

private:
    void AppendCell(CellPlace place, std::string& line);
    void AppendMarks(CellPlace place, bool isThere, std::string& line);
    bool IsRewritten(CellPlace place);

    ValueRows m_values;
    std::string m_begin; ///< of each line
    CCellNow m_now;
    std::optional<CCellComparison> m_comparison; ///< nothing where it is not known what the file holds
    std::int32_t m_compared = 0;                 ///< rows from the first on
    std::vector<PlannedChange> m_changes;        ///< in those compared last
    std::size_t m_nextChange = 0;
    std::u16string m_text;
};
