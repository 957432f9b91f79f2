#pragma once

/// What the strip above the panes may speak of, the lightest first: of several messages the heaviest is seen.
enum class StripSubject {
    Compared,        ///< the table is compared with another file
    LastRead,        ///< the file was read otherwise the last time
    PatchRefused,    ///< a patch was not applied, or there was nothing to apply
    FormatCount,     ///< a format's count leaves out items that are shown
    UnlikeFormat,    ///< the words do not look like what the format makes of them
    StoredOtherwise, ///< typed values would be stored as others
    OutsideRange,    ///< values that were just given lie outside their sensible range
    StoredAsShown,   ///< a save stored values that nobody had edited
    PatchOffered,    ///< a patch can be applied
    EditsOffered,    ///< a command on many cells shows what it would do
    LibraryNotKept,  ///< the format library is damaged, or changes to it are not kept
    NotWritten,      ///< a save wrote nothing
    Unsaved,         ///< edits that were not saved were found
    ChangedByOthers, ///< another program changed the open file
};
