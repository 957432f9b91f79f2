#pragma once

#include "controls/ListFont.h"

#include <QColor>
#include <QHeaderView>
#include <QString>
#include <QStringList>

/// The header of a coloured list: headings of its own over a colour that darkens downward.
///
/// The headings go to the columns from left to right in the order in which they were added, wherever each column was
/// put in.
class CHeaderCtrlCl final : public QHeaderView {
    Q_OBJECT

public:
    /// Where a heading stands in its column; one character a column in the order of the headings.
    static constexpr char16_t kLeft = u'0';
    static constexpr char16_t kCentred = u'1';
    static constexpr char16_t kRight = u'2';

    explicit CHeaderCtrlCl(QWidget* parent = nullptr);

    /// The colour of the top line, and what each line below has less of red, green and blue.
    void SetBackColor(int red, int green, int blue, int gradientStep);
    void SetHeightFactor(float factor); ///< times the natural height, truncated; before the header is first laid out
    void SetHeadingFont(int height, int width); ///< as ListFont takes them
    void SetTextColor(const QColor& color);

    void AddHeading(const QString& heading, char16_t alignment);
    const QStringList& Headings() const { return m_headings; }
    const QString& Alignments() const { return m_strAlignments; }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void PaintBack(QPainter& painter, int left, int right) const;
    void PaintHeading(QPainter& painter, int column) const;

    QStringList m_headings;
    QString m_strAlignments;
    int m_nBackRed = 171;
    int m_nBackGreen = 199;
    int m_nBackBlue = 235;
    int m_nGradientStep = 8;
    float m_fHeightFactor = 1.0F;
    QFont m_font = ListFont(15, 0);
    QColor m_textColor = Qt::black;
};
