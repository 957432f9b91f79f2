#pragma once

#include "tests/fuzz/Targets.h"
#include "tests/support/TestFiles.h"

#include <filesystem>

/// A folder of this process's own, removed when the process ends.
const std::filesystem::path& ScratchFolder();

/// Makes `bytes` the whole content of the file at `path`.
void PutFile(const std::filesystem::path& path, FuzzBytes bytes);

/// The whole content of the file at `path`; none when it is missing.
Bytes FileContent(const std::filesystem::path& path);

bool AreSame(FuzzBytes one, FuzzBytes other);
