#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// The arguments of this program, without its name, where main() got `argc` and `argv`: these as they stand, or, where
/// the system keeps them as text, that in UTF-8. What main() gets there has lost all that the ANSI code page does not
/// hold.
std::vector<std::string> ProgramArguments(int argc, const char* const* argv);

/// From now on the standard streams carry the same bytes on all systems: those that are written and read.
void UseStreamsForBytes();

/// Runs the program at `path` with `arguments`, which are as those of this program, and waits for its end. It has this
/// program's environment, working folder and standard streams. Its exit status; nothing when it cannot be started, or
/// something ended it.
std::optional<int> RunProgram(const std::filesystem::path& path, const std::vector<std::string>& arguments);

/// The program of that name beside this one, whether it is there or not.
std::filesystem::path SiblingProgram(const std::string& name);
