#include "cli/PatchTables.h"

#include "cli/InputFile.h"
#include "cli/OpenRecipe.h"
#include "files/ShowLimits.h"
#include "library/FormatLibrary.h"
#include "library/LibraryFile.h"

#include <algorithm>
#include <filesystem>
#include <limits>
#include <memory>
#include <utility>

namespace fs = std::filesystem;

namespace {

bool SaysRows(const ReadOptions& options)
{
    return options.formatName || options.startAddress || options.rowCount;
}

/// Without columns where the library has no such format, or it cannot be shown so.
FileTable TableOf(const ChangedTable& named, const FormatLibrary& library)
{
    const auto found = std::find_if(library.formats.begin(), library.formats.end(),
                                    [&named](const auto& format) { return ::TextOf(format->name) == named.format; });
    const bool isStart = named.start.number <= std::numeric_limits<std::int32_t>::max();
    if (found == library.formats.end() || !isStart || ShowFault(**found, named.rows))
        return {named.format, {}};
    return MakeTable(**found, static_cast<std::int32_t>(named.start.number), named.rows);
}

} // namespace

std::optional<RecipeTables> TablesForPatch(const std::string& file, const ChangeHeader& header,
                                           const ReadOptions& options, CReporter& reporter)
{
    if (header.tables.empty() || SaysRows(options))
        return TablesOf(file, options, reporter);
    const fs::path path(file);
    if (!IsThere(path, reporter))
        return std::nullopt;
    const auto type = KnownTypeOf(path, reporter);
    FormatLibrary library;
    if (!type || !LoadLibrary(LibraryToRead(options.library, reporter), library, reporter))
        return std::nullopt;
    if (library.formats.empty())
        library.formats.push_back(std::make_unique<DataFormat>(DefaultFormat()));
    RecipeTables tables{path, *type, {}};
    for (const ChangedTable& named : header.tables)
        tables.tables.push_back(TableOf(named, library));
    return tables;
}
