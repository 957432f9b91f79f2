#pragma once

#include "text/Reporter.h"

#include <string>
#include <vector>

/// Keeps what it is told, in order, and answers every question with `answer`.
class CRecordingReporter final : public CReporter {
public:
    void ShowError(std::u16string_view text) override;
    bool AskYesNo(std::u16string_view text) override;
    void ShowErrorWith(std::u16string_view text, std::u16string_view more) override
    {
        ShowError(text);
        if (!more.empty())
            further.emplace_back(more);
    }

    std::vector<std::u16string> shown;   ///< errors, in order
    std::vector<std::u16string> asked;   ///< questions, in order
    std::vector<std::u16string> further; ///< what else was said of errors, in order
    bool answer = false;
};
