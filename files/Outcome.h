#pragma once

/// How a piece of work on a file ended.
enum class Outcome {
    Done,
    Failed,  ///< still to be reported, in the words of the file's type
    GivenUp, ///< by the user's wish: nothing to report
};
