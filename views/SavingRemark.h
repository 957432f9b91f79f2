#pragma once

#include "document/RecipeDocument.h"

#include <QString>

// What a save will do to a cell, in words for the user.

/// What becomes of a value that nobody edited: "holds 1.05, shown as 1.50; a save stores 1.50", and why.
QString RewriteRemark(const CellOutlook& outlook);

/// What becomes of a typed text that is not read again as it was typed: "1.15 will be stored as 1.14", or "is stored"
/// once it was saved; empty for any other.
QString TypedRemark(const ColumnCoding& coding, std::u16string_view typed, const TypedValue& judged, bool isSaved);

/// The same for a cell of the document that was given a text; empty for any other.
QString TypedRemark(const CRecipeDocument& document, CellPlace place);
