#pragma once

/// What the strip above the panes may speak of, the lightest first: of several messages the heaviest is seen.
enum class StripSubject {
    Compared,        ///< the table is compared with another file
    PatchRefused,    ///< a patch was not applied, or there was nothing to apply
    FormatCount,     ///< a format's count leaves out items that are shown
    StoredOtherwise, ///< typed values would be stored as others
    StoredAsShown,   ///< a save stored values that nobody had edited
    PatchOffered,    ///< a patch can be applied
    LibraryNotKept,  ///< the format library is damaged, or changes to it are not kept
    NotWritten,      ///< a save wrote nothing
    Unsaved,         ///< edits that were not saved were found
    ChangedByOthers, ///< another program changed the open file
};
