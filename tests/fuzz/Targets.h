#pragma once

#include <cstddef>
#include <span>

// What the fuzzer calls with bytes that it made up, and the replay with those that were kept. A target takes any bytes
// at all. It throws CBrokenProperty when the code does not do with them what it promises, and it is for the sanitizers
// to see what else goes wrong.

using FuzzBytes = std::span<const std::byte>;

/// The bytes are a format library file.
void FuzzLibrary(FuzzBytes bytes);

/// The bytes are a JSON text to import formats from.
void FuzzJsonImport(FuzzBytes bytes);

/// The bytes tell of a paged file, sound or damaged, and of what is read from it and written into it.
void FuzzPaged(FuzzBytes bytes);

/// The bytes are two that tell how much of a text table is wanted, then the table.
void FuzzTable(FuzzBytes bytes);

/// The bytes are a column and a typed text.
void FuzzCellCheck(FuzzBytes bytes);

/// The bytes are columns, words and typed texts.
void FuzzCodec(FuzzBytes bytes);

/// The bytes are the numbers of a merge.
void FuzzMerge(FuzzBytes bytes);

/// The bytes are changes as JSON Lines.
void FuzzChanges(FuzzBytes bytes);

/// The bytes are one that tells the type of a file, a patch up to an empty line, and the file.
void FuzzPatch(FuzzBytes bytes);

/// The bytes are a journal of unsaved edits, or its lines without their checksums.
void FuzzJournal(FuzzBytes bytes);

/// The bytes are a layout file.
void FuzzLayout(FuzzBytes bytes);

/// The bytes are a file of notes.
void FuzzNotes(FuzzBytes bytes);

/// The bytes are lines, an argument each, up to an empty one, and then the content of the files in reach.
void FuzzCommandLine(FuzzBytes bytes);
