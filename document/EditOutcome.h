#pragma once

/// What became of an edit.
enum class EditOutcome {
    Made,
    Nothing,     ///< there was nothing to change
    OutOfMemory, ///< the document is as it was
    Dropped,     ///< it was one of a format that is another one by now: forgotten, and nothing was changed
};
