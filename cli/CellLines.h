#pragma once

#include "files/RecipeRows.h"

#include <string>
#include <string_view>
#include <vector>

/// The beginnings of lines that tell of the cells of one table, by address, row and title.
class CCellLines {
public:
    enum class Addresses {
        OfWords,
        None, ///< of a table of texts
    };

    /// `layout` must outlive it.
    explicit CCellLines(const CRecipeRows& layout, Addresses addresses = Addresses::OfWords);

    /// Appends "RW245 row 4 Zone °C(2) = ", where `beforeRow` is " row ".
    void AppendPlace(CellPlace place, std::string_view beforeRow, std::string& line) const;

private:
    const CRecipeRows& m_layout;
    Addresses m_addresses;
    std::vector<std::string> m_titles; ///< in one line each
};
