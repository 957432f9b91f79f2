#pragma once

#include "files/Outcome.h"
#include "files/Progress.h"
#include "sheet/RecipeSheet.h"

#include <string>

/// A sheet and what goes along with it in a PDF.
struct SheetForPdf {
    const RecipeSheet& sheet;
    SheetPaper paper = SheetPaper::A4;
    const std::string& records; ///< JSON Lines: the attachment
};

/// The name of the attachment: of changes where the sheet tells of such, else of values.
inline const char* AttachmentName(const RecipeSheet& sheet)
{
    return sheet.changes ? "changes.jsonl" : "values.jsonl";
}

/// Makes PDF of sheets, which the core by itself cannot.
class CSheetPdf {
public:
    virtual ~CSheetPdf() = default;

    /// `pdf` becomes what the file holds. Failed is not reported. Throws std::bad_alloc.
    virtual Outcome Make(const SheetForPdf& sheet, std::string& pdf, CProgress& progress) = 0;
};
