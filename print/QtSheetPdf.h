#pragma once

#include "sheet/SheetPdf.h"

/// Makes PDF of sheets with their fonts, title and attachment. Needs a QGuiApplication, and no display.
class CQtSheetPdf final : public CSheetPdf {
public:
    Outcome Make(const SheetForPdf& sheet, std::string& pdf, CProgress& progress) override;
};
