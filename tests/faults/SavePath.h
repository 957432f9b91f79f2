#pragma once

#include "tests/support/TestFiles.h"

#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

/// What may be on the disk when a save did not succeed.
enum class Leaves {
    OldOrNew, ///< the old file or the new one, each whole
    Copied,   ///< the same; or a mix, and then the whole new file beside it
    InPlace,  ///< the old file or the new one; a mix of their bytes only when a write was torn or the program killed
    InRuns,   ///< the same; or a mix when there was room, and a write after the first failed
    Emptied,  ///< the old file, or the new one as far as it was written over zeros
    Paged,    ///< a sound file in which each word is the old or the new one
};

/// The folders of one run: the recipe that is read and the library in `aside`, the file that is written in `disk`,
/// whose calls fail.
struct SavePlace {
    SavePlace();
    std::string Aside(const char* name) const { return (folder / "aside" / name).string(); }
    std::string Disk(const char* name) const { return (folder / "disk" / name).string(); }

    CTempFolder folder;
};

/// A command that writes, and what it is to be judged by.
struct SavePath {
    const char* name;
    Leaves leaves;
    const char* target;  ///< in `disk`
    const char* message; ///< a part of the text that tells of the failure; empty where that is not looked at
    std::function<void(const SavePlace&)> prepare;
    std::function<std::vector<std::string>(const SavePlace&)> arguments;
    int lines = 1;                 ///< as many may the text that tells of the failure have
    bool makesCopy = false;        ///< of the old file, beside it
    const char* program = nullptr; ///< null for vantor-cli
    int failure = 1;               ///< the status that tells of it
    bool tellsTears = false;       ///< when the file may hold old and new words

    /// What has these arguments; where that is vantor-cli, another one if VANTOR_CLI in the environment names it.
    const char* Program() const;

    friend void PrintTo(const SavePath& path, std::ostream* out) { *out << path.name; }
};

/// Every way in which vantor-cli writes a file.
const std::vector<SavePath>& CommandLineSavePaths();

/// The ways in which the core writes a table that vantor-cli has no command for.
const std::vector<SavePath>& TableSavePaths();

/// The saves of an open recipe: of all cells, of the edited ones alone, and putting back.
const std::vector<SavePath>& DocumentSavePaths();

/// The one of vantor-cli of that name, which there must be.
const SavePath& CommandLineSavePath(std::string_view name);

/// The file's bytes; nothing where there is no file.
std::optional<Bytes> BytesIn(const std::filesystem::path& path);
