#pragma once

#include "changes/TableComparison.h"
#include "document/RecipeDocument.h"
#include "files/Outcome.h"
#include "files/Progress.h"
#include "recovery/VersionStore.h"
#include "sheet/RecipeSheet.h"
#include "sheet/SheetFile.h"
#include "text/Reporter.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

/// How a sheet of the open recipe is to be.
struct SheetOrder {
    std::u16string title;                          ///< empty for the usual one
    std::optional<std::vector<std::int32_t>> rows; ///< counted from 0, ascending; nothing for all

    /// What the changes are told since: nothing, a version of the file, or another file.
    std::variant<std::monostate, Version, std::filesystem::path> since;
};

/// Makes sheets of the open recipe, as the table shows it now: edits that are not saved are on them, and the sheet says
/// so. Never writes.
class CDocumentSheet {
public:
    /// Both outlive it; `store` may be null, and then there are no versions.
    CDocumentSheet(const CRecipeDocument& document, const CVersionStore* store);

    /// Finds out what the file holds, which is told on each sheet. To be called first. GivenUp by the user's wish; a
    /// file that cannot be read has no SHA-256.
    Outcome ReadFile(CProgress& progress);

    /// Makes the sheet; `name` is what the user calls the version that is asked for. Failed is reported; then, and when
    /// it was given up, there is none.
    Outcome Make(const SheetOrder& order, const std::u16string& name, CReporter& reporter, CProgress& progress);

    const RecipeSheet& Sheet() const { return m_sheet; }

    /// JSON Lines: the values, or the changes where the sheet tells of such.
    const std::string& Records() const { return m_records; }

private:
    Outcome MakeAll(const SheetOrder& order, const std::u16string& name, CReporter& reporter, CProgress& progress);
    Outcome FindOther(const SheetOrder& order, const std::u16string& name, ComparedWith& other, CReporter& reporter,
                      CProgress& progress) const;
    Outcome AddChanges(const SheetOrder& order, ComparedWith other, CProgress& progress);

    const CRecipeDocument& m_document;
    const CVersionStore* m_pStore;
    FileContent m_content;
    bool m_isOtherNow = false;
    RecipeSheet m_sheet;
    std::string m_records;
};
