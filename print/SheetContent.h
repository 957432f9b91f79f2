#pragma once

#include "sheet/RecipeSheet.h"

#include <QString>

#include <cstddef>
#include <string_view>
#include <vector>

/// A sheet as tables that follow each other: the head, one a row, the changes. A table without rows is a line of text.
class CSheetContent {
public:
    /// Tables of one kind have the same columns.
    enum class Kind { Head, Values, Changes, Text };

    /// The sheet outlives the content.
    explicit CSheetContent(const RecipeSheet& sheet);

    const RecipeSheet& Sheet() const { return m_sheet; }
    std::size_t TableCount() const { return m_tables.size(); }
    Kind KindOf(std::size_t table) const { return m_tables[table].kind; }
    QString TitleOf(std::size_t table) const;
    const std::vector<QString>& ColumnsOf(Kind kind) const; ///< their titles
    std::size_t RowCount(std::size_t table) const;

    QString Text(std::size_t table, std::size_t row, std::size_t column) const;

    /// Whether the text stands out.
    bool IsStrong(std::size_t table, std::size_t row, std::size_t column) const;

    /// Whether all tables of values have this text in that row, as an item's title.
    bool IsSharedColumn(Kind kind, std::size_t column) const;

private:
    enum class Part { Label, Text, Item, Value, Unit, Range, Remark, Row, ChangedItem, Old, New };

    struct Table {
        Kind kind;
        std::size_t block = 0;
        std::u16string title = {};
    };

    void AddColumn(Kind kind, Part part, std::u16string_view title);
    Part PartOf(std::size_t table, std::size_t column) const;

    const RecipeSheet& m_sheet;
    std::vector<Table> m_tables;
    std::vector<QString> m_columns[4];
    std::vector<Part> m_parts[4];
};
