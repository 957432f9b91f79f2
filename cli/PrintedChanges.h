#pragma once

#include "changes/ChangeList.h"
#include "cli/StandardStreams.h"

/// Prints the header of `changes` and a line a record (ChangeLines.h), none of which is kept.
void PrintChanges(const CChangeList& changes, CStandardOutput& output);
