#pragma once

#include <QHeaderView>

class CGridModel;
struct GridTitleSizes;

/// Shows the fixed rows above the body, or the fixed columns left of it: in each section the fixed cells that head it.
///
/// The first sections above the body can be frozen: they stay where they are while the others scroll away below them.
class CGridHeader final : public QHeaderView {
    Q_OBJECT

public:
    /// `model` and `sizes` outlive the header.
    CGridHeader(Qt::Orientation orientation, const CGridModel& model, const GridTitleSizes& sizes, QWidget* parent);

    QSize sizeHint() const override;

    /// Freezes so many sections; 0 for none.
    void SetFrozen(int count);
    int AskedFrozen() const { return m_nFrozen; } ///< as many as were to be frozen

    /// How many are frozen: none while those asked for would take more than two thirds of the room, for the user must
    /// get at the others.
    int Frozen() const;
    QRect FrozenArea() const;          ///< what they take of the viewport
    int FrozenAt(int position) const;  ///< the frozen section at a place of the viewport; -1 for none
    int PositionOf(int section) const; ///< in the viewport, of any section, frozen or not
    int SectionAt(int position) const; ///< the section seen there; -1 for none
    void PaintEdge(QPainter& painter, const QRect& frozen) const; ///< where the frozen ones end

protected:
    bool viewportEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void paintSection(QPainter* painter, const QRect& rect, int section) const override;

private:
    void PaintFixedRows(QPainter& painter, QRect rect, int section) const;
    void PaintFixedColumns(QPainter& painter, QRect rect, int section) const;
    int ShiftAt(int position) const;
    int FrozenBorderAt(int position) const;
    QMouseEvent Shifted(const QMouseEvent& event) const;

    const CGridModel& m_model;
    const GridTitleSizes& m_sizes;
    int m_nFrozen = 0;
    int m_nResized = -1;    ///< the frozen section whose border is dragged
    int m_nPressedAt = 0;   ///< where that began
    int m_nPressedSize = 0; ///< and how wide it was
    int m_nShift = 0;       ///< from where the mouse is to where the section would be if it had scrolled
};
