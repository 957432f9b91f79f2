#include "library/LibraryFromJson.h"
#include "library/LibraryToJson.h"
#include "tests/support/Formats.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <iterator>
#include <random>
#include <string>

namespace fs = std::filesystem;

namespace {

constexpr std::uint32_t kSeed = 20240817;
constexpr int kLibraries = 400;

/// The bytes of random library files that are understood in full, of all that may stand in one.
class CRandomLibraryFile {
public:
    explicit CRandomLibraryFile(std::uint32_t seed) : m_random(seed) {}

    Bytes Make()
    {
        m_bytes.clear();
        m_itemBytes = 320;
        MakeMarker();
        PutNumbers(2);
        PutField(16);
        for (std::uint32_t formats = Below(5); formats > 0; --formats)
            MakeFormat();
        return m_bytes;
    }

private:
    std::uint32_t Number() { return static_cast<std::uint32_t>(m_random()); }
    std::uint32_t Below(std::uint32_t limit) { return Number() % limit; }

    void Put(std::uint64_t value, std::size_t size)
    {
        for (std::size_t i = 0; i < size; ++i)
            m_bytes.push_back(static_cast<std::byte>(value >> (8 * i) & 0xFF));
    }

    void PutNumbers(int count)
    {
        for (int i = 0; i < count; ++i)
            Put(Below(2) == 0 ? Below(12) : Number(), 4);
    }

    /// Of this version, of the older one, which has no marker, or of a later one.
    void MakeMarker()
    {
        const std::uint32_t kind = Below(8);
        if (kind == 0) {
            m_itemBytes = 312;
            return;
        }
        std::u16string marker = kind == 1 ? u"RecipeFile2.5" : u"RecipeFile2.0";
        marker.resize(16);
        for (const char16_t unit : marker)
            Put(unit, 2);
    }

    char16_t Unit()
    {
        static constexpr char16_t kUnits[] = {0,    0,      u'a',   u'"',   u'\\',  u'/',   u'\n',  7,      127,
                                              0x85, 0xD83D, 0xDE00, 0xD800, 0xDFFF, 0xFEFF, 0xFFFE, 0xFFFF, 0x2028};
        return Below(4) == 0 ? static_cast<char16_t>(Below(0x10000)) : kUnits[Below(std::size(kUnits))];
    }

    /// A text with its zeros, a text that fills the field, or units of any kind.
    void PutField(std::uint32_t size)
    {
        const std::uint32_t kind = Below(3);
        const std::uint32_t length = kind == 0 ? Below(size) : size;
        for (std::uint32_t i = 0; i < size; ++i)
            Put(i >= length ? 0 : kind == 2 ? Unit() : u'A' + Below(26), 2);
    }

    void MakeItem()
    {
        PutNumbers(6);
        PutField(128);
        PutNumbers((m_itemBytes - 280) / 4);
    }

    void MakeFormat()
    {
        const std::uint32_t items = Below(4);
        Put(100, 4);
        PutField(128);
        Put(items == 0 && Below(2) == 0 ? 0xFFFFFFF0 : items, 4); // a negative count means none
        for (std::uint32_t i = 0; i < items; ++i)
            MakeItem();
        Put(200, 4);
    }

    std::mt19937 m_random;
    Bytes m_bytes;
    int m_itemBytes = 320;
};

Bytes SavedBytes(const FormatLibrary& library, const fs::path& path)
{
    EXPECT_EQ(library.save(path), 0);
    return ReadAll(path);
}

FormatLibrary Imported(const std::string& json)
{
    FormatLibrary library;
    EXPECT_FALSE(LibraryFromJson(json, library)) << json;
    return library;
}

TEST(ExportImport, SavesTheSameBytesAsTheLibraryItself)
{
    const CTempFolder folder;
    CRandomLibraryFile random(kSeed);
    for (int i = 0; i < kLibraries; ++i) {
        SCOPED_TRACE("library " + std::to_string(i) + " of seed " + std::to_string(kSeed));
        const Bytes file = random.Make();
        WriteAll(folder / "a", file);
        FormatLibrary library;
        ASSERT_EQ(library.loadReadOnly(folder / "a"), static_cast<std::int64_t>(file.size()));
        const std::string json = LibraryToJson(library);
        ASSERT_EQ(SavedBytes(Imported(json), folder / "b"), SavedBytes(library, folder / "c")) << json;
    }
}

TEST(ExportImport, KeepsTheItemsThatASaveKeeps)
{
    const CTempFolder folder;
    FormatLibrary library;
    library.formats.push_back(std::make_unique<DataFormat>(MakeFormat(u"A", {DefaultItem(), DefaultItem()})));
    for (const std::int32_t count : {-1, 0, 1, 2, 3}) {
        library.formats[0]->itemCount = count; // kept: a count beside the items, which need not be theirs
        EXPECT_EQ(SavedBytes(Imported(LibraryToJson(library)), folder / "b"), SavedBytes(library, folder / "c"))
            << count;
    }
}

} // namespace
