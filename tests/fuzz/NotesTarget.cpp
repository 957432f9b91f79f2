#include "library/NotesFile.h"
#include "tests/fuzz/Property.h"
#include "tests/fuzz/Targets.h"

#include <string>
#include <string_view>

void FuzzNotes(FuzzBytes bytes)
{
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    LibraryNotes notes;
    if (const auto fault = NotesFromJson(text, notes)) {
        Require(fault->place.starts_with(u'/') && !fault->text.empty(), "a fault has a place and a text");
        return;
    }
    for (const auto& [key, ofItem] : notes)
        Require(!ofItem.IsEmpty() && ofItem == Tidied(ofItem), "notes say something");
    const std::string json = NotesToJson(notes);
    LibraryNotes again;
    Require(!NotesFromJson(json, again), "written notes are read");
    Require(again == notes, "as they were");
    Require(NotesToJson(again) == json, "and written once more as the same text");
}
