#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

/// The sizes that a merged file can have.
enum class MergedSize {
    None, ///< neither was chosen: nothing fits
    Words128K,
    Words256K,
};

/// The words of a merged file of that size: 512 fewer than its name says.
std::int32_t MergedWords(MergedSize size);

/// What the user has asked the merge to do: which stretch of each of two files goes where in a new one. Addresses and
/// lengths are in 16-bit words and may be any number until ValidateMergeParams has passed.
struct MergeParams {
    MergedSize mergedSize = MergedSize::Words128K;

    std::filesystem::path firstPath = {};
    std::int64_t firstFileBytes = 0; ///< the length that the file had when it was chosen
    std::int32_t firstReadStart = 0; ///< address in the first file
    std::int32_t firstLength = 0;
    std::int32_t firstPlace = 0; ///< address in the merged file

    std::filesystem::path secondPath = {};
    std::int64_t secondFileBytes = 0;
    std::int32_t secondReadStart = 0;
    std::int32_t secondLength = 0;
    std::int32_t secondPlace = 0;

    std::filesystem::path mergedPath = {};
};

/// The message of the first check, in their fixed order, that `params` fails; nothing when the merge may run. Looks at
/// no file.
std::optional<std::u16string> ValidateMergeParams(const MergeParams& params);
