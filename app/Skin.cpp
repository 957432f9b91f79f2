#include "app/Skin.h"

#include "app/Contrast.h"

#include <QGuiApplication>
#include <QLinearGradient>
#include <QPainter>
#include <QPalette>
#include <QStyleOption>
#include <QWidget>

namespace {

constexpr double kReadable = 4.5; ///< contrast of a text
constexpr double kSeen = 1.5;     ///< contrast of a line between two titles
constexpr int kRoomInRow = 4;     ///< pixels by which a row of a list is higher than its text
constexpr double kOutlineRadius = 2;
constexpr int kBelowTitle = 4; ///< pixels from a group's title to its frame

enum class Desktop { Light, Dark, HighContrast };

/// Black and white alone stand for a desktop of high contrast.
Desktop DesktopOf(const QPalette& palette)
{
    const QColor window = palette.color(QPalette::Window);
    const bool isPure = window == QColor(Qt::black) || window == QColor(Qt::white);
    if (isPure && palette.color(QPalette::Button) == window)
        return Desktop::HighContrast;
    return window.lightness() < 128 ? Desktop::Dark : Desktop::Light;
}

/// `share` of the way from `from` to `to`.
QColor Mixed(const QColor& from, const QColor& to, double share)
{
    const auto mix = [share](int a, int b) { return qRound(a + share * (b - a)); };
    return {mix(from.red(), to.red()), mix(from.green(), to.green()), mix(from.blue(), to.blue())};
}

QColor BlackOrWhite(const QColor& background)
{
    return Contrast(Qt::black, background) > Contrast(Qt::white, background) ? Qt::black : Qt::white;
}

/// A text and what it stands on.
struct RolePair {
    QPalette::ColorRole text;
    QPalette::ColorRole background;
};

constexpr RolePair kTexts[]{
    {QPalette::WindowText, QPalette::Window},       {QPalette::Text, QPalette::Base},
    {QPalette::ButtonText, QPalette::Button},       {QPalette::HighlightedText, QPalette::Highlight},
    {QPalette::ToolTipText, QPalette::ToolTipBase}, {QPalette::PlaceholderText, QPalette::Base},
};

bool IsReadable(const QPalette& palette, QPalette::ColorGroup group, const RolePair& pair)
{
    return Contrast(palette.color(group, pair.text), palette.color(group, pair.background)) >= kReadable;
}

/// Some desktops have texts that can hardly be read, those of disabled controls above all. A disabled text still stands
/// out less than the others: a third of the way to its background.
void MakeTextsReadable(QPalette& palette)
{
    for (const RolePair& pair : kTexts) {
        for (const auto group : {QPalette::Active, QPalette::Inactive})
            if (!IsReadable(palette, group, pair))
                palette.setColor(group, pair.text, BlackOrWhite(palette.color(group, pair.background)));
        if (IsReadable(palette, QPalette::Disabled, pair))
            continue;
        const QColor background = palette.color(QPalette::Disabled, pair.background);
        palette.setColor(QPalette::Disabled, pair.text,
                         Mixed(palette.color(QPalette::Active, pair.text), background, 1.0 / 3));
        if (!IsReadable(palette, QPalette::Disabled, pair))
            palette.setColor(QPalette::Disabled, pair.text, BlackOrWhite(background));
    }
}

/// The table's titles are parted by lines in this colour, which dark desktops make as dark as the titles.
void MakeTitleLinesSeen(QPalette& palette)
{
    const QColor title = palette.color(QPalette::Button);
    if (Contrast(palette.color(QPalette::Dark), title) >= kSeen)
        return;
    const QColor text = palette.color(QPalette::ButtonText);
    palette.setColor(QPalette::Dark, DesktopOf(palette) == Desktop::HighContrast ? text : Mixed(text, title, 0.5));
}

void MakeBlue(QPalette& palette)
{
    const QColor window(227, 239, 255);
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::Button, QColor(206, 226, 250));
    palette.setColor(QPalette::Disabled, QPalette::Base, window); // a field to read, not to change
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(76, 88, 104));
    palette.setColor(QPalette::AlternateBase, QColor(240, 246, 255));
    palette.setColor(QPalette::Highlight, QColor(38, 95, 175));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::ToolTipBase, QColor(255, 255, 225));
    palette.setColor(QPalette::ToolTipText, Qt::black);
}

