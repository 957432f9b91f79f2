#pragma once

#include "text/Reporter.h"

class QWidget;

/// Says what the core has to say in modal message boxes, captioned with the program's name, over the dialog that is
/// open or else over `parent`. The parent outlives the reporter.
class CMessageBoxReporter final : public CReporter {
public:
    explicit CMessageBoxReporter(QWidget& parent) : m_parent(parent) {}

    void ShowError(std::u16string_view text) override;
    void ShowErrorWith(std::u16string_view text, std::u16string_view further) override; ///< below the text
    bool AskYesNo(std::u16string_view text) override;

private:
    QWidget& m_parent;
};
