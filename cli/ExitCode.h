#pragma once

/// How the program ends.
enum ExitCode : int {
    kDone = 0,
    kFailed = 1,
    kTrouble = 2, ///< wrong usage; of a command that only reads, anything it could not do, which was told
};

// What 1 means to commands that tell something by it.
inline constexpr ExitCode kDifferent = kFailed;
inline constexpr ExitCode kErrorsFound = kFailed;
inline constexpr ExitCode kNothingFound = kFailed;
inline constexpr ExitCode kRefused = kFailed;
