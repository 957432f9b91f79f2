#pragma once

#include "files/Outcome.h"
#include "files/Progress.h"
#include "files/RecipeRows.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// How a table is written for other programs.
struct TableExportForm {
    enum class Units {
        None,
        InTitles, ///< "Zone °C(0) [°C]"
        OwnLine,  ///< a line of them, after that of the titles
    };

    char16_t separator = u';';
    char16_t point = u'.'; ///< the decimal sign of numbers
    bool hasTitles = true;
    bool hasPlaces = false; ///< each row's number and word address come first
    Units units = Units::InTitles;
};

/// A table as a text for spreadsheets: the shown texts of rows, a line a row, with the titles that a recipe file of
/// texts has not. UTF-8 with a byte order mark, lines end in CR LF. A field that holds the separator, a quote, a line
/// end or a blank at one of its ends stands in quotes, quotes in it doubled.
class CTableExport {
public:
    /// `rows` outlive the object; of them those in `chosen`, in that order, or all.
    CTableExport(const CRecipeRows& rows, const TableExportForm& form,
                 std::optional<std::vector<std::int32_t>> chosen = {});

    std::size_t RowCount() const;

    /// How the file begins: the lines before those of the rows, and so many of these.
    std::u16string FirstLines(std::size_t rows) const;

    /// Writes a complete new file in place of the one at `path`, which is as it was after a failure or when the work is
    /// given up.
    Outcome Write(const std::filesystem::path& path, CProgress& progress) const;

private:
    std::u16string Heads() const;
    void AppendRow(std::size_t index, std::u16string& text) const;
    void AppendField(std::u16string_view field, std::u16string& line) const;
    void EndLine(std::u16string& line) const;

    const CRecipeRows& m_rows;
    TableExportForm m_form;
    std::optional<std::vector<std::int32_t>> m_chosen;
};
