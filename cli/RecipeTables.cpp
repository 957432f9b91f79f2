#include "cli/RecipeTables.h"

#include "changes/RowCount.h"
#include "cli/InputFile.h"
#include "disk/File.h"
#include "files/RecipeMessages.h"
#include "files/ShowLimits.h"
#include "library/LibraryFile.h"
#include "text/MessageText.h"
#include "text/PathText.h"
#include "text/Utf8Text.h"

#include <algorithm>
#include <limits>

namespace fs = std::filesystem;

namespace {

/// How many rows of a format there are: in the longer one of the files of a request. Measures each once.
class CRowCounter {
public:
    CRowCounter(const TableRequest& request, FileType type, CReporter& reporter)
        : m_request(request),
          m_type(type),
          m_reporter(reporter)
    {
    }

    /// Nothing, and then reported, when a file cannot be read.
    std::optional<std::int32_t> RowsOf(const DataFormat& format, std::int32_t start)
    {
        if (!m_isMeasured && !Measure())
            return std::nullopt;
        std::int32_t rows = RowsIn(format, start, m_type, m_count);
        if (m_otherType)
            rows = std::max(rows, RowsIn(format, start, *m_otherType, m_otherCount));
        return rows;
    }

private:
    bool Measure()
    {
        m_isMeasured = true;
        if (!Measure(m_request.file, m_type, m_count))
            return false;
        m_count = std::max(m_count, m_request.leastCount);
        if (m_request.other.empty())
            return true;
        m_otherType = KnownTypeOf(m_request.other, m_reporter);
        return m_otherType && Measure(m_request.other, *m_otherType, m_otherCount);
    }

    bool Measure(const fs::path& path, FileType type, std::uint64_t& result)
    {
        const auto count = ContentCount(path, type);
        if (count)
            result = *count;
        else
            ShowFileError(m_reporter, OpenErrorOf(type), path);
        return count.has_value();
    }

    const TableRequest& m_request;
    const FileType m_type;
    CReporter& m_reporter;
    bool m_isMeasured = false;
    std::uint64_t m_count = 0;
    std::optional<FileType> m_otherType;
    std::uint64_t m_otherCount = 0;
};

/// Without columns where there is no such format, or it cannot be shown so.
FileTable TableNamed(const ChangedTable& named, const DataFormat* format)
{
    const bool isStart = named.start.number >= 0 && named.start.number <= std::numeric_limits<std::int32_t>::max();
    if (!format || !isStart || ShowFault(*format, named.rows))
        return {named.format, {}};
    return MakeTable(*format, static_cast<std::int32_t>(named.start.number), named.rows);
}

std::u16string TablePlace(std::size_t table, std::u16string_view field)
{
    return FillMessage(u"/tables/%d%s", {static_cast<std::int64_t>(table), field});
}

} // namespace

std::optional<RecipeTables> TablesOf(const fs::path& file, const ReadOptions& options, CReporter& reporter)
{
    return TablesOf(TableRequest{file}, options, reporter);
}

std::optional<RecipeTables> TablesOf(const TableRequest& request, const ReadOptions& options, CReporter& reporter)
{
    return CTableFinder(options).TablesOf(request, reporter, reporter);
}

std::optional<ReadSettings> SettingsOf(const fs::path& file, const ReadOptions& options, CReporter& reporter)
{
    return CTableFinder(options).SettingsOf(file, reporter);
}

std::optional<RecipeTables> CTableFinder::TablesOf(const TableRequest& request, CReporter& ofFile, CReporter& reporter)
{
    const fs::path& path = request.file;
    if (!IsThere(path, ofFile))
        return std::nullopt;
    const auto type = KnownTypeOf(path, ofFile);
    if (!type)
        return std::nullopt;
    const auto match = m_options.SayRows() ? std::optional(Match()) : MatchFor(request, reporter);
    if (!match)
        return std::nullopt;
    const bool isNamed = !match->layout && !m_options.SayRows() && !request.named.empty();
    auto tables = match->layout ? LayoutTables(request, *type, *match, ofFile, reporter)
                  : isNamed     ? NamedTables(request, *type, reporter)
                                : PlainTables(reporter);
    if (!tables)
        return std::nullopt;
    return RecipeTables{path, *type, std::move(*tables)};
}

