#include "tests/fuzz/SameLibrary.h"

#include "tests/fuzz/Property.h"
#include "tests/fuzz/Scratch.h"

#include <algorithm>

namespace {

bool AreSameFormat(const DataFormat& one, const DataFormat& other)
{
    return one.name == other.name && one.itemCount == other.itemCount &&
           std::equal(one.items.begin(), one.items.end(), other.items.begin(), other.items.end(),
                      [](const auto& a, const auto& b) { return *a == *b; });
}

} // namespace

bool AreSameLibrary(const FormatLibrary& one, const FormatLibrary& other)
{
    return one.startAddress == other.startAddress && one.rowCount == other.rowCount &&
           one.filePattern == other.filePattern &&
           std::equal(one.formats.begin(), one.formats.end(), other.formats.begin(), other.formats.end(),
                      [](const auto& a, const auto& b) { return AreSameFormat(*a, *b); });
}

Bytes SavedBytes(const FormatLibrary& library)
{
    const auto path = ScratchFolder() / "saved.Dat";
    Require(library.save(path) == 0, "any library can be saved");
    return FileContent(path);
}

FormatLibrary LibraryIn(FuzzBytes bytes)
{
    const auto path = ScratchFolder() / "loaded.Dat";
    PutFile(path, bytes);
    FormatLibrary library;
    Require(library.load(path) == static_cast<std::int64_t>(bytes.size()), "what was saved is understood in full");
    return library;
}

void CutNames(FormatLibrary& library)
{
    constexpr std::size_t kReadUnits = 64;
    for (const auto& format : library.formats)
        SetText(format->name, std::u16string(CutText(TextOf(format->name), kReadUnits)));
}

void DropNotes(FormatLibrary& library)
{
    for (const auto& format : library.formats)
        for (const auto& item : format->items)
            item->notes = {};
}
