#pragma once

#include "files/FileType.h"
#include "files/Outcome.h"
#include "files/WriteTarget.h"
#include "model/Address.h"
#include "text/Reporter.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <vector>

/// Words for some places of a file of words, in runs that do not touch each other.
class CWordRuns {
public:
    /// Adds the bytes of words, which follow all those that were added before. Throws std::bad_alloc.
    void Append(WordAddress first, std::span<const std::byte> bytes);

    struct Run {
        WordAddress first{0};
        std::span<const std::byte> bytes;
    };

    std::size_t Count() const { return m_begins.size(); }
    Run At(std::size_t index) const;

private:
    struct Begin {
        WordAddress first;
        std::size_t byte; ///< where its words begin among all bytes
    };

    std::vector<Begin> m_begins;
    std::vector<std::byte> m_bytes;
};

/// Writes `runs` into the existing file of `target`, and no other byte: a flat file grows where a run lies behind its
/// end, with zeros up to it; a paged one gets pages for the runs alone. `length`, for a flat file, is what it is cut to
/// then.
///
/// The rules of a save: room comes first, the runs go out in the order of their addresses, and the result counts once
/// the disk has them. Not saved after a failure, reported in the type's own words; kept: a paged file that is missing
/// or may not be written is left out, and nothing is reported.
SaveResult WriteWordRuns(FileType type, const CWordRuns& runs, const WriteTarget& target,
                         std::optional<std::uint64_t> length, CReporter& reporter);
