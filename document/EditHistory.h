#pragma once

#include "document/EditStep.h"

#include <cstddef>
#include <cstdint>
#include <list>

/// The edits of a document in their order: those that were made, which can be undone, newest first, and those that were
/// undone, which can be made again until another edit is made.
///
/// It is limited by memory, never by a number of edits: the oldest go first, and the newest stays however large it is.
/// The rows that are shown are recognised by the address of their source, which costs no memory of the history's own.
class CEditHistory {
    /// The states of the rows are numbered in the order in which they came to be. An edit of formats alone leads from
    /// one to the same.
    struct KeptEdit {
        Edit edit;
        std::size_t bytes = 0;
        std::uint64_t before = 0;
        std::uint64_t after = 0;
    };

public:
    static constexpr std::size_t kMostBytes = std::size_t{64} << 20;

    explicit CEditHistory(std::size_t mostBytes = kMostBytes) : m_mostBytes(mostBytes) {}

    /// An edit and the room that the history needs for it.
    using Prepared = std::list<KeptEdit>;

    /// Makes all the room that Add needs, so that it cannot fail once the edit was made. Throws std::bad_alloc.
    static Prepared Prepare(Edit edit);
    static Edit& EditOf(Prepared& prepared) { return prepared.front().edit; }

    /// Takes an edit that was made. Those that were undone can no longer be made again.
    void Add(Prepared edit, const void* shownSource) noexcept;

    /// No edits; the state as it is counts as saved when `isSaved` says so.
    void Clear(bool isSaved) noexcept;

    /// The edit that an undo or redo is for; null for none. Good until the history changes.
    Edit* NextToUndo() { return m_made.empty() ? nullptr : &m_made.back().edit; }
    Edit* NextToRedo() { return m_undone.empty() ? nullptr : &m_undone.front().edit; }
    const Edit* NextToUndo() const { return m_made.empty() ? nullptr : &m_made.back().edit; }
    const Edit* NextToRedo() const { return m_undone.empty() ? nullptr : &m_undone.front().edit; }

    /// That edit was undone, or made again. What it keeps may take other memory then.
    void StepBack(const void* shownSource) noexcept;
    void StepForth(const void* shownSource) noexcept;

    /// Forgets the edit that an undo, or a redo, is for: nothing is left of it. It was one of formats alone.
    void DropNextToUndo() noexcept;
    void DropNextToRedo() noexcept;

    /// Another number whenever an edit was made, undone, made again or dropped.
    std::uint64_t Edition() const { return m_edition; }

    /// The rows as they are were saved.
    void MarkSaved() { m_savedState = m_state; }

    /// Whether the rows are as they were last saved.
    bool IsAsSaved() const { return m_state == m_savedState; }

    /// No rows are as saved any more.
    void ForgetSaved() { m_savedState = 0; }

    /// Roughly the memory that all edits take, in bytes.
    std::size_t Bytes() const { return m_bytes; }

private:
    void Weigh(KeptEdit& kept, const void* shownSource) noexcept;
    void ForgetUndone() noexcept;
    void ForgetOldest() noexcept;

    std::size_t m_mostBytes;
    std::list<KeptEdit> m_made;
    std::list<KeptEdit> m_undone; ///< the one that was undone last comes first
    std::uint64_t m_state = 1;
    std::uint64_t m_lastState = 1;
    std::uint64_t m_savedState = 1; ///< 0 when no state is as saved
    std::size_t m_bytes = 0;
    std::uint64_t m_edition = 0;
};
