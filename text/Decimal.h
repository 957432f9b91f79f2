#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// A decimal number without rounding: what a user types, and what words with decimals mean. Sums, differences and
/// products are exact; only a quotient, and what is asked to be rounded, loses digits.
///
/// Numbers out of texts have at most kMostPlaces digits on each side of their point, so that no exponent costs memory
/// or time. Others are as long as what they were made of.
class CDecimal {
public:
    static constexpr std::int32_t kMostPlaces = 1200; ///< more than any double has

    CDecimal() = default; ///< 0
    explicit CDecimal(std::int64_t value);

    /// The number that `text` is in full: a sign, digits with at most one point, an exponent; "5." and ".5" are
    /// numbers. Nothing for any other text, and for a number of more than kMostPlaces.
    static std::optional<CDecimal> Parse(std::u16string_view text);

    bool IsZero() const { return m_digits.empty(); }
    bool IsNegative() const { return m_isNegative; } ///< below 0
    bool IsWhole() const { return m_exponent >= 0; }

    /// The number when it is whole and fits.
    std::optional<std::int64_t> ToInt64() const;

    /// The nearest float or double; nothing when it is too large for one.
    std::optional<float> ToFloat() const;
    std::optional<double> ToDouble() const;

    /// With at most `decimals` digits after the point, half rounded away from zero.
    CDecimal Rounded(std::int32_t decimals) const;

    /// Times 10 to the power `places`, which may be negative.
    CDecimal Scaled(std::int32_t places) const;

    /// Divided by `divisor`, rounded as Rounded does; nothing for a divisor of 0.
    std::optional<CDecimal> DividedBy(const CDecimal& divisor, std::int32_t decimals) const;

    /// In full, with as many decimals as it has, never an exponent: "-1.05".
    std::u16string Text() const { return Text(0); }

    /// The same, with at least `decimals` of them: "1.50".
    std::u16string Text(std::int32_t decimals) const;

    /// In full, with one digit before the point and an exponent: "-1.05e+300".
    std::u16string TextWithExponent() const;

    CDecimal operator-() const;
    friend CDecimal operator+(const CDecimal& a, const CDecimal& b);
    friend CDecimal operator-(const CDecimal& a, const CDecimal& b) { return a + -b; }
    friend CDecimal operator*(const CDecimal& a, const CDecimal& b);
    friend bool operator==(const CDecimal&, const CDecimal&) = default;
    friend std::strong_ordering operator<=>(const CDecimal& a, const CDecimal& b);

private:
    /// `digits` times 10^exponent, zeros at both ends taken off.
    CDecimal(bool isNegative, std::string digits, std::int32_t exponent);

    /// The digits down to the place of 10^exponent, which is not above m_exponent.
    std::string DigitsDownTo(std::int32_t exponent) const;

    template <class Real>
    std::optional<Real> To() const;

    // 0 has no digits, and all else one form: digits that neither begin nor end with a zero, times 10^m_exponent.
    bool m_isNegative = false;
    std::string m_digits;
    std::int32_t m_exponent = 0;
};
