#pragma once

#include "changes/ChangeTaker.h"
#include "changes/FileTables.h"
#include "files/Progress.h"
#include "files/RowWindow.h"
#include "files/WordBytes.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// Which of two could not be read, or who ended the work.
enum class ZoneEnd {
    Done,
    NoBefore,
    NoAfter,
    Enough, ///< the taker wants no more, or the work was given up
};

/// The words of two files in which differences are looked for.
struct WordPair {
    CWordBytes& before;
    CWordBytes& after;
    bool arePaged = false; ///< what lies behind the end of one of them counts as zeros

    std::uint64_t LongerCount() const { return before.Count() > after.Count() ? before.Count() : after.Count(); }
};

/// Hands over what differs in words outside all tables: runs of at most 16 words, and zeros that only one side has.
class CRunDifferences {
public:
    CRunDifferences(WordPair words, CChangeTaker& taker);

    /// Goes over the words from byte `begin` to `end`, the first of which is even.
    ZoneEnd GoOver(std::uint64_t begin, std::uint64_t end, CProgress& progress);

private:
    bool MayDiffer(std::uint64_t begin, std::uint64_t end, std::size_t length) const;
    void CompareWord(std::uint64_t word, std::span<const std::byte> before, std::span<const std::byte> after);
    void AddToRun(std::uint64_t word, std::span<const std::byte> before, std::span<const std::byte> after);
    void AddZero(std::uint64_t word);
    void HandOver();

    WordPair m_words;
    CChangeTaker& m_taker;
    std::vector<std::byte> m_before;
    std::vector<std::byte> m_after;
    ChangeRecord m_pending;    ///< what has not come to its end
    std::uint64_t m_next = 0;  ///< the word that would continue it
    std::uint64_t m_count = 0; ///< how many words it has
    bool m_isEnough = false;
};

/// Hands over the values of a table whose words differ.
class CValueDifferences {
public:
    /// `table` counts `tables`. All of it outlives the object.
    CValueDifferences(FileType type, std::span<const FileTable> tables, std::size_t table, WordPair words,
                      CChangeTaker& taker);

    ZoneEnd GoOver(CProgress& progress);

private:
    bool ComparePiece(std::int32_t first, std::int32_t count);
    bool CompareRow(std::int32_t first, std::int32_t row);
    bool AreEqual(std::uint64_t begin, std::uint64_t end);
    const ChangeRecord& RecordOf(std::int32_t first, CellPlace place, std::uint64_t begin, std::size_t length);

    FileType m_type;
    const CRecipeRows& m_layout;
    std::int32_t m_table;
    WordPair m_words;
    CChangeTaker& m_taker;
    CRowWindow m_before;
    CRowWindow m_after;
    ChangeRecord m_record; ///< its texts and words keep their memory from one value to the next
};
