#pragma once

#include "tests/support/ProcessRun.h"

/// Runs the built vantor-cli.
inline ProcessResult RunCli(const std::vector<std::string>& arguments)
{
    return RunProcess(VANTOR_CLI_PROGRAM, arguments);
}
