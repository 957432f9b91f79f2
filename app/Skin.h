#pragma once

#include <QProxyStyle>

/// The blue look of the program: bars, splitter and headers shaded in blue, dialogs and controls in the toolkit's own
/// even style. Where the user's desktop is dark or of high contrast its own colours are kept, but a text that could
/// hardly be read on its background (4.5:1) is given another one, and controls and the table's titles get an outline
/// that shows on dark.
class CSkin final : public QProxyStyle {
    Q_OBJECT

public:
    CSkin();

    QPalette standardPalette() const override;
    void polish(QPalette& palette) override;
    using QProxyStyle::polish;

    int styleHint(StyleHint hint, const QStyleOption* option = nullptr, const QWidget* widget = nullptr,
                  QStyleHintReturn* data = nullptr) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                           const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
};
