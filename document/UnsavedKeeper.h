#pragma once

#include "document/EditStep.h"
#include "recovery/Journal.h"

#include <filesystem>
#include <optional>
#include <span>
#include <system_error>
#include <utility>
#include <vector>

/// The rows that are edited, their file, and what it holds of them.
struct WorkInProgress {
    const std::filesystem::path& file; ///< empty for a new document
    FileType type;
    const ShownRows& shown;
};

/// What the file holds of an edited cell; `state` is the one that the cell has.
UnsavedCell UnsavedCellOf(const WorkInProgress& work, CellPlace place, CCellState state);

/// Keeps the edits of the open recipe in a journal (recovery/Journal.h) until they are saved or dropped. The journal
/// begins with the first edit. That one cannot be kept, or written, is no reason for an edit to fail: LastFault tells,
/// and the next edit tries again.
class CUnsavedKeeper {
public:
    /// Keeps journals in `dataFolder` from now on. Where it is empty, that is a fault (LastFault).
    void KeepIn(std::filesystem::path dataFolder)
    {
        m_isOn = true;
        m_dataFolder = std::move(dataFolder);
    }
    bool IsOn() const { return m_isOn; }

    /// These cells of `work` have other states by now.
    void Note(const WorkInProgress& work, std::span<const CellEdit> cells) noexcept;

    /// Other rows are shown, or their file holds other words: a new journal of all that is edited takes the place of
    /// the one there is, which ends, or is dropped when `isDropped` says so.
    void BeginAnew(const WorkInProgress& work, bool isDropped) noexcept;

    /// The edits are in the file.
    void End() noexcept;

    /// The user gave the edits up.
    void Drop() noexcept;

    /// Whether the disk has all that was noted.
    bool IsFlushed() const { return !m_journal || m_journal->IsFlushed(); }

    /// Waits until it has. False when it does not take it, or edits are not even in a journal.
    bool Flush() noexcept;

    /// Why edits are not kept; no fault while they are.
    std::error_code LastFault() const { return m_fault; }

private:
    void Begin(const WorkInProgress& work);
    void Add(const WorkInProgress& work, CellPlace place, const CCellState* state, UnsavedCell& kept);
    void EndCommand();

    bool m_isOn = false;
    std::filesystem::path m_dataFolder;
    std::optional<CJournal> m_journal;
    bool m_isIncomplete = false; ///< an edit could not be appended
    std::error_code m_fault;
};
