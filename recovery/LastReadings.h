#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

/// By what a recipe was read.
struct LastReading {
    std::u16string format; ///< its name
    std::int32_t start = 0;
    std::int32_t rows = 0;

    friend bool operator==(const LastReading&, const LastReading&) = default;
};

/// What each recipe was read by the last time: the file "readings.json" in the user's data folder, which nobody else
/// may read. It names the newest 1,000 recipes, and is replaced as a whole under a lock, so that several windows add to
/// one another's.
///
/// Nothing here reports anything, and nothing fails in a way that work could depend on. A file that is damaged tells
/// nothing; before the next recipe is remembered it is kept as "readings.json.damaged". One of another user or of a
/// later version is left alone, and `"keep":false` in it, set by hand, has nothing remembered.
class CLastReadings {
public:
    /// Without a data folder nothing is remembered.
    explicit CLastReadings(const std::filesystem::path& dataFolder);

    std::optional<LastReading> Find(const std::filesystem::path& recipe) const;

    /// False when nothing is remembered.
    bool Remember(const std::filesystem::path& recipe, const LastReading& reading) const;

    /// What is known of the one recipe is known no more; the same result.
    bool Forget(const std::filesystem::path& recipe) const;

private:
    std::filesystem::path m_file; ///< empty for none
};