std::optional<ReadSettings> CTableFinder::SettingsOf(const fs::path& file, CReporter& reporter)
{
    if (!m_options.layout)
        return SettleReadSettings(m_options, reporter);
    const auto type = KnownTypeOf(file, reporter);
    const auto match = type ? MatchFor({file}, reporter) : std::nullopt;
    const auto table = match ? ChosenTable(*match, file, reporter) : std::nullopt;
    const DataFormat* const format = table ? FormatOf(*match, *table, reporter) : nullptr;
    if (!format)
        return std::nullopt;
    const LayoutTable& chosen = match->layout->tables[*table];
    const std::int32_t start = m_options.startAddress.value_or(chosen.start);
    auto rows = m_options.rowCount ? m_options.rowCount : chosen.rows;
    if (!rows)
        rows = CRowCounter({file}, *type, reporter).RowsOf(*format, start);
    if (!rows)
        return std::nullopt;
    auto fault = ReadSettingsFault(start, *rows);
    if (!fault)
        fault = ShowFault(*format, *rows);
    if (fault) {
        reporter.ShowError(*fault);
        return std::nullopt;
    }
    return ReadSettings{*format, start, *rows};
}

/// The tables of the layout that is asked for, else of the nearest one that names any. Nothing, and then reported, when
/// a layout has a fault, and when the one that is asked for names none.
std::optional<CTableFinder::Match> CTableFinder::MatchFor(const TableRequest& request, CReporter& reporter)
{
    const bool isGiven = m_options.layout && !m_options.layout->empty();
    for (const fs::path& file : {request.file, request.other}) {
        if (file.empty())
            continue;
        auto match = MatchIn(isGiven ? std::vector{*m_options.layout} : LayoutFilesFor(file), file, reporter);
        if (!match || match->layout)
            return match;
    }
    if (!m_options.layout)
        return Match();
    reporter.ShowError(FillMessage(u"No layout file names a table for the file %s!", {PathText(request.file)}));
    return std::nullopt;
}

std::optional<CTableFinder::Match> CTableFinder::MatchIn(const std::vector<fs::path>& layouts, const fs::path& file,
                                                         CReporter& reporter)
{
    for (const fs::path& path : layouts) {
        const Layout* const layout = LayoutAt(path, reporter);
        if (!layout)
            return std::nullopt;
        if (auto tables = TablesFor(*layout, file); !tables.empty())
            return Match{layout, std::move(tables)};
    }
    return Match();
}

std::optional<std::vector<FileTable>> CTableFinder::PlainTables(CReporter& reporter)
{
    if (!m_plain)
        m_plain = SettleReadSettings(m_options, reporter);
    if (!m_plain)
        return std::nullopt;
    return std::vector{MakeTable(m_plain->format, m_plain->startAddress, m_plain->rowCount)};
}

std::optional<std::vector<FileTable>> CTableFinder::NamedTables(const TableRequest& request, FileType type,
                                                                CReporter& reporter)
{
    const FormatLibrary* const library = LibraryAt(LibraryToRead(m_options.library, reporter), reporter);
    if (!library)
        return std::nullopt;
    std::vector<FileTable> tables;
    for (const ChangedTable& named : request.named) {
        tables.push_back(TableNamed(named, FindFormat(*library, named.format)));
        if (type == FileType::Csv)
            break;
    }
    return tables;
}

std::optional<std::vector<FileTable>> CTableFinder::LayoutTables(const TableRequest& request, FileType type,
                                                                 const Match& match, CReporter& ofFile,
                                                                 CReporter& reporter)
{
    CRowCounter counter(request, type, ofFile);
    std::vector<FileTable> tables;
    for (const std::size_t index : match.tables) {
        const DataFormat* const format = FormatOf(match, index, reporter);
        if (!format)
            return std::nullopt;
        const LayoutTable& table = match.layout->tables[index];
        auto fault = ShowFault(*format, table.rows.value_or(1)); // before anything is divided by a row
        const auto rows = table.rows || fault ? table.rows : counter.RowsOf(*format, table.start);
        if (!rows && !fault)
            return std::nullopt;
        if (!fault)
            fault = ShowFault(*format, *rows);
        if (fault) {
            fault->pop_back(); // its "!", which ends the whole message
            ShowLayoutFault(reporter, match.layout->path, {TablePlace(index, u""), *fault});
            return std::nullopt;
        }
        tables.push_back(MakeTable(*format, table.start, *rows));
        if (type == FileType::Csv)
            break;
    }
    return tables;
}

