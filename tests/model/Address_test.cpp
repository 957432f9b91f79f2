#include "model/Address.h"

#include <gtest/gtest.h>

#include <limits>
#include <type_traits>

namespace {

template <class A, class B>
concept CanBeCompared = requires(A a, B b)
{
    a < b;
};

template <class A, class B>
concept CanBeAdded = requires(A a, B b)
{
    a + b;
};

template <class A, class B>
concept CanBeSubtracted = requires(A a, B b)
{
    a - b;
};

// What must not compile, so that none is taken for the other, or a bare number for one of them.
static_assert(!std::is_convertible_v<std::int64_t, WordAddress> && !std::is_convertible_v<std::uint64_t, ByteOffset>);
static_assert(!std::is_convertible_v<WordAddress, std::int64_t> && !std::is_convertible_v<ByteOffset, std::uint64_t>);
static_assert(!std::is_constructible_v<ByteOffset, WordAddress> && !std::is_constructible_v<WordAddress, ByteOffset>);
static_assert(!CanBeCompared<WordAddress, ByteOffset> && !CanBeCompared<WordAddress, int>);
static_assert(!CanBeAdded<WordAddress, WordAddress> && !CanBeAdded<ByteOffset, ByteOffset>);
static_assert(!CanBeAdded<WordAddress, ByteOffset> && !CanBeSubtracted<ByteOffset, WordAddress>);

TEST(Address, WordTakesTwoBytes)
{
    EXPECT_EQ(FirstByteOf(WordAddress(0)).number, 0u);
    EXPECT_EQ(FirstByteOf(WordAddress(100)).number, 200u);
    EXPECT_EQ(FirstByteOf(WordAddress(2147483647) + 16777215LL * 128).number, 8589934334u);
}

TEST(Address, WordBelowZeroLiesPastAnyFile)
{
    constexpr auto kLongest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    EXPECT_GT(FirstByteOf(WordAddress(-1)), ByteOffset(kLongest));
    EXPECT_GT(FirstByteOf(WordAddress(std::numeric_limits<std::int32_t>::min())), ByteOffset(kLongest));
}

TEST(Address, CountsLeadFromOneToAnother)
{
    EXPECT_EQ(WordAddress(100) + 4, WordAddress(104));
    EXPECT_EQ(ByteOffset(200) + 4, ByteOffset(204));
    EXPECT_EQ(ByteOffset(204) - ByteOffset(200), 4u);
    EXPECT_LT(WordAddress(-1), WordAddress(0));
}

} // namespace
