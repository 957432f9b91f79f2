#pragma once

#include "text/Reporter.h"

#include <string>
#include <vector>

/// Keeps what it is told, in order, and answers every question with `answer`.
class CRecordingReporter final : public CReporter {
public:
    void ShowError(std::u16string_view text) override;
    bool AskYesNo(std::u16string_view text) override;

    std::vector<std::u16string> shown; ///< errors, in order
    std::vector<std::u16string> asked; ///< questions, in order
    bool answer = false;
};
