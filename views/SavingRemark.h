#pragma once

#include "document/RecipeDocument.h"

#include <QString>

// What a save will do to a cell, in words for the user.

/// What becomes of a value that nobody edited: "holds 1.05, shown as 1.50; a save stores 1.50", and why.
QString RewriteRemark(const CellOutlook& outlook);

/// What becomes of a cell's text that is not read again as it was typed: "1.15 will be stored as 1.14", or "is stored"
/// once it was saved; empty for any other cell.
QString TypedRemark(const CRecipeDocument& document, CellPlace place);
