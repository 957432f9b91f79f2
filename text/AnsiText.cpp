#include "text/AnsiText.h"

#include "text/Surrogates.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>

#ifdef _WIN32
#ifndef NOMINMAX
#define NOMINMAX // else std::min is a macro here
#endif
#include <windows.h>
#else
#include <iconv.h>

#include <bit>
#include <bitset>
#include <cerrno>
#include <cstdlib>
#endif

namespace {

constexpr int kWesternCodePage = 1252;

constexpr bool IsAnsiCodePage(int number)
{
    return number == 874 || number == 932 || number == 936 || number == 949 || number == 950 ||
           (number >= 1250 && number <= 1258);
}

// clang-format off
struct LanguageCodePage {
    std::string_view locale; ///< the beginning of a locale's name
    int codePage;
};

constexpr auto kLanguages = std::to_array<LanguageCodePage>({   // the first that fits counts; all others are Western
    {"zh_TW", 950}, {"zh_HK", 950}, {"zh_MO", 950}, {"zh", 936}, {"ja", 932}, {"ko", 949}, {"th", 874}, {"vi", 1258},
    {"sr_RS@latin", 1250}, {"sr@latin", 1250},
    {"be", 1251}, {"bg", 1251}, {"kk", 1251}, {"ky", 1251}, {"mk", 1251}, {"mn", 1251}, {"ru", 1251}, {"sr", 1251},
    {"tg", 1251}, {"tt", 1251}, {"uk", 1251},
    {"bs", 1250}, {"cs", 1250}, {"hr", 1250}, {"hu", 1250}, {"pl", 1250}, {"ro", 1250}, {"sk", 1250}, {"sl", 1250},
    {"sq", 1250},
    {"el", 1253}, {"az", 1254}, {"tr", 1254}, {"he", 1255}, {"iw", 1255}, {"yi", 1255},
    {"ar", 1256}, {"fa", 1256}, {"ur", 1256}, {"et", 1257}, {"lt", 1257}, {"lv", 1257},
});
// clang-format on

/// Whether the locale name `locale` begins with the whole parts of `name`: "be_BY.UTF-8" with "be", "ber_DZ" not.
bool BeginsWithName(std::string_view locale, std::string_view name)
{
    return locale.starts_with(name) && (locale.size() == name.size() ||
                                        std::string_view("_.@-").find(locale[name.size()]) != std::string_view::npos);
}

int CodePageOfLocale(std::string_view locale)
{
    const auto* language = std::find_if(kLanguages.begin(), kLanguages.end(), [locale](const LanguageCodePage& entry) {
        return BeginsWithName(locale, entry.locale);
    });
    return language != kLanguages.end() ? language->codePage : kWesternCodePage;
}

/// Moves the ASCII characters that `from` begins with to the end of `to`: all code pages hold them alike.
template <class From, class To>
void MoveAscii(std::basic_string_view<From>& from, std::basic_string<To>& to)
{
    const auto end = std::find_if(from.begin(), from.end(),
                                  [](From c) { return static_cast<std::make_unsigned_t<From>>(c) >= 0x80; });
    const auto before = static_cast<std::ptrdiff_t>(to.size());
    const auto count = static_cast<std::size_t>(end - from.begin());
    to.resize(to.size() + count);
    std::transform(from.begin(), end, to.begin() + before, [](From c) { return static_cast<To>(c); });
    from.remove_prefix(count);
}

CCodePage& CodePageOfThread()
{
    thread_local CCodePage codePage(AnsiCodePage());
    return codePage;
}

} // namespace

#ifdef _WIN32

/// The system's own conversion.
class CCodePage::CConverter {
public:
    explicit CConverter(int number) : m_number(static_cast<UINT>(number)) {}

    void AppendText(std::string_view bytes, std::u16string& text) const
    {
        const std::size_t before = text.size();
        text.resize(before + bytes.size()); // a byte gives one unit at most
        auto* const out = reinterpret_cast<wchar_t*>(text.data() + before);
        const int count = static_cast<int>(bytes.size());
        const int written = MultiByteToWideChar(m_number, 0, bytes.data(), count, out, count);
        text.resize(before + static_cast<std::size_t>(written));
    }

    void AppendBytes(std::u16string_view text, std::string& bytes) const
    {
        const std::size_t before = bytes.size();
        bytes.resize(before + 2 * text.size()); // a unit gives two bytes at most
        const auto* const in = reinterpret_cast<const wchar_t*>(text.data());
        const int written = WideCharToMultiByte(m_number, WC_NO_BEST_FIT_CHARS, in, static_cast<int>(text.size()),
                                                bytes.data() + before, static_cast<int>(2 * text.size()), "?", nullptr);
        bytes.resize(before + static_cast<std::size_t>(written));
    }

private:
    UINT m_number;
};

int AnsiCodePage()
{
    return static_cast<int>(GetACP());
}

#else

namespace {

std::string_view EnvironmentText(const char* name)
{
    const char* const value = std::getenv(name);
    return value != nullptr ? value : std::string_view{};
}

std::string_view LocaleName()
{
    for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"})
        if (const std::string_view value = EnvironmentText(name); !value.empty())
            return value;
    return {};
}

constexpr const char* kNativeUtf16 = std::endian::native == std::endian::little ? "UTF-16LE" : "UTF-16BE";
constexpr char16_t kReplacement = u'\uFFFD';

/// One direction of the C library's conversion.
class CIconv {
public:
    CIconv(const std::string& to, const std::string& from) : m_handle(iconv_open(to.c_str(), from.c_str())) {}
    ~CIconv()
    {
        if (IsOpen())
            iconv_close(m_handle);
    }
    CIconv(const CIconv&) = delete;
    CIconv& operator=(const CIconv&) = delete;

