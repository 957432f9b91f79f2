#include "recovery/VersionCells.h"

#include "files/FileType.h"
#include "files/RecipeFile.h"
#include "files/StoredDifferences.h"
#include "recovery/VersionContent.h"

#include <exception>
#include <utility>

namespace fs = std::filesystem;

namespace {

/// From words that stand in no file of their own.
CStoredCells CellsOfWords(CWordBytes& words, const CRecipeRows& layout, FileType type)
{
    SavedContent content{.words = CByteBuffer(static_cast<std::size_t>(layout.StretchBytes())), .fields = {}};
    if (!words.Read(layout.FirstByte().number, content.words.Bytes()))
        return {};
    return {layout, type, words.Count(), std::move(content)};
}

} // namespace

CStoredCells ReadVersionCells(const CVersionStore& store, const fs::path& file, const Version& version,
                              const CRecipeRows& layout)
try {
    const auto type = FileTypeOf(file);
    CVersionContent content(store, file, version.stamp);
    if (!type || !content.Fault().empty())
        return {};
    return content.IsCopy() ? ReadStoredCells(layout, *type, content.Base())
                            : CellsOfWords(*content.Words(), layout, *type);
} catch (const std::exception&) {
    return {};
}

std::optional<VersionDifferences> DifferencesFrom(const CStoredCells& now, const CVersionStore& store,
                                                  const fs::path& file, const Version& version)
try {
    if (!now.IsKnown())
        return std::nullopt;
    VersionDifferences differences{now, ReadVersionCells(store, file, version, now.Cells()), {}};
    if (!differences.then.IsKnown() || differences.then.Type() != now.Type())
        return std::nullopt;
    differences.places = DifferencesOf(differences.now, differences.then);
    return differences;
} catch (const std::exception&) {
    return std::nullopt;
}
