#pragma once

#include "changes/ChangeRecord.h"
#include "changes/ChangeSyntax.h"

#include <cstddef>
#include <cstdint>
#include <istream>
#include <optional>
#include <string>
#include <variant>

// Changes as JSON Lines, as docs/file-formats.md describes them: a header, then a line a record, in UTF-8.

/// Appends the line of `header` with its line feed.
void AppendLine(const ChangeHeader& header, std::string& lines);

/// Appends the line of `record` with its line feed.
void AppendLine(const ChangeRecord& record, std::string& lines);

/// Longer lines are not read. The longest value of a binary file fits: one string of 512K characters, all escaped,
/// three times, and its words.
inline constexpr std::size_t kMostLineBytes = std::size_t{16} << 20;

/// There are no further records.
struct EndOfChanges {};

/// Reads lines one after the other and keeps one of them. Lines of nothing but blanks count as lines and are left out,
/// as is a byte-order mark before the first. The first fault ends the reading: it is the answer to all further calls.
class CChangeReader {
public:
    /// Takes bytes from `input` in pieces, ahead of what was asked for; it must outlive the reader.
    explicit CChangeReader(std::istream& input) : m_input(input) {}

    /// The first line; to be called first, and once. An input without lines has no header, which is a fault.
    std::variant<ChangeHeader, ChangeFault> ReadHeader();

    std::variant<ChangeRecord, EndOfChanges, ChangeFault> Next();

    /// The number of the line that was read last, counted from 1.
    std::uint64_t Line() const { return m_number; }

private:
    bool ReadLine();
    bool TakeLine();
    bool Fill();
    ChangeFault Refuse(ChangeFault fault);

    std::istream& m_input;
    std::string m_piece;     ///< bytes that were read
    std::size_t m_taken = 0; ///< how many of them were used
    std::string m_line;
    std::uint64_t m_number = 0; ///< of the line
    std::optional<ChangeFault> m_fault;
};
