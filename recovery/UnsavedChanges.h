#pragma once

#include "changes/ChangeList.h"
#include "recovery/UnsavedWork.h"

#include <cstddef>
#include <optional>
#include <vector>

/// Unsaved edits as changes: what a save of the edited cells alone would change. Edits that leave a cell's words, or
/// its field, as they are have no record. A new document counts as a file that holds nothing yet. The header has no
/// sizes, since they are not known.
class CUnsavedChanges final : public CChangeList {
public:
    /// `work` outlives the list.
    explicit CUnsavedChanges(const UnsavedWork& work);

    std::size_t Count() const override { return m_records.size(); }
    ChangeRecord At(std::size_t index) const override;
    ChangeHeader Header() const override;
    bool IsComplete() const override { return true; }
    std::optional<CellPlace> PlaceOf(std::size_t index) const override;

private:
    const UnsavedWork& m_work;
    std::vector<std::size_t> m_records; ///< the cells that have one
};