/// The lit and the shaded end of a bar's gradient.
struct BarShades {
    QColor lit;
    QColor shaded;
    QColor edge;
};

BarShades ShadesFor(const QPalette& palette)
{
    const QColor button = palette.color(QPalette::Button);
    switch (DesktopOf(palette)) {
    case Desktop::HighContrast:
        return {button, button, palette.color(QPalette::ButtonText)};
    case Desktop::Dark:
        return {button.lighter(115), button, button.lighter(140)};
    case Desktop::Light:
        break;
    }
    return {button.lighter(106), button.darker(106), button.darker(130)};
}

/// Fills `rect` with its part of the gradient over `bar`.
void FillBar(QPainter& painter, const QRect& rect, const QRect& bar, const QPalette& palette, Qt::Orientation across)
{
    const BarShades shades = ShadesFor(palette);
    QLinearGradient gradient(bar.topLeft(), across == Qt::Vertical ? bar.bottomLeft() : bar.topRight());
    gradient.setColorAt(0, shades.lit);
    gradient.setColorAt(1, shades.shaded);
    painter.fillRect(rect, gradient);
}

void FillBar(QPainter& painter, const QRect& bar, const QPalette& palette, Qt::Orientation across)
{
    FillBar(painter, bar, bar, palette, across);
}

void DrawHeaderSection(QPainter& painter, const QStyleOption& option)
{
    FillBar(painter, option.rect, option.palette, Qt::Vertical);
    painter.setPen(ShadesFor(option.palette).edge);
    painter.drawLine(option.rect.bottomLeft(), option.rect.bottomRight());
    painter.drawLine(option.rect.topRight(), option.rect.bottomRight());
}

void DrawSplitter(QPainter& painter, const QStyleOption& option)
{
    const QRect rect = option.rect;
    const Qt::Orientation across = rect.width() < rect.height() ? Qt::Horizontal : Qt::Vertical;
    FillBar(painter, rect, option.palette, across);
    constexpr int kGripDots = 5;
    constexpr int kGripStep = 6; // pixels
    const QPoint step = across == Qt::Horizontal ? QPoint(0, kGripStep) : QPoint(kGripStep, 0);
    QRect dot(rect.center() - step * (kGripDots / 2), QSize(2, 2));
    for (int i = 0; i < kGripDots; ++i, dot.translate(step))
        painter.fillRect(dot, ShadesFor(option.palette).edge);
}

/// On the bar's own gradient: the base style leaves a patch of the window's colour behind each title.
void DrawMenuTitle(const QStyle& style, QPainter& painter, const QStyleOptionMenuItem& option, const QWidget* widget)
{
    const bool open = option.state.testFlag(QStyle::State_Selected);
    if (open)
        painter.fillRect(option.rect, option.palette.highlight());
    else
        FillBar(painter, option.rect, widget != nullptr ? widget->rect() : option.rect, option.palette, Qt::Vertical);
    const bool underlined = style.styleHint(QStyle::SH_UnderlineShortcut, &option, widget) != 0;
    const int flags = Qt::AlignCenter | Qt::TextDontClip | Qt::TextSingleLine |
                      (underlined ? Qt::TextShowMnemonic : Qt::TextHideMnemonic);
    style.drawItemText(&painter, option.rect, flags, option.palette, option.state.testFlag(QStyle::State_Enabled),
                       option.text, open ? QPalette::HighlightedText : QPalette::ButtonText);
}

/// The base style makes its outlines a little darker than the window: too little on a dark one, and for eyes that need
/// a high contrast.
bool NeedsOutlines(const QPalette& palette)
{
    return DesktopOf(palette) != Desktop::Light;
}

