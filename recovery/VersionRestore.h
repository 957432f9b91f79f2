#pragma once

#include "recovery/VersionStore.h"
#include "text/Reporter.h"

#include <filesystem>
#include <string_view>

/// How going back to a version ended.
struct VersionRestored {
    bool isRestored = false;
    bool mayHoldOldAndNew = false; ///< it failed part-way
    VersionKept kept;              ///< of what the file held before; told only here

    explicit operator bool() const { return isRestored; }
};

/// Makes `file` what it was when its version `stamp` was kept, byte for byte; of a paged file that was too large to be
/// copied, word for word. It is replaced as a whole (CReplacement), and made anew where it is missing; one that was too
/// large gets its words back in place, all of which are looked at first, those of all newer versions included.
///
/// Before that, a version of what it holds now is kept, for the command "Restore"; that this fails does not end the
/// work. Not restored after a failure, which was reported once with the reason; the file is as it was then, unless
/// `mayHoldOldAndNew`.
VersionRestored RestoreVersion(const CVersionStore& store, const std::filesystem::path& file, std::string_view stamp,
                               CReporter& reporter);

/// Writes the version to the file at `path`, which is replaced as a whole. False after a failure, reported once.
bool WriteVersion(const CVersionStore& store, const std::filesystem::path& file, const Version& version,
                  const std::filesystem::path& path, CReporter& reporter);
