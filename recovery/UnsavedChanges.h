#pragma once

#include "changes/ChangeList.h"
#include "files/RecipeRows.h"
#include "files/StretchCoding.h"
#include "recovery/UnsavedWork.h"

#include <cstddef>
#include <optional>
#include <vector>

/// Unsaved edits as changes: what a save of the edited cells alone would change. Edits that leave a cell's words, or
/// its field, as they are have no record. A new document counts as a file that holds nothing yet. The header has no
/// sizes, since they are not known, and so words that become zeros before a cell behind the end of a file have no
/// record either.
class CUnsavedChanges final : public CChangeList {
public:
    /// `work` outlives the list and stays as it is.
    explicit CUnsavedChanges(const UnsavedWork& work);
    CUnsavedChanges(const CUnsavedChanges&) = delete;
    CUnsavedChanges& operator=(const CUnsavedChanges&) = delete;

    std::size_t Count() const override { return m_changed.size(); }
    ChangeRecord At(std::size_t index) const override;
    ChangeHeader Header() const override;
    bool IsComplete() const override { return true; }
    std::optional<CellPlace> PlaceOf(std::size_t index) const override;

private:
    bool IsTable() const { return m_work.header.type == FileType::Csv; }
    RecipeKind Kind() const;
    const UnsavedCell& CellAt(std::size_t index) const { return m_work.cells[m_changed[index]]; }
    bool IsChanged(const UnsavedCell& cell) const;
    WordRun NewWords(CellPlace place) const;
    void AddWords(const UnsavedCell& cell, ChangeRecord& record) const;

    const UnsavedWork& m_work;
    CRecipeRows m_rows; ///< with the states of the edited cells, and nothing else
    mutable std::optional<CStretchCoder> m_coder;
    std::vector<std::size_t> m_changed; ///< which of the cells have a record
};
