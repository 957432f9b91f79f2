#pragma once

#include "changes/ChangeList.h"
#include "files/CellComparison.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// Of which file and table changes are told.
struct ChangeSubject {
    std::filesystem::path path;
    std::u16string format;
};

/// The header of changes of `rows` in a file of `type`, still without its sizes.
ChangeHeader HeaderOf(const ChangeSubject& subject, const CRecipeRows& rows, FileType type);

/// A record of where the cell stands.
ChangeRecord PlaceRecord(const CRecipeRows& rows, FileType type, CellPlace place);

/// Makes `record` say where the cell stands, and leaves the rest of it as it is.
void SetPlace(const CRecipeRows& rows, FileType type, CellPlace place, ChangeRecord& record);

/// What cells of one layout hold before and after, as a list of those that differ.
class CCellDifferences final : public CChangeList {
public:
    /// `places` in ascending order (DifferencesOf in files/StoredDifferences.h).
    CCellDifferences(CStoredCells before, CStoredCells after, std::vector<CellPlace> places, ChangeSubject subject);
    CCellDifferences(const CCellDifferences&) = delete;
    CCellDifferences& operator=(const CCellDifferences&) = delete;

    std::size_t Count() const override { return m_places.size(); }
    ChangeRecord At(std::size_t index) const override;
    ChangeHeader Header() const override;
    bool IsComplete() const override { return true; }
    std::optional<CellPlace> PlaceOf(std::size_t index) const override { return m_places[index]; }

private:
    CStoredCells m_before;
    CStoredCells m_after;
    std::vector<CellPlace> m_places;
    ChangeSubject m_subject;
    mutable CCellComparison m_cellsBefore;
    mutable CCellComparison m_cellsAfter;
};
