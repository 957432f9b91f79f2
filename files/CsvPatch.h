#pragma once

#include "files/CsvLines.h"
#include "files/CsvSplices.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

/// A field of a text table, or a whole line, that is to become another, to go or to come.
struct CsvChange {
    std::uint64_t line = 0;             ///< counted from 0
    std::optional<std::size_t> column;  ///< counted from 0; nothing for a whole line, as it stands
    std::optional<std::u16string> from; ///< what is there; nothing where it is not
    std::optional<std::u16string> to;   ///< what is to be there
    bool looksAtFrom = true;            ///< whether `from` must hold
};

/// How far fields that no change gives are made up, "0" each, so that others can stand after them.
struct CsvExtent {
    std::size_t rows = 0;
    std::size_t columns = 0;
};

/// What a line becomes by changes of its fields, which are in ascending order; `line` is null for one that is to come.
/// A field keeps its kind, with quotes or bare, unless another one is the last now. Nothing where it cannot become so,
/// and `refusal` says why (CCsvEditor::Refusal).
std::optional<std::u16string> PatchedLine(const CsvTextForm& form, const CsvLine* line,
                                          std::span<const CsvChange> changes, const CsvExtent& extent,
                                          std::u16string& refusal);

/// Whether a line that stands in a table as `text` leaves it in the form in which a save leaves one (CCsvFormCheck).
bool IsLineAsSaved(std::u16string_view text);

/// Finds the bytes of a text table that some changes make others. Fields and lines come and go at the end alone; lines
/// and rows that go take those after them with them, or become lines without fields.
class CCsvPatcher final : public CCsvEditor {
public:
    /// `changes` are in ascending order, none twice, those of a line's fields and of the whole line not mixed; they and
    /// `form` outlive the patcher.
    CCsvPatcher(const CsvTextForm& form, std::span<const CsvChange> changes, const CsvExtent& extent);

    /// What is there in the place of what a change expects.
    struct Other {
        std::size_t change = 0; ///< which
        std::optional<std::u16string> found;
    };

    /// All changes that do not find what they expect; complete after Finish. The splices count for nothing then.
    const std::vector<Other>& Others() const { return m_others; }

    void Take(const CsvRawField& field) override;
    void Finish(const CCsvCutter& cutter, std::uint64_t size) override;
    const std::vector<CsvSplice>& Splices() const override { return m_splices; }
    const std::u16string& Refusal() const override { return m_refusal; }

private:
    using Changes = std::span<const CsvChange>;

    Changes TakeChangesOf(std::uint64_t line);
    void ChangeLine(const CsvLine& line);
    void LookAt(Changes changes, const CsvLine* line);
    std::optional<std::u16string> Found(const CsvChange& change, const CsvLine* line) const;
    std::optional<std::u16string> NewLine(Changes changes, const CsvLine* line);
    void Stay();
    void AddLines(const CCsvCutter& cutter);
    void Refuse(std::u16string reason);
    void Splice(std::uint64_t offset, std::uint64_t length, std::u16string_view text);

    const CsvTextForm& m_form;
    Changes m_all;
    Changes m_changes; ///< those to come
    CsvExtent m_extent;
    CCsvLineCollector m_collector;

    /// Lines at the end of what was taken that are to go, if no others come after them.
    struct Going {
        std::uint64_t number = 0;
        std::uint64_t offset = 0;
        std::uint64_t length = 0;
        bool isWhole = false; ///< else its fields go
    };
    std::vector<Going> m_going;
    std::vector<CsvSplice> m_splices;
    std::vector<Other> m_others;
    std::u16string m_refusal;
};
