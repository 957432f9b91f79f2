#include "app/Skin.h"

#include <QGuiApplication>
#include <QLinearGradient>
#include <QPainter>
#include <QPalette>
#include <QStyleOption>

namespace {

bool IsDark(const QPalette& palette)
{
    return palette.color(QPalette::Window).lightness() < 128;
}

/// For a field to read, not to change: less than the text in the others, yet easily read. Some dark desktops have
/// hardly anything left of it.
QColor DimmedText(const QPalette& palette)
{
    const QColor text = palette.color(QPalette::Text);
    const QColor base = palette.color(QPalette::Base);
    const auto mixed = [](int textPart, int basePart) { return (2 * textPart + basePart) / 3; };
    return {mixed(text.red(), base.red()), mixed(text.green(), base.green()), mixed(text.blue(), base.blue())};
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
    if (IsDark(palette))
        return {button.lighter(115), button, button.lighter(140)};
    return {button.lighter(106), button.darker(106), button.darker(130)};
}

void FillBar(QPainter& painter, const QRect& rect, const QPalette& palette, Qt::Orientation across)
{
    const BarShades shades = ShadesFor(palette);
    QLinearGradient gradient(rect.topLeft(), across == Qt::Vertical ? rect.bottomLeft() : rect.topRight());
    gradient.setColorAt(0, shades.lit);
    gradient.setColorAt(1, shades.shaded);
    painter.fillRect(rect, gradient);
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
    if (IsDark(palette)) {
        palette.setColor(QPalette::Disabled, QPalette::Text, DimmedText(palette));
        return;
    }
    palette.setColor(QPalette::Window, QColor(227, 239, 255));
    palette.setColor(QPalette::Button, QColor(206, 226, 250));
    palette.setColor(QPalette::Disabled, QPalette::Text, QColor(84, 96, 112)); // a field to read, not to change
    palette.setColor(QPalette::AlternateBase, QColor(240, 246, 255));
    palette.setColor(QPalette::Highlight, QColor(38, 95, 175));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::ToolTipBase, QColor(255, 255, 225));
    palette.setColor(QPalette::ToolTipText, Qt::black);
}

void CSkin::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                        const QWidget* widget) const
{
    switch (element) {
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
    if (element == PE_PanelStatusBar)
        FillBar(*painter, option->rect, option->palette, Qt::Vertical);
    else
        QProxyStyle::drawPrimitive(element, option, painter, widget);
}
