#pragma once

#include "disk/File.h"
#include "files/ByteBuffer.h"
#include "files/CsvRules.h"
#include "files/FieldTable.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

/// A field of a text table as it stands in the file. Each line has as many that a separator ends as it has separators,
/// and one more, which ends the line and is none for a reader when it is empty.
struct CsvRawField {
    enum class End : std::uint8_t {
        Separator,
        LineFeed,
        Length, ///< the line reached the most bytes that one of ANSI text may have
        File,
    };

    std::uint64_t line = 0; ///< counted from 0, as the column is
    std::size_t column = 0;
    std::uint64_t offset = 0; ///< in the file
    std::uint64_t length = 0; ///< in bytes, without what ends the field
    std::u16string_view raw;  ///< with its quotes
    End end = End::Separator;
    std::size_t returns = 0; ///< how many carriage returns stand between a field and the end of its line

    bool EndsLine() const { return end != End::Separator; }
    bool IsField() const { return !EndsLine() || !raw.empty(); }

    /// What reading shows for it.
    std::u16string_view Shown(const CsvTextForm& form) const
    {
        if (!EndsLine())
            return form.stripsQuotes ? WithoutQuotes(raw) : raw;
        return raw.empty() ? kMissingField : raw;
    }
};

/// Takes the fields of a text table one after the other.
class CCsvRawTaker {
public:
    virtual ~CCsvRawTaker() = default;

    /// `field` is good until this returns.
    virtual void Take(const CsvRawField& field) = 0;
};

/// Cuts a text table into lines and fields as ReadCsvFields does, and tells where in the file they stand. Keeps no more
/// of the text than a piece, or the field at hand if that is longer.
class CCsvCutter {
public:
    explicit CCsvCutter(const CsvTextForm& form);

    /// The next bytes, from the beginning of the text on; of UTF-16 an even number, except for the last.
    void Append(std::span<const std::byte> bytes, CCsvRawTaker& taker);

    /// The text is complete: what has no end yet is the last line.
    void Finish(CCsvRawTaker& taker);

    const CsvTextForm& Form() const { return m_form; }

    /// How many lines have ended.
    std::uint64_t Lines() const { return m_line; }

    /// After Finish: where a further line could be put, and whether the one before it still needs an end.
    std::uint64_t EndOffset() const { return m_endOffset; }
    bool NeedsLineEnd() const { return m_needsLineEnd; }

private:
    void AppendUnits(std::span<const std::byte> bytes);
    void CutText(CCsvRawTaker& taker);
    void PutAnsi(char c, CCsvRawTaker& taker);
    void PutInAnsiLine(char c, CCsvRawTaker& taker);
    void EndAnsiLine(CsvRawField::End end, CCsvRawTaker& taker);
    void HandOut(std::u16string_view text, std::uint64_t offset, std::uint64_t length, CsvRawField::End end,
                 CCsvRawTaker& taker);

    const CsvTextForm m_form;
    std::uint64_t m_line = 0;
    std::size_t m_column = 0;
    std::u16string m_text;      ///< of UTF-16: what is not cut yet; of ANSI: the field at hand
    std::size_t m_searched = 0; ///< so much of UTF-16 text has no mark
    std::uint64_t m_begin;      ///< where the text, or the ANSI line, that is not cut yet begins in the file
    std::string m_ansiLine;
    bool m_isReturnHeld = false;
    std::uint64_t m_endOffset = 0;
    bool m_needsLineEnd = false;
};

/// Cuts a table that is read from a file piece by piece.
class CCsvFileCutter {
public:
    /// `file` is open and outlives the cutter.
    explicit CCsvFileCutter(const CFile& file);

    /// Cuts the next 256 KiB. False after the last piece, and after an error.
    bool Continue(CCsvRawTaker& taker);

    bool HasFailed() const { return m_hasFailed; }
    bool IsDone() const { return m_isDone; }

    /// What the file is, known from the beginning on.
    const CsvTextForm& Form() const { return m_cutter.Form(); }
    bool HasWholeMark() const { return m_hasWholeMark; } ///< it begins with FF FE

    const CCsvCutter& Cutter() const { return m_cutter; }
    std::uint64_t Position() const { return m_position; } ///< bytes that were read, the mark included
    std::uint64_t Size() const { return m_size; }         ///< of the file when it was opened

    /// Once it is done: whether half a unit of UTF-16 stands at the end.
    bool HasOddByte() const { return Form().isUtf16 && m_position % 2 != 0; }

private:
    using Mark = std::array<std::byte, 2>;
    CCsvFileCutter(const CFile& file, std::optional<Mark> mark);
    static std::optional<Mark> MarkOf(const CFile& file);

    const CFile& m_file;
    CCsvCutter m_cutter;
    CByteBuffer m_buffer;
    bool m_hasWholeMark;
    std::uint64_t m_position;
    std::uint64_t m_size = 0;
    bool m_isDone = false;
    bool m_hasFailed = false;
};

/// Cuts a table that is in memory.
CCsvCutter CutCsv(std::span<const std::byte> bytes, CCsvRawTaker& taker);

/// What the bytes are as a table.
const CsvTextForm& CsvFormOf(std::span<const std::byte> bytes);

/// Puts at most `lines` lines of at most `columns` fields each into a table, as ReadCsvFields does.
class CCsvShownFields final : public CCsvRawTaker {
public:
    CCsvShownFields(const CsvTextForm& form, std::size_t lines, std::size_t columns, CFieldTable& fields);

    void Take(const CsvRawField& field) override;

private:
    const CsvTextForm& m_form;
    const std::size_t m_lines;
    const std::size_t m_columns;
    CFieldTable& m_fields;
};
