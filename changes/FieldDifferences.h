#pragma once

#include "changes/ChangeTaker.h"
#include "changes/ZoneDifferences.h"
#include "files/CsvLines.h"
#include "files/CsvPatch.h"
#include "files/RecipeRows.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

/// In what fields and lines two tables of texts differ. Keeps a line of each, or a piece if that is longer.
class CFieldDifferences {
public:
    /// `layout` says which lines and fields are rows and columns; it outlives the object.
    CFieldDifferences(const std::filesystem::path& before, const std::filesystem::path& after,
                      const CRecipeRows& layout);

    /// Hands all records to `taker`. No record says that the tables differ in their form alone.
    ZoneEnd HandTo(CChangeTaker& taker, CProgress& progress);

    /// After HandTo gave all: why the first table does not become the second by these records, byte for byte; empty
    /// when it does.
    const std::u16string& WhyNoPatch() const { return m_whyNot; }

private:
    bool Next();
    bool GoesOn(CProgress& progress) const;
    bool CompareLines(CChangeTaker& taker);
    bool CompareFields(CChangeTaker& taker);
    bool CompareWhole(CChangeTaker& taker);
    ChangeRecord FieldRecord(std::size_t column) const;
    void Foretell();
    void FinishForetelling();
    void Deny(std::u16string_view pattern);
    std::size_t Fields(const CCsvLineReader& side, bool isThere) const;

    const CRecipeRows& m_layout;
    CFile m_beforeFile;
    CFile m_afterFile;
    std::optional<CCsvLineReader> m_before;
    std::optional<CCsvLineReader> m_after;
    bool m_hasBefore = false; ///< a line at hand
    bool m_hasAfter = false;
    std::uint64_t m_line = 0;         ///< its number
    std::vector<CsvChange> m_changes; ///< of its fields
    bool m_isEmptied = false;         ///< the last line lost all of its fields
    std::u16string m_whyNot;
};
