#include "model/ValueTextCheck.h"

#include <gtest/gtest.h>

namespace {

ColumnCoding Column(DataType type, std::int32_t words, std::int32_t decimals = 0)
{
    return {.title = u"X",
            .dataType = type,
            .dataLength = words,
            .codeType = CodeType::Bin,
            .integerDigits = 2,
            .decimalDigits = decimals,
            .minValue = 0,
            .maxValue = 99,
            .unicode = 0};
}

const ColumnCoding kUnsigned = Column(DataType::Unsigned16, 1, 1);

struct FaultCase {
    const char* name;
    ColumnCoding column;
    std::vector<ValueText> texts;
    std::size_t index;
    const char16_t* fault;
    friend void PrintTo(const FaultCase& c, std::ostream* out) { *out << c.name; }
};

struct FaultyTexts : testing::TestWithParam<FaultCase> {};
struct GoodTexts : testing::TestWithParam<FaultCase> {};

const auto kName = [](const auto& c) { return std::string(c.param.name); };

} // namespace

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, FaultyTexts, testing::Values(
    FaultCase{"NoValue", kUnsigned, {{u"0", u"off"}, {u" ", u"on"}}, 1, u"A value is missing for the text \"on\"."},
    FaultCase{"NoText", kUnsigned, {{u"0", u"off"}, {u"1", u""}}, 1, u"A text is missing for the value 1."},
    FaultCase{"Comma", kUnsigned, {{u"1,5", u"x"}}, 0, u"1,5: numbers are typed with a point here, as in 1.5."},
    FaultCase{"NoNumber", kUnsigned, {{u"off", u"x"}}, 0, u"No cell of this item can hold the value off."},
    FaultCase{"MoreDecimals", kUnsigned, {{u"1.25", u"x"}}, 0, u"No cell of this item can hold the value 1.25."},
    FaultCase{"Negative", kUnsigned, {{u"-1", u"x"}}, 0, u"No cell of this item can hold the value -1."},
    FaultCase{"TooLarge", kUnsigned, {{u"6553.6", u"x"}}, 0, u"No cell of this item can hold the value 6553.6."},
    FaultCase{"NoHexadecimal", Column(DataType::Hex16, 1), {{u"G", u"x"}}, 0,
              u"No cell of this item can hold the value G."},
    FaultCase{"TooLong", Column(DataType::String, 2), {{u"ABC", u"x"}}, 0,
              u"No cell of this item can hold the value ABC."},
    FaultCase{"Twice", kUnsigned, {{u"1", u"a"}, {u"2", u"b"}, {u"1", u"c"}}, 2, u"The value 1 has a text already."},
    FaultCase{"TwiceAsNumbers", kUnsigned, {{u"1", u"a"}, {u"1.0", u"b"}}, 1, u"The value 1.0 has a text already."},
    FaultCase{"TwiceAsTexts", Column(DataType::String, 2), {{u"A", u"a"}, {u" A ", u"b"}}, 1,
              u"The value A has a text already."}), kName);

INSTANTIATE_TEST_SUITE_P(Table, GoodTexts, testing::Values(
    FaultCase{"None", kUnsigned, {}, 0, u""},
    FaultCase{"EmptyOnes", kUnsigned, {{u"", u" "}, {u"", u""}}, 0, u""},
    FaultCase{"BeyondTheLimits", kUnsigned, {{u"0", u"off"}, {u"6553.5", u"none"}}, 0, u""},
    FaultCase{"Hexadecimal", Column(DataType::Hex32, 2), {{u"ffffffff", u"all"}}, 0, u""},
    FaultCase{"Float", Column(DataType::Float, 2), {{u"0.1", u"x"}, {u"1e3", u"y"}}, 0, u""},
    FaultCase{"Strings", Column(DataType::String, 2), {{u"1", u"a"}, {u"01", u"b"}, {u"a,", u"c"}}, 0, u""}), kName);
// clang-format on

TEST_P(FaultyTexts, AreToldWithTheirPlace)
{
    const auto fault = FindValueTextFault(GetParam().column, GetParam().texts);
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->index, GetParam().index);
    EXPECT_EQ(fault->text, GetParam().fault);
}

TEST_P(GoodTexts, HaveNoFault)
{
    const auto fault = FindValueTextFault(GetParam().column, GetParam().texts);
    EXPECT_FALSE(fault);
}
