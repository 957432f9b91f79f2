#pragma once

#include "recovery/UnsavedWork.h"

#include <cstdint>
#include <string_view>
#include <vector>

// The objects in the lines of a journal, read exactly as JournalLines.h writes them: whatever is otherwise was not
// written by it.

/// What the first line says.
enum class HeaderReading {
    Done,
    Later, ///< another version of the program wrote it
    Wrong,
};

/// Fills `header`, which is of no use unless all was well. Rows that no grid can show (ShowLimits.h) are wrong.
HeaderReading HeaderFromJson(std::string_view json, WorkHeader& header);

/// Reads the lines of commands on the rows of one header.
class CCommandReader {
public:
    explicit CCommandReader(const WorkHeader& header);

    /// Fills `time` and `cells`, in the order of the line. False, and both are of no use, unless each cell lies within
    /// the rows and has no more words than it can take.
    bool Read(std::string_view json, UtcTime& time, std::vector<UnsavedCell>& cells) const;

private:
    std::int32_t m_rowCount;
    std::vector<std::int32_t> m_lengths; ///< of the columns, in words
    bool m_isOfWords;
    bool m_takesWords; ///< exact ones
};
