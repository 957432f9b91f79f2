#pragma once

#include "sheet/SheetPdf.h"

#include <cstdio>
#include <string>
#include <vector>

/// Does what the command line of vantor-cli asks for with these `arguments` (ProgramArguments). Results go to `out`,
/// messages to `error`, neither of which is closed. Returns the program's exit code: 0 done, 1 failed, then `error` was
/// told why, 2 for arguments that make no sense. Throws nothing.
///
/// `pdf` makes the PDF files; where it is null another program does (SheetCommand.h).
int RunCommandLine(std::vector<std::string> arguments, std::FILE* out, std::FILE* error, CSheetPdf* pdf = nullptr);
