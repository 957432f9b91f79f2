#include "text/Decimal.h"

#include <gtest/gtest.h>

#include <limits>
#include <ostream>
#include <random>
#include <string>

namespace {

CDecimal Number(std::u16string_view text)
{
    const auto number = CDecimal::Parse(text);
    EXPECT_TRUE(number) << std::string(text.begin(), text.end());
    return number.value_or(CDecimal());
}

struct ParseCase {
    const char* name;
    const char16_t* text;
    const char16_t* shown; ///< null for no number
    friend void PrintTo(const ParseCase& c, std::ostream* out) { *out << c.name; }
};

struct ParsedDecimal : testing::TestWithParam<ParseCase> {};

TEST_P(ParsedDecimal, IsTheNumberInFull)
{
    const auto number = CDecimal::Parse(GetParam().text);
    ASSERT_EQ(number.has_value(), GetParam().shown != nullptr);
    if (number) {
        EXPECT_EQ(number->Text(), GetParam().shown);
    }
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, ParsedDecimal, testing::Values(
    ParseCase{"Zero",              u"0",                    u"0"},
    ParseCase{"MinusZero",         u"-0.00",                u"0"},
    ParseCase{"Whole",             u"00240",                u"240"},
    ParseCase{"PlusSign",          u"+5",                   u"5"},
    ParseCase{"Decimals",          u"-1.050",               u"-1.05"},
    ParseCase{"NothingBefore",     u".5",                   u"0.5"},
    ParseCase{"NothingAfter",      u"5.",                   u"5"},
    ParseCase{"Exponent",          u"1.5e2",                u"150"},
    ParseCase{"LargeExponent",     u"12E+3",                u"12000"},
    ParseCase{"NegativeExponent",  u"15e-4",                u"0.0015"},
    ParseCase{"LongerThanADouble", u"12345678901234567890.12345678901234567890",
                                                            u"12345678901234567890.1234567890123456789"},
    ParseCase{"ZeroFarAway",       u"0e999999999999999999", u"0"},
    ParseCase{"Empty",             u"",                     nullptr},
    ParseCase{"SignOnly",          u"-",                    nullptr},
    ParseCase{"PointOnly",         u".",                    nullptr},
    ParseCase{"TwoPoints",         u"1.2.3",                nullptr},
    ParseCase{"TwoSigns",          u"--1",                  nullptr},
    ParseCase{"Comma",             u"1,5",                  nullptr},
    ParseCase{"LeadingBlank",      u" 5",                   nullptr},
    ParseCase{"TrailingLetter",    u"5a",                   nullptr},
    ParseCase{"NoExponent",        u"5e",                   nullptr},
    ParseCase{"SignedNoExponent",  u"5e-",                  nullptr},
    ParseCase{"ExponentWithPoint", u"5e1.5",                nullptr},
    ParseCase{"Infinity",          u"inf",                  nullptr},
    ParseCase{"Hexadecimal",       u"0x10",                 nullptr},
    ParseCase{"OtherDigits",       u"\u0665",               nullptr},
    ParseCase{"HugeExponent",      u"1e1201",               nullptr},
    ParseCase{"TinyExponent",      u"1e-1201",              nullptr},
    ParseCase{"HostileExponent",   u"1e99999999999999999999999999", nullptr},
    ParseCase{"HostileNegative",   u"1e-99999999999999999999999999", nullptr}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST(Decimal, ExponentIsJudgedTogetherWithTheDigits)
{
    EXPECT_EQ(Number(std::u16string(u"0.").append(5000, u'0') + u"1e5001"), CDecimal(1));
    EXPECT_EQ(Number(u"1" + std::u16string(5000, u'0') + u"e-5000"), CDecimal(1));
    EXPECT_EQ(Number(u"1" + std::u16string(1199, u'0')).Text().size(), 1200u);
    EXPECT_FALSE(CDecimal::Parse(u"1" + std::u16string(1200, u'0')));
    EXPECT_EQ(Number(u"0." + std::u16string(1199, u'0') + u"1").Text().size(), 1202u);
    EXPECT_FALSE(CDecimal::Parse(u"0." + std::u16string(1200, u'0') + u"1"));
}

TEST(Decimal, TextTakesAtLeastTheDecimalsAskedFor)
{
    EXPECT_EQ(Number(u"1.5").Text(2), u"1.50");
    EXPECT_EQ(Number(u"1.555").Text(2), u"1.555");
    EXPECT_EQ(Number(u"-0.05").Text(2), u"-0.05");
    EXPECT_EQ(Number(u"120").Text(1), u"120.0");
    EXPECT_EQ(CDecimal().Text(2), u"0.00");
    EXPECT_EQ(Number(u"7").Text(-3), u"7");
}

TEST(Decimal, TextWithExponentHasOneDigitBeforeThePoint)
{
    EXPECT_EQ(Number(u"-1.05").TextWithExponent(), u"-1.05e+0");
    EXPECT_EQ(Number(u"15e299").TextWithExponent(), u"1.5e+300");
    EXPECT_EQ(Number(u"0.00005").TextWithExponent(), u"5e-5");
    EXPECT_EQ(CDecimal().TextWithExponent(), u"0e+0");
}

struct RoundCase {
    const char* name;
    const char16_t* text;
    std::int32_t decimals;
    const char16_t* rounded;
    friend void PrintTo(const RoundCase& c, std::ostream* out) { *out << c.name; }
};

struct RoundedDecimal : testing::TestWithParam<RoundCase> {};

TEST_P(RoundedDecimal, GoesHalfAwayFromZero)
{
    EXPECT_EQ(Number(GetParam().text).Rounded(GetParam().decimals).Text(), GetParam().rounded);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, RoundedDecimal, testing::Values(
    RoundCase{"ShortEnough",     u"1.5",     2, u"1.5"},
    RoundCase{"Down",            u"1.14",    1, u"1.1"},
    RoundCase{"HalfUp",          u"1.15",    1, u"1.2"},
    RoundCase{"HalfAwayBelow",   u"-1.15",   1, u"-1.2"},
    RoundCase{"JustBelowHalf",   u"1.14999", 1, u"1.1"},
    RoundCase{"Carries",         u"9.96",    1, u"10"},
    RoundCase{"AllGone",         u"0.004",   1, u"0"},
    RoundCase{"OnlyTheHalf",     u"0.5",     0, u"1"},
    RoundCase{"BelowTheHalf",    u"-0.49",   0, u"0"},
    RoundCase{"PlaceAboveFirst", u"0.05",    0, u"0"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST(Decimal, AddsAndSubtracts)
{
    EXPECT_EQ(Number(u"0.1") + Number(u"0.2"), Number(u"0.3"));
    EXPECT_EQ(Number(u"999.9") + Number(u"0.1"), CDecimal(1000));
    EXPECT_EQ(CDecimal(1) - Number(u"1.05"), Number(u"-0.05"));
    EXPECT_EQ(Number(u"-1.5") - Number(u"-1.5"), CDecimal());
    EXPECT_FALSE((Number(u"-1.5") + Number(u"1.5")).IsNegative());
    EXPECT_EQ((Number(u"1e300") + Number(u"1e-300")).Text().size(), 602u);
}

TEST(Decimal, Multiplies)
{
    EXPECT_EQ(Number(u"1.15") * CDecimal(100), CDecimal(115));
    EXPECT_EQ(Number(u"-0.25") * Number(u"-0.4"), Number(u"0.1"));
    EXPECT_EQ(Number(u"-3") * CDecimal(), CDecimal());
    EXPECT_FALSE((Number(u"-3") * CDecimal()).IsNegative());
    EXPECT_EQ((Number(u"99999999999999999999") * Number(u"99999999999999999999")).Text(),
              u"9999999999999999999800000000000000000001");
}

TEST(Decimal, DividesToTheDecimalsAskedFor)
{
    EXPECT_EQ(CDecimal(1).DividedBy(CDecimal(3), 4), Number(u"0.3333"));
    EXPECT_EQ(CDecimal(2).DividedBy(CDecimal(3), 4), Number(u"0.6667"));
    EXPECT_EQ(CDecimal(1).DividedBy(CDecimal(8), 2), Number(u"0.13"));
    EXPECT_EQ(CDecimal(-1).DividedBy(CDecimal(8), 2), Number(u"-0.13"));
    EXPECT_EQ(CDecimal(-5).DividedBy(Number(u"0.001"), 0), CDecimal(-5000));
    EXPECT_EQ(Number(u"0.004").DividedBy(CDecimal(1000), 2), CDecimal());
    EXPECT_EQ(CDecimal().DividedBy(CDecimal(7), 2), CDecimal());
    EXPECT_EQ(CDecimal(7).DividedBy(CDecimal(), 2), std::nullopt);
}

TEST(Decimal, ScalesByPowersOfTen)
{
    EXPECT_EQ(Number(u"1.05").Scaled(2), CDecimal(105));
    EXPECT_EQ(CDecimal(105).Scaled(-2), Number(u"1.05"));
    EXPECT_EQ(CDecimal().Scaled(5), CDecimal());
    EXPECT_TRUE(Number(u"1.05").Scaled(2).IsWhole());
    EXPECT_FALSE(Number(u"1.05").Scaled(1).IsWhole());
}

TEST(Decimal, IsAnIntegerOnlyWhereItIsOneThatFits)
{
    using Limits = std::numeric_limits<std::int64_t>;
    EXPECT_EQ(CDecimal(Limits::min()).ToInt64(), Limits::min());
    EXPECT_EQ(CDecimal(Limits::max()).ToInt64(), Limits::max());
    EXPECT_EQ((CDecimal(Limits::max()) + CDecimal(1)).ToInt64(), std::nullopt);
    EXPECT_EQ((CDecimal(Limits::min()) - CDecimal(1)).ToInt64(), std::nullopt);
    EXPECT_EQ(Number(u"0.5").ToInt64(), std::nullopt);
    EXPECT_EQ(CDecimal().ToInt64(), 0);
}

TEST(Decimal, NearestRealIsRoundedOnce)
{
    EXPECT_EQ(Number(u"0.1").ToDouble(), 0.1);
    EXPECT_EQ(Number(u"0.1").ToFloat(), 0.1F);
    // Halfway between two floats and a little above: by way of a double it would go down, to the even one.
    EXPECT_EQ(Number(u"1.000000059604644775390626").ToFloat(), 1.00000011920928955078125F);
    EXPECT_EQ(Number(u"-0.05").ToFloat(), -0.05F);
    EXPECT_EQ(CDecimal().ToFloat(), 0.0F);
    EXPECT_EQ(Number(u"1e39").ToFloat(), std::nullopt);
    EXPECT_EQ(Number(u"-1e309").ToDouble(), std::nullopt);
    EXPECT_EQ(Number(u"1e-400").ToDouble(), 0.0);
    EXPECT_EQ(Number(u"1e-60").ToFloat(), 0.0F);
    EXPECT_EQ(Number(u"1e-45").ToFloat(), std::numeric_limits<float>::denorm_min());
    EXPECT_EQ(Number(u"5e-324").ToDouble(), std::numeric_limits<double>::denorm_min());
}

/// Numbers of up to 30 digits around the point.
class CRandomDecimals {
public:
    CDecimal Next()
    {
        std::u16string text(m_random() % 2 == 0 ? u"-" : u"");
        const std::size_t digits = 1 + m_random() % 30;
        for (std::size_t i = 0; i < digits; ++i)
            text += static_cast<char16_t>(u'0' + m_random() % 10);
        text.insert(text.size() - m_random() % digits, 1, u'.');
        return Number(text);
    }
    std::int64_t NextInteger() { return static_cast<std::int64_t>(m_random()) - (std::int64_t{1} << 31); }
    std::int32_t NextDecimals() { return static_cast<std::int32_t>(m_random() % 12); }

private:
    std::mt19937 m_random{20261121};
};

TEST(RandomDecimals, ComputeAsNumbersDo)
{
    CRandomDecimals random;
    for (int i = 0; i < 5000; ++i) {
        const CDecimal a = random.Next();
        const CDecimal b = random.Next();
        const CDecimal c = random.Next();
        ASSERT_EQ(a + b, b + a);
        ASSERT_EQ(a + b - b, a);
        ASSERT_EQ(a * b, b * a);
        ASSERT_EQ((a + b) * c, a * c + b * c);
        ASSERT_EQ(Number(a.Text()), a);
        ASSERT_EQ(a < b, (a - b).IsNegative());
        ASSERT_EQ(a == b, (a - b).IsZero());
    }
}

TEST(RandomDecimals, IntegersComputeAsThoseOfTheMachine)
{
    CRandomDecimals random;
    for (int i = 0; i < 5000; ++i) {
        const std::int64_t a = random.NextInteger();
        const std::int64_t b = random.NextInteger();
        ASSERT_EQ((CDecimal(a) + CDecimal(b)).ToInt64(), a + b);
        ASSERT_EQ((CDecimal(a) - CDecimal(b)).ToInt64(), a - b);
        ASSERT_EQ((CDecimal(a) * CDecimal(b)).ToInt64(), a * b);
        ASSERT_EQ(CDecimal(a) <=> CDecimal(b), a <=> b);
    }
}

TEST(RandomDecimals, RoundingIsOffByAHalfAtMostAndGoesAwayFromZero)
{
    CRandomDecimals random;
    for (int i = 0; i < 5000; ++i) {
        const CDecimal a = random.Next();
        const CDecimal b = random.Next();
        const std::int32_t decimals = random.NextDecimals();
        const CDecimal half = Number(u"0.5").Scaled(-decimals);
        const auto isNearest = [&half](const CDecimal& off) { return -half <= off && off <= half; };

        const CDecimal rounded = a.Rounded(decimals);
        ASSERT_TRUE(rounded.Scaled(decimals).IsWhole());
        ASSERT_TRUE(isNearest(rounded - a));
        if (const CDecimal off = rounded - a; off == half || off == -half) {
            ASSERT_EQ(off.IsNegative(), a.IsNegative());
        }
        if (b.IsZero())
            continue;
        const CDecimal quotient = a.DividedBy(b, decimals).value();
        const CDecimal size = b.IsNegative() ? -b : b;
        ASSERT_TRUE(quotient.Scaled(decimals).IsWhole());
        const CDecimal off = quotient * b - a;
        ASSERT_TRUE(-half * size <= off && off <= half * size);
        ASSERT_EQ((a * b).DividedBy(b, decimals), a.Rounded(decimals));
    }
}

TEST(RandomDecimals, AreTheDoublesTheyWereMadeOf)
{
    std::mt19937_64 random(7);
    for (int i = 0; i < 5000; ++i) {
        const auto value = static_cast<double>(static_cast<std::int64_t>(random())) / 0x1p40;
        const std::string text = std::to_string(value); // six decimals
        const CDecimal number = Number(std::u16string(text.begin(), text.end()));
        ASSERT_EQ(number.ToDouble(), std::stod(text));
        ASSERT_EQ(number.ToFloat(), std::stof(text));
    }
}

} // namespace
