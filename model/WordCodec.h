#pragma once

#include "model/ColumnCoding.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

// Values in the words of a recipe, all little-endian as the bytes lie in the file:
//
//   16-bit value   1 word, low byte first
//   32-bit value   2 words, the low half first: four little-endian bytes (also the float)
//   double         4 words: the eight bytes of a little-endian IEEE 754 double
//   string         n words = 2n bytes: ANSI characters two to a word, the first in the low byte, up to the first zero
//                  byte; or, with the unicode flag, one UTF-16 unit a word, up to the first zero unit
//
// A code outside the nine types shows as an empty text and is coded as zero bytes; a value longer than its type lies in
// its first bytes, with zero bytes after it.

/// The two kinds of file that hold words. They code alike but for two things: the flat file pads a double with decimals
/// on the left, and the paged file takes its integers from an already normalised text.
enum class RecipeKind { Flat, Paged };

/// The text of the value at byte `pos` of `image`; moves `pos` on by 2 * coding.dataLength.
///
/// An integer that runs past the end of `image` shows as "0", any other value is made of the bytes that are there over
/// zero bytes; `pos` moves on all the same. Reports nothing and never throws: a value out of its limits is shown, not
/// refused.
std::u16string FormatValue(const ColumnCoding& coding, std::span<const std::byte> image, std::size_t& pos,
                           RecipeKind kind = RecipeKind::Flat);

/// As FormatValue, but appends to `text`, so that one buffer serves any number of values without an allocation each.
void AppendValue(const ColumnCoding& coding, std::span<const std::byte> image, std::size_t& pos, RecipeKind kind,
                 std::u16string& text);

/// Codes `text` into the 2 * coding.dataLength bytes at byte `pos` of `image`, which must hold them, and moves `pos`
/// on.
///
/// A text that is not a number codes as 0; nothing is rounded and no range is tested: a 16-bit value takes the low 16
/// bits of what was typed. For RecipeKind::Paged the text must have gone through NormaliseForPagedFile.
void CodeValue(const ColumnCoding& coding, std::u16string_view text, std::span<std::byte> image, std::size_t& pos,
               RecipeKind kind = RecipeKind::Flat);

/// Whether `word`, what an integer's words read as, is shown as the number that it is, but for its decimals: true but
/// for a signed value that its limits set to 0 or, in 32 bits, move by 65536.
inline bool IsShownAsItIs(const ColumnCoding& coding, std::uint32_t word)
{
    if (coding.dataType != DataType::Signed16 && coding.dataType != DataType::Signed32)
        return true;
    std::int64_t value = static_cast<std::int32_t>(word);
    if (coding.dataType == DataType::Signed16 && value > coding.maxValue)
        value -= 0x10000; // the same 16 bits
    return value >= coding.minValue && value <= coding.maxValue;
}

/// The text that a paged file's writer codes: for a BIN-coded integer the scaled, truncated value in decimal digits,
/// for a BIN-coded hexadecimal value its decimal digits, for anything else (a BCD-coded one too) `text` as it stands.
std::u16string NormaliseForPagedFile(const ColumnCoding& coding, std::u16string_view text);
