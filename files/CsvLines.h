#pragma once

#include "files/CsvCutter.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

/// A line of a text table as it stands in its file.
struct CsvLine {
    std::uint64_t number = 0;      ///< counted from 0
    std::uint64_t offset = 0;      ///< in the file
    std::uint64_t length = 0;      ///< in bytes, without what ends the line
    std::u16string text;           ///< all of its fields, with quotes and separators
    std::vector<std::size_t> ends; ///< where in `text` each ends; the last one is none where it is empty

    /// How many fields the line has for a reader.
    std::size_t FieldCount() const;

    /// A field as it stands, and as reading shows it.
    std::u16string_view Raw(std::size_t column) const;
    std::u16string_view Shown(std::size_t column, const CsvTextForm& form) const;

    /// Whether a separator follows the field.
    bool IsSeparated(std::size_t column) const { return column + 1 < ends.size(); }
};

/// Puts lines together from their fields.
class CCsvLineCollector {
public:
    explicit CCsvLineCollector(const CsvTextForm& form) : m_form(form) {}

    /// True when the field has ended its line, which Line tells until the next call.
    bool Take(const CsvRawField& field);

    CsvLine& Line() { return m_line; }

private:
    const CsvTextForm& m_form;
    CsvLine m_line;
    bool m_hasEnded = true;
};

/// The lines of a table one after the other; no more of the file is kept than a piece, or the line at hand if that is
/// longer. Throws std::bad_alloc.
class CCsvLineReader final : private CCsvRawTaker {
public:
    /// `file` is open and outlives the reader.
    explicit CCsvLineReader(const CFile& file) : m_cutter(file), m_collector(m_cutter.Form()) {}

    /// Goes to the next line. False after the last one, and after an error.
    bool Next();

    const CsvLine& Line() const { return m_lines.front(); }
    bool HasFailed() const { return m_cutter.HasFailed(); }
    const CCsvFileCutter& Cutter() const { return m_cutter; }

    /// What sees every field, too.
    void ShowFieldsTo(CCsvRawTaker& other) { m_other = &other; }

private:
    void Take(const CsvRawField& field) override;

    CCsvFileCutter m_cutter;
    CCsvLineCollector m_collector;
    std::deque<CsvLine> m_lines; ///< the first is the one at hand
    bool m_hasLine = false;
    CCsvRawTaker* m_other = nullptr;
};
