#pragma once

#include "library/FormatLibrary.h"
#include "tests/cli/RunCli.h"
#include "tests/support/TestFiles.h"
#include "tests/support/Variable.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

/// A folder of its own with a library of two formats, "Oven" (a level, two temperatures, a name) and "Wörter" (one
/// word), that starts at word 1 and has two rows; and a recipe file with these rows, a word 99 on each side of them.
struct CliTest : testing::Test {
    CliTest();

    void SaveLibrary() { ASSERT_EQ(library.save(libraryPath), 0); }

    /// Runs the program with the library.
    ProcessResult Run(std::vector<std::string> arguments) const;

    void ExpectDone(const std::vector<std::string>& arguments) const;

    /// The same, but standard error tells so: what StoredAsShown says.
    void ExpectDone(const std::vector<std::string>& arguments, const std::string& told) const;

    void ExpectRefused(const std::vector<std::string>& arguments, const std::string& message) const;

    CTempFolder folder;
    CTempFolder usersData; ///< of the user, where versions are kept
    CVariable usersDataHome{"XDG_DATA_HOME", usersData.Path().c_str()};
    CVariable usersSetting{"VANTOR_VERSIONS", nullptr};
    std::filesystem::path libraryPath = folder / "Any.Dat";
    std::filesystem::path recipe = folder / "a.rcp";
    FormatLibrary library;
};

/// Runs `script` in bash, where "$cli" is the built vantor-cli and "$1", "$2" … are `arguments`.
ProcessResult RunScript(const std::string& script, std::vector<std::string> arguments);

/// What `set` tells when so many values that were not set were stored in `file` as shown.
std::string StoredAsShown(const std::filesystem::path& file, int values);

/// `text` as the bytes of a file.
Bytes TextBytes(const std::string& text);
