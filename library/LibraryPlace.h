#pragma once

#include "text/Reporter.h"

#include <filesystem>

/// The format library of the program with the full name `executable`: the file beside it, where users can write the
/// programs' folder.
///
/// Built for a folder that they cannot write (VANTOR_USER_LIBRARY), it is the one in the user's own data folder
/// instead, see below; without such a folder it is the file beside the program all the same. What LibraryPathBeside
/// reports is reported.
std::filesystem::path ProgramLibraryPath(const std::filesystem::path& executable, CReporter& reporter);

/// The same for what only reads: nothing is made. While the user has no library of their own, it is the sample that one
/// would be made from.
std::filesystem::path ProgramLibraryToRead(const std::filesystem::path& executable, CReporter& reporter);

/// The format library in `dataFolder`: "RecipeFile.Dat" in a folder of Vantor's own. Where there is none yet, it is
/// made from the library file `sample` and its notes first. That this failed is not reported: the library is missing
/// then, as it is when there is no sample.
std::filesystem::path UserLibraryPath(const std::filesystem::path& dataFolder, const std::filesystem::path& sample);

/// The same file, or `sample` while there is a sample but no such file yet; nothing is made.
std::filesystem::path UserLibraryToRead(const std::filesystem::path& dataFolder, const std::filesystem::path& sample);
