#pragma once

#include <string_view>

/// Where the core says what people must hear. The window answers with message boxes, the command line with standard
/// error, a test with a list. Texts arrive filled and final.
class CReporter {
public:
    virtual ~CReporter() = default;
    virtual void ShowError(std::u16string_view text) = 0;
    virtual bool AskYesNo(std::u16string_view text) = 0; ///< true for Yes

    /// An error of which there is more to say: `further`, whole sentences, or empty. Whoever has no place for it shows
    /// the error alone.
    virtual void ShowErrorWith(std::u16string_view text, std::u16string_view /*further*/) { ShowError(text); }
};

/// For work of which nobody is to hear.
class CSilentReporter final : public CReporter {
public:
    void ShowError(std::u16string_view) override {}
    bool AskYesNo(std::u16string_view) override { return false; }
};
