#pragma once

#include "changes/FileTables.h"
#include "changes/LayoutFile.h"
#include "cli/ReadOptions.h"
#include "files/FileType.h"
#include "library/FormatLibrary.h"
#include "text/Reporter.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// A recipe file that is to be read, and how its words are laid out.
struct RecipeTables {
    std::filesystem::path path;
    FileType type = FileType::Rcp;
    std::vector<FileTable> tables; ///< of a table of texts one
};

/// The tables of the recipe file that the command line names. Nothing, and then reported, when the file is missing, its
/// type is unknown or a setting is not possible. Never writes.
///
/// They are those that a layout file names for it (LayoutFilesFor), the one that is asked for or the nearest that names
/// any. Where the options say anything of the rows, and where there is no such layout, there is one table, by the
/// options, as `show` prints it.
std::optional<RecipeTables> TablesOf(const std::filesystem::path& file, const ReadOptions& options,
                                     CReporter& reporter);

/// A recipe file, and what else there is to know for its tables.
struct TableRequest {
    std::filesystem::path file;
    std::filesystem::path other = {};     ///< another file with the same tables, or none: where the layout leaves the
                                          ///< rows out, the longer one counts; where it does not know `file`, this name
    std::uint64_t leastCount = 0;         ///< so many bytes of words, or lines, the file counts as holding at least
    std::vector<ChangedTable> named = {}; ///< the tables where neither options nor layout name any; one whose format
                                          ///< the library does not have, or cannot be shown, has no columns
};

std::optional<RecipeTables> TablesOf(const TableRequest& request, const ReadOptions& options, CReporter& reporter);

/// How the document reads the file of a command that takes a layout only when it is asked for: by one of the tables
/// that it names for the file, of which the format chooses, with start address and rows of the options where they are
/// given. Else as SettleReadSettings.
std::optional<ReadSettings> SettingsOf(const std::filesystem::path& file, const ReadOptions& options,
                                       CReporter& reporter);

/// What the two above do, for many files: layouts and libraries are read once.
class CTableFinder {
public:
    /// The options outlive it.
    explicit CTableFinder(const ReadOptions& options) : m_options(options) {}

    /// What is wrong with the file itself is told to `ofFile`, all else to `reporter`.
    std::optional<RecipeTables> TablesOf(const TableRequest& request, CReporter& ofFile, CReporter& reporter);

    std::optional<ReadSettings> SettingsOf(const std::filesystem::path& file, CReporter& reporter);

private:
    /// The tables of a layout that a file has; no layout where none names any.
    struct Match {
        const Layout* layout = nullptr;
        std::vector<std::size_t> tables = {};
    };

    std::optional<Match> MatchFor(const TableRequest& request, CReporter& reporter);
    std::optional<Match> MatchIn(const std::vector<std::filesystem::path>& layouts, const std::filesystem::path& file,
                                 CReporter& reporter);
    std::optional<std::vector<FileTable>> PlainTables(CReporter& reporter);
    std::optional<std::vector<FileTable>> NamedTables(const TableRequest& request, FileType type, CReporter& reporter);
    std::optional<std::vector<FileTable>> LayoutTables(const TableRequest& request, FileType type, const Match& match,
                                                       CReporter& ofFile, CReporter& reporter);
    const DataFormat* FormatOf(const Match& match, std::size_t table, CReporter& reporter);
    std::optional<std::size_t> ChosenTable(const Match& match, const std::filesystem::path& file,
                                           CReporter& reporter) const;
    const Layout* LayoutAt(const std::filesystem::path& path, CReporter& reporter);
    const FormatLibrary* LibraryOf(const Layout& layout, CReporter& reporter);
    const FormatLibrary* LibraryAt(const std::filesystem::path& path, CReporter& reporter,
                                   const std::filesystem::path& notes = {});

    const ReadOptions& m_options;
    using LibraryKey = std::pair<std::filesystem::path, std::filesystem::path>; ///< a library, and its notes' file

    std::map<std::filesystem::path, std::optional<Layout>> m_layouts; ///< nothing for one with a fault
    std::map<LibraryKey, std::optional<FormatLibrary>> m_libraries;   ///< likewise
    std::optional<ReadSettings> m_plain;                              ///< once settled
};
