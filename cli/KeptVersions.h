#pragma once

#include "recovery/VersionStore.h"
#include "text/Reporter.h"

#include <filesystem>

/// The store in which a command keeps what it is about to overwrite: that of the user who runs it.
CVersionStore UsersVersions();

/// Keeps what the file at `path` holds, since `command` is about to overwrite it. That this fails is reported, and no
/// reason not to go on.
void KeepVersionOf(const std::filesystem::path& path, std::u16string_view command, CReporter& reporter);

/// Reports that no version of `file` was kept, if one was wanted.
void TellUnlessKept(const VersionKept& kept, const std::filesystem::path& file, CReporter& reporter);
