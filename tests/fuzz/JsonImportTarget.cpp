#include "library/LibraryFromJson.h"
#include "library/LibraryToJson.h"
#include "tests/fuzz/Property.h"
#include "tests/fuzz/SameLibrary.h"
#include "tests/fuzz/Scratch.h"
#include "tests/fuzz/Targets.h"

#include <string>

namespace {

FormatLibrary Imported(const std::string& json)
{
    FormatLibrary library;
    Require(!LibraryFromJson(json, library), "an exported text is accepted");
    return library;
}

} // namespace

void FuzzJsonImport(FuzzBytes bytes)
{
    const std::string text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    FormatLibrary library;
    if (const auto fault = LibraryFromJson(text, library)) {
        Require(fault->place.starts_with(u'/') && !fault->text.empty(), "a fault has a place and a text");
        return;
    }
    const std::string json = LibraryToJson(library);
    const FormatLibrary again = Imported(json);
    Require(AreSameLibrary(library, again), "an exported library is imported as it was");
    Require(LibraryToJson(again) == json, "and exported once more as the same text");

    const Bytes saved = SavedBytes(library);
    Require(AreSame(SavedBytes(again), saved), "both are the same file");
    CutNames(library);
    DropNotes(library); // which stand in a file of their own
    Require(AreSameLibrary(library, LibraryIn(saved)), "which holds the library");
}
