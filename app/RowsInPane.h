#pragma once

#include <cstdint>
#include <vector>

class CRecipeDataShowView;

/// The data rows in which cells are chosen, ascending.
std::vector<std::int32_t> RowsWithChosenCells(const CRecipeDataShowView& pane);

/// The data rows that are shown, ascending.
std::vector<std::int32_t> RowsInSight(const CRecipeDataShowView& pane);
