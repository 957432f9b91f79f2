#include "app/Skin.h"

#include <QPalette>
#include <gtest/gtest.h>

#include <cmath>

namespace {

double Linear(double component)
{
    return component <= 0.04045 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
}

double Luminance(const QColor& color)
{
    return 0.2126 * Linear(color.redF()) + 0.7152 * Linear(color.greenF()) + 0.0722 * Linear(color.blueF());
}

/// How well one colour is read on the other: 1 not at all, 21 black on white.
double Contrast(const QColor& one, const QColor& other)
{
    const double a = Luminance(one) + 0.05;
    const double b = Luminance(other) + 0.05;
    return a > b ? a / b : b / a;
}

QPalette DarkDesktop()
{
    QPalette palette(QColor(49, 54, 59), QColor(35, 38, 41)); // button and window
    palette.setColor(QPalette::Base, QColor(27, 30, 32));
    palette.setColor(QPalette::Text, QColor(240, 240, 240));
    palette.setColor(QPalette::Disabled, QPalette::Base, QColor(35, 38, 41));
    palette.setColor(QPalette::Disabled, QPalette::Text, QColor(70, 75, 80));
    return palette;
}

} // namespace

TEST(Skin, AFieldToReadIsReadableOnALightAndOnADarkDesktop)
{
    for (QPalette palette : {QPalette(QColor(239, 239, 239)), DarkDesktop()}) {
        CSkin().polish(palette);
        for (const auto background : {QPalette::Base, QPalette::Window})
            EXPECT_GT(Contrast(palette.color(QPalette::Disabled, QPalette::Text),
                               palette.color(QPalette::Disabled, background)),
                      4.5);
    }
}

TEST(Skin, ADarkDesktopKeepsItsOtherColours)
{
    QPalette palette = DarkDesktop();
    CSkin().polish(palette);
    const QPalette before = DarkDesktop();
    for (const auto role : {QPalette::Window, QPalette::Button, QPalette::Base, QPalette::Text, QPalette::Highlight})
        EXPECT_EQ(palette.color(role), before.color(role)) << role;
}
