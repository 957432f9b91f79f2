#include "model/CellCheck.h"
#include "model/DataItem.h"
#include "model/WordCodec.h"
#include "tests/support/TestFiles.h"
#include "text/NumberText.h"

#include <gtest/gtest.h>

#include <clocale>
#include <locale>
#include <string>

namespace {

class CCommaPoint final : public std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

/// A user's locale that writes 1.234,50: of the C++ library always, of the C library where it is installed.
class CommaLocale : public testing::Test {
protected:
    CommaLocale()
    {
        std::locale::global(std::locale(std::locale::classic(), new CCommaPoint)); // the locale owns it
        std::setlocale(LC_ALL, "de_DE.UTF-8");
    }
    ~CommaLocale() override
    {
        std::locale::global(std::locale::classic());
        std::setlocale(LC_ALL, "C");
    }
};

ColumnCoding Coding(DataType type, std::int32_t dataLength)
{
    return {.dataType = type,
            .dataLength = dataLength,
            .codeType = CodeType::Bin,
            .integerDigits = 5,
            .decimalDigits = 2,
            .minValue = -9999,
            .maxValue = 99999};
}

TEST_F(CommaLocale, DoesNotChangeATextThatIsRead)
{
    EXPECT_EQ(ReadDecimal(u"1234.5"), 1234.5);
    EXPECT_EQ(ReadDecimal(u"1,5"), 1);
    EXPECT_EQ(ReadScaledInteger(u"12.34", 2), 1234);
    EXPECT_TRUE(ValidateCellValue(Coding(DataType::Float, 2), u"12.5"));
    EXPECT_FALSE(ValidateCellValue(Coding(DataType::Float, 2), u"12,5"));
}

TEST_F(CommaLocale, DoesNotChangeAValueThatIsShown)
{
    std::size_t pos = 0;
    EXPECT_EQ(FormatValue(Coding(DataType::Float, 2), WordBytes({0x5000, 0x449A}), pos), u"1234.50");
    pos = 0;
    EXPECT_EQ(FormatValue(Coding(DataType::Unsigned32, 2), WordBytes({0xE240, 0x0001}), pos), u"1234.56");
    EXPECT_EQ(DecimalText(1234567), u"1234567");
}

TEST_F(CommaLocale, DoesNotChangeAValueThatIsCoded)
{
    Bytes image(4);
    std::size_t pos = 0;
    CodeValue(Coding(DataType::Float, 2), u"1234.50", image, pos);
    EXPECT_EQ(image, WordBytes({0x5000, 0x449A}));
}

} // namespace
