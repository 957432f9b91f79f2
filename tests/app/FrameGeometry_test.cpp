#include "app/FrameGeometry.h"

#include <gtest/gtest.h>

namespace {

struct ScreenCase {
    const char* name;
    QSize screen;
    QRect frame;
    friend void PrintTo(const ScreenCase& c, std::ostream* out) { *out << c.name; }
};

struct RestoredFrame : testing::TestWithParam<ScreenCase> {};

} // namespace

TEST_P(RestoredFrame, TakesFiveSixthsOfTheScreenCentred)
{
    EXPECT_EQ(RestoredFrameGeometry(GetParam().screen), GetParam().frame);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, RestoredFrame, testing::Values(
    ScreenCase{"FullHd",         {1920, 1080}, {160, 90, 1600, 900}},
    ScreenCase{"EachTruncates",  {1366, 768},  {114, 64, 1138, 640}},
    ScreenCase{"OddHeight",      {1280, 1025}, {107, 85, 1066, 854}}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on
