#pragma once

#include "disk/File.h"
#include "recovery/UnsavedWork.h"

/// What is in a journal, up to the first line that is not as it was written.
struct JournalContent {
    enum class Kind {
        Readable,
        Damaged,    ///< even the first line is not whole, or tells of rows that cannot be shown
        Later,      ///< of another version of the program
        Unreadable, ///< the disk fails, or the memory does not suffice
    };

    Kind kind = Kind::Unreadable;
    UnsavedWork work;   ///< of a readable one
    bool isCut = false; ///< a line that is not whole ended the reading, before the end of the file
};

/// Reads a journal and never writes.
JournalContent ReadJournal(const CFile& file);
