#include "model/LittleEndian.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <string_view>

namespace {

TEST(LittleEndian, LowByteComesFirst)
{
    const Bytes bytes = BytesOf({0x01, 0x82, 0x03, 0x84, 0x05, 0x06, 0x07, 0x88, 0x99});
    EXPECT_EQ(LoadLittleEndian<std::uint16_t>(bytes), 0x8201);
    EXPECT_EQ(LoadLittleEndian<std::uint32_t>(bytes), 0x84038201);
    EXPECT_EQ(LoadLittleEndian<std::uint64_t>(bytes), 0x8807060584038201);
}

TEST(LittleEndian, BytesThatAreMissingAreZero)
{
    EXPECT_EQ(LoadLittleEndian<std::uint32_t>(Bytes()), 0u);
    EXPECT_EQ(LoadLittleEndian<std::uint32_t>(BytesOf({1, 2})), 0x0201u);
    EXPECT_EQ(LoadLittleEndian<std::uint32_t>(BytesOf({1, 2, 3})), 0x030201u);
}

TEST(LittleEndian, LowBytesAreStoredAsFarAsThereIsRoomAndZerosAfter)
{
    Bytes bytes(6, std::byte{0xEE});
    StoreLittleEndian(std::span(bytes).first(2), std::uint32_t{0x84038201});
    EXPECT_EQ(bytes, BytesOf({0x01, 0x82, 0xEE, 0xEE, 0xEE, 0xEE}));
    StoreLittleEndian(std::span(bytes), std::uint32_t{0x84038201});
    EXPECT_EQ(bytes, BytesOf({0x01, 0x82, 0x03, 0x84, 0, 0}));
}

TEST(LittleEndian, ValuesAreStoredOneAfterTheOther)
{
    Bytes bytes(9, std::byte{0xEE});
    StoreEach(bytes, std::array<std::uint32_t, 2>{0x84038201, 5});
    EXPECT_EQ(bytes, BytesOf({0x01, 0x82, 0x03, 0x84, 5, 0, 0, 0, 0xEE}));
    StoreEach(bytes, std::u16string_view(u"\u8201\u0003"));
    EXPECT_EQ(bytes, BytesOf({0x01, 0x82, 3, 0, 5, 0, 0, 0, 0xEE}));
}

} // namespace
