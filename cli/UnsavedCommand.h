#pragma once

#include "cli/StandardStreams.h"

#include <optional>
#include <string>

// The edits that windows did not save, as their journals have them (recovery/UnsavedStore.h). All are false after a
// failure, then reported.

struct UnsavedOptions {
    std::optional<std::string> id; ///< of a journal, as ListUnsaved prints it
};

/// Prints a line a journal: ID, time of the last edit, number of edits, "open", "left" or "dropped", and the file, a
/// TAB between them. Never writes.
bool ListUnsaved(CStandardOutput& output, CReporter& reporter);

/// Prints the edits of a journal as changes (PrintedChanges.h); without an ID those of the one that was left behind.
/// Never writes.
bool ShowUnsaved(const UnsavedOptions& options, CStandardOutput& output, CReporter& reporter);

/// Moves a journal that was left behind to the dropped ones, and removes a dropped one for good; without an ID it moves
/// all that were left behind. One that a window has open is refused.
bool DropUnsaved(const UnsavedOptions& options, CReporter& reporter);
