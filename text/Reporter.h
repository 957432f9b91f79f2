#pragma once

#include <string_view>

/// Where the core says what people must hear. The window answers with message boxes, the command line with standard
/// error, a test with a list. Texts arrive filled and final.
class CReporter {
public:
    virtual ~CReporter() = default;
    virtual void ShowError(std::u16string_view text) = 0;
    virtual bool AskYesNo(std::u16string_view text) = 0; ///< true for Yes
};
