#pragma once

#include <QWidget>

class CGridModel;
struct GridTitleSizes;

/// Shows the cells that are both in a fixed row and a fixed column. A click selects all; dragging the right border of a
/// fixed column resizes it, a double click there asks for the width of its texts.
class CGridCorner final : public QWidget {
    Q_OBJECT

public:
    /// `model` and `sizes` outlive the corner.
    CGridCorner(const CGridModel& model, const GridTitleSizes& sizes, QWidget* parent);

    void RefreshName(); ///< takes the texts of its cells as its accessible name

signals:
    void Clicked();
    void ColumnResized(int column, int width);
    void BorderDoubleClicked(int column); ///< the right border of a fixed column

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    static constexpr int kNone = -1;
    int BorderAt(int x) const; ///< the column whose right border is grabbed at `x`, or kNone
    int LeftOf(int column) const;

    const CGridModel& m_model;
    const GridTitleSizes& m_sizes;
    int m_nResized = kNone;
    bool m_bPressed = false;
};
