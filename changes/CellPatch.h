#pragma once

#include "changes/CellsNow.h"
#include "changes/ChangeList.h"
#include "changes/FileTables.h"
#include "files/Progress.h"

#include <cstddef>
#include <cstdint>
#include <istream>
#include <string>
#include <vector>

/// A patch of which every change is one of a cell in one table.
struct CellPatch {
    /// A change, and the cell that it is about.
    struct Entry {
        ChangeRecord record;
        CellPlace place;
    };

    ChangeHeader header;
    std::vector<Entry> entries; ///< in the order of the cells, none twice
};

/// A patch that was read, or why it is none for the table.
struct ReadCellPatch {
    CellPatch patch;
    std::u16string fault; ///< a part of a sentence; empty where the patch fits
    bool isGivenUp = false;
};

/// Reads a patch for `table`, the one that is shown of a file of `type`. `hasWords` says whether its cells take words.
/// A record that stands outside the table or takes a value away is a fault, as is one that the layout contradicts, a
/// text that may not become the value of its cell, and whatever is wrong in the lines. Throws std::bad_alloc.
ReadCellPatch ReadPatchFor(std::istream& input, const FileTable& table, FileType type, bool hasWords,
                           CProgress& progress);

/// Which entries of the patch find another old value than they expect: of one with words, other words; of one without,
/// another text than the one shown. Throws std::bad_alloc.
std::vector<std::size_t> OthersThan(const CellPatch& patch, CCellsNow& now);

/// The states that the patch gives to its cells: words as they are, else texts.
std::vector<CellEdit> EditsOf(const CellPatch& patch);

/// Changes that are known, as a list.
class CKnownChanges final : public CChangeList {
public:
    CKnownChanges(ChangeHeader header, std::vector<CellPatch::Entry> entries)
        : m_header(std::move(header)),
          m_entries(std::move(entries))
    {
    }

    std::size_t Count() const override { return m_entries.size(); }
    ChangeRecord At(std::size_t index) const override { return m_entries[index].record; }
    ChangeHeader Header() const override { return m_header; }
    bool IsComplete() const override { return true; }
    std::optional<CellPlace> PlaceOf(std::size_t index) const override { return m_entries[index].place; }

private:
    ChangeHeader m_header;
    std::vector<CellPatch::Entry> m_entries;
};

/// What `patch`, which finds its old values, will make of its cells, with all that can be told of it. Throws
/// std::bad_alloc.
CKnownChanges ChangesOf(const CellPatch& patch, CCellsNow& now);

/// What those entries expect, as the old side, and what is there instead, as the new one. Throws std::bad_alloc.
CKnownChanges ExpectedAndFound(const CellPatch& patch, const std::vector<std::size_t>& others, CCellsNow& now);
