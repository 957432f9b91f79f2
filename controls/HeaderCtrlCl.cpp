#include "controls/HeaderCtrlCl.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

namespace {

constexpr int kIndent = 3; // pixels between a heading and the side that it stands at

int Darkened(int component, int by)
{
    return std::clamp(component - by, 0, 255);
}

Qt::Alignment AlignmentOf(QChar alignment)
{
    if (alignment == CHeaderCtrlCl::kLeft)
        return Qt::AlignLeft;
    return alignment == CHeaderCtrlCl::kRight ? Qt::AlignRight : Qt::AlignHCenter;
}

} // namespace

CHeaderCtrlCl::CHeaderCtrlCl(QWidget* parent) : QHeaderView(Qt::Horizontal, parent)
{
    setMinimumSectionSize(1);
    setSectionResizeMode(Fixed); // columns are as wide as they were inserted, else bits could leave the view
}

void CHeaderCtrlCl::SetBackColor(int red, int green, int blue, int gradientStep)
{
    m_nBackRed = red;
    m_nBackGreen = green;
    m_nBackBlue = blue;
    m_nGradientStep = gradientStep;
}

void CHeaderCtrlCl::SetHeightFactor(float factor)
{
    m_fHeightFactor = factor;
}

void CHeaderCtrlCl::SetHeadingFont(int height, int width)
{
    m_font = ListFont(height, width);
}

void CHeaderCtrlCl::SetTextColor(const QColor& color)
{
    m_textColor = color;
}

void CHeaderCtrlCl::AddHeading(const QString& heading, char16_t alignment)
{
    m_headings << heading;
    m_strAlignments += QChar(alignment);
}

QSize CHeaderCtrlCl::sizeHint() const
{
    const QSize natural = QHeaderView::sizeHint();
    return {natural.width(), static_cast<int>(static_cast<float>(natural.height()) * m_fHeightFactor)};
}

/// One pixel at the left of each column stays free and separates the columns.
void CHeaderCtrlCl::paintEvent(QPaintEvent*)
{
    QPainter painter(viewport());
    int end = 0;
    for (int column = 0; column < count(); ++column) {
        const int left = sectionViewportPosition(column);
        end = left + sectionSize(column);
        PaintBack(painter, left + 1, end);
        PaintHeading(painter, column);
    }
    PaintBack(painter, end, viewport()->width());
}

/// Line by line, each in one colour, so that it is the same on every device.
void CHeaderCtrlCl::PaintBack(QPainter& painter, int left, int right) const
{
    int darker = 0;
    for (int y = 0; y < viewport()->height(); ++y, darker += m_nGradientStep)
        painter.fillRect(
            left, y, right - left, 1,
            QColor(Darkened(m_nBackRed, darker), Darkened(m_nBackGreen, darker), Darkened(m_nBackBlue, darker)));
}

void CHeaderCtrlCl::PaintHeading(QPainter& painter, int column) const
{
    if (column >= m_headings.size())
        return;
    const int height = QFontMetrics(m_font).height();
    const QRect line(sectionViewportPosition(column), (viewport()->height() - height) / 2, sectionSize(column), height);
    painter.setFont(m_font);
    painter.setPen(m_textColor);
    painter.drawText(line.adjusted(kIndent, 0, -kIndent, 0),
                     static_cast<int>(AlignmentOf(m_strAlignments[column])) | Qt::TextSingleLine | Qt::TextDontClip,
                     m_headings[column]);
}
