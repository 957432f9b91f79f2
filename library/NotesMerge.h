#pragma once

#include "library/LibraryMerge.h"
#include "library/LibraryNotes.h"

// Notes that two programs changed, put together again. Each field is for itself: what one side changed is as that side
// left it; what both changed is as ours.

/// What notes that were `base` have become, together. Notes that one side deleted stay when the other changed them.
ItemNotes MergeNotes(const ItemNotes& base, const ItemNotes& ours, const ItemNotes& theirs);

/// Gives the items of `merged`, made of `ours` and `theirs`, their notes. An item that both sides have gets what both
/// made of its notes in `base`; one of a single side keeps those that it came with. An item that one side renamed is
/// the same one when it is the only one of its format that has another name, is alike but for that, and still has the
/// notes that it had.
void MergeNotes(const Formats& base, const Formats& ours, const Formats& theirs, Formats& merged);
