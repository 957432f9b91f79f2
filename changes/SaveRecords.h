#pragma once

#include "changes/CellDifferences.h"
#include "changes/ChangeList.h"
#include "files/CellComparison.h"
#include "files/EditedSave.h"
#include "files/PutBack.h"
#include "files/SavePlan.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

// What saves change, as lists of changes.

/// What a save of all cells will change: a view of a plan, which outlives it. Empty while nothing is planned.
class CPlannedChanges final : public CChangeList {
public:
    CPlannedChanges(const CSavePlan& plan, ChangeSubject subject) : m_plan(plan), m_subject(std::move(subject)) {}

    std::size_t Count() const override;
    ChangeRecord At(std::size_t index) const override;
    ChangeHeader Header() const override;
    bool IsComplete() const override { return !m_plan.IsBegun() || m_plan.IsFinished(); }
    std::optional<CellPlace> PlaceOf(std::size_t index) const override;

private:
    enum class Part { ZerosBefore, Cells, ZerosAfter, Dropped, Form };

    Part PartOf(std::size_t& index) const;
    ChangeRecord DroppedRecord(std::size_t index) const;

    const CSavePlan& m_plan;
    ChangeSubject m_subject;
};

/// What a save of the edited cells alone will change in the file that holds `stored`. `rows` and `stored` outlive the
/// list and stay as they are. The header of a table of texts has no size after a save that would be refused.
class CEditedChanges final : public CChangeList {
public:
    CEditedChanges(const CRecipeRows& rows, const CStoredCells& stored, ChangeSubject subject);

    std::size_t Count() const override { return m_changes.size() + m_zeros.size(); }
    ChangeRecord At(std::size_t index) const override;
    ChangeHeader Header() const override;
    bool IsComplete() const override { return true; }
    std::optional<CellPlace> PlaceOf(std::size_t index) const override;

private:
    bool IsZeros(std::size_t& index) const;

    const CRecipeRows& m_rows;
    const CStoredCells& m_stored;
    ChangeSubject m_subject;
    mutable CCellComparison m_cells;
    std::vector<PlannedChange> m_changes;
    std::vector<ZeroWords> m_zeros;
    std::vector<std::size_t> m_placesOfZeros; ///< where they stand in the list
};

/// What a save of all cells changed although nobody had edited it.
class CStoredAsShown final : public CChangeList {
public:
    CStoredAsShown(const SavedChanges& saved, ChangeSubject subject);

    std::size_t Count() const override { return m_changes.size(); }
    ChangeRecord At(std::size_t index) const override;
    ChangeHeader Header() const override { return m_differences.Header(); }
    bool IsComplete() const override { return true; }
    std::optional<CellPlace> PlaceOf(std::size_t index) const override { return m_changes[index].place; }

private:
    std::vector<PlannedChange> m_changes;
    CCellDifferences m_differences;
};
