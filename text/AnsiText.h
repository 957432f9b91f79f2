#pragma once

#include <memory>
#include <string>
#include <string_view>

// The system's ANSI code page. On Windows it is the system's own; elsewhere the Windows code page that goes with the
// locale's language, or the number in the environment variable VANTOR_ANSI_CODEPAGE.

/// `text` in the ANSI code page; a character that the code page does not hold becomes "?".
std::string ToAnsi(std::u16string_view text);

/// The UTF-16 text of `bytes` in the ANSI code page; a byte that stands for nothing there becomes U+FFFD. As on
/// Windows, a byte from 0x80 to 0x9F that a single-byte page leaves free stands for the control character of its
/// number, so that it comes back unchanged.
std::u16string FromAnsi(std::string_view bytes);

/// As ToAnsi, but appends to `bytes`: no allocation a value.
void AppendToAnsi(std::u16string_view text, std::string& bytes);

/// As FromAnsi, but appends to `text`: no allocation a value.
void AppendFromAnsi(std::string_view bytes, std::u16string& text);

/// The number of the code page in use, 936 for example. Settled at the first call.
int AnsiCodePage();

/// The code page for `wanted`, the number that a user asks for: of `locale` ("zh_CN.UTF-8" for example) when `wanted`
/// is not the number of one of Windows' ANSI code pages.
int ChooseCodePage(std::string_view wanted, std::string_view locale);

/// The conversions of one of Windows' ANSI code pages. An object is for one thread at a time.
class CCodePage {
public:
    explicit CCodePage(int number);
    ~CCodePage();
    CCodePage(const CCodePage&) = delete;
    CCodePage& operator=(const CCodePage&) = delete;

    void AppendText(std::string_view bytes, std::u16string& text);
    void AppendBytes(std::u16string_view text, std::string& bytes);

private:
    class CConverter;
    std::unique_ptr<CConverter> m_pConverter;
};
