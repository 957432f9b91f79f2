#pragma once

#include "files/CellState.h"
#include "files/CsvCutter.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// Why a text table is not in the form in which a save leaves one, as far as a save of edited cells alone needs it:
/// FF FE, TABs, quotes around each field that a TAB follows, CR LF after each line. The last field of a line may be
/// bare or in quotes.
class CCsvFormCheck {
public:
    /// The next field of a table of that form.
    void Take(const CsvRawField& field);

    /// All fields were taken; `cutter` has cut them.
    void Finish(const CCsvFileCutter& cutter);

    /// The first fault: a part of a sentence without a full stop, as "line 3, field 2 is not in quotes"; empty for
    /// none.
    const std::u16string& Fault() const { return m_fault; }

private:
    std::u16string m_fault;
};

/// How a text table's file stands to the rows that are read from it, and to the file that a save of them would make of
/// it. Lines, rows and columns are counted from 0 here.
struct CsvShape {
    /// A line among the rows that has fewer fields than columns; the others read as "0".
    struct ShortLine {
        std::int32_t row = 0;
        std::uint32_t fields = 0;
    };

    /// What a save would drop: a line after the last row, or a line's fields after the last column. Its text stays in
    /// the file until it is asked for.
    struct Dropped {
        std::uint64_t line = 0;
        std::optional<std::uint32_t> column; ///< of the first such field; nothing for a whole line
        std::uint32_t fields = 1;            ///< how many of them show anything
        std::uint64_t offset = 0;            ///< in bytes
        std::uint64_t length = 0;
    };

    bool isUtf16 = false;
    std::uint64_t lines = 0;           ///< of the whole file; rows from there on read as "0"
    std::vector<ShortLine> shortLines; ///< in their order, as all of these are

    /// Of the fields that a separator ends, those that a save would write in other bytes although their text stays.
    std::vector<CellPlace> reformed;

    /// A save would change more bytes without changing a text: all of them, where it is text of another character set
    /// or byte order mark; line ends; fields or lines without text that are dropped; `reformed` became too long. What
    /// a save adds in the place of missing fields and lines is not meant.
    bool isReformedElsewhere = false;

    std::vector<Dropped> dropped;

    /// Why cells cannot be saved alone (CCsvFormCheck); empty when they can.
    std::u16string formFault;
};

/// Finds the shape of a text table in slices of a few milliseconds at most, except where a single field is very long.
class CCsvShapeScan {
public:
    static constexpr std::size_t kMostReformed = 100'000;

    CCsvShapeScan(std::size_t rows, std::size_t columns);
    ~CCsvShapeScan();
    CCsvShapeScan(const CCsvShapeScan&) = delete;
    CCsvShapeScan& operator=(const CCsvShapeScan&) = delete;

    /// Begins with the file at `path`; false when it cannot be opened, and the scan has failed then.
    bool Open(const std::filesystem::path& path);

    /// Takes the next 256 KiB. False when there is nothing more to do: the scan is done, or has failed.
    bool Continue();

    bool IsDone() const { return m_isDone; }
    bool HasFailed() const { return m_hasFailed; } ///< the file cannot be opened or read, or there is no memory for it

    /// How far it has come, in bytes.
    std::uint64_t Position() const;
    std::uint64_t Size() const;

    /// Complete when the scan is done.
    const CsvShape& Shape() const;

private:
    class CTaker;
    bool Fail();
    void Finish();

    const std::size_t m_rows;
    const std::size_t m_columns;
    CFile m_file;
    std::unique_ptr<CCsvFileCutter> m_cutter;
    std::unique_ptr<CTaker> m_taker;
    bool m_isDone = false;
    bool m_hasFailed = false;
};

/// The text of a field, or of a whole line, that a save would drop.
struct CsvDroppedText {
    std::uint32_t column = 0; ///< 0 for a line
    std::u16string text;
};

/// The texts of what is dropped, as they stand in the file at `path` now, which has the given shape; those without a
/// character are left out. Nothing when the file cannot be read or has become shorter, or there is no memory.
std::optional<std::vector<CsvDroppedText>> DroppedTexts(const std::filesystem::path& path, const CsvShape& shape,
                                                        const CsvShape::Dropped& dropped);
