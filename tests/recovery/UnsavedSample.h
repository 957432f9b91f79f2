#pragma once

#include "recovery/UnsavedWork.h"
#include "tests/support/TestFiles.h"

#include <filesystem>
#include <map>
#include <span>
#include <string>
#include <vector>

// Work that is not saved, for tests.

/// A header of three rows of four columns: a number, two floats, a string of two words.
WorkHeader SampleHeader(FileType type = FileType::Rcp);

/// A cell that was given a text; `old` is what its file holds.
UnsavedCell TextCell(CellPlace place, std::u16string text, WordRun old = {});

/// Says which work `work` is, all of it, so that two can be compared.
std::string Told(const UnsavedWork& work);

/// The same of cells alone.
std::string Told(std::span<const UnsavedCell> cells);

/// What a journal of these commands holds, worked out plainly.
std::vector<UnsavedCell> LastStates(std::span<const std::vector<UnsavedCell>> commands);

/// The one file in `folder` that is a journal; empty unless there is one.
std::filesystem::path OnlyJournal(const std::filesystem::path& folder);
