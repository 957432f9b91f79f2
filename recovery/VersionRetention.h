#pragma once

#include "text/UtcTime.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// A kept version, as far as it matters for how long it stays.
struct KeptVersion {
    std::size_t file = 0;    ///< versions of one file have the same number here
    UtcTime time{};          ///< by its name: no two of one file are alike
    std::uint64_t bytes = 0; ///< on the disk
    bool isRecords = false;  ///< of use only together with the newer versions up to the next copy
};

/// What may stay of the versions of all files.
struct VersionLimits {
    std::size_t newest = 50;                        ///< of a file
    int days = 30;                                  ///< of which the last version of a file stays, today included
    std::uint64_t bytes = std::uint64_t{512} << 20; ///< of all files; the newest of each file stays all the same
};

/// The indices of those of `versions`, in any order, that go, in ascending order.
///
/// Of a file stay the newest, the last of each day in UTC for some days up to `now`, and what older ones that stay
/// need. Then the oldest of all go until the rest is small enough. A version whose time is still to come is young; the
/// newest of a file never goes.
std::vector<std::size_t> VersionsToRemove(std::span<const KeptVersion> versions, UtcTime now,
                                          const VersionLimits& limits = {});