bool IsDefaultButton(const QStyleOption& option)
{
    const auto* button = qstyleoption_cast<const QStyleOptionButton*>(&option);
    return button != nullptr && button->features.testFlag(QStyleOptionButton::DefaultButton);
}

QColor OutlineColor(const QStyleOption& option)
{
    if (option.state.testFlag(QStyle::State_HasFocus) || IsDefaultButton(option))
        return option.palette.color(QPalette::Highlight);
    const QColor text = option.palette.color(QPalette::Active, QPalette::WindowText);
    if (DesktopOf(option.palette) == Desktop::HighContrast)
        return text;
    return Mixed(text, option.palette.color(QPalette::Window), 0.5);
}

void DrawOutline(QPainter& painter, const QRect& outer, const QStyleOption& option, double radius = kOutlineRadius)
{
    const QRectF rect = QRectF(outer).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(OutlineColor(option));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect, radius, radius);
    painter.restore();
}

} // namespace

CSkin::CSkin() : QProxyStyle(QStringLiteral("Fusion")) {}

QPalette CSkin::standardPalette() const
{
    QPalette palette = QProxyStyle::standardPalette();
    const_cast<CSkin*>(this)->polish(palette);
    return palette;
}

void CSkin::polish(QPalette& palette)
{
    if (DesktopOf(palette) == Desktop::Light)
        MakeBlue(palette);
    MakeTextsReadable(palette);
    MakeTitleLinesSeen(palette);
}

int CSkin::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget, QStyleHintReturn* data) const
{
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons)
        return 0; // the desktop's icons would stand in some dialogs only, and beside the program's own ones
    return QProxyStyle::styleHint(hint, option, widget, data);
}

QSize CSkin::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                              const QWidget* widget) const
{
    const QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
    return type == CT_ItemViewItem ? size + QSize(0, kRoomInRow) : size;
}

void CSkin::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                        const QWidget* widget) const
{
    switch (element) {
    case CE_MenuBarItem:
        if (const auto* title = qstyleoption_cast<const QStyleOptionMenuItem*>(option))
            DrawMenuTitle(*proxy(), *painter, *title, widget);
        break;
    case CE_MenuBarEmptyArea:
    case CE_ToolBar:
        FillBar(*painter, option->rect, option->palette,
                option->rect.width() < option->rect.height() ? Qt::Horizontal : Qt::Vertical);
        break;
    case CE_HeaderEmptyArea:
        painter->fillRect(option->rect, option->palette.window());
        break;
    case CE_HeaderSection:
        DrawHeaderSection(*painter, *option);
        break;
    case CE_Splitter:
        DrawSplitter(*painter, *option);
        break;
    default:
        QProxyStyle::drawControl(element, option, painter, widget);
    }
}

void CSkin::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                          const QWidget* widget) const
{
    if (element == PE_PanelStatusBar) {
        FillBar(*painter, option->rect, option->palette, Qt::Vertical);
        return;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (!NeedsOutlines(option->palette))
        return;
    switch (element) {
    case PE_Frame:
    case PE_FrameLineEdit:
    case PE_IndicatorCheckBox:
    case PE_PanelButtonCommand:
        DrawOutline(*painter, option->rect, *option);
        break;
    case PE_PanelMenu:
        DrawOutline(*painter, option->rect, *option, 0);
        break;
    case PE_IndicatorRadioButton:
        DrawOutline(*painter, option->rect, *option, option->rect.width() / 2.0);
        break;
    default:
        break;
    }
}

void CSkin::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                               const QWidget* widget) const
{
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    if (!NeedsOutlines(option->palette))
        return;
    if (control == CC_ComboBox) {
        DrawOutline(*painter, option->rect, *option);
    } else if (control == CC_GroupBox) { // the title stands above the frame
        QRect frame = proxy()->subControlRect(control, option, SC_GroupBoxFrame, widget);
        frame.setTop(proxy()->subControlRect(control, option, SC_GroupBoxLabel, widget).bottom() + kBelowTitle);
        DrawOutline(*painter, frame, *option);
    }
}
