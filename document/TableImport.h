#pragma once

#include "document/CellsCommand.h"
#include "files/Progress.h"
#include "model/TypedNumberForms.h"
#include "text/DelimitedText.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The text that the bytes of a file are: UTF-16 or UTF-8 after its mark, else UTF-8 where they are that, else in the
/// system's ANSI code page. Throws std::bad_alloc.
std::u16string TextOfBytes(std::string_view bytes);

/// Where a text is to go.
struct ImportTarget {
    std::int32_t firstRow = 0;     ///< data row
    std::uint32_t firstColumn = 0; ///< data column; of no use where the first line has titles
    bool hasTitles = false;        ///< the first line has them: columns go to the items of these titles, in any order
};

/// A table of another program on its way into cells: which column goes where, how its numbers are written, and what is
/// left out. Nothing is to be given to cells while IsDecided is false: a number could be another one.
///
/// An empty field leaves its cell as it is.
class CTableImport {
public:
    /// A column of the text.
    struct Column {
        std::u16string title;                ///< where the first line has titles
        std::optional<std::uint32_t> target; ///< data column; nothing for one that is left out
        NumberSign sign = NumberSign::AsText;
        std::u16string doubtful = {}; ///< the field that has the column undecided
        std::u16string sample = {};   ///< the first field that is not empty
    };

    /// Whether the first line has titles: one of its fields at least is an item's, and none is a number.
    static bool LooksLikeTitles(const CDelimitedText& text, const CRecipeRows& rows);

    /// Looks at all fields that have a cell. Nothing when that is given up. Throws std::bad_alloc.
    static std::optional<CTableImport> Make(std::shared_ptr<const CDelimitedText> text, const CRecipeRows& rows,
                                            const ImportTarget& target, CProgress& progress);

    const std::vector<Column>& Columns() const { return m_columns; }

    /// What the user says of a column's numbers.
    void SetSign(std::size_t column, NumberSign sign) { m_columns[column].sign = sign; }

    bool IsDecided() const;

    std::int64_t RowCount() const { return m_rowCount; } ///< of the text that have a row in the table
    std::int64_t RowsLeftOut() const { return m_rowsLeftOut; }
    std::size_t ColumnsLeftOut() const;
    std::uint64_t EmptyFields() const { return m_emptyFields; } ///< whose cells stay as they are

    /// What the cells are to get. Takes a copy of the columns.
    std::shared_ptr<const CCellsCommand> Command() const;

private:
    CTableImport() = default;
    void FindTargets(const CRecipeRows& rows, const ImportTarget& target);
    bool LookAtFields(const CRecipeRows& rows, CProgress& progress);

    std::shared_ptr<const CDelimitedText> m_text;
    std::vector<ColumnCoding> m_codings; ///< of the table
    std::vector<Column> m_columns;
    std::size_t m_titleLines = 0;
    std::int32_t m_firstRow = 0;
    std::int64_t m_rowCount = 0;
    std::int64_t m_rowsLeftOut = 0;
    std::uint64_t m_emptyFields = 0;
};
