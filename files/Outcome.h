#pragma once

#include <new>
#include <stdexcept>

/// How a piece of work on a file ended. Work that takes a CReporter has reported its failure when it returns; any other
/// leaves that to its caller, in the words of the file's type.
enum class Outcome {
    Done,
    Failed,
    FailedMixed, ///< the same, and the file may hold old and new words now: only of work that writes
    GivenUp,     ///< by the user's wish: nothing to report
};

/// What `work` comes to; Failed when there is no memory for it.
template <class Work>
Outcome WithinMemory(Work work)
try {
    return work();
} catch (const std::bad_alloc&) {
    return Outcome::Failed;
} catch (const std::length_error&) {
    return Outcome::Failed;
}

/// How a save ended, once its failure was reported. As a truth value: whether everything is in the file, and on the
/// disk.
struct SaveResult {
    bool isSaved = false;
    bool mayHoldOldAndNew = false; ///< it failed part-way
    bool isGivenUp = false;        ///< by the user's wish: it wrote nothing, and reported nothing either
    bool isLeftOut = false;        ///< kept: it wrote nothing, and reported nothing either (PagedRecipeFile.h)
    bool isHeldBack = false;       ///< another program changed what it would write over: likewise

    explicit operator bool() const { return isSaved; }
};

/// The result of a save that ended so.
constexpr SaveResult ResultOf(Outcome outcome)
{
    return {.isSaved = outcome == Outcome::Done,
            .mayHoldOldAndNew = outcome == Outcome::FailedMixed,
            .isGivenUp = outcome == Outcome::GivenUp};
}

/// Whether there is a failure to report.
constexpr bool HasFailed(Outcome outcome)
{
    return outcome == Outcome::Failed || outcome == Outcome::FailedMixed;
}
