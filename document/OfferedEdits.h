#pragma once

#include "changes/ChangeList.h"
#include "document/CellsCommand.h"
#include "files/Outcome.h"
#include "files/Progress.h"
#include "files/RecipeRows.h"

#include <cstddef>
#include <memory>
#include <vector>

/// What a command would make of its cells, worked out without changing one: those that would change and those that are
/// refused, in the order of their places. Each is judged again when it is asked for, so that a million of them cost
/// their places alone.
///
/// It holds as long as the rows and what the file holds of them are as they were when it was worked out
/// (CRecipeDocument::CellsEdition, StoredEdition); asked later it says something else, but does no harm. A refused
/// cell's record has no new side, and a note with the reason.
class COfferedEdits final : public CChangeList {
public:
    enum class Listed {
        All,
        RefusedOnly, ///< for a command that is carried out at once
    };

    /// `rows` are to be saved as `type`, and the file holds `stored` of them. Both outlive the object.
    COfferedEdits(const CRecipeRows& rows, const CStoredCells& stored, FileType type,
                  std::shared_ptr<const CCellsCommand> command, Listed listed = Listed::All);

    /// Judges all cells; the edits that are not refused go to `edits`, unless that is null. Failed without the memory
    /// for it.
    Outcome WorkOut(CProgress& progress, std::vector<CellEdit>* edits = nullptr);

    /// The edits that are not refused, of a list of all. Failed without the memory for them.
    Outcome TakeEdits(CProgress& progress, std::vector<CellEdit>& edits) const;

    std::size_t ChangeCount() const { return m_changeCount; }
    std::size_t RefusedCount() const { return m_refusedCount; }

    std::size_t Count() const override { return m_places.size(); }
    ChangeRecord At(std::size_t index) const override;
    ChangeHeader Header() const override;
    bool IsComplete() const override { return true; }
    std::optional<CellPlace> PlaceOf(std::size_t index) const override { return m_places[index]; }

private:
    CellVerdict Judge(CellPlace place) const
    {
        return m_rows.HasCell(place) ? m_command->Judge(place, m_judge) : CellVerdict();
    }
    void Take(CellPlace place, std::vector<CellEdit>* edits);

    const CRecipeRows& m_rows;
    FileType m_type;
    std::shared_ptr<const CCellsCommand> m_command;
    Listed m_listed;
    CCellJudge m_judge;
    std::vector<CellPlace> m_places;
    std::size_t m_changeCount = 0;
    std::size_t m_refusedCount = 0;
};
