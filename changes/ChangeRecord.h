#pragma once

#include "files/ChangeReason.h"
#include "files/FileType.h"
#include "model/Address.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// A change is one value that differs, with its old and new words: what a save would do, what two files differ in, what
// a patch does. A header says of which file. Texts are UTF-16, and half a surrogate pair in one of them stays.

/// The bytes of words in the order of their addresses, each word's low byte first, as in a file. The last word has one
/// byte where the file ends within it. What lies behind the end of the file is not there.
using WordRun = std::vector<std::byte>;

/// The word for `reason` in a record, "edited" for example.
std::u16string_view WordOf(ChangeReason reason);

/// The reason of that word; nothing when there is none.
std::optional<ChangeReason> ReasonOf(std::u16string_view word);

/// All words in the order of the reasons, with ", " between.
std::u16string AllReasonWords();

/// One table of the file: how some of its words were laid out.
struct ChangedTable {
    std::u16string format;
    WordAddress start{0};
    std::int32_t rows = 0;

    friend bool operator==(const ChangedTable&, const ChangedTable&) = default;
};

/// Of which file the changes are. What is written by hand need not say any of it.
struct ChangeHeader {
    std::optional<std::u16string> file;
    std::optional<FileType> type;
    std::optional<std::int64_t> bytes;    ///< the size before; of a paged file that of its logical content
    std::optional<std::int64_t> newBytes; ///< the size after
    std::vector<ChangedTable> tables;

    friend bool operator==(const ChangeHeader&, const ChangeHeader&) = default;
};

/// One change. What is not there is left out: `old` and `oldWords` where the value is new, for example.
struct ChangeRecord {
    std::optional<WordAddress> address; ///< of the value's first word
    std::int32_t table = 0;             ///< counts the tables of the header
    std::optional<std::int32_t> row;    ///< as in the table: 1 is the first
    std::optional<std::int32_t> column; ///< as in the table: 2 is the first with data
    std::optional<std::u16string> item; ///< the column's title
    std::optional<std::int64_t> line;   ///< of a ".csv", counted from 1: one behind the rows that are shown
    std::optional<std::u16string> oldText;
    std::optional<std::u16string> newText;
    std::optional<std::u16string> reads; ///< how the new words are shown, where that is not `newText`
    WordRun oldWords;                    ///< empty where there are none
    WordRun newWords;
    std::int64_t zeros = 0; ///< so many zero words only the new side has, or, below 0, only the old one
    std::optional<ChangeReason> why;
    std::u16string note = {}; ///< for who looks at it, in the place of `why`; no record in a file has it

    friend bool operator==(const ChangeRecord&, const ChangeRecord&) = default;
};
