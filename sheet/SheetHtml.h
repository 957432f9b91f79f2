#pragma once

#include "sheet/RecipeSheet.h"

#include <string>

/// The sheet as one HTML file in UTF-8 that needs no other: for browsers, screen readers and printers, in black and
/// white as well. It has no scripts, and what the sheet's texts say is text, whatever characters they have.
std::string SheetHtml(const RecipeSheet& sheet);
