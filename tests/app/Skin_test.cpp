#include "app/Contrast.h"
#include "app/Skin.h"
#include "controls/GridCellPaint.h"

#include <QFontMetrics>
#include <QPalette>
#include <QStyleFactory>
#include <QTreeWidget>
#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

QPalette LightDesktop()
{
    return QPalette(QColor(239, 239, 239));
}

QPalette DarkDesktop()
{
    QPalette palette(QColor(49, 54, 59), QColor(35, 38, 41)); // button and window
    palette.setColor(QPalette::Base, QColor(27, 30, 32));
    palette.setColor(QPalette::Text, QColor(240, 240, 240));
    palette.setColor(QPalette::Highlight, QColor(61, 174, 233)); // its white text can hardly be read
    palette.setColor(QPalette::HighlightedText, QColor(252, 252, 252));
    palette.setColor(QPalette::PlaceholderText, QColor(80, 85, 90));
    palette.setColor(QPalette::ToolTipBase, QColor(49, 54, 59));
    palette.setColor(QPalette::ToolTipText, QColor(60, 70, 80));
    palette.setColor(QPalette::Disabled, QPalette::Base, QColor(35, 38, 41));
    for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(70, 75, 80));
    return palette;
}

QPalette PureDesktop(const QColor& text, const QColor& background, const QColor& highlight)
{
    QPalette palette(text, background, background, background, background, text, background);
    palette.setColor(QPalette::Base, background);
    palette.setColor(QPalette::Highlight, highlight);
    palette.setColor(QPalette::HighlightedText, background);
    palette.setColor(QPalette::ToolTipBase, background);
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::PlaceholderText, text);
    return palette;
}

struct DesktopCase {
    const char* name;
    QPalette palette;
    bool keepsItsColours;
    friend void PrintTo(const DesktopCase& c, std::ostream* out) { *out << c.name; }
};

struct SkinOn : testing::TestWithParam<DesktopCase> {
    SkinOn() { CSkin().polish(palette); }
    QPalette palette = GetParam().palette;
};

struct Pair {
    QPalette::ColorRole text, background;
};

constexpr Pair kTexts[]{
    {QPalette::WindowText, QPalette::Window},       {QPalette::Text, QPalette::Base},
    {QPalette::ButtonText, QPalette::Button},       {QPalette::HighlightedText, QPalette::Highlight},
    {QPalette::ToolTipText, QPalette::ToolTipBase}, {QPalette::PlaceholderText, QPalette::Base},
    {QPalette::Text, QPalette::AlternateBase},      {QPalette::ButtonText, QPalette::Window},
};

} // namespace

TEST(Contrast, GoesFromOneToTwentyOne)
{
    EXPECT_NEAR(Contrast(Qt::black, Qt::white), 21, 0.001);
    EXPECT_NEAR(Contrast(Qt::white, Qt::black), 21, 0.001);
    EXPECT_NEAR(Contrast(Qt::blue, Qt::blue), 1, 0.001);
    EXPECT_NEAR(Contrast(QColor(118, 118, 118), Qt::white), 4.54, 0.01);
}

TEST(Skin, TheRowsOfAListLeaveRoomBetweenTheirTexts)
{
    const auto heightWith = [](QStyle& style) {
        QTreeWidget list;
        list.setStyle(&style);
        list.addTopLevelItem(new QTreeWidgetItem({"16 bit signed number"}));
        const int height = list.visualItemRect(list.topLevelItem(0)).height();
        list.setStyle(nullptr);
        return height;
    };
    CSkin skin;
    const std::unique_ptr<QStyle> plain(QStyleFactory::create("Fusion"));
    EXPECT_GE(heightWith(skin), heightWith(*plain) + 4);
}

TEST_P(SkinOn, EveryTextIsReadable)
{
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
        for (const Pair& pair : kTexts)
            EXPECT_GE(Contrast(palette.color(group, pair.text), palette.color(group, pair.background)), 4.5)
                << "group " << group << ", roles " << pair.text << " on " << pair.background;
}

TEST_P(SkinOn, AReadOnlyFieldOnTheWindowsColourIsReadable)
{
    EXPECT_GE(Contrast(palette.color(QPalette::Disabled, QPalette::Text), palette.color(QPalette::Window)), 4.5);
}

/// The shades of the bars lie between 6 % lighter and 6 % darker, on dark desktops up to 15 % lighter.
TEST_P(SkinOn, TextsOnTheShadedBarsAreReadable)
{
    const QColor button = palette.color(QPalette::Button);
    const bool dark = button.lightness() < 128;
    for (const QColor& shade : {button.lighter(dark ? 115 : 106), dark ? button : button.darker(106)})
        for (const auto group : {QPalette::Active, QPalette::Disabled})
            for (const auto text : {QPalette::ButtonText, QPalette::WindowText})
                EXPECT_GE(Contrast(palette.color(group, text), shade), 4.5) << group << " " << text;
}

TEST_P(SkinOn, AMarkedCellIsReadableAndItsMarksAreSeen)
{
    const QColor base = palette.color(QPalette::Base);
    EXPECT_GE(Contrast(palette.color(QPalette::Text), WarningTint(base)), 4.5);
    EXPECT_GE(Contrast(WarningColor(base), WarningTint(base)), 3);
    EXPECT_GE(Contrast(palette.color(QPalette::Highlight), base), 3); // both corners
    EXPECT_GE(Contrast(palette.color(QPalette::Highlight), WarningTint(base)), 3);
    for (const QColor& ground : {base, WarningTint(base)}) {
        const QColor tint = DifferenceTint(ground);
        EXPECT_GE(Contrast(palette.color(QPalette::Text), tint), 4.5);
        EXPECT_GE(Contrast(DifferenceColor(ground), tint), 3);
        EXPECT_GE(Contrast(palette.color(QPalette::Highlight), tint), 3);
    }
}

/// They have no gap between them.
TEST_P(SkinOn, TheTitlesOfTheTableAreParted)
{
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
        EXPECT_GE(Contrast(palette.color(group, QPalette::Dark), palette.color(group, QPalette::Button)), 1.5) << group;
}

TEST_P(SkinOn, OnlyTheLightDesktopIsBlue)
{
    const QPalette& before = GetParam().palette;
    for (const auto role : {QPalette::Window, QPalette::Button, QPalette::Base, QPalette::Text, QPalette::Highlight})
        if (GetParam().keepsItsColours) {
            EXPECT_EQ(palette.color(role), before.color(role)) << role;
        }
    EXPECT_EQ(palette.color(QPalette::Window) == QColor(227, 239, 255), !GetParam().keepsItsColours);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Desktops, SkinOn, testing::Values(
    DesktopCase{"Light",             LightDesktop(),                               false},
    DesktopCase{"Dark",              DarkDesktop(),                                true},
    DesktopCase{"HighContrastBlack", PureDesktop(Qt::white, Qt::black, Qt::yellow), true},
    DesktopCase{"HighContrastWhite", PureDesktop(Qt::black, Qt::white, Qt::black),  true}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on
