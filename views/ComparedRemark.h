#pragma once

#include "document/RecipeDocument.h"

#include <QString>

/// What the file that the table is compared with holds for a cell: "oven-old.rcp: 240.0"; empty where nothing differs.
QString ComparedRemark(const CRecipeDocument& document, CellPlace place);
