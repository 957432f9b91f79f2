#pragma once

#include "library/FormatLibrary.h"
#include "tests/fuzz/Targets.h"
#include "tests/support/TestFiles.h"

/// Whether both hold the same settings and formats; paths and versions may differ.
bool AreSameLibrary(const FormatLibrary& one, const FormatLibrary& other);

/// The bytes that `library` is saved as. Throws CBrokenProperty when it cannot be saved.
Bytes SavedBytes(const FormatLibrary& library);

/// The library in the file of `bytes`. Throws CBrokenProperty when they are not understood in full.
FormatLibrary LibraryIn(FuzzBytes bytes);

/// Cuts the names of the formats to what is read of a stored one.
void CutNames(FormatLibrary& library);

/// Takes the notes off its items.
void DropNotes(FormatLibrary& library);
