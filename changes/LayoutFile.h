#pragma once

#include "library/JsonFault.h"
#include "text/Reporter.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// A layout file tells which tables recipe files hold, as docs/file-formats.md describes it:
//
//   {"library":"formats.json","notes":"ours.Notes.json",
//    "tables":[{"files":"*.rcp","format":"Oven recipe","start":100,"rows":12}]}

inline constexpr const char* kLayoutName = ".vantor.json";

/// A table of the files that go by a pattern.
struct LayoutTable {
    std::u16string files;  ///< the pattern (LayoutPattern.h)
    std::u16string format; ///< its name
    std::int32_t start = 0;
    std::optional<std::int32_t> rows; ///< else as many whole rows as the file holds

    friend bool operator==(const LayoutTable&, const LayoutTable&) = default;
};

/// What a layout file says.
struct Layout {
    std::filesystem::path path;                   ///< of the layout file
    std::optional<std::filesystem::path> library; ///< as it can be opened; else none is named
    std::optional<std::filesystem::path> notes;   ///< the same; they take the place of those beside the library
    std::vector<LayoutTable> tables;
};

/// Fills a new `layout`, but for its path, with what stands in the text; library and notes are as they stand there. The
/// first fault in the order of the text ends the reading.
std::optional<JsonFault> LayoutFromJson(std::string_view json, Layout& layout);

/// Reads the layout file at `path`. Nothing, and then reported, when it cannot be read or there is a fault in it.
std::optional<Layout> ReadLayout(const std::filesystem::path& path, CReporter& reporter);

/// Reports what is wrong in the layout file at `path`, and where.
void ShowLayoutFault(CReporter& reporter, const std::filesystem::path& path, const JsonFault& fault);

/// The layout files that there are for the recipe file `file`, nearest first: from its folder upwards, then from the
/// working folder upwards. The file itself need not be there.
std::vector<std::filesystem::path> LayoutFilesFor(const std::filesystem::path& file);

/// Which tables of `layout` the recipe file `file` has, in the order of the layout.
///
/// A pattern without "/" is matched with the file's name, any other with its path from the layout's folder. A file
/// that lies outside of that folder, as a temporary one does, has its name alone: a pattern with "/" is matched by its
/// last part then, but only where all that match so name one folder.
std::vector<std::size_t> TablesFor(const Layout& layout, const std::filesystem::path& file);
