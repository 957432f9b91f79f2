#include "files/ShowLimits.h"
#include "library/LibraryOriginal.h"
#include "tests/fuzz/Property.h"
#include "tests/fuzz/SameLibrary.h"
#include "tests/fuzz/Scratch.h"
#include "tests/fuzz/Targets.h"

#include <algorithm>
#include <cstdint>

namespace {

constexpr std::size_t kMarkerBytes = 32;
constexpr std::size_t kHeaderBytes = 72;
constexpr std::size_t kNameAt = 4;
constexpr std::size_t kCountAt = 260;
constexpr std::size_t kItemsAt = 264;
constexpr std::size_t kItemBytes = 320;
constexpr std::size_t kPaddingBytes = 4;

void RequireBounded(const FormatLibrary& library, std::size_t fileBytes)
{
    constexpr std::size_t kSmallestItem = 312;
    std::size_t items = 0;
    for (const auto& format : library.formats)
        items += format->items.size();
    Require(items * kSmallestItem <= fileBytes, "no more items are made than the file holds");
}

/// A format that passes the limits can be laid out, and the columns add up to what it says of itself.
void RequireColumnsAddUp(const DataFormat& format, std::int32_t rowCount)
{
    if (ShowFault(format, rowCount))
        return;
    const std::vector<ColumnCoding> columns = LayOutColumns(format);
    std::int64_t words = 0;
    for (const ColumnCoding& column : columns)
        words += column.dataLength;
    Require(static_cast<std::int64_t>(columns.size()) == format.elementCount(), "a column an element");
    Require(words == format.totalLength(), "the columns take the words of a row");
    for (std::size_t i = 0; i < columns.size(); i += columns.size() / 8 + 1)
        Require(format.itemOfElement(static_cast<std::int64_t>(i)) != nullptr, "every element belongs to an item");
    Require(format.itemOfElement(format.elementCount()) == nullptr, "no item after the last element");
}

/// The library as it comes back from a save: counts are true, and only counted items are kept.
void KeepWhatIsSaved(FormatLibrary& library)
{
    for (const auto& format : library.formats) {
        const auto items = static_cast<std::int32_t>(format->items.size());
        format->itemCount = std::clamp(format->itemCount, 0, items);
        format->items.resize(static_cast<std::size_t>(format->itemCount));
    }
    CutNames(library);
}

/// Makes zero what a save may change in a file that was understood: what stands after the zero that ends the marker or
/// a name, and the padding of the items.
void BlankWhatIsNotRead(Bytes& file)
{
    const auto blank = [&file](std::size_t at, std::size_t count) {
        std::fill_n(file.begin() + static_cast<std::ptrdiff_t>(at), count, std::byte{0});
    };
    blank(0, kMarkerBytes);
    for (std::size_t at = kHeaderBytes; at < file.size();) {
        const std::int32_t count = std::max(LoadLE32(file, at + kCountAt), 0); // of none, as of a negative count
        blank(at + kNameAt, kItemsAt - kNameAt);
        at += kItemsAt;
        for (std::int32_t i = 0; i < count; ++i, at += kItemBytes)
            blank(at + kItemBytes - kPaddingBytes, kPaddingBytes);
        at += kPaddingBytes; // the end mark
    }
}

void RequireNothingDropped(FuzzBytes original, Bytes saved)
{
    Bytes before(original.begin(), original.end());
    Require(before.size() == saved.size(), "a file that is not at risk keeps its length");
    BlankWhatIsNotRead(before);
    BlankWhatIsNotRead(saved);
    Require(AreSame(before, saved), "a file that is not at risk keeps its bytes");
}

} // namespace

void FuzzLibrary(FuzzBytes bytes)
{
    const auto path = ScratchFolder() / "library.Dat";
    PutFile(path, bytes);
    FormatLibrary library;
    const std::int64_t loaded = library.load(path);
    Require(loaded == -1 || loaded == static_cast<std::int64_t>(bytes.size()), "the result is -1 or the length");
    Require(AreSame(FileContent(path), bytes), "loading changes no file");
    FormatLibrary again;
    Require(again.loadReadOnly(path) == loaded && AreSameLibrary(library, again), "reading only finds the same");

    RequireBounded(library, bytes.size());
    for (const auto& format : library.formats)
        RequireColumnsAddUp(*format, library.rowCount);

    const Bytes saved = SavedBytes(library);
    if (loaded > 0 && !IsOriginalAtRisk(library, loaded))
        RequireNothingDropped(bytes, saved);
    const FormatLibrary reloaded = LibraryIn(saved);
    KeepWhatIsSaved(library);
    Require(AreSameLibrary(library, reloaded), "a library comes back as it was saved");
    Require(AreSame(SavedBytes(reloaded), saved), "a second save gives the same bytes");
}