/// The library that the layout or the options name, with the notes that the layout names; null, and then reported,
/// where one of them cannot be read.
const FormatLibrary* CTableFinder::LibraryOf(const Layout& layout, CReporter& reporter)
{
    const bool isLayouts = layout.library && !m_options.library;
    const auto isThere = [&](const std::optional<fs::path>& file, std::u16string_view place) {
        if (!file || !IsMissing(*file))
            return true;
        ShowLayoutFault(reporter, layout.path,
                        {std::u16string(place), FillMessage(u"there is no file %s", {PathText(*file)})});
        return false;
    };
    if ((isLayouts && !isThere(layout.library, u"/library")) || !isThere(layout.notes, u"/notes"))
        return nullptr;
    return LibraryAt(isLayouts ? *layout.library : LibraryToRead(m_options.library, reporter), reporter,
                     layout.notes.value_or(fs::path()));
}

/// The format that a table of the layout names; null, and then reported, where the library does not have it.
const DataFormat* CTableFinder::FormatOf(const Match& match, std::size_t table, CReporter& reporter)
{
    const Layout& layout = *match.layout;
    const FormatLibrary* const library = LibraryOf(layout, reporter);
    if (!library)
        return nullptr;
    const std::u16string& name = layout.tables[table].format;
    const DataFormat* const format = FindFormat(*library, name);
    if (!format)
        ShowLayoutFault(reporter, layout.path,
                        {TablePlace(table, u"/format"), FillMessage(u"the format %s doesn't exist", {name})});
    return format;
}

/// The one table that a command on one table takes. Nothing, and then reported, where that is not clear.
std::optional<std::size_t> CTableFinder::ChosenTable(const Match& match, const fs::path& file,
                                                     CReporter& reporter) const
{
    const Layout& layout = *match.layout;
    std::vector<std::size_t> tables = match.tables;
    const auto leave = [&tables, &layout](auto isWanted) {
        std::erase_if(tables, [&](std::size_t table) { return !isWanted(layout.tables[table]); });
    };
    if (m_options.formatName) {
        const std::u16string name = FromUtf8(*m_options.formatName);
        leave([&name](const LayoutTable& table) { return table.format == name; });
        if (tables.empty()) {
            reporter.ShowError(FillMessage(u"The layout %s names no table of the format %s for the file %s!",
                                           {PathText(layout.path), name, PathText(file)}));
            return std::nullopt;
        }
    }
    if (tables.size() > 1 && m_options.startAddress) {
        const std::int32_t start = *m_options.startAddress;
        leave([start](const LayoutTable& table) { return table.start == start; });
    }
    if (tables.size() == 1)
        return tables.front();
    reporter.ShowError(FillMessage(u"The layout %s names several tables for the file %s! Choose one with --format!",
                                   {PathText(layout.path), PathText(file)}));
    return std::nullopt;
}

const Layout* CTableFinder::LayoutAt(const fs::path& path, CReporter& reporter)
{
    auto found = m_layouts.find(path);
    if (found == m_layouts.end()) {
        const bool isThere = !IsMissing(path) || IsThere(path, reporter); // which tells
        auto layout = isThere ? ReadLayout(path, reporter) : std::nullopt;
        found = m_layouts.emplace(path, std::move(layout)).first;
    }
    return found->second ? &*found->second : nullptr;
}

/// With the notes of the file `notes` in place of those beside the library, where it has a name.
const FormatLibrary* CTableFinder::LibraryAt(const fs::path& path, CReporter& reporter, const fs::path& notes)
{
    const LibraryKey key(path, notes);
    auto found = m_libraries.find(key);
    if (found == m_libraries.end()) {
        std::optional<FormatLibrary> library(std::in_place);
        const bool isLoaded = LoadLibrary(path, *library, reporter);
        if (isLoaded && (notes.empty() || LoadNotes(notes, *library, reporter)))
            EnsureFormat(*library);
        else
            library.reset();
        found = m_libraries.emplace(key, std::move(library)).first;
    }
    return found->second ? &*found->second : nullptr;
}
