#include "text/UtcTime.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <ctime>

namespace {

using std::chrono::days;
using std::chrono::floor;

/// Year, month, day, hour, minute, second, millisecond.
using Fields = std::array<int, 7>;

constexpr std::string_view kStampPattern = "yyyymmddThhmmss.fffZ";

Fields FieldsOf(UtcTime time)
{
    const auto day = floor<days>(time);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss clock(time - day);
    return {static_cast<int>(date.year()),
            static_cast<int>(static_cast<unsigned>(date.month())),
            static_cast<int>(static_cast<unsigned>(date.day())),
            static_cast<int>(clock.hours().count()),
            static_cast<int>(clock.minutes().count()),
            static_cast<int>(clock.seconds().count()),
            static_cast<int>(clock.subseconds().count())};
}

void AppendDigits(int value, std::size_t digits, std::string& text)
{
    const std::string number = std::to_string(value);
    text.append(number.size() < digits ? digits - number.size() : 0, '0').append(number);
}

/// The number in the digits at `begin`; nothing where one is none.
std::optional<int> NumberAt(std::string_view text, std::size_t begin, std::size_t digits)
{
    int value = 0;
    const char* const end = text.data() + begin + digits;
    const auto [stopped, fault] = std::from_chars(text.data() + begin, end, value);
    if (fault != std::errc() || stopped != end || text[begin] == '-')
        return std::nullopt;
    return value;
}

} // namespace

UtcTime UtcNow()
{
    return floor<std::chrono::milliseconds>(std::chrono::system_clock::now());
}

std::string UtcStamp(UtcTime time)
{
    const auto [year, month, day, hour, minute, second, millisecond] = FieldsOf(time);
    std::string text;
    AppendDigits(year, 4, text);
    AppendDigits(month, 2, text);
    AppendDigits(day, 2, text);
    text += 'T';
    AppendDigits(hour, 2, text);
    AppendDigits(minute, 2, text);
    AppendDigits(second, 2, text);
    text += '.';
    AppendDigits(millisecond, 3, text);
    return text + 'Z';
}

std::optional<UtcTime> TimeOfStamp(std::string_view stamp)
{
    if (stamp.size() != kStampPattern.size() || stamp[8] != 'T' || stamp[15] != '.' || stamp[19] != 'Z')
        return std::nullopt;
    const auto year = NumberAt(stamp, 0, 4);
    const auto month = NumberAt(stamp, 4, 2);
    const auto day = NumberAt(stamp, 6, 2);
    const auto hour = NumberAt(stamp, 9, 2);
    const auto minute = NumberAt(stamp, 11, 2);
    const auto second = NumberAt(stamp, 13, 2);
    const auto millisecond = NumberAt(stamp, 16, 3);
    if (!year || !month || !day || !hour || !minute || !second || !millisecond)
        return std::nullopt;
    const std::chrono::year_month_day date(std::chrono::year(*year), std::chrono::month(static_cast<unsigned>(*month)),
                                           std::chrono::day(static_cast<unsigned>(*day)));
    if (!date.ok() || *hour > 23 || *minute > 59 || *second > 59)
        return std::nullopt;
    return UtcTime(std::chrono::sys_days(date)) + std::chrono::hours(*hour) + std::chrono::minutes(*minute) +
           std::chrono::seconds(*second) + std::chrono::milliseconds(*millisecond);
}

std::string UtcText(UtcTime time)
{
    const std::string stamp = UtcStamp(time);
    return stamp.substr(0, 4) + '-' + stamp.substr(4, 2) + '-' + stamp.substr(6, 2) + 'T' + stamp.substr(9, 2) + ':' +
           stamp.substr(11, 2) + ':' + stamp.substr(13, 2) + 'Z';
}

std::string LocalText(UtcTime time)
{
    using std::chrono::minutes;
    const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
    const std::tm* const here = std::localtime(&seconds);
    if (here == nullptr)
        return UtcText(time);
    const auto date = std::chrono::year(here->tm_year + 1900) / (here->tm_mon + 1) / here->tm_mday;
    const auto local = std::chrono::sys_days(date) + std::chrono::hours(here->tm_hour) + minutes(here->tm_min);
    const auto ahead = (local - floor<minutes>(time)).count();
    const std::string stamp = UtcStamp(local);
    std::string text = stamp.substr(0, 4) + '-' + stamp.substr(4, 2) + '-' + stamp.substr(6, 2) + ' ' +
                       stamp.substr(9, 2) + ':' + stamp.substr(11, 2) + " (UTC" + (ahead < 0 ? '-' : '+');
    AppendDigits(static_cast<int>(std::abs(ahead) / 60), 2, text);
    text += ':';
    AppendDigits(static_cast<int>(std::abs(ahead) % 60), 2, text);
    return text + ')';
}
