#pragma once

#include <QColor>
#include <QImage>
#include <QWidget>

/// What a widget paints, on a device with so many pixels to each of the widget's.
class CPictureOf {
public:
    CPictureOf(QWidget& widget, int scale) : m_image(widget.size() * scale, QImage::Format_ARGB32), m_scale(scale)
    {
        m_image.setDevicePixelRatio(scale);
        m_image.fill(Qt::transparent);
        widget.render(&m_image);
    }

    int Width() const { return m_image.width() / m_scale; }
    int Height() const { return m_image.height() / m_scale; }

    /// The colour of the widget's pixel; invalid where the device's pixels in it differ.
    QColor At(int x, int y) const
    {
        const QColor first = m_image.pixelColor(x * m_scale, y * m_scale);
        for (int i = 1; i < m_scale * m_scale; ++i)
            if (m_image.pixelColor(x * m_scale + i % m_scale, y * m_scale + i / m_scale) != first)
                return {};
        return first;
    }

private:
    QImage m_image;
    int m_scale;
};
