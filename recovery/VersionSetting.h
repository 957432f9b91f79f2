#pragma once

#include <filesystem>

// Whether earlier versions of files are kept: the file "versions.json" in the user's data folder says so.

/// Whether they are, by that file and by the environment variable VANTOR_VERSIONS, of which "off" switches them off.
/// A file that is missing or cannot be understood says nothing against it.
bool AreVersionsKept(const std::filesystem::path& dataFolder);

/// Whether that variable switches them off, whatever the file says.
bool AreVersionsSwitchedOff();

/// Writes that file. False when that cannot be done; it is as it was then.
bool SetVersionsKept(const std::filesystem::path& dataFolder, bool areKept);
