#include "disk/Crc32.h"

#include <gtest/gtest.h>

#include <string_view>

namespace {

std::uint32_t CrcOf(std::string_view text, std::uint32_t before = 0)
{
    return Crc32(std::as_bytes(std::span(text)), before);
}

} // namespace

TEST(Crc32Of, KnownTexts)
{
    EXPECT_EQ(CrcOf(""), 0x00000000u);
    EXPECT_EQ(CrcOf("a"), 0xE8B7BE43u);
    EXPECT_EQ(CrcOf("123456789"), 0xCBF43926u);
    EXPECT_EQ(CrcOf("The quick brown fox jumps over the lazy dog"), 0x414FA339u);
}

TEST(Crc32Of, PiecesIsThatOfTheWhole)
{
    constexpr std::string_view kText = "The quick brown fox jumps over the lazy dog";
    for (std::size_t cut = 0; cut <= kText.size(); ++cut)
        EXPECT_EQ(CrcOf(kText.substr(cut), CrcOf(kText.substr(0, cut))), 0x414FA339u) << cut;
}
