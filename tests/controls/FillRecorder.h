#pragma once

#include <QColor>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QRect>

#include <ostream>
#include <vector>

/// One rectangle in one colour.
struct Fill {
    QRect rect;
    QColor color;
    friend bool operator==(const Fill&, const Fill&) = default;
    friend void PrintTo(const Fill& f, std::ostream* out)
    {
        *out << f.color.name().toStdString() << " at " << f.rect.x() << ',' << f.rect.y() << ' ' << f.rect.width()
             << 'x' << f.rect.height();
    }
};

/// Keeps the rectangles that are filled on it, in order, also those that later ones cover.
class CFillRecorder final : public QPaintDevice {
public:
    QPaintEngine* paintEngine() const override { return &m_engine; }
    const std::vector<Fill>& Fills() const { return m_engine.fills; }

protected:
    int metric(PaintDeviceMetric metric) const override
    {
        switch (metric) {
        case PdmWidth:
        case PdmHeight:
            return 100;
        case PdmDevicePixelRatio:
            return 1;
        case PdmDevicePixelRatioScaled:
            return static_cast<int>(devicePixelRatioFScale());
        case PdmDpiX:
        case PdmDpiY:
        case PdmPhysicalDpiX:
        case PdmPhysicalDpiY:
            return 96;
        default:
            return 0;
        }
    }

private:
    struct Engine final : QPaintEngine {
        Engine() : QPaintEngine(AllFeatures) {}
        bool begin(QPaintDevice*) override { return true; }
        bool end() override { return true; }
        Type type() const override { return User; }
        void updateState(const QPaintEngineState& changed) override
        {
            if (changed.state().testFlag(DirtyBrush))
                color = changed.brush().color();
        }
        void drawRects(const QRect* rects, int count) override
        {
            for (int i = 0; i < count; ++i)
                fills.push_back({rects[i], color});
        }
        void drawRects(const QRectF* rects, int count) override
        {
            for (int i = 0; i < count; ++i)
                fills.push_back({rects[i].toRect(), color});
        }
        void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}

        QColor color;
        std::vector<Fill> fills;
    };

    mutable Engine m_engine;
};
