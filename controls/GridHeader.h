#pragma once

#include <QHeaderView>

class CGridModel;
struct GridTitleSizes;

/// Shows the fixed rows above the body, or the fixed columns left of it: in each section the fixed cells that head it.
class CGridHeader final : public QHeaderView {
    Q_OBJECT

public:
    /// `model` and `sizes` outlive the header.
    CGridHeader(Qt::Orientation orientation, const CGridModel& model, const GridTitleSizes& sizes, QWidget* parent);

    QSize sizeHint() const override;

protected:
    void paintSection(QPainter* painter, const QRect& rect, int section) const override;

private:
    void PaintFixedRows(QPainter& painter, QRect rect, int section) const;
    void PaintFixedColumns(QPainter& painter, QRect rect, int section) const;

    const CGridModel& m_model;
    const GridTitleSizes& m_sizes;
};
