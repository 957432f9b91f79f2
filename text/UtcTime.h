#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

/// A moment to the millisecond, without leap seconds.
using UtcTime = std::chrono::sys_time<std::chrono::milliseconds>;

/// The moment as the system's clock has it.
UtcTime UtcNow();

/// "20261122T110208.123Z": in ascending order as text where the moments are, and good for a file's name. The years 0 to
/// 9999 have one.
std::string UtcStamp(UtcTime time);

/// The moment of exactly such a text.
std::optional<UtcTime> TimeOfStamp(std::string_view stamp);

/// "2026-11-22T11:02:08Z", as dates stand in JSON.
std::string UtcText(UtcTime time);

/// "2026-11-22 12:02 (UTC+01:00)": by the clock of this place.
std::string LocalText(UtcTime time);
