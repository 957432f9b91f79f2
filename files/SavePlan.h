#pragma once

#include "files/CellComparison.h"
#include "files/CsvShape.h"
#include "files/Progress.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

/// Words that come to be behind the end of a file, all of them zero. A count of 0 stands for one word of which the file
/// had the first byte already: the other one is zero.
struct ZeroWords {
    WordAddress first{0};
    std::int64_t count = 0;

    friend bool operator==(const ZeroWords&, const ZeroWords&) = default;
};

/// Appends the zero words from byte `begin` on up to `end`, both of a file's words; nothing where `end` comes first.
void AppendZeroWords(std::uint64_t begin, std::uint64_t end, std::vector<ZeroWords>& zeros);

/// How many bytes a file of `type` that holds `fileBytes` holds once bytes up to `end` were written; of a paged one
/// those of its logical content.
std::uint64_t FileBytesAfter(FileType type, std::uint64_t fileBytes, std::uint64_t end);

/// What a save of all cells will change in its file, before it is made: the cells that the coding of a save stores
/// otherwise than the file holds them, and why, in the order of the cells. It is the save, byte for byte.
///
/// Counting goes on in slices, so that nobody waits for it; the changes among the rows that were looked at are known
/// meanwhile, and each edit is taken into account at once.
class CSavePlan {
public:
    /// A field of a table of texts, or a whole line of it, that the save leaves out.
    struct DroppedText {
        std::size_t part = 0;  ///< of CsvShape::dropped
        std::uint32_t nth = 0; ///< of the part's texts
    };

    /// The same in full. Counted from 0.
    struct DroppedField {
        std::uint64_t line = 0;
        std::optional<std::uint32_t> column; ///< nothing for a whole line
        std::u16string text;                 ///< empty when it cannot be read
    };

    /// Begins anew for `rows` and the file at `path`, which holds `stored`; both outlive the plan, or the next Begin or
    /// Stop. Cells that change their states are to be told (Update); other rows need a new plan.
    void Begin(const CRecipeRows& rows, const CStoredCells& stored, const std::filesystem::path& path,
               bool isOfOtherType);

    /// There is nothing to plan.
    void Stop();

    bool IsBegun() const { return m_comparison.has_value(); }
    bool IsFinished() const { return m_isFinished; }
    std::int32_t NextRow() const { return m_nextRow; } ///< the rows before it were looked at
    /// Whether it is finished and tells all: not where the lines of a table's file could not be read for it.
    bool IsWhole() const { return m_isFinished && (!m_scan || m_scan->IsDone()); }

    const CRecipeRows& Rows() const { return *m_pRows; }      ///< only of a plan that is begun
    const CStoredCells& Stored() const { return *m_pStored; } ///< likewise

    /// What the plan compares with; likewise, and until it begins anew or stops.
    CCellComparison& Comparison() const { return *m_comparison; }

    /// Goes on counting until `end`; false when there is more to count then. A plan that memory does not suffice for
    /// stops.
    bool Continue(std::chrono::steady_clock::time_point end);

    /// Counts to the end. GivenUp by the user's wish, Failed when there was no memory; the plan has stopped then.
    Outcome Finish(CProgress& progress);

    /// The states of these cells changed. In ascending order, none twice.
    void Update(std::span<const CellPlace> cells);

    /// Those that are known, in ascending order.
    const std::vector<PlannedChange>& Changes() const { return m_changes; }

    /// Another number whenever those that are known may have become others; not when counting adds to them.
    std::uint64_t Edition() const { return m_edition; }

    /// How many changes have that reason: cells, fields and lines that are dropped, runs of zero words; one for the
    /// form.
    std::size_t CountOf(ChangeReason why) const;

    /// All of them, but for those of edited cells.
    std::size_t CountOfUnedited() const;

    /// The values among them: without zero words and the form.
    std::size_t CountOfUneditedValues() const;

    // Of a table of texts; known when the plan is finished.

    const std::vector<DroppedText>& Dropped() const { return m_dropped; }

    /// What stands there in the file. A line is read once for texts of it that are asked for one after the other.
    DroppedField FieldOf(const DroppedText& dropped) const;

    /// Whether the save changes bytes that hold no value: quotes, line ends, the character set.
    bool ChangesForm() const;

    /// Why edited cells cannot be saved alone; empty when they can.
    std::u16string FormFault() const;

    // Of a file of words.

    /// The zero words that a save puts behind the end of the file, outside the rows.
    std::vector<ZeroWords> ZeroWordsOutside() const;

    /// The bytes that the file holds after the save; of a paged file those of its logical content.
    std::uint64_t NewFileBytes() const;

    /// The change of that cell, known or not.
    std::optional<ChangeReason> WhyChanged(CellPlace place) const { return m_comparison->Compare(place); }

private:
    void CompareNextRows();
    void ScanOn();
    void TakeShape();
    bool FindFormChange() const;
    void Count(std::span<const PlannedChange> changes, bool isAdded);

    const CRecipeRows* m_pRows = nullptr;
    const CStoredCells* m_pStored = nullptr;
    mutable std::optional<CCellComparison> m_comparison;
    std::int32_t m_nextRow = 0; ///< the first that was not looked at
    bool m_isFinished = false;
    std::filesystem::path m_path;
    std::unique_ptr<CCsvShapeScan> m_scan; ///< of a table of texts, once its rows are compared
    std::vector<DroppedText> m_dropped;

    /// The texts of one line that are dropped, as they were read last.
    struct ReadLine {
        std::size_t part = 0;
        std::vector<CsvDroppedText> texts; ///< by column
    };
    mutable std::optional<ReadLine> m_readLine;
    std::vector<PlannedChange> m_changes;
    std::array<std::size_t, kChangeReasons> m_counts{};
    mutable std::optional<bool> m_changesForm; ///< nothing while it is to be found out
    std::uint64_t m_edition = 0;
};
