#pragma once

#include "model/DataType.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// The same words looked at in every way that a value can have: as hexadecimal words, as bits, as text, and as each
// number with the low or the high word first. Words are bytes in the order of their addresses, low bytes first.

/// One way to look at words.
struct WordView {
    enum class Kind {
        Words, ///< "0992 00FF"
        Bits,  ///< "0000 1001 1001 0010", the words in the order of their addresses
        Ansi,  ///< two characters a word, the first in the low byte, up to a zero byte
        Utf16, ///< a unit a word, up to a zero
        Number,
    };

    Kind kind = Kind::Words;
    DataType type = DataType::NotChosen; ///< of a number
    bool isHighFirst = false;            ///< a number's words stand in the other order

    friend bool operator==(const WordView&, const WordView&) = default;
};

/// All of them, in the order in which they are shown.
std::span<const WordView> WordViews();

/// "signed 32-bit, high word first", for example.
std::u16string NameOf(const WordView& view);

/// How many bytes a number takes; 0 for what takes as many as there are.
std::size_t BytesTaken(const WordView& view);

/// What `bytes` are in the view, in one line: a number in full, "nan" and "inf" where a float is none. Empty where
/// there are too few for it.
std::u16string TextIn(const WordView& view, std::span<const std::byte> bytes);

/// `bytes` as they become where `text` is to be seen in the view; those that a number does not take stay. Nothing for
/// a text that the view cannot show: too long, of other digits, or a number that is not exact.
std::optional<std::vector<std::byte>> BytesWith(const WordView& view, std::u16string_view text,
                                                std::span<const std::byte> bytes);
