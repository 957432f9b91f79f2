#pragma once

#include "document/RecipeDocument.h"
#include "model/ColumnCoding.h"

#include <QString>
#include <QStringList>

// What there is to say of a cell, or a title, besides its text, in words for the user.

/// The marks of a cell in words (GridCellMarks): what is wrong with its value comes first. Empty without a mark.
QString CellRemark(CRecipeDocument& document, CellPlace place);

/// All that one line can say of a cell, the most important first: its address, that it lies outside its sensible range,
/// what it means, its type and limits, and its other marks.
QString CellInfo(CRecipeDocument& document, CellPlace place);

/// What the value of a cell means by the notes of its item, in parts of a sentence: the text of the value, "0 = off",
/// the bits that are set and have names, and the sensible range. Empty without notes.
QStringList CellMeaning(const CRecipeDocument& document, CellPlace place);

/// What the notes of an item say to its title, in lines: unit, sensible range and comment. Empty without any of them.
QString TitleRemark(const ColumnCoding& coding);

/// A value of the column as `text` shows it, with the unit and what it is called: "240.0 °C", "0 = off". An empty one
/// stays so.
QString WithMeaning(const ColumnCoding& coding, const QString& text);
