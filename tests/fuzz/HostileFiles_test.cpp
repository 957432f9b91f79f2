#include "library/LibraryFromJson.h"
#include "library/LibraryToJson.h"
#include "tests/fuzz/SameLibrary.h"
#include "tests/fuzz/Targets.h"
#include "tests/support/Formats.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <string>

// Damage of one kind, everywhere: the targets of the fuzzer say what must hold all the same.

namespace {

constexpr std::int32_t kSmallest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kLargest = std::numeric_limits<std::int32_t>::max();

FormatLibrary SampleLibrary()
{
    FormatLibrary library;
    library.startAddress = 7;
    library.rowCount = 3;
    library.formats.push_back(std::make_unique<DataFormat>(
        MakeFormat(u"One", {MakeItem(u"Level", DataType::Signed16, 1, 4),
                            ArrayOf(MakeItem(u"Temperature", DataType::Float, 2, 4, 1), 3)})));
    library.formats.push_back(
        std::make_unique<DataFormat>(MakeFormat(u"Two", {MakeItem(u"Name", DataType::String, 8, 4)})));
    return library;
}

void Store(Bytes& bytes, std::size_t at, std::int32_t value)
{
    for (std::size_t i = 0; i < 4; ++i)
        bytes[at + i] = static_cast<std::byte>(static_cast<std::uint32_t>(value) >> (8 * i));
}

/// As version 0 has it: no marker, and neither flag nor padding after the items.
Bytes OlderFile(const Bytes& file)
{
    Bytes older;
    const auto take = [&](std::size_t at, std::size_t count) {
        older.insert(older.end(), file.begin() + static_cast<std::ptrdiff_t>(at),
                     file.begin() + static_cast<std::ptrdiff_t>(at + count));
    };
    take(32, 40);
    take(72, 264);
    take(336, 312);
    take(656, 312);
    take(976, 4);
    return older;
}

void CheckEveryCut(const Bytes& file)
{
    for (std::size_t length = 0; length <= file.size(); ++length)
        EXPECT_NO_THROW(FuzzLibrary(FuzzBytes(file).first(length))) << length;
}

void CheckEveryField(const Bytes& file)
{
    for (std::size_t at = 0; at + 4 <= file.size(); at += 4)
        for (const std::int32_t value : {-1, 0, 1, kLargest, kSmallest}) {
            Bytes changed = file;
            Store(changed, at, value);
            EXPECT_NO_THROW(FuzzLibrary(changed)) << value << " at " << at;
        }
}

TEST(HostileLibrary, MayBeCutAtAnyByte)
{
    CheckEveryCut(SavedBytes(SampleLibrary()));
}

TEST(HostileLibrary, MayHoldAnyNumberInAnyField)
{
    CheckEveryField(SavedBytes(SampleLibrary()));
}

TEST(HostileLibrary, OfAnOlderVersionMayBeCutAtAnyByte)
{
    CheckEveryCut(OlderFile(SavedBytes(SampleLibrary())));
}

TEST(HostileLibrary, OfAnOlderVersionMayHoldAnyNumberInAnyField)
{
    const Bytes older = OlderFile(SavedBytes(SampleLibrary()));
    EXPECT_EQ(LibraryIn(older).formats.at(0)->items.size(), 2u);
    CheckEveryField(older);
}

FuzzBytes BytesIn(const std::string& text)
{
    return std::as_bytes(std::span(text));
}

TEST(HostileJson, CutAnywhereIsRefusedWithAPlace)
{
    const std::string json = LibraryToJson(SampleLibrary());
    const std::size_t whole = json.rfind('}') + 1;
    for (std::size_t length = 0; length < json.size(); ++length) {
        const std::string cut = json.substr(0, length);
        FormatLibrary library;
        EXPECT_EQ(LibraryFromJson(cut, library).has_value(), length < whole) << length;
        EXPECT_NO_THROW(FuzzJsonImport(BytesIn(cut))) << length;
    }
}

/// Calls `check` with `json` in which each integer in turn is replaced by `number`.
template <class Check>
void ForEachNumber(const std::string& json, const std::string& number, Check check)
{
    int replaced = 0;
    for (std::size_t at = json.find("\": "); at != std::string::npos; at = json.find("\": ", at + 1)) {
        const std::size_t begin = at + 3;
        const std::size_t end = json.find_first_not_of("-0123456789", begin);
        if (end == begin)
            continue;
        check(json.substr(0, begin) + number + json.substr(end));
        ++replaced;
    }
    EXPECT_GT(replaced, 40);
}

TEST(HostileJson, MayHoldAnyNumberInAnyField)
{
    const std::string json = LibraryToJson(SampleLibrary());
    for (const std::int32_t value : {-1, 0, 1, kLargest, kSmallest})
        ForEachNumber(json, std::to_string(value), [](const std::string& changed) {
            FormatLibrary library;
            EXPECT_FALSE(LibraryFromJson(changed, library).has_value()) << changed;
            EXPECT_EQ(LibraryToJson(library), changed);
            EXPECT_NO_THROW(FuzzJsonImport(BytesIn(changed))) << changed;
        });
}

TEST(HostileJson, WhatIsNoNumberIsRefusedEverywhere)
{
    const std::string json = LibraryToJson(SampleLibrary());
    for (const char* number : {"1e400", "-0.5", "1e", ".", "0x1p3", "NaN", "Infinity", "9223372036854775808", "\"1\""})
        ForEachNumber(json, number, [](const std::string& changed) {
            FormatLibrary library;
            EXPECT_TRUE(LibraryFromJson(changed, library).has_value()) << changed;
            EXPECT_NO_THROW(FuzzJsonImport(BytesIn(changed))) << changed;
        });
}

} // namespace
