#pragma once

#include "model/DataFormat.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Formats that two programs changed, put together again. Formats are known by their names, as far as these are read
// again, and by which of that name they are: the first, the second. They are compared as they would be saved, so that
// items which a save leaves out are no difference. Notes count as a change only against deleting: all else about them
// is for NotesMerge.h.

using Formats = std::vector<std::unique_ptr<DataFormat>>;

Formats CopyOf(const Formats& formats);

/// Whether both would be saved as the same formats in the same order.
bool AreSavedAlike(const Formats& a, const Formats& b);

/// "NAME (2)", or NAME with the next number that no format of `formats` has; NAME is cut so that all of it is read
/// again.
std::u16string FreeName(const Formats& formats, std::u16string_view name);

/// What became of one of our formats.
struct FormatMove {
    std::optional<std::size_t> to; ///< its index among the merged ones; none when it went
    bool hasOtherItems = false;    ///< the others changed it

    friend bool operator==(const FormatMove&, const FormatMove&) = default;
};

struct MergedFormats {
    Formats formats;
    std::vector<FormatMove> moves; ///< of each of ours
};

/// What `ours` and `theirs` have become of `base`, together.
///
/// A format that one side changed, added or deleted is as that side left it. One that a side deleted stays when the
/// other changed it. Where both made another one of it, or both added one, and the two differ, theirs keeps the name
/// and ours is called "NAME (2)", or by the next number that is free; NAME is cut so that all of it is read again.
/// Where theirs already has such a one that is like ours, as after an earlier merge, that is it.
///
/// Where they changed nothing all is as ours, where we changed nothing all is as theirs. Else theirs come in their
/// order, and those that only ours has come after them in ours. What is alike on both sides is taken from ours, with
/// all that a save leaves out.
MergedFormats MergeFormats(const Formats& base, const Formats& ours, const Formats& theirs);
