#pragma once

#include "changes/CellDifferences.h"
#include "changes/ChangeList.h"
#include "files/CellSearch.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <utility>

/// The cells that a search found, as a list: what each shows stands as its new text. It grows as the search counts.
class CFoundCells final : public CChangeList {
public:
    /// `rows`, which `search` looks through, outlive the list; what becomes of them is told to the search.
    CFoundCells(std::shared_ptr<const CCellSearch> search, const CRecipeRows& rows, FileType type,
                ChangeSubject subject)
        : m_search(std::move(search)),
          m_rows(rows),
          m_type(type),
          m_subject(std::move(subject))
    {
    }

    std::size_t Count() const override { return m_search->ListedCount(); }
    ChangeRecord At(std::size_t index) const override;
    ChangeHeader Header() const override { return HeaderOf(m_subject, m_rows, m_type); }
    bool IsComplete() const override { return m_search->IsCounted(); }
    std::optional<CellPlace> PlaceOf(std::size_t index) const override;

private:
    std::shared_ptr<const CCellSearch> m_search;
    const CRecipeRows& m_rows;
    FileType m_type;
    ChangeSubject m_subject;
};
