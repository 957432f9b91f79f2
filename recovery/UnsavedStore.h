#pragma once

#include "disk/File.h"
#include "recovery/UnsavedWork.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// The journals of unsaved edits (Journal.h) in the user's data folder: those of windows that are open, those that were
// left behind, and those that were dropped. Files of other users, links and anything else that is no regular file are
// passed over. Nothing here throws for what may lie there.

enum class UnsavedState {
    Open,    ///< a program has it open
    Left,    ///< its program has gone
    Dropped, ///< the user gave it up; it is kept for a while
};

/// What is known of a journal.
struct UnsavedEntry {
    std::string id;
    UnsavedState state = UnsavedState::Left;
    std::optional<WorkHeader> header; ///< nothing where it cannot be read
    std::size_t edits = 0;            ///< cells that are edited
    UtcTime lastEdit;                 ///< without a header when the journal was begun
    bool isDamaged = false;           ///< something follows what can be read
};

/// A journal that was left behind, held as long as the object lives: nobody else is offered it meanwhile.
class CClaimedWork {
public:
    const std::string& Id() const { return m_id; }
    const UnsavedWork& Work() const { return m_work; }

    /// The journal goes. False when it stays.
    bool Remove();

    /// It goes to the dropped ones. False when it stays.
    bool Drop(UtcTime now = UtcNow());

private:
    friend class CUnsavedStore;
    CClaimedWork(CFile file, std::filesystem::path path, std::string id, UnsavedWork work);

    CFile m_file;
    std::filesystem::path m_path;
    std::string m_id;
    UnsavedWork m_work;
};

class CUnsavedStore {
public:
    /// What became of a call that names a journal.
    enum class Result {
        Done,
        Missing, ///< there is none of that ID
        Open,    ///< a program has it open
        Failed,
    };

    /// `dataFolder` may be empty or missing: then there is no journal.
    explicit CUnsavedStore(std::filesystem::path dataFolder) : m_dataFolder(std::move(dataFolder)) {}

    /// All journals, oldest first, the dropped ones at the end. Writes nothing.
    std::vector<UnsavedEntry> List(UtcTime now = UtcNow()) const;

    /// Whether there is a journal of that ID, in any state. Writes nothing.
    bool Has(std::string_view id) const;

    /// The work of a journal in any state; nothing where it is missing or cannot be read. Writes nothing.
    std::optional<UnsavedWork> Read(std::string_view id) const;

    /// The oldest journal that was left behind. Those on the way without an edit are removed, and those that cannot be
    /// read are dropped; of a later version of the program they stay. Where the file system cannot tell whether a
    /// journal is open, it counts as left behind a day after its last edit.
    std::optional<CClaimedWork> ClaimOldest(UtcTime now = UtcNow()) const;

    /// A journal that was left behind goes to the dropped ones; a dropped one stays.
    Result Drop(std::string_view id, UtcTime now = UtcNow()) const;

    /// A journal that no program has open goes for good.
    Result Remove(std::string_view id, UtcTime now = UtcNow()) const;

    /// Removes the journals that were dropped more than 30 days before `now`, and what killed programs left of those
    /// that they were about to begin.
    void RemoveOldDropped(UtcTime now) const;

private:
    std::filesystem::path m_dataFolder;
};