    /// Converts what it can of `from`, which moves on, and hands `take` the characters of `Out` piece by piece. Stops
    /// before a character that cannot be converted.
    template <class In, class Out, class Take>
    void Convert(std::basic_string_view<In>& from, Take take)
    {
        if (!IsOpen())
            return;
        auto* in = const_cast<char*>(reinterpret_cast<const char*>(from.data())); // iconv does not write there
        std::size_t inLeft = from.size() * sizeof(In);
        bool isFull = true;
        while (isFull)
            isFull = Piece<Out>(&in, &inLeft, take);
        Piece<Out>(nullptr, nullptr, take); // what the conversion held back; back to its first state
        from.remove_prefix(from.size() - inLeft / sizeof(In));
    }

private:
    bool IsOpen() const { return m_handle != reinterpret_cast<iconv_t>(-1); } // NOLINT: what the call answers

    /// One buffer full; whether there is more.
    template <class Out, class Take>
    bool Piece(char** in, std::size_t* inLeft, Take& take)
    {
        std::array<Out, 128> buffer;
        auto* out = reinterpret_cast<char*>(buffer.data());
        std::size_t outLeft = sizeof(buffer);
        const std::size_t result = iconv(m_handle, in, inLeft, &out, &outLeft);
        const bool isFull = result == static_cast<std::size_t>(-1) && errno == E2BIG;
        take(std::basic_string_view<Out>(buffer.data(), buffer.size() - outLeft / sizeof(Out)));
        return isFull;
    }

    iconv_t m_handle;
};

std::string PageName(int number)
{
    return "CP" + std::to_string(number);
}

} // namespace

/// The conversion of the C library, with its gaps filled.
class CCodePage::CConverter {
public:
    explicit CConverter(int number)
        : m_toText(kNativeUtf16, PageName(number)),
          m_toBytes(PageName(number), kNativeUtf16)
    {
        const bool isSingleByte = number == 874 || number >= 1250;
        for (std::size_t i = 0; isSingleByte && i < m_isFree.size(); ++i)
            m_isFree[i] = !Holds(static_cast<char>(kFirstControl + i));
    }

    void AppendText(std::string_view bytes, std::u16string& text)
    {
        while (!bytes.empty()) {
            m_toText.Convert<char, char16_t>(bytes, [&text](std::u16string_view piece) { text += piece; });
            if (bytes.empty())
                break;
            const auto byte = static_cast<unsigned char>(bytes.front());
            text += StandsForItself(byte) ? static_cast<char16_t>(byte) : kReplacement;
            bytes.remove_prefix(1);
        }
    }

    void AppendBytes(std::u16string_view text, std::string& bytes)
    {
        while (!text.empty()) {
            m_toBytes.Convert<char16_t, char>(text, [&bytes](std::string_view piece) { bytes += piece; });
            if (text.empty())
                break;
            bytes += StandsForItself(text.front()) ? static_cast<char>(text.front()) : '?';
            const bool isPair = text.size() > 1 && IsHighSurrogate(text[0]) && IsLowSurrogate(text[1]);
            text.remove_prefix(isPair ? 2 : 1);
        }
    }

private:
    static constexpr std::size_t kFirstControl = 0x80;

    bool Holds(char byte)
    {
        std::string_view bytes(&byte, 1);
        m_toText.Convert<char, char16_t>(bytes, [](std::u16string_view) {});
        return bytes.empty();
    }

    /// Whether the byte or character `code` is ASCII, which a C library without the page leaves unconverted, too, or a
    /// control to which the page gives no meaning of its own.
    bool StandsForItself(char16_t code) const
    {
        return code < kFirstControl || (code < kFirstControl + m_isFree.size() && m_isFree[code - kFirstControl]);
    }

    CIconv m_toText;
    CIconv m_toBytes;
    std::bitset<32> m_isFree; ///< of the bytes from kFirstControl on
};

int AnsiCodePage()
{
    static const int number = ChooseCodePage(EnvironmentText("VANTOR_ANSI_CODEPAGE"), LocaleName());
    return number;
}

#endif

CCodePage::CCodePage(int number) : m_pConverter(std::make_unique<CConverter>(number)) {}

CCodePage::~CCodePage() = default;

void CCodePage::AppendText(std::string_view bytes, std::u16string& text)
{
    MoveAscii(bytes, text);
    if (!bytes.empty())
        m_pConverter->AppendText(bytes, text);
}

void CCodePage::AppendBytes(std::u16string_view text, std::string& bytes)
{
    MoveAscii(text, bytes);
    if (!text.empty())
        m_pConverter->AppendBytes(text, bytes);
}

int ChooseCodePage(std::string_view wanted, std::string_view locale)
{
    int number = 0;
    const auto read = std::from_chars(wanted.data(), wanted.data() + wanted.size(), number);
    const bool isWhole = read.ptr == wanted.data() + wanted.size();
    return isWhole && IsAnsiCodePage(number) ? number : CodePageOfLocale(locale);
}

void AppendToAnsi(std::u16string_view text, std::string& bytes)
{
    CodePageOfThread().AppendBytes(text, bytes);
}

void AppendFromAnsi(std::string_view bytes, std::u16string& text)
{
    CodePageOfThread().AppendText(bytes, text);
}

std::string ToAnsi(std::u16string_view text)
{
    std::string bytes;
    AppendToAnsi(text, bytes);
    return bytes;
}

std::u16string FromAnsi(std::string_view bytes)
{
    std::u16string text;
    AppendFromAnsi(bytes, text);
    return text;
}
